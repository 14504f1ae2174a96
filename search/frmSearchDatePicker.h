#pragma once
// The two ends of a time frame.

#include <QDialog>

namespace vardelin {

class DateTimePicker;
struct Global;

// Modal. Continue (Enter) sets RangeStart and RangeEnd and ends exec() where the end is later than the start;
// otherwise they are set, too, but a message comes and the window stays. Return (Esc) leaves both as they
// are.
class frmSearchDatePicker : public QDialog
{
    Q_OBJECT
public:
    explicit frmSearchDatePicker(Global &global, QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void setPickers(int daysBack);
    void mnuReturn_Click();
    void mnuContinue_Click();

    Global &m_global;
    DateTimePicker *DTPicker1, *DTPicker2;
};

} // namespace vardelin
