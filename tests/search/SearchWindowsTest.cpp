// The three small windows.
#include "search/frmSearchDatePicker.h"
#include "search/frmSearchList.h"
#include "tests/search/SearchProgram.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct SearchWindowsTest : SearchProgram
{
    static QString captions(const QWidget *form, int group, int count)
    {
        QStringList texts;
        for (int i = 0; i < count; ++i)
            texts += option(form, group, i)->text();
        return texts.join(u'|');
    }
    static int checked(const QWidget *form, int group)
    {
        int index = 0;
        while (!option(form, group, index)->isChecked())
            ++index;
        return index;
    }
    Value picked(const QWidget *form, int number)
    {
        return control<DateTimePicker>(form, u"DTPicker%1"_s.arg(number))->Value();
    }
    Value daysBack(int days) const { return DateSerial{office.clock.moment.days - days}; }
};

TEST_F(SearchWindowsTest, SearchShowsItsChoicesAndKeepsOneWindow)
{
    DisplayWindow *display = global.openers.NewDisplayWindow();
    choose(display, u"mnuSearch"_s);
    QPointer<frmSearch> form = search();
    ASSERT_TRUE(form);
    EXPECT_FALSE(form->isModal());
    EXPECT_EQ(captions(form, 1, 6),
              u"Current client|Another client|All active clients|Employee|Project|Log"_s);
    EXPECT_EQ(captions(form, 2, 5),
              u"All|Within last month|Within last six months|Within last year|Customized time frame"_s);
    EXPECT_EQ(checked(form, 1), 0);
    EXPECT_EQ(checked(form, 2), 0);
    option(form, 2, 3)->click();
    choose(display, u"mnuSearch"_s);
    EXPECT_EQ(search(), form);
    EXPECT_EQ(checked(form, 2), 3) << "the loaded window comes back as it was left";
    choose(form, u"mnuReturn"_s);
    EXPECT_FALSE(search());
    EXPECT_EQ(global.DisplayWindows.size(), 1u);
}

TEST_F(SearchWindowsTest, SearchWithoutNamesStartsWithAnotherClient)
{
    DisplayWindow *display = global.openers.NewDisplayWindow();
    control<QLineEdit>(display, u"Text1"_s)->clear();
    choose(display, u"mnuSearch"_s);
    EXPECT_EQ(checked(search(), 1), 1);
    EXPECT_FALSE(option(search(), 1, 0)->isEnabled());
    EXPECT_FALSE(control<QAction>(search(), u"mnuReport"_s)->isEnabled());
    control<QLineEdit>(display, u"Text1"_s)->setText(u"Archer, Ann"_s);
    choose(display, u"mnuSearch"_s);
    EXPECT_FALSE(option(search(), 1, 0)->isEnabled()) << "for as long as the window stays loaded";
    EXPECT_TRUE(control<QAction>(search(), u"mnuReport"_s)->isEnabled());
    QTest::keyClick(search(), Qt::Key_Escape);
    EXPECT_FALSE(search());
    global.EmployeeCaption = u"Agent"_s;
    control<QLineEdit>(display, u"Text1"_s)->clear();
    choose(display, u"mnuSearch"_s);
    EXPECT_EQ(option(search(), 1, 3)->text(), u"Agent"_s);
    EXPECT_TRUE(option(search(), 1, 0)->isEnabled()) << "the client of the search before is still known";
    EXPECT_EQ(checked(search(), 1), 0);
    EXPECT_FALSE(control<QAction>(search(), u"mnuReport"_s)->isEnabled());
    expectText(u"letter"_s);
    option(search(), 1, 5)->setFocus();
    QTest::keyClick(option(search(), 1, 5), Qt::Key_Space);
    QTest::keyClick(search(), Qt::Key_Return);
    EXPECT_EQ(newest()->recordCount(), 1) << "by keys alone";
}

TEST_F(SearchWindowsTest, ListPicksByClickAndByKey)
{
    const QStringList clients{u"O'Neil, Pat"_s, u"Archer, Ann"_s};
    global.SearchClient = global.SearchEmployee = global.SearchProject = u"old"_s;
    for (const int type : {0, 1, 2, 3, 4, 5}) {
        global.SearchType = static_cast<std::int16_t>(type);
        frmSearchList form(global, u"Select something"_s, global.frmMain);
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        EXPECT_EQ(form.geometry(), office.main.geometry());
        auto *list = control<QListWidget>(&form, u"List1"_s);
        form.resize(300, 200);
        EXPECT_EQ(list->geometry(), QRect(0, 0, 300, 200));
        QStringList entries;
        for (int row = 0; row < list->count(); ++row)
            entries += list->item(row)->text();
        EXPECT_EQ(entries, type == 1   ? clients
                           : type == 3 ? global.List1[1]
                           : type == 4 ? global.List1[2]
                                       : QStringList());
        if (type == 1) {
            QTest::keyClick(list, Qt::Key_Down);
            EXPECT_TRUE(form.isVisible());
            QTest::keyClick(list, Qt::Key_Return);
        } else {
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        }
        EXPECT_EQ(form.isVisible(), list->count() == 0) << type;
    }
    EXPECT_EQ(global.SearchClient, u"Archer, Ann"_s);
    EXPECT_EQ(global.SearchEmployee, u"Baxter, Bo"_s);
    EXPECT_EQ(global.SearchProject, u"R&D"_s);
}

TEST_F(SearchWindowsTest, DatesMustBeInOrder)
{
    frmSearchDatePicker form(global, global.frmMain);
    form.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    EXPECT_EQ(picked(&form, 1), daysBack(138));
    EXPECT_EQ(picked(&form, 2), daysBack(0));
    global.RangeStart = global.RangeEnd = u"kept"_s;
    choose(&form, u"mnuReturn"_s);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(global.RangeStart, Value(u"kept"_s));

    form.show();
    control<DateTimePicker>(&form, u"DTPicker1"_s)->setValue(office.clock.moment);
    office.dialogs.expect(u"The beginning time must be earlier than the ending time.  Please try again."_s);
    choose(&form, u"mnuContinue"_s);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(global.RangeStart, Value(office.clock.moment)) << "stored all the same";
    EXPECT_EQ(picked(&form, 1), daysBack(183));
    EXPECT_EQ(picked(&form, 2), daysBack(0));
    QTest::keyClick(control<DateTimePicker>(&form, u"DTPicker2"_s), Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(global.RangeStart, daysBack(183));
    EXPECT_EQ(global.RangeEnd, daysBack(0));
}

} // namespace vardelin::testing_support
