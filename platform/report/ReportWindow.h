#pragma once
// The window that shows a report: pages as on paper, find, copy, print, export.

#include "platform/report/Report.h"
#include "platform/report/ReportExport.h"
#include "platform/ui/ErrorFrame.h"
#include "platform/ui/MenuTable.h"

#include <QDialog>
#include <QTimer>

class QComboBox;
class QLabel;
class QLineEdit;
class QMenuBar;
class QProgressBar;
class QSpinBox;
class QToolButton;

namespace vardelin {

class ReportView;

class ReportWindow : public QDialog
{
    Q_OBJECT
public:
    // The report must outlive the window and stay bound.
    ReportWindow(const DataReport &report, Dialogs &dialogs, ErrorFrame &errors, QWidget *parent = nullptr);
    ~ReportWindow() override;

    // What asks the user how to print, with the printer prepared; false: not at all. Qt's dialog where it
    // isn't set. Without any printer it isn't asked.
    std::function<bool(class QPrinter &printer)> askToPrint;
    // Prints as askToPrint left it.
    void print(class QPrinter &printer);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::vector<MenuEntry> menus();
    QMenuBar *makeMenu();
    QWidget *makeBar();
    QWidget *makeFindBar();
    QWidget *makeStatus();

    void setPaper(const Paper &paper);
    void refresh();  // what the bars say
    void workOn();   // a slice of the counting or the find
    void stopWork(); // Cancel
    void goTo(int page);
    void goToLast();
    void stepZoom(int direction);
    void takeZoom(int index);

    void openFind();
    void closeFind();
    void startFind();
    void stepFind(int direction);
    void showMatch(int index);

    void copy();
    void printReportCommand();
    void exportCommand(const QString &filter, const QString &extension, ReportWriter writer);
    // Runs a long command under a box with a progress bar and Cancel. False: cancelled.
    bool runLong(const QString &what, const std::function<bool(const ReportProgress &)> &work);
    // Runs a command; its failures come in a box, and the window goes on.
    void command(const std::function<void()> &work);

    const DataReport &m_report;
    Dialogs &m_dialogs;
    ErrorFrame &m_errors;
    FaceMeasurer m_measurer;
    std::unique_ptr<ReportPages> m_pages;
    ReportView *m_view = nullptr;
    QSpinBox *m_page = nullptr;
    QLabel *m_count = nullptr;
    QComboBox *m_zoom = nullptr;
    QWidget *m_findBar = nullptr;
    QLineEdit *m_findText = nullptr;
    QLabel *m_findCount = nullptr;
    QWidget *m_work = nullptr; // the bar and its Cancel
    QProgressBar *m_progress = nullptr;
    QLabel *m_working = nullptr;

    QTimer m_slices;
    bool m_counting = true;
    std::vector<TextMatch> m_matches;
    QString m_sought;
    int m_soughtTo = 0; // pages looked through
    int m_match = -1;   // the current one
    bool m_finding = false;
};

// Shows the report, modal over `parent`; returns when the window is closed. Failures of its own commands come
// in message boxes, others go to the frame.
void showReport(const DataReport &report, Dialogs &dialogs, ErrorFrame &errors, QWidget *parent);

} // namespace vardelin
