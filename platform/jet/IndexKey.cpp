// The key of an index entry: for each key column a start byte and the value's bytes.
//
//            ascending          descending
//   Null     00                 FF
//   value    7F, value bytes    80, value bytes inverted
//
//   Integer, Long, Currency   big-endian, top bit flipped
//   Single, Double, DateTime  big-endian; not negative: top bit flipped; negative: all bits flipped
//   Byte                      the byte
//   Boolean                   Yes 00, No FF
//   Text, Memo                the text's key (TextOrder.h); descending: all of it inverted, then 00
//   GUID, Binary              groups of 8 bytes, each but the last followed by 09 (never inverted); the last
//                             padded with zeros and followed by its length; an empty value has no bytes. A
//                             GUID in the order in which it is printed
//   Decimal                   sign byte, 16 bytes of magnitude big-endian; not negative: FF and the magnitude;
//                             negative: 00 and the magnitude inverted. Descending inverts the magnitude, not
//                             the sign byte
#include "platform/jet/Error.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/TextOrder.h"

#include <bit>

namespace vardelin::jet {

namespace {

std::string inverted(std::string bytes)
{
    for (char &byte : bytes)
        byte = static_cast<char>(~static_cast<unsigned char>(byte));
    return bytes;
}

template <typename Unsigned>
std::string bigEndian(Unsigned value)
{
    std::string bytes;
    for (std::size_t i = sizeof value; i-- > 0;)
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> (8 * i))));
    return bytes;
}

template <typename Unsigned>
constexpr Unsigned kTopBit = static_cast<Unsigned>(Unsigned{1} << (8 * sizeof(Unsigned) - 1));

template <typename Unsigned, typename Signed>
std::string wholeKey(Signed value)
{
    return bigEndian(static_cast<Unsigned>(static_cast<Unsigned>(value) ^ kTopBit<Unsigned>));
}

template <typename Unsigned, typename Float>
std::string floatKey(Float value)
{
    const auto bits = std::bit_cast<Unsigned>(value);
    return bigEndian(static_cast<Unsigned>(bits & kTopBit<Unsigned> ? ~bits : bits ^ kTopBit<Unsigned>));
}

std::string text(const std::u16string &value, bool descending)
{
    std::string key = textKey(value);
    return descending ? inverted(std::move(key)) + '\0' : key;
}

std::string grouped(std::string_view bytes, bool descending)
{
    const auto turned = [descending](std::string part) {
        return descending ? inverted(std::move(part)) : part;
    };
    std::string key;
    for (; bytes.size() > 8; bytes.remove_prefix(8))
        key += turned(std::string(bytes.substr(0, 8))) + '\t';
    if (bytes.empty())
        return key;
    std::string last(bytes);
    last.resize(8, '\0');
    last.push_back(static_cast<char>(bytes.size()));
    return key + turned(std::move(last));
}

std::string_view asChars(const std::byte *bytes, std::size_t length)
{
    return {reinterpret_cast<const char *>(bytes), length};
}

std::string guid(const Guid &value, bool descending)
{
    static constexpr std::size_t kPrinted[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    std::string bytes;
    for (const std::size_t place : kPrinted)
        bytes.push_back(static_cast<char>(value.bytes[place]));
    return grouped(bytes, descending);
}

std::string decimal(const Decimal &value, bool descending)
{
    std::string magnitude;
    for (const std::uint32_t part : value.magnitude)
        magnitude += bigEndian(part);
    if (value.negative != descending)
        magnitude = inverted(std::move(magnitude));
    return (value.negative ? '\0' : '\xFF') + magnitude;
}

// The value bytes as they come behind the start byte.
struct ValueBytes
{
    bool descending;

    std::string turned(std::string ascending) const
    {
        return descending ? inverted(std::move(ascending)) : ascending;
    }

    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool value) const { return turned(value ? std::string(1, '\0') : "\xFF"); }
    std::string operator()(std::uint8_t value) const
    {
        return turned(std::string(1, static_cast<char>(value)));
    }
    std::string operator()(std::int16_t value) const { return turned(wholeKey<std::uint16_t>(value)); }
    std::string operator()(std::int32_t value) const { return turned(wholeKey<std::uint32_t>(value)); }
    std::string operator()(Currency value) const
    {
        return turned(wholeKey<std::uint64_t>(value.tenThousandths));
    }
    std::string operator()(float value) const { return turned(floatKey<std::uint32_t>(value)); }
    std::string operator()(double value) const { return turned(floatKey<std::uint64_t>(value)); }
    std::string operator()(DateTime value) const { return turned(floatKey<std::uint64_t>(value.days)); }
    std::string operator()(const std::u16string &value) const { return text(value, descending); }
    std::string operator()(const Bytes &value) const
    {
        return grouped(asChars(value.data(), value.size()), descending);
    }
    std::string operator()(const Guid &value) const { return guid(value, descending); }
    std::string operator()(const Decimal &value) const { return decimal(value, descending); }
};

// Which alternative of Cell a column of this type holds; npos for the types that no index can have.
std::size_t alternativeOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
        return 1;
    case ColumnType::Byte:
        return 2;
    case ColumnType::Integer:
        return 3;
    case ColumnType::Long:
        return 4;
    case ColumnType::Currency:
        return 5;
    case ColumnType::Single:
        return 6;
    case ColumnType::Double:
        return 7;
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Text:
    case ColumnType::Memo:
        return 9;
    case ColumnType::Binary:
        return 10;
    case ColumnType::Guid:
        return 11;
    case ColumnType::Decimal:
        return 12;
    case ColumnType::Ole:
    case ColumnType::Big:
        break;
    }
    return std::variant_npos;
}

std::string columnKey(ColumnType type, bool descending, const Cell &value)
{
    if (type == ColumnType::Boolean && isNull(value))
        return columnKey(type, descending, false); // a Boolean is never Null
    if (isNull(value))
        return std::string(1, descending ? '\xFF' : '\0');
    if (value.index() != alternativeOf(type))
        throw Error(Code::InvalidArgument, {}, "a value that doesn't fit the type of the key column");
    return (descending ? '\x80' : '\x7F') + std::visit(ValueBytes{descending}, value);
}

} // namespace

std::string indexKey(const PhysicalIndex &index, std::span<const ColumnType> types,
                     std::span<const Cell> values)
{
    if (types.size() != values.size() || values.size() > index.columns.size())
        throw Error(Code::InvalidArgument, {}, "more values than key columns");
    std::string key;
    for (std::size_t i = 0; i < values.size(); ++i)
        key += columnKey(types[i], index.columns[i].descending, values[i]);
    return key;
}

} // namespace vardelin::jet
