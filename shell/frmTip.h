#pragma once
// The tip of the day.

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;

namespace vardelin {

struct Global;

class frmTip : public QDialog
{
    Q_OBJECT
public:
    explicit frmTip(Global &global, QWidget *parent = nullptr);

protected:
    void done(int result) override;

private:
    void layOut();
    bool LoadTips(const QString &path);
    void showNextTip();
    void DisplayCurrentTip();

    Global &m_global;
    QStringList m_tips;
    int m_currentTip = 0; // from 1
    QCheckBox *chkLoadTipsAtStartup;
    QLabel *lblTipText;
};

} // namespace vardelin
