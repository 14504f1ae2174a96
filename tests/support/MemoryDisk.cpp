#include "tests/support/MemoryDisk.h"

#include "platform/jet/Error.h"

#include <algorithm>
#include <cstring>

namespace vardelin::jet::test {

namespace fs = std::filesystem;

struct MemoryDisk::Node
{
    struct Lock
    {
        const DiskFile *owner;
        LockByte byte;
        LockKind kind;
    };

    std::uint64_t number = 0;
    std::uint64_t changes = 0;
    Bytes bytes;
    std::vector<Lock> locks;
};

namespace {

class MemoryFile final : public DiskFile
{
public:
    MemoryFile(std::shared_ptr<MemoryDisk::Node> node, bool writable)
        : m_node(std::move(node)), m_writable(writable)
    {}
    ~MemoryFile() override
    {
        std::erase_if(m_node->locks, [this](const auto &lock) { return lock.owner == this; });
    }

    std::uint64_t size() override { return m_node->bytes.size(); }

    void read(std::uint64_t offset, std::span<std::byte> into) override
    {
        if (offset + into.size() > m_node->bytes.size())
            throw Error(Code::IoError, {}, "end of file");
        if (!into.empty())
            std::memcpy(into.data(), m_node->bytes.data() + offset, into.size());
    }

    void write(std::uint64_t offset, std::span<const std::byte> from) override
    {
        beginChange();
        if (offset + from.size() > m_node->bytes.size())
            m_node->bytes.resize(offset + from.size());
        if (!from.empty())
            std::memcpy(m_node->bytes.data() + offset, from.data(), from.size());
    }

    void truncate(std::uint64_t size) override
    {
        beginChange();
        m_node->bytes.resize(size);
    }

    void sync() override {}
    std::span<const std::byte> map(std::uint64_t) override { return {}; }
    FileIdentity identity() override { return {1, m_node->number}; }
    std::uint64_t changeStamp() override { return m_node->changes; }

    bool tryLock(LockByte byte, LockKind kind) override
    {
        auto &locks = m_node->locks;
        const bool blocked = std::any_of(locks.begin(), locks.end(), [&](const auto &lock) {
            return lock.owner != this && lock.byte == byte && kind != LockKind::None &&
                   (kind == LockKind::Exclusive || lock.kind == LockKind::Exclusive);
        });
        if (blocked)
            return false;
        std::erase_if(locks, [&](const auto &lock) { return lock.owner == this && lock.byte == byte; });
        if (kind != LockKind::None)
            locks.push_back({this, byte, kind});
        return true;
    }

private:
    void beginChange()
    {
        if (!m_writable)
            throw Error(Code::ReadOnlyDatabase);
        ++m_node->changes;
    }

    std::shared_ptr<MemoryDisk::Node> m_node;
    bool m_writable;
};

} // namespace

std::unique_ptr<DiskFile> MemoryDisk::open(const fs::path &path, Mode mode)
{
    if (mode != Mode::Read && m_readOnly)
        throw Error(Code::CannotOpenFile, path.string());
    const auto found = m_names.find(path);
    if (mode == Mode::CreateNew) {
        if (found != m_names.end())
            throw Error(Code::DatabaseExists, path.string());
        put(path, {});
    } else if (found == m_names.end()) {
        throw Error(Code::FileNotFound, path.string());
    }
    return std::make_unique<MemoryFile>(m_names.at(path), mode != Mode::Read);
}

std::optional<FileIdentity> MemoryDisk::identityOf(const fs::path &path)
{
    const auto found = m_names.find(path);
    return found == m_names.end() ? std::nullopt : std::optional(FileIdentity{1, found->second->number});
}

void MemoryDisk::remove(const fs::path &path)
{
    if (m_names.erase(path) == 0)
        throw Error(Code::WriteError, {}, "no such file");
}

void MemoryDisk::rename(const fs::path &from, const fs::path &to)
{
    if (!m_names.contains(from))
        throw Error(Code::WriteError, {}, "no such file");
    m_names[to] = m_names.at(from);
    m_names.erase(from);
}

void MemoryDisk::publish(const fs::path &from, const fs::path &to)
{
    if (m_names.contains(to))
        throw Error(Code::DatabaseExists, to.string());
    rename(from, to);
}

Bytes MemoryDisk::content(const fs::path &path) const
{
    const auto found = m_names.find(path);
    return found == m_names.end() ? Bytes{} : found->second->bytes;
}

void MemoryDisk::put(const fs::path &path, Bytes content)
{
    std::shared_ptr<Node> &node = m_names[path];
    if (!node) {
        node = std::make_shared<Node>();
        node->number = ++m_lastNumber;
    }
    node->bytes = std::move(content);
    ++node->changes;
}

std::vector<fs::path> MemoryDisk::names() const
{
    std::vector<fs::path> result;
    for (const auto &[path, node] : m_names)
        result.push_back(path);
    return result;
}

} // namespace vardelin::jet::test
