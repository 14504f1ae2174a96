#pragma once
// Another disk, of which the n-th operation fails: once, or from then on. Every open, read, write, truncate,
// sync, removal, renaming and folder sync counts; a failing write has written a part. A file's map is hidden,
// so that everything is read; or there is one, whose every use counts, and which is lost when it fails.

#include "platform/jet/Disk.h"
#include "platform/jet/Error.h"

namespace vardelin::jet::test {

class FaultyDisk final : public Disk
{
public:
    enum class Fault { Once, FromThenOn, Silent }; // Silent: a write goes wrong once, and nobody is told
    explicit FaultyDisk(Disk &disk, bool maps = false) : m_disk(disk), m_maps(maps) {}

    // n counts from 1, from now. code: what writing throws (DiskFull: only what needs space fails); reading
    // throws IoError.
    void failAt(int n, Fault fault, Code code = Code::WriteError);
    void heal() { m_failAt = 0; }
    int operations() const { return m_operations; } // since the last failAt()
    bool hasFailed() const { return m_failed; }

    std::unique_ptr<DiskFile> open(const std::filesystem::path &path, Mode mode) override;
    bool exists(const std::filesystem::path &path) override { return m_disk.exists(path); }
    bool isFile(const std::filesystem::path &path) override { return m_disk.isFile(path); }
    std::optional<FileIdentity> identityOf(const std::filesystem::path &path) override
    {
        return m_disk.identityOf(path);
    }
    std::filesystem::path resolve(const std::filesystem::path &path) override { return m_disk.resolve(path); }
    void remove(const std::filesystem::path &path) override;
    void rename(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void publish(const std::filesystem::path &from, const std::filesystem::path &to) override;
    void syncFolderOf(const std::filesystem::path &path) override;

    enum class Operation { Read, Write, Other };
    bool fails(Operation operation); // counts; for the files of this disk
    void check(Operation operation); // throws if it fails
    bool tells() const { return m_fault != Fault::Silent; }
    bool maps() const { return m_maps; }
    [[noreturn]] void fail(Operation operation) const;

private:
    Disk &m_disk;
    bool m_maps;
    int m_failAt = 0;
    int m_operations = 0;
    bool m_failed = false;
    Fault m_fault = Fault::Once;
    Code m_code = Code::WriteError;
};

} // namespace vardelin::jet::test
