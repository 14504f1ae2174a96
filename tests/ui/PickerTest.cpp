#include "platform/base/Dates.h"
#include "platform/ui/Controls.h"

#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

const DateSerial kMoment = serialOf({2026, 10, 16, 21, 54, 33});

class PickerTest : public testing::Test
{
protected:
    PickerTest()
    {
        auto *middle = new QWidget;
        auto *layout = new QVBoxLayout(middle);
        layout->addWidget(&m_picker);
        layout->addWidget(&m_field);
        m_window.setCentralWidget(middle);
        m_window.menuBar()->addMenu(u"&File"_s)->addAction(u"Nothing"_s);
        m_picker.edited = [this] { ++m_edits; };
        m_picker.lostFocus = [this] { ++m_losses; };
        m_picker.setValue(kMoment);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_picker.setFocus();
    }
    ~PickerTest() override
    {
        m_picker.setParent(nullptr);
        m_field.setParent(nullptr);
    }

    QMainWindow m_window;
    DateTimePicker m_picker;
    QLineEdit m_field;
    int m_edits = 0, m_losses = 0;
};

TEST_F(PickerTest, showsMinutesAndKeepsTheSeconds)
{
    EXPECT_EQ(m_picker.text(), u"10/16/2026 09:54 PM"_s);
    EXPECT_EQ(m_picker.Value(), kMoment);
    EXPECT_EQ(m_edits, 0) << "the program's own setting is no edit";

    m_picker.setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::keyClick(&m_picker, Qt::Key_Up);
    EXPECT_EQ(m_picker.Value(), serialOf({2026, 10, 16, 21, 55, 33}));
    EXPECT_EQ(m_edits, 1);
}

TEST_F(PickerTest, takesWhatIsTypedSectionBySection)
{
    m_picker.setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClicks(&m_picker, u"3/05/2027"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2027, 3, 5, 21, 54, 33}));
    m_picker.setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClicks(&m_picker, u"07"_s);
    m_picker.setSelectedSection(QDateTimeEdit::AmPmSection);
    QTest::keyClicks(&m_picker, u"am"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2027, 3, 5, 7, 54, 33}));
    EXPECT_EQ(m_picker.text(), u"3/05/2027 07:54 AM"_s);
    m_picker.setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClicks(&m_picker, u"1/2/2028"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2028, 1, 2, 7, 54, 33})) << "with single digits";
    EXPECT_GT(m_edits, 0);

    m_picker.setSelectedSection(QDateTimeEdit::MonthSection);
    for (const QChar typed : u"12/01/2014 12:00 AM"_s) {
        if (u"/:AM"_s.contains(typed))
            QTest::keyPress(&m_picker, Qt::Key_Shift);
        QTest::keyClicks(&m_picker, typed);
    }
    EXPECT_EQ(m_picker.text(), u"12/01/2014 12:00 AM"_s) << "on a keyboard";

    m_picker.setValue(kMoment);
    QTest::keyClick(&m_picker, Qt::Key_Home);
    QTest::keyClicks(&m_picker, u"1"_s);
    QTest::keyClick(&m_picker, Qt::Key_Right);
    QTest::keyClicks(&m_picker, u"31"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2026, 1, 31, 21, 54, 33})) << "wherever a key leads";
    QTest::keyClick(&m_picker, Qt::Key_End);
    QTest::keyClick(&m_picker, Qt::Key_Left);
    QTest::keyClicks(&m_picker, u"07"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2026, 1, 31, 21, 7, 33}));
    auto *line = m_picker.findChild<QLineEdit *>();
    line->setCursorPosition(1);
    QTest::mouseClick(line, Qt::LeftButton, {}, {8, line->height() / 2});
    QTest::keyClicks(&m_picker, u"12"_s);
    EXPECT_EQ(m_picker.Value(), serialOf({2026, 12, 31, 21, 7, 33})) << "and a click";
}

// Clocks went forward in this night: 2:30 never was, where there is summer time. A user may still mean it.
TEST_F(PickerTest, knowsNoHourThatIsMissing)
{
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "America/New_York");
    tzset();
    const DateSerial missing = serialOf({2026, 3, 8, 2, 30, 15});
    m_picker.setValue(missing);
    EXPECT_EQ(m_picker.Value(), missing);
    EXPECT_EQ(m_picker.text(), u"3/08/2026 02:30 AM"_s);
    qputenv("TZ", zone);
    tzset();
}

TEST_F(PickerTest, losesTheFocusToAnotherControlOnly)
{
    m_window.menuBar()->setFocus(Qt::MenuBarFocusReason);
    m_picker.setFocus(Qt::MenuBarFocusReason);
    EXPECT_EQ(m_losses, 0) << "an opened menu";

    QDialog dialog(&m_window);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(m_losses, 0) << "a dialog";
    dialog.close();
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    EXPECT_TRUE(m_picker.hasFocus());
    EXPECT_EQ(m_losses, 0);

    QTest::keyClick(&m_picker, Qt::Key_Tab);
    EXPECT_EQ(m_losses, 0) << "Tab goes from section to section first";
    m_field.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(m_losses, 1);
    m_picker.setFocus();
    QTest::mouseClick(&m_field, Qt::LeftButton);
    EXPECT_EQ(m_losses, 2);
}

// A command from the menu that ends in another field: what came back after the menu isn't the picker.
TEST_F(PickerTest, losesTheFocusAlsoByWayOfADialog)
{
    QDialog dialog(&m_window);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    m_field.setFocus();
    dialog.close();
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    EXPECT_TRUE(m_field.hasFocus());
    EXPECT_EQ(m_losses, 1);
}

} // namespace
