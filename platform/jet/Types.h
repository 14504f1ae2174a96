#pragma once
// The words that all of the engine uses: page numbers, row places, column types, cells, definitions.
//
// Numbers in the file are little-endian unless a header says otherwise. Lengths are bytes unless a name says
// otherwise.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vardelin::jet {

using PageNo = std::uint32_t;
inline constexpr std::size_t kPageSize = 4096;
inline constexpr PageNo kMaxPages = 524288; // 2 GiB

// The first place of a row: its identity in indexes, forwards and record sets. It lasts as long as the row.
struct RowId
{
    PageNo page = 0;
    std::uint8_t row = 0;
    auto operator<=>(const RowId &) const = default;
};

// The number by which the file knows a column's type.
enum class ColumnType : std::uint8_t {
    Boolean = 1,  // kept in the null mask; never Null
    Byte = 2,     // u8
    Integer = 3,  // i16
    Long = 4,     // i32
    Currency = 5, // i64, ten-thousandths
    Single = 6,   // f32
    Double = 7,   // f64
    DateTime = 8, // f64, days since 30 December 1899
    Binary = 9,   // up to 510 bytes
    Text = 10,    // up to 255 UTF-16 units
    Ole = 11,     // long value, bytes
    Memo = 12,    // long value, text
    Guid = 15,    // 16 bytes
    Decimal = 16, // 17 bytes; scale in the definition
    Big = 17      // up to 3992 bytes; found in system tables only
};

struct Currency
{
    std::int64_t tenThousandths = 0;
    auto operator<=>(const Currency &) const = default;
};

struct DateTime
{
    double days = 0; // since 30 December 1899; the fraction runs forward also before it
    auto operator<=>(const DateTime &) const = default;
};

struct Guid
{
    std::array<std::byte, 16> bytes{}; // as in the file
    auto operator<=>(const Guid &) const = default;
};

struct Decimal
{
    bool negative = false;
    std::array<std::uint32_t, 4> magnitude{}; // most significant first
    std::uint8_t scale = 0;
    auto operator<=>(const Decimal &) const = default;
};

using Bytes = std::vector<std::byte>;

// One cell's value; monostate is Null. The alternative follows the column's type: Boolean bool, Byte u8,
// Integer i16, Long i32, Currency, Single float, Double double, DateTime, Text and Memo u16string, Binary,
// OLE and Big Bytes, Guid, Decimal.
using Cell = std::variant<std::monostate, bool, std::uint8_t, std::int16_t, std::int32_t, Currency, float,
                          double, DateTime, std::u16string, Bytes, Guid, Decimal>;

inline bool isNull(const Cell &cell)
{
    return std::holds_alternative<std::monostate>(cell);
}

// A column as its table's definition and property blob describe it. Number, ordinal, place in the list and
// variable index are four different things: the null mask goes by number, the variable part by variable
// index, the user by ordinal.
struct Column
{
    std::u16string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t number = 0;
    std::uint16_t variableIndex = 0;
    std::uint16_t ordinal = 0;
    std::uint16_t fixedOffset = 0; // from behind the row's column count
    std::uint16_t length = 0;      // bytes; Text: 2 * characters; Memo, OLE: 0
    std::uint16_t locale = 0x0409; // of the text order
    std::uint8_t orderVersion = 0; // 0 is the only text order that this engine can write
    std::uint8_t precision = 0;    // Decimal
    std::uint8_t scale = 0;        // Decimal
    bool fixed = false;
    bool autoNumber = false;
    bool compress = false;
    bool required = false;        // from the property blob; none there: No
    bool allowZeroLength = false; // from the property blob; none there: Yes is read, and never written unsaid
};

struct IndexColumn
{
    std::uint16_t column = 0; // column number
    bool descending = false;
    bool operator==(const IndexColumn &) const = default;
};

// A physical index: a tree of entries in the file.
struct PhysicalIndex
{
    std::vector<IndexColumn> columns; // up to ten
    PageNo root = 0;                  // never changes
    RowId map;                        // row of its usage map
    bool unique = false;
    bool ignoreNulls = false; // rows whose key is all Null have no entry
    bool required = false;    // no Null in any key column
    std::uint32_t number = 0; // place in the definition
};

// A name for a physical index; several can share one.
struct LogicalIndex
{
    std::u16string name;
    std::uint32_t number = 0;   // order of creation
    std::uint32_t physical = 0; // place of the physical index
    bool primary = false;
    bool foreign = false;
    // Of a relationship, whose two tables have such an index each: which this is, and the other one.
    enum class Side : std::uint8_t { None = 0, ReferredTo = 1, Referring = 2 } side = Side::None;
    PageNo otherTable = 0;        // definition page
    std::uint32_t otherIndex = 0; // its number
};

} // namespace vardelin::jet
