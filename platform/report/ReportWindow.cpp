#include "platform/report/ReportWindow.h"

#include "platform/base/RunTimeError.h"
#include "platform/report/ReportView.h"

#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProgressBar>
#include <QProgressDialog>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kSliceMs = 15;     // of counting or finding between two events
constexpr int kPatienceMs = 400; // before a long command shows its progress
constexpr int kNoPrinter = 484;

} // namespace

ReportWindow::ReportWindow(const DataReport &report, Dialogs &dialogs, ErrorFrame &errors, QWidget *parent)
    : QDialog(parent), m_report(report), m_dialogs(dialogs), m_errors(errors)
{
    setObjectName(report.design().Name);
    setWindowTitle(report.Caption());
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    m_view = new ReportView(errors);
    m_view->setObjectName(u"Pages"_s);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->setMenuBar(makeMenu());
    all->addWidget(makeBar());
    all->addWidget(makeFindBar());
    all->addWidget(m_view, 1);
    all->addWidget(makeStatus());
    resize(parent ? parent->window()->size().expandedTo({640, 480}) : QSize(900, 700));
    m_slices.setInterval(0);
    connect(&m_slices, &QTimer::timeout, this, [this] { m_errors.run([this] { workOn(); }); });
    m_view->changed = [this] { refresh(); };
    setPaper({});
    m_view->setFocus();
}

ReportWindow::~ReportWindow()
{
    m_view->changed = nullptr;
}

void ReportWindow::command(const std::function<void()> &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        m_dialogs.msgBox({.prompt = error.description(), .icon = Icon::Exclamation});
    }
}

void ReportWindow::setPaper(const Paper &paper)
{
    closeFind();
    m_pages = std::make_unique<ReportPages>(m_report.design(), m_report.records(), m_measurer, paper);
    m_pages->findNext();
    m_view->setPages(*m_pages);
    m_counting = true;
    m_slices.start();
    refresh();
}

// ---- work between events

void ReportWindow::workOn()
{
    QElapsedTimer slice;
    slice.start();
    while (slice.elapsed() < kSliceMs) {
        if (m_finding) {
            m_finding = m_soughtTo < m_pages->found() || m_pages->findNext();
            if (!m_finding)
                continue;
            const auto found = findText(m_pages->page(++m_soughtTo), m_sought);
            m_matches.insert(m_matches.end(), found.begin(), found.end());
        } else if (!m_counting || !m_pages->findNext()) {
            m_counting = false;
            m_slices.stop();
            break;
        }
    }
    m_view->pagesFound();
    if (m_match < 0 && !m_matches.empty()) {
        // The first find from the page in view on, or of all where there is none behind it.
        const auto from = std::ranges::lower_bound(m_matches, m_view->currentPage(), {}, &TextMatch::page);
        if (from != m_matches.end() || !m_finding)
            showMatch(from == m_matches.end() ? 0 : static_cast<int>(from - m_matches.begin()));
    }
    refresh();
}

void ReportWindow::stopWork()
{
    m_slices.stop();
    m_counting = m_finding = false;
    refresh();
}

void ReportWindow::refresh()
{
    if (!m_pages)
        return;
    const bool complete = m_pages->complete();
    const QSignalBlocker quiet(m_page);
    m_page->setRange(1, complete ? m_pages->found() : std::numeric_limits<int>::max());
    if (!m_page->hasFocus() || m_page->value() > m_page->maximum())
        m_page->setValue(m_view->currentPage());
    m_count->setText(complete ? u"of %1"_s.arg(m_pages->found())
                              : u"of more than %1"_s.arg(m_pages->found()));
    const QSignalBlocker quietZoom(m_zoom);
    m_zoom->setItemText(0, u"%1 %"_s.arg(qRound(m_view->zoom() * 100)));
    m_zoom->setCurrentIndex(m_view->fit() == ReportView::Fit::Width  ? 1
                            : m_view->fit() == ReportView::Fit::Page ? 2
                                                                     : 0);
    m_work->setVisible(m_slices.isActive() && (m_finding || m_counting));
    m_working->setText(m_finding ? u"Finding"_s : u"Counting pages"_s);
    m_progress->setValue(
        qRound(100 * (m_finding && complete ? double(m_soughtTo) / m_pages->found() : m_pages->progress())));
    findChild<QAction *>(u"mnuCopy"_s)->setEnabled(m_view->hasSelection());
    if (m_findBar->isVisibleTo(this))
        m_findCount->setText(
            m_sought.isEmpty() ? QString()
            : m_matches.empty()
                ? (m_finding ? u"Finding…"_s : u"Not found"_s)
                : u"%1 of %2%3"_s.arg(m_match + 1).arg(m_matches.size()).arg(m_finding ? u"…"_s : QString()));
}

// ---- going

void ReportWindow::goTo(int page)
{
    command([&] { m_view->showPage(page); });
    refresh();
}

void ReportWindow::goToLast()
{
    command([this] {
        if (runLong(u"Counting pages"_s, [this](const ReportProgress &progress) {
                while (m_pages->findNext())
                    if (!progress(qRound(1000 * m_pages->progress()), 1000))
                        return false;
                return true;
            }))
            m_counting = false;
        m_view->pagesFound();
        m_view->showPage(m_pages->found());
    });
    refresh();
}

// ---- find

void ReportWindow::openFind()
{
    m_findBar->show();
    m_findText->setFocus();
    m_findText->selectAll();
}

void ReportWindow::closeFind()
{
    m_sought.clear();
    m_matches.clear();
    m_match = -1;
    m_finding = false;
    m_view->setMatches(nullptr, -1);
    m_findBar->hide();
    m_view->setFocus();
}

void ReportWindow::startFind()
{
    m_sought = m_findText->text();
    m_matches.clear();
    m_soughtTo = 0;
    m_match = -1;
    m_view->setMatches(&m_matches, -1);
    m_finding = !m_sought.isEmpty();
    if (m_finding)
        m_slices.start();
    refresh();
}

void ReportWindow::showMatch(int index)
{
    m_match = index;
    m_view->setMatches(&m_matches, index);
    refresh();
}

void ReportWindow::stepFind(int direction)
{
    if (!m_findBar->isVisibleTo(this))
        return openFind();
    if (m_sought != m_findText->text())
        return startFind();
    const int count = static_cast<int>(m_matches.size());
    if (count > 0)
        m_errors.run([&] { showMatch((m_match + direction + count) % count); });
}

// ---- commands

bool ReportWindow::runLong(const QString &what, const std::function<bool(const ReportProgress &)> &work)
{
    QProgressDialog box(what, u"Cancel"_s, 0, 1000, this);
    box.setWindowTitle(m_report.Caption());
    box.setWindowModality(Qt::WindowModal);
    box.setMinimumDuration(kPatienceMs);
    const bool active = m_slices.isActive();
    m_slices.stop(); // the pages are taken one after the other meanwhile
    int shown = -1;
    const bool done = work([&](int at, int of) {
        const int part = static_cast<int>(1000.0 * at / std::max(1, of));
        if (part != shown)
            box.setValue(std::min(shown = part, 999));
        return !box.wasCanceled();
    });
    box.reset();
    if (active)
        m_slices.start();
    return done;
}

void ReportWindow::copy()
{
    command([this] {
        std::optional<QString> text;
        runLong(u"Copying"_s, [&](const ReportProgress &progress) {
            text = textBetween(*m_pages, m_view->selectionStart(), m_view->selectionEnd(), progress);
            return text.has_value();
        });
        if (text)
            QGuiApplication::clipboard()->setText(*text);
    });
}

void ReportWindow::print(QPrinter &printer)
{
    // On other paper than the window's the pages break elsewhere.
    const Paper paper = paperOf(printer);
    ReportPages other(m_report.design(), m_report.records(), m_measurer, paper);
    ReportPages &pages = paper == m_pages->paper() ? *m_pages : other;
    runLong(u"Printing"_s,
            [&](const ReportProgress &progress) { return printReport(pages, printer, progress); });
}

void ReportWindow::printReportCommand()
{
    command([this] {
        if (QPrinterInfo::availablePrinterNames().isEmpty())
            throw RunTimeError(kNoPrinter);
        QPrinter printer(QPrinter::HighResolution);
        const auto ask = [this](QPrinter &chosen) {
            QPrintDialog dialog(&chosen, this);
            dialog.setMinMax(1, m_pages->count());
            dialog.setFromTo(1, m_pages->count());
            dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
            return dialog.exec() == QDialog::Accepted;
        };
        if (askToPrint ? askToPrint(printer) : ask(printer))
            print(printer);
    });
}

void ReportWindow::exportCommand(const QString &filter, const QString &extension, ReportWriter writer)
{
    command([&] {
        QString name = m_report.Caption().isEmpty() ? u"Report"_s : m_report.Caption();
        name.replace(u'/', u'-');
        CommonDialog dialog{.DialogTitle = u"Export report"_s,
                            .FileName = name + u'.' + extension,
                            .Filter = filter,
                            .DefaultExt = extension,
                            .overwritePrompt = true};
        if (!m_dialogs.showSave(dialog))
            return;
        runLong(u"Exporting"_s, [&](const ReportProgress &progress) {
            return exportReport(*m_pages, dialog.FileName, writer, progress);
        });
        m_view->pagesFound();
    });
    refresh();
}

void ReportWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_findBar->isVisible())
        return closeFind();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return; // no button of this window is a default
    QDialog::keyPressEvent(event);
}

void showReport(const DataReport &report, Dialogs &dialogs, ErrorFrame &errors, QWidget *parent)
{
    ReportWindow window(report, dialogs, errors, parent);
    window.exec();
}

} // namespace vardelin
