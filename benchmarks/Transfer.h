#pragma once
// Logs from one file to another, as the Display window's commands carry them.

namespace vardelin::bench {

// Prints "name seconds" lines: "export", all logs of the file argv[2] to the new file argv[3]; "import", all
// of them back into a new file beside it. From the choice in the menu to the message that says it is done.
// Then "sqlite_copy", where SQLite is there: the same rows from one of its files to another, in one
// statement.
int transferLogs(int argc, char **argv);

} // namespace vardelin::bench
