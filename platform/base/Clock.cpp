#include "platform/base/Clock.h"

#include "platform/base/Dates.h"

namespace vardelin {

Clock::~Clock() = default;

DateSerial SystemClock::now() const
{
    return fromQDateTime(QDateTime::currentDateTime());
}

} // namespace vardelin
