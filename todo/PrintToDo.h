#pragma once
// The To Do list on paper: five columns at fixed places, a row for each item, long texts in a smaller font.

#include "todo/ToDoRows.h"

namespace vardelin {

struct Global;

// Prints on the program's printer; an empty list prints nothing. A margin that is 0 becomes an inch. Only a
// page that an item runs beyond the bottom margin of is closed with its number. Errors of the printer go to
// the caller.
void printToDo(Global &global, const std::vector<ToDoRow> &rows);

} // namespace vardelin
