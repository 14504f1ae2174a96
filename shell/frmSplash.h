#pragma once
// The program's name for a moment at start-up.

#include <QLabel>
#include <QTimer>

namespace vardelin {

class frmSplash : public QWidget
{
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent);

protected:
    void changeEvent(QEvent *event) override; // closes when first activated

private:
    void Timer1_Timer();
    QLabel *Image1;
    QTimer Timer1;
    int m_frame = 1;
};

} // namespace vardelin
