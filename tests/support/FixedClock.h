#pragma once
// A clock that stands still until a test moves it.

#include "platform/base/Clock.h"

namespace vardelin {

class FixedClock final : public Clock
{
public:
    explicit FixedClock(DateSerial start = {}) : moment(start) {}
    DateSerial now() const override { return moment; }
    void advanceSeconds(double seconds) { moment.days += seconds / 86400; }

    DateSerial moment;
};

} // namespace vardelin
