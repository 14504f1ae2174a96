// A Display window as one walks through the records in it.

#include "tests/display/DisplayWindows.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct DisplayWindowTest : DisplayWindowsTest
{
};

TEST_F(DisplayWindowTest, OpensOnTheLatestLog)
{
    for (const int number : {2, 3, 1}) // a table's order isn't that of time
        addLog(number);
    const auto window = open();
    EXPECT_EQ(fields(window.get()),
              (QStringList{u"Archer, Ann 3"_s, u"Baxter, Bo"_s, u"Estate"_s, u"100"_s, u"Call"_s, u"30"_s,
                           u"10/18/2026 9:00:00 AM"_s, u"0.3"_s, u"10/18/2026 3:00:00 PM"_s}));
    EXPECT_EQ(notes(window.get(), 2)->Text(), u"Notes 3"_s);
    EXPECT_EQ(slider(window.get())->value(), 100);
    EXPECT_EQ(global.RangeStart, Value(DateSerial{46311.375}));
    EXPECT_EQ(global.RangeEnd, Value(DateSerial{46313.375}));
    EXPECT_EQ(global.CurrentSQL, u"Select * from Vardelins order by [Beginning Time]"_s);
    const auto *SQLWhere = control<QLabel>(window.get(), u"SQLWhere"_s);
    EXPECT_EQ(SQLWhere->text(), global.CurrentSQL);
    EXPECT_EQ(SQLWhere->toolTip(), QString());
    EXPECT_TRUE(global.DisplayWindowActive);
    EXPECT_EQ(window->file(), global.DatabaseFileName);
    EXPECT_EQ(status(window.get()), u"  "_s + global.DatabaseFileName + u"  "_s);
    EXPECT_FALSE(field(window.get(), 1)->font() == field(window.get(), 6)->font())
        << "the fee keeps the design font";
    EXPECT_FALSE(control<QToolButton>(window.get(), u"Next"_s)->isEnabled());

    window->showSelection(u"Select * from Vardelins where [Duration] < 0.25 order by [Beginning Time]"_s);
    EXPECT_EQ(field(window.get(), 1)->text(), u"Archer, Ann 1"_s);
    EXPECT_TRUE(control<QToolButton>(window.get(), u"Next"_s)->isEnabled());
}

TEST_F(DisplayWindowTest, AnEmptyFileShowsEmptyFieldsAndSaysNothing)
{
    global.RangeStart = Value(DateSerial{1});
    const auto window = open();
    EXPECT_EQ(fields(window.get()).join(QString()), QString());
    EXPECT_EQ(slider(window.get())->value(), 0);
    EXPECT_EQ(global.RangeStart, Value(DateSerial{1}));
    choose(window.get(), u"mnuSaveChanges"_s);
    QTest::keyClick(slider(window.get()), Qt::Key_Right);
    EXPECT_EQ(slider(window.get())->value(), 0) << "there is nothing to go to";
    releaseSlider(window.get(), 70);
    EXPECT_EQ(slider(window.get())->value(), 0);
    typeOver(field(window.get(), 1), u"lost in no record"_s);
    choose(window.get(), u"mnuSaveChanges"_s);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s), QStringList());
    dialogs.expect({.prompt = u"Are you sure?"_s,
                    .title = u"Delete This Record"_s,
                    .buttons = Buttons::YesNo,
                    .defaultButton = 2},
                   Answer::Yes);
    dialogs.expect({.prompt = u"There are no records to delete."_s, .title = u"Delete This Record"_s});
    choose(window.get(), u"mnuDeleteLog"_s);
}

TEST_F(DisplayWindowTest, AFailingLoadIsQuietAndLeavesAWindowThatCanBeUsed)
{
    global.DatabaseFileName = folder.filePath(u"none.mdb"_s);
    const auto window = open();
    EXPECT_EQ(window->file(), global.DatabaseFileName);
    dialogs.expect(u"Are you sure?"_s, Answer::Yes, Buttons::YesNo);
    for (const char16_t *menu : {u"mnuSaveChanges", u"mnuDeleteLog", u"mnuGraphics", u"mnuText"})
        choose(window.get(), QString::fromUtf16(menu));
    releaseSlider(window.get(), 50);
    QTest::keyClick(slider(window.get()), Qt::Key_Right);
}

TEST_F(DisplayWindowTest, NavigatorAndSliderWalkThroughTheRecords)
{
    addLogs(8);
    const auto window = open();
    const auto expectAt = [&](int log, int sliderAt) {
        EXPECT_EQ(field(window.get(), 1)->text(), u"Archer, Ann %1"_s.arg(log));
        EXPECT_EQ(slider(window.get())->value(), sliderAt) << log;
    };
    press(window.get(), u"Previous"_s);
    expectAt(7, 88);
    press(window.get(), u"First"_s);
    expectAt(1, 0);
    EXPECT_FALSE(control<QToolButton>(window.get(), u"Previous"_s)->isEnabled());
    press(window.get(), u"Next"_s);
    expectAt(2, 25);
    press(window.get(), u"Last"_s);
    expectAt(8, 100);

    releaseSlider(window.get(), 60); // 4.8: the fifth, to whose place the slider snaps
    expectAt(5, 62);
    releaseSlider(window.get(), 95);
    expectAt(8, 100);
    releaseSlider(window.get(), 12); // below one record: no move, and the slider drops
    expectAt(8, 0);

    slider(window.get())->setValue(54);
    const QPoint besideGroove(slider(window.get())->width() - 20, 1);
    QTest::mouseClick(slider(window.get()), Qt::LeftButton, {}, besideGroove); // five on: 4.72
    expectAt(5, 62);
    QTest::mouseClick(slider(window.get()), Qt::MiddleButton, {}, besideGroove);
    expectAt(5, 62);

    releaseSlider(window.get(), 100);
    QTest::keyClick(slider(window.get()), Qt::Key_Left);
    expectAt(7, 88);
    QTest::keyClick(slider(window.get()), Qt::Key_Home);
    expectAt(1, 0);
    QTest::keyClick(slider(window.get()), Qt::Key_Right);
    expectAt(2, 25);
}

TEST_F(DisplayWindowTest, TextAndGraphicsViewChangePlaces)
{
    addLog(1);
    const auto window = open();
    global.CurrentDisplayTag = window->Tag;
    const auto expectView = [&](bool graphics) {
        EXPECT_EQ(notes(window.get(), 1)->isVisible(), graphics);
        EXPECT_EQ(notes(window.get(), 2)->isVisible(), !graphics);
        EXPECT_EQ(control<QAction>(window.get(), u"mnuText"_s)->isEnabled(), graphics);
        EXPECT_EQ(control<QAction>(window.get(), u"mnuGraphics"_s)->isEnabled(), !graphics);
    };
    expectView(false);
    choose(window.get(), u"mnuGraphics"_s);
    expectView(true);
    EXPECT_TRUE(notes(window.get(), 1)->hasFocus());
    EXPECT_EQ(notes(window.get(), 1)->Text().trimmed(), u"Rich notes 1"_s);
    choose(window.get(), u"mnuText"_s);
    expectView(false);
    EXPECT_TRUE(notes(window.get(), 2)->hasFocus());
}

TEST_F(DisplayWindowTest, HintsFollowTheMouse)
{
    addLogs(2);
    global.ClientCaption = u"Patient"_s;
    const auto window = open();
    window->resize(900, 700);
    QTest::qWait(1);
    const QString path = u"  "_s + global.DatabaseFileName + u"  "_s;
    const QString view = u"  Use [View] to toggle between text and graphics modes  "_s;
    const std::vector<std::pair<QString, QString>> hints{
        {u"Text1"_s, u"Patient"_s},
        {u"Text2"_s, u"Employee (or user)"_s},
        {u"Text3"_s, u"Project"_s},
        {u"Text4"_s, u"  Hourly Rate  "_s},
        {u"Text6"_s, QString()}, // none: what stood there stays
        {u"Text5"_s, u"  Summary  "_s},
        {u"Text7"_s, u"  Beginning Time  "_s},
        {u"Text8"_s, u"  Duration (computed to nearest tenth of an hour) "_s},
        {u"Text9"_s, u"  Ending Time  "_s},
        {u"RichTextBox2"_s, view},
        {u"Toolbar1"_s, path},
        {u"Slider1"_s, u"  Use this slider to navigate through 2 Vardelin records  "_s}};
    QString before;
    for (const auto &[name, hint] : hints) {
        const auto *widget = control<QWidget>(window.get(), name);
        QTest::mouseMove(window->windowHandle(), widget->mapTo(window.get(), widget->rect().center()));
        QTest::qWait(1);
        EXPECT_EQ(status(window.get()), hint.isEmpty() ? before : hint) << name.toStdString();
        before = status(window.get());
    }
    QTest::mouseMove(window->windowHandle(), {4, window->height() / 2});
    QTest::qWait(1);
    EXPECT_EQ(status(window.get()), path) << "the free area";
}

TEST_F(DisplayWindowTest, LeavingTheRateTellsTheFeeAndWritesNothing)
{
    addLog(5);
    const auto window = open();
    typeOver(field(window.get(), 4), u" 120 "_s);
    QTest::keyClick(field(window.get(), 4), Qt::Key_Tab);
    EXPECT_EQ(status(window.get()), u"Fee for services is $60"_s);
    EXPECT_EQ(field(window.get(), 6)->text(), u"50"_s);
    EXPECT_EQ(global.CurrentRate, u"120"_s);
    typeOver(field(window.get(), 4), QString());
    field(window.get(), 1)->setFocus();
    EXPECT_EQ(status(window.get()), u"Fee for services is $60"_s) << "no rate, no tip";
    typeOver(field(window.get(), 4), u"free"_s);
    dialogs.expect(u"Run-time error '13':\n\nType mismatch"_s);
    field(window.get(), 1)->setFocus();
    EXPECT_EQ(ended, 0) << "a tip is no reason to end the program";
    EXPECT_EQ(field(window.get(), 4)->text(), u"free"_s);
}

TEST_F(DisplayWindowTest, FieldsStandInTheOrderOfTabAndFitASmallWindow)
{
    addLog(1);
    global.EmployeeCaption = u"Attorneys & other people who work for this office"_s;
    const auto window = open();
    for (const int width : {1200, 640, 260}) {
        window->resize(width, 380);
        QTest::qWait(1);
        EXPECT_EQ(window->width(), width) << "nothing keeps the window from being small";
        for (int number = 1; number <= 9; ++number)
            EXPECT_GE(field(window.get(), number)->width(), 90) << "at " << width << ", field " << number;
    }
    field(window.get(), 1)->setFocus();
    QStringList order;
    for (int i = 0; i < 20; ++i) {
        order += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.mid(0, 10),
              (QStringList{u"Text1"_s, u"Text2"_s, u"Text3"_s, u"Text5"_s, u"Text4"_s, u"Text6"_s, u"Text7"_s,
                           u"Text9"_s, u"Text8"_s, u"RichTextBox2"_s}));
    EXPECT_LT(order.indexOf(u"Slider1"_s), order.indexOf(u"Toolbar1.Back"_s)) << "the tool bar comes last";
    EXPECT_GE(order.indexOf(u"Slider1"_s), 10);
}

TEST_F(DisplayWindowTest, CommandsHandOverTheWindowsOwnFile)
{
    addLog(1);
    const auto window = open();
    const QString own = global.DatabaseFileName;
    const auto elsewhere = [&] {
        global.DatabaseFileName = u"/elsewhere.mdb"_s;
        global.EntryWindowActive = true;
        global.DisplayWindowActive = false;
        global.CurrentDisplayTag = u"9"_s;
    };
    const auto expectOwn = [&](const QString &menu) {
        elsewhere();
        choose(window.get(), menu);
        EXPECT_EQ(global.DatabaseFileName, own);
        EXPECT_EQ(global.CurrentDisplayTag, window->Tag);
        EXPECT_TRUE(global.DisplayWindowActive && !global.EntryWindowActive);
    };
    int asked = 0;
    global.openers.frmActiveClients = [&] { ++asked; };
    expectOwn(u"mnuActiveClients"_s);
    EXPECT_EQ(asked, 1);
    dialogs.expectCancel();
    dialogs.expect(u"Compact Vardelin File function aborted by user."_s);
    expectOwn(u"mnuCompactData"_s);
    EXPECT_EQ(dialogs.lastChoice.FileName, own);
    dialogs.expectCancel();
    dialogs.expectBeginning(u"Could not open new file."_s);
    expectOwn(u"mnuNewFile"_s);
    elsewhere();
    window->Form_Activate();
    EXPECT_EQ(global.CurrentDisplayTag, window->Tag);
    EXPECT_TRUE(global.DisplayWindowActive && global.EntryWindowActive) << "the other kind's flag is left";

    int entries = 0;
    global.openers.NewEntryWindow = [&]() -> EntryWindow * {
        ++entries;
        return nullptr;
    };
    global.List1[3].clear();
    elsewhere();
    choose(window.get(), u"mnuDEnter"_s);
    EXPECT_EQ(entries, 1);
    EXPECT_EQ(global.DatabaseFileName, own);
    EXPECT_FALSE(global.List1[3].isEmpty()) << "the pick lists are those of the window's file";
}

} // namespace vardelin::testing_support
