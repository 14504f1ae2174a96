#pragma once
// The screen's busy pointer (value 11) for the length of a command; back to the default (value 0) at its end,
// however it ends.

#include <QCursor>
#include <QGuiApplication>

namespace vardelin {

class BusyPointer
{
public:
    BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

} // namespace vardelin
