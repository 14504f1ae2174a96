#pragma once
// What is timed beside other programs: each operation opens the file, works, and closes it again.

#include <QString>
#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace vardelin::bench {

// What an operation found or left, by name; the same for every program that does it on the same rows.
using Check = std::vector<std::pair<std::string_view, std::int64_t>>;

struct Operation
{
    std::string_view name;
    enum class Kind { Reads, Writes, MakesFile } kind;
    // out: the new file, which mustn't be there yet; only for MakesFile.
    Check (*run)(const QString &file, const QString &out);
};

std::span<const Operation> operations();
const Operation *findOperation(std::string_view name);

// The text columns of a log, whose characters are counted.
inline constexpr std::array<std::u16string_view, 7> kTextColumns{
    u"Client", u"Project", u"Employee", u"Rate", u"Vardelin", u"VardeGraphic", u"Log Summary"};

// The log that is added, and the notes that update_memo writes into the log with the middle auto-number.
struct AddedLog
{
    QString client, project, employee, rate, notes, richNotes, summary;
    double begin = 46'000.5, end = 46'000.6, duration = 2.4; // days, days, hours
    std::int64_t fee = 4'800'000;                            // ten-thousandths
};
const AddedLog &addedLog();
QString changedNotes(int turn); // another each time, so that there is something to write

} // namespace vardelin::bench
