// Trees of files that other programs wrote, against what the judge reads from them.
#include "platform/jet/IndexTree.h"

#include "tests/jet/Judge.h"
#include "tests/jet/MemoryPager.h"

#include <gtest/gtest.h>
#include <map>

namespace vardelin::jet {
namespace {

std::vector<std::string> entriesOf(IndexTree tree)
{
    std::vector<std::string> lines;
    for (IndexTree::Cursor cursor = tree.begin(); !cursor.atEnd(); cursor.next())
        lines.push_back(judge::hex(cursor.key()) + " " + std::to_string(cursor.row().page) + "/" +
                        std::to_string(cursor.row().row));
    return lines;
}

std::vector<std::string> entriesByJudge(const judge::Said &said)
{
    std::vector<std::string> lines;
    for (const auto &fields : said.fields())
        if (fields.at(0) == "leaf") // leaf, page=N, key, row=PAGE/ROW
            lines.push_back(fields.at(2) + " " + fields.at(3).substr(4));
    return lines;
}

// "page=16", "root=18": the number behind the name, wherever the field stands.
PageNo numberIn(const std::vector<std::string> &fields, const std::string &name)
{
    for (const std::string &field : fields)
        if (field.starts_with(name))
            return static_cast<PageNo>(std::stoul(field.substr(name.size())));
    ADD_FAILURE() << "no " << name;
    return 0;
}

struct FoundIndex
{
    std::string table, name;
    PageNo page = 0, root = 0;
};

std::vector<FoundIndex> indexesByJudge(const std::string &file)
{
    std::vector<FoundIndex> found;
    std::map<std::string, PageNo> tables;
    for (const auto &fields : judge::check("--schema --system " + judge::quoted(file)).fields()) {
        if (fields.at(0) == "TABLE")
            tables[fields.at(1)] = numberIn(fields, "page=");
        if (fields.at(0) == "INDEX")
            found.push_back({fields.at(1), fields.at(2), tables.at(fields.at(1)), numberIn(fields, "root=")});
    }
    return found;
}

TEST(IndexSamples, EveryTreeReadsAsTheJudgeReadsIt)
{
    if (!judge::present("reading trees of the samples"))
        return;
    std::size_t trees = 0, entries = 0;
    for (const char *name :
         {"adox_jet4.mdb", "compIndexTestV2000.mdb", "indexTestV2000.mdb", "office-small.mdb"}) {
        const std::filesystem::path path = judge::kFolder / "samples" / name;
        const auto pager = MemoryPager::load(path);
        const auto indexes = indexesByJudge(path.string());
        std::vector<std::vector<std::string>> questions;
        for (const FoundIndex &index : indexes)
            questions.push_back({"--keys", path.string(), index.table, index.name});
        const auto answers = judge::checkAll(questions);
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            SCOPED_TRACE(std::string(name) + " " + indexes[i].table + " " + indexes[i].name);
            EXPECT_EQ(answers[i].status, 0) << answers[i].text;
            const auto expected = entriesByJudge(answers[i]);
            EXPECT_EQ(entriesOf(IndexTree(*pager, indexes[i].page, indexes[i].root)), expected);
            entries += expected.size();
        }
        trees += indexes.size();
    }
    EXPECT_GE(trees, 30u);
    EXPECT_GE(entries, 1000u);
}

} // namespace
} // namespace vardelin::jet
