#pragma once
// The outermost frame of every handler: no exception passes through Qt, and every failure that no command
// caught takes one path.

#include "platform/base/RunTimeError.h"
#include "platform/ui/Dialogs.h"

#include <QAction>
#include <functional>

namespace vardelin {

class ErrorFrame
{
public:
    // endProgram: what makes an orderly end of the program; called once, after the message.
    ErrorFrame(Dialogs &dialogs, std::function<void()> endProgram);
    virtual ~ErrorFrame();

    // The standard message under the program's title, then the end. For commands without a trap. A failure
    // that comes while the first one's message stands, or while the program ends, is dropped.
    virtual void fail(const RunTimeError &error);
    // The standard message, and the program goes on: for the commands that promise to keep what was typed.
    virtual void report(const RunTimeError &error);

    // Runs a handler. A RunTimeError, any other exception (as 51, "Internal error") and bad_alloc (7) end in
    // fail().
    template <class Handler>
    void run(Handler &&handler)
    {
        try {
            handler();
        } catch (...) {
            failWithCurrentException();
        }
    }

private:
    void failWithCurrentException() noexcept;
    static constexpr int kInternalError = 51;
    Dialogs &m_dialogs;
    std::function<void()> m_endProgram;
    bool m_ending = false;
};

// Swallows a failure and goes on with the next statement: the way of the few commands that ignore errors.
// True if nothing failed.
template <class Statement>
bool resumeNext(Statement &&statement)
{
    try {
        statement();
        return true;
    } catch (const RunTimeError &) {
        return false;
    }
}

} // namespace vardelin
