#include "platform/sql/Operators.h"

#include "platform/base/RunTimeError.h"
#include "platform/jet/TextOrder.h"

#include <cmath>
#include <limits>

namespace vardelin::sql {

namespace {

const Value kNull{NullValue()};

template <class T>
bool holdsType(const Value &value)
{
    return std::holds_alternative<T>(value.variant());
}

bool isFloating(const Value &value)
{
    return holdsType<float>(value) || holdsType<double>(value) || holdsType<DateSerial>(value);
}

bool isWhole(const Value &value)
{
    return holdsType<bool>(value) || holdsType<std::int16_t>(value) || holdsType<std::int32_t>(value) ||
           value.isEmpty();
}

template <class T>
int order(const T &left, const T &right)
{
    return left < right ? -1 : right < left ? 1 : 0;
}

std::u16string_view view(const QString &text)
{
    return {reinterpret_cast<const char16_t *>(text.utf16()), static_cast<std::size_t>(text.size())};
}

double finite(double value)
{
    if (!std::isfinite(value))
        throw RunTimeError(RunTime::Overflow);
    return value;
}

double divisor(const Value &value)
{
    const double number = toDouble(value);
    if (number == 0)
        throw RunTimeError(RunTime::DivisionByZero);
    return number;
}

// A root of a negative number is no number, and neither is zero turned upside down.
Value power(double base, double exponent)
{
    if ((base < 0 && exponent != std::trunc(exponent)) || (base == 0 && exponent < 0))
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(finite(std::pow(base, exponent)));
}

Value wholeArithmetic(Op op, const Value &left, const Value &right)
{
    const std::int64_t a = toLong(left), b = toLong(right);
    const std::int64_t result = op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b;
    if (result < std::numeric_limits<std::int32_t>::min() ||
        result > std::numeric_limits<std::int32_t>::max())
        return Value(static_cast<double>(result));
    return Value(static_cast<std::int32_t>(result));
}

Value exactArithmetic(Op op, const Value &left, const Value &right)
{
    const Decimal a = toDecimal(left), b = toDecimal(right);
    const Decimal result = op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b;
    if (holdsType<Decimal>(left) || holdsType<Decimal>(right))
        return Value(result);
    return Value(result.toCurrency());
}

Value floatingArithmetic(Op op, const Value &left, const Value &right)
{
    const double a = toDouble(left), b = toDouble(right);
    const double result = finite(op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b);
    const bool bothDates = holdsType<DateSerial>(left) && holdsType<DateSerial>(right);
    const bool oneDate = holdsType<DateSerial>(left) || holdsType<DateSerial>(right);
    if (oneDate && op != Op::Multiply && !(bothDates && op == Op::Subtract))
        return Value(toDate(Value(result)));
    return Value(result);
}

// Sum, difference and product: whole numbers stay whole, money stays exact, all else is floating. A text
// counts as the number it is.
Value arithmetic(Op op, const Value &left, const Value &right)
{
    if (left.isText() || right.isText() || isFloating(left) || isFloating(right))
        return floatingArithmetic(op, left, right);
    if (isWhole(left) && isWhole(right))
        return wholeArithmetic(op, left, right);
    return exactArithmetic(op, left, right);
}

Value add(const Value &left, const Value &right)
{
    if (left.isText() && right.isText())
        return Value(toText(left) + toText(right));
    return arithmetic(Op::Add, left, right);
}

bool compares(Op op, int result)
{
    switch (op) {
    case Op::Equal:
        return result == 0;
    case Op::NotEqual:
        return result != 0;
    case Op::Less:
        return result < 0;
    case Op::LessEqual:
        return result <= 0;
    case Op::Greater:
        return result > 0;
    default:
        return result >= 0;
    }
}

Value modulo(const Value &left, const Value &right)
{
    const std::int64_t a = toLong(left), b = toLong(right);
    if (b == 0)
        throw RunTimeError(RunTime::DivisionByZero);
    return Value(static_cast<std::int32_t>(a % b));
}

std::optional<bool> truth(const Value &value)
{
    if (const bool *plain = std::get_if<bool>(&value.variant()))
        return *plain;
    if (value.isNull())
        return std::nullopt;
    return toBoolean(value);
}

Value fromTruth(std::optional<bool> truth)
{
    return truth ? Value(*truth) : kNull;
}

} // namespace

int compareTexts(const QString &left, const QString &right)
{
    return jet::compareText(view(left), view(right));
}

std::optional<int> compareValues(const Value &left, const Value &right)
{
    if (left.isNull() || right.isNull())
        return std::nullopt;
    const auto *leftText = std::get_if<QString>(&left.variant());
    const auto *rightText = std::get_if<QString>(&right.variant());
    if (leftText && rightText)
        return compareTexts(*leftText, *rightText);
    if (leftText || rightText)
        throw RunTimeError(RunTime::TypeMismatch);
    if (isFloating(left) || isFloating(right))
        return order(toDouble(left), toDouble(right));
    return order(toDecimal(left), toDecimal(right));
}

Value applyBinary(Op op, const Value &left, const Value &right)
{
    if (op == Op::Join && !(left.isNull() && right.isNull()))
        return Value(joinText(left) + joinText(right));
    if (left.isNull() || right.isNull())
        return kNull;
    switch (op) {
    case Op::Add:
        return add(left, right);
    case Op::Subtract:
    case Op::Multiply:
        return arithmetic(op, left, right);
    case Op::Divide:
        return Value(finite(toDouble(left) / divisor(right)));
    case Op::WholeDivide:
        if (toLong(right) == 0)
            throw RunTimeError(RunTime::DivisionByZero);
        return Value(toLong(Value(std::trunc(double(toLong(left)) / double(toLong(right))))));
    case Op::Modulo:
        return modulo(left, right);
    case Op::Power:
        return power(toDouble(left), toDouble(right));
    default:
        return Value(compares(op, *compareValues(left, right)));
    }
}

Value negated(const Value &value)
{
    if (value.isNull())
        return value;
    return arithmetic(Op::Subtract, Value(0), value);
}

Value applyLogic(Op op, const Value &left, const Value &right)
{
    const std::optional<bool> a = truth(left), b = truth(right);
    switch (op) {
    case Op::And:
        if ((a && !*a) || (b && !*b))
            return Value(false);
        return fromTruth(a && b ? std::optional(true) : std::nullopt);
    case Op::Or:
        if ((a && *a) || (b && *b))
            return Value(true);
        return fromTruth(a && b ? std::optional(false) : std::nullopt);
    case Op::Imp:
        if ((a && !*a) || (b && *b))
            return Value(true);
        return fromTruth(a && b ? std::optional(false) : std::nullopt);
    default:
        if (!a || !b)
            return kNull;
        return Value((*a == *b) == (op == Op::Eqv));
    }
}

Value logicalNot(const Value &value)
{
    const std::optional<bool> a = truth(value);
    return a ? Value(!*a) : kNull;
}

bool holds(const Value &value)
{
    return truth(value).value_or(false);
}

} // namespace vardelin::sql
