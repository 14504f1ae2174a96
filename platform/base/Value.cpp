#include "platform/base/Value.h"

#include "platform/base/Dates.h"
#include "platform/base/DigitString.h"
#include "platform/base/RunTimeError.h"

#include <cmath>
#include <limits>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

template <class... F>
struct Overloaded : F...
{
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

[[noreturn]] void invalidUseOfNull()
{
    throw RunTimeError(RunTime::InvalidUseOfNull);
}

DigitString numberOf(const QString &text)
{
    const std::optional<DigitString> number = digitsFromText(text);
    if (!number)
        throw RunTimeError(RunTime::TypeMismatch);
    return *number;
}

double finite(double value)
{
    if (!std::isfinite(value))
        throw RunTimeError(RunTime::Overflow);
    return value;
}

// Halves to the even number: the default rounding of the machine, which the program never changes.
template <class Whole>
Whole rounded(double value)
{
    const double whole = std::nearbyint(finite(value));
    if (whole < double{std::numeric_limits<Whole>::min()} ||
        whole > double{std::numeric_limits<Whole>::max()})
        throw RunTimeError(RunTime::Overflow);
    return static_cast<Whole>(whole);
}

template <class Float>
QString floatText(Float value, int significant)
{
    if (std::isnan(value))
        return u"-1.#IND"_s;
    if (std::isinf(value))
        return value < 0 ? u"-1.#INF"_s : u"1.#INF"_s;
    return generalText(digitsOf(value), significant);
}

// Days that a date can be: 1 January 100 to the end of 31 December 9999.
DateSerial checkedDate(double days)
{
    if (!(days > kFirstDay - 1 && days < kLastDay + 1))
        throw RunTimeError(RunTime::Overflow);
    return {days};
}

DateSerial dateOf(const QString &text)
{
    if (const std::optional<DateSerial> date = dateFromText(text))
        return *date;
    return checkedDate(toDouble(numberOf(text)));
}

} // namespace

QString toText(const Value &value)
{
    return std::visit(
        Overloaded{[](EmptyValue) { return QString(); }, [](NullValue) -> QString { invalidUseOfNull(); },
                   [](bool on) { return on ? u"True"_s : u"False"_s; },
                   [](std::int16_t whole) { return QString::number(whole); },
                   [](std::int32_t whole) { return QString::number(whole); },
                   [](float number) { return numberText(number); },
                   [](double number) { return numberText(number); },
                   [](Currency money) { return currencyText(money); },
                   [](const Decimal &number) { return number.toText(); },
                   [](DateSerial date) { return dateText(date); }, [](const QString &text) { return text; }},
        value.variant());
}

QString joinText(const Value &value)
{
    return value.isNull() ? QString() : toText(value);
}

bool toBoolean(const Value &value)
{
    if (const auto *text = std::get_if<QString>(&value.variant())) {
        const QString word = text->trimmed();
        if (word.compare("True"_L1, Qt::CaseInsensitive) == 0)
            return true;
        if (word.compare("False"_L1, Qt::CaseInsensitive) == 0)
            return false;
    }
    return toDouble(value) != 0;
}

std::int16_t toInteger(const Value &value)
{
    return rounded<std::int16_t>(toDouble(value));
}

std::int32_t toLong(const Value &value)
{
    return rounded<std::int32_t>(toDouble(value));
}

float toSingle(const Value &value)
{
    const auto single = static_cast<float>(toDouble(value));
    if (!std::isfinite(single))
        throw RunTimeError(RunTime::Overflow);
    return single;
}

double toDouble(const Value &value)
{
    return std::visit(
        Overloaded{[](EmptyValue) { return 0.0; }, [](NullValue) -> double { invalidUseOfNull(); },
                   [](bool on) { return on ? -1.0 : 0.0; },
                   [](std::int16_t whole) -> double { return whole; },
                   [](std::int32_t whole) -> double { return whole; },
                   [](float number) { return double{number}; }, [](double number) { return number; },
                   [](Currency money) { return static_cast<double>(money.tenThousandths) / 10000; },
                   [](const Decimal &number) { return number.toDouble(); },
                   [](DateSerial date) { return date.days; },
                   [](const QString &text) { return toDouble(numberOf(text)); }},
        value.variant());
}

Currency toCurrency(const Value &value)
{
    const auto fromFloat = [](double number) {
        const double scaled = std::nearbyint(finite(number) * 10000);
        constexpr double kLimit = 9223372036854775808.0;
        if (scaled < -kLimit || scaled >= kLimit)
            throw RunTimeError(RunTime::Overflow);
        return Currency{static_cast<std::int64_t>(scaled)};
    };
    return std::visit(Overloaded{[](Currency money) { return money; },
                                 [&](float number) { return fromFloat(double{number}); },
                                 [&](double number) { return fromFloat(number); },
                                 [&](DateSerial date) { return fromFloat(date.days); },
                                 [&](const auto &) { return toDecimal(value).toCurrency(); }},
                      value.variant());
}

Decimal toDecimal(const Value &value)
{
    const auto fromFloat = [](auto number) {
        finite(double{number});
        return Decimal::fromDigits(digitsOf(number));
    };
    return std::visit(
        Overloaded{
            [](EmptyValue) { return Decimal(); }, [](NullValue) -> Decimal { invalidUseOfNull(); },
            [](bool on) { return Decimal(on ? -1 : 0); }, [](std::int16_t whole) { return Decimal(whole); },
            [](std::int32_t whole) { return Decimal(whole); },
            [&](float number) { return fromFloat(number); }, [&](double number) { return fromFloat(number); },
            [](Currency money) { return Decimal(money); }, [](const Decimal &number) { return number; },
            [&](DateSerial date) { return fromFloat(date.days); },
            [](const QString &text) { return Decimal::fromDigits(numberOf(text)); }},
        value.variant());
}

DateSerial toDate(const Value &value)
{
    if (const auto *date = std::get_if<DateSerial>(&value.variant()))
        return *date;
    if (const auto *text = std::get_if<QString>(&value.variant()))
        return dateOf(*text);
    return checkedDate(toDouble(value));
}

bool isNumeric(const Value &value)
{
    if (const auto *text = std::get_if<QString>(&value.variant())) {
        const std::optional<DigitString> number = digitsFromText(*text);
        return number && number->point <= std::numeric_limits<double>::max_exponent10 + 1;
    }
    return !value.isNull() && !std::holds_alternative<DateSerial>(value.variant());
}

QString numberText(double value)
{
    return floatText(value, kDoubleDigits);
}

QString numberText(float value)
{
    return floatText(value, kSingleDigits);
}

} // namespace vardelin
