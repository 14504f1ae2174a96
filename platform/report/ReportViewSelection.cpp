// Selecting with the mouse and the keys.

#include "platform/report/ReportView.h"

#include "platform/ui/ErrorFrame.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <cmath>

namespace vardelin {

namespace {

constexpr double kWheelNotch = 120;
constexpr double kZoomStep = 1.1; // a notch of the wheel

} // namespace

double ReportView::offsetOf(const ReportItem &item, int characters) const
{
    return m_pages->measurer().width(item.font, QStringView(item.text).left(characters));
}

TextPlace ReportView::placeAt(const QPointF &position)
{
    const double y = position.y() + verticalScrollBar()->value();
    const int number = std::clamp(static_cast<int>(y / slot()) + 1, 1, std::max(1, m_pages->found()));
    Sheet &shown = sheet(number);
    const QPointF at = (position - corner(number)) / scale();
    TextPlace place{number, 0, 0};
    const PageRow *nearest = nullptr;
    int line = 0;
    for (const PageRow &row : shown.rows) {
        const auto distance = [&](const PageRow &r) {
            return at.y() < r.top ? r.top - at.y() : std::max(0.0, at.y() - r.bottom);
        };
        if (!nearest || distance(row) < distance(*nearest)) {
            nearest = &row;
            place.line = line;
        }
        line += static_cast<int>(row.items.size());
    }
    if (!nearest)
        return place;
    std::size_t column = 0;
    while (column + 1 < nearest->items.size() && nearest->items[column + 1]->left <= at.x())
        ++column;
    place.line += static_cast<int>(column);
    const ReportItem &item = *nearest->items[column];
    std::vector<double> widths;
    m_pages->measurer().appendWidths(item.font, item.text, widths);
    double edge = item.left;
    while (place.offset < item.text.size() &&
           at.x() > edge + widths[static_cast<std::size_t>(place.offset)] / 2)
        edge += widths[static_cast<std::size_t>(place.offset++)];
    return place;
}

void ReportView::selectAll()
{
    m_anchor = {1, 0, 0};
    moveEnd({kWhole, 0, 0});
}

void ReportView::clearSelection()
{
    m_anchor = m_end;
    moveEnd(m_end);
}

void ReportView::moveEnd(TextPlace to)
{
    m_end = to;
    viewport()->update();
    if (changed)
        changed();
}

void ReportView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pages)
        return;
    m_errors.run([&] {
        const TextPlace place = placeAt(event->position());
        if (!(event->modifiers() & Qt::ShiftModifier))
            m_anchor = place;
        moveEnd(place);
    });
}

void ReportView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_pages)
        return;
    m_errors.run([&] { moveEnd(placeAt(event->position())); });
    const int beyond = event->position().y() < 0 ? static_cast<int>(event->position().y())
                       : event->position().y() > viewport()->height()
                           ? static_cast<int>(event->position().y()) - viewport()->height()
                           : 0;
    verticalScrollBar()->setValue(verticalScrollBar()->value() + beyond);
}

// The word under the mouse.
void ReportView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pages)
        return;
    m_errors.run([&] {
        TextPlace from = placeAt(event->position()), to = from;
        const Sheet &shown = sheet(from.page);
        if (static_cast<std::size_t>(from.line) >= shown.lines.size())
            return;
        const QString &text = shown.lines[static_cast<std::size_t>(from.line)]->text;
        while (from.offset > 0 && text[from.offset - 1].isLetterOrNumber())
            --from.offset;
        while (to.offset < text.size() && text[to.offset].isLetterOrNumber())
            ++to.offset;
        m_anchor = from;
        moveEnd(to);
    });
}

void ReportView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    setZoom(m_zoom * std::pow(kZoomStep, event->angleDelta().y() / kWheelNotch));
    event->accept();
}

// One character, line or page on; the selection's end stays on its line's first character when it changes
// lines, which is where one goes on reading.
TextPlace ReportView::moved(TextPlace place, int key)
{
    place.page = std::min(place.page, m_pages->found());
    const auto lineCount = [&](int page) { return static_cast<int>(sheet(page).lines.size()); };
    const auto length = [&](const TextPlace &at) {
        return at.line < lineCount(at.page)
                   ? static_cast<int>(sheet(at.page).lines[static_cast<std::size_t>(at.line)]->text.size())
                   : 0;
    };
    const auto forward = [&] {
        if (place.line + 1 < lineCount(place.page))
            place = {place.page, place.line + 1, 0};
        else if (place.page < m_pages->found())
            place = {place.page + 1, 0, 0};
        else
            place.offset = length(place);
    };
    const auto back = [&] {
        if (place.line > 0)
            place = {place.page, place.line - 1, 0};
        else if (place.page > 1)
            place = {place.page - 1, std::max(0, lineCount(place.page - 1) - 1), 0};
        else
            place.offset = 0;
    };
    if (key == Qt::Key_Right && place.offset < length(place)) {
        ++place.offset;
    } else if (key == Qt::Key_Right || key == Qt::Key_Down) {
        forward();
    } else if (key == Qt::Key_Left && place.offset > 0) {
        --place.offset;
    } else if (key == Qt::Key_Left) {
        back();
        place.offset = length(place);
    } else if (key == Qt::Key_Up) {
        back();
    } else if (key == Qt::Key_End) {
        place.offset = length(place);
    } else if (key == Qt::Key_Home) {
        place.offset = 0;
    } else {
        place = {std::clamp(place.page + (key == Qt::Key_PageDown ? 1 : -1), 1, m_pages->found()), 0, 0};
    }
    return place;
}

void ReportView::keyPressEvent(QKeyEvent *event)
{
    static const std::set<int> moves{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                     Qt::Key_Home, Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown};
    if (event->modifiers() == Qt::ShiftModifier && moves.contains(event->key())) {
        m_errors.run([&] {
            if (!hasSelection()) // begins with the first line in view
                m_anchor = m_end = placeAt({0, 0});
            moveEnd(moved(m_end, event->key()));
            const Sheet &shown = sheet(m_end.page);
            if (static_cast<std::size_t>(m_end.line) < shown.lines.size()) {
                const ReportItem &item = *shown.lines[static_cast<std::size_t>(m_end.line)];
                const double x = item.left + offsetOf(item, m_end.offset);
                reveal(m_end.page, item.top, item.bottom(), x, x);
            }
        });
        return;
    }
    QScrollBar *bar = verticalScrollBar();
    switch (event->modifiers() & Qt::ControlModifier ? 0 : event->key()) {
    case Qt::Key_Home:
        bar->setValue(bar->minimum());
        return;
    case Qt::Key_End:
        bar->setValue(bar->maximum());
        return;
    case Qt::Key_Space:
        bar->triggerAction(event->modifiers() & Qt::ShiftModifier ? QScrollBar::SliderPageStepSub
                                                                  : QScrollBar::SliderPageStepAdd);
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

} // namespace vardelin
