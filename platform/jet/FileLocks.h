#pragma once
// The locks of one opening of a file, with the patience that the Pager promises.

#include "platform/jet/Disk.h"

#include <chrono>

namespace vardelin::jet {

class FileLocks
{
public:
    explicit FileLocks(DiskFile &file);
    ~FileLocks();
    FileLocks(const FileLocks &) = delete;
    FileLocks &operator=(const FileLocks &) = delete;

    LockKind reading() const { return m_reading; }
    LockKind writing() const { return m_writing; }

    // How long a chain of attempts may go on together.
    using Deadline = std::chrono::steady_clock::time_point;
    static Deadline deadline();

    bool tryTake(LockByte byte, LockKind kind); // Reading or Writing; None gives it back
    void take(LockByte byte, LockKind kind,
              Deadline deadline); // Locked when the time is over, or waiting is in vain
    void giveAll();
    // Another opening in this thread holds a lock that stands in the way: it won't go while we wait.
    bool blockedByOurselves(LockByte byte, LockKind kind) const;
    static void pause(int attempt);

private:
    void waitFor(LockByte wanted, LockByte byte, LockKind kind, Deadline deadline);
    LockKind &held(LockByte byte) { return byte == LockByte::Reading ? m_reading : m_writing; }

    DiskFile &m_file;
    FileIdentity m_identity;
    LockKind m_reading = LockKind::None;
    LockKind m_writing = LockKind::None;
};

} // namespace vardelin::jet
