#pragma once
// The about box.

#include <QDialog>
#include <QTimer>

class QLabel;

namespace vardelin {

class frmAboutvarden : public QDialog
{
    Q_OBJECT
public:
    explicit frmAboutvarden(QWidget *parent = nullptr);

private:
    void layOut();
    void Timer1_Timer();
    QLabel *Image1;
    QTimer Timer1;
    int m_frame = 1;
};

} // namespace vardelin
