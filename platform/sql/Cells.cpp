#include "platform/sql/Cells.h"

#include <QByteArrayView>
#include <QUuid>
#include <span>

namespace vardelin {

namespace {

constexpr int kDataTypeConversion = 3421;
constexpr int kFieldTooSmall = 3163;

template <class... F>
struct Overloaded : F...
{
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

Decimal decimalOf(const jet::Decimal &number)
{
    Decimal::Digits magnitude = 0;
    for (const std::uint32_t word : {number.magnitude[1], number.magnitude[2], number.magnitude[3]})
        magnitude = magnitude << 32 | word;
    const std::optional<Decimal> decimal = Decimal::fromParts(number.negative, magnitude, number.scale);
    if (!decimal || number.magnitude[0] != 0)
        throw RunTimeError(RunTime::Overflow);
    return *decimal;
}

QString guidText(const jet::Guid &guid)
{
    // The first three fields are little-endian in the file.
    static constexpr std::size_t kOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    QByteArray bytes;
    for (const std::size_t i : kOrder)
        bytes.append(static_cast<char>(guid.bytes[i]));
    return QUuid::fromRfc4122(bytes).toString(QUuid::WithBraces).toUpper();
}

jet::Decimal decimalCell(Decimal number, int scale)
{
    // Brought to the column's scale by the sum with a zero of that scale; more places than the column has are
    // an error.
    number = number + *Decimal::fromParts(false, 0, scale);
    if (number.scale() != scale)
        throw RunTimeError(kDataTypeConversion);
    jet::Decimal cell;
    cell.negative = number.digits() < 0;
    cell.scale = static_cast<std::uint8_t>(scale);
    Decimal::Digits magnitude = cell.negative ? -number.digits() : number.digits();
    for (std::size_t i = 4; i-- > 0; magnitude >>= 32)
        cell.magnitude[i] = static_cast<std::uint32_t>(magnitude);
    return cell;
}

std::u16string textCell(const Value &value, const jet::Column &column)
{
    std::u16string text = toU16(toText(value));
    if (column.type == jet::ColumnType::Text && text.size() > column.length / 2u)
        throw RunTimeError(kFieldTooSmall);
    return text;
}

jet::Bytes bytesCell(const Value &value)
{
    const QByteArray bytes = toText(value).toLatin1();
    const auto view = std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    return {view.begin(), view.end()};
}

jet::Cell convertedCell(const Value &value, const jet::Column &column)
{
    switch (column.type) {
    case jet::ColumnType::Boolean:
        return toBoolean(value);
    case jet::ColumnType::Byte: {
        const std::int16_t whole = toInteger(value);
        if (whole < 0 || whole > 255)
            throw RunTimeError(RunTime::Overflow);
        return static_cast<std::uint8_t>(whole);
    }
    case jet::ColumnType::Integer:
        return toInteger(value);
    case jet::ColumnType::Long:
        return toLong(value);
    case jet::ColumnType::Currency:
        return jet::Currency{toCurrency(value).tenThousandths};
    case jet::ColumnType::Single:
        return toSingle(value);
    case jet::ColumnType::Double:
        return toDouble(value);
    case jet::ColumnType::DateTime:
        return jet::DateTime{toDate(value).days};
    case jet::ColumnType::Text:
    case jet::ColumnType::Memo:
        return textCell(value, column);
    case jet::ColumnType::Binary:
    case jet::ColumnType::Ole:
    case jet::ColumnType::Big:
        return bytesCell(value);
    case jet::ColumnType::Decimal:
        return decimalCell(toDecimal(value), column.scale);
    case jet::ColumnType::Guid:
        break;
    }
    throw RunTimeError(kDataTypeConversion);
}

} // namespace

Value toValue(const jet::Cell &cell)
{
    return std::visit(
        Overloaded{[](std::monostate) { return Value(NullValue()); },
                   [](std::uint8_t whole) { return Value(static_cast<std::int16_t>(whole)); },
                   [](jet::Currency money) { return Value(Currency{money.tenThousandths}); },
                   [](jet::DateTime date) { return Value(DateSerial{date.days}); },
                   [](const std::u16string &text) { return Value(toQString(text)); },
                   [](const jet::Bytes &bytes) {
                       return Value(QString::fromLatin1(QByteArrayView(bytes.data(), std::ssize(bytes))));
                   },
                   [](const jet::Guid &guid) { return Value(guidText(guid)); },
                   [](const jet::Decimal &number) { return Value(decimalOf(number)); },
                   [](const auto &plain) { return Value(plain); }},
        cell);
}

jet::Cell toCell(const Value &value, const jet::Column &column)
{
    if (value.isNull() || value.isEmpty())
        return {};
    try {
        return convertedCell(value, column);
    } catch (const RunTimeError &error) {
        if (error.number() == RunTime::TypeMismatch || error.number() == RunTime::Overflow)
            throw RunTimeError(kDataTypeConversion);
        throw;
    }
}

QString toQString(std::u16string_view text)
{
    // Not fromUtf16: it takes a byte order mark off.
    return QString(reinterpret_cast<const QChar *>(text.data()), static_cast<qsizetype>(text.size()));
}

std::u16string toU16(QStringView text)
{
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

void rethrow(const jet::Error &error)
{
    throw RunTimeError(error.number(), QString::fromUtf8(error.what()));
}

} // namespace vardelin
