#pragma once
// What a command needs to run without a window: services that ask nobody and keep their settings in memory.

#include "platform/print/PrintDevice.h"
#include "shell/state/Global.h"

namespace vardelin::bench {

struct QuietProgram
{
    QtDialogs dialogs;
    SystemClock clock;
    MemorySettings settings;
    dao::DBEngine engine;
    ErrorFrame errors{dialogs, [] {}};
    std::unique_ptr<PrintDevice> printDevice = desktopPrintDevice();
    Printer printer{*printDevice};
    Services services{dialogs, clock, settings, engine, errors, printer, QString()};
    Global global{services};

    explicit QuietProgram(const QString &path) { global.DatabaseFileName = path; }
};

} // namespace vardelin::bench
