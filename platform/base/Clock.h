#pragma once
// The present moment, behind an interface so that a test's clock stands still until it is moved.

#include "platform/base/Value.h"

namespace vardelin {

class Clock
{
public:
    virtual ~Clock();
    virtual DateSerial now() const = 0; // local time, whole seconds
};

class SystemClock final : public Clock
{
public:
    DateSerial now() const override;
};

} // namespace vardelin
