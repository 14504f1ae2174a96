#include "tests/support/FaultyDisk.h"

#include <algorithm>

namespace vardelin::jet::test {

namespace fs = std::filesystem;

namespace {

class FaultyFile final : public DiskFile
{
public:
    FaultyFile(FaultyDisk &disk, std::unique_ptr<DiskFile> file) : m_disk(disk), m_file(std::move(file)) {}

    std::uint64_t size() override { return m_file->size(); }
    void read(std::uint64_t offset, std::span<std::byte> into) override
    {
        m_disk.check(FaultyDisk::Operation::Read);
        m_file->read(offset, into);
    }
    void write(std::uint64_t offset, std::span<const std::byte> from) override
    {
        const bool fails = m_disk.fails(FaultyDisk::Operation::Write);
        m_file->write(offset, fails ? from.first(from.size() / 2) : from);
        if (fails && m_disk.tells())
            m_disk.fail(FaultyDisk::Operation::Write);
        changed();
    }
    void truncate(std::uint64_t size) override
    {
        m_disk.check(FaultyDisk::Operation::Other);
        m_file->truncate(size);
        changed();
    }
    void sync() override
    {
        m_disk.check(FaultyDisk::Operation::Other);
        m_file->sync();
    }
    std::span<const std::byte> map(std::uint64_t bytes) override
    {
        if (!m_disk.maps())
            return {};
        m_map.reserve(kLargestMap); // so that it never moves
        if (bytes > kLargestMap)
            return {};
        m_lost = false;
        fillMap();
        return std::span(m_map.data(), bytes);
    }
    bool mapIntact() const override
    {
        if (m_map.empty() || m_lost)
            return !m_lost;
        m_lost = m_disk.fails(FaultyDisk::Operation::Read);
        if (m_lost)
            std::fill(m_map.begin(), m_map.end(), std::byte{0});
        return !m_lost;
    }
    bool tryLock(LockByte byte, LockKind kind) override { return m_file->tryLock(byte, kind); }
    FileIdentity identity() override { return m_file->identity(); }
    std::uint64_t changeStamp() override { return m_file->changeStamp(); }

private:
    static constexpr std::size_t kLargestMap = 8U << 20;

    void fillMap()
    {
        m_map.resize(std::min<std::uint64_t>(m_file->size(), kLargestMap));
        m_file->read(0, m_map);
    }
    void changed()
    {
        if (m_map.capacity() != 0 && !m_lost)
            fillMap();
    }

    FaultyDisk &m_disk;
    std::unique_ptr<DiskFile> m_file;
    mutable Bytes m_map;
    mutable bool m_lost = false;
};

} // namespace

void FaultyDisk::failAt(int n, Fault fault, Code code)
{
    m_failAt = n;
    m_fault = fault;
    m_code = code;
    m_operations = 0;
    m_failed = false;
}

bool FaultyDisk::fails(Operation operation)
{
    ++m_operations;
    const bool reached =
        m_failAt != 0 && (m_fault == Fault::FromThenOn ? m_operations >= m_failAt : m_operations == m_failAt);
    const bool writesOnly = m_code == Code::DiskFull || m_fault == Fault::Silent;
    const bool now = reached && (!writesOnly || operation == Operation::Write);
    m_failed |= now;
    return now;
}

void FaultyDisk::check(Operation operation)
{
    if (fails(operation))
        fail(operation);
}

void FaultyDisk::fail(Operation operation) const
{
    throw Error(operation == Operation::Read ? Code::IoError : m_code, {},
                "operation " + std::to_string(m_operations));
}

std::unique_ptr<DiskFile> FaultyDisk::open(const fs::path &path, Mode mode)
{
    check(mode == Mode::Read        ? Operation::Read
          : mode == Mode::CreateNew ? Operation::Write
                                    : Operation::Other);
    return std::make_unique<FaultyFile>(*this, m_disk.open(path, mode));
}

void FaultyDisk::remove(const fs::path &path)
{
    check(Operation::Other);
    m_disk.remove(path);
}

void FaultyDisk::rename(const fs::path &from, const fs::path &to)
{
    check(Operation::Other);
    m_disk.rename(from, to);
}

void FaultyDisk::publish(const fs::path &from, const fs::path &to)
{
    check(Operation::Other);
    m_disk.publish(from, to);
}

void FaultyDisk::syncFolderOf(const fs::path &path)
{
    check(Operation::Other);
    m_disk.syncFolderOf(path);
}

} // namespace vardelin::jet::test
