// Disk over the calls of Linux.

#include "platform/jet/Disk.h"

#include "platform/jet/Error.h"
#include "platform/jet/MapGuard.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vardelin::jet {

DiskFile::~DiskFile() = default;
Disk::~Disk() = default;

namespace {

namespace fs = std::filesystem;

class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&) = delete;
    int get() const { return m_number; }

private:
    int m_number;
};

// Calls again when a signal came between.
template <class Call>
auto retried(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

[[noreturn]] void failToOpen(const fs::path &path, int error)
{
    const std::string name = path.string();
    const std::string reason = "errno " + std::to_string(error);
    std::error_code ignored;
    switch (error) {
    case EEXIST:
        throw Error(Code::DatabaseExists, name, reason);
    case ENOENT:
        throw Error(fs::is_directory(path.parent_path().empty() ? "." : path.parent_path(), ignored)
                        ? Code::FileNotFound
                        : Code::PathNotFound,
                    name, reason);
    case ENOTDIR:
    case ENAMETOOLONG:
        throw Error(Code::PathNotFound, name, reason);
    case ENOSPC:
    case EDQUOT:
        throw Error(Code::DiskFull, name, reason);
    default:
        throw Error(Code::CannotOpenFile, name, reason);
    }
}

[[noreturn]] void failToWrite(int error)
{
    const std::string reason = "errno " + std::to_string(error);
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        throw Error(Code::DiskFull, {}, reason);
    case EFBIG:
        throw Error(Code::FileTooLarge, {}, reason);
    case EROFS:
    case EACCES:
    case EPERM:
    case EBADF:
        throw Error(Code::ReadOnlyDatabase, {}, reason);
    default:
        throw Error(Code::WriteError, {}, reason);
    }
}

FileIdentity identityFrom(const struct stat &found)
{
    return {static_cast<std::uint64_t>(found.st_dev), static_cast<std::uint64_t>(found.st_ino)};
}

class SystemFile final : public DiskFile
{
public:
    explicit SystemFile(Descriptor descriptor) : m_descriptor(std::move(descriptor)) {}

    std::uint64_t size() override { return static_cast<std::uint64_t>(status().st_size); }
    void read(std::uint64_t offset, std::span<std::byte> into) override;
    void write(std::uint64_t offset, std::span<const std::byte> from) override;
    void truncate(std::uint64_t size) override;
    void sync() override;
    std::span<const std::byte> map(std::uint64_t bytes) override;
    bool mapIntact() const override { return !m_map || m_map->intact(); }
    bool tryLock(LockByte byte, LockKind kind) override;
    FileIdentity identity() override;
    std::uint64_t changeStamp() override;
    void takeRightsOf(DiskFile &other) override;

private:
    struct Stamp
    {
        std::int64_t size = 0, written = 0, changed = 0; // bytes; nanoseconds since 1970
        bool operator==(const Stamp &) const = default;
    };

    struct stat status() const;
    bool lock(int command, struct flock &range);

    Descriptor m_descriptor;
    std::optional<GuardedMap> m_map;
    Stamp m_stamp;
    bool m_stampYoung = false;
    std::uint64_t m_changes = 0;
};

struct stat SystemFile::status() const
{
    struct stat result = {};
    if (::fstat(m_descriptor.get(), &result) != 0)
        throw Error(Code::IoError, {}, "fstat");
    return result;
}

void SystemFile::read(std::uint64_t offset, std::span<std::byte> into)
{
    while (!into.empty()) {
        const ssize_t count = retried([&] {
            return ::pread(m_descriptor.get(), into.data(), into.size(), static_cast<off_t>(offset));
        });
        if (count <= 0)
            throw Error(Code::IoError, {}, count == 0 ? "end of file" : "errno " + std::to_string(errno));
        into = into.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

void SystemFile::write(std::uint64_t offset, std::span<const std::byte> from)
{
    while (!from.empty()) {
        const ssize_t count = retried([&] {
            return ::pwrite(m_descriptor.get(), from.data(), from.size(), static_cast<off_t>(offset));
        });
        if (count <= 0)
            failToWrite(count == 0 ? ENOSPC : errno);
        from = from.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

void SystemFile::truncate(std::uint64_t size)
{
    if (retried([&] { return ::ftruncate(m_descriptor.get(), static_cast<off_t>(size)); }) != 0)
        failToWrite(errno);
}

void SystemFile::sync()
{
    // fdatasync carries a changed length along; what it leaves out (times) doesn't matter.
    if (retried([&] { return ::fdatasync(m_descriptor.get()); }) != 0)
        failToWrite(errno);
}

// One map of the largest possible file serves for good: pages behind the end come to life as the file grows,
// so the pointers of earlier calls stay valid. It costs addresses, not memory.
std::span<const std::byte> SystemFile::map(std::uint64_t bytes)
{
    constexpr std::uint64_t kLargest = std::uint64_t{kMaxPages} * kPageSize;
    if (m_map && !m_map->intact())
        m_map.reset();
    if (!m_map)
        m_map.emplace(m_descriptor.get(), kLargest);
    if (m_map->data() == nullptr || bytes > kLargest)
        return {};
    return {m_map->data(), static_cast<std::size_t>(bytes)};
}

// Locks of the open file description: unlike the older kind they belong to the opening, so that two openings
// in one process stand in each other's way, and closing one doesn't drop the locks of the other.
bool SystemFile::lock(int command, struct flock &range)
{
    if (retried([&] { return ::fcntl(m_descriptor.get(), command, &range); }) == 0)
        return true;
    if (errno == EINVAL || errno == ENOLCK || errno == ENOSYS || errno == EOPNOTSUPP)
        return true; // no such locks here: better the office's file without them than not at all
    return false;
}

bool SystemFile::tryLock(LockByte byte, LockKind kind)
{
    struct flock range = {};
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<off_t>(byte);
    range.l_len = 1;
    const auto type = [](int value) { return static_cast<short>(value); };
    range.l_type = type(kind == LockKind::Exclusive ? F_WRLCK : kind == LockKind::Shared ? F_RDLCK : F_UNLCK);
    if (lock(F_OFD_SETLK, range))
        return true;
    if (errno != EBADF || kind != LockKind::Exclusive)
        return false;
    // Opened for reading only: nobody else may hold it now, and a shared lock keeps off those who want it
    // alone.
    if (!lock(F_OFD_GETLK, range) || range.l_type != F_UNLCK)
        return false;
    range.l_type = type(F_RDLCK);
    range.l_pid = 0;
    return lock(F_OFD_SETLK, range);
}

FileIdentity SystemFile::identity()
{
    return identityFrom(status());
}

// The clock of file times ticks every few milliseconds (whole seconds, even two, on some file systems). A
// change in the same tick as our look at it can't be seen afterwards, so a time that was young when we looked
// counts as changed the next time.
std::uint64_t SystemFile::changeStamp()
{
    constexpr std::int64_t kSecond = 1'000'000'000, kTick = 20'000'000, kCoarseTick = 2 * kSecond;
    const auto nanoseconds = [](const timespec &time) { return time.tv_sec * kSecond + time.tv_nsec; };
    const struct stat found = status();
    const Stamp stamp{found.st_size, nanoseconds(found.st_mtim), nanoseconds(found.st_ctim)};
    if (stamp != m_stamp || m_stampYoung)
        ++m_changes;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const bool coarse = found.st_mtim.tv_nsec == 0;
    m_stamp = stamp;
    m_stampYoung =
        nanoseconds(now) - std::max(stamp.written, stamp.changed) <= (coarse ? kCoarseTick : kTick);
    return m_changes;
}

void SystemFile::takeRightsOf(DiskFile &other)
{
    const auto *file = dynamic_cast<SystemFile *>(&other);
    if (file == nullptr)
        return;
    const struct stat rights = file->status();
    const int descriptor = m_descriptor.get();
    if (::fchown(descriptor, static_cast<uid_t>(-1), rights.st_gid) == 0)
        static_cast<void>(::fchmod(descriptor, rights.st_mode & 0666));
    if (::geteuid() == 0)
        static_cast<void>(::fchown(descriptor, rights.st_uid, rights.st_gid));
}

class SystemDisk final : public Disk
{
public:
    std::unique_ptr<DiskFile> open(const fs::path &path, Mode mode) override;
    bool exists(const fs::path &path) override;
    bool isFile(const fs::path &path) override;
    std::optional<FileIdentity> identityOf(const fs::path &path) override;
    fs::path resolve(const fs::path &path) override;
    void remove(const fs::path &path) override;
    void rename(const fs::path &from, const fs::path &to) override;
    void publish(const fs::path &from, const fs::path &to) override;
    void syncFolderOf(const fs::path &path) override;
};

std::unique_ptr<DiskFile> SystemDisk::open(const fs::path &path, Mode mode)
{
    // Without O_NONBLOCK a pipe of that name would hold us up for good.
    int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | (mode == Mode::Read ? O_RDONLY : O_RDWR);
    if (mode == Mode::CreateNew)
        flags |= O_CREAT | O_EXCL;
    Descriptor descriptor(retried([&] { return ::open(path.c_str(), flags, 0666); }));
    if (descriptor.get() < 0)
        failToOpen(path, errno);
    struct stat found = {};
    if (::fstat(descriptor.get(), &found) != 0 || !S_ISREG(found.st_mode))
        throw Error(Code::CannotOpenFile, path.string(), "not a regular file");
    return std::make_unique<SystemFile>(std::move(descriptor));
}

bool SystemDisk::exists(const fs::path &path)
{
    struct stat found = {};
    return ::lstat(path.c_str(), &found) == 0;
}

bool SystemDisk::isFile(const fs::path &path)
{
    struct stat found = {};
    return ::lstat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

std::optional<FileIdentity> SystemDisk::identityOf(const fs::path &path)
{
    struct stat found = {};
    if (::lstat(path.c_str(), &found) != 0 || !S_ISREG(found.st_mode))
        return std::nullopt;
    return identityFrom(found);
}

fs::path SystemDisk::resolve(const fs::path &path)
{
    std::error_code failed;
    const fs::path resolved = fs::weakly_canonical(path, failed);
    return failed ? path : resolved;
}

void SystemDisk::remove(const fs::path &path)
{
    if (::unlink(path.c_str()) != 0)
        failToWrite(errno);
}

void SystemDisk::rename(const fs::path &from, const fs::path &to)
{
    if (::rename(from.c_str(), to.c_str()) != 0)
        failToWrite(errno);
}

void SystemDisk::publish(const fs::path &from, const fs::path &to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    if (errno == EEXIST)
        throw Error(Code::DatabaseExists, to.string());
    if (errno != EINVAL && errno != ENOSYS)
        failToWrite(errno);
    if (::link(from.c_str(), to.c_str()) == 0) // a file system that doesn't know the flag
        return remove(from);
    if (errno == EEXIST || exists(to))
        throw Error(Code::DatabaseExists, to.string());
    rename(from, to);
}

void SystemDisk::syncFolderOf(const fs::path &path)
{
    const fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    const Descriptor descriptor(
        retried([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (descriptor.get() < 0)
        failToWrite(errno);
    if (retried([&] { return ::fsync(descriptor.get()); }) != 0 &&
        errno != EINVAL) // EINVAL: folders need none here
        failToWrite(errno);
}

} // namespace

Disk &systemDisk()
{
    static SystemDisk disk;
    return disk;
}

} // namespace vardelin::jet
