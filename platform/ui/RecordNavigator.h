#pragma once
// The face of the data control: four buttons and a caption between them.

#include "platform/data/Adodc.h"
#include "platform/ui/ErrorFrame.h"

#include <QFrame>
#include <QToolButton>

namespace vardelin {

class RecordNavigator : public QFrame
{
    Q_OBJECT
public:
    // The control outlives this. An error of a move is shown in a message box with the engine's description,
    // as the control does by itself, and the record stays.
    RecordNavigator(Adodc &control, Dialogs &dialogs, ErrorFrame &frame, QWidget *parent = nullptr);
    void setCaption(const QString &caption); // between the buttons
    // Buttons are on when their move leads somewhere; call after the record set or the place changed.
    void refreshButtons();
    QToolButton *first, *previous, *next, *last; // accessible names "First record" ...

private:
    class QLabel *m_caption;
    Adodc &m_control;
};

} // namespace vardelin
