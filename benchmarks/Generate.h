#pragma once
// Files shaped like an office's, of any size, for measuring. The same number of logs gives the same rows on
// every machine.

#include <QString>

namespace vardelin::bench {

// What to search for in a generated file.
inline constexpr char16_t kClient[] = u"Hollister, Margaret"; // one log in forty
inline constexpr char16_t kRareWord[] = u"ESTOPPEL";          // in the notes of one log in 1,000
inline constexpr char16_t kCommonWord[] = u"SUBPOENA";        // in those of one in five

// Makes a new file: the program's tables with their first rows, forty clients, three employees, and the logs.
// Notes have 200 to 1,500 characters, most of them few; one log in fifty has longer ones, up to 20,000. The
// rich notes say the same as RTF. Logs were written in the order of their time but for one in twenty, which
// was entered late. RunTimeError or jet::Error where the file can't be made.
void generate(const QString &path, int logs);

// The same without logs, and with so many clients: `active` ones with address, case and a To Do of some
// lines, and `inactive` ones whose cases are closed. Neither stand in the order of their names.
void generateClients(const QString &path, int active, int inactive);

} // namespace vardelin::bench
