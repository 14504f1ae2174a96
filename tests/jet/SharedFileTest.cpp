// Several openings of one file: in one process, in two, and in one that is killed.

#include "platform/jet/Journal.h"
#include "tests/jet/PagerFixtures.h"
#include "tests/jet/Processes.h"

#include <chrono>
#include <random>
#include <thread>

using namespace vardelin::jet;
using namespace vardelin::jet::test;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

std::uint64_t counter(const std::byte *page)
{
    std::uint64_t value = 0;
    std::memcpy(&value, page, sizeof value);
    return value;
}

void setCounter(std::byte *page, std::uint64_t value)
{
    std::memcpy(page, &value, sizeof value);
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

TEST(SharedFile, OneThreadDoesNotWaitForItself)
{
    const TemporaryFolder folder;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    const auto one = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::ReadWrite);
    const auto two = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::ReadWrite);
    const auto start = Clock::now();
    {
        const ReadSection standing(*one);
        EXPECT_EQ(codeOf([&] { changeTo(*two, 2); }), Code::Locked);
        EXPECT_EQ(folder.fileCount(), 1u);
        EXPECT_EQ(std::memcmp(one->page(3), &pagesOf(6, 1)[3 * kPageSize], kPageSize), 0);
    }
    {
        const WriteSection section(*one);
        EXPECT_EQ(codeOf([&] { two->beginWrite(); }), Code::Locked);
        EXPECT_EQ(readAll(systemDisk(), folder / "a.mdb"), pagesOf(6, 1)); // reading is free
    }
    EXPECT_LT(secondsSince(start), 1.0);
    changeTo(*two, 2);
    EXPECT_EQ(readAll(systemDisk(), folder / "a.mdb"), changedTo(pagesOf(6, 1), 2));
}

TEST(SharedFile, ExclusiveMeansAlone)
{
    const TemporaryFolder folder;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    const auto open = [&](Pager::Access access, Pager::Sharing sharing) {
        return Pager::open(systemDisk(), folder / "a.mdb", access, sharing);
    };
    const auto refused = [&](Pager::Access access, Pager::Sharing sharing) {
        return codeOf([&] { open(access, sharing); });
    };
    {
        const auto shared = open(Pager::Access::Read, Pager::Sharing::Shared);
        EXPECT_EQ(refused(Pager::Access::ReadWrite, Pager::Sharing::Exclusive), Code::FileInUse);
        EXPECT_EQ(refused(Pager::Access::ReadWrite, Pager::Sharing::Shared), std::nullopt);
    }
    const auto alone = open(Pager::Access::ReadWrite, Pager::Sharing::Exclusive);
    EXPECT_EQ(refused(Pager::Access::Read, Pager::Sharing::Shared), Code::FileInUse);
    changeTo(*alone, 2);
    Child other([&] {
        if (codeOf([&] { open(Pager::Access::Read, Pager::Sharing::Shared); }) != Code::FileInUse)
            throw std::runtime_error("not refused");
    });
    EXPECT_EQ(other.wait(), 0);
}

TEST(SharedFile, WaitsAMomentForAnotherThenGivesUp)
{
    const TemporaryFolder folder;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    Pipe ready, go;
    Child other([&] {
        const auto pager = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::ReadWrite);
        pager->beginWrite();
        fillPage(pager->change(3), 3, 9);
        ready.send('r');
        go.receive<char>();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        pager->commit();
    });
    ready.receive<char>();
    const auto pager = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::ReadWrite);
    auto start = Clock::now();
    EXPECT_EQ(codeOf([&] { pager->beginWrite(); }), Code::Locked);
    EXPECT_GT(secondsSince(start), 1.5);
    EXPECT_LT(secondsSince(start), 4.0);
    go.send('g');
    changeTo(*pager, 2); // comes behind the other's commit
    EXPECT_EQ(other.wait(), 0);
    EXPECT_EQ(readAll(systemDisk(), folder / "a.mdb"), changedTo(pagesOf(6, 1), 2));
}

// A dead writer's journal is played back; a living one's isn't touched.
TEST(SharedFile, TellsADeadWriterFromALivingOne)
{
    const TemporaryFolder folder;
    const fs::path path = folder / "a.mdb";
    const Bytes old = pagesOf(6, 1);
    const Bytes half = [&] {
        Bytes bytes = changedTo(old, 2, 0);
        std::copy_n(&old[3 * kPageSize], kPageSize, &bytes[3 * kPageSize]);
        return bytes;
    }();
    writeFile(path, old);
    Pipe ready;
    Child writer([&] {
        const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
        pager->beginWrite();
        const auto file = systemDisk().open(path, Disk::Mode::ReadWrite);
        const Bytes fresh = changedTo(old, 2, 0);
        std::vector<PageChange> changes;
        for (const PageNo page : {PageNo{1}, PageNo{3}, PageNo{4}})
            changes.push_back({page, &old[page * kPageSize], &fresh[page * kPageSize]});
        writeJournal(systemDisk(), journalPath(path), *file, 6, 6, old.data(), changes);
        ready.send('r');
        ::pause();
    });
    ready.receive<char>();
    const auto reader = Pager::open(systemDisk(), path, Pager::Access::Read); // open before the crash
    EXPECT_EQ(readAll(systemDisk(), path), old);
    EXPECT_TRUE(fs::exists(journalPath(path)));
    writeFile(path, half); // as if it had died in the middle of writing
    writer.kill();
    {
        const ReadSection section(*reader);
        EXPECT_EQ(std::memcmp(reader->page(1), &old[kPageSize], kPageSize), 0);
    }
    EXPECT_FALSE(fs::exists(journalPath(path)));
    EXPECT_EQ(readFile(path), old);
}

// Two processes count in two pages each; whoever reads finds the same number in both, and at the end nothing
// is missing.
TEST(SharedFile, TwoWritersAndAReaderNeverSeeHalfACommit)
{
    constexpr std::uint64_t kRounds = 150;
    const TemporaryFolder folder;
    const fs::path path = folder / "a.mdb";
    writeFile(path, Bytes(6 * kPageSize));
    const auto count = [&] {
        const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
        for (std::uint64_t i = 0; i < kRounds; ++i) {
            WriteSection section(*pager);
            const std::uint64_t next = counter(pager->page(1)) + 1;
            setCounter(pager->change(1), next);
            setCounter(pager->change(5), next);
            setCounter(pager->change(pager->append()), next);
            section.commit();
        }
    };
    Child one(count), two(count);
    const auto pager = Pager::open(systemDisk(), path, Pager::Access::Read);
    std::uint64_t seen = 0;
    for (const auto start = Clock::now(); seen < 2 * kRounds && secondsSince(start) < 50;) {
        {
            const ReadSection section(*pager);
            const std::uint64_t now = counter(pager->page(1));
            ASSERT_GE(now, seen);
            ASSERT_EQ(counter(pager->page(5)), now);
            ASSERT_EQ(pager->pageCount(), 6 + now);
            ASSERT_EQ(counter(pager->page(pager->pageCount() - 1)),
                      now); // before the first commit page 5, which counts 0
            seen = now;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
    EXPECT_EQ(one.wait(), 0);
    EXPECT_EQ(two.wait(), 0);
    EXPECT_EQ(seen, 2 * kRounds);
}

// Killed at random moments. VARDELIN_KILLS sets the number of rounds.
TEST(SharedFile, AKilledWriterLeavesAWholeState)
{
    const int rounds = countFrom("VARDELIN_KILLS", 25);
    const TemporaryFolder folder;
    const fs::path path = folder / "a.mdb";
    writeFile(path, Bytes(40 * kPageSize));
    std::mt19937 random(static_cast<unsigned>(::getpid()));
    std::uint64_t value = 0;
    int undone = 0;
    for (int round = 0; round < rounds; ++round) {
        Pipe reports;
        Child writer([&] {
            const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
            for (std::uint64_t next = value + 1;; ++next) {
                WriteSection section(*pager);
                for (PageNo page = 0; page < 40; ++page)
                    setCounter(pager->change(page), next);
                setCounter(pager->change(pager->append()), next);
                section.commit();
                reports.send(next);
            }
        });
        reports.closeWriting();
        std::this_thread::sleep_for(std::chrono::microseconds(5000 + random() % 60000));
        writer.kill();
        const std::uint64_t reported = reports.last(value);
        undone += fs::exists(journalPath(path));

        const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
        const ReadSection section(*pager);
        const std::uint64_t found = counter(pager->page(0));
        ASSERT_TRUE(found == reported || found == reported + 1)
            << found << " found, " << reported << " reported";
        ASSERT_EQ(pager->pageCount(), 40 + found);
        for (PageNo page = 0; page < 40; ++page)
            ASSERT_EQ(counter(pager->page(page)), found) << page;
        for (PageNo page = 40; page < pager->pageCount(); ++page)
            ASSERT_EQ(counter(pager->page(page)), page - 39) << page;
        ASSERT_EQ(folder.fileCount(), 1u);
        value = found;
    }
    std::printf("%d rounds, %d with a journal left, %llu commits\n", rounds, undone,
                static_cast<unsigned long long>(value));
}
