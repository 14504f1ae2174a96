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

void FileLocks::take(LockByte byte, LockKind kind, Deadline deadline)
{
    for (int attempt = 0; !tryTake(byte, kind); ++attempt) {
        if (blockedByOurselves(byte, kind) || std::chrono::steady_clock::now() >= deadline)
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
    std::this_thread::sleep_for(std::chrono::microseconds(std::min(200 << std::min(attempt, 6), 10'000)));
}

} // namespace vardelin::jet
