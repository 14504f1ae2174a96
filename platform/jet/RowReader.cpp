#include "platform/jet/RowReader.h"

#include "platform/jet/FileParts.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/RowCodec.h"

namespace vardelin::jet {

std::optional<RowLocation> RowReader::locate(Pager &pager, PageNo table, RowId id)
{
    // The page may have been freed since, and may be anything now.
    if (id.page >= pager.pageCount() || pager.page(id.page)[0] != std::byte{1})
        return std::nullopt;
    const DataPage page(pager, id.page);
    if (page.owner() != table || id.row >= page.slots())
        return std::nullopt;
    switch (page.slot(id.row).flags) {
    case kLiveRow:
        return RowLocation{id, id};
    case kForward:
        return RowLocation{id, target(page, id.row)};
    default:
        return std::nullopt;
    }
}

RowId RowReader::target(const DataPage &page, std::size_t slot)
{
    const auto row = page.row(slot);
    if (row.size() < 4)
        page.place().damaged("row " + std::to_string(slot) + " is a forward that is too short");
    return loadRowId(row.data());
}

std::span<const std::byte> RowReader::bytes(Pager &pager, PageNo table, const RowLocation &location)
{
    const DataPage page(pager, location.actual.page);
    page.requireOwner(table);
    if (page.slot(location.actual.row).flags != (location.moved() ? kMovedRow : kLiveRow))
        page.place().damaged("row " + std::to_string(location.actual.row) +
                             " isn't the row that a forward names");
    return page.row(location.actual.row);
}

Cell RowReader::cell(Pager &pager, const TableDefinition &table, const Column &column,
                     std::span<const std::byte> row, RowId id, Passage *passage)
{
    const RowPlace place{pager, id};
    const StoredField stored = readField(table, column, row, place);
    if (column.type == ColumnType::Boolean)
        return stored.present;
    if (!stored.present)
        return {};
    if (!isLongValue(column.type))
        return decodeCell(column, stored.bytes, place);
    Bytes store;
    const auto data = readLongValue(pager, stored.bytes, place, store, passage);
    if (column.type == ColumnType::Memo)
        return decodeText(data, place);
    return Bytes(data.begin(), data.end());
}

RowView RowReader::view(const Table &table, RowId id, std::span<const std::byte> bytes, Passage *passage)
{
    RowView view;
    view.m_table = &table;
    view.m_id = id;
    view.m_bytes = bytes;
    view.m_passage = passage;
    return view;
}

StoredField RowView::field(std::size_t column) const
{
    const TableDefinition &table = *m_table->m_definition;
    if (column >= table.columns.size())
        throw Error(Code::ItemNotFound);
    return readField(table, table.columns[column], m_bytes, {m_table->m_file.pager(), m_id});
}

bool RowView::isNull(std::size_t column) const
{
    return !field(column).present && m_table->m_definition->columns[column].type != ColumnType::Boolean;
}

Cell RowView::cell(std::size_t column) const
{
    const TableDefinition &table = *m_table->m_definition;
    if (column >= table.columns.size())
        throw Error(Code::ItemNotFound);
    return RowReader::cell(m_table->m_file.pager(), table, table.columns[column], m_bytes, m_id, m_passage);
}

namespace {

// The bytes of a value of known width, checked.
const std::byte *wide(const StoredField &stored, std::size_t size, RowPlace place)
{
    if (stored.bytes.size() < size)
        place.damaged("has a value that is too short for its type");
    return stored.bytes.data();
}

} // namespace

std::int32_t RowView::longValue(std::size_t column) const
{
    return load<std::int32_t>(wide(field(column), 4, {m_table->m_file.pager(), m_id}));
}

Currency RowView::currency(std::size_t column) const
{
    return {load<std::int64_t>(wide(field(column), 8, {m_table->m_file.pager(), m_id}))};
}

double RowView::number(std::size_t column) const
{
    const StoredField stored = field(column);
    const ColumnType type = m_table->m_definition->columns[column].type;
    const std::byte *raw = wide(stored, fixedSize(type), {m_table->m_file.pager(), m_id});
    switch (type) {
    case ColumnType::Byte:
        return load<std::uint8_t>(raw);
    case ColumnType::Integer:
        return load<std::int16_t>(raw);
    case ColumnType::Long:
        return load<std::int32_t>(raw);
    case ColumnType::Single:
        return static_cast<double>(load<float>(raw));
    case ColumnType::Double:
    case ColumnType::DateTime:
        return load<double>(raw);
    default:
        throw Error(Code::InvalidArgument);
    }
}

std::u16string RowView::text(std::size_t column) const
{
    Bytes store;
    const auto stored = storedText(column, store);
    return stored ? decodeText(*stored, {m_table->m_file.pager(), m_id}) : std::u16string();
}

std::u16string_view RowView::text(std::size_t column, TextBuffer &buffer) const
{
    const auto stored = storedText(column, buffer.m_pieces).value_or(std::span<const std::byte>());
    if (isPlainText(stored))
        return {reinterpret_cast<const char16_t *>(stored.data()), stored.size() / 2};
    char16_t *const units = buffer.reserve(stored.size());
    return {units, decodeText(stored, {m_table->m_file.pager(), m_id}, units)};
}

std::optional<std::span<const std::byte>> RowView::storedText(std::size_t column, Bytes &store) const
{
    const StoredField stored = field(column);
    if (!stored.present)
        return std::nullopt;
    if (m_table->m_definition->columns[column].type != ColumnType::Memo)
        return stored.bytes;
    Pager &pager = m_table->m_file.pager();
    return readLongValue(pager, stored.bytes, {pager, m_id}, store, m_passage);
}

} // namespace vardelin::jet
