#pragma once
// The commands on a database file as a whole. The caller has made its Display window the current one and its
// file DatabaseFileName.
//
// Each shows its own messages; nothing but a failure outside the run time's errors leaves it. What
// DatabaseFileName and the pointer are afterwards differs from command to command, and from end to end:
// settled, see each.

#include <QString>

namespace vardelin {

struct Global;

// A new file under a new name, and a window on it. Any failure, Cancel too, puts the old name back and the
// pointer to its default.
void NewFile(Global &global);

// Another file: lists and recent files follow it, and a window opens. DatabaseFileName is empty after
// success, and the old one after a failure, which leaves the busy pointer on.
void OpenFile(Global &global);

// A copy under a new name, and a window on it that stands on the same record. DatabaseFileName stays the new
// one, whatever happens.
void SaveFileAs(Global &global);

// Puts a compacted file in place of the one picked, by way of JUNK.MDB in the current folder.
void CompactDatabase(Global &global);

// Copies source to target, over it if it is there. A copy that fails isn't told; a source that isn't there
// is.
void CopyDatabaseFile(Global &global, const QString &source, const QString &target);

} // namespace vardelin
