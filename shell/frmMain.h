#pragma once
// The parent window: its area, the bar that shows the active child's menus, start-up and shutdown.

#include <QMainWindow>

class QMdiArea;
class QMdiSubWindow;

namespace vardelin {

struct Global;
class ChildWindow;

class frmMain : public QMainWindow
{
    Q_OBJECT
public:
    // The Global outlives the window.
    explicit frmMain(Global &global);
    ~frmMain() override;

    QMdiArea &area() { return *m_area; }

    // The whole start-up in its fixed order: preferences, file, tip, introduction, lists, the first two
    // windows. Any failure shows "Error in main form: " and its description and ends the start there; what
    // was done stays.
    void Load();

    // Puts a child into the area, in front and active, and lists it among the loaded forms.
    void addChild(ChildWindow *child);
    ChildWindow *activeChild() const;

    // Unloads every form, the last loaded first. A nested call returns at once.
    void ExitProgram();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void startUp();
    void showFirstWindows();
    void Unload();
    void showBarOf(ChildWindow *child);
    void subWindowActivated(QMdiSubWindow *window);
    void listChildren(ChildWindow *owner);

    Global &m_global;
    QMdiArea *m_area;
    QList<QAction *> m_ownCommands;
    bool m_exiting = false;
    bool m_unloaded = false;
};

} // namespace vardelin
