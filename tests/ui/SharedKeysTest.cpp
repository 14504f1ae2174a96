#include "platform/ui/SharedKeys.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

TEST(SharedKeys, TheFirstCommandOfTheBarTakesTheKeyEveryTime)
{
    QMainWindow window;
    window.setCentralWidget(new QLineEdit);
    int logged = 0;
    QAction *log = window.menuBar()->addAction(u"&Log completed"_s);
    QObject::connect(log, &QAction::triggered, log, [&logged] { ++logged; });
    QMenu *lists = window.menuBar()->addMenu(u"&Lists"_s);
    lists->addAction(u"&Rates"_s);
    firstTakesSharedKeys(window.menuBar());
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.centralWidget()->setFocus();
    for (int press = 1; press <= 3; ++press) {
        QTest::keyClick(window.centralWidget(), Qt::Key_L, Qt::AltModifier);
        EXPECT_EQ(logged, press);
        EXPECT_TRUE(window.centralWidget()->hasFocus());
    }
    log->setEnabled(false);
    QTest::keyClick(window.centralWidget(), Qt::Key_L, Qt::AltModifier);
    EXPECT_EQ(logged, 3);
    EXPECT_TRUE(lists->isVisible()) << "the one that is left";
}
