#include "platform/sql/Functions.h"

#include "platform/base/Dates.h"
#include "platform/base/Format.h"
#include "platform/base/LetterCase.h"
#include "platform/base/RunTimeError.h"
#include "platform/sql/DateFunctions.h"
#include "platform/sql/Operators.h"

#include <algorithm>
#include <cmath>

namespace vardelin::sql {

namespace {

const Value kNull{NullValue()};

// Wraps what doesn't care for Null: Null in the first argument is the result.
template <auto function>
Value passNull(Arguments a, const Clock &)
{
    return a[0].isNull() ? kNull : function(a);
}

template <auto conversion>
Value convert(Arguments a, const Clock &)
{
    return Value(conversion(a[0]));
}

qsizetype count(const Value &value)
{
    const std::int32_t number = toLong(value);
    if (number < 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return number;
}

Value left(Arguments a)
{
    return Value(toText(a[0]).left(count(a[1])));
}

Value right(Arguments a)
{
    return Value(toText(a[0]).right(count(a[1])));
}

Value mid(Arguments a)
{
    const qsizetype start = count(a[1]);
    if (start == 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(toText(a[0]).mid(start - 1, a.size() > 2 ? count(a[2]) : -1));
}

Value length(Arguments a)
{
    return Value(static_cast<std::int32_t>(toText(a[0]).size()));
}

// Blanks only, as the run time does it.
QString trimmed(QString text, bool front, bool back)
{
    qsizetype first = 0, last = text.size();
    while (front && first < last && text[first] == u' ')
        ++first;
    while (back && last > first && text[last - 1] == u' ')
        --last;
    return text.mid(first, last - first);
}

Value trim(Arguments a)
{
    return Value(trimmed(toText(a[0]), true, true));
}

Value trimFront(Arguments a)
{
    return Value(trimmed(toText(a[0]), true, false));
}

Value trimBack(Arguments a)
{
    return Value(trimmed(toText(a[0]), false, true));
}

Value upper(Arguments a)
{
    return Value(upperCase(toText(a[0])));
}

Value lower(Arguments a)
{
    return Value(lowerCase(toText(a[0])));
}

// InStr([start,] text, sought [, compare]): from 1; 0 if it isn't there. Without regard to case, unless
// compare is 0.
Value find(Arguments a, const Clock &)
{
    const bool hasStart = a.size() > 2 && !a[0].isText();
    const Value &text = a[hasStart ? 1 : 0], &sought = a[hasStart ? 2 : 1];
    if (text.isNull() || sought.isNull() || a[0].isNull())
        return kNull;
    const qsizetype start = hasStart ? count(a[0]) : 1;
    if (start == 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    const std::size_t compareAt = hasStart ? 3 : 2;
    const bool exact = a.size() > compareAt && toLong(a[compareAt]) == 0;
    const QString whole = toText(text);
    if (start > whole.size())
        return Value(0);
    const qsizetype at =
        whole.indexOf(toText(sought), start - 1, exact ? Qt::CaseSensitive : Qt::CaseInsensitive);
    return Value(static_cast<std::int32_t>(at + 1));
}

Value character(Arguments a)
{
    const std::int32_t code = toLong(a[0]);
    if (code < 0 || code > 255)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(QString(QChar(static_cast<char16_t>(code))));
}

Value code(Arguments a)
{
    const QString text = toText(a[0]);
    if (text.isEmpty())
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(static_cast<std::int32_t>(text[0].unicode()));
}

// No text of the run time is longer than 2 GB.
QString repeated(const Value &times, QChar c)
{
    constexpr qsizetype kLongest = 0x3FFFFFFF;
    constexpr int kOutOfStringSpace = 14;
    const qsizetype size = count(times);
    if (size > kLongest)
        throw RunTimeError(kOutOfStringSpace);
    return QString(size, c);
}

Value blanks(Arguments a)
{
    return Value(repeated(a[0], u' '));
}

// String(times, text): its first character; a number is a character's code.
Value repeatedCharacter(Arguments a)
{
    if (a[1].isNull())
        return kNull;
    const QString text = a[1].isText() ? toText(a[1]) : QString(QChar(static_cast<char16_t>(toLong(a[1]))));
    if (text.isEmpty())
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(repeated(a[0], text[0]));
}

// In the general order: -1, 0 or 1; compare 0 goes by the characters' codes.
Value comparedTexts(Arguments a)
{
    if (a[1].isNull())
        return kNull;
    const QString left = toText(a[0]), right = toText(a[1]);
    const int order = a.size() > 2 && toLong(a[2]) == 0 ? left.compare(right) : compareTexts(left, right);
    return Value(order < 0 ? -1 : order > 0 ? 1 : 0);
}

Value formatted(Arguments a, const Clock &)
{
    return Value(format(a[0], a.size() > 1 ? joinText(a[1]) : QString()));
}

Value number(Arguments a)
{
    return Value(val(toText(a[0])));
}

// A number as text with a blank where its sign would be.
Value signedText(Arguments a)
{
    const QString text = toText(Value(toDouble(a[0])));
    return Value(text.startsWith(u'-') ? text : u' ' + text);
}

// Of the number's own kind where its text allows.
Value absolute(Arguments a)
{
    if (const auto *money = std::get_if<Currency>(&a[0].variant()))
        return Value(money->tenThousandths < 0 ? (-Decimal(*money)).toCurrency() : *money);
    if (const auto *decimal = std::get_if<Decimal>(&a[0].variant()))
        return Value(*decimal < Decimal() ? -*decimal : *decimal);
    return Value(std::fabs(toDouble(a[0])));
}

// Money and dates stay what they are, and money stays exact.
Value wholePart(const Value &value, double (*whole)(double))
{
    if (const auto *money = std::get_if<Currency>(&value.variant())) {
        const std::int64_t units = money->tenThousandths / 10000, rest = money->tenThousandths % 10000;
        const auto step = static_cast<std::int64_t>(whole(static_cast<double>(rest) / 10000));
        return Value(toCurrency(Value(Decimal(units + step))));
    }
    const double result = whole(toDouble(value));
    const bool isDate = std::holds_alternative<DateSerial>(value.variant());
    return isDate ? Value(DateSerial{result}) : Value(result);
}

Value floored(Arguments a)
{
    return wholePart(a[0], std::floor);
}

Value truncated(Arguments a)
{
    return wholePart(a[0], std::trunc);
}

// Halves to the even digit, on the decimal digits.
Value roundedTo(Arguments a)
{
    constexpr double allWhole = 1E15; // from here on a number has no places to round
    const qsizetype places = a.size() > 1 ? count(a[1]) : 0;
    if (std::fabs(toDouble(a[0])) >= allWhole)
        return a[0];
    Decimal scaled = toDecimal(a[0]);
    const Decimal shift =
        toDecimal(Value(std::pow(10.0, static_cast<double>(std::min<qsizetype>(places, 9)))));
    scaled = scaled * shift;
    const double whole = std::nearbyint(scaled.toDouble());
    return Value(whole / shift.toDouble());
}

Value sign(Arguments a)
{
    const double value = toDouble(a[0]);
    return Value(value < 0 ? -1 : value > 0 ? 1 : 0);
}

Value squareRoot(Arguments a)
{
    const double value = toDouble(a[0]);
    if (value < 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(std::sqrt(value));
}

Value isNullValue(Arguments a, const Clock &)
{
    return Value(a[0].isNull());
}

Value isNumber(Arguments a, const Clock &)
{
    return Value(isNumeric(a[0]));
}

Value isDate(Arguments a, const Clock &)
{
    const auto *text = std::get_if<QString>(&a[0].variant());
    return Value(text ? dateFromText(*text).has_value() : std::holds_alternative<DateSerial>(a[0].variant()));
}

Value now(Arguments, const Clock &clock)
{
    return Value(clock.now());
}

Value today(Arguments, const Clock &clock)
{
    return Value(DateSerial{std::trunc(clock.now().days)});
}

Value timeOfDay(Arguments, const Clock &clock)
{
    const double days = clock.now().days;
    return Value(DateSerial{std::fabs(days - std::trunc(days))});
}

template <int DateParts::*part>
Value datePart(Arguments a)
{
    return Value(partsOf(toDate(a[0])).*part);
}

Value weekday(Arguments a)
{
    const int first = a.size() > 1 ? toInteger(a[1]) : 1; // 1 is Sunday
    if (first < 1 || first > 7)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value((weekdayOf(toDate(a[0])) - first + 7) % 7 + 1);
}

Value dayOnly(Arguments a)
{
    return Value(DateSerial{std::trunc(toDate(a[0]).days)});
}

Value timeOnly(Arguments a)
{
    const double days = toDate(a[0]).days;
    return Value(DateSerial{std::fabs(days - std::trunc(days))});
}

// Months and days beyond their range count on into the next years and months.
Value dateOfParts(Arguments a)
{
    const std::int32_t year = toInteger(a[0]), month = toInteger(a[1]), day = toInteger(a[2]);
    const int fullYear = year >= 0 && year < 30 ? year + 2000 : year >= 30 && year < 100 ? year + 1900 : year;
    const int months = fullYear * 12 + month - 1;
    if (months < 1200 || months >= 120000)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(toDate(Value(serialOf({months / 12, months % 12 + 1, 1, 0, 0, 0}).days + day - 1)));
}

// Hours, minutes and seconds beyond their range count on.
Value timeOfParts(Arguments a)
{
    const int hour = toInteger(a[0]), minute = toInteger(a[1]), second = toInteger(a[2]);
    return Value(toDate(Value((hour * 3600.0 + minute * 60.0 + second) / 86400)));
}

Value toByte(Arguments a, const Clock &)
{
    const std::int16_t whole = toInteger(a[0]);
    if (whole < 0 || whole > 255)
        throw RunTimeError(RunTime::Overflow);
    return Value(whole);
}

Value itself(Arguments a, const Clock &)
{
    return a[0];
}

Value naturalLogarithm(Arguments a)
{
    const double value = toDouble(a[0]);
    if (value <= 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return Value(std::log(value));
}

Value exponential(Arguments a)
{
    const double value = std::exp(toDouble(a[0]));
    if (!std::isfinite(value))
        throw RunTimeError(RunTime::Overflow);
    return Value(value);
}

constexpr Function kFunctions[] = {
    {u"Abs", 1, 1, Kind::Number, passNull<absolute>},
    {u"Asc", 1, 1, Kind::Number, passNull<code>},
    {u"CBool", 1, 1, Kind::Number, convert<toBoolean>},
    {u"CByte", 1, 1, Kind::Number, toByte},
    {u"CCur", 1, 1, Kind::Number, convert<toCurrency>},
    {u"CDate", 1, 1, Kind::Date, convert<toDate>},
    {u"CDbl", 1, 1, Kind::Number, convert<static_cast<double (*)(const Value &)>(toDouble)>},
    {u"Chr", 1, 1, Kind::Text, passNull<character>},
    {u"CInt", 1, 1, Kind::Number, convert<toInteger>},
    {u"CLng", 1, 1, Kind::Number, convert<toLong>},
    {u"CSng", 1, 1, Kind::Number, convert<toSingle>},
    {u"CStr", 1, 1, Kind::Text, convert<toText>},
    {u"CVar", 1, 1, Kind::Any, itself},
    {u"CVDate", 1, 1, Kind::Date, passNull<[](Arguments a) { return Value(toDate(a[0])); }>},
    {u"Date", 0, 0, Kind::Date, today},
    {u"DateAdd", 3, 3, Kind::Date, dateAdd},
    {u"DateDiff", 3, 3, Kind::Number, dateDiff},
    {u"DatePart", 2, 2, Kind::Number, datePartOf},
    {u"DateSerial", 3, 3, Kind::Date, passNull<dateOfParts>},
    {u"DateValue", 1, 1, Kind::Date, passNull<dayOnly>},
    {u"Day", 1, 1, Kind::Number, passNull<datePart<&DateParts::day>>},
    {u"Exp", 1, 1, Kind::Number, passNull<exponential>},
    {u"Fix", 1, 1, Kind::Number, passNull<truncated>},
    {u"Format", 1, 4, Kind::Text, formatted},
    {u"Hour", 1, 1, Kind::Number, passNull<datePart<&DateParts::hour>>},
    {u"InStr", 2, 4, Kind::Number, find},
    {u"Int", 1, 1, Kind::Number, passNull<floored>},
    {u"IsDate", 1, 1, Kind::Number, isDate},
    {u"IsNull", 1, 1, Kind::Number, isNullValue},
    {u"IsNumeric", 1, 1, Kind::Number, isNumber},
    {u"LCase", 1, 1, Kind::Text, passNull<lower>},
    {u"Left", 2, 2, Kind::Text, passNull<left>},
    {u"Len", 1, 1, Kind::Number, passNull<length>},
    {u"Log", 1, 1, Kind::Number, passNull<naturalLogarithm>},
    {u"LTrim", 1, 1, Kind::Text, passNull<trimFront>},
    {u"Mid", 2, 3, Kind::Text, passNull<mid>},
    {u"Minute", 1, 1, Kind::Number, passNull<datePart<&DateParts::minute>>},
    {u"Month", 1, 1, Kind::Number, passNull<datePart<&DateParts::month>>},
    {u"Now", 0, 0, Kind::Date, now},
    {u"Right", 2, 2, Kind::Text, passNull<right>},
    {u"Round", 1, 2, Kind::Number, passNull<roundedTo>},
    {u"RTrim", 1, 1, Kind::Text, passNull<trimBack>},
    {u"Second", 1, 1, Kind::Number, passNull<datePart<&DateParts::second>>},
    {u"Sgn", 1, 1, Kind::Number, passNull<sign>},
    {u"Space", 1, 1, Kind::Text, passNull<blanks>},
    {u"Sqr", 1, 1, Kind::Number, passNull<squareRoot>},
    {u"Str", 1, 1, Kind::Text, passNull<signedText>},
    {u"StrComp", 2, 3, Kind::Number, passNull<comparedTexts>},
    {u"String", 2, 2, Kind::Text, passNull<repeatedCharacter>},
    {u"Time", 0, 0, Kind::Date, timeOfDay},
    {u"TimeSerial", 3, 3, Kind::Date, passNull<timeOfParts>},
    {u"TimeValue", 1, 1, Kind::Date, passNull<timeOnly>},
    {u"Trim", 1, 1, Kind::Text, passNull<trim>},
    {u"UCase", 1, 1, Kind::Text, passNull<upper>},
    {u"Val", 1, 1, Kind::Number, passNull<number>},
    {u"Weekday", 1, 2, Kind::Number, passNull<weekday>},
    {u"Year", 1, 1, Kind::Number, passNull<datePart<&DateParts::year>>},
};

} // namespace

const Function *findFunction(QStringView name)
{
    if (name.endsWith(u'$'))
        name.chop(1);
    const auto found = std::ranges::find_if(
        kFunctions, [name](const Function &f) { return f.name.compare(name, Qt::CaseInsensitive) == 0; });
    return found == std::end(kFunctions) ? nullptr : &*found;
}

} // namespace vardelin::sql
