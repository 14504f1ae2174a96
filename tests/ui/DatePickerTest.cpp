#include "platform/ui/DatePicker.h"
#include "platform/base/Dates.h"
#include "platform/ui/Controls.h"

#include <QAccessible>
#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

struct DatePickerTest : testing::Test
{
    DatePickerTest() : field(picker.boundTo(u"Retainer"_s))
    {
        picker.setAccessibleCaption(u"Retainer Date"_s);
        picker.setValue(serialOf({2026, 11, 23}));
        picker.edited = [this] { ++edits; };
        picker.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker));
        picker.setFocus();
    }
    QCheckBox *check() const { return picker.findChild<QCheckBox *>(); }
    DateTimePicker *date() const { return picker.findChild<DateTimePicker *>(); }

    DatePicker picker{u"MM/dd/yyyy"_s, DatePicker::Kind::CheckBox};
    BoundField field;
    int edits = 0;
};

TEST_F(DatePickerTest, aNullRecordShowsNoDateAndStaysNull)
{
    field.show(QString());
    EXPECT_FALSE(picker.Value());
    EXPECT_EQ(date()->text(), QString());
    EXPECT_FALSE(check()->isChecked());
    EXPECT_EQ(field.text(), QString());
    field.show(u"1/5/2003 4:30:00 PM"_s);
    EXPECT_EQ(date()->text(), u"01/05/2003"_s);
    EXPECT_EQ(field.text(), u"1/5/2003 4:30:00 PM"_s) << "the time isn't shown, but it is there";
    field.show(QString());
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(edits, 0);
}

TEST_F(DatePickerTest, theUserSetsChangesAndTakesAwayTheDate)
{
    field.show(QString());
    QTest::keyClick(picker.focusProxy(), Qt::Key_Space);
    EXPECT_EQ(field.text(), u"11/23/2026"_s) << "the date that the form had set";
    QTest::keyClick(picker.focusProxy(), Qt::Key_Space);
    EXPECT_EQ(field.text(), QString());
    QTest::keyClicks(picker.focusProxy(), u"0"_s);
    QTest::keyClicks(date(), u"3/05/2027"_s);
    EXPECT_EQ(field.text(), u"3/5/2027"_s) << "typed straight away";
    EXPECT_EQ(picker.Value(), serialOf({2027, 3, 5}));

    field.show(u"1/5/2003 4:30:00 PM"_s);
    date()->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClick(date(), Qt::Key_Up);
    EXPECT_EQ(field.text(), u"1/6/2003 4:30:00 PM"_s) << "another day, the same time";
    QTest::keyClick(date(), Qt::Key_Down);
    EXPECT_EQ(field.text(), u"1/5/2003 4:30:00 PM"_s);
    check()->click();
    EXPECT_EQ(field.text(), QString());
    QTest::mouseClick(&picker, Qt::LeftButton, {}, picker.rect().center());
    EXPECT_EQ(field.text(), u"1/5/2003 4:30:00 PM"_s) << "what the record holds comes back";
    EXPECT_GT(edits, 0);
}

TEST_F(DatePickerTest, namesAndFormatsItself)
{
    EXPECT_EQ(QAccessible::queryAccessibleInterface(date())->text(QAccessible::Name), u"Retainer Date"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(check())->text(QAccessible::Name),
              u"Retainer Date, given"_s);
    DatePicker always(u"M/d/yyy"_s, DatePicker::Kind::AlwaysADate);
    EXPECT_EQ(always.findChild<QCheckBox *>(), nullptr);
    always.setValue(serialOf({2026, 3, 5, 16, 30, 0}));
    EXPECT_EQ(always.findChild<DateTimePicker *>()->text(), u"3/5/2026"_s);
    EXPECT_EQ(always.Value(), serialOf({2026, 3, 5, 16, 30, 0}));
    EXPECT_EQ(always.focusProxy(), always.findChild<DateTimePicker *>());
}

} // namespace
