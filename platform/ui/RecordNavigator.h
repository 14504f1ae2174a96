#pragma once
// The face of the data control: four buttons and a caption between them.

#include "platform/data/Adodc.h"
#include "platform/ui/ErrorFrame.h"

#include <QFrame>
#include <QToolButton>

class QLabel;

namespace vardelin {

class RecordNavigator : public QFrame
{
    Q_OBJECT
public:
    // The control outlives this. A tool tip set on this shows over the buttons, too. An error of a move is
    // shown in a message box with the engine's description, as the control does by itself, and the record
    // stays.
    RecordNavigator(Adodc &control, Dialogs &dialogs, ErrorFrame &frame, QWidget *parent = nullptr);
    // Between the buttons, with room for it; the room never shrinks, so that a button stays under the
    // pointer.
    void setCaption(const QString &caption);
    // Buttons are on when their move leads somewhere; call after the record set or the place changed.
    void refreshButtons();
    QToolButton *first, *previous, *next, *last; // accessible names "First record" ...

protected:
    void changeEvent(QEvent *event) override;

private:
    void makeRoom();
    QToolButton *makeButton(const QString &key, bool (Adodc::*step)());
    void moveRecord(bool (Adodc::*step)());
    void enable(QToolButton *button, bool on, QToolButton *heir);

    QLabel *m_caption;
    Adodc &m_control;
    Dialogs &m_dialogs;
    ErrorFrame &m_frame;
};

} // namespace vardelin
