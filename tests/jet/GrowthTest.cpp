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
    for (int round = 0; round < 2; ++round) {
        const auto more = growTo(*file, notes, 30000, 25);
        noteIds.insert(noteIds.end(), more.begin(), more.end());
        const auto moreRows = growTo(*file, rows, 250, 600);
        rowIds.insert(rowIds.end(), moreRows.begin(), moreRows.end());
        expectSound(path, "a growing file");
    }
    EXPECT_GT(std::filesystem::file_size(path), 700 * kPageSize);
    EXPECT_EQ(rowsOf(rows).size(), rowIds.size());
    EXPECT_EQ(std::get<std::u16string>(rowsOf(notes)[27][0]), std::u16string(30000, u'c'));
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
    growTo(*file, notes, 30000, 50);
    EXPECT_EQ(std::filesystem::file_size(path), size) << "free pages are used again";
    expectSound(path, "a file filled again");
}

// The last page that one bit map page of a map by reference stands for, and some beyond. The free page map no
// longer fits page 1 by then.
constexpr PageNo kBeyond = 32800;

void expectGrownPast(const std::filesystem::path &path, std::size_t rows, std::size_t units)
{
    EXPECT_GT(std::filesystem::file_size(path), std::uint64_t{kBeyond} * kPageSize);
    const auto file = File::open(path);
    std::size_t foundRows = 0, foundUnits = 0;
    Bytes store;
    for (Cursor at = file->table(u"Notes").scan(); !at.atEnd(); at.next(), ++foundRows)
        foundUnits += at.view().storedText(0, store)->size() / 2;
    EXPECT_EQ(foundRows, rows);
    EXPECT_EQ(foundUnits, units);
}

// The pages up to there are a hole in the file that nothing owns.
TEST(Growth, AcrossTheLimitOfABitMapPage)
{
    const TemporaryFolder folder;
    const auto path = folder / "large.mdb";
    Table *notes = nullptr;
    {
        auto file = File::create(path);
        notes = &file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
        growTo(*file, *notes, 3000, 4);
        file.reset();
        std::filesystem::resize_file(path, std::uint64_t{kBeyond - 100} * kPageSize);
        file = File::open(path);
        notes = &file->table(u"Notes");
        growTo(*file, *notes, 30000, 45); // what the map calls free first
        notes->erase(notes->scan().id());
        growTo(*file, *notes, 100, 30);
    }
    expectGrownPast(path, 4 + 45 - 1 + 30, 3 * 3000 + 45 * 30000 + 30 * 100);
    if (judge::present("growth across the limit of a bit map page")) {
        const judge::Said said = judge::check("--allow-leaks " + judge::quoted(path.string()));
        EXPECT_EQ(said.status, 0) << said.text;
    }
}

// The largest file that there can be, most of it a hole: what doesn't fit any more is refused, and nothing of
// it is written.
TEST(Growth, UpToTwoGibibytes)
{
    const TemporaryFolder folder;
    const auto path = folder / "full.mdb";
    {
        const auto file = File::create(path);
        file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
    }
    std::filesystem::resize_file(path, std::uint64_t{kMaxPages - 40} * kPageSize);
    auto file = File::open(path);
    Table &notes = file->table(u"Notes");
    const auto add = [&](std::size_t units) {
        return codeOf([&] { insertRow(notes, {std::u16string(units, u'n')}); });
    };
    std::vector<RowId> rows = growTo(*file, notes, 4072, 4); // what the map calls free first
    std::optional<Code> refused;
    for (std::size_t i = 0; i < 100 && !refused; ++i)
        refused = add(8 * 2036);
    EXPECT_EQ(refused, Code::FileTooLarge);
    const std::uint64_t size = std::filesystem::file_size(path);
    EXPECT_LE(size, std::uint64_t{kMaxPages} * kPageSize);
    EXPECT_GT(size, std::uint64_t{kMaxPages - 20} * kPageSize);
    const std::vector<Row> before = rowsOf(notes);
    EXPECT_EQ(add(100 * 2036), Code::FileTooLarge);
    {
        Scope scope(*file); // goes on with what fits
        EXPECT_EQ(add(100 * 2036), Code::FileTooLarge);
        notes.erase(rows[1]);
        scope.commit();
    }
    EXPECT_EQ(std::filesystem::file_size(path), size);
    file.reset();
    file = File::open(path);
    std::vector<Row> left = before;
    left.erase(left.begin() + 1);
    EXPECT_EQ(rowsOf(file->table(u"Notes")), left);
    EXPECT_EQ(codeOf([&] { insertRow(file->table(u"Notes"), {std::u16string(2036, u'm')}); }), std::nullopt)
        << "there is room again";
    EXPECT_EQ(folder.fileCount(), 1U);
}

// Past the limit of a bit map page with 140 MiB of memos, for which VARDELIN_LARGE must be set.
TEST(Growth, PastThirtyTwoThousandPages)
{
    if (!std::getenv("VARDELIN_LARGE")) {
        std::cout << "VARDELIN_LARGE isn't set: no file of 140 MiB is made.\n";
        return;
    }
    const TemporaryFolder folder;
    const auto path = folder / "large.mdb";
    {
        const auto file = File::create(path);
        Table &notes = file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
        growTo(*file, notes, 4072 / 2 * 3000, 11);
        growTo(*file, notes, 100, 50);
        notes.erase(notes.scan().id());
        growTo(*file, notes, 2000, 30);
    }
    expectGrownPast(path, 90, 10U * 4072 / 2 * 3000 + 50 * 100 + 30 * 2000);
    expectSound(path, "more than 32,736 pages");
}

} // namespace
} // namespace vardelin::jet::test
