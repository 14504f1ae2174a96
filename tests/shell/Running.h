#pragma once
// The whole program in one process: its parent window, wired, on test services and a folder of its own.

#include "display/frmDisplay.h"
#include "entry/frmEntryWithFrames.h"
#include "shell/Wiring.h"
#include "shell/frmMain.h"
#include "tests/support/OfficeProgram.h"

#include <QApplication>
#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTimer>
#include <deque>

namespace vardelin::testing_support {

// Acts in the modal windows that a step brings up, in their order: the window's name, and what to do in it,
// which must end in its closing.
class ModalScript
{
public:
    using Action = std::function<void(QWidget *form)>;

    ModalScript()
    {
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start();
    }
    ~ModalScript() { EXPECT_TRUE(m_steps.empty()) << m_steps.size() << " windows never came"; }
    void expect(const QString &form, Action action) { m_steps.emplace_back(form, std::move(action)); }

private:
    void look()
    {
        QWidget *form = QApplication::activeModalWidget();
        if (!form || !form->isVisible() || form == m_last)
            return;
        m_last = form;
        if (m_steps.empty()) {
            ADD_FAILURE() << "not expected: " << form->objectName().toStdString();
            form->close();
            return;
        }
        const auto [name, action] = m_steps.front();
        m_steps.pop_front();
        EXPECT_EQ(form->objectName().toStdString(), name.toStdString());
        action(form);
    }

    QTimer m_timer;
    QPointer<QWidget> m_last;
    std::deque<std::pair<QString, Action>> m_steps;
};

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

struct Running : TestProgram
{
    explicit Running(const QString &appPath)
    {
        services.appPath = appPath;
        wire(global, main);
    }
    QWidget *activeChild() { return main.activeChild(); }
    QStringList bar()
    {
        QStringList captions;
        for (const QAction *action : main.menuBar()->actions())
            captions += action->text();
        return captions;
    }
    QStringList children()
    {
        QStringList captions;
        for (const QMdiSubWindow *window : main.area().subWindowList(QMdiArea::CreationOrder))
            captions += window->widget()->windowTitle();
        return captions;
    }

    frmMain main{global};
};

} // namespace vardelin::testing_support
