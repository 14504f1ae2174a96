#pragma once
// What a command needs to run without a window: services that ask nobody and keep their settings in memory.

#include "shell/state/Global.h"

namespace vardelin::bench {

struct QuietProgram
{
    QtDialogs dialogs;
    SystemClock clock;
    MemorySettings settings;
    dao::DBEngine engine;
    ErrorFrame errors{dialogs, [] {}};
    Services services{dialogs, clock, settings, engine, errors, QString()};
    Global global{services};

    explicit QuietProgram(const QString &path) { global.DatabaseFileName = path; }
};

} // namespace vardelin::bench
