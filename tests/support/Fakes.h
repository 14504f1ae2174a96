#pragma once
// What a test puts in place of the outside: dialogs that follow a script, a clock that stands still, settings
// in memory, and a program of these on which windows can be made.

#include "shell/state/Global.h"

#include <deque>
#include <gtest/gtest.h>

namespace vardelin::testing_support {

// Answers as told, in the order of asking. A box that wasn't expected, other words in it or an answer left
// over fail the test.
class ScriptedDialogs final : public Dialogs
{
public:
    ~ScriptedDialogs() override { EXPECT_TRUE(m_script.empty()) << m_script.size() << " boxes never came"; }

    void expect(const QString &prompt, Answer answer = Answer::Ok, Buttons buttons = Buttons::Ok)
    {
        m_script.push_back({Kind::Box, prompt, {}, buttons, answer, {}});
    }
    void expectInput(const QString &prompt, const QString &title, const QString &typed)
    {
        m_script.push_back({Kind::Input, prompt, title, {}, {}, typed});
    }
    // A common dialog of any kind: what it is given back, or a Cancel.
    void expectChoice(const CommonDialog &chosen)
    {
        m_script.push_back({Kind::Choice, {}, {}, {}, Answer::Ok, {}, chosen});
    }
    void expectCancel() { m_script.push_back({Kind::Choice, {}, {}, {}, Answer::Cancel, {}}); }
    bool done() const { return m_script.empty(); }
    CommonDialog lastChoice; // as the command had set it

    Answer msgBox(const MsgBox &box) override
    {
        const Step step = next(Kind::Box, box.prompt);
        EXPECT_EQ(step.prompt.toStdString(), box.prompt.toStdString());
        EXPECT_EQ(step.buttons, box.buttons) << box.prompt.toStdString();
        return step.answer;
    }
    QString inputBox(const QString &prompt, const QString &title) override
    {
        const Step step = next(Kind::Input, prompt);
        EXPECT_EQ(step.prompt.toStdString(), prompt.toStdString());
        EXPECT_EQ(step.title.toStdString(), title.toStdString());
        return step.typed;
    }
    bool showOpen(CommonDialog &dialog) override { return choose(dialog); }
    bool showSave(CommonDialog &dialog) override { return choose(dialog); }
    bool showFont(CommonDialog &dialog) override { return choose(dialog); }

private:
    enum class Kind { Box, Input, Choice };
    struct Step
    {
        Kind kind = Kind::Box;
        QString prompt, title;
        Buttons buttons = Buttons::Ok;
        Answer answer = Answer::Cancel;
        QString typed;
        CommonDialog chosen = {};
    };

    Step next(Kind kind, const QString &what)
    {
        if (m_script.empty() || m_script.front().kind != kind) {
            ADD_FAILURE() << "not expected: " << what.toStdString();
            return {kind, what};
        }
        const Step step = m_script.front();
        m_script.pop_front();
        return step;
    }
    bool choose(CommonDialog &dialog)
    {
        lastChoice = dialog;
        const Step step = next(Kind::Choice, QStringLiteral("a common dialog"));
        if (step.answer == Answer::Cancel) {
            if (dialog.CancelError)
                throw RunTimeError(RunTime::CommonDialogCancel);
            return false;
        }
        dialog.FileName = step.chosen.FileName;
        dialog.FontName = step.chosen.FontName;
        dialog.FontSize = step.chosen.FontSize;
        return true;
    }

    std::deque<Step> m_script;
};

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
    Services services{dialogs, clock, settings, engine, errors, {}};
    Global global{services};

    TestProgram()
    {
        global.ClientCaption = QStringLiteral("Client");
        global.EmployeeCaption = QStringLiteral("Employee (or user)");
        global.ProjectCaption = QStringLiteral("Project");
        global.SummaryCaption = QStringLiteral("Invoice summary line");
        const FontSetting screen{QStringLiteral("MS Sans Serif"), QStringLiteral("12")};
        const FontSetting paper{QStringLiteral("Times New Roman"), QStringLiteral("12")};
        global.DefaultDisplayFont = global.DefaultEntryFont = global.DefaultToDoFont = screen;
        global.DefaultFont = global.DefaultLetterheadFont = global.DefaultReportFont =
            global.DefaultVardelinFont = global.DefaultPrintFont = paper;
    }
};

} // namespace vardelin::testing_support
