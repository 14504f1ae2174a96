#include "platform/ui/ChildWindow.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace vardelin {

ChildWindow::ChildWindow(QWidget *parent) : QWidget(parent) {}

ChildWindow::~ChildWindow() = default;

void ChildWindow::SetFocus()
{
    // Taken first: making the window active may pass the focus through another of its controls.
    QWidget *last = focusWidget();
    if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget())) {
        if (frame->isMinimized())
            frame->showNormal();
        if (QMdiArea *area = frame->mdiArea())
            area->setActiveSubWindow(frame);
    } else {
        activateWindow();
    }
    if (!last || !last->isEnabled())
        focusNextChild();
    else
        last->setFocus(Qt::OtherFocusReason);
}

} // namespace vardelin
