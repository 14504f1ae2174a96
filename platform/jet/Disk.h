#pragma once
// Every byte that the engine reads or writes, every lock, sync, rename and removal passes through these two
// interfaces, so that tests can put a disk in memory, a failing disk or a recording one in place of the
// machine's.
//
// Failures throw Error: FileNotFound, PathNotFound, CannotOpenFile (no right, or not a file), DatabaseExists,
// DiskFull, ReadOnlyDatabase, IoError, WriteError.

#include "platform/jet/Types.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace vardelin::jet {

enum class LockKind { None, Shared, Exclusive };

// The bytes that stand for locks lie far behind any page (2 GiB and up) and are never written. They belong to
// the opened file and die with it, and with its process.
enum class LockByte : std::uint64_t {
    Reading = 0x80000000, // shared while a command reads; exclusive while a commit writes its pages
    Writing = 0x80000001, // exclusive from the first change of a command to its commit: one writer at a time
    Open = 0x80000002,    // shared as long as the file is open; exclusive for compaction and overwriting
    // Held only while Reading or Writing is waited for, so that whoever comes and goes quickly doesn't keep
    // the patient from their turn.
    ReadTurn = 0x80000003,
    WriteTurn = 0x80000004
};

// What tells one file from another, whatever its name is now.
struct FileIdentity
{
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    bool operator==(const FileIdentity &) const = default;
};

class DiskFile
{
public:
    virtual ~DiskFile();
    virtual std::uint64_t size() = 0;
    virtual void read(std::uint64_t offset, std::span<std::byte> into) = 0; // all of it, or IoError
    virtual void write(std::uint64_t offset, std::span<const std::byte> from) = 0;
    virtual void truncate(std::uint64_t size) = 0;
    // Data and length are on the disk when it returns; the name may not be (Disk::syncFolderOf).
    virtual void sync() = 0;
    // The first `bytes` bytes as memory, following every later write; empty where the disk can't. Valid as
    // long as this object lives and the map is intact. No byte behind the file's end may be touched.
    virtual std::span<const std::byte> map(std::uint64_t bytes) = 0;
    // False once mapped bytes couldn't be read (the medium went, or somebody cut the file off meanwhile):
    // zeros stand in their place, and what was read since the last asking isn't to be trusted.
    virtual bool mapIntact() const { return true; }
    // Never waits. False: another opening, in this process or elsewhere, stands in the way, and the lock is
    // as it was. None unlocks. Where the file system knows no locks, and for Exclusive on a file that can't
    // be written, the nearest is done.
    virtual bool tryLock(LockByte byte, LockKind kind) = 0;
    virtual FileIdentity identity() = 0;
    // A number that differs from that of an earlier call on this object whenever the file's content may have
    // been changed by anybody in between.
    virtual std::uint64_t changeStamp() = 0;
    // Whoever may read and write `other` shall be able to do so with this file; as far as the disk allows.
    virtual void takeRightsOf(DiskFile &other) { static_cast<void>(other); }
};

class Disk
{
public:
    enum class Mode { Read, ReadWrite, CreateNew };
    virtual ~Disk();
    // Regular files only, and never through a symbolic link in the last part of the path: see resolve().
    virtual std::unique_ptr<DiskFile> open(const std::filesystem::path &path, Mode mode) = 0;
    // Anything of that name, a link that leads nowhere included.
    virtual bool exists(const std::filesystem::path &path) = 0;
    virtual bool isFile(const std::filesystem::path &path) = 0; // a regular file; a link isn't one
    // None: no regular file of that name.
    virtual std::optional<FileIdentity> identityOf(const std::filesystem::path &path) = 0;
    // The path without symbolic links: the one name under which every program finds the files beside this
    // one.
    virtual std::filesystem::path resolve(const std::filesystem::path &path) { return path; }
    virtual void remove(const std::filesystem::path &path) = 0;
    virtual void rename(const std::filesystem::path &from,
                        const std::filesystem::path &to) = 0; // replaces `to`
    virtual void publish(const std::filesystem::path &from,
                         const std::filesystem::path &to) = 0; // DatabaseExists if taken
    virtual void syncFolderOf(const std::filesystem::path &path) = 0;
};

// The machine's own disk.
Disk &systemDisk();

} // namespace vardelin::jet
