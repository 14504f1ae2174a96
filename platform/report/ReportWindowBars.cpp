// The menu and the bars of the report window.

#include "platform/report/ReportView.h"
#include "platform/report/ReportWindow.h"
#include "platform/ui/Icons.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kZooms[] = {50, 75, 100, 125, 150, 200, 300, 400}; // percent
constexpr int kFixedItems = 3; // of the zoom box, ahead of these: the present zoom, width, page

QToolButton *button(const QAction *command, const QString &icon, const QString &name)
{
    auto *made = new QToolButton;
    made->setObjectName(command->objectName() + u"Button"_s);
    made->setIcon(keyIcon(icon));
    made->setAutoRaise(true);
    made->setFocusPolicy(Qt::TabFocus);
    made->setAccessibleName(name);
    const QString keys = command->shortcut().toString(QKeySequence::NativeText);
    made->setToolTip(keys.isEmpty() ? name : u"%1 (%2)"_s.arg(name, keys));
    QObject::connect(made, &QToolButton::clicked, command, &QAction::trigger);
    return made;
}

} // namespace

std::vector<MenuEntry> ReportWindow::menus()
{
    const auto exporting = [this](const QString &filter, const QString &extension, ReportWriter writer) {
        return [=, this] { exportCommand(filter, extension, writer); };
    };
    const auto going = [this](auto &&page) { return [this, page] { goTo(page()); }; };
    using Fit = ReportView::Fit;
    return {
        {u"mnuReturn"_s, u"&Return"_s, {}, [this] { close(); }},
        {u"mnuPrint"_s, u"&Print"_s, QKeySequence(Qt::CTRL | Qt::Key_P), [this] { printReportCommand(); }},
        {u"mnuExport"_s,
         u"E&xport"_s,
         {},
         {},
         {{u"mnuExportPdf"_s, u"&PDF"_s, {}, exporting(u"PDF files (*.pdf)|*.pdf"_s, u"pdf"_s, writePdf)},
          {u"mnuExportHtml"_s,
           u"&Web page"_s,
           {},
           exporting(u"Web pages (*.html)|*.html"_s, u"html"_s, writeHtml)},
          {u"mnuExportText"_s,
           u"Plain &text"_s,
           {},
           exporting(u"Text files (*.txt)|*.txt"_s, u"txt"_s, writeText)},
          {u"mnuExportCsv"_s,
           u"&Records as CSV"_s,
           {},
           exporting(u"CSV files (*.csv)|*.csv"_s, u"csv"_s, writeCsv)}}},
        {u"mnuEdit"_s,
         u"&Edit"_s,
         {},
         {},
         {{u"mnuCopy"_s, u"&Copy"_s, QKeySequence::Copy, [this] { copy(); }},
          {u"mnuSelectAll"_s, u"Select &all"_s, QKeySequence::SelectAll, [this] { m_view->selectAll(); }},
          {u"mnuEditLine"_s, u"-"_s},
          {u"mnuFind"_s, u"&Find"_s, QKeySequence(Qt::CTRL | Qt::Key_F), [this] { openFind(); }},
          {u"mnuFindNext"_s, u"Find &next"_s, QKeySequence(Qt::Key_F3), [this] { stepFind(1); }},
          {u"mnuFindPrevious"_s, u"Find &previous"_s, QKeySequence(Qt::SHIFT | Qt::Key_F3),
           [this] { stepFind(-1); }}}},
        {u"mnuView"_s,
         u"&View"_s,
         {},
         {},
         {{u"mnuZoomIn"_s, u"Zoom &in"_s, QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { stepZoom(1); }},
          {u"mnuZoomOut"_s, u"Zoom &out"_s, QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { stepZoom(-1); }},
          {u"mnuActualSize"_s, u"&Actual size"_s, QKeySequence(Qt::CTRL | Qt::Key_0),
           [this] { m_view->setZoom(1); }},
          {u"mnuFitWidth"_s, u"Fit &width"_s, QKeySequence(Qt::CTRL | Qt::Key_1),
           [this] { m_view->setFit(Fit::Width); }},
          {u"mnuFitPage"_s, u"Fit &page"_s, QKeySequence(Qt::CTRL | Qt::Key_2),
           [this] { m_view->setFit(Fit::Page); }},
          {u"mnuViewLine"_s, u"-"_s},
          {u"mnuLetterPaper"_s,
           u"&Letter paper"_s,
           {},
           [this] {
               setPaper({12240, 15840});
           }},
          {u"mnuA4Paper"_s,
           u"A&4 paper"_s,
           {},
           [this] {
               setPaper({11906, 16838});
           }}}},
        {u"mnuGo"_s,
         u"&Go"_s,
         {},
         {},
         {{u"mnuFirstPage"_s, u"&First page"_s, QKeySequence(Qt::CTRL | Qt::Key_Home),
           going([] { return 1; })},
          {u"mnuPreviousPage"_s, u"&Previous page"_s, QKeySequence(Qt::CTRL | Qt::Key_PageUp),
           going([this] { return m_view->currentPage() - 1; })},
          {u"mnuNextPage"_s, u"&Next page"_s, QKeySequence(Qt::CTRL | Qt::Key_PageDown),
           going([this] { return m_view->currentPage() + 1; })},
          {u"mnuLastPage"_s, u"&Last page"_s, QKeySequence(Qt::CTRL | Qt::Key_End), [this] { goToLast(); }},
          {u"mnuGoToPage"_s, u"&Go to page"_s, QKeySequence(Qt::CTRL | Qt::Key_L), [this] {
               m_page->setFocus();
               m_page->selectAll();
           }}}}};
}

QMenuBar *ReportWindow::makeMenu()
{
    auto *bar = new QMenuBar;
    bar->addActions(vardelin::makeBar(this, menus(), m_errors));
    return bar;
}

QWidget *ReportWindow::makeBar()
{
    auto *bar = new QWidget;
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(6, 2, 6, 2);
    const auto add = [&](const QString &name, const QString &icon, const QString &caption) {
        row->addWidget(button(findChild<QAction *>(name), icon, caption));
    };
    add(u"mnuPrint"_s, u"Print"_s, u"Print"_s);
    add(u"mnuFind"_s, u"Find"_s, u"Find"_s);
    add(u"mnuCopy"_s, u"Copy"_s, u"Copy"_s);
    row->addSpacing(12);
    add(u"mnuFirstPage"_s, u"First"_s, u"First page"_s);
    add(u"mnuPreviousPage"_s, u"Previous"_s, u"Previous page"_s);
    m_page = new QSpinBox;
    m_page->setObjectName(u"Page"_s);
    m_page->setAccessibleName(u"Page"_s);
    m_page->setKeyboardTracking(false);
    m_page->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_page->setFixedWidth(64);
    connect(m_page, &QSpinBox::valueChanged, this, [this](int page) { m_errors.run([&] { goTo(page); }); });
    connect(m_page, &QSpinBox::editingFinished, m_view, qOverload<>(&QWidget::setFocus));
    row->addWidget(m_page);
    m_count = new QLabel;
    m_count->setObjectName(u"Count"_s);
    row->addWidget(m_count);
    add(u"mnuNextPage"_s, u"Next"_s, u"Next page"_s);
    add(u"mnuLastPage"_s, u"Last"_s, u"Last page"_s);
    row->addSpacing(12);
    m_zoom = new QComboBox;
    m_zoom->setObjectName(u"Zoom"_s);
    m_zoom->setAccessibleName(u"Zoom"_s);
    m_zoom->addItems({u"100 %"_s, u"Fit width"_s, u"Fit page"_s});
    for (const int percent : kZooms)
        m_zoom->addItem(u"%1 %"_s.arg(percent));
    connect(m_zoom, &QComboBox::activated, this,
            [this](int index) { m_errors.run([&] { takeZoom(index); }); });
    row->addWidget(m_zoom);
    row->addStretch();
    return bar;
}

void ReportWindow::takeZoom(int index)
{
    if (index == 1)
        m_view->setFit(ReportView::Fit::Width);
    else if (index == 2)
        m_view->setFit(ReportView::Fit::Page);
    else if (index >= kFixedItems)
        m_view->setZoom(kZooms[index - kFixedItems] / 100.0);
    m_view->setFocus();
}

// To the next of the usual zooms.
void ReportWindow::stepZoom(int direction)
{
    const int present = qRound(m_view->zoom() * 100);
    int next = present;
    if (direction > 0) {
        for (const int percent : kZooms)
            if (next == present && percent > present)
                next = percent;
    } else {
        for (const int percent : kZooms)
            if (percent < present)
                next = percent;
    }
    if (next != present)
        m_view->setZoom(next / 100.0);
}

QWidget *ReportWindow::makeFindBar()
{
    m_findBar = new QWidget;
    m_findBar->setObjectName(u"FindBar"_s);
    auto *row = new QHBoxLayout(m_findBar);
    row->setContentsMargins(6, 2, 6, 2);
    auto *caption = new QLabel(u"F&ind:"_s);
    m_findText = new QLineEdit;
    m_findText->setObjectName(u"FindText"_s);
    m_findText->setAccessibleName(u"Find"_s);
    m_findText->setClearButtonEnabled(true);
    caption->setBuddy(m_findText);
    connect(m_findText, &QLineEdit::textChanged, this, [this] { m_errors.run([this] { startFind(); }); });
    connect(m_findText, &QLineEdit::returnPressed, this, [this] { stepFind(1); });
    m_findCount = new QLabel;
    m_findCount->setObjectName(u"FindCount"_s);
    m_findCount->setMinimumWidth(110);
    row->addWidget(caption);
    row->addWidget(m_findText, 1);
    row->addWidget(m_findCount);
    row->addWidget(button(findChild<QAction *>(u"mnuFindPrevious"_s), u"Previous"_s, u"Find previous"_s));
    row->addWidget(button(findChild<QAction *>(u"mnuFindNext"_s), u"Next"_s, u"Find next"_s));
    auto *close = new QPushButton(u"Close"_s);
    close->setObjectName(u"CloseFind"_s);
    close->setAccessibleName(u"Close the find bar"_s);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, [this] { closeFind(); });
    row->addWidget(close);
    m_findBar->hide();
    return m_findBar;
}

QWidget *ReportWindow::makeStatus()
{
    m_work = new QWidget;
    m_work->setObjectName(u"Work"_s);
    auto *row = new QHBoxLayout(m_work);
    row->setContentsMargins(6, 2, 6, 2);
    m_working = new QLabel;
    m_progress = new QProgressBar;
    m_progress->setObjectName(u"Progress"_s);
    m_progress->setAccessibleName(u"Progress"_s);
    m_progress->setRange(0, 100);
    m_progress->setMaximumWidth(240);
    auto *cancel = new QPushButton(u"Cancel"_s);
    cancel->setObjectName(u"Cancel"_s);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, [this] { stopWork(); });
    row->addWidget(m_working);
    row->addWidget(m_progress);
    row->addWidget(cancel);
    row->addStretch();
    m_work->hide();
    return m_work;
}

} // namespace vardelin
