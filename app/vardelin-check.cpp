// vardelin-check: says in plain words what is wrong with a database, and brings what can be read of it to a
// new one.
#include "platform/jet/Check.h"
#include "platform/jet/Error.h"
#include "platform/jet/Salvage.h"

#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace vardelin::jet;

enum Exit { Sound = 0, Damaged = 1, NotChecked = 2 };

constexpr const char *kUsage =
    "Usage: vardelin-check [--verbose] FILE\n"
    "       vardelin-check --salvage NEWFILE FILE\n"
    "\n"
    "Reads a whole database and says what is wrong with it. FILE is never changed, but for a\n"
    "transaction that a crash left unfinished: it is undone first, as at any opening.\n"
    "\n"
    "  --salvage NEWFILE  write every row that can still be read to a new database\n"
    "  --verbose          also tell what is harmless\n"
    "\n"
    "Exit status: 0 sound, 1 damaged, 2 the file can't be checked.\n";

struct Request
{
    std::string file;
    std::string salvageTo;
    bool verbose = false;
};

std::optional<Request> parse(const std::vector<std::string> &arguments)
{
    Request request;
    bool options = true;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string &word = arguments[i];
        if (options && word == "--") {
            options = false;
        } else if (options && (word == "--verbose" || word == "-v")) {
            request.verbose = true;
        } else if (options && word == "--salvage" && i + 1 < arguments.size()) {
            request.salvageTo = arguments[++i];
        } else if ((options && word.starts_with("-")) || word.empty() || !request.file.empty()) {
            return {};
        } else {
            request.file = word;
        }
    }
    return request.file.empty() ? std::nullopt : std::optional(request);
}

std::string counted(std::size_t count, const std::string &one, const std::string &many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

const char *meaningOf(Invariant invariant)
{
    switch (invariant) {
    case Invariant::Header:
        return "The head of the file is wrong";
    case Invariant::Ownership:
        return "Pages belong to two owners, or to none";
    case Invariant::Maps:
        return "Lists of pages are wrong";
    case Invariant::Catalog:
        return "The list of tables is wrong";
    case Invariant::Definitions:
        return "The description of a table is wrong";
    case Invariant::DataPages:
        return "Pages with rows are damaged";
    case Invariant::Rows:
        return "Rows are damaged or missing";
    case Invariant::Values:
        return "Values don't fit their columns";
    case Invariant::LongValues:
        return "Long texts or pictures are damaged or missing";
    case Invariant::Counts:
        return "Numbers of rows or auto-numbers are wrong";
    case Invariant::Trees:
        return "Indexes are damaged";
    case Invariant::Entries:
        return "Indexes are out of order";
    case Invariant::Keys:
        return "Indexes don't agree with their tables";
    case Invariant::Properties:
        return "Properties or rights are damaged";
    }
    return "";
}

void printFindings(const CheckReport &report, Severity severity)
{
    for (std::size_t i = 1; i <= kInvariants; ++i) {
        const auto invariant = static_cast<Invariant>(i);
        bool titled = false;
        for (const Finding &finding : report.findings) {
            if (finding.invariant != invariant || finding.severity != severity)
                continue;
            if (!std::exchange(titled, true))
                std::cout << "  " << meaningOf(invariant) << ":\n";
            std::cout << "    " << textOf(finding) << "\n";
        }
    }
}

void printRest(const CheckReport &report, bool verbose)
{
    if (report.has(Severity::Waste)) {
        std::cout << "Some of its pages hold nothing that is in use. That does no harm; compacting gives the "
                     "room back.\n";
        if (verbose)
            printFindings(report, Severity::Waste);
    }
    if (verbose && report.has(Severity::Oddity)) {
        std::cout << "Other programs left this behind; it does no harm:\n";
        printFindings(report, Severity::Oddity);
    }
    if (report.leftOut != 0 && (verbose || !report.sound()))
        std::cout << "And " << counted(report.leftOut, "thing", "things") << " more of these kinds.\n";
}

int check(const Request &request)
{
    const CheckReport report = checkFile(request.file);
    std::cout << request.file << (report.sound() ? " is sound: " : " is damaged: ")
              << counted(report.pages, "page", "pages") << ", " << counted(report.tables, "table", "tables")
              << ", " << counted(report.rows, "row", "rows") << ", "
              << counted(report.indexes, "index", "indexes") << " read.\n";
    printFindings(report, Severity::Fault);
    printRest(report, request.verbose);
    if (report.sound())
        return Sound;
    std::cout << "Keep a copy of the file as it is. What can still be read of it goes to a new one by\n"
                 "  vardelin-check --salvage NEWFILE FILE\n";
    return Damaged;
}

void print(const SalvagedTable &table)
{
    std::cout << "  " << toUtf8(table.name) << ": " << counted(table.rows, "row", "rows");
    if (table.setAside != 0)
        std::cout << ", " << table.setAside << " of them set aside, for the table's own rules refuse them";
    if (table.lostRows != 0)
        std::cout << "; " << counted(table.lostRows, "row", "rows") << " lost";
    if (table.lostValues != 0)
        std::cout << "; " << counted(table.lostValues, "value", "values") << " lost";
    if (table.cutValues != 0)
        std::cout << "; " << counted(table.cutValues, "long value", "long values") << " cut short";
    if (!table.trouble.empty())
        std::cout << "; stopped: " << table.trouble;
    std::cout << "\n";
}

int salvage(const Request &request)
{
    const std::vector<SalvagedTable> tables = salvageFile(request.file, request.salvageTo);
    bool whole = true;
    std::cout << "Written to " << request.salvageTo << ":\n";
    for (const SalvagedTable &table : tables) {
        print(table);
        whole &= table.setAside == 0 && table.lostRows == 0 && table.lostValues == 0 &&
                 table.cutValues == 0 && table.trouble.empty();
    }
    return whole ? Sound : Damaged;
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        std::cout << kUsage;
        return Sound;
    }
    const std::optional<Request> request = parse(arguments);
    if (!request) {
        std::cerr << kUsage;
        return NotChecked;
    }
    try {
        return request->salvageTo.empty() ? check(*request) : salvage(*request);
    } catch (const Error &error) {
        std::cerr << "vardelin-check: " << error.what() << "\n";
    } catch (const std::exception &error) {
        std::cerr << "vardelin-check: " << error.what() << "\n";
    }
    return NotChecked;
}
