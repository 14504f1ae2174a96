#pragma once
// The rows of the To Do list as the window shows them, and what is decided about them without a window.

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

namespace vardelin {

namespace dao {
class Recordset;
}

// Priority; "Last, First" of a client or a project; what is to be done; start date; deadline. All as text.
inline constexpr std::size_t kToDoColumns = 5;
using ToDoRow = std::array<QString, kToDoColumns>;

extern const std::array<QString, kToDoColumns> kToDoHeadings;

// The columns' widths in a list of a width, less an allowance, in one unit.
std::array<int, kToDoColumns> toDoColumnWidths(int width, int allowance);

// Whose an item is, told by its text alone: with a comma and blank it is a client's, split at the first one;
// else a project's.
struct ToDoOwner
{
    bool isClient = false;
    QString last, first, project;
};
ToDoOwner ownerOf(const QString &cell);

// A row of [Things To Do] as the list shows it. One with both a client and a project shows the project.
ToDoRow toDoRow(const dao::Recordset &row);

// Orders by one column's text, without regard to case, equal ones as they were: "10/2/2001" comes ahead of
// "9/1/2001".
void sortToDo(std::vector<ToDoRow> &rows, std::size_t column, bool descending);

// What dragging one row on another does: all but the priorities changes places.
void exchangeToDo(ToDoRow &one, ToDoRow &other);

// The activities picked, each with a blank ahead of it; onlyFirst: no more than the first.
QString pickedActivities(const QStringList &selected, bool onlyFirst);

} // namespace vardelin
