#pragma once
// A disk in memory: fast, looked into and changed by tests at will. It maps nothing, so everything goes
// through read().

#include "platform/jet/Disk.h"

#include <map>
#include <vector>

namespace vardelin::jet::test {

class MemoryDisk final : public Disk
{
public:
    std::unique_ptr<DiskFile> open(const std::filesystem::path &path, Mode mode) override;
    bool exists(const std::filesystem::path &path) override { return m_names.contains(path); }
    bool isFile(const std::filesystem::path &path) override { return m_names.contains(path); }
    std::optional<FileIdentity> identityOf(const std::filesystem::path &path) override;
    void remove(const std::filesystem::path &path) override;
    void rename(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void publish(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void syncFolderOf(const std::filesystem::path &) override {}

    void setReadOnly(bool readOnly) { m_readOnly = readOnly; } // every file, for openings to come
    Bytes content(const std::filesystem::path &path) const;    // empty if there is no such file
    void put(const std::filesystem::path &path, Bytes content);
    std::vector<std::filesystem::path> names() const;

    struct Node; // a file's bytes and locks, whatever its name

private:
    std::map<std::filesystem::path, std::shared_ptr<Node>> m_names;
    std::uint64_t m_lastNumber = 0;
    bool m_readOnly = false;
};

} // namespace vardelin::jet::test
