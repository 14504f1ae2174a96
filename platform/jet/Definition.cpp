#include "platform/jet/Definition.h"

#include <algorithm>
#include <unordered_set>

namespace vardelin::jet {

namespace {

constexpr std::size_t kPageHeader = 8, kDescriptor = 25, kPhysical = 52, kLogical = 28, kMaxKeyColumns = 10;
constexpr std::size_t kLongestDefinition = 1 << 20;

struct Counts
{
    std::size_t columns, logical, physical;
};

Counts readHeader(Reader &reader, TableDefinition &table)
{
    reader.take(41);
    table.maxColumns = reader.number<std::uint16_t>();
    table.variableColumns = reader.number<std::uint16_t>();
    const std::size_t columns = reader.number<std::uint16_t>();
    const std::size_t logical = reader.number<std::uint32_t>();
    const std::size_t physical = reader.number<std::uint32_t>();
    table.owned = rowIdOf(reader.number<std::uint32_t>());
    table.freeSpace = rowIdOf(reader.number<std::uint32_t>());
    if (columns > table.maxColumns || table.maxColumns > 1024 || table.variableColumns > table.maxColumns ||
        logical > 1024 || physical > 1024)
        reader.place().damaged("a definition with impossible counts");
    return {columns, logical, physical};
}

bool knownType(std::uint8_t type)
{
    return (type >= 1 && type <= 12) || (type >= 15 && type <= 17);
}

Column readColumn(Reader &reader)
{
    const std::byte *raw = reader.take(kDescriptor).data();
    Column column;
    const auto type = load<std::uint8_t>(raw);
    const auto flags = load<std::uint8_t>(raw + 15);
    if (!knownType(type))
        reader.place().damaged("a column of type " + std::to_string(type));
    column.type = static_cast<ColumnType>(type);
    column.number = load<std::uint16_t>(raw + 5);
    column.variableIndex = load<std::uint16_t>(raw + 7);
    column.ordinal = load<std::uint16_t>(raw + 9);
    column.locale = load<std::uint16_t>(raw + 11);
    column.orderVersion = load<std::uint8_t>(raw + 14);
    column.precision = load<std::uint8_t>(raw + 11);
    column.scale = load<std::uint8_t>(raw + 12);
    column.fixed = (flags & kFixedColumn) != 0;
    column.autoNumber = (flags & kAutoNumberColumn) != 0;
    column.compress = load<std::uint8_t>(raw + 16) == 1;
    column.fixedOffset = load<std::uint16_t>(raw + 21);
    column.length = load<std::uint16_t>(raw + 23);
    column.allowZeroLength = true;
    return column;
}

void checkColumns(const TableDefinition &table, const Place &place)
{
    std::unordered_set<std::uint16_t> numbers;
    for (const Column &column : table.columns) {
        if (column.number >= table.maxColumns || !numbers.insert(column.number).second)
            place.damaged("a column with the number " + std::to_string(column.number));
        if (column.fixed && (isLongValue(column.type) || column.fixedOffset + column.length > kPageSize))
            place.damaged("a fixed column that doesn't fit a row");
        if (!column.fixed && column.variableIndex >= table.variableColumns)
            place.damaged("a column with the variable index " + std::to_string(column.variableIndex));
    }
}

PhysicalIndex readPhysical(Reader &reader, std::uint32_t number)
{
    const std::byte *raw = reader.take(kPhysical).data();
    PhysicalIndex index;
    for (std::size_t i = 0; i < kMaxKeyColumns; ++i) {
        const auto column = load<std::uint16_t>(raw + 4 + 3 * i);
        if (column != 0xFFFF)
            index.columns.push_back({column, (load<std::uint8_t>(raw + 6 + 3 * i) & 1) == 0});
    }
    const auto flags = load<std::uint8_t>(raw + 46);
    index.map = loadRowId(raw + 34);
    index.root = load<PageNo>(raw + 38);
    index.unique = (flags & kUniqueIndex) != 0;
    index.ignoreNulls = (flags & kIgnoreNullsIndex) != 0;
    index.required = (flags & kRequiredIndex) != 0;
    index.number = number;
    return index;
}

LogicalIndex readLogical(Reader &reader, TableDefinition &table)
{
    const std::byte *raw = reader.take(kLogical).data();
    LogicalIndex index;
    index.number = load<std::uint32_t>(raw + 4);
    index.physical = load<std::uint32_t>(raw + 8);
    index.primary = load<std::uint8_t>(raw + 23) == 1;
    index.foreign = load<std::uint8_t>(raw + 23) == 2;
    if (const auto side = load<std::uint8_t>(raw + 12); side == 1 || side == 2) {
        index.side = static_cast<LogicalIndex::Side>(side);
        index.otherIndex = load<std::uint32_t>(raw + 13);
        index.otherTable = load<PageNo>(raw + 17);
    }
    if (index.physical >= table.physical.size())
        reader.place().damaged("an index without a tree");
    if (index.primary) {
        table.physical[index.physical].unique = true;
        table.physical[index.physical].required = true;
    }
    return index;
}

void readIndexes(Reader &reader, TableDefinition &table, const Counts &counts)
{
    for (std::uint32_t i = 0; i < counts.physical; ++i)
        table.physical.push_back(readPhysical(reader, i));
    for (std::size_t i = 0; i < counts.logical; ++i)
        table.logical.push_back(readLogical(reader, table));
    for (LogicalIndex &index : table.logical)
        index.name = reader.name();
    for (const PhysicalIndex &index : table.physical) {
        for (const IndexColumn &key : index.columns) {
            const Column *column = table.byNumber(key.column);
            if (!column)
                reader.place().damaged("an index on a column that the table doesn't have");
            if (column->type == ColumnType::Text || column->type == ColumnType::Memo)
                table.knownOrder &= column->locale == 0x0409 && column->orderVersion == 0;
        }
    }
}

void readLongValueMaps(Reader &reader, TableDefinition &table)
{
    while (true) {
        const auto column = reader.number<std::uint16_t>();
        if (column == 0xFFFF)
            return;
        const auto owned = rowIdOf(reader.number<std::uint32_t>());
        table.longValues.push_back({column, owned, rowIdOf(reader.number<std::uint32_t>())});
    }
}

std::size_t endOfFixedPart(const std::vector<Column> &columns)
{
    std::size_t end = 0;
    for (const Column &column : columns) {
        if (column.fixed && column.type != ColumnType::Boolean) {
            const std::size_t size = fixedSize(column.type) ? fixedSize(column.type) : column.length;
            end = std::max(end, column.fixedOffset + size);
        }
    }
    return end;
}

} // namespace

std::size_t fixedSize(ColumnType type)
{
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Decimal:
        return 17;
    default:
        return 0;
    }
}

bool isLongValue(ColumnType type)
{
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

const Column *TableDefinition::byNumber(std::uint16_t number) const
{
    const auto place = placeOf(number);
    return place ? &columns[*place] : nullptr;
}

std::optional<std::size_t> TableDefinition::placeOf(std::uint16_t number) const
{
    const auto found =
        std::find_if(columns.begin(), columns.end(), [&](const Column &c) { return c.number == number; });
    if (found == columns.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - columns.begin());
}

const LongValueMaps &TableDefinition::longValueMaps(std::uint16_t column) const
{
    static const LongValueMaps none;
    const auto found = std::find_if(longValues.begin(), longValues.end(),
                                    [&](const LongValueMaps &m) { return m.column == column; });
    return found == longValues.end() ? none : *found;
}

const LogicalIndex *TableDefinition::counterpartOf(const LogicalIndex &index, PageNo table) const
{
    const auto found = std::find_if(logical.begin(), logical.end(), [&](const LogicalIndex &own) {
        return own.number == index.otherIndex && own.otherTable == table && own.otherIndex == index.number &&
               own.side != index.side && own.side != LogicalIndex::Side::None;
    });
    return found == logical.end() ? nullptr : &*found;
}

bool haveEqualKeys(const TableDefinition &left, const PhysicalIndex &leftIndex, const TableDefinition &right,
                   const PhysicalIndex &rightIndex)
{
    return std::equal(leftIndex.columns.begin(), leftIndex.columns.end(), rightIndex.columns.begin(),
                      rightIndex.columns.end(), [&](const IndexColumn &a, const IndexColumn &b) {
                          const Column *from = left.byNumber(a.column), *to = right.byNumber(b.column);
                          return from->type == to->type && from->scale == to->scale &&
                                 a.descending == b.descending;
                      });
}

std::optional<std::size_t> TableDefinition::autoNumberColumn() const
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].autoNumber && columns[i].type == ColumnType::Long)
            return i;
    }
    return std::nullopt;
}

DefinitionBytes readDefinition(Pager &pager, PageNo first)
{
    DefinitionBytes result;
    std::size_t length = kPageSize;
    for (PageNo number = first; number != 0 && result.bytes.size() < length;) {
        const std::byte *page = pager.page(number);
        if (page[0] != std::byte{2})
            Place{pager, number}.damaged("isn't a table definition");
        result.pages.push_back(number);
        result.bytes.insert(result.bytes.end(), page + (number == first ? 0 : kPageHeader), page + kPageSize);
        if (number == first)
            length = load<std::uint32_t>(page + 8);
        if (length < kIndexCountsAt || length > kLongestDefinition)
            Place{pager, number}.damaged("a definition of " + std::to_string(length) + " bytes");
        number = load<PageNo>(page + 4);
    }
    if (result.bytes.size() < length)
        Place{pager, first}.damaged("the definition ends too early");
    result.bytes.resize(length);
    return result;
}

void blankCounts(Bytes &definition)
{
    const std::size_t physical = load<std::uint32_t>(definition.data() + 51);
    const std::size_t end =
        std::min(definition.size(), kIndexCountsAt + 12 * std::min<std::size_t>(physical, 1024));
    std::fill_n(definition.begin() + kRowCountAt, 8, std::byte{0});
    std::fill(definition.begin() + kIndexCountsAt, definition.begin() + static_cast<std::ptrdiff_t>(end),
              std::byte{0});
}

TableDefinition parseDefinition(Pager &pager, DefinitionBytes source)
{
    TableDefinition table;
    table.pages = std::move(source.pages);
    Reader reader(source.bytes, Place{pager, table.page()}, "the definition");
    const Counts counts = readHeader(reader, table);
    reader.take(12 * counts.physical);
    for (std::size_t i = 0; i < counts.columns; ++i)
        table.columns.push_back(readColumn(reader));
    for (Column &column : table.columns)
        column.name = reader.name();
    checkColumns(table, reader.place());
    readIndexes(reader, table, counts);
    readLongValueMaps(reader, table);
    std::stable_sort(table.columns.begin(), table.columns.end(),
                     [](const Column &a, const Column &b) { return a.ordinal < b.ordinal; });
    table.fixedEnd = endOfFixedPart(table.columns);
    blankCounts(source.bytes);
    table.fixedContent = std::move(source.bytes);
    return table;
}

} // namespace vardelin::jet
