// Menus, tool buttons and what they hand on.
#include "tests/entry/EntryWindows.h"

#include <QClipboard>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

struct EntryCommandsTest : testing_support::EntryWindowsTest
{
    // What a window that a command opens finds in the shared variables.
    std::function<void()> opens(const QString &name)
    {
        return [this, name] {
            opened += name;
            EXPECT_TRUE(global.EntryWindowActive && !global.DisplayWindowActive) << name.toStdString();
            EXPECT_EQ(global.CurrentEntryTag, u"1"_s) << name.toStdString();
            EXPECT_EQ(global.DatabaseFileName, u"/office/VARDELIN.MDB"_s) << name.toStdString();
        };
    }
    // Another window and file were current last.
    void confuse()
    {
        global.EntryWindowActive = false;
        global.DisplayWindowActive = true;
        global.CurrentEntryTag = u"9"_s;
        global.DatabaseFileName = u"/elsewhere.mdb"_s;
    }
    QStringList opened;
};

} // namespace

TEST_F(EntryCommandsTest, LaunchesHandOnWindowAndFile)
{
    frmEntryWithFrames *window = parent.open();
    struct Row
    {
        const char16_t *menu;
        std::function<void()> Openers::*opener;
        int key; // 0: none
    };
    const Row rows[] = {
        {u"mnuActivity", &Openers::frmActivity, Qt::Key_F3},
        {u"mnuEmployees", &Openers::frmEmployee, Qt::Key_F4},
        {u"mnuProject", &Openers::frmProject, Qt::Key_F5},
        {u"mnuRates", &Openers::frmRate, Qt::Key_F6},
        {u"mnuThingsToDo", &Openers::frmToDo, Qt::Key_F7},
        {u"mnuCClient", &Openers::frmClient, Qt::Key_F2},
        {u"mnuActiveClients", &Openers::frmActiveClients, 0},
        {u"mnuInactiveClients", &Openers::frmInactiveClients, 0},
        {u"mnuLetterhead", &Openers::frmLetterhead, 0},
        {u"mnuDisbursements", &Openers::frmPaymentsDisbursements, 0},
    };
    QStringList expected;
    summary(window)->setFocus();
    for (const Row &row : rows) {
        const QString menu = QString::fromUtf16(row.menu);
        global.openers.*row.opener = opens(menu);
        confuse();
        choose(window, row.menu);
        expected += menu;
        if (row.key == 0)
            continue;
        confuse();
        QTest::keyClick(summary(window), static_cast<Qt::Key>(row.key));
        expected += menu;
    }
    EXPECT_EQ(opened, expected);

    QString said;
    global.openers.notYet = [&](QStringView what) { said = what.toString(); };
    global.openers.frmToDo = nullptr;
    choose(window, u"mnuThingsToDo");
    EXPECT_EQ(said, u"Things To Do"_s);
}

TEST_F(EntryCommandsTest, SearchAndLedgerStartWithTheWindowsFields)
{
    frmEntryWithFrames *window = parent.open();
    QString reportName;
    global.openers.frmSearch = [&](const QString &name) { reportName = name; };
    global.SearchClient = u"stale"_s;
    global.SearchProject = u"stale"_s;
    combo(window, 3)->setText(u"MARKETING"_s);
    choose(window, u"Toolbar1.Find");
    EXPECT_EQ(global.SearchClient, QString());
    EXPECT_EQ(global.SearchProject, u"MARKETING"_s);
    EXPECT_EQ(reportName, u"MARKETING"_s);
    combo(window, 1)->setText(u"Last, First"_s);
    choose(window, u"mnuSearch");
    EXPECT_EQ(reportName, u"Last, First"_s);
    global.openers.frmPaymentsDisbursements = [] {};
    combo(window, 1)->setText(u"Other, One"_s);
    choose(window, u"mnuDisbursements");
    EXPECT_EQ(global.SearchClient, u"Other, One"_s);
}

TEST_F(EntryCommandsTest, NewWindowsAndTheirFiles)
{
    frmEntryWithFrames *first = parent.open();
    global.DatabaseFileName = u"/elsewhere.mdb"_s;
    choose(first, u"Toolbar1.New");
    EXPECT_EQ(global.EntryWindows[1]->file(), u"/elsewhere.mdb"_s) << "the button goes by the program's file";
    choose(first, u"mnuNewEntry");
    EXPECT_EQ(global.EntryWindows[2]->file(), u"/office/VARDELIN.MDB"_s) << "the command by the window's";
    EXPECT_EQ(global.DatabaseFileName, u"/office/VARDELIN.MDB"_s);
    int displays = 0;
    global.openers.NewDisplayWindow = [&]() -> DisplayWindow * {
        ++displays;
        return nullptr;
    };
    choose(first, u"mnuEnterDisplay");
    EXPECT_EQ(displays, 1);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(EntryCommandsTest, BackAndForwardPassTheFocus)
{
    frmEntryWithFrames *first = parent.open();
    summary(first)->setFocus();
    frmEntryWithFrames *second = parent.open();
    choose(second, u"Toolbar1.Back");
    EXPECT_TRUE(summary(first)->hasFocus()) << "to the field where the user was";
    EXPECT_EQ(global.CurrentEntryTag, u"1"_s);
    control<QLabel>(first, u"Label1")->setText(u"Vardelin saved"_s);
    choose(first, u"Toolbar1.Back");
    EXPECT_EQ(label(first, u"Label1"), u"/office/VARDELIN.MDB"_s) << "the first has nothing behind it";
    choose(first, u"Toolbar1.Forward");
    EXPECT_TRUE(second->isAncestorOf(QApplication::focusWidget()));
    choose(second, u"Toolbar1.Forward");
    EXPECT_EQ(global.CurrentEntryTag, u"1"_s) << "around, past the parent";
}

TEST_F(EntryCommandsTest, KeysBelongToTheActiveWindowAlone)
{
    frmEntryWithFrames *first = parent.open();
    frmEntryWithFrames *second = parent.open();
    QStringList tags;
    global.openers.frmClient = [&] { tags += global.CurrentEntryTag; };
    combo(second, 1)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2);
    first->SetFocus();
    combo(first, 1)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2);
    EXPECT_EQ(tags, (QStringList{u"2"_s, u"1"_s}));
}

TEST_F(EntryCommandsTest, EditMenuWorksOnTheFieldInUse)
{
    frmEntryWithFrames *window = parent.open();
    notes(window)->setText(u"notes"_s);
    combo(window, 1)->setText(u"Last, First"_s);
    combo(window, 1)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(notes(window)->SelText(), u"notes"_s) << "Select All is the notes', wherever the focus is";
    combo(window, 1)->lineEdit()->selectAll();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(combo(window, 1)->Text(), QString());
    EXPECT_EQ(notes(window)->Text(), u"notes"_s);
    summary(window)->setFocus();
    QTest::keyClick(summary(window), Qt::Key_G, Qt::ControlModifier);
    choose(window, u"Toolbar1.Paste");
    EXPECT_EQ(summary(window)->text(), u"Last, FirstLast, First"_s);
    QTest::keyClick(summary(window), Qt::Key_Home);
    QTest::keyClick(summary(window), Qt::Key_Delete);
    EXPECT_EQ(summary(window)->text(), u"ast, FirstLast, First"_s) << "Del takes one character";
    summary(window)->setSelection(0, 5);
    choose(window, u"mnuDelete");
    EXPECT_EQ(summary(window)->text(), u"FirstLast, First"_s);
    EXPECT_EQ(QApplication::clipboard()->text(), u"Last, First"_s) << "Delete leaves the clipboard alone";
}

TEST_F(EntryCommandsTest, FontsAreForWindowsOpenedLater)
{
    frmEntryWithFrames *window = parent.open();
    const QFont before = summary(window)->font();
    dialogs.expectCancel();
    choose(window, u"mnuDataentryfont");
    EXPECT_EQ(global.DefaultEntryFont.name, u"MS Sans Serif"_s);
    EXPECT_TRUE(settings.stored.isEmpty());
    struct Row
    {
        const char16_t *menu;
        FontSetting Global::*font;
        const char16_t *word;
    };
    const Row rows[] = {
        {u"mnuDisplayfont", &Global::DefaultDisplayFont, u"Display"},
        {u"mnuDataentryfont", &Global::DefaultEntryFont, u"Entry"},
        {u"mnuLetterheadfont", &Global::DefaultLetterheadFont, u"Letterhead"},
        {u"mnuReportfont", &Global::DefaultReportFont, u"Report"},
        {u"mnuVardelinfont", &Global::DefaultVardelinFont, u"Vardelin"},
        {u"mnuPrintFont", &Global::DefaultPrintFont, u"Print"},
    };
    for (const Row &row : rows) {
        const QString word = QString::fromUtf16(row.word);
        CommonDialog chosen;
        chosen.FontName = u"Courier "_s + word;
        chosen.FontSize = u"9.75"_s;
        dialogs.expectChoice(chosen);
        choose(window, row.menu);
        EXPECT_EQ((global.*row.font).name, u"Courier "_s + word);
        EXPECT_EQ((global.*row.font).size, u"9.75"_s);
        EXPECT_EQ(settings.GetSetting(u"Default%1FontName"_s.arg(word), u"Default %1 Font Name"_s.arg(word)),
                  u"Courier "_s + word);
        EXPECT_EQ(settings.GetSetting(u"Default%1FontSize"_s.arg(word), u"Default %1 Font Size"_s.arg(word)),
                  u"9.75"_s);
    }
    EXPECT_EQ(summary(window)->font(), before);
}

TEST_F(EntryCommandsTest, RecentFilesShowAsTheyStoodAtTheStart)
{
    const auto shown = [](const QWidget *window) {
        QStringList paths;
        for (const QAction *action : window->findChild<QMenu *>(u"mnuFile"_s)->actions()) {
            if (action->isVisible())
                paths += action->isSeparator() ? u"-"_s : action->text();
        }
        return paths;
    };
    EXPECT_EQ(shown(parent.open()), QStringList{u"E&xit"_s});
    global.List2 = {u"/1.mdb"_s, u"/R&D.mdb"_s, u"/3.mdb"_s, u"/4.mdb"_s, u"/5.mdb"_s, u"/6.mdb"_s};
    EXPECT_EQ(shown(parent.open()), (QStringList{u"/1.mdb"_s, u"/R&&D.mdb"_s, u"/3.mdb"_s, u"/4.mdb"_s,
                                                 u"/5.mdb"_s, u"-"_s, u"E&xit"_s}));
}

} // namespace vardelin
