#pragma once
// The measurements that need a process of their own: a program or a bare window that starts, and a program
// that works on a large file. Each prints "name number" lines.

namespace vardelin::bench {

// The program as its user has set it up. "painted": when the Display window and the Data entry window stood
// on the screen, in nanoseconds of the clock that all processes share; "records": how many it shows.
int startProgram(int argc, char **argv);

// A main window with an empty MDI area, of the size that the program's has, and a menu bar of one word on
// request: the first text that is painted makes Qt look for all fonts. "painted" as above.
int startBareWindow(int argc, char **argv, bool withMenu);

// "open_display", "search_rare_word", "search_common_word", "first_record", "next_record", "previous_record":
// seconds, the middle one of many.
int useDisplay(int argc, char **argv);

} // namespace vardelin::bench
