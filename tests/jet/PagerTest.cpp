// Sections, savepoints, sharing and odd files.

#include "tests/jet/PagerFixtures.h"
#include "tests/support/MemoryDisk.h"

#include <chrono>
#include <random>
#include <thread>

using namespace vardelin::jet;
using namespace vardelin::jet::test;
namespace fs = std::filesystem;

namespace {

std::uint32_t firstWord(Pager &pager, PageNo page)
{
    std::uint32_t word = 0;
    std::memcpy(&word, pager.page(page), sizeof word);
    return word;
}

} // namespace

TEST(Pager, CreatesAFileWithItsFirstCommit)
{
    const TemporaryFolder folder;
    const fs::path path = folder / "new.mdb";
    {
        const auto pager = Pager::open(systemDisk(), path, Pager::Access::Create);
        WriteSection section(*pager);
        pager->append();
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_EQ(folder.fileCount(), 0u); // nothing committed, nothing left

    writeFile(folder / "new.mdb-new", pagesOf(3, 9)); // what somebody left who died while he made one
    const auto pager = Pager::open(systemDisk(), path, Pager::Access::Create);
    WriteSection section(*pager);
    for (PageNo page = 0; page < 5; ++page)
        fillPage(pager->change(pager->append()), page, 1);
    section.commit();
    EXPECT_EQ(readFile(path), pagesOf(5, 1));
    changeTo(*pager, 2);
    EXPECT_EQ(readAll(systemDisk(), path), changedTo(pagesOf(5, 1), 2));
    EXPECT_EQ(folder.fileCount(), 1u);

    EXPECT_EQ(codeOf([&] { Pager::open(systemDisk(), path, Pager::Access::Create); }), Code::DatabaseExists);
    EXPECT_EQ(codeOf([&] { Pager::open(systemDisk(), folder / "none/new.mdb", Pager::Access::Create); }),
              Code::PathNotFound);
}

TEST(Pager, ANameTakenMeanwhileIsNotOverwritten)
{
    const TemporaryFolder folder;
    const auto pager = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::Create);
    writeFile(folder / "a.mdb", pagesOf(1, 7));
    pager->beginWrite();
    pager->append();
    EXPECT_EQ(codeOf([&] { pager->commit(); }), Code::DatabaseExists);
    EXPECT_EQ(readFile(folder / "a.mdb"), pagesOf(1, 7));
}

TEST(Pager, ReadsChangesAndUndoes)
{
    const TemporaryFolder folder;
    MemoryDisk memory;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    memory.put("a.mdb", pagesOf(6, 1));
    const std::pair<Disk *, fs::path> places[] = {{&systemDisk(), folder / "a.mdb"}, {&memory, "a.mdb"}};
    for (const auto &[disk, path] : places) {
        const auto pager = Pager::open(*disk, path, Pager::Access::ReadWrite);
        const ReadSection outer(*pager);
        const std::byte *before = pager->page(3);
        const std::uint64_t version = pager->version();
        EXPECT_EQ(std::memcmp(before, &pagesOf(6, 1)[3 * kPageSize], kPageSize), 0);
        EXPECT_EQ(codeOf([&] { pager->page(6); }), Code::Damaged);
        {
            const WriteSection dropped(*pager);
            fillPage(pager->change(3), 3, 5);
            EXPECT_EQ(pager->append(), 6u);
            EXPECT_EQ(pager->pageCount(), 7u);
            EXPECT_NE(pager->page(3), before);
        }
        EXPECT_EQ(pager->page(3), before);
        EXPECT_EQ(pager->pageCount(), 6u);
        EXPECT_NE(pager->version(), version);

        const std::uint64_t between = pager->version();
        changeTo(*pager, 2);
        EXPECT_NE(pager->version(), between);
        EXPECT_EQ(pager->page(3), before); // the page of the section around it, with the new content
        EXPECT_EQ(std::memcmp(before, &changedTo(pagesOf(6, 1), 2)[3 * kPageSize], kPageSize), 0);
        EXPECT_EQ(readAll(*disk, path), changedTo(pagesOf(6, 1), 2));
    }
    EXPECT_EQ(folder.fileCount(), 1u);
    EXPECT_EQ(memory.names().size(), 1u);
}

// Thousands of random steps against the plainest model of nested sections: a stack of whole copies.
TEST(Pager, InnerSectionsUndoThemselvesAlone)
{
    MemoryDisk disk;
    disk.put("a.mdb", pagesOf(8, 0));
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
    std::mt19937 random(20261122);
    const auto pick = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    std::vector<std::uint32_t> committed(8);
    for (PageNo page = 0; page < 8; ++page)
        std::memcpy(&committed[page], &pagesOf(8, 0)[page * kPageSize], 4);
    std::vector<std::vector<std::uint32_t>> levels; // first word of each page
    for (int step = 0; step < 30000; ++step) {
        const std::size_t what = pick(10);
        if (levels.empty() || (what == 0 && levels.size() < 6)) {
            pager->beginWrite();
            levels.push_back(levels.empty() ? committed : levels.back());
        } else if (what == 1) {
            pager->commit();
            (levels.size() > 1 ? levels[levels.size() - 2] : committed) = levels.back();
            levels.pop_back();
        } else if (what == 2) {
            pager->rollback();
            levels.pop_back();
        } else if (what == 3 && levels.back().size() < 60) {
            ASSERT_EQ(pager->append(), levels.back().size());
            levels.back().push_back(0);
        } else {
            const std::size_t page = pick(levels.back().size());
            const auto value = static_cast<std::uint32_t>(step);
            std::memcpy(pager->change(static_cast<PageNo>(page)), &value, 4);
            levels.back()[page] = value;
        }
        const ReadSection look(*pager);
        const std::vector<std::uint32_t> &now = levels.empty() ? committed : levels.back();
        ASSERT_EQ(pager->pageCount(), now.size()) << step;
        for (PageNo page = 0; page < now.size(); ++page)
            ASSERT_EQ(firstWord(*pager, page), now[page]) << "step " << step << " page " << page;
    }
}

TEST(Pager, NoticesWhatOthersCommit)
{
    const TemporaryFolder folder;
    MemoryDisk memory;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    memory.put("a.mdb", pagesOf(6, 1));
    const std::pair<Disk *, fs::path> places[] = {{&systemDisk(), folder / "a.mdb"}, {&memory, "a.mdb"}};
    for (const auto &[disk, path] : places) {
        const auto one = Pager::open(*disk, path, Pager::Access::ReadWrite);
        const auto two = Pager::open(*disk, path, Pager::Access::ReadWrite);
        for (std::uint32_t generation = 2; generation < 40; ++generation) {
            std::uint64_t version = 0;
            {
                const ReadSection section(*one);
                version = one->version();
            }
            changeTo(*two, generation, generation % 2);
            const ReadSection section(*one);
            EXPECT_NE(one->version(), version) << generation;
            EXPECT_EQ(
                std::memcmp(one->page(4), &changedTo(pagesOf(6, 1), generation)[4 * kPageSize], kPageSize),
                0);
            EXPECT_EQ(one->pageCount(), 6 + (generation + 1) / 2 - 1);
        }
    }
}

TEST(Pager, RefusesWhatIsNoDatabaseByItsLength)
{
    const TemporaryFolder folder;
    const auto opening = [&](const char *name) {
        return codeOf([&] { Pager::open(systemDisk(), folder / name, Pager::Access::ReadWrite); });
    };
    EXPECT_EQ(opening("none.mdb"), Code::FileNotFound);
    EXPECT_EQ(opening("none/none.mdb"), Code::PathNotFound);
    fs::create_directory(folder / "folder.mdb");
    EXPECT_EQ(opening("folder.mdb"), Code::CannotOpenFile);
    writeFile(folder / "empty.mdb", {});
    EXPECT_EQ(opening("empty.mdb"), Code::NewerFormat);
    writeFile(folder / "letter.mdb", Bytes(5000, std::byte{'a'}));
    EXPECT_EQ(opening("letter.mdb"), Code::NewerFormat);

    Bytes cut(kPageSize * 2 + 100);
    std::memcpy(cut.data(), "\0\1\0\0Standard Jet DB", 19);
    writeFile(folder / "cut.mdb", cut);
    EXPECT_EQ(opening("cut.mdb"), Code::Damaged);
    EXPECT_EQ(readFile(folder / "cut.mdb"), cut);

    writeFile(folder / "large.mdb", {});
    fs::resize_file(folder / "large.mdb", (std::uintmax_t{2} << 30) + kPageSize);
    EXPECT_EQ(opening("large.mdb"), Code::FileTooLarge);
    fs::resize_file(folder / "large.mdb", std::uintmax_t{2} << 30);
    EXPECT_EQ(opening("large.mdb"), std::nullopt);
    const auto full = Pager::open(systemDisk(), folder / "large.mdb", Pager::Access::ReadWrite);
    const WriteSection section(*full);
    EXPECT_EQ(codeOf([&] { full->append(); }), Code::FileTooLarge);
}

// Without a guard the program would end here, and what the user has typed with it.
TEST(Pager, SurvivesAFileThatIsCutOffWhileItIsRead)
{
    const TemporaryFolder folder;
    const fs::path path = folder / "a.mdb";
    writeFile(path, pagesOf(20, 1));
    const auto pager = Pager::open(systemDisk(), path, Pager::Access::ReadWrite);
    {
        const ReadSection section(*pager);
        fs::resize_file(path, 5 * kPageSize);
        const volatile std::byte *gone = pager->page(15);
        EXPECT_EQ(static_cast<int>(gone[100]), 0);
        EXPECT_EQ(codeOf([&] { pager->page(1); }), Code::IoError);
    }
    {
        WriteSection section(*pager); // the next section sees the file as it is
        EXPECT_EQ(pager->pageCount(), 5u);
        EXPECT_EQ(codeOf([&] { pager->page(15); }), Code::Damaged);
        EXPECT_EQ(std::memcmp(pager->page(4), &pagesOf(5, 1)[4 * kPageSize], kPageSize), 0);
        pager->change(1);
        fs::resize_file(path, 2 * kPageSize);
        pager->change(2); // its zeros must not be taken for the page
        EXPECT_EQ(codeOf([&] { section.commit(); }), Code::IoError);
    }
    EXPECT_EQ(readFile(path), pagesOf(2, 1));
}

TEST(Pager, ReadsWhatItMayNotWrite)
{
    MemoryDisk disk;
    disk.put("a.mdb", pagesOf(6, 1));
    const auto reader = Pager::open(disk, "a.mdb", Pager::Access::Read);
    EXPECT_FALSE(reader->canWrite());
    EXPECT_EQ(codeOf([&] { reader->beginWrite(); }), Code::ReadOnlyDatabase);
    disk.setReadOnly(true);
    const auto pager = Pager::open(disk, "a.mdb", Pager::Access::ReadWrite);
    EXPECT_FALSE(pager->canWrite());
    EXPECT_EQ(codeOf([&] { pager->beginWrite(); }), Code::ReadOnlyDatabase);
    EXPECT_EQ(readAll(disk, "a.mdb"), pagesOf(6, 1));
}

TEST(Pager, DoesNotWriteToAFileThatHasGone)
{
    const TemporaryFolder folder;
    writeFile(folder / "a.mdb", pagesOf(6, 1));
    const auto pager = Pager::open(systemDisk(), folder / "a.mdb", Pager::Access::ReadWrite);
    fs::rename(folder / "a.mdb", folder / "b.mdb");
    EXPECT_EQ(codeOf([&] { changeTo(*pager, 2); }), Code::FileNotFound);
    writeFile(folder / "a.mdb", pagesOf(6, 3));
    EXPECT_EQ(codeOf([&] { changeTo(*pager, 2); }), Code::FileNotFound);
    EXPECT_EQ(readFile(folder / "a.mdb"), pagesOf(6, 3));
    EXPECT_EQ(readFile(folder / "b.mdb"), pagesOf(6, 1));
}
