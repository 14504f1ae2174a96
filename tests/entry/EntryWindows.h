#pragma once
// A parent window with Data entry windows in it, on a program of test services.

#include "entry/frmEntryWithFrames.h"
#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "tests/support/Fakes.h"
#include "tests/support/PrintQt.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTest>

namespace vardelin::testing_support {

// Shows the menus of its active child, as the program's own parent window does.
class Parent final : public QMainWindow
{
public:
    explicit Parent(Global &global) : m_global(global)
    {
        setCentralWidget(m_area);
        menuBar(); // made ahead of show(), else it stays hidden and its keys are dead
        QObject::connect(m_area, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *frame) {
            auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
            if (!window)
                return;
            menuBar()->clear();
            menuBar()->addActions(window->barActions());
            window->Form_Activate();
        });
        resize(900, 700);
        global.frmMain = this;
        global.Forms.add(this);
    }

    frmEntryWithFrames *open()
    {
        auto *window = new frmEntryWithFrames(m_global);
        m_global.EntryWindows.emplace_back(window);
        window->Tag = QString::number(m_global.EntryWindows.size());
        window->setCaption(QStringLiteral("Data entry form ") + window->Tag);
        m_global.CurrentEntryTag = window->Tag;
        m_global.Forms.add(window);
        m_area->addSubWindow(window)->show();
        return window;
    }

private:
    Global &m_global;
    QMdiArea *m_area = new QMdiArea(this);
};

struct EntryWindowsTest : testing::Test, TestProgram
{
    EntryWindowsTest()
    {
        global.DatabaseFileName = QStringLiteral("/office/VARDELIN.MDB");
        global.openers.NewEntryWindow = [this] { return parent.open(); };
        parent.setWindowTitle(QStringLiteral("Vardelin"));
        parent.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&parent));
    }

    static void choose(const QWidget *window, const char16_t *menu)
    {
        auto *action = window->findChild<QAction *>(QString::fromUtf16(menu));
        ASSERT_TRUE(action) << QString::fromUtf16(menu).toStdString();
        action->trigger();
    }
    template <class Control>
    static Control *control(const QWidget *window, const char16_t *name)
    {
        return window->findChild<Control *>(QString::fromUtf16(name));
    }
    static SortedCombo *combo(const QWidget *window, int number)
    {
        return window->findChild<SortedCombo *>(QStringLiteral("Combo%1").arg(number));
    }
    static QString label(const QWidget *window, const char16_t *name)
    {
        return control<QLabel>(window, name)->text();
    }
    static QLineEdit *summary(const QWidget *window) { return control<QLineEdit>(window, u"Text1"); }
    static NotesEdit *notes(const QWidget *window) { return control<NotesEdit>(window, u"RichTextBox1"); }
    static DateTimePicker *picker(const QWidget *window, int number)
    {
        return window->findChild<DateTimePicker *>(QStringLiteral("DTPicker%1").arg(number));
    }

    Parent parent{global};
};

} // namespace vardelin::testing_support
