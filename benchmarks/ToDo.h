#pragma once
// The To Do list's window on a long list.

namespace vardelin::bench {

// Makes the file argv[2] with 5,000 items and 500 clients and prints "name seconds" lines, the middle one of
// some: "load", from the window's making until its list is painted; "sort", a click on a heading until the
// list is painted; "write_back", Done, which is said twice: the first one empties the table.
int useToDo(int argc, char **argv);

} // namespace vardelin::bench
