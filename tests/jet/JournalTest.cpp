// Failing disks, and journals that a crash, another file or chance has left.

#include "platform/jet/Journal.h"
#include "tests/jet/PagerFixtures.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/MemoryDisk.h"

using namespace vardelin::jet;
using namespace vardelin::jet::test;
namespace fs = std::filesystem;

namespace {

const Bytes kOld = pagesOf(6, 1);
const Bytes kNew = changedTo(kOld, 2);

// A file and the journal beside it, as a crash leaves them.
struct Crashed
{
    Bytes file;
    Bytes journal;
};

// The n-th operation of a commit fails and so does everything after it, as if the machine had stopped there.
std::optional<Crashed> crashAt(int n)
{
    MemoryDisk memory;
    memory.put("a.mdb", kOld);
    FaultyDisk disk(memory);
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
    disk.failAt(n, FaultyDisk::Fault::FromThenOn);
    codeOf([&] { changeTo(*pager, 2); });
    if (!disk.hasFailed())
        return std::nullopt;
    return Crashed{memory.content("a.mdb"), memory.content("a.mdb-journal")};
}

// A crash with some pages written and some not.
Crashed crashHalfway()
{
    for (int n = 1;; ++n) {
        const std::optional<Crashed> crashed = crashAt(n);
        if (!crashed) {
            ADD_FAILURE() << "no crash in the middle";
            return {};
        }
        const Bytes page(crashed->file.begin() + 3 * kPageSize, crashed->file.begin() + 4 * kPageSize);
        if (crashed->file.size() == kNew.size() &&
            std::equal(page.begin(), page.end(), kNew.begin() + 3 * kPageSize) && crashed->file != kNew)
            return *crashed;
    }
}

} // namespace

// What is reported as saved is there, what is reported as failed is not, and the pager goes on. Only if the
// very last sync fails and the disk doesn't let us undo either, the whole commit may stand in spite of the
// report.
TEST(Journal, EveryFailureOfACommitLeavesTheOldStateOrTheNew)
{
    for (const Code code : {Code::WriteError, Code::DiskFull}) {
        for (const auto fault : {FaultyDisk::Fault::Once, FaultyDisk::Fault::FromThenOn}) {
            bool failed = true;
            int n = 0;
            while (failed) {
                MemoryDisk memory;
                memory.put("a.mdb", kOld);
                FaultyDisk disk(memory);
                const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
                disk.failAt(++n, fault, code);
                const std::optional<Code> reported = codeOf([&] { changeTo(*pager, 2); });
                failed = disk.hasFailed() || disk.operations() >= n;
                disk.heal();
                const Bytes now = readAll(disk, "a.mdb");
                const bool notEvenUndone = reported && fault == FaultyDisk::Fault::FromThenOn && now == kNew;
                EXPECT_TRUE(now == (reported ? kOld : kNew) || notEvenUndone) << "operation " << n;
                EXPECT_EQ(codeOf([&] { changeTo(*pager, 3); }), std::nullopt) << "operation " << n;
                EXPECT_TRUE(readAll(memory, "a.mdb") == changedTo(now, 3)) << "operation " << n;
                EXPECT_EQ(memory.names().size(), 1u) << "operation " << n;
            }
            EXPECT_GT(n, 12);
        }
    }
}

TEST(Journal, EveryFailureOfACreationLeavesNothingOrTheWholeFile)
{
    for (const auto fault : {FaultyDisk::Fault::Once, FaultyDisk::Fault::FromThenOn}) {
        bool failed = true;
        for (int n = 1; failed; ++n) {
            MemoryDisk memory;
            FaultyDisk disk(memory);
            disk.failAt(n, fault);
            const auto reported = codeOf([&] {
                const auto pager = Pager::open(disk, "a.mdb", Pager::Access::Create);
                WriteSection section(*pager);
                for (PageNo page = 0; page < 5; ++page)
                    fillPage(pager->change(pager->append()), page, 1);
                section.commit();
            });
            failed = disk.hasFailed();
            // From then on: even the undoing of a folder sync may be denied; what has the name is whole all
            // the same.
            const bool there = memory.isFile("a.mdb");
            EXPECT_TRUE(there || reported) << n;
            EXPECT_TRUE(!there || memory.content("a.mdb") == pagesOf(5, 1)) << n;
            EXPECT_TRUE(!there || !reported || fault == FaultyDisk::Fault::FromThenOn) << n;
        }
    }
}

TEST(Journal, ACrashAtAnyOperationIsUndoneEvenIfTheUndoingCrashes)
{
    for (int n = 1; const std::optional<Crashed> crashed = crashAt(n); ++n) {
        bool failed = true;
        for (int m = 1; failed; ++m) {
            MemoryDisk memory;
            memory.put("a.mdb", crashed->file);
            if (!crashed->journal.empty())
                memory.put("a.mdb-journal", crashed->journal);
            FaultyDisk disk(memory);
            disk.failAt(m, FaultyDisk::Fault::FromThenOn);
            codeOf([&] { Pager::open(disk, "a.mdb", Pager::Access::Read); });
            failed = disk.hasFailed();
            const Bytes now = readAll(memory, "a.mdb");
            EXPECT_TRUE(now == kOld || now == kNew) << "crash at " << n << ", again at " << m;
            EXPECT_EQ(memory.names().size(), 1u) << "crash at " << n << ", again at " << m;
        }
    }
}

TEST(Journal, OnlyAWholeOneOfThisFileIsPlayedBack)
{
    const Crashed crashed = crashHalfway();
    const auto left = [](const Bytes &file, const Bytes &journal) {
        MemoryDisk memory;
        memory.put("a.mdb", file);
        memory.put("a.mdb-journal", journal);
        const Bytes now = readAll(memory, "a.mdb");
        const auto pager = Pager::open(memory, "a.mdb", Pager::Access::ReadWrite);
        EXPECT_EQ(codeOf([&] { changeTo(*pager, 5); }),
                  std::nullopt); // whatever it was, it is in nobody's way
        EXPECT_FALSE(memory.isFile("a.mdb-journal"));
        return std::pair(now, memory.content("a.mdb-journal-unused"));
    };
    EXPECT_TRUE(left(crashed.file, crashed.journal).first == kOld);

    for (std::size_t length = 0; length < crashed.journal.size(); length += length < 600 ? 1 : 97) {
        const Bytes cut(crashed.journal.begin(),
                        crashed.journal.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_TRUE(left(crashed.file, cut).first == crashed.file) << "cut to " << length;
    }
    for (std::size_t at = 0; at < crashed.journal.size(); at += at < 700 ? 1 : 61) {
        Bytes spoilt = crashed.journal;
        spoilt[at] ^= std::byte{0x10};
        if (at >= 64 && at < 512)
            continue; // blank space of the header
        ASSERT_TRUE(left(crashed.file, spoilt).first == crashed.file) << "spoilt at " << at;
    }
    Bytes longer = crashed.journal;
    longer.push_back(std::byte{0});
    EXPECT_EQ(left(crashed.file, longer).first, crashed.file);

    const Bytes letter(9000, std::byte{'x'}); // not ours, so it is kept
    EXPECT_EQ(left(kOld, letter), std::pair(kOld, letter));
    const Bytes other = pagesOf(6, 7);
    EXPECT_EQ(left(other, crashed.journal), std::pair(other, crashed.journal));
    // The same file, but something was written to it since.
    Bytes later = crashed.file;
    fillPage(&later[4 * kPageSize], 4, 8);
    EXPECT_EQ(left(later, crashed.journal), std::pair(later, crashed.journal));
    Bytes grown = crashed.file;
    grown.resize(grown.size() + kPageSize);
    EXPECT_EQ(left(grown, crashed.journal).first, grown);
    Bytes header = crashed.file; // a page that the journal doesn't hold tells another database
    header[100] ^= std::byte{1};
    EXPECT_EQ(left(header, crashed.journal).first, header);
    // A commit that was complete stays, even if its journal comes back.
    EXPECT_EQ(left(kNew, crashed.journal).first, kNew);
    EXPECT_EQ(left(kOld, crashed.journal).first, kOld);
}

TEST(Journal, LinksFoldersAndPipesOfItsNameAreNotFollowed)
{
    const Crashed crashed = crashHalfway();
    const TemporaryFolder folder;
    const fs::path path = folder / "a.mdb";
    const auto check = [&] {
        EXPECT_EQ(readAll(systemDisk(), path), crashed.file);
        EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "a.mdb-journal")));
        const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
        changeTo(*pager, 5);
        writeFile(path, crashed.file);
    };
    writeFile(path, crashed.file);
    writeFile(folder / "real", crashed.journal);
    fs::create_symlink(folder / "real", folder / "a.mdb-journal");
    check();
    EXPECT_EQ(readFile(folder / "real"), crashed.journal);
    fs::create_symlink(folder / "nowhere", folder / "a.mdb-journal");
    check();
    ASSERT_EQ(::mkfifo((folder / "a.mdb-journal").c_str(), 0600), 0);
    check();
    fs::remove(folder / "a.mdb-journal-unused");
    fs::create_directory(folder / "a.mdb-journal");
    check();
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST(Journal, IsFoundBesideTheRealFileUnderAnyName)
{
    const Crashed crashed = crashHalfway();
    const TemporaryFolder folder;
    fs::create_directory(folder / "office");
    writeFile(folder / "office/a.mdb", crashed.file);
    writeFile(folder / "office/a.mdb-journal", crashed.journal);
    fs::create_symlink("office/a.mdb", folder / "link.mdb");
    EXPECT_EQ(readAll(systemDisk(), folder / "link.mdb"), kOld);
    EXPECT_FALSE(fs::exists(folder / "office/a.mdb-journal"));
}

TEST(Journal, AReaderWithoutTheRightToWriteRefusesAHalfWrittenFile)
{
    const Crashed crashed = crashHalfway();
    MemoryDisk memory;
    memory.put("a.mdb", crashed.file);
    memory.put("a.mdb-journal", crashed.journal);
    memory.setReadOnly(true);
    EXPECT_EQ(codeOf([&] { readAll(memory, "a.mdb"); }), Code::ReadOnlyDatabase);
    EXPECT_EQ(memory.content("a.mdb-journal"), crashed.journal);
    memory.put("a.mdb", kNew);
    EXPECT_EQ(readAll(memory, "a.mdb"), kNew); // that one is in order as it is
}
