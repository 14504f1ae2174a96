#include "shell/state/EditCommands.h"

#include "platform/ui/NotesEdit.h"
#include "shell/state/Windows.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Keeps a field from claiming the keys of the menu's commands: a shortcut that nobody claims reaches the
// menu.
class MenuKeys final : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *field, QEvent *event) override
    {
        if (event->type() == QEvent::FocusOut &&
            static_cast<QFocusEvent *>(event)->reason() == Qt::MenuBarFocusReason) {
            QFocusEvent asForPopup(QEvent::FocusOut, Qt::PopupFocusReason);
            QCoreApplication::sendEvent(field, &asForPopup);
            return true;
        }
        if (event->type() != QEvent::ShortcutOverride)
            return false;
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->modifiers() != Qt::ControlModifier)
            return false;
        if (key->key() != Qt::Key_C && key->key() != Qt::Key_X && key->key() != Qt::Key_A)
            return false;
        event->ignore();
        return true;
    }
};

template <class Field>
Field *as(QWidget *field)
{
    return qobject_cast<Field *>(field);
}

} // namespace

QWidget *activeTextField(const ChildWindow &window)
{
    QWidget *control = window.focusWidget();
    if (auto *combo = as<QComboBox>(control))
        return combo->lineEdit();
    if (auto *picker = as<QAbstractSpinBox>(control))
        return picker->findChild<QLineEdit *>();
    return as<QLineEdit>(control) || as<QTextEdit>(control) ? control : nullptr;
}

QString selText(const QWidget *field)
{
    if (const auto *notes = qobject_cast<const NotesEdit *>(field))
        return notes->SelText();
    if (const auto *line = qobject_cast<const QLineEdit *>(field))
        return line->selectedText();
    return {};
}

void setSelText(QWidget *field, const QString &text)
{
    if (auto *notes = as<NotesEdit>(field); notes && !notes->isReadOnly())
        notes->setSelText(text);
    else if (auto *line = as<QLineEdit>(field); line && !line->isReadOnly())
        line->insert(text);
}

void copySelection(const QWidget *field)
{
    if (field) // other programs here end their lines with LF alone
        QGuiApplication::clipboard()->setText(selText(field).replace(u"\r\n"_s, u"\n"_s));
}

void cutSelection(QWidget *field)
{
    copySelection(field);
    setSelText(field, {});
}

void pasteText(QWidget *field)
{
    setSelText(field, QGuiApplication::clipboard()->text());
}

void deleteSelection(QWidget *field)
{
    setSelText(field, {});
}

void giveClipboardKeysToMenu(QWidget *window)
{
    auto *keys = new MenuKeys(window);
    for (QWidget *control : window->findChildren<QWidget *>()) {
        if (as<QComboBox>(control) || as<QAbstractSpinBox>(control) || as<QLineEdit>(control) ||
            as<QTextEdit>(control))
            control->installEventFilter(keys);
    }
}

} // namespace vardelin
