// The To Do list's three windows on a real file; other programs read the tables after the commands.

#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"
#include "todo/frmAddToToDo.h"
#include "todo/frmEditToDo.h"
#include "todo/frmToDo.h"

#include <QHeaderView>
#include <QListWidget>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

const QString kReturning = u"There was an error in returning from the To Do List: No current record."_s;

struct ToDoTest : testing::Test, OfficeProgram
{
    ~ToDoTest() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    void addClient(const QString &last, const QString &first)
    {
        add(u"Active Clients"_s, {{u"Client Last Name"_s, last},
                                  {u"Client First Name"_s, first},
                                  {u"Active Client Things To Do"_s, u"old text"_s}});
    }
    void addItem(const QString &priority, const QString &last, const QString &first, const Value &project,
                 const QString &what)
    {
        const auto name = [](const QString &text) {
            return text.isEmpty() ? Value(NullValue{}) : Value(text);
        };
        add(u"Things To Do"_s, {{u"TTD Priority"_s, priority},
                                {u"TTD Client Last Name"_s, name(last)},
                                {u"TTD Client First Name"_s, name(first)},
                                {u"TTD Project"_s, project},
                                {u"ThingToDo"_s, what},
                                {u"Thing To Do Start Date"_s, DateSerial{46300}},
                                {u"Thing To Do Deadline"_s, DateSerial{46310}}});
    }
    void threeItems()
    {
        addItem(u"2"_s, u"Farrow"_s, u"Edith"_s, NullValue{}, u"call"_s);
        addItem(u"5"_s, u"Jelinek"_s, u"Tomas"_s, u"Lease"_s, u"read"_s);
        addItem(u"1"_s, {}, {}, u"Will"_s, u"draft"_s);
    }
    // What mdb-export sees: text, first, last, project, priority.
    QStringList table()
    {
        QStringList rows = exportedRows(global.DatabaseFileName, u"Things To Do"_s);
        for (QString &row : rows)
            row = row.section(u',', 0, 4).remove(u'"');
        return rows;
    }
    static QStringList shown(frmToDo &form)
    {
        QStringList rows;
        for (const ToDoRow &row : form.ListView1().rows())
            rows += QStringList(row.begin(), row.end()).join(u'|');
        return rows;
    }
    // Done on a table with rows: the first one ends in the engine's error, the second comes through.
    void doneTwice(frmToDo &form)
    {
        dialogs.expect(kReturning);
        choose(&form, u"mnuDone"_s);
        EXPECT_TRUE(form.isVisible());
        choose(&form, u"mnuDone"_s);
        EXPECT_FALSE(form.isVisible());
    }
    static void type(QWidget *field, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(field, key, modifiers);
    }
};

TEST_F(ToDoTest, showsTheTableInItsOrderAndAProjectOverAClient)
{
    threeItems();
    frmToDo form(global);
    EXPECT_EQ(shown(form),
              (QStringList{u"2|Farrow, Edith|call|10/5/2026|10/15/2026"_s,
                           u"5|Lease|read|10/5/2026|10/15/2026"_s, u"1|Will|draft|10/5/2026|10/15/2026"_s}));
    EXPECT_EQ(toDoColumnWidths(1000, 25), (std::array<int, 5>{87, 243, 409, 117, 117}));
    form.resize(800, 400);
    form.show();
    const int twips = form.ListView1().width() * 15;
    EXPECT_EQ(form.ListView1().columnWidth(2), int((twips - 25) * 0.42) / 15) << "at the first Resize";
    for (int i = 0; i < 30; ++i)
        form.ListView1().addRow({u"1"_s, u"Lease"_s, {}, {}, {}});
    QCoreApplication::processEvents();
    EXPECT_TRUE(form.ListView1().verticalScrollBar()->isVisible());
    EXPECT_FALSE(form.ListView1().horizontalScrollBar()->isVisible()) << "the shares hold beside the bar";
}

TEST_F(ToDoTest, tellsOfARowThatIsDamagedAndShowsTheOthers)
{
    threeItems();
    QFile file(global.DatabaseFileName);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray bytes = file.readAll();
    // The row: its number of columns, two dates, and then the text.
    const QByteArray text("r\0e\0a\0d", 7);
    const qsizetype start = bytes.indexOf(text) - 18;
    ASSERT_EQ(bytes.count(text), 1);
    ASSERT_EQ(bytes.mid(start, 2), QByteArray("\x07\x00", 2));
    const auto write = [&](const QByteArray &columns) {
        file.seek(start);
        file.write(columns);
        file.flush();
    };
    write("\x70\x70");
    {
        global.DefaultToDoFont = {u"Liberation Mono"_s, u"large"_s};
        dialogs.expect(u"Error in the To Do module: Type mismatch"_s);
        dialogs.expectBeginning(u"Error in the To Do module: "_s);
        frmToDo form(global);
        EXPECT_EQ(shown(form).size(), 2);
        EXPECT_EQ(shown(form).last(), u"1|Will|draft|10/5/2026|10/15/2026"_s);
        EXPECT_EQ(form.ListView1().font().family(), u"Liberation Mono"_s);
    }
    write(bytes.mid(start, 2));
}

TEST_F(ToDoTest, replacesTheTableAtTheSecondDoneAfterTheEnginesError)
{
    threeItems();
    addClient(u"Farrow"_s, u"Edith"_s);
    frmToDo form(global);
    form.show();
    dialogs.expect(kReturning);
    choose(&form, u"mnuDone"_s);
    EXPECT_EQ(table(), QStringList()) << "emptied, and there the command ended";
    EXPECT_EQ(column(u"Active Clients"_s, u"Active Client Things To Do"_s), QStringList{u"old text"_s});
    EXPECT_EQ(shown(form).size(), 3) << "the list is the working copy";
    choose(&form, u"mnuDone"_s);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(table(), (QStringList{u"call,Edith,Farrow,,2"_s, u"read,,,Lease,5"_s, u"draft,,,Will,1"_s}))
        << "the row with both lost its client";
    EXPECT_EQ(column(u"Active Clients"_s, u"Active Client Things To Do"_s), QStringList{QString()});
}

TEST_F(ToDoTest, fillsAClientsTextOnlyWhereTheNamesMatchCrosswise)
{
    addItem(u"1"_s, u"Farrow"_s, u"Edith"_s, NullValue{}, u"call"_s);
    addItem(u"1"_s, u"Martin"_s, u"Martin"_s, NullValue{}, u"write"_s);
    addItem(u"1"_s, u"Martin"_s, u"Martin"_s, NullValue{}, u"file"_s);
    addClient(u"Edith"_s, u"Farrow"_s);
    addClient(u"Farrow"_s, u"Edith"_s);
    addClient(u"Martin"_s, u"Martin"_s);
    frmToDo form(global);
    form.show();
    doneTwice(form);
    EXPECT_EQ(column(u"Active Clients"_s, u"Active Client Things To Do"_s),
              (QStringList{u"call\r\n"_s, QString(), u"write\r\nfile\r\n"_s}));
}

TEST_F(ToDoTest, leavesTheTableAloneByReturnEnterAndEsc)
{
    threeItems();
    const QStringList before = table();
    const std::vector<std::function<void(frmToDo &)>> ways{
        [](frmToDo &form) { choose(&form, u"mnuReturn"_s); },
        [](frmToDo &form) { type(&form.ListView1(), Qt::Key_Return); },
        [](frmToDo &form) { type(&form.ListView1(), Qt::Key_Escape); }};
    for (const auto &leave : ways) {
        frmToDo form(global);
        form.show();
        type(&form.ListView1(), Qt::Key_Delete);
        EXPECT_EQ(shown(form).size(), 2);
        leave(form);
        EXPECT_FALSE(form.isVisible());
    }
    EXPECT_EQ(table(), before);
    frmToDo form(global);
    form.show();
    form.ListView1().currentItem()->setSelected(false); // as Ctrl and a click do
    choose(&form, u"mnuDeleteItem"_s);
    choose(&form, u"mnuEditItem"_s);
    EXPECT_EQ(shown(form).size(), 3) << "there is no selected item";
    form.ListView1().currentItem()->setSelected(true);
    for (int i = 0; i < 4; ++i)
        choose(&form, u"mnuDeleteItem"_s);
    doneTwice(form);
    EXPECT_EQ(table(), QStringList());
}

TEST_F(ToDoTest, sortsAsTextWithTheFirstClickOnPriorityDescending)
{
    threeItems();
    addItem(u"10"_s, {}, {}, u"appeal"_s, u"x"_s);
    frmToDo form(global);
    const auto priorities = [&] {
        QString all;
        for (const ToDoRow &row : form.ListView1().rows())
            all += row[0] + u' ';
        return all;
    };
    form.show();
    QTest::mouseClick(form.ListView1().header()->viewport(), Qt::LeftButton, {}, {10, 5});
    EXPECT_EQ(priorities(), u"5 2 10 1 "_s);
    QTest::mouseDClick(form.ListView1().header()->viewport(), Qt::LeftButton, {}, {10, 5});
    EXPECT_EQ(priorities(), u"1 10 2 5 "_s) << "the second of two quick clicks";
    type(&form.ListView1(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(priorities(), u"10 2 5 1 "_s) << "without regard to case";
    form.ListView1().addRow({u"3"_s, u"Beta"_s, {}, {}, {}});
    EXPECT_EQ(priorities(), u"10 3 2 5 1 "_s) << "at its sorted place";
    doneTwice(form);
    EXPECT_EQ(table().first(), u"x,,,appeal,10"_s) << "stored as it was shown";
}

TEST_F(ToDoTest, exchangesAllButThePriorityByDragAndByKeyboard)
{
    threeItems();
    frmToDo form(global);
    form.resize(700, 300);
    form.show();
    ToDoView &list = form.ListView1();
    const auto press = [&](int row) {
        const QPoint at = row < 0 ? QPoint(50, list.viewport()->height() - 3)
                                  : list.visualItemRect(list.topLevelItem(row)).center();
        QTest::mousePress(list.viewport(), Qt::LeftButton, {}, at);
    };
    const auto release = [&](int row) {
        const QPoint at = row < 0 ? QPoint(50, list.viewport()->height() - 3)
                                  : list.visualItemRect(list.topLevelItem(row)).center();
        QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, at);
    };
    const auto whats = [&] {
        QString all;
        for (const ToDoRow &row : list.rows())
            all += row[0] + row[2] + u' ';
        return all;
    };
    press(1);
    release(1);
    EXPECT_EQ(whats(), u"2call 5read 1draft "_s);
    press(0);
    release(2);
    EXPECT_EQ(whats(), u"2draft 5read 1call "_s);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       list.visualItemRect(list.topLevelItem(1)).center());
    release(1);
    EXPECT_EQ(whats(), u"2draft 5read 1call "_s) << "a second quick click presses on its own row";
    press(0);
    release(0);
    press(-1); // no item: the stored row stays
    release(1);
    EXPECT_EQ(whats(), u"2read 5draft 1call "_s);
    list.setCurrentItem(list.topLevelItem(0));
    type(&list, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(whats(), u"2draft 5read 1call "_s);
    EXPECT_EQ(list.selectedRow(), 2);
    type(&list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(whats(), u"2read 5draft 1call "_s);
}

TEST_F(ToDoTest, addsToTableAndListAtOnce)
{
    addClient(u"Farrow"_s, u"Edith"_s);
    add(u"Projects"_s, {{u"Projects"_s, u"Lease"_s}});
    frmToDo list(global);
    {
        frmAddToToDo form(global, list);
        form.show();
        auto *text = control<QLineEdit>(&form, u"Text1"_s);
        text->setText(u"call"_s);
        dialogs.expect(u"You must select a client or a project.  Try again."_s);
        type(text, Qt::Key_Return);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(text->text(), u"call"_s);
        control<QListWidget>(&form, u"List1"_s)->setFocus();
        type(control<QListWidget>(&form, u"List1"_s), Qt::Key_Down); // to the first one
        control<QListWidget>(&form, u"List2"_s)
            ->setCurrentRow(control<QListWidget>(&form, u"List2"_s)->count() - 1);
        control<QRadioButton>(&form, u"Option1(4)"_s)->setChecked(true);
        type(text, Qt::Key_Return);
        EXPECT_FALSE(form.isVisible());
    }
    EXPECT_EQ(table(), QStringList{u"call,Edith,Farrow,,5"_s}) << "the table gets the client";
    EXPECT_EQ(shown(list), QStringList{u"5|Lease|call|10/16/2026|10/23/2026"_s})
        << "the list shows the project";
    dialogs.expectInput(u"Type in the number of days you generally want to allow for the deadline date"_s,
                        u"Set default time allowance"_s, u"0"_s);
    {
        frmAddToToDo form(global, list);
        choose(&form, u"mnuAllowance"_s);
        control<QListWidget>(&form, u"List1"_s)->setCurrentRow(0);
        choose(&form, u"mnuDone"_s);
    }
    frmAddToToDo today(global, list);
    EXPECT_EQ(control<DateTimePicker>(&today, u"DTPicker1"_s)->Value(), clock.moment);
    EXPECT_EQ(shown(list).last(), u"3|Farrow, Edith||10/16/2026|10/23/2026"_s) << "an empty text is taken";
    settings.SaveSetting(u"Preferences"_s, u"Time Allowance"_s, u"soon"_s);
    EXPECT_THROW(frmAddToToDo(global, list), RunTimeError);
    settings.SaveSetting(u"Preferences"_s, u"Time Allowance"_s, u"9000000"_s); // beyond all dates
    EXPECT_THROW(frmAddToToDo(global, list), RunTimeError);
}

TEST_F(ToDoTest, picksActivitiesAndLeavesThemInTheListOfEmployees)
{
    threeItems();
    frmToDo list(global);
    global.List1[1] = {u"an employee"_s};
    {
        frmAddToToDo form(global, list);
        form.show();
        auto *text = control<QLineEdit>(&form, u"Text1"_s);
        text->setText(u"a old z"_s);
        text->setSelection(2, 3); // is replaced
        type(text, Qt::Key_F3);
        auto *picker = control<ListBox>(&form, u"List3"_s);
        EXPECT_TRUE(picker->isVisible());
        EXPECT_EQ(picker->entries(), column(u"Activities"_s, u"Activities"_s)) << "in the table's order";
        picker->item(0)->setSelected(true);
        picker->item(2)->setSelected(true);
        type(picker, Qt::Key_Escape); // inserts, too
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(text->text(), u"a  %1 %2 z"_s.arg(picker->item(0)->text(), picker->item(2)->text()));
    }
    EXPECT_EQ(global.List1[1], column(u"Activities"_s, u"Activities"_s));
    global.CurrentDeadline = u"10/15/2026"_s;
    frmEditToDo form(global, list);
    form.show();
    auto *text = control<QLineEdit>(&form, u"Text2"_s);
    type(text, Qt::Key_F3);
    auto *picker = control<ListBox>(&form, u"List1"_s);
    picker->item(0)->setSelected(true);
    picker->item(2)->setSelected(true);
    type(picker, Qt::Key_Return);
    EXPECT_EQ(text->text(), u' ' + picker->item(0)->text()) << "only the first";
}

// Runs the edit command on a row (from 0) with what is done in its window.
void edit(frmToDo &list, int row, const std::function<void(frmEditToDo &)> &act)
{
    list.ListView1().setCurrentItem(list.ListView1().topLevelItem(row));
    QTimer::singleShot(0, &list, [&] {
        auto *form = qobject_cast<frmEditToDo *>(QApplication::activeModalWidget());
        ASSERT_TRUE(form);
        act(*form);
    });
    choose(&list, u"mnuEditItem"_s);
}

TEST_F(ToDoTest, editsAtPriorityThreeAndFindsTheOldRowByTheNewPriority)
{
    addItem(u"3"_s, u"Farrow"_s, u"Edith"_s, NullValue{}, u"call"_s);
    addItem(u"5"_s, u"Jelinek"_s, u"Tomas"_s, NullValue{}, u"read"_s);
    frmToDo list(global);
    list.show();
    edit(list, 0, [this](frmEditToDo &form) {
        EXPECT_TRUE(control<QRadioButton>(&form, u"Option1(2)"_s)->isChecked());
        auto *owner = control<QLineEdit>(&form, u"Text1"_s);
        typeOver(owner, u"Somebody"_s);
        EXPECT_EQ(owner->text(), u"Farrow, Edith"_s) << "the box can't be changed";
        control<QLineEdit>(&form, u"Text2"_s)->setText(u"call again"_s);
        control<DateTimePicker>(&form, u"DTPicker1"_s)->setValue({46320});
        global.ClientLastName = u"Jelinek"_s; // another's, by no way of this window
        dialogs.expect(
            u"You cannot edit the name of a client or a project in a To Do list.  You can, however, delete the selected To Do item and add a new one."_s);
        choose(&form, u"mnuDone"_s);
        EXPECT_TRUE(form.isVisible());
        global.ClientLastName = u"Farrow"_s;
        type(owner, Qt::Key_Return);
    });
    EXPECT_EQ(table(), (QStringList{u"read,Tomas,Jelinek,,5"_s, u"call again,Edith,Farrow,,3"_s}));
    EXPECT_EQ(shown(list).last(), u"3|Farrow, Edith|call again|10/5/2026|10/25/2026"_s);
    EXPECT_EQ(column(u"Things To Do"_s, u"Thing To Do Deadline"_s).last(), u"10/15/2026"_s)
        << "the table keeps the old deadline";

    edit(list, 0, [](frmEditToDo &form) {
        EXPECT_TRUE(control<QRadioButton>(&form, u"Option1(2)"_s)->isChecked())
            << "whatever the row's priority is";
        choose(&form, u"mnuDone"_s);
    });
    EXPECT_EQ(table().filter(u"read"_s),
              (QStringList{u"read,Tomas,Jelinek,,5"_s, u"read,Tomas,Jelinek,,3"_s}))
        << "the old row wasn't found and stays beside the new one";
}

TEST_F(ToDoTest, tellsOfWhatFailsInTheWordsOfEachCommand)
{
    addItem(u"3"_s, {}, {}, u"Will"_s, u"draft"_s);
    frmToDo list(global);
    list.show();
    {
        frmAddToToDo form(global, list);
        form.show();
        control<QListWidget>(&form, u"List2"_s)->setCurrentRow(0);
        control<QLineEdit>(&form, u"Text1"_s)->setText(QString(101, u'x')); // more than the column takes
        dialogs.expect(u"Unable to add To Do item"_s);
        choose(&form, u"mnuDone"_s);
        EXPECT_FALSE(form.isVisible()) << "the item is lost";
    }
    EXPECT_EQ(table(), QStringList{u"draft,,,Will,3"_s});
    const QString file = global.DatabaseFileName;
    const auto lose = [&] { global.DatabaseFileName = folder.filePath(u"gone.mdb"_s); };
    edit(list, 0, [&](frmEditToDo &form) {
        lose();
        dialogs.expectBeginning(u"Run-time error '3024':"_s);
        choose(&form, u"mnuDone"_s);
        choose(&form, u"mnuReturn"_s);
    });
    EXPECT_EQ(ended, 1) << "nothing catches it";
    dialogs.expectBeginning(u"Error in Edit To Do routine: "_s);
    choose(&list, u"mnuEditItem"_s);
    dialogs.expectBeginning(u"There was an error in returning from the To Do List: "_s);
    choose(&list, u"mnuDone"_s);
    EXPECT_TRUE(list.isVisible());
    dialogs.expectBeginning(u"Error in the To Do module: "_s);
    EXPECT_EQ(shown(*std::make_unique<frmToDo>(global)), QStringList());
    global.DatabaseFileName = file;
}

TEST_F(ToDoTest, editsTheItemOfAClientOfOneName)
{
    add(u"Things To Do"_s, {{u"TTD Priority"_s, u"3"_s},
                            {u"TTD Client Last Name"_s, u"Hartmann Company"_s},
                            {u"TTD Client First Name"_s, QString()},
                            {u"ThingToDo"_s, u"call"_s}});
    frmToDo list(global);
    list.show();
    edit(list, 0, [](frmEditToDo &form) {
        EXPECT_EQ(control<QLineEdit>(&form, u"Text2"_s)->maxLength(), 100) << "what the column takes";
        choose(&form, u"mnuDone"_s);
    });
    EXPECT_EQ(table(), QStringList{u"call,,Hartmann Company,,3"_s});
    EXPECT_EQ(shown(list), QStringList{u"3|Hartmann Company, |call||"_s});
}

TEST_F(ToDoTest, leavesAnItemWithoutADeadlineAsItIsUntilOneIsChosen)
{
    add(u"Things To Do"_s,
        {{u"TTD Priority"_s, u"3"_s}, {u"TTD Project"_s, u"Will"_s}, {u"ThingToDo"_s, u"x"_s}});
    frmToDo list(global);
    list.show();
    edit(list, 0, [](frmEditToDo &form) { choose(&form, u"mnuDone"_s); });
    EXPECT_EQ(shown(list), QStringList{u"3|Will|x||"_s});
    edit(list, 0, [](frmEditToDo &form) {
        ToDoTest::type(control<DateTimePicker>(&form, u"DTPicker1"_s), Qt::Key_Up); // a month on
        choose(&form, u"mnuDone"_s);
    });
    EXPECT_EQ(shown(list), QStringList{u"3|Will|x||11/16/2026"_s});
    EXPECT_EQ(column(u"Things To Do"_s, u"Thing To Do Deadline"_s), QStringList{QString()});
}

// The names of the client edited before stay, and a project's row is taken for that client's.
TEST_F(ToDoTest, keepsTheEarlierClientForAProjectsRow)
{
    addItem(u"3"_s, u"Farrow"_s, u"Edith"_s, NullValue{}, u"call"_s);
    addItem(u"3"_s, {}, {}, u"Will"_s, u"draft"_s);
    frmToDo list(global);
    list.show();
    edit(list, 0, [](frmEditToDo &form) { choose(&form, u"mnuReturn"_s); });
    edit(list, 1, [](frmEditToDo &form) {
        EXPECT_EQ(control<QLineEdit>(&form, u"Text1"_s)->text(), u"Farrow, Edith"_s);
        choose(&form, u"mnuDone"_s);
    });
    EXPECT_EQ(table(), (QStringList{u"call,Edith,Farrow,,3"_s, u"draft,Edith,Farrow,,3"_s}));
    EXPECT_EQ(shown(list).last().section(u'|', 1, 1), u"Will"_s) << "the list shows the project";
    EXPECT_EQ(global.ClientLastName, u"Farrow"_s);
    EXPECT_EQ(global.SearchProject, QString());
}

TEST_F(ToDoTest, keepsFontsOfScreenAndPaperAndCancelsQuietly)
{
    threeItems();
    frmToDo form(global);
    dialogs.expectChoice({.FontName = u"Liberation Mono"_s, .FontSize = u"9"_s});
    choose(&form, u"mnuProgramFont"_s);
    EXPECT_EQ(form.ListView1().font().family(), u"Liberation Mono"_s);
    EXPECT_EQ(settings.GetSetting(u"DefaultToDoFontName"_s, u"Default To Do Font Name"_s),
              u"Liberation Mono"_s);
    dialogs.expectChoice({.FontName = u"Liberation Serif"_s, .FontSize = u"11"_s});
    choose(&form, u"mnuPrintFont"_s);
    EXPECT_EQ(settings.GetSetting(u"DefaultPrintFontSize"_s, u"Default Print Font Size"_s), u"11"_s);
    EXPECT_EQ(global.DefaultPrintFont.name, u"Liberation Serif"_s);
    dialogs.expectCancel();
    choose(&form, u"mnuProgramFont"_s);
    EXPECT_EQ(global.DefaultToDoFont.name, u"Liberation Mono"_s);
}

} // namespace
