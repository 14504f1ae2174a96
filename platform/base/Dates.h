#pragma once
// Date serials and what they consist of.

#include "platform/base/Value.h"

#include <QDateTime>
#include <optional>

namespace vardelin {

// Days from 30 December 1899 to the first and the last day that a date can be: 1 January 100 and 31 December
// 9999.
inline constexpr double kFirstDay = -657434;
inline constexpr double kLastDay = 2958465;

struct DateParts
{
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
    bool operator==(const DateParts &) const = default;
};

DateParts partsOf(DateSerial date); // to the nearest second; the day 0 for what is no date
DateSerial serialOf(const DateParts &parts);
int weekdayOf(DateSerial date);                    // 1 is Sunday
DateSerial fromQDateTime(const QDateTime &moment); // local time, whole seconds
QDateTime toQDateTime(DateSerial date);

// Every form that fields, pickers and SQL produce, read month first: "10/16/2026 9:54:33 PM", "10/16/26",
// "2026-10-16 21:54", "16 Oct 2026", "October 16, 2026", "9:54 PM". nullopt where it is no date.
std::optional<DateSerial> dateFromText(QStringView text);

} // namespace vardelin
