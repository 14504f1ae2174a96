#pragma once
// Our own judge of whole files: reads every page and holds the file to the invariants below. It never writes,
// bounds every walk, and goes on behind what it finds.
//
//    1  Header      page 0 is that of a Jet 4 file and names the page maps and the four base tables
//    2  Ownership   every page belongs to exactly one owner, or to none and is free
//    3  Maps        a usage map is a live row on a page of maps, serves one purpose and names pages of the
//                   file; pages said to have room are owned by the same table or column
//    4  Catalog     ids and names are unique, parents exist, each table has its definition
//    5  Definitions lengths, columns, places in a row and indexes fit one another
//    6  Data pages  type and owner are right, slots fall, free space is exact to the byte
//    7  Rows        offsets rise within the row; a forward leads to one moved row and a moved row has one forward
//    8  Values      each value fits its column: type, length, Required, AllowZeroLength
//    9  Long values each piece is used by one value, lies on a page of its column, and pieces add up
//   10  Counts      the row count is exact, no auto-number is above the last one given out
//   11  Trees       the pages of an index's tree are those of its map; levels, links and free space are right
//   12  Entries     entries rise through the leaves; a node's entry is the greatest below its child
//   13  Keys        each row has one entry in each index, with the key of its values; no entry is without a row;
//                   unique is unique
//   14  Properties  property blobs can be read and name columns of the table; rights name objects

#include "platform/jet/Disk.h"
#include "platform/jet/Types.h"

#include <filesystem>
#include <string>
#include <vector>

namespace vardelin::jet {

enum class Invariant {
    Header = 1,
    Ownership,
    Maps,
    Catalog,
    Definitions,
    DataPages,
    Rows,
    Values,
    LongValues,
    Counts,
    Trees,
    Entries,
    Keys,
    Properties
};
inline constexpr std::size_t kInvariants = 14;
const char *nameOf(Invariant invariant);

enum class Severity {
    Fault, // data is lost or wrong, or would be by the next change
    // Space that nothing uses: pages, moved rows and pieces that nothing leads to. Compacting gives it back.
    Waste,
    Oddity // what other programs leave behind, without harm
};

struct Finding
{
    Invariant invariant = Invariant::Header;
    Severity severity = Severity::Fault;
    PageNo page = 0;   // the first that breaks it
    std::string owner; // table, index or map, for people; may be empty
    std::string what;
};

// "page 31, Vardelins: row 4 ...".
std::string textOf(const Finding &finding);

struct CheckReport
{
    std::vector<Finding> findings; // at most a score for each invariant and severity
    std::size_t leftOut = 0;       // how many more there are
    std::size_t pages = 0, tables = 0, rows = 0, indexes = 0;

    bool has(Severity severity) const;
    bool sound() const { return !has(Severity::Fault); }
    bool clean() const { return sound() && !has(Severity::Waste); } // as this engine leaves files
};

// Throws what File::open throws for a file that isn't such a database, has a password or can't be read at
// all; a damaged one gives findings. The file stays locked for reading meanwhile.
CheckReport checkFile(const std::filesystem::path &path, Disk &disk = systemDisk());

} // namespace vardelin::jet
