#pragma once
// Compacting: a new file with the same content, without gaps, forwards, deleted rows and pages that nothing
// uses.
//
// Invariants:
//   1. Page 0, queries, relationships, rights and other objects come along; where they name a table by its
//      definition page, they name the new one. Tables keep the order of the catalog and their properties byte
//      for byte.
//   2. Rows lie in the order of the primary key, or as they were if there is none (or its index isn't whole).
//      Those of the four base tables stay as they were. Every value keeps its bytes.
//   3. Index entries are made from the rows. Only in a text order that we don't know are they taken from the
//      old index.
//   4. The last auto-number is the highest in the column; an empty table starts anew.
//   5. The new file takes its name when it is whole, verified (row counts, a checksum of each column, entries
//      of each index) and on the disk, from which it was read back. A failure leaves nothing of it, and `from`
//      is never written to.

#include "platform/jet/Disk.h"

#include <filesystem>

namespace vardelin::jet {

// Memory goes with the keys of the indexes, not with the pages. FileInUse: `from` is open, here or
// elsewhere. DatabaseExists: there is something of the name `to`. Else what opening, reading and writing
// throw.
void compactFile(const std::filesystem::path &from, const std::filesystem::path &to,
                 Disk &disk = systemDisk());

} // namespace vardelin::jet
