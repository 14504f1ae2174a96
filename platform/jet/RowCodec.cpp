#include "platform/jet/RowCodec.h"

#include "platform/jet/Error.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::byte kCompressed[] = {std::byte{0xFF}, std::byte{0xFE}};

bool isCompressed(std::span<const std::byte> stored)
{
    return stored.size() >= 2 && stored[0] == kCompressed[0] && stored[1] == kCompressed[1];
}

bool maskBit(const std::byte *mask, std::size_t number)
{
    return (std::to_integer<unsigned>(mask[number / 8]) >> (number % 8) & 1) != 0;
}

std::span<const std::byte> variableField(const Column &column, std::span<const std::byte> body,
                                         RowPlace place)
{
    if (body.size() < 6)
        place.damaged("is too short for its variable columns");
    const std::size_t count = load<std::uint16_t>(body.data() + body.size() - 2);
    if (column.variableIndex >= count || body.size() < 6 + 2 * count)
        place.damaged("has too few variable columns");
    const std::byte *starts = body.data() + body.size() - 4 - 2 * std::size_t{column.variableIndex};
    const std::size_t begin = load<std::uint16_t>(starts), end = load<std::uint16_t>(starts - 2);
    if (begin < 2 || end < begin || end > body.size() - 4 - 2 * count)
        place.damaged("has a value that lies outside it");
    return body.subspan(begin, end - begin);
}

template <class T>
Bytes bytesOf(T value)
{
    Bytes bytes(sizeof value);
    store(bytes.data(), value);
    return bytes;
}

Bytes encodeDecimal(const Decimal &value)
{
    Bytes bytes(17);
    bytes[0] = value.negative ? std::byte{0x80} : std::byte{0};
    for (std::size_t i = 0; i < 4; ++i)
        store(bytes.data() + 1 + 4 * i, value.magnitude[i]);
    return bytes;
}

Decimal decodeDecimal(const Column &column, const std::byte *stored)
{
    Decimal value;
    value.negative = stored[0] != std::byte{0};
    value.scale = column.scale;
    for (std::size_t i = 0; i < 4; ++i)
        value.magnitude[i] = load<std::uint32_t>(stored + 1 + 4 * i);
    return value;
}

// Decimal arithmetic in place, most significant word first: times ten. False: it doesn't fit.
bool timesTen(std::array<std::uint32_t, 4> &magnitude)
{
    std::uint64_t carry = 0;
    for (auto word = magnitude.rbegin(); word != magnitude.rend(); ++word) {
        carry += std::uint64_t{*word} * 10;
        *word = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    return carry == 0;
}

// Divided by ten; the remainder.
std::uint32_t tenth(std::array<std::uint32_t, 4> &magnitude)
{
    std::uint64_t rest = 0;
    for (std::uint32_t &word : magnitude) {
        rest = rest << 32 | word;
        word = static_cast<std::uint32_t>(rest / 10);
        rest %= 10;
    }
    return static_cast<std::uint32_t>(rest);
}

int digitsOf(std::array<std::uint32_t, 4> magnitude)
{
    int digits = 0;
    for (; magnitude != std::array<std::uint32_t, 4>{}; ++digits)
        tenth(magnitude);
    return digits;
}

// A fixed Text or Binary column fills its whole place.
Bytes padded(const Column &column, Bytes bytes)
{
    if (!column.fixed || fixedSize(column.type) != 0)
        return bytes;
    const std::size_t used = bytes.size();
    bytes.resize(column.length);
    if (column.type == ColumnType::Text) {
        for (std::size_t at = used; at + 2 <= bytes.size(); at += 2)
            store(bytes.data() + at, u' ');
    }
    return bytes;
}

std::size_t headerAndMask(const TableDefinition &table)
{
    const std::size_t mask = (table.maxColumns + 7U) / 8;
    const std::size_t variable = table.variableColumns == 0 ? 0 : 4 + 2 * std::size_t{table.variableColumns};
    return 2 + table.fixedEnd + variable + mask;
}

void appendVariablePart(const TableDefinition &table, std::span<const StoredField> fields, Bytes &row)
{
    std::vector<std::span<const std::byte>> values(table.variableColumns);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!table.columns[i].fixed)
            values[table.columns[i].variableIndex] = fields[i].bytes;
    }
    std::vector<std::uint16_t> ends;
    for (const auto &value : values) {
        ends.push_back(static_cast<std::uint16_t>(row.size()));
        row.insert(row.end(), value.begin(), value.end());
    }
    ends.push_back(static_cast<std::uint16_t>(row.size()));
    std::size_t at = row.size();
    row.resize(at + 2 * ends.size() + 2);
    for (auto end = ends.rbegin(); end != ends.rend(); ++end, at += 2)
        store(row.data() + at, *end);
    store(row.data() + at, table.variableColumns);
}

} // namespace

void RowPlace::damaged(const char *what) const
{
    Place{pager, id.page}.damaged("row " + std::to_string(id.row) + " " + what);
}

StoredField readField(const TableDefinition &table, const Column &column, std::span<const std::byte> row,
                      RowPlace place)
{
    if (row.size() < 3)
        place.damaged("is too short");
    const std::size_t columns = load<std::uint16_t>(row.data()), maskBytes = (columns + 7) / 8;
    if (columns == 0 || columns > table.maxColumns || row.size() < 2 + maskBytes)
        place.damaged("doesn't fit its table");
    const auto body = row.first(row.size() - maskBytes);
    if (column.number >= columns || !maskBit(row.data() + body.size(), column.number))
        return {};
    if (column.type == ColumnType::Boolean)
        return {true, {}};
    if (!column.fixed)
        return {true, variableField(column, body, place)};
    const std::size_t begin = 2U + column.fixedOffset;
    const std::size_t size = fixedSize(column.type) ? fixedSize(column.type) : column.length;
    if (begin + size > body.size())
        place.damaged("ends within its fixed part");
    return {true, body.subspan(begin, size)};
}

std::size_t encodedLength(const TableDefinition &table, std::span<const StoredField> fields)
{
    std::size_t length = headerAndMask(table);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!table.columns[i].fixed)
            length += fields[i].bytes.size();
    }
    return length;
}

Bytes encodeRow(const TableDefinition &table, std::span<const StoredField> fields)
{
    Bytes row;
    row.reserve(encodedLength(table, fields));
    row.resize(2 + table.fixedEnd);
    store(row.data(), table.maxColumns);
    std::array<std::byte, 128> mask{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Column &column = table.columns[i];
        if (!fields[i].present)
            continue;
        mask[column.number / 8U] |= std::byte{static_cast<unsigned char>(1U << (column.number % 8U))};
        if (column.fixed && !fields[i].bytes.empty())
            std::memcpy(row.data() + 2 + column.fixedOffset, fields[i].bytes.data(), fields[i].bytes.size());
    }
    if (table.variableColumns != 0)
        appendVariablePart(table, fields, row);
    row.insert(row.end(), mask.begin(), mask.begin() + (table.maxColumns + 7) / 8);
    return row;
}

Bytes encodeText(std::u16string_view text, bool compress)
{
    const bool narrow = std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= 1 && c <= 0xFF; });
    if (!compress || text.size() < 3 || !narrow) {
        const auto raw = std::as_bytes(std::span(text));
        return {raw.begin(), raw.end()};
    }
    Bytes stored(text.size() + 2);
    stored[0] = kCompressed[0];
    stored[1] = kCompressed[1];
    std::transform(text.begin(), text.end(), stored.begin() + 2,
                   [](char16_t c) { return static_cast<std::byte>(c); });
    return stored;
}

namespace {

// Behind the mark: a zero byte switches between one byte and two bytes a character.
std::size_t decodeMixed(std::span<const std::byte> stored, RowPlace place, char16_t *units)
{
    char16_t *at = units;
    bool wide = false;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (stored[i] == std::byte{0})
            wide = !wide;
        else if (!wide)
            *at++ = std::to_integer<char16_t>(stored[i]);
        else if (i + 1 < stored.size())
            *at++ = load<char16_t>(stored.data() + i++);
        else
            place.damaged("has a compressed text of half a character");
    }
    return static_cast<std::size_t>(at - units);
}

} // namespace

bool isPlainText(std::span<const std::byte> stored)
{
    return std::endian::native == std::endian::little && stored.size() % 2 == 0 && !isCompressed(stored) &&
           reinterpret_cast<std::uintptr_t>(stored.data()) % alignof(char16_t) == 0;
}

std::size_t decodeText(std::span<const std::byte> stored, RowPlace place, char16_t *units)
{
    if (isCompressed(stored)) {
        stored = stored.subspan(2);
        if (!stored.empty() && std::memchr(stored.data(), 0, stored.size()) != nullptr)
            return decodeMixed(stored, place, units);
        std::transform(stored.begin(), stored.end(), units,
                       [](std::byte byte) { return std::to_integer<char16_t>(byte); });
        return stored.size();
    }
    if (stored.size() % 2 != 0)
        place.damaged("has a text of half a character");
    if (!stored.empty())
        std::memcpy(units, stored.data(), stored.size());
    return stored.size() / 2;
}

std::u16string decodeText(std::span<const std::byte> stored, RowPlace place)
{
    std::u16string text(isCompressed(stored) ? stored.size() - 2 : stored.size() / 2, u'\0');
    text.resize(decodeText(stored, place, text.data()));
    return text;
}

bool cellFits(const Column &column, const Cell &cell)
{
    if (isNull(cell))
        return true;
    switch (column.type) {
    case ColumnType::Boolean:
        return std::holds_alternative<bool>(cell);
    case ColumnType::Byte:
        return std::holds_alternative<std::uint8_t>(cell);
    case ColumnType::Integer:
        return std::holds_alternative<std::int16_t>(cell);
    case ColumnType::Long:
        return std::holds_alternative<std::int32_t>(cell);
    case ColumnType::Currency:
        return std::holds_alternative<Currency>(cell);
    case ColumnType::Single:
        return std::holds_alternative<float>(cell);
    case ColumnType::Double:
        return std::holds_alternative<double>(cell);
    case ColumnType::DateTime:
        return std::holds_alternative<DateTime>(cell);
    case ColumnType::Text:
    case ColumnType::Memo:
        return std::holds_alternative<std::u16string>(cell);
    case ColumnType::Binary:
    case ColumnType::Ole:
    case ColumnType::Big:
        return std::holds_alternative<Bytes>(cell);
    case ColumnType::Guid:
        return std::holds_alternative<Guid>(cell);
    case ColumnType::Decimal:
        return std::holds_alternative<Decimal>(cell);
    }
    return false;
}

Decimal decimalFor(const Column &column, Decimal value)
{
    for (; value.scale > column.scale; --value.scale) {
        if (tenth(value.magnitude) != 0)
            throw Error(Code::DecimalTruncated);
    }
    bool fits = true;
    for (; fits && value.scale < column.scale; ++value.scale)
        fits = timesTen(value.magnitude);
    if (!fits || (column.precision != 0 && digitsOf(value.magnitude) > column.precision))
        throw Error(Code::DecimalTooLarge);
    value.negative = value.negative && value.magnitude != Decimal{}.magnitude;
    return value;
}

Bytes encodeCell(const Column &column, const Cell &cell)
{
    switch (column.type) {
    case ColumnType::Byte:
        return bytesOf(std::get<std::uint8_t>(cell));
    case ColumnType::Integer:
        return bytesOf(std::get<std::int16_t>(cell));
    case ColumnType::Long:
        return bytesOf(std::get<std::int32_t>(cell));
    case ColumnType::Currency:
        return bytesOf(std::get<Currency>(cell).tenThousandths);
    case ColumnType::Single:
        return bytesOf(std::get<float>(cell));
    case ColumnType::Double:
        return bytesOf(std::get<double>(cell));
    case ColumnType::DateTime:
        return bytesOf(std::get<DateTime>(cell).days);
    case ColumnType::Text:
        return padded(column, encodeText(std::get<std::u16string>(cell), column.compress && !column.fixed));
    case ColumnType::Guid:
        return bytesOf(std::get<Guid>(cell).bytes);
    case ColumnType::Decimal:
        return encodeDecimal(std::get<Decimal>(cell));
    default:
        return padded(column, std::get<Bytes>(cell));
    }
}

Cell decodeCell(const Column &column, std::span<const std::byte> stored, RowPlace place)
{
    if (stored.size() < fixedSize(column.type))
        place.damaged("has a value that is too short for its type");
    switch (column.type) {
    case ColumnType::Boolean:
        return true;
    case ColumnType::Byte:
        return load<std::uint8_t>(stored.data());
    case ColumnType::Integer:
        return load<std::int16_t>(stored.data());
    case ColumnType::Long:
        return load<std::int32_t>(stored.data());
    case ColumnType::Currency:
        return Currency{load<std::int64_t>(stored.data())};
    case ColumnType::Single:
        return load<float>(stored.data());
    case ColumnType::Double:
        return load<double>(stored.data());
    case ColumnType::DateTime:
        return DateTime{load<double>(stored.data())};
    case ColumnType::Text:
        return decodeText(stored, place);
    case ColumnType::Guid:
        return Guid{load<std::array<std::byte, 16>>(stored.data())};
    case ColumnType::Decimal:
        return decodeDecimal(column, stored.data());
    default:
        return Bytes(stored.begin(), stored.end());
    }
}

} // namespace vardelin::jet
