#include "platform/ui/TabStrip.h"
#include "platform/data/RecordPlace.h"
#include "platform/ui/RecordScrollBar.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

TEST(TabStripTest, aTabIsChosenByMouseAndByKeys)
{
    QWidget window;
    TabStrip tabs({u"Roe & Son"_s, u"Case"_s, u"History"_s});
    QLineEdit field;
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(&tabs);
    layout->addWidget(&field);
    std::vector<int> chosen;
    tabs.Click = [&](int index) { chosen.push_back(index); };
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field.setFocus();
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    EXPECT_EQ(chosen, (std::vector{2, 2})) << "also the one on view";
    EXPECT_TRUE(field.hasFocus());
    QTest::keyClick(&field, Qt::Key_PageDown, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_PageDown, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_PageUp, Qt::ControlModifier);
    tabs.setFocus();
    QTest::keyClick(&tabs, Qt::Key_Left);
    EXPECT_EQ(chosen, (std::vector{2, 2, 3, 1, 3, 2}));
    tabs.select(1);
    tabs.setTabCaption(1, u"O'Neil & Co, Ann"_s);
    EXPECT_EQ(chosen.size(), 6u) << "the program's own choice";
    EXPECT_EQ(tabs.SelectedIndex(), 1);
    EXPECT_EQ(tabs.tabText(0), u"O'Neil && Co, Ann"_s);
    EXPECT_EQ(tabs.tabCaption(1), u"O'Neil & Co, Ann"_s);
    window.resize(tabs.sizeHint().width() - 20, 200);
    QCoreApplication::processEvents();
    const auto room = [&](int tab) {
        return tabs.tabRect(tab).width() - tabs.fontMetrics().horizontalAdvance(tabs.tabText(tab));
    };
    EXPECT_NEAR(room(1), room(2), 2) << "captions of the design are whole";
    EXPECT_LT(room(0), room(1) - 10) << "the one that was set is cut";
    tabs.setParent(nullptr);
    field.setParent(nullptr);
}

TEST(RecordScrollBarTest, reachesEveryRecord)
{
    for (const int count : {1, 2, 3, 7, 100, 5000}) {
        SCOPED_TRACE(count);
        RecordScrollBar bar;
        int changes = 0;
        bar.Change = [&] { ++changes; };
        bar.showPlace(1, count);
        for (int record = 1; record < count; ++record) {
            ASSERT_EQ(sliderPosition(bar.value(), bar.maximum(), count).value_or(1), record);
            QTest::keyClick(&bar, Qt::Key_Right);
        }
        EXPECT_EQ(changes, count - 1);
        bar.setValue(bar.maximum());
        bar.setValue(0);
        EXPECT_EQ(changes, count - 1) << "set by the program";
    }
}

} // namespace
