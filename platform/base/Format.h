#pragma once
// Format(value, mask) as the run time does it.

#include "platform/base/Value.h"

namespace vardelin {

// Number masks ("##.0", "#,##0.00" with quoted parts and up to four sections, "0%", "Currency" and the other
// named ones), date masks
// ("mmmm d, yyyy", "m/d/yy h:nn AM/PM", "M/d/yyyy"), text masks on characters ("(@@@) @@@-@@@@", ">", "<"). A
// text that reads as a number takes a number mask. Numbers round halves away from zero. Null gives "".
QString format(const Value &value, QStringView mask);

} // namespace vardelin
