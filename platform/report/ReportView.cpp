#include "platform/report/ReportView.h"

#include "platform/ui/ErrorFrame.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr double kPixelsPerTwip = 1.0 / 15; // of 96 dots an inch
constexpr int kGap = 12;                    // pixels between pages and around them
constexpr int kCachedPages = 24;
constexpr int kScrollStep = 48; // pixels

const QColor kFound(255, 226, 89), kFoundCurrent(255, 150, 40);

} // namespace

ReportView::ReportView(ErrorFrame &errors, QWidget *parent) : QAbstractScrollArea(parent), m_errors(errors)
{
    m_sheets.setMaxCost(kCachedPages);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(u"Report pages"_s);
    viewport()->setCursor(Qt::IBeamCursor);
    verticalScrollBar()->setSingleStep(kScrollStep);
    horizontalScrollBar()->setSingleStep(kScrollStep);
}

void ReportView::setPages(ReportPages &pages)
{
    m_pages = &pages;
    m_sheets.clear();
    m_matches = nullptr;
    m_anchor = m_end = {};
    applyFit();
    pagesFound();
}

void ReportView::pagesFound()
{
    if (m_pages->complete())
        m_sheets.clear(); // their count of pages is known now
    updateRanges();
    viewport()->update();
}

ReportView::Sheet &ReportView::sheet(int number)
{
    if (Sheet *known = m_sheets.object(number))
        return *known;
    auto made = std::make_unique<Sheet>();
    made->page = m_pages->page(number);
    made->rows = rowsOf(made->page);
    for (const PageRow &row : made->rows)
        made->lines.insert(made->lines.end(), row.items.begin(), row.items.end());
    m_sheets.insert(number, made.release());
    return *m_sheets.object(number);
}

// ---- places

double ReportView::scale() const
{
    return m_zoom * kPixelsPerTwip;
}

double ReportView::slot() const
{
    return m_pages->paper().height * scale() + kGap;
}

QPointF ReportView::corner(int number) const
{
    const double width = m_pages->paper().width * scale();
    const double spare = viewport()->width() - width;
    return {spare > 2 * kGap ? std::floor(spare / 2) : kGap - horizontalScrollBar()->value(),
            std::floor(kGap + (number - 1) * slot()) - verticalScrollBar()->value()};
}

int ReportView::currentPage() const
{
    const double middle = verticalScrollBar()->value() + viewport()->height() / 2.0;
    return std::clamp(static_cast<int>((middle - kGap) / slot()) + 1, 1, std::max(1, m_pages->found()));
}

void ReportView::showPage(int number)
{
    while (m_pages->found() < number && m_pages->findNext())
        ;
    updateRanges();
    const int page = std::clamp(number, 1, std::max(1, m_pages->found()));
    verticalScrollBar()->setValue(static_cast<int>((page - 1) * slot()));
}

void ReportView::setZoom(double zoom)
{
    m_fit = Fit::None;
    const double place = (verticalScrollBar()->value() + viewport()->height() / 2.0) / slot();
    m_zoom = std::clamp(zoom, kSmallestZoom, kLargestZoom);
    updateRanges();
    verticalScrollBar()->setValue(static_cast<int>(place * slot() - viewport()->height() / 2.0));
    viewport()->update();
    if (changed)
        changed();
}

void ReportView::setFit(Fit fit)
{
    const int page = currentPage();
    m_fit = fit;
    applyFit();
    updateRanges();
    if (fit == Fit::Page)
        showPage(page);
    viewport()->update();
    if (changed)
        changed();
}

void ReportView::applyFit()
{
    if (!m_pages || m_fit == Fit::None)
        return;
    const double across = (viewport()->width() - 2.0 * kGap) / (m_pages->paper().width * kPixelsPerTwip);
    const double down = (viewport()->height() - 2.0 * kGap) / (m_pages->paper().height * kPixelsPerTwip);
    m_zoom = std::clamp(m_fit == Fit::Page ? std::min(across, down) : across, kSmallestZoom, kLargestZoom);
}

void ReportView::updateRanges()
{
    const double height = kGap + std::max(1, m_pages->found()) * slot();
    const double width = m_pages->paper().width * scale() + 2 * kGap;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(std::ceil(height)) - viewport()->height()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0,
                                    std::max(0, static_cast<int>(std::floor(width)) - viewport()->width()));
}

void ReportView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    if (!m_pages)
        return;
    const double place = verticalScrollBar()->value() / slot();
    applyFit();
    updateRanges();
    verticalScrollBar()->setValue(static_cast<int>(place * slot()));
    if (changed)
        changed();
}

void ReportView::scrollContentsBy(int, int)
{
    viewport()->update();
    if (changed)
        changed();
}

// ---- painting

void ReportView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Dark));
    if (!m_pages)
        return;
    m_errors.run([&] {
        const double top = verticalScrollBar()->value() - kGap;
        const int first = std::max(1, static_cast<int>(top / slot()) + 1);
        for (int number = first; number <= m_pages->found() && corner(number).y() < viewport()->height();
             ++number)
            paintSheet(painter, number, event->rect());
    });
    tellScreenReader();
}

void ReportView::paintSheet(QPainter &painter, int number, const QRect &exposed)
{
    if (!m_painter || m_painter->scale() != scale())
        m_painter = std::make_unique<PagePainter>(scale());
    const QPointF at = corner(number);
    const QRectF paper(at, QSizeF(m_pages->paper().width, m_pages->paper().height) * scale());
    if (!paper.intersects(exposed))
        return;
    const Sheet &shown = sheet(number);
    painter.fillRect(paper, Qt::white); // paper is white on a dark desktop, too
    painter.setPen(palette().color(QPalette::Shadow));
    painter.drawRect(paper.adjusted(-0.5, -0.5, 0.5, 0.5));
    painter.save();
    painter.setClipRect(paper);
    painter.translate(at);
    paintMarks(painter, shown);
    painter.setPen(Qt::black);
    const QRectF visible = QRectF(exposed).translated(-at);
    m_painter->paint(
        painter, shown.page,
        QRectF(visible.topLeft() / scale(), visible.size() / scale()).adjusted(-300, -300, 300, 300));
    painter.restore();
}

void ReportView::mark(QPainter &painter, const ReportItem &item, int from, int to, const QColor &color) const
{
    const double left = item.left + offsetOf(item, from), right = item.left + offsetOf(item, to);
    painter.fillRect(
        QRectF(left * scale(), item.top * scale(), (right - left) * scale(), item.height * scale()), color);
}

void ReportView::paintMarks(QPainter &painter, const Sheet &shown)
{
    if (m_matches) {
        const auto first = std::ranges::lower_bound(*m_matches, shown.page.number, {}, &TextMatch::page);
        for (auto match = first; match != m_matches->end() && match->page == shown.page.number; ++match) {
            const bool current = match - m_matches->begin() == m_currentMatch;
            for (const TextMatch::Piece &piece : match->pieces)
                mark(painter, shown.page.items[static_cast<std::size_t>(piece.item)], piece.from,
                     piece.from + piece.length, current ? kFoundCurrent : kFound);
        }
    }
    if (!hasSelection())
        return;
    QColor color = palette().color(QPalette::Highlight);
    color.setAlpha(110);
    const TextPlace from = selectionStart(), to = selectionEnd();
    for (std::size_t i = 0; i < shown.lines.size(); ++i) {
        const ReportItem &item = *shown.lines[i];
        const TextPlace start{shown.page.number, static_cast<int>(i), 0};
        const TextPlace end{shown.page.number, static_cast<int>(i), static_cast<int>(item.text.size())};
        if (from < end && start < to)
            mark(painter, item, std::max(from, start).offset, to < end ? to.offset : end.offset, color);
    }
}

// ---- finds

void ReportView::setMatches(const std::vector<TextMatch> *matches, int current)
{
    m_matches = matches;
    m_currentMatch = current;
    viewport()->update();
    if (!matches || current < 0)
        return;
    const TextMatch &match = (*matches)[static_cast<std::size_t>(current)];
    const Sheet &shown = sheet(match.page);
    const TextMatch::Piece &piece = match.pieces.front();
    const ReportItem &item = shown.page.items[static_cast<std::size_t>(piece.item)];
    reveal(match.page, item.top, item.bottom(), item.left + offsetOf(item, piece.from),
           item.left + offsetOf(item, piece.from + piece.length));
}

void ReportView::reveal(int page, double top, double bottom, double left, double right)
{
    updateRanges();
    const QPointF at = corner(page);
    const double y = at.y() + top * scale(), below = at.y() + bottom * scale();
    if (y < 0 || below > viewport()->height())
        verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                      static_cast<int>(y - viewport()->height() / 3.0));
    const double x = at.x() + left * scale(), beyond = at.x() + right * scale();
    if (x < 0 || beyond > viewport()->width())
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                        static_cast<int>(x - viewport()->width() / 3.0));
}

// The words of the page in view, for those who hear them.
void ReportView::tellScreenReader()
{
    const int page = currentPage();
    if (page == m_told || m_pages->found() == 0)
        return;
    m_told = page;
    setAccessibleDescription(textBetween(sheet(page).rows, page, {page, 0, 0}, {page, kWhole, 0}));
}

} // namespace vardelin
