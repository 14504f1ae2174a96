#include "platform/ui/Controls.h"

#include <QChildEvent>
#include <QMouseEvent>

namespace vardelin {

namespace {

constexpr const char *kWatched = "vardelinMouseOver";

// Follows the mouse over a widget and those of its descendants that no other watcher takes care of. Coming
// back from a watched child onto the bare ground is no Enter for Qt, only a move.
class MouseOver final : public QObject
{
public:
    MouseOver(QWidget *widget, std::function<void()> entered)
        : QObject(widget), m_widget(widget), m_entered(std::move(entered))
    {
        widget->setProperty(kWatched, true);
        widget->setMouseTracking(true);
        watch(widget);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Enter:
        case QEvent::MouseMove:
            moved(static_cast<QWidget *>(object), static_cast<QSinglePointEvent *>(event)->position());
            break;
        case QEvent::Leave:
            if (object == m_widget)
                m_inside = false;
            break;
        case QEvent::ChildAdded:
            watch(static_cast<QChildEvent *>(event)->child());
            break;
        default:
            break;
        }
        return false;
    }

private:
    void watch(QObject *object)
    {
        if (!object->isWidgetType())
            return;
        object->removeEventFilter(this);
        object->installEventFilter(this);
        for (QObject *child : object->children())
            watch(child);
    }

    bool isOurs(const QObject *object) const
    {
        while (object != m_widget && !object->property(kWatched).toBool())
            object = object->parent();
        return object == m_widget;
    }

    // What the pointer is over counts, and not who got the event: a widget that doesn't want a move hands it
    // to its parent, and whoever is entered, so are those around it.
    void moved(const QWidget *receiver, QPointF position)
    {
        const QPoint at = receiver->mapTo(m_widget, position).toPoint();
        const QWidget *under = m_widget->childAt(at);
        const bool ours = m_widget->rect().contains(at) && isOurs(under ? under : m_widget);
        const bool comes = ours && !m_inside;
        m_inside = ours;
        if (comes)
            m_entered();
    }

    QWidget *m_widget;
    std::function<void()> m_entered;
    bool m_inside = false;
};

} // namespace

void onMouseOver(QWidget *widget, std::function<void()> entered)
{
    new MouseOver(widget, std::move(entered));
}

} // namespace vardelin
