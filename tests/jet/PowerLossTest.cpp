// The power fails at every point of a recorded run, and what wasn't synced fares in every way.

#include "tests/jet/PagerFixtures.h"
#include "tests/support/RecordingDisk.h"

using namespace vardelin::jet;
using namespace vardelin::jet::test;

namespace {

struct Moment
{
    std::size_t step; // steps recorded when the commit had returned
    Bytes content;
};

// Checks each point of the trace: the content is that of the last commit reported by then, or of the one
// under way. first: the content before the first moment; empty: there was no file.
void failEverywhere(const RecordingDisk &disk, const Bytes &first, const std::vector<Moment> &moments)
{
    std::vector<RecordingDisk::Loss> losses = {{0, 0, false}, {1, 0, false}};
    for (const double kept : {0.1, 0.5, 0.9}) {
        for (const std::size_t tear : {std::size_t{0}, std::size_t{512}, std::size_t{4096}})
            losses.insert(losses.end(), 3, {kept, tear, true});
    }
    std::mt19937 random(1815);
    for (std::size_t done = 0; done <= disk.steps().size(); ++done) {
        Bytes reported = first, next = first;
        for (const Moment &moment : moments) {
            next = moment.content;
            if (moment.step > done)
                break;
            reported = moment.content;
        }
        for (std::size_t i = 0; i < losses.size(); ++i) {
            const auto after = disk.afterPowerLoss(done, losses[i], random);
            const Bytes found = after->isFile("a.mdb") ? readAll(*after, "a.mdb") : Bytes{};
            ASSERT_TRUE(found == reported || found == next) << "after step " << done << ", loss " << i;
            ASSERT_FALSE(after->isFile("a.mdb-journal-unused")) << "after step " << done << ", loss " << i;
        }
    }
}

} // namespace

TEST(PowerLoss, LeavesTheLastCommitOrTheNextOne)
{
    MemoryDisk memory;
    memory.put("a.mdb", pagesOf(6, 1));
    RecordingDisk disk(memory);
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
    std::vector<Moment> moments;
    Bytes content = pagesOf(6, 1);
    for (std::uint32_t generation = 2; generation < 8; ++generation) {
        const PageNo appended = generation % 3;
        changeTo(*pager, generation, appended);
        content = changedTo(content, generation, appended);
        moments.push_back({disk.steps().size(), content});
    }
    failEverywhere(disk, pagesOf(6, 1), moments);
}

TEST(PowerLoss, LeavesNoFileOrAWholeNewOne)
{
    MemoryDisk memory;
    RecordingDisk disk(memory);
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::Create);
    WriteSection section(*pager);
    for (PageNo page = 0; page < 6; ++page)
        fillPage(pager->change(pager->append()), page, 1);
    section.commit();
    std::vector<Moment> moments = {{disk.steps().size(), pagesOf(6, 1)}};
    changeTo(*pager, 2);
    moments.push_back({disk.steps().size(), changedTo(pagesOf(6, 1), 2)});
    failEverywhere(disk, {}, moments);
}

// The power fails, and fails again while the damage is being undone.
TEST(PowerLoss, DuringPlaybackDoesNoHarm)
{
    MemoryDisk memory;
    memory.put("a.mdb", pagesOf(6, 1));
    RecordingDisk disk(memory);
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
    changeTo(*pager, 2);
    std::mt19937 random(1848);
    int interrupted = 0;
    for (int round = 0; round < 400; ++round) {
        const std::size_t done = random() % (disk.steps().size() + 1);
        const auto once = disk.afterPowerLoss(done, {0.5, 512, true}, random);
        const Bytes crashed = once->content("a.mdb");
        RecordingDisk recovering(*once);
        const Bytes settled = readAll(recovering, "a.mdb");
        ASSERT_TRUE(settled == pagesOf(6, 1) || settled == changedTo(pagesOf(6, 1), 2));
        interrupted += settled != crashed;
        for (std::size_t again = 0; again <= recovering.steps().size(); ++again) {
            const auto twice = recovering.afterPowerLoss(again, {0.5, 512, true}, random);
            ASSERT_EQ(readAll(*twice, "a.mdb"), settled) << "round " << round << ", step " << again;
        }
    }
    EXPECT_GT(interrupted, 40);
}
