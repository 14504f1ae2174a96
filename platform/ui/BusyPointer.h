#pragma once
// The screen's busy pointer.

#include <QCursor>
#include <QGuiApplication>

namespace vardelin {

// The pointer's value as a command that has its own ideas of the end sets it: 11, 0. One is laid over nothing
// else, and 0 takes away all.
inline constexpr int kBusyPointer = 11;
inline constexpr int kDefaultPointer = 0;
inline void setMousePointer(int value)
{
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    if (value == kBusyPointer)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

// The busy pointer for the length of a command; back to the default at its end, however it ends.
class BusyPointer
{
public:
    BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

} // namespace vardelin
