// Thousands of operations, played alike on a file and on plain rows in memory.

#include "platform/jet/Compact.h"
#include "tests/jet/RowFixtures.h"

#include <map>
#include <random>
#include <set>

namespace vardelin::jet::test {
namespace {

class Play
{
public:
    explicit Play(const std::filesystem::path &path, unsigned seed) : m_path(path), m_random(seed)
    {
        m_file = File::create(path);
        m_file->createTable(
            {u"Played",
             {autoNumberColumn(u"Id"), textColumn(u"Name", 100), plainColumn(u"Note", ColumnType::Memo),
              plainColumn(u"Flag", ColumnType::Boolean), plainColumn(u"Amount", ColumnType::Currency),
              plainColumn(u"Raw", ColumnType::Ole), plainColumn(u"When", ColumnType::DateTime)},
             {{u"PrimaryKey", {{u"Id", false}}, true},
              {u"ByName", {{u"Name", true}, {u"Id", false}}},
              {u"ByAmount", {{u"Amount", false}}, false, false, false, true}}});
    }

    void round(int operations)
    {
        Scope scope(*m_file);
        Table &table = m_file->table(u"Played");
        for (int i = 0; i < operations; ++i)
            step(table);
        if (below(8) == 0) // the whole round is undone
            return;
        scope.commit();
        m_committed = m_rows;
    }

    void compare()
    {
        m_rows = m_committed;
        if (m_comparisons % 4 == 2)
            compact();
        else if (below(2) == 0) {
            m_file.reset();
            m_file = File::open(m_path);
        }
        const Table &table = m_file->table(u"Played");
        std::vector<Row> wanted;
        for (const auto &[id, row] : m_rows)
            wanted.push_back(row);
        ASSERT_EQ(rowsOf(table), wanted);
        ASSERT_EQ(table.rowCount(), wanted.size());
        for (const LogicalIndex &index : table.indexes()) {
            const auto order = table.inOrder(index);
            const std::set<RowId> met(order.begin(), order.end());
            const bool partial = table.physicalIndex(index).ignoreNulls;
            ASSERT_EQ(met.size(), order.size());
            ASSERT_TRUE(partial ? met.size() <= wanted.size() : met.size() == wanted.size());
        }
        for (int i = 0; i < 20 && !m_rows.empty(); ++i) {
            const auto &[id, row] = *std::next(m_rows.begin(), below(static_cast<int>(m_rows.size())));
            const Cell key[] = {row[0]};
            ASSERT_EQ(table.find(indexNamed(table, u"PrimaryKey"), key), std::vector<RowId>{id});
        }
        if (++m_comparisons % 3 == 0)
            expectSound(m_path, "random operations");
    }

    // Other readers may list moved rows elsewhere, so the rows are compared in sorted order.
    void compareWithOtherReaders()
    {
        compareExport();
        if (!std::filesystem::exists(kModules / "mdb-reader")) {
            std::cout << "The npm package mdb-reader is not installed; its judgement is left out.\n";
            return;
        }
        const judge::Said said = judge::run(
            "node " + judge::quoted(VARDELIN_ROOT "/tests/support/read-with-mdb-reader.mjs") + " " +
            judge::quoted(kModules.string()) + " " + judge::quoted(m_path.string()) + " Played");
        std::multiset<std::string> theirs, ours;
        for (const std::string &line : said.lines())
            theirs.insert(line.substr(0, line.find(",\"Amount\":")));
        for (const auto &[id, row] : m_rows)
            ours.insert("{\"Id\":" + exported(row[0]) + ",\"Name\":" + json(row[1]) + ",\"Note\":" +
                        json(row[2]) + ",\"Flag\":" + (std::get<bool>(row[3]) ? "true" : "false"));
        EXPECT_EQ(theirs, ours);
    }

    std::size_t size() const { return m_rows.size(); }

private:
    static inline const std::filesystem::path kModules =
        std::filesystem::path(VARDELIN_ROOT) / "build" / "mdb-reader" / "node_modules";

    void compareExport()
    {
        const judge::Said said =
            judge::run("mdb-export -H -Q -d '\x1f' -R '\x1e' " + judge::quoted(m_path.string()) + " Played");
        std::multiset<std::string> theirs, ours;
        std::istringstream in(said.text);
        for (std::string line; std::getline(in, line, '\x1e');)
            theirs.insert(line.substr(0, endOfThirdField(line)));
        for (const auto &[id, row] : m_rows)
            ours.insert(exported(row[0]) + "\x1f" + exported(row[1]) + "\x1f" + exported(row[2]));
        EXPECT_EQ(theirs, ours);
    }

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    static const LogicalIndex &indexNamed(const Table &table, std::u16string_view name)
    {
        return *std::find_if(table.indexes().begin(), table.indexes().end(),
                             [&](const LogicalIndex &index) { return index.name == name; });
    }

    static std::size_t endOfThirdField(const std::string &line)
    {
        std::size_t at = 0;
        for (int i = 0; i < 3 && at != line.npos; ++i)
            at = line.find('\x1f', i == 0 ? 0 : at + 1);
        return at;
    }

    // None of the letters that are used has to be masked.
    static std::string json(const Cell &cell) { return isNull(cell) ? "null" : '"' + exported(cell) + '"'; }

    // The file's place is taken by its compacted copy; rows are found again by their number.
    void compact()
    {
        m_file.reset();
        std::filesystem::path target = m_path;
        target += ".compacted";
        compactFile(m_path, target);
        std::filesystem::rename(target, m_path);
        m_file = File::open(m_path);
        std::map<std::int32_t, Row> byNumber;
        for (auto &[id, row] : m_rows)
            byNumber[std::get<std::int32_t>(row[0])] = std::move(row);
        m_rows.clear();
        const Table &table = m_file->table(u"Played");
        for (Cursor at = table.scan(); !at.atEnd(); at.next())
            m_rows[at.id()] = std::move(byNumber[at.view().longValue(0)]);
        m_committed = m_rows;
    }

    static std::string exported(const Cell &cell)
    {
        if (const auto *number = std::get_if<std::int32_t>(&cell))
            return std::to_string(*number);
        const auto *text = std::get_if<std::u16string>(&cell);
        return text ? toUtf8(*text) : std::string();
    }

    Cell randomText(std::size_t most)
    {
        static constexpr std::u16string_view letters = u"abcXYZ '-.,0189éüßŽЖ漢";
        if (below(8) == 0)
            return {};
        const std::size_t alphabet = below(3) == 0 ? letters.size() : 14;
        std::u16string text(static_cast<std::size_t>(below(static_cast<int>(most))), u' ');
        for (char16_t &c : text)
            c = letters[static_cast<std::size_t>(below(static_cast<int>(alphabet)))];
        return text;
    }

    Cell randomNote()
    {
        constexpr std::size_t sizes[] = {3, 40, 300, 2100, 9000};
        return randomText(sizes[static_cast<std::size_t>(below(20) == 0 ? 4 : below(4))]);
    }

    Cell randomCell(std::size_t column)
    {
        switch (column) {
        case 1:
            return randomText(101);
        case 2:
            return randomNote();
        case 3:
            return below(2) == 0;
        case 4:
            return below(5) == 0 ? Cell() : Cell(Currency{below(200) * 10000 - 500000});
        case 5:
            return below(2) == 0 ? Cell() : Cell(Bytes(static_cast<std::size_t>(below(200)), std::byte{7}));
        default:
            return below(5) == 0 ? Cell() : Cell(DateTime{40000 + below(5000) / 16.0});
        }
    }

    void step(Table &table)
    {
        const int what = below(10);
        if (m_rows.empty() || what < (m_rows.size() < 400 ? 6 : 3)) {
            Row row{{}};
            std::vector<ColumnValue> values;
            for (std::size_t i = 1; i < 7; ++i) {
                row.push_back(randomCell(i));
                values.emplace_back(i, row.back());
            }
            const RowId id = table.insert(values);
            row[0] = table.lastAutoNumber();
            ASSERT_TRUE(m_rows.empty() || m_rows.rbegin()->first < id) << "rows come in order of adding";
            m_rows[id] = std::move(row);
            return;
        }
        const auto at = std::next(m_rows.begin(), below(static_cast<int>(m_rows.size())));
        if (what < 8) {
            std::vector<ColumnValue> values;
            for (std::size_t i = 1; i < 7; ++i) {
                if (below(3) == 0)
                    values.emplace_back(i, at->second[i] = randomCell(i));
            }
            table.update(at->first, values);
        } else {
            table.erase(at->first);
            m_rows.erase(at);
        }
    }

    std::filesystem::path m_path;
    std::mt19937 m_random;
    std::unique_ptr<File> m_file;
    int m_comparisons = 0;
    std::map<RowId, Row> m_rows, m_committed; // by place, which is the table's order
};

// VARDELIN_SEEDS sets the number of games.
TEST(RandomRows, AgreeWithPlainRowsInMemory)
{
    const char *wanted = std::getenv("VARDELIN_SEEDS");
    const unsigned seeds = wanted ? static_cast<unsigned>(std::atoi(wanted)) : 2;
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const TemporaryFolder folder;
        Play play(folder / "played.mdb", seed);
        for (int round = 0; round < 12; ++round) {
            play.round(250);
            play.compare();
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed << " round " << round;
        }
        EXPECT_GT(play.size(), 100U);
        play.compareWithOtherReaders();
    }
}

} // namespace
} // namespace vardelin::jet::test
