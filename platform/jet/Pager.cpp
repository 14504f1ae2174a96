#include "platform/jet/Pager.h"

#include "platform/jet/BasePages.h"
#include "platform/jet/ChangeSet.h"
#include "platform/jet/Error.h"
#include "platform/jet/FileLocks.h"
#include "platform/jet/Journal.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <utility>

namespace vardelin::jet {

namespace {

namespace fs = std::filesystem;

// Does what must not throw any more; the error that brought us here is the one to be told.
template <class Action>
bool quietly(Action action)
{
    try {
        action();
        return true;
    } catch (const std::exception &) {
        return false;
    }
}

fs::path withSuffix(fs::path path, const char *suffix)
{
    path += suffix;
    return path;
}

class FilePager final : public Pager
{
public:
    struct Opening
    {
        fs::path path;  // as the caller named it
        fs::path place; // without symbolic links
        fs::path fresh; // where a new file is built; empty when there is one already
        // The disk lets us; also for those who only read, since a crash may have left something to undo.
        bool writable = false;
        bool mayWrite = false; // and the caller wants to
    };

    FilePager(Disk &disk, Opening opening, std::unique_ptr<DiskFile> file);
    ~FilePager() override;

    const fs::path &path() const override { return m_opening.path; }
    bool canWrite() const override { return m_opening.mayWrite; }
    void beginRead() override;
    void endRead() override;
    void beginWrite() override;
    void commit() override;
    void rollback() override;
    std::uint64_t version() const override { return m_version; }
    PageNo pageCount() const override { return m_pageCount; }
    const std::byte *page(PageNo number) override;
    std::size_t passing(PageNo first, std::span<std::byte> room) override;
    std::byte *change(PageNo number) override;
    PageNo append() override;
    void writeEarly() override;

private:
    void checkNumber(PageNo number) const;
    bool inSection() const { return m_reads > 0 || m_changes.level() > 0; }
    bool isNew() const { return !m_opening.fresh.empty(); }

    void enter(bool toWrite);
    void takeLocks(bool toWrite);
    bool clearAway(bool toWrite, FileLocks::Deadline deadline);
    void checkJournalUnwritable();
    void checkPlace();
    void refresh();
    void checkLength(std::uint64_t size);
    void leave();

    void commitOutermost();
    std::vector<PageChange> collectChanges();
    void commitThroughJournal(const std::vector<PageChange> &changes);
    void publishNew(const std::vector<PageChange> &changes);
    void writeNew(const std::vector<PageChange> &changes);
    void writeTogether(std::span<const PageChange> changes);
    void writePages(const std::vector<PageChange> &changes);
    void verifyWritten(const std::vector<PageChange> &changes);
    void restore();
    void adopt(const std::vector<PageChange> &changes);

    Disk &m_disk;
    Opening m_opening;
    fs::path m_journal;
    std::unique_ptr<DiskFile> m_file;
    FileLocks m_locks;
    BasePages m_base;
    ChangeSet m_changes;
    std::size_t m_reads = 0;   // read sections that are open
    bool m_wroteEarly = false; // the new file holds pages of the section that is open
    PageNo m_basePages = 0;    // of the file on the disk
    PageNo m_pageCount = 0;
    std::uint64_t m_stamp = 0;
    std::uint64_t m_version = 0;
};

FilePager::FilePager(Disk &disk, Opening opening, std::unique_ptr<DiskFile> file)
    : m_disk(disk), m_opening(std::move(opening)), m_journal(journalPath(m_opening.place)),
      m_file(std::move(file)), m_locks(*m_file), m_base(*m_file)
{}

FilePager::~FilePager()
{
    if (isNew())
        quietly([this] { m_disk.remove(m_opening.fresh); });
}

// ---- Sections

void FilePager::beginRead()
{
    if (!inSection())
        enter(false);
    ++m_reads;
}

void FilePager::endRead()
{
    --m_reads;
    if (!inSection())
        leave();
}

void FilePager::beginWrite()
{
    if (m_changes.level() == 0) {
        if (!canWrite())
            throw Error(Code::ReadOnlyDatabase);
        enter(true);
    }
    m_changes.begin(m_pageCount);
}

void FilePager::rollback()
{
    if (!m_changes.empty())
        ++m_version;
    if (m_changes.level() > 1) {
        m_pageCount = m_changes.undoInner();
        return;
    }
    m_changes.dropAll();
    if (std::exchange(m_wroteEarly, false))
        m_basePages = 0;
    m_pageCount = m_basePages;
    leave();
}

void FilePager::commit()
{
    if (m_changes.level() > 1)
        m_changes.keepInner();
    else
        commitOutermost();
}

// Locks and looks: what is read from now on is of one moment.
void FilePager::enter(bool toWrite)
{
    const bool first = !inSection();
    try {
        takeLocks(toWrite);
        if (toWrite)
            checkPlace();
        if (first)
            refresh();
    } catch (...) {
        leave();
        throw;
    }
}

void FilePager::takeLocks(bool toWrite)
{
    const FileLocks::Deadline deadline = FileLocks::deadline();
    for (int attempt = 0;; ++attempt) {
        if (toWrite)
            m_locks.take(LockByte::Writing, LockKind::Exclusive, deadline);
        m_locks.take(LockByte::Reading, LockKind::Shared, deadline);
        if (isNew() || !m_disk.exists(m_journal) || clearAway(toWrite, deadline))
            return;
        if (std::chrono::steady_clock::now() >= deadline)
            throw Error(Code::Locked);
        FileLocks::pause(attempt);
    }
}

// There is a journal. Leaves it alone if its owner lives; otherwise puts the file in order. False: somebody
// else is about to do so, begin again. Reading is held shared before and after, except with false.
bool FilePager::clearAway(bool toWrite, FileLocks::Deadline deadline)
{
    if (!toWrite) {
        // Shared, so that two who look at the same time don't take each other for the owner.
        if (!m_locks.tryTake(LockByte::Writing, LockKind::Shared))
            return true;
        m_locks.tryTake(LockByte::Writing, LockKind::None);
    }
    if (!m_opening.writable) {
        checkJournalUnwritable();
        return true;
    }
    if (!inSection()) // two who both kept it shared would wait for each other
        m_locks.tryTake(LockByte::Reading, LockKind::None);
    m_locks.take(LockByte::Reading, LockKind::Exclusive, deadline);
    if (!m_locks.tryTake(LockByte::Writing, LockKind::Exclusive)) {
        m_locks.tryTake(LockByte::Reading, LockKind::None);
        return false;
    }
    if (m_disk.exists(m_journal))
        recover(m_disk, m_journal, *m_file);
    if (toWrite && m_disk.exists(m_journal))
        throw Error(Code::ReadOnlyDatabase, {}, "a journal that can't be removed");
    m_locks.take(LockByte::Reading, LockKind::Shared, deadline);
    if (!toWrite)
        m_locks.tryTake(LockByte::Writing, LockKind::None);
    return true;
}

// We can't write: then the file must be in order as it is.
void FilePager::checkJournalUnwritable()
{
    if (!m_disk.isFile(m_journal))
        return; // nothing of ours
    const auto journal = m_disk.open(m_journal, Disk::Mode::Read);
    if (judgeJournal(*journal, *m_file) == JournalState::Interrupted)
        throw Error(Code::ReadOnlyDatabase, {}, "an interrupted commit waits to be undone");
}

// What is written to a file that was deleted or moved away meanwhile would be lost, or without its journal.
void FilePager::checkPlace()
{
    if (!isNew() && m_disk.identityOf(m_opening.place) != m_file->identity())
        throw Error(Code::FileNotFound, m_opening.path.string());
}

void FilePager::refresh()
{
    if (isNew()) // what a failed attempt may have left there doesn't count
        return;
    const std::uint64_t size = m_file->size();
    checkLength(size);
    const std::uint64_t stamp = m_file->changeStamp();
    const bool changed = stamp != m_stamp;
    if (changed)
        ++m_version;
    m_stamp = stamp;
    m_basePages = m_pageCount = static_cast<PageNo>(size / kPageSize);
    m_base.refresh(m_pageCount, changed);
}

void FilePager::checkLength(std::uint64_t size)
{
    constexpr std::string_view kSignature("\0\1\0\0Standard Jet DB", 19);
    if (size > std::uint64_t{kMaxPages} * kPageSize)
        throw Error(Code::FileTooLarge);
    if (size != 0 && size % kPageSize == 0)
        return;
    std::array<char, kSignature.size()> start{};
    if (size >= start.size())
        m_file->read(0, std::as_writable_bytes(std::span(start)));
    // A part of a page at the end tells a damaged database only if it is one at all.
    if (std::string_view(start.data(), start.size()) == kSignature)
        damaged("length " + std::to_string(size));
    throw Error(Code::NewerFormat, m_opening.path.string());
}

// Gives back what the open sections don't need.
void FilePager::leave()
{
    if (m_reads == 0 && m_changes.level() == 0)
        m_locks.tryTake(LockByte::Reading, LockKind::None);
    else
        m_locks.tryTake(LockByte::Reading, LockKind::Shared);
    if (m_changes.level() == 0)
        m_locks.tryTake(LockByte::Writing, LockKind::None);
}

// ---- Pages

const std::byte *FilePager::page(PageNo number)
{
    assert(inSection());
    if (const std::byte *changed = m_changes.find(number))
        return changed;
    checkNumber(number);
    return m_base.page(number);
}

std::size_t FilePager::passing(PageNo first, std::span<std::byte> room)
{
    assert(inSection());
    if (first >= m_basePages)
        return 0;
    const std::size_t count = std::min<std::size_t>(room.size() / kPageSize, m_basePages - first);
    m_base.passing(first, room.first(count * kPageSize));
    for (std::size_t i = 0; i < count && !m_changes.empty(); ++i) {
        if (const std::byte *changed = m_changes.find(first + static_cast<PageNo>(i)))
            std::memcpy(room.data() + i * kPageSize, changed, kPageSize);
    }
    return count;
}

void FilePager::checkNumber(PageNo number) const
{
    if (number >= m_basePages)
        damaged("page " + std::to_string(number) + " is behind the end");
}

std::byte *FilePager::change(PageNo number)
{
    assert(m_changes.level() > 0);
    return m_changes.change(number, page(number));
}

PageNo FilePager::append()
{
    assert(m_changes.level() > 0);
    if (m_pageCount >= kMaxPages)
        throw Error(Code::FileTooLarge);
    m_changes.change(m_pageCount, nullptr);
    return m_pageCount++;
}

// ---- Commit

void FilePager::commitOutermost()
{
    try {
        const std::vector<PageChange> changes = collectChanges();
        if (!changes.empty() || m_wroteEarly) {
            if (isNew())
                publishNew(changes);
            else
                commitThroughJournal(changes);
            adopt(changes);
        }
    } catch (...) {
        rollback();
        throw;
    }
    m_changes.dropAll();
    m_pageCount = m_basePages;
    leave();
}

// What came out as it was isn't written.
std::vector<PageChange> FilePager::collectChanges()
{
    std::vector<PageChange> changes;
    for (const PageNo number : m_changes.pages()) {
        const PageChange change{number, number < m_basePages ? m_base.page(number) : nullptr,
                                m_changes.find(number)};
        if (change.before == nullptr || std::memcmp(change.before, change.after, kPageSize) != 0)
            changes.push_back(change);
    }
    if (!m_base.intact())
        throw Error(Code::IoError, {}, "mapped page");
    return changes;
}

void FilePager::commitThroughJournal(const std::vector<PageChange> &changes)
{
    if (m_locks.blockedByOurselves(LockByte::Reading, LockKind::Exclusive))
        throw Error(Code::Locked);
    writeJournal(m_disk, m_journal, *m_file, m_basePages, m_pageCount, m_base.page(0), changes);
    try {
        m_locks.take(LockByte::Reading, LockKind::Exclusive, FileLocks::deadline());
    } catch (...) {
        quietly([this] { m_disk.remove(m_journal); });
        throw;
    }
    try {
        writePages(changes);
        m_file->sync();
    } catch (...) {
        restore();
        throw;
    }
    // The point of commit has passed. If the journal stays, who finds it sees that.
    quietly([this] { m_disk.remove(m_journal); });
}

// New pages first: a full disk is found before an old page is touched.
void FilePager::writePages(const std::vector<PageChange> &changes)
{
    const auto old = std::partition_point(changes.begin(), changes.end(),
                                          [](const PageChange &change) { return change.before != nullptr; });
    writeTogether({old, changes.end()});
    for (auto change = changes.begin(); change != old; ++change)
        m_file->write(std::uint64_t{change->page} * kPageSize, {change->after, kPageSize});
}

// Calls visit(offset, changes) for pages that lie side by side, up to 256 KiB.
template <class Visit>
void forEachStretch(std::span<const PageChange> changes, Visit &&visit)
{
    constexpr std::size_t kTogether = 64;
    for (std::size_t begin = 0, end = 0; begin < changes.size(); begin = end) {
        for (end = begin + 1; end < changes.size() && end - begin < kTogether; ++end) {
            if (changes[end].page != changes[end - 1].page + 1)
                break;
        }
        visit(std::uint64_t{changes[begin].page} * kPageSize, changes.subspan(begin, end - begin));
    }
}

void FilePager::writeTogether(std::span<const PageChange> changes)
{
    std::vector<std::byte> bytes;
    forEachStretch(changes, [&](std::uint64_t offset, std::span<const PageChange> stretch) {
        bytes.clear();
        for (const PageChange &change : stretch)
            bytes.insert(bytes.end(), change.after, change.after + kPageSize);
        m_file->write(offset, bytes);
    });
}

// A failed commit: back to the old pages, now. Where the disk doesn't let us, the journal stays for the next
// section to try, here or elsewhere, and no page of the file is to be had until then.
void FilePager::restore()
{
    const bool restored = quietly([this] {
        const auto journal = m_disk.open(m_journal, Disk::Mode::Read);
        playBack(*journal, *m_file);
    });
    if (!restored) {
        m_basePages = 0;
        return;
    }
    quietly([this] {
        m_disk.remove(m_journal);
        m_disk.syncFolderOf(m_journal);
    });
}

// A new file stands under another name until it is whole.
void FilePager::publishNew(const std::vector<PageChange> &changes)
{
    writeNew(changes);
    m_file->sync();
    verifyWritten(changes);
    m_disk.publish(m_opening.fresh, m_opening.place);
    if (!quietly([this] { m_disk.syncFolderOf(m_opening.place); })) {
        quietly([this] { m_disk.rename(m_opening.place, m_opening.fresh); });
        throw Error(Code::WriteError, {}, "folder");
    }
    m_opening.fresh.clear();
    m_wroteEarly = false;
}

void FilePager::writeNew(const std::vector<PageChange> &changes)
{
    if (!m_wroteEarly)
        m_file->truncate(0); // what a failed attempt has left
    writeTogether(changes);
}

void FilePager::writeEarly()
{
    constexpr std::size_t kMany = 2048; // 8 MiB
    if (!isNew() || m_changes.level() != 1 || m_changes.size() < kMany)
        return;
    const std::vector<PageChange> changes = collectChanges();
    writeNew(changes);
    m_wroteEarly = true;
    verifyWritten(changes);
    for (const PageChange &change : changes)
        m_base.written(change.page, change.after);
    m_basePages = m_pageCount;
    m_base.grow(m_basePages);
    m_changes.forgetPages();
}

// What the disk holds now is what was meant for it.
void FilePager::verifyWritten(const std::vector<PageChange> &changes)
{
    std::vector<std::byte> bytes;
    forEachStretch(changes, [&](std::uint64_t offset, std::span<const PageChange> stretch) {
        bytes.resize(stretch.size() * kPageSize);
        m_file->read(offset, bytes);
        for (std::size_t i = 0; i < stretch.size(); ++i) {
            if (std::memcmp(bytes.data() + i * kPageSize, stretch[i].after, kPageSize) != 0)
                throw Error(Code::WriteError, {},
                            "page " + std::to_string(stretch[i].page) + " isn't as written");
        }
    });
}

void FilePager::adopt(const std::vector<PageChange> &changes)
{
    for (const PageChange &change : changes)
        m_base.written(change.page, change.after);
    m_basePages = m_pageCount;
    m_base.grow(m_basePages);
    ++m_version;
    quietly([this] { m_stamp = m_file->changeStamp(); });
}

// ---- Opening

// The unfinished new file of somebody who died is swept away; of somebody who lives, it is respected. An
// error names the file that was asked for: nobody knows the other one.
std::unique_ptr<DiskFile> createFresh(Disk &disk, const FilePager::Opening &opening)
{
    try {
        if (disk.isFile(opening.fresh)) {
            const auto other = disk.open(opening.fresh, Disk::Mode::ReadWrite);
            if (!other->tryLock(LockByte::Open, LockKind::Exclusive))
                throw Error(Code::FileInUse);
            disk.remove(opening.fresh);
        }
        return disk.open(opening.fresh, Disk::Mode::CreateNew);
    } catch (const Error &error) {
        throw Error(error.code(), opening.path.string(), error.reason());
    }
}

std::unique_ptr<DiskFile> openExisting(Disk &disk, FilePager::Opening &opening)
{
    try {
        auto file = disk.open(opening.place, Disk::Mode::ReadWrite);
        opening.writable = true;
        return file;
    } catch (const Error &error) {
        if (error.code() != Code::CannotOpenFile && error.code() != Code::ReadOnlyDatabase)
            throw;
    }
    return disk.open(opening.place, Disk::Mode::Read);
}

} // namespace

Pager::~Pager() = default;

void Pager::damaged(std::string_view reason) const
{
    throw Error(Code::Damaged, path().string(), reason);
}

std::unique_ptr<Pager> Pager::open(Disk &disk, const fs::path &path, Access access, Sharing sharing)
{
    FilePager::Opening opening{path, disk.resolve(path), {}, false, false};
    std::unique_ptr<DiskFile> file;
    if (access == Access::Create) {
        if (disk.exists(opening.place))
            throw Error(Code::DatabaseExists, path.string());
        opening.fresh = withSuffix(opening.place, "-new");
        file = createFresh(disk, opening);
        opening.writable = true;
    } else {
        file = openExisting(disk, opening);
    }
    opening.mayWrite = opening.writable && access != Access::Read;
    if (!file->tryLock(LockByte::Open,
                       sharing == Sharing::Exclusive ? LockKind::Exclusive : LockKind::Shared))
        throw Error(Code::FileInUse, path.string());
    auto pager = std::make_unique<FilePager>(disk, std::move(opening), std::move(file));
    if (access != Access::Create)
        const ReadSection look(*pager);
    return pager;
}

} // namespace vardelin::jet
