#include "platform/ui/ChildWindow.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace vardelin {

ChildWindow::ChildWindow(QWidget *parent) : QWidget(parent)
{
    // focusWidget() won't do: the area makes a window that it deactivates forget it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (now && isAncestorOf(now))
            m_lastFocus = now;
    });
}

ChildWindow::~ChildWindow() = default;

void ChildWindow::SetFocus()
{
    // Taken first: making the window active may pass the focus through another of its controls.
    const QPointer<QWidget> last = m_lastFocus;
    if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget())) {
        if (frame->isMinimized())
            frame->showNormal();
        if (QMdiArea *area = frame->mdiArea())
            area->setActiveSubWindow(frame);
    } else {
        activateWindow();
    }
    if (last && last->isEnabled())
        last->setFocus(Qt::OtherFocusReason);
    else if (!isAncestorOf(QApplication::focusWidget()))
        focusNextChild();
}

} // namespace vardelin
