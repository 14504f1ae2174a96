#pragma once
// The list control of the To Do list: five columns of text, sorted by clicks on their headings, reordered by
// dragging one row on another.

#include "todo/ToDoRows.h"

#include <QTreeWidget>
#include <functional>

namespace vardelin {

class ToDoView : public QTreeWidget
{
    Q_OBJECT
public:
    explicit ToDoView(QWidget *parent = nullptr);

    std::vector<ToDoRow> rows() const; // in the displayed order
    void setRows(const std::vector<ToDoRow> &rows);
    void
    addRow(const ToDoRow &row); // at the end, or at its sorted place once the list was sorted; selects it
    void removeSelected();      // if there is one; the row that takes its place is selected
    int selectedRow() const;    // from 1; 0 without one

    void clickColumn(int column); // from 0
    int SortKey = 0;              // column, from 0
    bool descending = false;
    bool Sorted = false;

    // Rows from 1, as the mouse was pressed and released on them; 0 where no row is under it.
    std::function<void(int row)> pressed, released;
    std::function<void()> deleteKey, closeKey; // Delete; Enter and Esc
    // Ctrl with the number of a column, from 1, is a click on its heading.
    std::function<void(int step)> moveKey; // Ctrl or Alt with up (-1) and down (1)
    // The two rows, from 1, change places but for their priorities. A row that isn't there: nothing.
    void exchange(int one, int other);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    int rowAt(QMouseEvent *event) const;
    void resort(const ToDoRow &select);
};

} // namespace vardelin
