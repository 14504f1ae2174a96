#pragma once
// A window inside the parent window's area: caption, Tag, and the menus that the parent's bar shows while it
// is active.

#include <QAction>
#include <QPointer>
#include <QWidget>

namespace vardelin {

class ChildWindow : public QWidget
{
    Q_OBJECT
public:
    explicit ChildWindow(QWidget *parent = nullptr);
    ~ChildWindow() override;

    QString Tag;
    QString Caption() const { return windowTitle(); }
    void setCaption(const QString &caption) { setWindowTitle(caption); }

    // What stands on the bar while this window is active, in order: menus by their menuAction(), commands as
    // they are.
    const QList<QAction *> &barActions() const { return m_barActions; }
    // The menu at whose end the parent lists the open child windows; may be null.
    class QMenu *windowMenu() const { return m_windowMenu; }

    // Called by the parent whenever this window becomes the active child.
    virtual void Form_Activate() = 0;
    // Back and Forward come here: makes this window the active child and gives the focus to the control that
    // last had it.
    void SetFocus();

protected:
    QList<QAction *> m_barActions;
    class QMenu *m_windowMenu = nullptr;

private:
    QPointer<QWidget> m_lastFocus;
};

} // namespace vardelin
