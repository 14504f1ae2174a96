// The real boxes, answered by a person at the keyboard that looks in every few milliseconds.
#include "platform/ui/Dialogs.h"
#include "platform/base/RunTimeError.h"
#include "platform/ui/Fonts.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

// Calls `act` with the first modal window that comes up. A window that is still up after two seconds is
// rejected, so that a wrong answer fails the test instead of hanging it.
class Person
{
public:
    explicit Person(std::function<void(QDialog *)> act) : m_act(std::move(act))
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
        m_timer.start(5);
    }
    ~Person() { EXPECT_TRUE(m_acted) << "no window came up"; }

private:
    void look()
    {
        auto *window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!window)
            return;
        if (!m_acted) {
            m_acted = true;
            m_act(window);
        } else if (++m_looks > 400) {
            ADD_FAILURE() << "the window doesn't go";
            window->reject();
        }
    }

    std::function<void(QDialog *)> m_act;
    QTimer m_timer;
    bool m_acted = false;
    int m_looks = 0;
};

Answer answerByKey(const MsgBox &box, Qt::Key key)
{
    QtDialogs dialogs;
    const Person person([key](QDialog *window) { QTest::keyClick(window, key); });
    return dialogs.msgBox(box);
}

TEST(MessageBox, enterTakesTheDefaultButtonAndEscTheLast)
{
    const MsgBox question{.prompt = u"Are you sure?"_s, .buttons = Buttons::YesNo, .defaultButton = 2};
    EXPECT_EQ(answerByKey(question, Qt::Key_Return), Answer::No);
    EXPECT_EQ(answerByKey({.prompt = u"?"_s, .buttons = Buttons::YesNo}, Qt::Key_Return), Answer::Yes);
    EXPECT_EQ(answerByKey({.prompt = u"?"_s, .buttons = Buttons::YesNo}, Qt::Key_Escape), Answer::No);
    EXPECT_EQ(answerByKey({.prompt = u"?"_s, .buttons = Buttons::YesNoCancel}, Qt::Key_Escape),
              Answer::Cancel);
    EXPECT_EQ(answerByKey({.prompt = u"?"_s, .buttons = Buttons::OkCancel}, Qt::Key_Escape), Answer::Cancel);
    EXPECT_EQ(answerByKey({.prompt = u"!"_s}, Qt::Key_Escape), Answer::Ok);
}

TEST(MessageBox, showsPlainTextUnderTheProgramsName)
{
    const QString prompt = u"<b>Smith & Sons</b> "_s + u"has a very long name. "_s.repeated(30);
    QtDialogs dialogs;
    {
        const Person person([&](QDialog *window) {
            auto *box = qobject_cast<QMessageBox *>(window);
            ASSERT_TRUE(box);
            EXPECT_EQ(box->windowTitle(), u"Vardelin"_s);
            EXPECT_EQ(box->text(), prompt);
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            EXPECT_LT(box->width(), 900) << "long prompts wrap";
            box->accept();
        });
        dialogs.msgBox({.prompt = prompt});
    }
    const Person person([](QDialog *window) {
        EXPECT_EQ(window->windowTitle(), u"Delete This Record"_s);
        EXPECT_LT(window->height(), 600) << "the button stays on the screen";
        window->reject();
    });
    dialogs.msgBox({.prompt = prompt.repeated(20), .title = u"Delete This Record"_s});
}

TEST(InputBox, givesWhatIsTypedAndNothingOnCancel)
{
    const QString prompt = u"Type in the caption <i>you</i> want. "_s.repeated(10);
    QtDialogs dialogs;
    for (const auto &[key, expected] :
         {std::pair{Qt::Key_Return, u" Patient & Co "_s}, {Qt::Key_Escape, u""_s}}) {
        const Person person([&, key = key](QDialog *window) {
            EXPECT_EQ(window->windowTitle(), u"Enter new caption for this field"_s);
            EXPECT_EQ(window->findChild<QLabel *>()->textFormat(), Qt::PlainText);
            EXPECT_LT(window->width(), 700);
            auto *edit = window->findChild<QLineEdit *>();
            EXPECT_TRUE(edit->text().isEmpty());
            QTest::keyClicks(edit, u" Patient & Co "_s);
            QTest::keyClick(edit, key);
        });
        EXPECT_EQ(dialogs.inputBox(prompt, u"Enter new caption for this field"_s), expected);
    }
}

TEST(FileDialogs, takeTheFilterTheEndingAndTheCancelOfTheCommonDialog)
{
    const QTemporaryDir folder;
    QtDialogs dialogs;
    CommonDialog save{.DialogTitle = u"New file"_s,
                      .Filter = u"Access files (*.mdb)|*.mdb|All files (*.*)|*.*"_s,
                      .DefaultExt = u"mdb"_s,
                      .InitDir = folder.path()};
    {
        const Person person([](QDialog *window) {
            auto *box = qobject_cast<QFileDialog *>(window);
            ASSERT_TRUE(box);
            EXPECT_EQ(box->windowTitle(), u"New file"_s);
            EXPECT_EQ(box->nameFilters(), (QStringList{u"Access files (*.mdb)"_s, u"All files (*)"_s}));
            auto *name = box->findChild<QLineEdit *>(u"fileNameEdit"_s);
            name->setText(u"office"_s);
            QTest::keyClick(name, Qt::Key_Return);
        });
        EXPECT_TRUE(dialogs.showSave(save));
    }
    EXPECT_EQ(save.FileName, folder.filePath(u"office.mdb"_s));

    CommonDialog open{.InitDir = folder.path(), .CancelError = true, .fileMustExist = true};
    const Person person([](QDialog *window) { window->reject(); });
    try {
        dialogs.showOpen(open);
        ADD_FAILURE() << "Cancel passed";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), 32755);
    }
    EXPECT_EQ(open.FileName, QString());
}

TEST(FontDialog, opensOnTheFaceThatStandsForTheName)
{
    installFontSubstitutions();
    QtDialogs dialogs;
    CommonDialog font{.FontName = u"MS Sans Serif"_s, .FontSize = u"12"_s};
    {
        const Person person([](QDialog *window) { window->accept(); });
        EXPECT_TRUE(dialogs.showFont(font));
    }
    EXPECT_EQ(font.FontName, QFontInfo(QFont(u"MS Sans Serif"_s)).family());
    EXPECT_EQ(font.FontSize, u"12"_s);

    const CommonDialog before = font;
    const Person person([](QDialog *window) {
        qobject_cast<QFontDialog *>(window)->setCurrentFont(QFont(u"Liberation Serif"_s, 20));
        window->reject();
    });
    EXPECT_FALSE(dialogs.showFont(font));
    EXPECT_EQ(font.FontName, before.FontName);
    EXPECT_EQ(font.FontSize, before.FontSize);
}

} // namespace
