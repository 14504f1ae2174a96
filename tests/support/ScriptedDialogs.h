#pragma once
// Dialogs that answer from a script, in its order. A box that wasn't expected, another text in it, or an
// answer left over fails the test.

#include "platform/base/RunTimeError.h"
#include "platform/ui/Dialogs.h"

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <variant>

namespace vardelin {

class ScriptedDialogs final : public Dialogs
{
public:
    // What the person at the dialog does with it: changes it and says OK (true), or cancels (false).
    using Person = std::function<bool(CommonDialog &)>;

    ~ScriptedDialogs() override
    {
        if (!m_script.empty())
            ADD_FAILURE() << m_script.size() << " dialogs didn't come; the next: " << text(m_script.front());
    }

    void expect(const MsgBox &box, Answer answer = Answer::Ok) { m_script.push_back(Message{box, answer}); }
    void expectInput(const QString &title, const QString &answer)
    {
        m_script.push_back(Input{title, answer});
    }
    void expectOpen(const QString &file) { expectCommon("open", choose(file)); }
    void expectSave(const QString &file) { expectCommon("save", choose(file)); }
    void expectFont(const QString &name, const QString &size)
    {
        expectCommon("font", [name, size](CommonDialog &dialog) {
            dialog.FontName = name;
            dialog.FontSize = size;
            return true;
        });
    }
    // kind: "open", "save", "font". The person may look at the dialog's properties, too.
    void expectCommon(const std::string &kind, Person person) { m_script.push_back(Common{kind, person}); }
    void expectCancel(const std::string &kind)
    {
        expectCommon(kind, [](CommonDialog &) { return false; });
    }
    bool done() const { return m_script.empty(); }

    Answer msgBox(const MsgBox &box) override
    {
        const auto expected = next<Message>(describe(box));
        if (!expected)
            return box.buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
        EXPECT_TRUE(expected->box == box)
            << "came: " << describe(box) << "\nexpected: " << describe(expected->box);
        return expected->answer;
    }
    QString inputBox(const QString &prompt, const QString &title) override
    {
        const auto expected = next<Input>("input box: " + title.toStdString() + ": " + prompt.toStdString());
        if (!expected)
            return {};
        EXPECT_EQ(title.toStdString(), expected->title.toStdString());
        return expected->answer;
    }
    bool showOpen(CommonDialog &dialog) override { return showCommon("open", dialog); }
    bool showSave(CommonDialog &dialog) override { return showCommon("save", dialog); }
    bool showFont(CommonDialog &dialog) override { return showCommon("font", dialog); }

private:
    struct Message
    {
        MsgBox box;
        Answer answer;
    };
    struct Input
    {
        QString title;
        QString answer;
    };
    struct Common
    {
        std::string kind;
        Person person;
    };
    using Step = std::variant<Message, Input, Common>;

    static Person choose(const QString &file)
    {
        return [file](CommonDialog &dialog) {
            dialog.FileName = file;
            return true;
        };
    }

    static std::string describe(const MsgBox &box)
    {
        return "box \"" + box.title.toStdString() + "\": \"" + box.prompt.toStdString() + "\", buttons " +
               std::to_string(static_cast<int>(box.buttons)) + ", icon " +
               std::to_string(static_cast<int>(box.icon)) + ", default " + std::to_string(box.defaultButton);
    }

    static std::string text(const Step &step)
    {
        if (const auto *message = std::get_if<Message>(&step))
            return describe(message->box);
        if (const auto *input = std::get_if<Input>(&step))
            return "input box \"" + input->title.toStdString() + '"';
        return std::get<Common>(step).kind + " dialog";
    }

    template <class Kind>
    std::optional<Kind> next(const std::string &came)
    {
        if (m_script.empty()) {
            ADD_FAILURE() << "not expected: " << came;
            return std::nullopt;
        }
        const Step step = m_script.front();
        m_script.pop_front();
        if (const auto *found = std::get_if<Kind>(&step))
            return *found;
        ADD_FAILURE() << "came: " << came << "\nexpected: " << text(step);
        return std::nullopt;
    }

    bool showCommon(const std::string &kind, CommonDialog &dialog)
    {
        const auto expected = next<Common>(kind + " dialog");
        bool accepted = false;
        if (expected) {
            EXPECT_EQ(kind, expected->kind);
            accepted = expected->person(dialog);
        }
        if (!accepted && dialog.CancelError)
            throw RunTimeError(RunTime::CommonDialogCancel);
        return accepted;
    }

    std::deque<Step> m_script;
};

} // namespace vardelin
