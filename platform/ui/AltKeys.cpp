#include "platform/ui/AltKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace vardelin {

namespace {

class AltKeys : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
            return false;
        // Only fields that take typed text are input method enabled. AltGr isn't Alt: its characters pass.
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool letter = !key->text().isEmpty() && key->text().front().isPrint();
        if (!letter || (key->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != Qt::AltModifier)
            return false;
        if (!static_cast<QWidget *>(watched)->testAttribute(Qt::WA_InputMethodEnabled))
            return false;
        event->ignore();
        return true;
    }
};

} // namespace

void keepAltKeysFromText(QCoreApplication &application)
{
    application.installEventFilter(new AltKeys(&application));
}

} // namespace vardelin
