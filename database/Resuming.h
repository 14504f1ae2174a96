#pragma once
// The way of the four transfer commands with errors: a step that fails sets the pointer to its default and is
// passed over, and the next one goes on with whatever state that leaves. Nothing is told of it. What counts
// as one step is each command's business; a read and the write that hangs on it are one.

#include "platform/base/RunTimeError.h"
#include "platform/ui/BusyPointer.h"

#include <functional>

namespace vardelin {

class Resuming
{
public:
    // seen: what is done about an error besides; may be empty.
    explicit Resuming(std::function<void(const RunTimeError &)> seen = {}) : m_seen(std::move(seen)) {}

    // True if the step came to its end.
    template <class Step>
    bool operator()(Step &&step) const
    {
        try {
            step();
            return true;
        } catch (const RunTimeError &error) {
            setMousePointer(kDefaultPointer);
            if (m_seen)
                m_seen(error);
            return false;
        }
    }

private:
    std::function<void(const RunTimeError &)> m_seen;
};

} // namespace vardelin
