#pragma once
// Brings what can still be read of a damaged file to a fresh one.
//
// Rows are taken from the pages that say they belong to a table, whether its usage map knows them or not;
// tables from the catalog and from definitions that it has lost. A value that can't be read becomes Null, but
// of a long one as much is kept as can be read from its start. A
// row that its own table won't take (a key that is there twice, a Null that must not be) goes to a table of
// its name with " (set aside)" behind it, which has no indexes and no rules. Queries, relationships and the
// objects of other programs don't come along.

#include "platform/jet/Disk.h"

#include <filesystem>
#include <string>
#include <vector>

namespace vardelin::jet {

struct SalvagedTable
{
    std::u16string name; // in the new file
    std::size_t rows = 0;
    std::size_t setAside = 0;   // of these rows
    std::size_t lostRows = 0;   // not a value of theirs can be read, or no table takes them
    std::size_t lostValues = 0; // Null in the new file
    std::size_t cutValues = 0;  // long ones of which only the start can be read
    std::string trouble;        // why the table couldn't be made; empty: it was
};

// Throws as File::open does for `path`, as File::create does for `to`, and for a disk that fails.
std::vector<SalvagedTable> salvageFile(const std::filesystem::path &path, const std::filesystem::path &to,
                                       Disk &disk = systemDisk());

} // namespace vardelin::jet
