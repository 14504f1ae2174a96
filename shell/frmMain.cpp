#include "shell/frmMain.h"

#include "database/LogDatabase.h"
#include "platform/ui/MenuTable.h"
#include "platform/ui/SharedKeys.h"
#include "shell/Preferences.h"
#include "shell/frmSplash.h"
#include "shell/state/FormPosition.h"
#include "shell/state/Global.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Maximizing a window and restoring it hides it for a moment, also when the area does it to go on to another
// window. Qt passes the focus on to the next field then; this gives it back, at once or when the window is
// the active one again.
class FocusKeeper final : public QObject
{
public:
    explicit FocusKeeper(QMdiSubWindow *window) : QObject(window), m_window(window)
    {
        window->installEventFilter(this);
        connect(window, &QMdiSubWindow::windowStateChanged, this, [this] { giveBackLater(); });
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && !m_focus && m_window->widget())
            m_focus = m_window->widget()->focusWidget();
        if (event->type() == QEvent::Show)
            giveBackLater();
        return QObject::eventFilter(watched, event);
    }

private:
    void giveBackLater()
    {
        if (m_focus)
            QMetaObject::invokeMethod(
                this, [this] { giveBack(); }, Qt::QueuedConnection);
    }

    void giveBack()
    {
        if (!m_focus || !m_window->isAncestorOf(QApplication::focusWidget()))
            return;
        if (QGuiApplication::mouseButtons() == Qt::NoButton) // else a field was chosen just now
            m_focus->setFocus(Qt::OtherFocusReason);
        m_focus = nullptr;
    }

    QMdiSubWindow *m_window;
    QPointer<QWidget> m_focus;
};

} // namespace

frmMain::frmMain(Global &global) : m_global(global), m_area(new QMdiArea(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Vardelin"_s);
    m_area->setObjectName(u"MdiArea"_s);
    m_area->setAccessibleName(u"Windows"_s);
    m_area->setActivationOrder(QMdiArea::CreationOrder);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setBackground(palette().brush(QPalette::Mid));
    setCentralWidget(m_area);
    m_global.frmMain = this;
    m_global.Forms.add(this);
    m_ownCommands =
        makeBar(this,
                {{u"mnuMDisplay"_s, u"&Display"_s, {}, [this] { m_global.openers.NewDisplayWindow(); }},
                 {u"mnuMEnter"_s, u"&Enter data"_s, {}, [this] { m_global.openers.NewEntryWindow(); }}},
                m_global.services.errors);
    menuBar()->addActions(m_ownCommands);
    firstTakesSharedKeys(menuBar());
    connect(m_area, &QMdiArea::subWindowActivated, this, &frmMain::subWindowActivated);
}

frmMain::~frmMain()
{
    // A window that still stands open closes in the base's destructor, and its area activates child after
    // child.
    disconnect(m_area, nullptr, this, nullptr);
    m_global.frmMain = nullptr;
}

void frmMain::Load()
{
    try {
        LoadFormPosition(*this, u"frmMain"_s, m_global.services.settings);
        show();
        startUp();
    } catch (const RunTimeError &error) {
        m_global.services.dialogs.msgBox({u"Error in main form: "_s + error.description()});
    }
}

void frmMain::startUp()
{
    const bool tipIsDue = loadPreferences(m_global);
    OpenLogDatabase(m_global);
    (new frmSplash(this))->show(); // closes and deletes itself
    if (tipIsDue)
        m_global.openers.frmTip();
    if (m_global.NoClients || m_global.NoEmployees)
        m_global.openers.frmIntroduction();
    if (m_global.SearchClient == "YES"_L1)
        m_global.openers.frmClient();
    if (m_global.SearchEmployee == "YES"_L1)
        m_global.openers.frmEmployee();
    if (!m_unloaded) // the program was ended from one of these windows
        showFirstWindows();
}

void frmMain::showFirstWindows()
{
    m_global.CurrentSQL = u"Select * From Vardelins ORDER BY [Beginning Time]"_s;
    DisplayWindow *display = m_global.openers.NewDisplayWindow();
    display->setSelection(m_global.CurrentSQL, QString());
    EntryWindow *entry = m_global.openers.NewEntryWindow();
    if (auto *Label3 = entry->findChild<QLabel *>(u"Label3"_s))
        Label3->setText(m_global.CurrentSQL);
}

void frmMain::addChild(ChildWindow *child)
{
    QMdiSubWindow *before = m_area->currentSubWindow();
    const bool maximized = before && before->isMaximized();
    if (maximized) // else the area maximizes the new one amid its first show, which puts the size back
        before->showNormal();
    QMdiSubWindow *window = m_area->addSubWindow(child);
    window->setAttribute(Qt::WA_DeleteOnClose);
    new FocusKeeper(window);
    window->setWindowIcon(windowIcon());
    m_global.Forms.add(child);
    if (QMenu *menu = child->windowMenu())
        connect(menu, &QMenu::aboutToShow, child, [this, child] { listChildren(child); });
    // Each a step to the right of and below the one before, and no larger than the area lets it be seen.
    const QSize room = m_area->viewport()->size();
    const int step = 28 * static_cast<int>((m_area->subWindowList().size() - 1) % 6);
    const QSize wanted =
        window->sizeHint().boundedTo(room - QSize(step, step)).expandedTo(window->minimumSizeHint());
    window->setGeometry(QRect(QPoint(step, step), wanted));
    window->show();
    m_area->setActiveSubWindow(window);
    if (maximized)
        window->showMaximized();
}

// The area stays a shade behind its windows when the desktop turns from light to dark.
void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_area->setBackground(palette().brush(QPalette::Mid));
}

ChildWindow *frmMain::activeChild() const
{
    const QMdiSubWindow *window = m_area->currentSubWindow();
    return window ? qobject_cast<ChildWindow *>(window->widget()) : nullptr;
}

// nullptr also comes when the whole program loses the focus: the current window is asked for instead.
void frmMain::subWindowActivated(QMdiSubWindow *window)
{
    ChildWindow *child = activeChild();
    showBarOf(child);
    if (child && window)
        m_global.services.errors.run([child] { child->Form_Activate(); });
}

void frmMain::showBarOf(ChildWindow *child)
{
    const QList<QAction *> &actions = child ? child->barActions() : m_ownCommands;
    if (menuBar()->actions() == actions)
        return;
    menuBar()->clear();
    menuBar()->addActions(actions);
}

// The open child windows at the end of a Window menu, made anew whenever it opens.
void frmMain::listChildren(ChildWindow *owner)
{
    QMenu *menu = owner->windowMenu();
    for (QAction *old : menu->actions())
        if (old->property("childWindow").toBool())
            delete old;
    menu->addSeparator()->setProperty("childWindow", true);
    for (QMdiSubWindow *window : m_area->subWindowList(QMdiArea::CreationOrder)) {
        QAction *action = menu->addAction(window->widget()->windowTitle());
        action->setProperty("childWindow", true);
        action->setCheckable(true);
        action->setChecked(window->widget() == owner);
        connect(action, &QAction::triggered, window, [this, window] { m_area->setActiveSubWindow(window); });
    }
}

void frmMain::ExitProgram()
{
    if (m_exiting)
        return;
    m_exiting = true;
    for (int i = m_global.Forms.Count() - 1; i >= 0; --i) {
        QWidget *form = m_global.Forms.at(i);
        if (!form || form == this)
            continue;
        if (auto *window = qobject_cast<QMdiSubWindow *>(form->parentWidget()))
            window->close();
        else
            form->close();
    }
    Unload();
    hide();
    m_exiting = false;
    QCoreApplication::quit();
}

void frmMain::Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    try {
        SaveFormPosition(*this, u"frmMain"_s, m_global.services.settings);
        m_global.services.settings.SaveSetting(u"DefaultLogFile"_s, u"Default Log File"_s,
                                               m_global.DatabaseFileName);
    } catch (const RunTimeError &error) {
        m_global.services.errors.report(error);
    }
    ExitProgram();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    Unload();
    event->accept();
}

} // namespace vardelin
