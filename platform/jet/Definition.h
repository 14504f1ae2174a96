#pragma once
// A table's definition: its columns, indexes and maps. One byte string over a chain of pages of type 2; of
// every page but the first the bytes from 8 on count. The number of the first page is the identity of the
// table.
//
// Page:    0 u8 2, 1 u8 1, 2 u16 max(0, 4096 - used - 8), 4 u32 next page or 0.
// String:
//   8   u32  length of all of it, page header included
//   12  u32  0x659
//   16  u32  number of rows
//   20  i32  last auto-number given out
//   24  u8   1
//   40  u8   0x4E user table, 0x53 base table
//   41  u16  columns that the table has ever had; the next column number
//   43  u16  variable columns that it has ever had
//   45  u16  columns
//   47  u32  logical indexes
//   51  u32  physical indexes
//   55  u32  row pointer of the owned-pages map
//   59  u32  row pointer of the free-space map
//   63       12 bytes a physical index: u32 rows when built, u32 distinct keys, u32 0
//   then     column descriptors, column names, physical indexes, logical indexes, names of these, long value
//            maps (u16 column number, u32 owned pages, u32 free space), u16 0xFFFF
// A name is a u16 length in bytes and UTF-16LE.
//
//   Column descriptor (25): 0 u8 type, 1 u32 0x659, 5 u16 number, 7 u16 variable index, 9 u16 ordinal,
//     11 u16 locale (Decimal: u8 precision, u8 scale), 13 u16 order version in the high byte, 15 u8 flags,
//     16 u8 compress, 17 u32 0, 21 u16 fixed offset, 23 u16 length
//   Physical index (52): 0 u32 0x783, 4 ten times u16 column number and u8 ascending (unused: FF FF 00),
//     34 u32 usage map, 38 u32 root page, 46 u8 flags
//   Logical index (28): 0 u32 0x659, 4 u32 number, 8 u32 physical index, 12 u8 foreign key side, 13 u32 index
//     of the other table or 0xFFFFFFFF, 17 u32 other table, 21 u8 and 22 u8 cascades (4 where there is no
//     foreign key), 23 u8 kind, 24 u32 0
//
// Invariants:
//   1. The null mask goes by column number, the variable part by variable index, the user by ordinal (equal
//      ones by place).
//   2. Column numbers, variable indexes and fixed offsets are handed out in order of creation and never again.
//   3. Row count, auto-number and distinct counts change with the rows, and lie on the first page; all else
//      is fixed.

#include "platform/jet/Bytes.h"

#include <optional>

namespace vardelin::jet {

inline constexpr std::size_t kRowCountAt = 16, kAutoNumberAt = 20, kIndexCountsAt = 63;

enum ColumnFlags : std::uint8_t {
    kFixedColumn = 0x01,
    kNullableColumn = 0x02,
    kAutoNumberColumn = 0x04,
    kSystemColumn = 0x10,
    kSecurityColumn = 0x20
};

enum IndexFlags : std::uint8_t {
    kUniqueIndex = 0x01,
    kIgnoreNullsIndex = 0x02,
    kRequiredIndex = 0x08,
    kAnyIndex = 0x80
};

struct LongValueMaps
{
    std::uint16_t column = 0; // column number
    RowId owned, freeSpace;
};

struct TableDefinition
{
    std::vector<PageNo> pages; // the chain; the first is the table's identity
    std::u16string name;
    RowId catalogRow;
    std::uint16_t maxColumns = 0, variableColumns = 0;
    RowId owned, freeSpace;
    std::vector<Column> columns; // in the user's order
    std::vector<PhysicalIndex> physical;
    std::vector<LogicalIndex> logical;
    std::vector<LongValueMaps> longValues;
    std::size_t fixedEnd = 0; // bytes of the fixed part of a row written now
    bool knownOrder = true;   // every text key can be made
    // The string without what changes with the rows, and properties: tells whether it is still the same.
    Bytes fixedContent;
    Bytes properties; // the property blob

    PageNo page() const { return pages.front(); }
    const Column *byNumber(std::uint16_t number) const;
    std::optional<std::size_t> placeOf(std::uint16_t number) const; // in columns
    const LongValueMaps &longValueMaps(std::uint16_t column) const; // maps at page 0 where the file has none
    std::optional<std::size_t> autoNumberColumn() const;
    // The index at this end of a relationship whose other end is `index` of the table on page `table`.
    const LogicalIndex *counterpartOf(const LogicalIndex &index, PageNo table) const;
};

// Whether a key of the one index, as it lies in the tree, can be looked for in the other.
bool haveEqualKeys(const TableDefinition &left, const PhysicalIndex &leftIndex, const TableDefinition &right,
                   const PhysicalIndex &rightIndex);

// The byte string of a definition and its pages.
struct DefinitionBytes
{
    std::vector<PageNo> pages;
    Bytes bytes;
};
DefinitionBytes readDefinition(Pager &pager, PageNo first);
// Without properties and name, which stand in the catalog.
TableDefinition parseDefinition(Pager &pager, DefinitionBytes source);
// The same string without row count, auto-number and index counts.
void blankCounts(Bytes &definition);

// What a definition is written from.
struct DraftColumn
{
    Column column;
    std::uint8_t flags = kNullableColumn;
};

struct DraftIndex
{
    PhysicalIndex index;
    std::uint8_t flags = kAnyIndex;
};

struct DefinitionDraft
{
    bool base = false;
    std::uint16_t maxColumns = 0, variableColumns = 0;
    RowId owned, freeSpace;
    std::vector<DraftColumn> columns; // in the order of the list
    std::vector<DraftIndex> physical;
    std::vector<LogicalIndex> logical; // by name
    std::vector<LongValueMaps> longValues;
};

// Hands out numbers, variable indexes and fixed offsets; columns in order of creation.
void numberColumns(DefinitionDraft &draft);
Bytes serialiseDefinition(const DefinitionDraft &draft);
std::size_t pagesForDefinition(std::size_t bytes);
void writeDefinition(Pager &pager, std::span<const PageNo> pages, std::span<const std::byte> definition);

// Bytes of a value of a type with a width of its own; 0 for Text, Binary, Memo, OLE and Big.
std::size_t fixedSize(ColumnType type);
bool isLongValue(ColumnType type);

} // namespace vardelin::jet
