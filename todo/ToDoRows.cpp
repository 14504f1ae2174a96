#include "todo/ToDoRows.h"

#include "platform/data/Dao.h"
#include "platform/ui/Controls.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin {

const std::array<QString, kToDoColumns> kToDoHeadings{u"Priority"_s, u"Client or Project"_s, u"Thing To Do"_s,
                                                      u"Start Date"_s, u"Deadline"_s};

std::array<int, kToDoColumns> toDoColumnWidths(int width, int allowance)
{
    constexpr std::array kShares{0.09, 0.25, 0.42, 0.12, 0.12};
    std::array<int, kToDoColumns> widths{};
    for (std::size_t i = 0; i < kToDoColumns; ++i)
        widths[i] = static_cast<int>((width - allowance) * kShares[i]);
    return widths;
}

ToDoOwner ownerOf(const QString &cell)
{
    const qsizetype comma = cell.indexOf(u", "_s);
    if (comma < 0)
        return {.isClient = false, .last = {}, .first = {}, .project = cell};
    return {.isClient = true, .last = cell.left(comma), .first = cell.mid(comma + 2), .project = {}};
}

ToDoRow toDoRow(const dao::Recordset &row)
{
    ToDoRow cells;
    cells[0] = joinText(row.Fields(u"TTD Priority"_s));
    const Value last = row.Fields(u"TTD Client Last Name"_s), first = row.Fields(u"TTD Client First Name"_s);
    if (!last.isNull() && !first.isNull())
        cells[1] = joinText(last) + u", "_s + joinText(first);
    if (const Value project = row.Fields(u"TTD Project"_s); !project.isNull())
        cells[1] = joinText(project);
    cells[2] = joinText(row.Fields(u"ThingToDo"_s));
    cells[3] = joinText(row.Fields(u"Thing To Do Start Date"_s));
    cells[4] = joinText(row.Fields(u"Thing To Do Deadline"_s));
    return cells;
}

void sortToDo(std::vector<ToDoRow> &rows, std::size_t column, bool descending)
{
    std::ranges::stable_sort(rows, [&](const ToDoRow &a, const ToDoRow &b) {
        return descending ? listLess(b[column], a[column]) : listLess(a[column], b[column]);
    });
}

void exchangeToDo(ToDoRow &one, ToDoRow &other)
{
    std::swap_ranges(one.begin() + 1, one.end(), other.begin() + 1);
}

QString pickedActivities(const QStringList &selected, bool onlyFirst)
{
    QString text;
    for (const QString &entry : selected) {
        text += u' ' + entry;
        if (onlyFirst)
            break;
    }
    return text;
}

} // namespace vardelin
