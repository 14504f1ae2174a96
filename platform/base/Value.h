#pragma once
// What a column, a variant or an expression can hold, and the run time's rules for turning one kind into
// another.

#include "platform/base/Decimal.h"

#include <QString>
#include <variant>

namespace vardelin {

// A moment as the engine keeps it: days since 30 December 1899, the time of day as the fraction, which runs
// forward also for days before that. Range: year 100 to 9999.
struct DateSerial
{
    double days = 0;
    bool operator==(const DateSerial &) const = default;
};

struct EmptyValue
{
    bool operator==(const EmptyValue &) const = default;
};
struct NullValue
{
    bool operator==(const NullValue &) const = default;
};

class Value
{
public:
    using Variant = std::variant<EmptyValue, NullValue, bool, std::int16_t, std::int32_t, float, double,
                                 Currency, Decimal, DateSerial, QString>;

    Value() = default; // Empty
    Value(NullValue null) : m_value(null) {}
    Value(bool value) : m_value(value) {}
    Value(std::int16_t value) : m_value(value) {}
    Value(std::int32_t value) : m_value(value) {}
    Value(float value) : m_value(value) {}
    Value(double value) : m_value(value) {}
    Value(Currency value) : m_value(value) {}
    Value(Decimal value) : m_value(value) {}
    Value(DateSerial value) : m_value(value) {}
    Value(const QString &value) : m_value(value) {}
    Value(QString &&value) : m_value(std::move(value)) {}
    Value(const char *) = delete;

    bool isEmpty() const { return std::holds_alternative<EmptyValue>(m_value); }
    bool isNull() const { return std::holds_alternative<NullValue>(m_value); }
    bool isText() const { return std::holds_alternative<QString>(m_value); }
    const Variant &variant() const { return m_value; }
    bool operator==(const Value &) const = default; // same kind and same content; no conversion

private:
    Variant m_value;
};

// Conversions. Each throws RunTimeError: 94 for Null, 13 for text that isn't of the kind, 6 where the value
// doesn't fit.
QString toText(const Value &value);   // the default text form: toText(Value(60.5)) is "60.5"; Empty is ""
QString joinText(const Value &value); // as & does: Null is "", too
bool toBoolean(const Value &value);
std::int16_t toInteger(const Value &value); // halves to the even number, as toLong
std::int32_t toLong(const Value &value);
float toSingle(const Value &value);
double toDouble(const Value &value);
Currency toCurrency(const Value &value); // four decimals, halves to the even digit
Decimal toDecimal(const Value &value);   // exact from text, currency and whole numbers
DateSerial toDate(const Value &value);

// The number that a text begins with, blanks skipped; 0 where there is none. Never throws.
double val(QStringView text);

// Text that digitsFromText reads, any number, Boolean or Empty.
bool isNumeric(const Value &value);

// The default text of a number: 15 significant digits (float: 7), "0.5" with its zero. Exponent form
// ("1E+15", "1.15740740740741E-05", "3.33333333333333E-02") where the plain form has more than 15 (7) places
// on either side of the point.
QString numberText(double value);
QString numberText(float value);

// The default text of a moment in the United States setting: "10/16/2026 9:54:33 PM"; no time part at
// midnight; only the time for the day 0.
QString dateText(DateSerial date);

} // namespace vardelin
