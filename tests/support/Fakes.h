#pragma once
// What a test puts in place of the outside: dialogs that follow a script, a clock that stands still, settings
// in memory, a printer that notes down, and a program of these on which windows can be made.

#include "shell/state/Global.h"
#include "tests/support/RecordingPrintDevice.h"
#include "tests/support/ScriptedDialogs.h"

namespace vardelin::testing_support {

class StillClock final : public Clock
{
public:
    DateSerial now() const override { return moment; }
    void forward(int seconds) { moment.days += seconds / 86400.0; }
    DateSerial moment{46311.375}; // 16 October 2026, 9 in the morning
};

// Services and Global as start-up leaves them with empty settings, but for the file. `ended` counts the ends
// that untrapped failures asked for.
struct TestProgram
{
    ScriptedDialogs dialogs;
    StillClock clock;
    MemorySettings settings;
    dao::DBEngine engine;
    int ended = 0;
    ErrorFrame errors{dialogs, [this] { ++ended; }};
    RecordingPrintDevice paper;
    Printer printer{paper};
    Services services{dialogs, clock, settings, engine, errors, printer, {}};
    Global global{services};

    TestProgram()
    {
        global.ClientCaption = QStringLiteral("Client");
        global.EmployeeCaption = QStringLiteral("Employee (or user)");
        global.ProjectCaption = QStringLiteral("Project");
        global.SummaryCaption = QStringLiteral("Invoice summary line");
        const FontSetting screen{QStringLiteral("MS Sans Serif"), QStringLiteral("12")};
        const FontSetting printed{QStringLiteral("Times New Roman"), QStringLiteral("12")};
        global.DefaultDisplayFont = global.DefaultEntryFont = global.DefaultToDoFont = screen;
        global.DefaultFont = global.DefaultLetterheadFont = global.DefaultReportFont =
            global.DefaultVardelinFont = global.DefaultPrintFont = printed;
    }
};

} // namespace vardelin::testing_support
