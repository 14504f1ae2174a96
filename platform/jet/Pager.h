#pragma once
// The pages of one opened file, and the changes of a command until they are committed.
//
// Reading passes straight to the mapped file, or to the changed copy of a page inside a write section. A
// commit is atomic and durable through a rollback journal beside the file: the old pages go to
// "<file>-journal" and are synced, then the new pages are written and synced, then the journal goes (order
// and reasons: Journal.h). At rest there is nothing but the file itself. One thread; any number of Pagers, in
// this process or in others, may have the same file open.
//
// Locks (bytes of Disk.h), and what they promise:
//  1. A section holds Reading shared from its begin to its end, so no commit comes between two reads of it.
//  2. A write section holds Writing exclusive from its begin, so there is one writer; others read meanwhile.
//  3. The outermost commit holds Reading exclusive while it writes pages, and no longer, so nobody sees half a commit.
//  4. Who finds a journal while nobody holds Writing has found what a dead writer left; he takes Reading and Writing, both
//     exclusive, before he touches either file. A journal whose owner lives is left alone.
//  5. A lock that isn't free is asked for again for about two seconds, then Locked is thrown. If a Pager of this very thread stands
//     in the way, waiting is in vain, and Locked comes at once.
// One commit costs three syncs: the journal, its folder, the file.
//
// A file with two names (hard links) has two places for its journal; open it by one of them only. Symbolic
// links are followed first.

#include "platform/jet/Disk.h"
#include "platform/jet/Types.h"

#include <memory>
#include <span>

namespace vardelin::jet {

class Pager
{
public:
    enum class Access { Read, ReadWrite, Create };
    // Exclusive: nobody else has it open, nor can open it; FileInUse otherwise.
    enum class Sharing { Shared, Exclusive };

    // Read, ReadWrite: a journal left by a crash is played back first, if it is whole and belongs to this
    // file. A file that can't be written opens for reading all the same with ReadWrite; the first write
    // section then throws ReadOnlyDatabase. NewerFormat: empty, or no database by its first bytes and its
    // length. Damaged: a database with a part of a page at its end. FileTooLarge: above 2 GiB. The content of
    // page 0 is judged by the caller. Create: DatabaseExists if there is a file of that name. The file is
    // built beside its place, as "<file>-new", and takes its name when the first write section is committed;
    // without that nothing is left.
    static std::unique_ptr<Pager> open(Disk &disk, const std::filesystem::path &path, Access access,
                                       Sharing sharing = Sharing::Shared);
    virtual ~Pager();

    virtual const std::filesystem::path &path() const = 0;
    virtual bool canWrite() const = 0;

    // Sections. Pages may be read and changed inside them only. They nest; a read section inside a write
    // section is free.

    // Takes the reading lock; waits a moment for a commit of another, then throws Locked.
    virtual void beginRead() = 0;
    virtual void endRead() = 0;
    // Outermost: takes the writing lock (Locked after a moment); inner: a savepoint.
    virtual void beginWrite() = 0;
    // Inner: keeps the changes for the outer section; outermost: makes them durable, or throws with the file
    // as it was.
    virtual void commit() = 0;
    virtual void rollback() = 0; // undoes the section's changes

    // Tells cached knowledge apart: differs from the value of an earlier moment if anybody's commit came
    // between, ours included, or if changes of ours were undone.
    virtual std::uint64_t version() const = 0;

    virtual PageNo pageCount() const = 0; // with the pages appended in this section
    // 4096 bytes. Valid until the page is changed or the section ends. A number beyond the end throws
    // Damaged; IoError if the medium fails.
    virtual const std::byte *page(PageNo number) = 0;
    // For one who passes over many pages once: the pages from `first` on as page() gives them now, copied to
    // `room`; how many they are. None: there is no such page in the file yet.
    virtual std::size_t passing(PageNo first, std::span<std::byte> room)
    {
        static_cast<void>(first);
        static_cast<void>(room);
        return 0;
    }
    // The same page to write to, valid until the section ends or an inner one is rolled back.
    virtual std::byte *change(PageNo number) = 0;
    virtual PageNo append() = 0; // a page of zeros at the end; FileTooLarge at 2 GiB
    // Of a file that is being created: once many pages were changed they are written beside the file's place
    // and leave the memory; nobody sees them before the commit. Everything that page() and change() gave is
    // no longer valid. In an outermost write section; nothing to do for other files.
    virtual void writeEarly() {}

    // Damaged, with the file's path and what was found where.
    [[noreturn]] void damaged(std::string_view reason) const;
};

// Sections by scope. A WriteSection that isn't committed is rolled back.
class ReadSection
{
public:
    explicit ReadSection(Pager &pager) : m_pager(pager) { m_pager.beginRead(); }
    ~ReadSection() { m_pager.endRead(); }
    ReadSection(const ReadSection &) = delete;
    ReadSection &operator=(const ReadSection &) = delete;

private:
    Pager &m_pager;
};

class WriteSection
{
public:
    explicit WriteSection(Pager &pager) : m_pager(pager) { m_pager.beginWrite(); }
    ~WriteSection()
    {
        if (m_open)
            m_pager.rollback();
    }
    void commit()
    {
        m_open = false; // a commit that throws has rolled back by itself
        m_pager.commit();
    }
    WriteSection(const WriteSection &) = delete;
    WriteSection &operator=(const WriteSection &) = delete;

private:
    Pager &m_pager;
    bool m_open = true;
};

} // namespace vardelin::jet
