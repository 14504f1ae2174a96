#include "platform/sql/DateFunctions.h"

#include "platform/base/Dates.h"
#include "platform/base/Format.h"
#include "platform/base/RunTimeError.h"

#include <algorithm>
#include <cmath>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

struct Interval
{
    QLatin1StringView name;
    int months, seconds; // how long it is: one of them is 0
};

constexpr int kDay = 86400;

constexpr Interval kIntervals[] = {
    {"yyyy"_L1, 12, 0}, {"q"_L1, 3, 0},         {"m"_L1, 1, 0},    {"y"_L1, 0, kDay}, {"d"_L1, 0, kDay},
    {"w"_L1, 0, kDay},  {"ww"_L1, 0, 7 * kDay}, {"h"_L1, 0, 3600}, {"n"_L1, 0, 60},   {"s"_L1, 0, 1},
};

const Interval &intervalOf(const Value &value)
{
    const QString name = toText(value);
    const auto found = std::ranges::find_if(
        kIntervals, [&](const Interval &i) { return name.compare(i.name, Qt::CaseInsensitive) == 0; });
    if (found == std::end(kIntervals))
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return *found;
}

bool hasNull(Arguments a)
{
    return std::ranges::any_of(a, [](const Value &value) { return value.isNull(); });
}

std::int64_t monthsOf(const DateParts &parts)
{
    return std::int64_t{parts.year} * 12 + parts.month - 1;
}

// Whole seconds from day 0 on, which unlike the serial itself go forward before it too.
std::int64_t secondsOf(DateSerial date)
{
    const DateParts parts = partsOf(date);
    const auto day = static_cast<std::int64_t>(serialOf({parts.year, parts.month, parts.day, 0, 0, 0}).days);
    return day * kDay + parts.hour * 3600 + parts.minute * 60 + parts.second;
}

std::int64_t floorDivided(std::int64_t number, std::int64_t by)
{
    return number / by - (number % by < 0 ? 1 : 0);
}

DateSerial fromSeconds(std::int64_t seconds)
{
    const std::int64_t day = floorDivided(seconds, kDay);
    const double time = static_cast<double>(seconds - day * kDay) / kDay;
    const auto days = static_cast<double>(day);
    if (days < kFirstDay || days > kLastDay)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return {day < 0 ? days - time : days + time};
}

DateSerial monthsLater(DateSerial date, std::int64_t months)
{
    DateParts parts = partsOf(date);
    months += monthsOf(parts);
    if (months < 1200 || months >= 120000) // the years 100 to 9999
        throw RunTimeError(RunTime::InvalidProcedureCall);
    parts.year = static_cast<int>(months / 12);
    parts.month = static_cast<int>(months % 12) + 1;
    parts.day = std::min(parts.day, QDate(parts.year, parts.month, 1).daysInMonth());
    return serialOf(parts);
}

} // namespace

Value dateAdd(Arguments a, const Clock &)
{
    if (hasNull(a))
        return Value(NullValue());
    const Interval &interval = intervalOf(a[0]);
    const std::int64_t number = toLong(a[1]);
    const DateSerial date = toDate(a[2]);
    return Value(interval.months != 0 ? monthsLater(date, number * interval.months)
                                      : fromSeconds(secondsOf(date) + number * interval.seconds));
}

Value dateDiff(Arguments a, const Clock &)
{
    if (hasNull(a))
        return Value(NullValue());
    const Interval &interval = intervalOf(a[0]);
    const DateSerial from = toDate(a[1]), to = toDate(a[2]);
    std::int64_t result = 0;
    if (interval.months != 0) {
        result = monthsOf(partsOf(to)) / interval.months - monthsOf(partsOf(from)) / interval.months;
    } else if (interval.name == "w"_L1) {
        result = (floorDivided(secondsOf(to), kDay) - floorDivided(secondsOf(from), kDay)) / 7;
    } else {
        const int toSunday = interval.name == "ww"_L1 ? -kDay : 0; // day 0 was a Saturday
        result = floorDivided(secondsOf(to) + toSunday, interval.seconds) -
                 floorDivided(secondsOf(from) + toSunday, interval.seconds);
    }
    return Value(toLong(Value(static_cast<double>(result))));
}

Value datePartOf(Arguments a, const Clock &)
{
    if (hasNull(a))
        return Value(NullValue());
    // A mask of the interval's letters alone is that part of the date.
    const QString mask = intervalOf(a[0]).name;
    return Value(toLong(Value(format(Value(toDate(a[1])), mask))));
}

} // namespace vardelin::sql
