#include "platform/ui/MenuTable.h"
#include "platform/ui/Look.h"
#include "tests/support/FakeErrorFrame.h"
#include "tests/support/ScriptedDialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

class MenuTableTest : public testing::Test
{
protected:
    MenuTableTest()
    {
        auto *middle = new QWidget;
        auto *layout = new QVBoxLayout(middle);
        for (QWidget *widget : std::initializer_list<QWidget *>{m_line, m_combo, m_notes, m_list})
            layout->addWidget(widget);
        m_combo->setEditable(true);
        m_list->setFocusPolicy(Qt::StrongFocus);
        m_window.setCentralWidget(middle);
        m_window.menuBar()->addActions(makeBar(&m_window, bar(), m_frame));
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    std::vector<MenuEntry> bar()
    {
        const auto note = [this](const QString &name) { return [this, name] { m_called += name; }; };
        return {{u"mnuFile"_s,
                 u"&File"_s,
                 {},
                 {},
                 {{u"mnuFileName(0)"_s, u"FileName"_s, {}, note(u"file"_s)},
                  {u"mnuSeparator"_s, u"-"_s},
                  {u"mnuExit"_s, u"E&xit"_s, {}, [] { throw RunTimeError(RunTime::TypeMismatch); }}}},
                {u"mnuEdit"_s,
                 u"&Edit"_s,
                 {},
                 {},
                 {{u"mnuCopy"_s, u"&Copy"_s, QKeySequence(u"Ctrl+C"_s), note(u"copy"_s)},
                  {u"mnuCut"_s, u"Cu&t"_s, QKeySequence(u"Ctrl+X"_s), note(u"cut"_s)},
                  {u"mnuEPaste"_s, u"&Paste"_s, QKeySequence(u"Ctrl+G"_s), note(u"paste"_s)},
                  {u"mnuDelete"_s, u"&Delete"_s, QKeySequence(u"Del"_s), note(u"delete"_s)},
                  {u"mnuSelectAll"_s, u"&Select All"_s, QKeySequence(u"Ctrl+A"_s), note(u"all"_s)}}},
                {u"mnuSearch"_s, u"&Search"_s, QKeySequence(u"F3"_s), note(u"search"_s)},
                {u"mnuIndex"_s, u"&Index"_s}};
    }

    ScriptedDialogs m_dialogs;
    FakeErrorFrame m_frame{m_dialogs};
    QStringList m_called;
    QMainWindow m_window;
    QLineEdit *m_line = new QLineEdit;
    QComboBox *m_combo = new QComboBox;
    QTextEdit *m_notes = new QTextEdit;
    QWidget *m_list = new QWidget; // with the focus, and without an interest in keys
};

TEST_F(MenuTableTest, everyEntryIsFoundByItsName)
{
    EXPECT_EQ(m_window.menuBar()->actions().size(), 4);
    auto *separator = m_window.findChild<QAction *>(u"mnuSeparator"_s);
    ASSERT_TRUE(separator);
    EXPECT_TRUE(separator->isSeparator());
    separator->setVisible(false);
    EXPECT_FALSE(separator->isVisible());
    EXPECT_TRUE(m_window.findChild<QMenu *>(u"mnuEdit"_s));
    EXPECT_EQ(m_window.findChild<QAction *>(u"mnuEdit"_s)->text(), u"&Edit"_s);
    m_window.findChild<QAction *>(u"mnuFileName(0)"_s)->trigger();
    m_window.findChild<QAction *>(u"mnuIndex"_s)->trigger();
    EXPECT_EQ(m_called, QStringList{u"file"_s});
}

TEST_F(MenuTableTest, aFailureEndsInTheFrame)
{
    m_window.findChild<QAction *>(u"mnuExit"_s)->trigger();
    EXPECT_EQ(m_frame.takeFailure(), 13);
}

TEST_F(MenuTableTest, editingKeysStayWithTheFieldThatHasTheFocus)
{
    const std::vector<std::pair<QWidget *, std::function<QString()>>> fields{
        {m_line, [this] { return m_line->text(); }},
        {m_combo->lineEdit(), [this] { return m_combo->currentText(); }},
        {m_notes, [this] { return m_notes->toPlainText(); }}};
    for (const auto &[field, text] : fields) {
        field->setFocus();
        QTest::keyClicks(field, u"abc"_s);
        QTest::keyClick(field, Qt::Key_Home);
        QTest::keyClick(field, Qt::Key_Delete);
        EXPECT_EQ(text(), u"bc"_s) << "Del takes one character where nothing is selected";
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), u"bc"_s);
        QTest::keyClick(field, Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(text(), QString());
        EXPECT_EQ(m_called, QStringList()) << field->metaObject()->className();
        QTest::keyClick(field, Qt::Key_G, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_F3);
        EXPECT_EQ(m_called, (QStringList{u"paste"_s, u"search"_s}));
        m_called.clear();
    }
    m_list->setFocus();
    QTest::keyClick(m_list, Qt::Key_Delete);
    EXPECT_EQ(m_called, QStringList{u"delete"_s}) << "elsewhere they are the menu's";
}

TEST_F(MenuTableTest, keysOfABarThatDoesNotStandAreDead)
{
    const auto actions = m_window.menuBar()->actions();
    m_window.menuBar()->clear();
    QTest::keyClick(m_list, Qt::Key_F3);
    EXPECT_EQ(m_called, QStringList());
    m_window.menuBar()->addActions(actions);
    QTest::keyClick(m_list, Qt::Key_F3);
    EXPECT_EQ(m_called, QStringList{u"search"_s});
}

TEST_F(MenuTableTest, aCommandOnTheBarIsSeenWhenTheArrowKeysReachIt)
{
    setLook();
    QMenuBar *bar = m_window.menuBar();
    auto *search = m_window.findChild<QAction *>(u"mnuSearch"_s);
    const auto ground = [&] {
        return bar->grab().toImage().pixelColor(bar->actionGeometry(search).topLeft() + QPoint(3, 3));
    };
    const QColor before = ground();
    bar->setFocus();
    bar->setActiveAction(search);
    EXPECT_NE(ground(), before);
}

} // namespace
