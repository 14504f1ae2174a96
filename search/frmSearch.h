#pragma once
// What to search for, and in what time.

#include <QDialog>

class QMenuBar;
class QRadioButton;

namespace vardelin {

struct Global;

// Not modal, and one at most: launchSearch() makes it, either routine or Return closes it. Whose selection a
// search narrows is decided by the window that is active when the command comes.
class frmSearch : public QDialog
{
    Q_OBJECT
public:
    explicit frmSearch(Global &global, QWidget *parent = nullptr);

    // The report entry; without a name it is off and keeps its words.
    void offerReport(const QString &name);
    void withoutCurrentClient(); // Option1(0) is off for as long as the window lives

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void layOut();
    void Form_Load();
    QMenuBar *makeMenu();
    QWidget *makeFrame(const QString &name, const QString &caption, const QString &buttonName,
                       const QStringList &captions, std::vector<QRadioButton *> &buttons);
    void readButtons();
    void mnuContinue_Click();
    void mnuReport_Click();

    Global &m_global;
    std::vector<QRadioButton *> Option1, Option2;
    QMenuBar *m_bar = nullptr;
    QAction *mnuReport = nullptr;
};

// The command of Data entry and Display windows: Openers::frmSearch.
void launchSearch(Global &global, const QString &reportName);
// Closes frmSearch if it is open.
void unloadSearch(const Global &global);

} // namespace vardelin
