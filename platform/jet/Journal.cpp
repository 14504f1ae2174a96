#include "platform/jet/Journal.h"

#include "platform/jet/Bytes.h"
#include "platform/jet/Error.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <random>

namespace vardelin::jet {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMagic = "Vardelin journal";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kHeaderSummed = 56;
constexpr std::size_t kSector = 512;
constexpr std::size_t kSectors = kPageSize / kSector;
constexpr std::size_t kImageAt = 8 + 8 * kSectors;
constexpr std::size_t kChunk = std::size_t{1} << 20; // bytes gathered for one write

// A checksum that mixes eight bytes at a time. Against tears and chance, not against malice.
class Sum
{
public:
    Sum(std::uint64_t seed, std::size_t bytes) : m_sum((seed ^ bytes) * kOdd) {}
    void add(const std::byte *eight)
    {
        m_sum = (m_sum ^ load<std::uint64_t>(eight)) * kOdd;
        m_sum ^= m_sum >> 29;
    }
    std::uint64_t result() const
    {
        const std::uint64_t sum = m_sum * kOdd;
        return sum ^ (sum >> 32);
    }

private:
    static constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio
    std::uint64_t m_sum;
};

// `bytes` is a multiple of eight.
std::uint64_t checksum(std::uint64_t seed, const std::byte *from, std::size_t bytes)
{
    Sum sum(seed, bytes);
    for (std::size_t i = 0; i < bytes; i += 8)
        sum.add(from + i);
    return sum.result();
}

// The checksum of each of a page's sectors; side by side, since each step of one waits for the step before.
void putSectorSums(std::byte *to, std::uint64_t salt, const std::byte *page)
{
    const Sum start(salt, kSector);
    std::array<Sum, kSectors> sums{start, start, start, start, start, start, start, start};
    for (std::size_t at = 0; at < kSector; at += 8) {
        for (std::size_t i = 0; i < kSectors; ++i)
            sums[i].add(page + i * kSector + at);
    }
    for (std::size_t i = 0; i < kSectors; ++i)
        store(to + 8 * i, sums[i].result());
}

std::uint64_t randomSalt()
{
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
}

Bytes headerBytes(const JournalHeader &header)
{
    Bytes bytes(kHeaderSize);
    std::memcpy(bytes.data(), kMagic.data(), kMagic.size());
    store(&bytes[16], kVersion);
    store(&bytes[20], static_cast<std::uint32_t>(kPageSize));
    store(&bytes[24], header.salt);
    store(&bytes[32], header.pagesBefore);
    store(&bytes[36], header.pagesAfter);
    store(&bytes[40], header.records);
    store(&bytes[48], header.firstPage);
    store(&bytes[kHeaderSummed], checksum(header.salt, bytes.data(), kHeaderSummed));
    return bytes;
}

void appendRecord(Bytes &out, const PageChange &change, std::uint64_t salt)
{
    const std::size_t start = out.size();
    const std::size_t summed = kImageAt + (change.before != nullptr ? kPageSize : 0);
    out.resize(start + summed + 8);
    std::byte *record = &out[start];
    store(record, change.page);
    store(record + 4, std::uint32_t{change.before != nullptr});
    putSectorSums(record + 8, salt, change.after);
    if (change.before != nullptr)
        std::memcpy(record + kImageAt, change.before, kPageSize);
    store(record + summed, checksum(salt, record, summed));
}

// Gathers what goes one behind the other into writes of a decent size.
class Appender
{
public:
    explicit Appender(DiskFile &file) : m_file(file) {}
    Bytes &buffer() { return m_buffer; }
    void flush()
    {
        m_file.write(m_offset, m_buffer);
        m_offset += m_buffer.size();
        m_buffer.clear();
    }
    void flushIfLarge()
    {
        if (m_buffer.size() >= kChunk)
            flush();
    }

private:
    DiskFile &m_file;
    Bytes m_buffer;
    std::uint64_t m_offset = 0;
};

enum class HeaderState { Whole, Torn, NotOurs };

HeaderState readHeader(DiskFile &journal, JournalHeader &header)
{
    Bytes bytes(kHeaderSize);
    const std::size_t there = static_cast<std::size_t>(std::min<std::uint64_t>(journal.size(), kHeaderSize));
    journal.read(0, std::span(bytes).first(there));
    const bool blank = std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
    if (blank) // made, and no more: a length without data is what a power loss leaves
        return HeaderState::Torn;
    if (std::memcmp(bytes.data(), kMagic.data(), std::min(there, kMagic.size())) != 0)
        return HeaderState::NotOurs;
    header = {load<std::uint64_t>(&bytes[24]), load<PageNo>(&bytes[32]), load<PageNo>(&bytes[36]),
              load<std::uint32_t>(&bytes[40]), load<std::uint64_t>(&bytes[48])};
    if (there < kHeaderSize ||
        load<std::uint64_t>(&bytes[kHeaderSummed]) != checksum(header.salt, bytes.data(), kHeaderSummed))
        return HeaderState::Torn;
    const bool known =
        load<std::uint32_t>(&bytes[16]) == kVersion && load<std::uint32_t>(&bytes[20]) == kPageSize;
    const bool sensible =
        header.pagesBefore > 0 && header.pagesAfter >= header.pagesBefore && header.pagesAfter <= kMaxPages;
    return known && sensible ? HeaderState::Whole : HeaderState::NotOurs;
}

// Walks through the records of a journal with a whole header.
class RecordReader
{
public:
    RecordReader(DiskFile &journal, const JournalHeader &header)
        : m_journal(journal), m_header(header), m_size(journal.size())
    {}

    // False: torn here. The record is valid until the next call.
    bool next()
    {
        if (m_size - m_offset < kImageAt + 8)
            return false;
        m_journal.read(m_offset, std::span(m_bytes).first(kImageAt));
        const std::uint32_t kind = load<std::uint32_t>(&m_bytes[4]);
        const std::size_t summed = kImageAt + (kind == 1 ? kPageSize : 0);
        if (kind > 1 || m_size - m_offset < summed + 8)
            return false;
        m_journal.read(m_offset + kImageAt, std::span(m_bytes).subspan(kImageAt, summed + 8 - kImageAt));
        if (load<std::uint64_t>(&m_bytes[summed]) != checksum(m_header.salt, m_bytes.data(), summed))
            return false;
        m_offset += summed + 8;
        return page() < m_header.pagesAfter && (kind == 1) == (page() < m_header.pagesBefore);
    }

    bool atEnd() const { return m_offset == m_size; }
    PageNo page() const { return load<PageNo>(&m_bytes[0]); }
    const std::byte *image() const
    {
        return load<std::uint32_t>(&m_bytes[4]) == 1 ? &m_bytes[kImageAt] : nullptr;
    }
    std::uint64_t newSector(std::size_t i) const { return load<std::uint64_t>(&m_bytes[8 + 8 * i]); }

private:
    DiskFile &m_journal;
    const JournalHeader &m_header;
    std::uint64_t m_size;
    std::uint64_t m_offset = kHeaderSize;
    Bytes m_bytes = Bytes(kImageAt + kPageSize + 8);
};

// What the sectors of a page, as they are now, tell about a commit.
struct Findings
{
    bool allNew = true;   // as the commit wanted them
    bool allOld = true;   // as they were
    bool written = false; // one at least is new and isn't old
    bool foreign = false; // one at least is neither

    void join(const Findings &other)
    {
        allNew &= other.allNew;
        allOld &= other.allOld;
        written |= other.written;
        foreign |= other.foreign;
    }
};

// now: null if the file ends before it.
Findings compare(const RecordReader &record, const std::byte *now, std::uint64_t salt)
{
    Findings found;
    if (now == nullptr) {
        found.allNew = false;
        found.foreign = record.image() != nullptr;
        return found;
    }
    for (std::size_t i = 0; i < kSectors; ++i) {
        const std::byte *sector = now + i * kSector;
        const bool isNew = checksum(salt, sector, kSector) == record.newSector(i);
        const bool isOld =
            record.image() == nullptr || std::memcmp(record.image() + i * kSector, sector, kSector) == 0;
        found.allNew &= isNew;
        found.allOld &= isOld;
        found.written |= isNew && !isOld;
        found.foreign |= !isNew && !isOld;
    }
    return found;
}

std::optional<Bytes> readPage(DiskFile &file, std::uint64_t size, PageNo page)
{
    const std::uint64_t offset = std::uint64_t{page} * kPageSize;
    if (offset + kPageSize > size)
        return std::nullopt;
    Bytes bytes(kPageSize);
    file.read(offset, bytes);
    return bytes;
}

} // namespace

fs::path journalPath(const fs::path &file)
{
    fs::path path = file;
    path += "-journal";
    return path;
}

void writeJournal(Disk &disk, const fs::path &path, DiskFile &file, PageNo pagesBefore, PageNo pagesAfter,
                  const std::byte *page0, std::span<const PageChange> changes)
{
    JournalHeader header{randomSalt(), pagesBefore, pagesAfter, static_cast<std::uint32_t>(changes.size()),
                         0};
    header.firstPage = checksum(header.salt, page0, kPageSize);
    const auto journal = disk.open(path, Disk::Mode::CreateNew);
    try {
        journal->takeRightsOf(file);
        Appender out(*journal);
        out.buffer() = headerBytes(header);
        for (const PageChange &change : changes) {
            appendRecord(out.buffer(), change, header.salt);
            out.flushIfLarge();
        }
        out.flush();
        journal->sync();
        disk.syncFolderOf(path);
    } catch (const Error &) {
        try {
            disk.remove(path);
        } catch (const Error &) {
            // It stays, torn or whole; the file agrees with its old pages, so it does nothing when it is
            // found.
        }
        throw;
    }
}

JournalState judgeJournal(DiskFile &journal, DiskFile &file)
{
    JournalHeader header;
    if (const HeaderState state = readHeader(journal, header); state != HeaderState::Whole)
        return state == HeaderState::Torn ? JournalState::Torn : JournalState::Unusable;

    const std::uint64_t size = file.size();
    const std::uint64_t before = std::uint64_t{header.pagesBefore} * kPageSize;
    const std::uint64_t after = std::uint64_t{header.pagesAfter} * kPageSize;
    Findings all;
    all.foreign = size < before || size > after;
    all.allNew = size == after;
    all.allOld = size == before;
    bool page0Journaled = false, torn = false;
    RecordReader record(journal, header);
    for (std::uint32_t i = 0; i < header.records && !torn; ++i) {
        torn = !record.next();
        if (torn)
            break;
        page0Journaled |= record.page() == 0;
        const std::optional<Bytes> now = readPage(file, size, record.page());
        all.join(compare(record, now ? now->data() : nullptr, header.salt));
    }
    if (!page0Journaled && !torn && size >= kPageSize)
        all.foreign |= checksum(header.salt, readPage(file, size, 0)->data(), kPageSize) != header.firstPage;
    if (torn || !record.atEnd())
        return all.written ? JournalState::Unusable : JournalState::Torn;
    if (all.foreign)
        return JournalState::Unusable;
    return all.allNew || all.allOld ? JournalState::Settled : JournalState::Interrupted;
}

void playBack(DiskFile &journal, DiskFile &file)
{
    JournalHeader header;
    if (readHeader(journal, header) != HeaderState::Whole)
        throw Error(Code::IoError, {}, "journal header");
    RecordReader record(journal, header);
    for (std::uint32_t i = 0; i < header.records; ++i) {
        if (!record.next())
            throw Error(Code::IoError, {}, "journal record " + std::to_string(i));
        if (record.image() != nullptr)
            file.write(std::uint64_t{record.page()} * kPageSize, {record.image(), kPageSize});
    }
    file.truncate(std::uint64_t{header.pagesBefore} * kPageSize);
    file.sync();
}

namespace {

// True: the journal has done its work, or had none to do, and may go. False: it is to be set aside.
bool putInOrder(Disk &disk, const fs::path &path, DiskFile &file)
{
    if (!disk.isFile(path))
        return false;
    const auto journal = disk.open(path, Disk::Mode::Read);
    switch (judgeJournal(*journal, file)) {
    case JournalState::Unusable:
        return false;
    case JournalState::Settled:
        file.sync();
        return true;
    case JournalState::Interrupted:
        playBack(*journal, file);
        return true;
    case JournalState::Torn:
        return true;
    }
    return false;
}

} // namespace

void recover(Disk &disk, const fs::path &path, DiskFile &file)
{
    const bool done = putInOrder(disk, path, file);
    try {
        fs::path aside = path;
        aside += "-unused";
        if (done)
            disk.remove(path);
        else
            disk.rename(path, aside);
        disk.syncFolderOf(path);
    } catch (const Error &) {
        // It stays, and reading goes on; a writer can't make its own journal and is refused.
    }
}

} // namespace vardelin::jet
