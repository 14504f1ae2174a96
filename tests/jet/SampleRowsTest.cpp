// Files of other programs: read with equal values, changed without harm. The samples lie beside the project.

#include "tests/jet/RowFixtures.h"

#include <algorithm>

namespace vardelin::jet::test {
namespace {

const std::filesystem::path kSamples = judge::kFolder / "samples";

class SampleRows : public testing::TestWithParam<const char *>
{
};

TEST_P(SampleRows, HaveTheValuesThatTheJudgeReads)
{
    if (!judge::present(GetParam()))
        return;
    const auto file = File::open(kSamples / GetParam(), {.readOnly = true});
    expectSameValues(*file);
}

// Every table that isn't refused takes a copy of its own first row's memos and loses a row; the rest stays.
TEST_P(SampleRows, TakeChanges)
{
    if (!judge::present(GetParam()))
        return;
    const TemporaryFolder folder;
    const auto path = folder / "copy.mdb";
    writeFile(path, readFile(kSamples / GetParam()));
    {
        const auto file = File::open(path);
        file->createTable({u"Ours", {textColumn(u"A", 20), plainColumn(u"B", ColumnType::Memo)}, {}});
        insertRow(file->table(u"Ours"), {std::u16string(u"new"), std::u16string(5000, u'n')});
        for (const std::u16string &name : file->tableNames()) {
            Table &table = file->table(name);
            std::vector<RowId> ids;
            for (Cursor at = table.scan(); !at.atEnd(); at.next())
                ids.push_back(at.id());
            if (ids.empty())
                continue;
            for (std::size_t i = 0; i < table.columns().size(); ++i) {
                if (table.columns()[i].type == ColumnType::Memo)
                    updateCell(table, ids.front(), i, std::u16string(3000, u'm'));
            }
            const auto refused = codeOf([&] { table.erase(ids.back()); });
            EXPECT_TRUE(!refused || refused == Code::RelatedRecords);
        }
        expectSameValues(*file);
    }
    const judge::Said said = judge::check("--allow-leaks " + judge::quoted(path.string()));
    EXPECT_EQ(said.status, 0) << said.text;
}

// A row refers to one that is there, and one that is referred to stays.
TEST(Relationships, AreKept)
{
    if (!judge::present("a file with relationships"))
        return;
    const TemporaryFolder folder;
    const auto path = folder / "related.mdb";
    writeFile(path, readFile(kSamples / "indexTestV2000.mdb"));
    const auto file = File::open(path);
    std::size_t referring = 0, referredTo = 0;
    for (const std::u16string &name : file->tableNames()) {
        Table &table = file->table(name);
        for (const LogicalIndex &index : table.indexes()) {
            const std::uint16_t number = table.physicalIndex(index).columns.front().column;
            const auto key = static_cast<std::size_t>(
                std::ranges::find(table.columns(), number, &Column::number) - table.columns().begin());
            for (Cursor at = table.scan(); !at.atEnd(); at.next()) {
                const Cell nobody = std::int32_t{987654};
                if (index.side == LogicalIndex::Side::Referring) {
                    EXPECT_EQ(codeOf([&] { updateCell(table, at.id(), key, nobody); }),
                              Code::RelatedRecordRequired);
                    ++referring;
                } else if (index.side == LogicalIndex::Side::ReferredTo) {
                    const auto refused = codeOf([&] { table.erase(at.id()); });
                    EXPECT_TRUE(!refused || refused == Code::RelatedRecords);
                    referredTo += refused ? 1U : 0U;
                }
            }
        }
    }
    EXPECT_GT(referring, 2U);
    EXPECT_GT(referredTo, 2U);
    EXPECT_TRUE(checkFile(path).clean());
}

INSTANTIATE_TEST_SUITE_P(Files, SampleRows,
                         testing::Values("adox_jet4.mdb", "indexTestV2000.mdb", "compIndexTestV2000.mdb",
                                         "testV2003.mdb", "office-small.mdb"));

} // namespace
} // namespace vardelin::jet::test
