#pragma once
// The windows on clients and the report on them, in a process of its own. Prints "name seconds" lines.

namespace vardelin::bench {

// argv[2]: a file of generateClients(). "open_contacts", "open_inactive": until the window is painted, from
// the command on, the middle one of many; "display_inactive": from there until the closed cases are;
// "contacts_report_first_page": until the report's window shows its first page, from the opening of the
// record set on.
int useContacts(int argc, char **argv);

} // namespace vardelin::bench
