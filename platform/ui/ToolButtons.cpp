#include "platform/ui/Controls.h"

#include <QToolButton>
#include <algorithm>

namespace vardelin {

QAction *addButton(QToolBar *bar, const QString &key, const QString &toolTip, ErrorFrame &frame,
                   std::function<void()> handler)
{
    return addButton(bar, key, toolTip, [handler = std::move(handler), &frame] { frame.run(handler); });
}

QAction *addButton(QToolBar *bar, const QString &key, const QString &toolTip, std::function<void()> handler)
{
    QAction *action = bar->addAction(keyIcon(key), key);
    action->setObjectName(bar->objectName() + u'.' + key);
    action->setToolTip(toolTip);
    QObject::connect(action, &QAction::triggered, bar, [handler = std::move(handler)] { handler(); });
    QWidget *button = bar->widgetForAction(action);
    button->setObjectName(action->objectName());
    button->setFocusPolicy(Qt::TabFocus); // a bar's buttons are out of the keyboard's reach otherwise
    button->setAccessibleName(toolTip);
    return action;
}

void tabToButtonsLast(QWidget *form)
{
    QWidgetList order;
    for (QWidget *widget = form->nextInFocusChain(); widget != form; widget = widget->nextInFocusChain()) {
        if (form->isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus))
            order += widget;
    }
    std::stable_partition(order.begin(), order.end(), [](const QWidget *widget) {
        return !qobject_cast<const QToolBar *>(widget->parentWidget());
    });
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

} // namespace vardelin
