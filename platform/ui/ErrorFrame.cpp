#include "platform/ui/ErrorFrame.h"

#include <QCoreApplication>
#include <new>

using namespace Qt::StringLiterals;

namespace vardelin {

ErrorFrame::ErrorFrame(Dialogs &dialogs, std::function<void()> endProgram)
    : m_dialogs(dialogs), m_endProgram(std::move(endProgram))
{}

ErrorFrame::~ErrorFrame() = default;

void ErrorFrame::fail(const RunTimeError &error)
{
    // Set ahead of the message: timers run while it stands, and windows are unloaded after it. Whatever fails
    // in them can change nothing any more.
    if (m_ending)
        return;
    m_ending = true;
    report(error);
    m_endProgram();
}

void ErrorFrame::report(const RunTimeError &error)
{
    m_dialogs.msgBox({.prompt = standardMessage(error), .icon = Icon::Critical});
}

void ErrorFrame::failWithCurrentException() noexcept
{
    try {
        try {
            throw;
        } catch (const RunTimeError &error) {
            fail(error);
        } catch (const std::bad_alloc &) {
            fail(RunTimeError(RunTime::OutOfMemory));
        } catch (...) {
            fail(RunTimeError(kInternalError, u"Internal error"_s));
        }
    } catch (...) {
        // The orderly end failed itself. What is on the disk is whole at every moment; leave.
        QCoreApplication::exit(EXIT_FAILURE);
    }
}

} // namespace vardelin
