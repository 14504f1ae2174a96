#pragma once
// Dialogs for tests that answer from a script.

#include "platform/base/RunTimeError.h"
#include "platform/ui/Dialogs.h"

#include <deque>
#include <gtest/gtest.h>
#include <optional>

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
    // A box with all that belongs to it: title, icon and default button, too.
    void expect(const MsgBox &box, Answer answer = Answer::Ok)
    {
        expect(box.prompt, answer, box.buttons);
        m_script.back().whole = box;
    }
    // A box whose words depend on the machine: how they begin.
    void expectBeginning(const QString &prompt)
    {
        expect(prompt);
        m_script.back().beginning = true;
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
        const QString said = step.beginning ? box.prompt.left(step.prompt.size()) : box.prompt;
        EXPECT_EQ(step.prompt.toStdString(), said.toStdString());
        EXPECT_EQ(step.buttons, box.buttons) << box.prompt.toStdString();
        if (step.whole) {
            EXPECT_EQ(step.whole->title.toStdString(), box.title.toStdString());
            EXPECT_EQ(step.whole->icon, box.icon);
            EXPECT_EQ(step.whole->defaultButton, box.defaultButton);
        }
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
        QString prompt = {}, title = {};
        Buttons buttons = Buttons::Ok;
        Answer answer = Answer::Cancel;
        QString typed = {};
        CommonDialog chosen = {};
        bool beginning = false;
        std::optional<MsgBox> whole = {};
    };

    Step next(Kind kind, const QString &what)
    {
        if (m_script.empty() || m_script.front().kind != kind) {
            ADD_FAILURE() << "not expected: " << what.toStdString();
            return {.kind = kind, .prompt = what};
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

} // namespace vardelin::testing_support
