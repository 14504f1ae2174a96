#include "platform/jet/FileLocks.h"

#include "platform/jet/Error.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace vardelin::jet {

namespace {

constexpr std::chrono::milliseconds kPatience{2000};

// Every opening of this thread.
std::vector<FileLocks *> &openings()
{
    thread_local std::vector<FileLocks *> all;
    return all;
}

} // namespace

FileLocks::FileLocks(DiskFile &file) : m_file(file), m_identity(file.identity())
{
    openings().push_back(this);
}

FileLocks::~FileLocks()
{
    std::erase(openings(), this);
    giveAll();
}

FileLocks::Deadline FileLocks::deadline()
{
    return std::chrono::steady_clock::now() + kPatience;
}

bool FileLocks::tryTake(LockByte byte, LockKind kind)
{
    if (held(byte) == kind)
        return true;
    if (!m_file.tryLock(byte, kind))
        return false;
    held(byte) = kind;
    return true;
}

// Who waits holds the turn, and who comes later, or comes again, has to wait for the turn.
void FileLocks::take(LockByte byte, LockKind kind, Deadline deadline)
{
    if (held(byte) == kind)
        return;
    const LockByte turn = byte == LockByte::Reading ? LockByte::ReadTurn : LockByte::WriteTurn;
    waitFor(byte, turn, kind, deadline);
    try {
        waitFor(byte, byte, kind, deadline);
    } catch (...) {
        m_file.tryLock(turn, LockKind::None);
        throw;
    }
    m_file.tryLock(turn, LockKind::None);
    held(byte) = kind;
}

void FileLocks::waitFor(LockByte wanted, LockByte byte, LockKind kind, Deadline deadline)
{
    for (int attempt = 0; !m_file.tryLock(byte, kind); ++attempt) {
        if (blockedByOurselves(wanted, kind) || std::chrono::steady_clock::now() >= deadline)
            throw Error(Code::Locked);
        pause(attempt);
    }
}

void FileLocks::giveAll()
{
    tryTake(LockByte::Reading, LockKind::None);
    tryTake(LockByte::Writing, LockKind::None);
}

bool FileLocks::blockedByOurselves(LockByte byte, LockKind kind) const
{
    return std::any_of(openings().begin(), openings().end(), [&](FileLocks *other) {
        const LockKind theirs = other->held(byte);
        return other != this && other->m_identity == m_identity && theirs != LockKind::None &&
               (kind == LockKind::Exclusive || theirs == LockKind::Exclusive);
    });
}

// Short at first, for most locks are held for a millisecond or two.
void FileLocks::pause(int attempt)
{
    std::this_thread::sleep_for(std::chrono::microseconds(std::min(200 << std::min(attempt, 4), 2'000)));
}

} // namespace vardelin::jet
