#include "platform/base/Dates.h"

#include <cmath>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t kSecondsInDay = 86400;
constexpr std::int64_t kEpoch = 693899; // days from 1 March of year 0 to 30 December 1899

struct Split
{
    std::int64_t day = 0;
    std::int64_t second = 0; // of the day, forward
};

Split split(DateSerial date)
{
    // Before day 0 the time counts away from it: the first day ends just above the number below it.
    if (!(date.days > kFirstDay - 1 && date.days < kLastDay + 1))
        return {};
    const double day = std::trunc(date.days);
    const double second = std::nearbyint(std::fabs(date.days - day) * double{kSecondsInDay});
    Split parts{static_cast<std::int64_t>(day), static_cast<std::int64_t>(second)};
    if (parts.second == kSecondsInDay)
        parts = {parts.day + 1, 0};
    return parts;
}

// The Gregorian calendar in years that begin on 1 March, so that the leap day is the last one; 400 years have
// 146097 days.
constexpr std::int64_t daysOfCivil(std::int64_t year, std::int64_t month, std::int64_t day)
{
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = year / 400, yearOfEra = year % 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - kEpoch;
}

static_assert(daysOfCivil(1899, 12, 30) == 0);
static_assert(double(daysOfCivil(100, 1, 1)) == kFirstDay);
static_assert(double(daysOfCivil(9999, 12, 31)) == kLastDay);

void setCivil(DateParts &parts, std::int64_t day)
{
    day += kEpoch;
    const std::int64_t era = day / 146097, dayOfEra = day % 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    parts.day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    parts.month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    parts.year = static_cast<int>(yearOfEra + era * 400 + (parts.month <= 2 ? 1 : 0));
}

} // namespace

DateParts partsOf(DateSerial date)
{
    const Split when = split(date);
    DateParts parts;
    setCivil(parts, when.day);
    parts.hour = static_cast<int>(when.second / 3600);
    parts.minute = static_cast<int>(when.second / 60 % 60);
    parts.second = static_cast<int>(when.second % 60);
    return parts;
}

DateSerial serialOf(const DateParts &parts)
{
    const auto day = static_cast<double>(daysOfCivil(parts.year, parts.month, parts.day));
    const double time = double(parts.hour * 3600 + parts.minute * 60 + parts.second) / double{kSecondsInDay};
    return {day < 0 ? day - time : day + time};
}

int weekdayOf(DateSerial date)
{
    // The day 0 was a Saturday.
    return static_cast<int>(((split(date).day - 1) % 7 + 7) % 7) + 1;
}

DateSerial fromQDateTime(const QDateTime &moment)
{
    const QDate date = moment.date();
    const QTime time = moment.time();
    return serialOf({date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()});
}

QDateTime toQDateTime(DateSerial date)
{
    const DateParts parts = partsOf(date);
    return QDateTime(QDate(parts.year, parts.month, parts.day),
                     QTime(parts.hour, parts.minute, parts.second));
}

QString dateText(DateSerial date)
{
    const Split when = split(date);
    const DateParts parts = partsOf(date);
    const QString day = u"%1/%2/%3"_s.arg(parts.month).arg(parts.day).arg(parts.year);
    if (when.second == 0 && when.day != 0)
        return day;
    const QString time = u"%1:%2:%3 %4"_s.arg((parts.hour + 11) % 12 + 1)
                             .arg(parts.minute, 2, 10, QChar(u'0'))
                             .arg(parts.second, 2, 10, QChar(u'0'))
                             .arg(parts.hour < 12 ? "AM"_L1 : "PM"_L1);
    return when.day == 0 ? time : day + u' ' + time;
}

} // namespace vardelin
