// Long values read in stretches by who passes over a table: the same texts as one by one, all of a row's at a
// time.

#include "tests/jet/RowFixtures.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <random>

namespace vardelin::jet::test {
namespace {

constexpr std::size_t kMemos = 7; // more than there are stretches
constexpr std::size_t kRows = 120;

// Texts that tell their row and column, every third in several pieces.
std::u16string memoOf(std::size_t row, std::size_t column, int edition)
{
    std::u16string text;
    for (const std::size_t number : {row, column, static_cast<std::size_t>(edition)})
        text += static_cast<char16_t>(u'0' + number);
    return text +
           std::u16string((row + column) % 3 == 0 ? 7000 : 1500 + row, static_cast<char16_t>(u'a' + column));
}

struct Written
{
    RowId id;
    std::array<int, kMemos> editions{};
};

// What a cursor's row gives stays while the cursor stands on it.
void expectPassed(const Table &table, const std::vector<Written> &written, const char *when)
{
    std::map<RowId, const Written *> rows;
    for (const Written &row : written)
        rows[row.id] = &row;
    std::array<TextBuffer, kMemos> buffers;
    std::array<std::u16string_view, kMemos> texts;
    std::size_t met = 0;
    for (Cursor at = table.scan(); !at.atEnd(); at.next(), ++met) {
        for (std::size_t i = 0; i < kMemos; ++i)
            texts[i] = at.view().text(i + 1, buffers[i]);
        const Cell number = at.view().cell(0);
        const auto row = static_cast<std::size_t>(std::get<std::int32_t>(number));
        for (std::size_t i = 0; i < kMemos; ++i) {
            ASSERT_EQ(texts[i], memoOf(row, i, rows.at(at.id())->editions[i]))
                << when << ", row " << row << ", memo " << i;
        }
    }
    EXPECT_EQ(met, written.size()) << when;
}

TEST(Passage, TheSameTextsAsOneByOne)
{
    const TemporaryFolder folder;
    const auto file = File::create(folder / "memos.mdb");
    NewTable made{u"Logs", {plainColumn(u"Number", ColumnType::Long)}, {}};
    for (std::size_t i = 0; i < kMemos; ++i)
        made.columns.push_back(
            plainColumn(u"Memo " + std::u16string(1, static_cast<char16_t>(u'1' + i)), ColumnType::Memo));
    Table &table = file->createTable(made);
    std::vector<Written> written;
    Scope scope(*file);
    for (std::size_t row = 0; row < kRows; ++row)
        written.push_back({insertRow(table, {static_cast<std::int32_t>(row)})});
    for (std::size_t i = 0; i < kMemos; ++i) { // so that the texts of a row lie far from one another
        for (std::size_t row = 0; row < kRows; ++row)
            updateCell(table, written[row].id, i + 1, memoOf(row, i, 0));
    }
    expectPassed(table, written, "not committed");
    scope.commit();
    expectPassed(table, written, "column by column");

    // Changed in another order, so that they lie here and there; some of it not in the file yet.
    std::mt19937 random(7);
    std::vector<std::size_t> order(kRows * kMemos);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    for (std::size_t part = 0; part < 2; ++part) {
        Scope changing(*file);
        for (std::size_t i = part; i < order.size(); i += 2) {
            Written &row = written[order[i] / kMemos];
            const std::size_t memo = order[i] % kMemos;
            updateCell(table, row.id, memo + 1, memoOf(order[i] / kMemos, memo, ++row.editions[memo]));
        }
        expectPassed(table, written, "half changed, not committed");
        changing.commit();
        expectPassed(table, written, "half changed");
    }

    // A change amid the walk: the rows behind it are met as they are now.
    Scope last(*file);
    Cursor at = table.scan();
    std::size_t met = 0;
    for (; !at.atEnd(); at.next(), ++met) {
        const auto number = static_cast<std::size_t>(std::get<std::int32_t>(at.view().cell(0)));
        for (std::size_t i = 0; i < kMemos; ++i)
            ASSERT_EQ(std::get<std::u16string>(at.view().cell(i + 1)),
                      memoOf(number, i, written[number].editions[i]));
        if (met % 10 == 5 && number + 1 < kRows)
            updateCell(table, written[number + 1].id, 3,
                       memoOf(number + 1, 2, ++written[number + 1].editions[2]));
    }
    EXPECT_EQ(met, kRows);
}

} // namespace
} // namespace vardelin::jet::test
