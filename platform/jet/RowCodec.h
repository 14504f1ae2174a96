#pragma once
// Rows as bytes, and the values in them.
//
// Row:
//   u16                     number of columns that the table had ever had when the row was written
//   fixed part              each fixed column at 2 + its fixed offset; Null ones keep their place
//   variable part           the variable values in order of variable index, back to back
//   u16                     end of the variable part, from the row's start
//   u16 each                start of each variable value, in falling order of variable index
//   u16                     number of variable columns
//   (columns + 7) / 8       null mask: bit n (lowest first) belongs to column number n; 1 = not Null; the value
//                           of a Boolean
//
// A table that has never had a variable column has no end, starts and count.
//
// Text: UTF-16LE; or FF FE and a byte a character (U+0001 to U+00FF), where a zero byte switches to two bytes
// a character and back. Told apart by the first two bytes. Written compressed when asked for, from 3 units
// on, if all lie in U+0001 to U+00FF.
//
// Invariants:
//   1. A row with fewer columns than the definition is older: the missing ones are Null, Boolean ones No.
//   2. Fixed or variable is told by the column's flag, never by its type.
//   3. A zero-length text isn't Null: its mask bit is set.

#include "platform/jet/Definition.h"

#include <optional>

namespace vardelin::jet {

// A value as it lies in a row: Null (no bytes) or its bytes; for a Boolean whether it is set.
struct StoredField
{
    bool present = false;
    std::span<const std::byte> bytes;
};

// Where a row lies, to say so when it is damaged.
struct RowPlace
{
    const Pager &pager;
    RowId id;
    [[noreturn]] void damaged(const char *what) const;
};

StoredField readField(const TableDefinition &table, const Column &column, std::span<const std::byte> row,
                      RowPlace place);
// fields: one for each of table.columns, in their order.
std::size_t encodedLength(const TableDefinition &table, std::span<const StoredField> fields);
Bytes encodeRow(const TableDefinition &table, std::span<const StoredField> fields);

Bytes encodeText(std::u16string_view text, bool compress);
std::u16string decodeText(std::span<const std::byte> stored, RowPlace place);
// Whether the stored form is the text itself: UTF-16 in the order of this machine, where it can be read in
// place.
bool isPlainText(std::span<const std::byte> stored);
// The same to `units`, which takes as many as there are bytes; how many they are.
std::size_t decodeText(std::span<const std::byte> stored, RowPlace place, char16_t *units);

// Values of any type but Boolean, Memo and OLE.
Bytes encodeCell(const Column &column, const Cell &cell);
// The same number at the scale of its column. DecimalTruncated: it has more places; DecimalTooLarge: more
// digits.
Decimal decimalFor(const Column &column, Decimal value);
Cell decodeCell(const Column &column, std::span<const std::byte> stored, RowPlace place);

// Whether the cell is of the alternative that the column's type asks for; Null always is.
bool cellFits(const Column &column, const Cell &cell);

} // namespace vardelin::jet
