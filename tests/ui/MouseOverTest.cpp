#include "platform/ui/Controls.h"

#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

TEST(MouseOver, tellsTheInnermostWatchedWidgetOnEachComing)
{
    QWidget window;
    window.resize(400, 200);
    QFrame frame(&window);
    frame.setGeometry(100, 0, 300, 200);
    QLabel plain(u"part of the frame"_s, &frame);
    plain.setGeometry(0, 0, 100, 50);
    QLabel own(u"with a hint of its own"_s, &frame);
    own.setGeometry(0, 100, 100, 50);

    QStringList hints;
    onMouseOver(&window, [&] { hints += u"window"_s; });
    onMouseOver(&frame, [&] { hints += u"frame"_s; });
    onMouseOver(&own, [&] { hints += u"own"_s; });
    QLabel late(u"made later"_s, &frame);
    late.setGeometry(200, 100, 100, 50);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    const auto moveTo = [&](int x, int y) {
        hints.clear();
        QTest::mouseMove(window.windowHandle(), {x, y});
        QTest::qWait(1);
        return hints;
    };
    moveTo(150, 75);
    EXPECT_EQ(moveTo(20, 20), QStringList{u"window"_s});
    EXPECT_EQ(moveTo(30, 30), QStringList()) << "once for each coming";
    EXPECT_EQ(moveTo(150, 75), QStringList{u"frame"_s});
    EXPECT_EQ(moveTo(150, 25), QStringList()) << "a child without a hint is part of the frame";
    EXPECT_EQ(moveTo(150, 125), QStringList{u"own"_s});
    EXPECT_EQ(moveTo(150, 75), QStringList{u"frame"_s}) << "back on the bare ground";
    EXPECT_EQ(moveTo(150, 125), QStringList{u"own"_s});
    EXPECT_EQ(moveTo(350, 125), QStringList{u"frame"_s});
    EXPECT_EQ(moveTo(50, 75), QStringList{u"window"_s});
}

} // namespace
