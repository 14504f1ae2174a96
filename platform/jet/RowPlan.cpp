#include "platform/jet/RowPlan.h"

#include "platform/jet/LongValue.h"

#include <algorithm>
#include <limits>

namespace vardelin::jet {

namespace {

std::string columnTitle(const TableDefinition &table, const Column &column)
{
    return toUtf8(table.name) + "." + toUtf8(column.name);
}

std::size_t storedSize(const Cell &cell)
{
    if (const auto *text = std::get_if<std::u16string>(&cell))
        return text->size() * 2;
    if (const auto *bytes = std::get_if<Bytes>(&cell))
        return bytes->size();
    return 0;
}

bool hasLengthLimit(ColumnType type)
{
    return type == ColumnType::Text || type == ColumnType::Binary || type == ColumnType::Big;
}

} // namespace

RowPlan::RowPlan(FileParts &parts, const TableDefinition &table, std::span<const ColumnValue> values,
                 const RowView *old, std::span<const std::byte> oldBytes)
    : m_parts(parts), m_table(table), m_old(old), m_oldBytes(oldBytes), m_cells(table.columns.size()),
      m_fields(table.columns.size())
{
    for (const auto &[column, cell] : values) {
        if (column >= m_cells.size() || !cellFits(table.columns[column], cell))
            throw Error(Code::InvalidArgument);
        if (old && table.columns[column].autoNumber && cell != old->cell(column))
            throw Error(Code::AutoNumberReadOnly);
        const auto *decimal = std::get_if<Decimal>(&cell);
        m_cells[column] =
            decimal ? &m_decimals.emplace_back(decimalFor(table.columns[column], *decimal)) : &cell;
    }
}

void RowPlan::giveAutoNumber(std::int32_t &lastGiven)
{
    const auto column = m_table.autoNumberColumn();
    if (!column || (m_cells[*column] && !isNull(*m_cells[*column])))
        return;
    const std::byte *page = m_parts.pager().page(m_table.page());
    const auto last = std::max(load<std::int32_t>(page + kAutoNumberAt), lastGiven);
    if (last == std::numeric_limits<std::int32_t>::max())
        throw Error(Code::NumberOverflow);
    lastGiven = last + 1;
    m_autoNumber = lastGiven;
    m_cells[*column] = &m_autoNumber;
}

Cell RowPlan::value(std::size_t column) const
{
    if (m_cells[column] && !isNull(*m_cells[column]))
        return *m_cells[column];
    if (!m_cells[column] && m_old)
        return m_old->cell(column);
    return m_table.columns[column].type == ColumnType::Boolean ? Cell(false) : Cell();
}

void RowPlan::check() const
{
    static const Cell null;
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i] || !m_old)
            checkCell(m_table.columns[i], m_cells[i] ? *m_cells[i] : null);
    }
}

void RowPlan::checkCell(const Column &column, const Cell &cell) const
{
    if (isNull(cell)) {
        if (column.required && column.type != ColumnType::Boolean)
            throw Error(Code::NullRequired, columnTitle(m_table, column));
        return;
    }
    const std::size_t size = storedSize(cell);
    const bool text = column.type == ColumnType::Text || column.type == ColumnType::Memo;
    if (text && size == 0 && !column.allowZeroLength)
        throw Error(Code::ZeroLength, columnTitle(m_table, column));
    if (hasLengthLimit(column.type) && size > column.length)
        throw Error(Code::FieldTooSmall);
    if (isLongValue(column.type) && size > kLongestLongValue)
        throw Error(Code::FieldTooSmall);
}

void RowPlan::encode()
{
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i])
            encodeColumn(i);
        else
            m_fields[i] = oldField(i);
    }
    while (encodedLength(m_table, m_fields) > kMaxRow) {
        if (!moveLongestOutside())
            throw Error(Code::RecordTooLarge);
    }
}

StoredField RowPlan::oldField(std::size_t column) const
{
    if (!m_old)
        return {};
    return readField(m_table, m_table.columns[column], m_oldBytes, {m_parts.pager(), m_old->id()});
}

void RowPlan::encodeColumn(std::size_t column)
{
    const Column &definition = m_table.columns[column];
    const Cell &cell = *m_cells[column];
    if (isLongValue(definition.type))
        encodeLongValue(column, cell);
    else if (isNull(cell))
        m_fields[column] = {};
    else if (definition.type == ColumnType::Boolean)
        m_fields[column] = {std::get<bool>(cell), {}};
    else
        m_fields[column] = {true, keep(encodeCell(definition, cell))};
}

void RowPlan::encodeLongValue(std::size_t column, const Cell &cell)
{
    const StoredField old = oldField(column);
    if (isNull(cell)) {
        if (old.present && !isInline(old.bytes))
            m_replaced.push_back(column);
        m_fields[column] = {};
        return;
    }
    const bool stays = storedSize(cell) <= kLongestInline;
    const auto *text = std::get_if<std::u16string>(&cell);
    Bytes data = text ? encodeText(*text, stays) : std::get<Bytes>(cell);
    if (keepsOld(column, data, stays)) {
        m_fields[column] = old;
        return;
    }
    if (old.present && !isInline(old.bytes))
        m_replaced.push_back(column);
    if (stays)
        m_fields[column] = {true, keep(inlineLongValue(data))};
    else
        putOutside(column, std::move(data));
}

// A value that is written anew as it was costs nothing.
bool RowPlan::keepsOld(std::size_t column, std::span<const std::byte> data, bool stays)
{
    const StoredField old = oldField(column);
    if (!old.present || isInline(old.bytes) != stays)
        return false;
    Bytes store;
    const auto before = readLongValue(m_parts.pager(), old.bytes, {m_parts.pager(), m_old->id()}, store);
    return std::equal(before.begin(), before.end(), data.begin(), data.end());
}

void RowPlan::putOutside(std::size_t column, Bytes data)
{
    m_outside.push_back({column, std::move(data)});
    m_fields[column] = {true, keep(Bytes(kLongValueHeader))};
}

// For a row that is too long: the longest value that lies in it goes out.
bool RowPlan::moveLongestOutside()
{
    std::optional<std::size_t> longest;
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (!isLongValue(m_table.columns[i].type) || m_fields[i].bytes.size() <= kLongValueHeader)
            continue;
        if (!longest || m_fields[i].bytes.size() > m_fields[*longest].bytes.size())
            longest = i;
    }
    if (!longest)
        return false;
    const auto inside = m_fields[*longest].bytes.subspan(kLongValueHeader);
    if (m_table.columns[*longest].type == ColumnType::Memo)
        putOutside(*longest, encodeText(decodeText(inside, {m_parts.pager(), {}}), false));
    else
        putOutside(*longest, Bytes(inside.begin(), inside.end()));
    return true;
}

std::span<const std::byte> RowPlan::keep(Bytes bytes)
{
    return m_store.emplace_back(std::move(bytes));
}

void RowPlan::setHeader(std::size_t column, Bytes header)
{
    m_fields[column] = {true, keep(std::move(header))};
}

} // namespace vardelin::jet
