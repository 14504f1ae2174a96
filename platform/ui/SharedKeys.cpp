#include "platform/ui/SharedKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPointer>

namespace vardelin {

namespace {

// The commands of a bar that an Alt key stands for, in their order.
QList<QAction *> sharing(const QMenuBar &bar, const QKeySequence &key)
{
    QList<QAction *> found;
    for (QAction *action : bar.actions()) {
        if (action->isEnabled() && action->isVisible() && QKeySequence::mnemonic(action->text()) == key)
            found += action;
    }
    return found;
}

class FirstOfSharedKeys : public QObject
{
public:
    explicit FirstOfSharedKeys(QMenuBar *bar) : QObject(bar), m_bar(bar) { bar->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Shortcut && static_cast<QShortcutEvent *>(event)->isAmbiguous()) {
            const QList<QAction *> actions = sharing(*m_bar, static_cast<QShortcutEvent *>(event)->key());
            if (!actions.isEmpty() && !actions.first()->menu()) {
                actions.first()->trigger();
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QMenuBar *m_bar;
};

class SharedKeys : public QObject
{
public:
    explicit SharedKeys(QMenuBar *bar) : QObject(bar), m_bar(bar)
    {
        bar->installEventFilter(this);
        connect(bar, &QMenuBar::triggered, this, [this] { goBack(); });
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Shortcut) {
            const auto *shortcut = static_cast<QShortcutEvent *>(event);
            if (shortcut->isAmbiguous())
                return step(shortcut->key());
        }
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            m_bar->setActiveAction(nullptr);
            goBack();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    bool step(const QKeySequence &key)
    {
        const QList<QAction *> actions = sharing(*m_bar, key);
        if (actions.size() < 2)
            return false;
        if (!m_bar->hasFocus())
            m_cameFrom = QApplication::focusWidget();
        m_bar->setFocus(Qt::MenuBarFocusReason);
        m_bar->setActiveAction(actions[(actions.indexOf(m_bar->activeAction()) + 1) % actions.size()]);
        return true;
    }

    void goBack()
    {
        if (m_cameFrom && m_bar->hasFocus())
            m_cameFrom->setFocus(Qt::MenuBarFocusReason);
        m_cameFrom = nullptr;
    }

    QMenuBar *m_bar;
    QPointer<QWidget> m_cameFrom;
};

} // namespace

void firstTakesSharedKeys(QMenuBar *bar)
{
    new FirstOfSharedKeys(bar);
}

void stepThroughSharedKeys(QMenuBar *bar)
{
    new SharedKeys(bar);
}

} // namespace vardelin
