// Files that outgrow their usage maps, row by row the same as small ones.

#include "tests/jet/RowFixtures.h"

namespace vardelin::jet::test {
namespace {

// Notes of `units` characters until the file has so many pages.
std::vector<RowId> growTo(File &file, Table &table, std::size_t units, std::uint64_t rows)
{
    std::vector<RowId> ids;
    Scope scope(file);
    for (std::uint64_t i = 0; i < rows; ++i)
        ids.push_back(insertRow(table, {std::u16string(units, static_cast<char16_t>(u'a' + i % 26))}));
    scope.commit();
    return ids;
}

TEST(Growth, PastTheInlineMapsAndBack)
{
    const TemporaryFolder folder;
    const auto path = folder / "grown.mdb";
    const auto file = File::create(path);
    Table &notes = file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
    Table &rows = file->createTable({u"Rows", {textColumn(u"A", 255)}, {{u"ByA", {{u"A", false}}}}});
    std::vector<RowId> noteIds, rowIds;
    for (int round = 0; round < 4; ++round) {
        const auto more = growTo(*file, notes, 30000, 20);
        noteIds.insert(noteIds.end(), more.begin(), more.end());
        const auto moreRows = growTo(*file, rows, 250, 700);
        rowIds.insert(rowIds.end(), moreRows.begin(), moreRows.end());
        expectSound(path, "a growing file");
    }
    EXPECT_GT(std::filesystem::file_size(path), 1200 * kPageSize);
    EXPECT_EQ(rowsOf(rows).size(), rowIds.size());
    EXPECT_EQ(std::get<std::u16string>(rowsOf(notes)[27][0]), std::u16string(30000, u'h'));
    const auto size = std::filesystem::file_size(path);
    {
        Scope scope(*file);
        for (const RowId id : noteIds)
            notes.erase(id);
        for (const RowId id : rowIds)
            rows.erase(id);
        scope.commit();
    }
    expectSound(path, "an emptied file");
    growTo(*file, notes, 30000, 80);
    EXPECT_EQ(std::filesystem::file_size(path), size) << "free pages are used again";
    expectSound(path, "a file filled again");
}

// 140 MiB of memos: the free page map no longer fits page 1, and maps by reference need a second bit map
// page.
TEST(Growth, PastThirtyTwoThousandPages)
{
    const TemporaryFolder folder;
    const auto path = folder / "large.mdb";
    std::size_t pages = 0;
    {
        const auto file = File::create(path);
        Table &notes = file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
        growTo(*file, notes, 4072 / 2 * 3000, 11);
        const auto small = growTo(*file, notes, 100, 50);
        EXPECT_EQ(notes.rowCount(), 61U);
        notes.erase(notes.scan().id());
        growTo(*file, notes, 2000, 30);
        pages = std::filesystem::file_size(path) / kPageSize;
    }
    EXPECT_GT(pages, 32800U);
    const auto file = File::open(path);
    const Table &notes = file->table(u"Notes");
    std::size_t units = 0, count = 0;
    Bytes store;
    for (Cursor at = notes.scan(); !at.atEnd(); at.next(), ++count)
        units += at.view().storedText(0, store).size() / 2;
    EXPECT_EQ(count, 90U);
    EXPECT_EQ(units, 10U * 4072 / 2 * 3000 + 50 * 100 + 30 * 2000);
    expectSound(path, "more than 32,736 pages");
}

} // namespace
} // namespace vardelin::jet::test
