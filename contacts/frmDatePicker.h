#pragma once
// Asks for the day on which a case was closed. Done keeps it in Global as CaseClosureDate; Return leaves that
// as it was.

#include "platform/ui/DatePicker.h"

#include <QDialog>

namespace vardelin {

struct Global;

class frmDatePicker final : public QDialog
{
    Q_OBJECT
public:
    explicit frmDatePicker(Global &global, QWidget *parent = nullptr);

private:
    void mnuDone_Click();
    void keyPressEvent(QKeyEvent *event) override;

    Global &m_global;
    DatePicker *DTPicker1;
};

} // namespace vardelin
