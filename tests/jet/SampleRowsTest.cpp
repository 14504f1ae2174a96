// Files of other programs: read with equal values, changed without harm. The samples lie beside the project.

#include "tests/jet/RowFixtures.h"

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
            table.erase(ids.back());
        }
        expectSameValues(*file);
    }
    const judge::Said said = judge::check("--allow-leaks " + judge::quoted(path.string()));
    EXPECT_EQ(said.status, 0) << said.text;
}

INSTANTIATE_TEST_SUITE_P(Files, SampleRows,
                         testing::Values("adox_jet4.mdb", "indexTestV2000.mdb", "compIndexTestV2000.mdb",
                                         "testV2003.mdb", "office-small.mdb"));

} // namespace
} // namespace vardelin::jet::test
