#include "platform/base/Twips.h"
#include "platform/ui/ChildWindow.h"
#include "platform/ui/ErrorFrame.h"
#include "platform/ui/WindowList.h"
#include "tests/support/ScriptedDialogs.h"

#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

class Child final : public ChildWindow
{
public:
    explicit Child(const QString &caption)
    {
        setCaption(caption);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(first);
        layout->addWidget(second);
    }
    void Form_Activate() override {}
    QLineEdit *first = new QLineEdit;
    QLineEdit *second = new QLineEdit;
};

TEST(WindowList, holdsTheLoadedWindowsInTheirOrder)
{
    WindowList forms;
    QWidget main;
    auto one = std::make_unique<Child>(u"Data entry form 1"_s);
    Child two(u"Display form 1"_s);
    forms.add(&main);
    forms.add(one.get());
    forms.add(&two);
    EXPECT_EQ(forms.Count(), 3);
    EXPECT_EQ(forms.indexOfCaption(u"Display form 1"_s), 2);
    EXPECT_EQ(forms.indexOfCaption(u"no such"_s), 3);
    EXPECT_EQ(forms.at(3), nullptr);
    EXPECT_EQ(forms.at(-1), nullptr);
    one.reset();
    EXPECT_EQ(forms.Count(), 2) << "a destroyed window is gone";
    EXPECT_EQ(forms.indexOfCaption(u"Display form 1"_s), 1);
    forms.remove(&main);
    EXPECT_EQ(forms.at(0), &two);
    EXPECT_TRUE(WindowList::isMdiChild(&two));
    EXPECT_FALSE(WindowList::isMdiChild(&main));
    EXPECT_FALSE(WindowList::isMdiChild(nullptr));
}

TEST(ChildWindow, SetFocusGoesBackToTheControlThatHadItLast)
{
    QMdiArea area;
    auto *one = new Child(u"1"_s);
    auto *two = new Child(u"2"_s);
    area.addSubWindow(one);
    area.addSubWindow(two);
    area.resize(600, 400);
    area.show();
    area.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&area));
    one->SetFocus();
    EXPECT_TRUE(one->isAncestorOf(QApplication::focusWidget())) << "some control, the first time";
    one->second->setFocus();
    two->SetFocus();
    two->first->setFocus();
    EXPECT_EQ(area.activeSubWindow()->widget(), two);
    one->SetFocus();
    EXPECT_EQ(area.activeSubWindow()->widget(), one);
    EXPECT_TRUE(one->second->hasFocus());
    two->parentWidget()->showMinimized();
    two->SetFocus();
    EXPECT_TRUE(two->first->hasFocus());
    EXPECT_FALSE(two->parentWidget()->isMinimized());
}

TEST(ErrorFrame, showsTheStandardMessageAndEndsOnce)
{
    ScriptedDialogs dialogs;
    int ends = 0;
    ErrorFrame *inside = nullptr;
    ErrorFrame frame(dialogs, [&] {
        ++ends;
        inside->run([] { throw RunTimeError(5); }); // a window fails while it is unloaded
    });
    inside = &frame;
    dialogs.expect({.prompt = u"Run-time error '13':\n\nType mismatch"_s, .icon = Icon::Critical});
    frame.report(RunTimeError(13));
    EXPECT_EQ(ends, 0) << "a report lets the program go on";
    frame.run([] {});
    dialogs.expect({.prompt = u"Run-time error '3021':\n\nNo current record."_s, .icon = Icon::Critical});
    frame.run([] { throw RunTimeError(3021); });
    EXPECT_EQ(ends, 1);
    frame.run([] { throw RunTimeError(13); });
    EXPECT_EQ(ends, 1);
}

TEST(ErrorFrame, namesForeignExceptionsByTheirNumbers)
{
    const auto messageOf = [](std::function<void()> handler, const QString &prompt) {
        ScriptedDialogs dialogs;
        dialogs.expect(prompt);
        ErrorFrame frame(dialogs, [] { throw std::runtime_error("the end fails, too"); });
        frame.run(handler);
    };
    messageOf([] { throw std::bad_alloc(); }, u"Run-time error '7':\n\nOut of memory"_s);
    messageOf([] { throw std::logic_error("x"); }, u"Run-time error '51':\n\nInternal error"_s);
    messageOf([] { throw 1; }, u"Run-time error '51':\n\nInternal error"_s);
    EXPECT_FALSE(resumeNext([] { throw RunTimeError(13); }));
    EXPECT_TRUE(resumeNext([] {}));
}

TEST(Twips, roundToTheNearestPixel)
{
    EXPECT_EQ(toPixels(1440), 96);
    EXPECT_EQ(toPixels(toTwips(-37)), -37);
    EXPECT_EQ(toPixels(22), 1);
    EXPECT_EQ(toPixels(23), 2);
}

} // namespace
