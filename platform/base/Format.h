#pragma once
// Format(value, mask) as the run time does it.

#include "platform/base/Value.h"

namespace vardelin {

// Number masks ("##.0", "#,##0.00" with quoted parts and up to four sections: positive, negative, zero, Null;
// "0%", "0.00E+00"), date masks ("mmmm d, yyyy", "m/d/yy h:nn AM/PM", "M/d/yyyy"), text masks on characters
// ("(@@@) @@@-@@@@", ">", "<"), and the named ones ("Currency", "Short Date", ...). A text that reads as a
// number takes a number mask, one that reads as a date a date mask; a text that doesn't fit comes back as it
// is. Numbers round halves away from zero, on their 15 digits. Names of days and months are those of the
// United States setting. Null and Empty give "" but for a section of their own.
QString format(const Value &value, QStringView mask);

} // namespace vardelin
