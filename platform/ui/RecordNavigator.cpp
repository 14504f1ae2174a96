#include "platform/ui/RecordNavigator.h"

#include "platform/ui/Icons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin {

RecordNavigator::RecordNavigator(Adodc &control, Dialogs &dialogs, ErrorFrame &frame, QWidget *parent)
    : QFrame(parent), m_control(control), m_dialogs(dialogs), m_frame(frame)
{
    setFrameShape(QFrame::StyledPanel);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    first = makeButton(u"First"_s, &Adodc::MoveFirst);
    previous = makeButton(u"Previous"_s, &Adodc::MovePrevious);
    next = makeButton(u"Next"_s, &Adodc::MoveNext);
    last = makeButton(u"Last"_s, &Adodc::MoveLast);
    previous->setAutoRepeat(true);
    next->setAutoRepeat(true);
    m_caption = new QLabel;
    m_caption->setAlignment(Qt::AlignCenter);
    m_caption->setTextFormat(Qt::PlainText);
    m_caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(first);
    layout->addWidget(previous);
    layout->addWidget(m_caption, 1);
    layout->addWidget(next);
    layout->addWidget(last);
    refreshButtons();
}

void RecordNavigator::setCaption(const QString &caption)
{
    m_caption->setText(caption);
    makeRoom();
}

void RecordNavigator::makeRoom()
{
    constexpr int kMost = 260; // pixels; a window must not grow with a long caption
    const int wanted = std::min(m_caption->sizeHint().width(), kMost);
    m_caption->setMinimumWidth(std::max(wanted, m_caption->minimumWidth()));
}

void RecordNavigator::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_caption->setMinimumWidth(0);
        makeRoom();
    }
}

void RecordNavigator::refreshButtons()
{
    const bool open = m_control.isOpen();
    const int count = open ? m_control.Recordset().RecordCount() : 0;
    const int position = open ? m_control.Recordset().AbsolutePosition() : -1;
    // Without a current row (beyond an end, or after a deletion) each move that finds a record leads
    // somewhere.
    const bool nowhere = position < 1;
    enable(previous, count > 0 && (nowhere || position > 1), next);
    enable(next, count > 0 && (nowhere || position < count), previous);
    enable(first, count > 0 && position != 1, last);
    enable(last, count > 0 && position != count, first);
}

QToolButton *RecordNavigator::makeButton(const QString &key, bool (Adodc::*step)())
{
    auto *button = new QToolButton(this);
    button->setObjectName(key);
    button->setIcon(keyIcon(key));
    button->setAutoRaise(true);
    button->setAccessibleName(key + " record"_L1);
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus in the field that is being edited
    connect(button, &QToolButton::clicked, this,
            [this, step] { m_frame.run([this, step] { moveRecord(step); }); });
    return button;
}

void RecordNavigator::moveRecord(bool (Adodc::*step)())
{
    try {
        (m_control.*step)();
    } catch (const RunTimeError &error) {
        m_dialogs.msgBox({.prompt = error.description(), .icon = Icon::Exclamation});
    }
    refreshButtons();
}

// A button that has the focus hands it on before it goes off, so that the keyboard stays in the navigator.
void RecordNavigator::enable(QToolButton *button, bool on, QToolButton *heir)
{
    if (!on && button->hasFocus()) {
        heir->setEnabled(true);
        heir->setFocus(Qt::OtherFocusReason);
    }
    button->setEnabled(on);
}

} // namespace vardelin
