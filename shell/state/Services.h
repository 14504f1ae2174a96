#pragma once
// What the program gets from outside, behind interfaces; main() makes the real ones, tests their own.

#include "platform/base/Clock.h"
#include "platform/data/Dao.h"
#include "platform/print/Printer.h"
#include "platform/system/Settings.h"
#include "platform/ui/Dialogs.h"
#include "platform/ui/ErrorFrame.h"

namespace vardelin {

struct Services
{
    Dialogs &dialogs;
    Clock &clock;
    Settings &settings;
    dao::DBEngine &engine;
    ErrorFrame &errors;
    Printer &printer;
    QString appPath; // the program's folder: default database and tips file
};

} // namespace vardelin
