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
    jet::Bytes store;
    const auto stored = m_view.storedText(column, store);
    return stored ? Value(decodeStored(*stored)) : Value(NullValue());
}

StoredText TableRow::storedText(std::size_t column, jet::Bytes &store) const
{
    if (!isText(column))
        return {};
    const auto stored = m_view.storedText(column, store);
    return stored ? StoredText{true, false, *stored} : StoredText{true, true, {}};
}

} // namespace vardelin::sql
