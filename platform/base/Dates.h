#pragma once
// Date serials and what they consist of.

#include "platform/base/Value.h"

#include <QDateTime>
#include <optional>

namespace vardelin {

struct DateParts
{
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
    bool operator==(const DateParts &) const = default;
};

DateParts partsOf(DateSerial date); // to the nearest second
DateSerial serialOf(const DateParts &parts);
DateSerial fromQDateTime(const QDateTime &moment); // local time, whole seconds
QDateTime toQDateTime(DateSerial date);

// Every form that fields, pickers and SQL produce, read month first: "10/16/2026 9:54:33 PM", "10/16/26",
// "2026-10-16 21:54", "16 Oct 2026", "October 16, 2026", "9:54 PM". nullopt where it is no date.
std::optional<DateSerial> dateFromText(QStringView text);

} // namespace vardelin
