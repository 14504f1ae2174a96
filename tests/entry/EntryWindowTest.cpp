// The window's own manners: load, clock, keys, focus, look.
#include "tests/entry/EntryWindows.h"

#include <QScrollArea>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

struct EntryWindowTest : testing_support::EntryWindowsTest
{
    // Lets the window's clock tick once, ahead of its time.
    static void tick(const QWidget *window)
    {
        auto *timer = window->findChild<QTimer *>(u"Timer1"_s);
        timer->setInterval(0);
        QTest::qWait(5);
        timer->setInterval(30000);
    }
    static QTimer *timer(const QWidget *window) { return window->findChild<QTimer *>(u"Timer1"_s); }
    static void hover(QWidget *over)
    {
        QMouseEvent move(QEvent::MouseMove, QPointF(3, 3), over->mapToGlobal(QPointF(3, 3)), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(over, &move);
    }
};

} // namespace

TEST_F(EntryWindowTest, LoadTakesListsFontsAndFile)
{
    global.List1 = {QStringList{u"Zed, Al"_s, u"abel, Cy"_s},
                    {u"Roe, Jane"_s},
                    {u"MARKETING"_s},
                    {u"150"_s, u"50"_s},
                    {u"Review file"_s, u"Attend"_s}};
    global.DefaultEmployee = u"Nobody, On List"_s;
    global.DefaultEntryFont = {u"Liberation Serif"_s, u"14.5"_s};
    const QWidget *window = parent.open();
    EXPECT_EQ(combo(window, 1)->entries(), (QStringList{u"abel, Cy"_s, u"Zed, Al"_s}));
    EXPECT_EQ(combo(window, 1)->Text(), QString());
    EXPECT_EQ(combo(window, 2)->Text(), u"Nobody, On List"_s);
    EXPECT_EQ(combo(window, 4)->entries(), (QStringList{u"150"_s, u"50"_s})) << "sorted as text";
    EXPECT_EQ(control<ListBox>(window, u"List1")->entries(), (QStringList{u"Attend"_s, u"Review file"_s}));
    for (const char16_t *name : {u"Text1", u"Combo1", u"Combo4", u"List1", u"RichTextBox1"}) {
        EXPECT_EQ(control<QWidget>(window, name)->font().family(), u"Liberation Serif"_s);
        EXPECT_EQ(control<QWidget>(window, name)->font().pointSizeF(), 14.5);
    }
    EXPECT_EQ(label(window, u"Label2"), u"/office/VARDELIN.MDB"_s);
    EXPECT_EQ(picker(window, 1)->Value(), clock.now());
    EXPECT_TRUE(global.EntryWindowActive);
    EXPECT_FALSE(global.DisplayWindowActive);

    global.DefaultEntryFont.size = u"large"_s;
    EXPECT_THROW(frmEntryWithFrames failing(global), RunTimeError);
}

TEST_F(EntryWindowTest, EveryWindowKeepsItsOwnTime)
{
    const QWidget *first = parent.open();
    clock.forward(90);
    const QWidget *second = parent.open();
    for (const QWidget *window : {first, second}) {
        EXPECT_TRUE(timer(window)->isActive());
        EXPECT_EQ(timer(window)->interval(), 30000);
    }
    clock.forward(17);
    tick(first);
    EXPECT_EQ(dateText(picker(first, 1)->Value()), u"10/16/2026 9:00:00 AM"_s);
    EXPECT_EQ(dateText(picker(first, 2)->Value()), u"10/16/2026 9:01:47 AM"_s) << "the seconds are kept";
    EXPECT_EQ(dateText(picker(second, 2)->Value()), u"10/16/2026 9:01:30 AM"_s);
}

TEST_F(EntryWindowTest, AnEditedEndingTimeStandsUntilTheFocusLeavesIt)
{
    const QWidget *window = parent.open();
    picker(window, 2)->setFocus();
    clock.forward(60);
    tick(window);
    EXPECT_TRUE(timer(window)->isActive()) << "the clock's own step is no edit";
    QTest::keyClick(picker(window, 2), Qt::Key_Up);
    const DateSerial edited = picker(window, 2)->Value();
    EXPECT_FALSE(timer(window)->isActive());
    EXPECT_NE(edited, clock.now());
    summary(window)->setFocus();
    EXPECT_TRUE(timer(window)->isActive());
    EXPECT_EQ(picker(window, 2)->Value(), edited) << "until the next tick";
    tick(window);
    EXPECT_EQ(picker(window, 2)->Value(), clock.now());
}

TEST_F(EntryWindowTest, ActivitiesGoWhereTheListWasCalled)
{
    global.List1[4] = {u"Review file"_s, u"Attend"_s, u"Legal research"_s};
    QWidget *window = parent.open();
    auto *List1 = control<ListBox>(window, u"List1");
    notes(window)->setText(u"Today: "_s);
    notes(window)->setFocus();
    QTest::keyClick(notes(window), Qt::Key_End);
    EXPECT_TRUE(List1->isHidden());
    QTest::keyClick(notes(window), Qt::Key_F9);
    EXPECT_TRUE(List1->isVisible());
    EXPECT_TRUE(List1->hasFocus());
    EXPECT_TRUE(window->rect().contains(List1->geometry()));
    List1->item(0)->setSelected(true);
    List1->item(2)->setSelected(true);
    QTest::keyClick(List1, Qt::Key_Return);
    EXPECT_EQ(notes(window)->Text(), u"Today:  Attend Review file"_s);
    EXPECT_TRUE(List1->isHidden());
    EXPECT_TRUE(notes(window)->hasFocus());

    summary(window)->setText(u"replaced"_s);
    summary(window)->setFocus();
    summary(window)->selectAll();
    QTest::keyClick(summary(window), Qt::Key_F9);
    EXPECT_EQ(List1->selectedRows(), (QList<int>{0, 2})) << "a selection made earlier stays";
    QTest::keyClick(List1, Qt::Key_Enter);
    EXPECT_EQ(summary(window)->text(), u" Attend Review file"_s);
    EXPECT_TRUE(summary(window)->hasFocus());

    summary(window)->selectAll();
    QTest::keyClick(summary(window), Qt::Key_F9);
    List1->clearSelection();
    QTest::keyClick(List1, Qt::Key_Return);
    QTest::keyClick(summary(window), Qt::Key_F9);
    QTest::keyClick(List1, Qt::Key_Escape);
    EXPECT_EQ(summary(window)->text(), u" Attend Review file"_s) << "nothing selected, nothing changes";
    EXPECT_TRUE(List1->isHidden());
}

TEST_F(EntryWindowTest, F8PassesTheSelectionOfTheNotes)
{
    QWidget *window = parent.open();
    notes(window)->setText(u"call about lease"_s);
    notes(window)->setFocus();
    QTest::keyClick(notes(window), Qt::Key_Home);
    QTest::keyClick(notes(window), Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(notes(window), Qt::Key_F8);
    QTest::keyClick(notes(window), Qt::Key_F8);
    EXPECT_EQ(summary(window)->text(), u"call  call "_s);
    EXPECT_TRUE(notes(window)->hasFocus());
    QTest::keyClick(summary(window), Qt::Key_F8);
    EXPECT_EQ(summary(window)->text(), u"call  call "_s) << "F8 in the summary does nothing";
    summary(window)->undo();
    EXPECT_EQ(summary(window)->text(), u"call "_s) << "what F8 did can be undone";
}

TEST_F(EntryWindowTest, HintsStayUntilTheNext)
{
    QWidget *window = parent.open();
    struct Row
    {
        const char16_t *over, *hint;
    };
    const Row rows[] = {
        {u"Frame1", u"  Use [F2] to change your list for Client  "},
        {u"Combo1", u"  Use [F2] to change your list for Client  "},
        {u"Toolbar2", u"Maintain Client list, Contact Database or reset this field's caption"},
        {u"Frame2", u"  Use [F4] to change your list for Employee (or user)  "},
        {u"Toolbar3", u"Maintain Employee (or user) list, or reset this field's caption"},
        {u"Frame3", u"  Use [F5] to change your list for Project  "},
        {u"Toolbar4", u"Maintain Project list, or reset this field's caption"},
        {u"Frame4", u"  Use [F6] to change your list for hourly rates  "},
        {u"Toolbar6", u"Maintain the Rates list"},
        {u"Frame5", u"  Use [F3] and [F9] to access your Activities list  "},
        {u"Toolbar5", u"Reset this field's caption"},
        {u"Frame6", u"  Use [F7] to access your To Do list  "},
        {u"Frame7", u"  You can edit your Beginning Time here  "},
        {u"Frame8", u"  You can edit your Ending Time here  "},
        {u"Toolbar1", u"/office/VARDELIN.MDB"},
    };
    for (const Row &row : rows) {
        auto *over = control<QWidget>(window, row.over);
        hover(over);
        EXPECT_EQ(label(window, u"Label1"), QString::fromUtf16(row.hint))
            << QString::fromUtf16(row.over).toStdString();
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(over, &leave);
    }
}

TEST_F(EntryWindowTest, TheKeyboardReachesEverything)
{
    QWidget *window = parent.open();
    combo(window, 1)->setFocus();
    QStringList order;
    for (int i = 0; i < 60; ++i) {
        QWidget *focused = QApplication::focusWidget();
        while (focused && focused->objectName().isEmpty())
            focused = focused->parentWidget();
        const QString name = focused ? focused->objectName() : QString();
        if (name != order.value(order.size() - 1)) // a picker has several sections
            order += name;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.mid(0, 8).join(u' '),
              u"Combo1 Combo2 Combo3 Combo4 Text1 RichTextBox1 DTPicker1 DTPicker2"_s);
    EXPECT_TRUE(order.contains(u"Toolbar2.Small Caps"_s)) << order.join(u' ').toStdString();
    EXPECT_TRUE(order.contains(u"Toolbar1.Back"_s));
}

TEST_F(EntryWindowTest, FitsSmallAndLargeWindows)
{
    frmEntryWithFrames window(global);
    const auto frame = [&](int number) { return window.findChild<QWidget *>(u"Frame%1"_s.arg(number)); };
    const auto at = [&](int number) { return frame(number)->mapTo(&window, QPoint()); };
    for (const QSize size : {QSize(330, 300), QSize(640, 560), QSize(1400, 1000)}) {
        window.resize(size);
        window.show();
        QTest::qWait(1);
        EXPECT_EQ(window.size(), size) << "nothing keeps the window larger than the user wants it";
        for (int number = 1; number < 8; ++number) {
            const bool beside = at(number).y() == at(number + 1).y() && at(number).x() < at(number + 1).x();
            EXPECT_TRUE(beside || at(number).y() < at(number + 1).y())
                << "frame " << number << " at " << size.width();
        }
        if (size.width() >= 500) {
            EXPECT_EQ(at(7).y(), at(8).y()) << "the pickers stand beside each other";
        }
    }
    EXPECT_GT(frame(6)->height(), 500) << "the notes take the height that is left";
    auto *body = window.findChild<QScrollArea *>();
    window.resize(400, 260);
    QTest::qWait(1);
    body->ensureWidgetVisible(frame(8));
    EXPECT_TRUE(window.rect().contains(QRect(at(8), frame(8)->size()).center())) << "reached by scrolling";
}

} // namespace vardelin
