#include "platform/ui/SharedKeys.h"
#include "platform/ui/AltKeys.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTextEdit>
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

TEST(AltKeys, OneThatStandsForNothingTypesNothing)
{
    keepAltKeysFromText(*qApp);
    QLineEdit line(u"Farrow"_s);
    line.selectAll();
    QTextEdit notes;
    QComboBox combo;
    combo.setEditable(true);
    for (QWidget *field :
         {static_cast<QWidget *>(&line), static_cast<QWidget *>(&notes), static_cast<QWidget *>(&combo)}) {
        QTest::keyClick(field, 'l', Qt::AltModifier);
        QTest::keyClick(field, '7', Qt::AltModifier | Qt::KeypadModifier);
    }
    EXPECT_EQ(line.text(), u"Farrow"_s);
    EXPECT_EQ(notes.toPlainText() + combo.currentText(), QString());
    for (QWidget *field :
         {static_cast<QWidget *>(&line), static_cast<QWidget *>(&notes), static_cast<QWidget *>(&combo)})
        QTest::keyClick(field, 'l');
    EXPECT_EQ(line.text() + notes.toPlainText() + combo.currentText(), u"lll"_s);
}
