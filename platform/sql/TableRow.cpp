#include "platform/sql/TableRow.h"

#include "platform/sql/Cells.h"
#include "platform/sql/StoredText.h"

namespace vardelin::sql {

bool TableRow::isText(std::size_t column) const
{
    const jet::ColumnType type = m_table.columns()[column].type;
    return type == jet::ColumnType::Text || type == jet::ColumnType::Memo;
}

Value TableRow::value(std::size_t column) const
{
    if (!isText(column))
        return toValue(m_view.cell(column));
    if (m_view.isNull(column))
        return Value(NullValue());
    jet::Bytes store;
    return Value(decodeStored(m_view.storedText(column, store)));
}

std::optional<std::span<const std::byte>> TableRow::storedText(std::size_t column, jet::Bytes &store) const
{
    if (!isText(column))
        return std::nullopt;
    return m_view.storedText(column, store);
}

} // namespace vardelin::sql
