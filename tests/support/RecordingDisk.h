#pragma once
// A disk in memory that remembers what was done to it, so that the power can fail at any point of it
// afterwards: what wasn't synced by then is kept, dropped, reordered or torn.

#include "tests/support/MemoryDisk.h"

#include <random>

namespace vardelin::jet::test {

class RecordingDisk final : public Disk
{
public:
    enum class Kind { Write, Truncate, Sync, Create, Remove, Rename, SyncFolder };

    struct Step
    {
        Kind kind;
        std::uint64_t file = 0; // number of the file
        std::uint64_t at = 0;   // Write: offset; Truncate: new size
        Bytes bytes;
        std::filesystem::path path, target;
    };

    // How unsynced work fares when the power fails.
    struct Loss
    {
        double kept = 0.5;    // the chance of each write, truncation, creation, removal and renaming
        std::size_t tear = 0; // 512 or 4096: each such piece of a write has that chance by itself
        bool reorder = false; // writes of a file between two syncs arrive in any order
    };

    // Starts from `base`, whose files count as safely on the disk.
    explicit RecordingDisk(MemoryDisk &base);

    const std::vector<Step> &steps() const { return m_steps; }
    // The disk as it comes up if the power fails when the first `done` steps had returned.
    std::unique_ptr<MemoryDisk> afterPowerLoss(std::size_t done, const Loss &loss,
                                               std::mt19937 &random) const;

    std::unique_ptr<DiskFile> open(const std::filesystem::path &path, Mode mode) override;
    bool exists(const std::filesystem::path &path) override { return m_disk.exists(path); }
    bool isFile(const std::filesystem::path &path) override { return m_disk.isFile(path); }
    std::optional<FileIdentity> identityOf(const std::filesystem::path &path) override
    {
        return m_disk.identityOf(path);
    }
    void remove(const std::filesystem::path &path) override;
    void rename(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void publish(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void syncFolderOf(const std::filesystem::path &path) override;
    void record(Step step) { m_steps.push_back(std::move(step)); } // for the files of this disk

private:
    std::uint64_t numberOf(const std::filesystem::path &path)
    {
        return m_disk.identityOf(path).value_or(FileIdentity{}).number;
    }

    MemoryDisk &m_disk;
    std::map<std::filesystem::path, std::uint64_t> m_firstNames;
    std::map<std::uint64_t, Bytes> m_firstContent;
    std::vector<Step> m_steps;
};

} // namespace vardelin::jet::test
