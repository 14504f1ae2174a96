#include "todo/ToDoView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

ToDoRow cellsOf(const QTreeWidgetItem &item)
{
    ToDoRow cells;
    for (std::size_t column = 0; column < kToDoColumns; ++column)
        cells[column] = item.text(static_cast<int>(column));
    return cells;
}

// Headings that don't fit end in dots; Qt 6.4 would clip a centred one on both sides.
class Headings final : public QHeaderView
{
public:
    Headings() : QHeaderView(Qt::Horizontal)
    {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setStretchLastSection(false);
        setMinimumSectionSize(1); // else the shares don't hold in a narrow window
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override
    {
        QHeaderView::initStyleOptionForIndex(option, column);
        const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
        int room = sectionSize(column) - 2 * margin;
        if (isSortIndicatorShown() && sortIndicatorSection() == column)
            room -= style()->pixelMetric(QStyle::PM_HeaderMarkSize, option, this) + margin;
        option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight, room);
    }
};

QTreeWidgetItem *itemOf(const ToDoRow &cells)
{
    auto *item = new QTreeWidgetItem;
    for (std::size_t i = 0; i < kToDoColumns; ++i) {
        const int column = static_cast<int>(i);
        item->setText(column, cells[i]);
        item->setTextAlignment(column, column == 0 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
        item->setToolTip(column, cells[i]); // a long one is cut off in its column
    }
    return item;
}

} // namespace

ToDoView::ToDoView(QWidget *parent) : QTreeWidget(parent)
{
    setObjectName(u"ListView1"_s);
    setAccessibleName(u"To Do list"_s);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAutoScroll(false);
    setHeader(new Headings);
    header()->setSectionsClickable(true); // not in Headings: setHeader() takes it away
    setColumnCount(static_cast<int>(kToDoColumns));
    setHeaderLabels({kToDoHeadings.begin(), kToDoHeadings.end()});
    for (int column = 1; column < columnCount(); ++column)
        headerItem()->setTextAlignment(column, Qt::AlignCenter);
    connect(header(), &QHeaderView::sectionClicked, this, &ToDoView::clickColumn);
    connect(header(), &QHeaderView::sectionDoubleClicked, this, &ToDoView::clickColumn); // the second click
    // The sheet is pale blue in a dark look too, so its ink is dark.
    QPalette sheet = palette();
    sheet.setColor(QPalette::Base, QColor(192, 255, 255));
    sheet.setColor(QPalette::Text, Qt::black);
    setPalette(sheet);
}

std::vector<ToDoRow> ToDoView::rows() const
{
    std::vector<ToDoRow> all;
    for (int i = 0; i < topLevelItemCount(); ++i)
        all.push_back(cellsOf(*topLevelItem(i)));
    return all;
}

void ToDoView::setRows(const std::vector<ToDoRow> &rows)
{
    clear();
    QList<QTreeWidgetItem *> items;
    for (const ToDoRow &row : rows)
        items += itemOf(row);
    addTopLevelItems(items);
    if (!items.isEmpty())
        setCurrentItem(items.first());
}

int ToDoView::selectedRow() const
{
    QTreeWidgetItem *item = currentItem(); // Ctrl and a click take the selection from it
    return item && item->isSelected() ? indexOfTopLevelItem(item) + 1 : 0;
}

void ToDoView::addRow(const ToDoRow &row)
{
    QTreeWidgetItem *item = itemOf(row);
    addTopLevelItem(item);
    setCurrentItem(item);
    if (Sorted)
        resort(row);
}

void ToDoView::removeSelected()
{
    const int row = selectedRow() - 1;
    if (row < 0)
        return;
    delete takeTopLevelItem(row);
    if (topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(std::min(row, topLevelItemCount() - 1)));
}

void ToDoView::clickColumn(int column)
{
    // The key stands on the first column from the start, so a first click on Priority sorts descending:
    // settled.
    descending = SortKey == column && !descending;
    SortKey = column;
    Sorted = true;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    resort(currentItem() ? cellsOf(*currentItem()) : ToDoRow{});
}

void ToDoView::resort(const ToDoRow &select)
{
    std::vector<ToDoRow> all = rows();
    sortToDo(all, static_cast<std::size_t>(SortKey), descending);
    setRows(all);
    const auto found = std::ranges::find(all, select);
    if (found != all.end())
        setCurrentItem(topLevelItem(static_cast<int>(found - all.begin())));
}

void ToDoView::exchange(int one, int other)
{
    QTreeWidgetItem *first = topLevelItem(one - 1), *second = topLevelItem(other - 1);
    if (!first || !second || first == second)
        return;
    ToDoRow a = cellsOf(*first), b = cellsOf(*second);
    exchangeToDo(a, b);
    for (std::size_t i = 1; i < kToDoColumns; ++i) {
        const int column = static_cast<int>(i);
        first->setText(column, a[i]);
        first->setToolTip(column, a[i]);
        second->setText(column, b[i]);
        second->setToolTip(column, b[i]);
    }
}

void ToDoView::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Delete && deleteKey)
        return deleteKey();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) && closeKey)
        return closeKey();
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    // Some window managers keep Alt and an arrow for themselves.
    const bool moves = held == Qt::ControlModifier || held == Qt::AltModifier;
    if ((key == Qt::Key_Up || key == Qt::Key_Down) && moves && moveKey)
        return moveKey(key == Qt::Key_Up ? -1 : 1);
    if (held == Qt::ControlModifier && key >= Qt::Key_1 && key < Qt::Key_1 + columnCount())
        return clickColumn(key - Qt::Key_1);
    QTreeWidget::keyPressEvent(event);
}

int ToDoView::rowAt(QMouseEvent *event) const
{
    QTreeWidgetItem *item = itemAt(event->position().toPoint());
    return item ? indexOfTopLevelItem(item) + 1 : 0;
}

void ToDoView::mousePressEvent(QMouseEvent *event)
{
    QTreeWidget::mousePressEvent(event);
    if (pressed)
        pressed(rowAt(event));
}

// The second of two quick clicks is a press, too, and may be on another row.
void ToDoView::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

// A held button would select the rows that it passes.
void ToDoView::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    if (event->buttons() != Qt::NoButton)
        viewport()->setCursor(Qt::DragMoveCursor);
}

void ToDoView::mouseReleaseEvent(QMouseEvent *event)
{
    QTreeWidget::mouseReleaseEvent(event);
    viewport()->unsetCursor();
    if (released)
        released(rowAt(event));
}

} // namespace vardelin
