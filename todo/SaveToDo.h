#pragma once
// Done: the list takes the table's place.

#include "todo/ToDoRows.h"

namespace vardelin {

namespace dao {
class Recordset;
}

// What one run keeps of each row, at the list's indexes; empty at all other times. A project's names are a
// blank each.
struct ToDoScratch
{
    QStringList List1; // first names
    QStringList List2; // last names
    QStringList List3; // what is to be done
    void clear() { *this = {}; }
};

// Empties the table of items, empties the clients' texts, writes the rows in their order, and fills the texts
// of those clients whose names match. Throws what the engine says; what was done until then stays done. An
// old table that had rows always ends in 3021 once it is empty; the run after that one goes through.
void replaceToDo(dao::Recordset &things, dao::Recordset &clients, const std::vector<ToDoRow> &rows,
                 ToDoScratch &scratch);

// The text of a client, a line for each item whose names match; empty where none does.
QString clientToDo(const ToDoScratch &scratch, const QString &lastName, const QString &firstName);

} // namespace vardelin
