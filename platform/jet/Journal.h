#pragma once
// The rollback journal: what a commit is about to overwrite, in a file of its own beside the database.
//
// Layout of "<file>-journal". Numbers little-endian; a checksum is the 64-bit one of Journal.cpp, seeded with
// the salt.
//
//   Header, 512 bytes
//     0  16  "Vardelin journal"
//    16   4  version of this layout: 1
//    20   4  page size: 4096
//    24   8  salt, random
//    32   4  pages of the file before
//    36   4  pages of the file after, never fewer
//    40   4  number of records
//    44   4  0
//    48   8  checksum of page 0 before
//    56   8  checksum of the 56 bytes before this
//    64      zeros
//   Record, one for each page that the commit writes, pages rising
//     0   4  page
//     4   4  1: the image follows; 0: the page is new, there is none
//     8  64  checksums of the eight 512-byte sectors of the page to be written
//    72 4096 the page as it was (only with 1)
//     …   8  checksum of the record up to here
//
// Order of a commit, and why a crash at any moment leaves the old state or the new one:
//  1. The journal is written and synced, then the folder. Until then the database is untouched. A journal that is torn has a record
//     or a header whose checksum is wrong; the salt keeps records of an earlier journal, found on reused disk blocks, from passing.
//  2. The pages are written, the new ones first (so that a full disk is found before an old page is touched), then synced. This is
//     the point of commit: before it, the journal leads back; after it, every sector is the one that the journal foretells.
//  3. The journal is removed. Nothing waits for the folder: should the name come back after a power loss, the file agrees with the
//     journal's new checksums in full and is left alone, or the journal has been replaced by the next one, whose own step 1 synced
//     the folder.
//
// A journal without a living owner (nobody holds LockByte::Writing) is judged against the file, sector by
// sector:
//   every sector new, length new; or every      the commit was complete, or -> sync the file, remove the journal
//     sector old, length old                    hadn't begun to write
//   each sector old or new otherwise, length    it was interrupted          -> write the old pages, cut, sync, remove
//     in between
//   a sector of neither kind, page 0 or length  of another file, or older   -> never played; set aside as
//     that doesn't fit                          than the file's state          "<file>-journal-unused"
//   torn, and no page of it written yet         crash in step 1             -> remove
//   anything else (not ours, a link, a folder)  not ours to judge           -> set aside
//
// One thing stays open: if the last sync of step 2 fails and the disk refuses the undoing as well, the commit
// is reported as failed and yet stands if every page has reached the disk. So "belongs to this file" is
// decided by content: it holds when disks are renumbered and when file and journal are copied together, and
// no chance name or inode can make a foreign journal pass. Playing twice does what playing once does, so a
// crash on the way does no harm. Sectors of 512 bytes are taken to be written whole or not at all.

#include "platform/jet/Disk.h"

#include <cstdint>
#include <span>

namespace vardelin::jet {

struct PageChange
{
    PageNo page = 0;
    const std::byte *before = nullptr; // null: the page is behind the old end
    const std::byte *after = nullptr;
};

struct JournalHeader
{
    std::uint64_t salt = 0;
    PageNo pagesBefore = 0;
    PageNo pagesAfter = 0;
    std::uint32_t records = 0;
    std::uint64_t firstPage = 0; // checksum of page 0 before
};

// The cases of the table; Unusable: the third and the last.
enum class JournalState { Settled, Interrupted, Unusable, Torn };

std::filesystem::path journalPath(const std::filesystem::path &file);

// Step 1. page0: as it was. changes: pages rising. Leaves nothing behind if it throws, as far as the disk
// allows.
void writeJournal(Disk &disk, const std::filesystem::path &path, DiskFile &file, PageNo pagesBefore,
                  PageNo pagesAfter, const std::byte *page0, std::span<const PageChange> changes);

JournalState judgeJournal(DiskFile &journal, DiskFile &file);

// Writes the old pages of a journal judged Interrupted, cuts the file to its old length and syncs it.
void playBack(DiskFile &journal, DiskFile &file);

// Puts right what a dead owner left behind. The caller holds Reading and Writing, both exclusive. A journal
// that can't be removed or set aside stays; the file is in order all the same.
void recover(Disk &disk, const std::filesystem::path &path, DiskFile &file);

} // namespace vardelin::jet
