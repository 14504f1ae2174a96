// Inserting, updating and deleting: values, long values, moved rows, numbers, refusals.

#include "platform/jet/Bytes.h"
#include "platform/jet/Catalog.h"
#include "tests/jet/RowFixtures.h"

namespace vardelin::jet::test {
namespace {

using namespace std::string_literals;

class ChangingRows : public testing::Test
{
protected:
    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "rows.mdb";
    std::unique_ptr<File> m_file = File::create(m_path);

    Table &reopened(std::u16string_view name)
    {
        m_file.reset();
        m_file = File::open(m_path);
        return m_file->table(name);
    }
    void TearDown() override
    {
        expectSound(m_path, testing::UnitTest::GetInstance()->current_test_info()->name());
        if (judge::present("values"))
            expectSameValues(*m_file);
    }
};

TEST_F(ChangingRows, EveryTypeComesBack)
{
    NewTable all{u"All", {}, {}};
    for (const auto type :
         {ColumnType::Boolean, ColumnType::Byte, ColumnType::Integer, ColumnType::Long, ColumnType::Currency,
          ColumnType::Single, ColumnType::Double, ColumnType::DateTime, ColumnType::Binary, ColumnType::Text,
          ColumnType::Ole, ColumnType::Memo, ColumnType::Guid, ColumnType::Decimal})
        all.columns.push_back(plainColumn(u"C" + toUtf16(std::to_string(static_cast<int>(type))), type));
    all.columns[9].allowZeroLength = true;
    Table &table = m_file->createTable(all);
    Guid guid;
    for (std::size_t i = 0; i < 16; ++i)
        guid.bytes[i] = static_cast<std::byte>(i * 16 + 1);
    const Bytes bytes{std::byte{0}, std::byte{255}, std::byte{7}};
    const std::vector<Row> rows{{true, std::uint8_t{200}, std::int16_t{-32768}, std::int32_t{-2147483647 - 1},
                                 Currency{-1234567}, -0.5f, 1e300, DateTime{-1.25}, bytes, u"Žižka"s,
                                 Bytes(70, std::byte{1}), u"O'Brien"s, guid, Decimal{true, {0, 0, 1, 5}, 0}},
                                {false, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}},
                                {true, std::uint8_t{0}, std::int16_t{0}, std::int32_t{0}, Currency{0}, 0.0f,
                                 0.0, DateTime{0}, bytes, u""s, Bytes(), u""s, Guid{}, Decimal{}}};
    for (const Row &row : rows)
        insertRow(table, row);
    EXPECT_EQ(rowsOf(table), rows);
    Table &again = reopened(u"all");
    EXPECT_EQ(rowsOf(again), rows);
    const Cursor first = again.scan();
    EXPECT_EQ(first.view().longValue(3), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(first.view().currency(4).tenThousandths, -1234567);
    EXPECT_EQ(first.view().number(5), -0.5);
    EXPECT_EQ(first.view().number(7), -1.25);
    EXPECT_FALSE(first.view().isNull(0));
    EXPECT_EQ(codeOf([&] { updateCell(again, first.id(), 0, u"yes"s); }), Code::InvalidArgument);
    EXPECT_EQ(codeOf([&] { updateCell(again, first.id(), 14, true); }), Code::InvalidArgument);
}

TEST_F(ChangingRows, DecimalsKeepTheScaleOfTheirColumn)
{
    NewColumn price = plainColumn(u"Price", ColumnType::Decimal);
    price.precision = 6;
    price.scale = 2;
    Table &table =
        m_file->createTable({u"Prices", {price, textColumn(u"A", 5)}, {{u"ByPrice", {{u"Price", false}}}}});
    const auto number = [](std::uint32_t digits, std::uint8_t scale, bool negative = false) {
        return Cell(Decimal{negative, {0, 0, 0, digits}, scale});
    };
    const RowId ten = insertRow(table, {number(10, 0)});
    const RowId less = insertRow(table, {number(12500, 4, true)});
    insertRow(table, {number(0, 3, true)});
    const auto add = [&](const Cell &cell) { return codeOf([&] { insertRow(table, {cell}); }); };
    EXPECT_EQ(add(number(12345, 4)), Code::DecimalTruncated);
    EXPECT_EQ(add(number(10000, 0)), Code::DecimalTooLarge);
    EXPECT_EQ(add(Decimal{false, {1, 0, 0, 0}, 2}), Code::DecimalTooLarge);
    EXPECT_EQ(rowsOf(reopened(u"Prices")),
              (std::vector<Row>{{number(1000, 2), {}}, {number(125, 2, true), {}}, {number(0, 2), {}}}));
    Table &again = m_file->table(u"Prices");
    EXPECT_EQ(again.columns()[0].precision, 6);
    EXPECT_EQ(again.columns()[0].scale, 2);
    const Cell key = number(10000, 3);
    EXPECT_EQ(again.find(again.indexes()[0], {&key, 1}), std::vector<RowId>{ten});
    EXPECT_EQ(again.inOrder(again.indexes()[0]).front(), less);
    price.scale = 7;
    EXPECT_EQ(codeOf([&] { m_file->createTable({u"No", {price}, {}}); }), Code::InvalidArgument);
}

TEST_F(ChangingRows, MemosOfEveryKindTurnIntoOneAnother)
{
    Table &table = m_file->createTable({u"Notes", {plainColumn(u"Note", ColumnType::Memo)}, {}});
    const std::u16string texts[] = {u"",
                                    u"ab",
                                    u"short note",
                                    std::u16string(32, u'i'),
                                    std::u16string(33, u'o'),
                                    std::u16string(300, u'Ж'),
                                    std::u16string(2038, u's'),
                                    std::u16string(2039, u'c'),
                                    std::u16string(20000, u'l')};
    std::vector<RowId> ids;
    std::optional<Scope> bulk(*m_file);
    for (std::size_t i = 0; i <= std::size(texts); ++i) {
        for (std::size_t k = 0; k <= std::size(texts); ++k)
            ids.push_back(insertRow(table, {i == std::size(texts) ? Cell() : Cell(texts[i])}));
    }
    std::vector<Row> rows;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const std::size_t k = i % (std::size(texts) + 1);
        rows.push_back({k == std::size(texts) ? Cell() : Cell(texts[k])});
        updateCell(table, ids[i], 0, rows.back()[0]);
    }
    bulk->commit();
    EXPECT_EQ(rowsOf(table), rows);
    expectSound(m_path, "memos turned into one another");
    const auto full = std::filesystem::file_size(m_path);
    bulk.emplace(*m_file);
    for (const RowId id : ids)
        table.erase(id);
    bulk->commit();
    EXPECT_EQ(table.rowCount(), 0U);
    EXPECT_TRUE(table.scan().atEnd());
    for (int i = 0; i < 20; ++i) // pages come back to use
        insertRow(table, {texts[8]});
    EXPECT_LE(std::filesystem::file_size(m_path), full);
}

TEST_F(ChangingRows, RowsThatGrowMoveAndKeepTheirPlace)
{
    Table &table = m_file->createTable({u"Growing",
                                        {textColumn(u"Name", 255), textColumn(u"More", 255)},
                                        {{u"ByName", {{u"Name", false}}}}});
    std::vector<RowId> ids;
    std::vector<Row> rows;
    std::optional<Scope> bulk(*m_file);
    for (int i = 0; i < 200; ++i) {
        rows.push_back({u"Row "s + toUtf16(std::to_string(1000 + i)), u"x"s});
        ids.push_back(insertRow(table, rows.back()));
    }
    bulk->commit();
    const auto set = [&](std::size_t row, std::size_t size) {
        rows[row][1] = std::u16string(size, static_cast<char16_t>(u'Ā' + size));
        updateCell(table, ids[row], 1, rows[row][1]);
    };
    for (const std::size_t size : {100U, 250U, 30U, 255U, 1U, 200U}) { // moves, moves again, goes home
        bulk.emplace(*m_file);
        for (std::size_t row = 0; row < rows.size(); row += 3)
            set(row, size);
        bulk->commit();
        ASSERT_EQ(rowsOf(table), rows);
        expectSound(m_path, "moved rows");
    }
    const LogicalIndex &byName = table.indexes()[0];
    const Cell key[] = {rows[99][0]};
    EXPECT_EQ(table.find(byName, key), std::vector<RowId>{ids[99]});
    EXPECT_EQ(table.inOrder(byName), ids);
    const ReadScope reading(*m_file);
    EXPECT_EQ(table.row(ids[99]).text(1), std::get<std::u16string>(rows[99][1]));
}

TEST_F(ChangingRows, DeletedRowsAreGone)
{
    Table &table = m_file->createTable({u"T", {textColumn(u"A", 50)}, {}});
    std::vector<RowId> ids;
    Scope bulk(*m_file);
    for (int i = 0; i < 300; ++i)
        ids.push_back(insertRow(table, {std::u16string(40, u'a')}));
    for (std::size_t i = 0; i < ids.size(); i += 2)
        table.erase(ids[i]);
    EXPECT_EQ(table.rowCount(), 150U);
    EXPECT_EQ(rowsOf(table).size(), 150U);
    EXPECT_FALSE(table.exists(ids[0]));
    EXPECT_TRUE(table.exists(ids[1]));
    EXPECT_EQ(codeOf([&] { table.erase(ids[0]); }), Code::RowDeleted);
    EXPECT_EQ(codeOf([&] { updateCell(table, ids[0], 0, u"b"s); }), Code::RowDeleted);
    EXPECT_EQ(codeOf([&] { table.erase({9999, 3}); }), Code::RowDeleted);
    // A cursor stands firm while rows around it go, and meets those that come behind it.
    std::size_t seen = 0;
    for (Cursor at = table.scan(); !at.atEnd() && seen < 1000; at.next(), ++seen) {
        table.erase(at.id());
        if (seen < 100)
            insertRow(table, {u"new"s});
    }
    EXPECT_EQ(seen, 250U);
    bulk.commit();
    EXPECT_EQ(table.rowCount(), 0U);
}

TEST_F(ChangingRows, AutoNumbersRiseAndStay)
{
    Table &table = m_file->createTable({u"Numbered",
                                        {autoNumberColumn(u"Id"), textColumn(u"A", 5)},
                                        {{u"PrimaryKey", {{u"Id", false}}, true}}});
    const auto add = [&](std::u16string text) {
        const ColumnValue value{1, std::move(text)};
        return table.insert({&value, 1});
    };
    const RowId first = add(u"a");
    add(u"b");
    EXPECT_EQ(table.lastAutoNumber(), 2);
    EXPECT_EQ(codeOf([&] { add(u"too long"); }), Code::FieldTooSmall);
    const RowId behind = add(u"c");
    EXPECT_EQ(table.lastAutoNumber(), 4) << "a failed insert doesn't give its number back";
    table.erase(behind);
    insertRow(table, {std::int32_t{10}, u"d"s});
    insertRow(table, {std::int32_t{7}, u"e"s});
    EXPECT_EQ(codeOf([&] { insertRow(table, {std::int32_t{7}, u"f"s}); }), Code::DuplicateKey);
    EXPECT_EQ(table.lastAutoNumber(), 10);
    EXPECT_EQ(codeOf([&] { updateCell(table, first, 0, std::int32_t{99}); }), Code::AutoNumberReadOnly);
    updateCell(table, first, 0, std::int32_t{1});
    Table &again = reopened(u"Numbered");
    const ColumnValue value{1, u"g"s};
    again.insert({&value, 1});
    EXPECT_EQ(again.lastAutoNumber(), 11);
    EXPECT_EQ(again.rowCount(), 5U);
    insertRow(again, {std::numeric_limits<std::int32_t>::max(), u"z"s});
    const Bytes before = readFile(m_path);
    EXPECT_EQ(codeOf([&] { again.insert({&value, 1}); }), Code::NumberOverflow);
    EXPECT_EQ(readFile(m_path), before);
}

TEST_F(ChangingRows, WhatIsRefusedLeavesTheFileAsItWas)
{
    NewTable strict{
        u"Strict",
        {textColumn(u"Key", 20), textColumn(u"Must", 20), plainColumn(u"Memo", ColumnType::Memo)},
        {{u"PrimaryKey", {{u"Key", false}}, true}, {u"Unique", {{u"Must", true}}, false, true, false, true}}};
    strict.columns[1].required = true;
    strict.columns[1].allowZeroLength = false;
    Table &table = m_file->createTable(strict);
    insertRow(table, {u"one"s, u"first"s, std::u16string(5000, u'm')});
    const RowId second = insertRow(table, {u"two"s, u"second"s, {}});
    const Bytes before = readFile(m_path);
    const auto add = [&](Row row) { return codeOf([&] { insertRow(table, row); }); };
    const auto change = [&](std::size_t column, Cell cell) {
        return codeOf([&] { updateCell(table, second, column, cell); });
    };
    EXPECT_EQ(add({u"ONE "s, u"third"s, {}}), Code::DuplicateKey);
    EXPECT_EQ(add({u"three"s, u"First"s, std::u16string(9000, u'n')}), Code::DuplicateKey);
    EXPECT_EQ(add({{}, u"third"s, {}}), Code::NullInKey);
    EXPECT_EQ(add({u"three"s, {}, {}}), Code::NullRequired);
    EXPECT_EQ(add({u"three"s, u""s, {}}), Code::ZeroLength);
    EXPECT_EQ(add({u"three"s, std::u16string(21, u'x'), {}}), Code::FieldTooSmall);
    EXPECT_EQ(change(0, u"One"s), Code::DuplicateKey);
    EXPECT_EQ(change(0, Cell()), Code::NullInKey);
    EXPECT_EQ(change(1, Cell()), Code::NullRequired);
    EXPECT_EQ(change(1, u""s), Code::ZeroLength);
    EXPECT_EQ(readFile(m_path), before);
    {
        Scope scope(*m_file); // an operation that fails undoes itself alone
        insertRow(table, {u"three"s, u"third"s, {}});
        EXPECT_EQ(add({u"three"s, u"x"s, {}}), Code::DuplicateKey);
        insertRow(table, {u"four"s, u"fourth"s, {}});
        EXPECT_EQ(table.rowCount(), 4U);
    }
    EXPECT_EQ(readFile(m_path), before);
    {
        Scope scope(*m_file);
        EXPECT_EQ(add({u"one"s, u"x"s, {}}), Code::DuplicateKey);
        insertRow(table, {u"five"s, u"fifth"s, {}});
        m_file->createTable({u"Another", {textColumn(u"A", 10)}, {}});
        scope.commit();
    }
    EXPECT_EQ(reopened(u"Strict").rowCount(), 3U);
    EXPECT_TRUE(m_file->hasTable(u"Another"));
}

TEST_F(ChangingRows, LongestRowsAndRowsTooLong)
{
    NewTable wide{u"Wide", {}, {}};
    for (int i = 0; i < 9; ++i)
        wide.columns.push_back(textColumn(u"C" + toUtf16(std::to_string(i)), 255));
    wide.columns.push_back(plainColumn(u"Memo", ColumnType::Memo));
    Table &table = m_file->createTable(wide);
    Row row;
    for (int i = 0; i < 7; ++i)
        row.push_back(std::u16string(255, u'Ж'));
    row.insert(row.end(),
               {std::u16string(211, u'Ж'), {}, std::u16string(32, u'm')}); // the memo goes out of the row
    insertRow(table, row);
    EXPECT_EQ(rowsOf(table), std::vector<Row>{row});
    row[8] = std::u16string(255, u'Ж');
    const Bytes before = readFile(m_path);
    EXPECT_EQ(codeOf([&] { insertRow(table, row); }), Code::RecordTooLarge);
    // One byte more than the longest note that there is.
    EXPECT_EQ(codeOf([&] {
                  insertRow(table, {{}, {}, {}, {}, {}, {}, {}, {}, {}, std::u16string(1U << 29, u'x')});
              }),
              Code::FieldTooSmall);
    EXPECT_EQ(readFile(m_path), before);
}

TEST_F(ChangingRows, OtherOpenFilesSeeWhatWasCommitted)
{
    Table &ours = m_file->createTable({u"T", {textColumn(u"A", 50)}, {}});
    const auto other = File::open(m_path);
    Table &theirs = other->table(u"T");
    insertRow(ours, {u"first"s});
    EXPECT_EQ(rowsOf(theirs), rowsOf(ours));
    insertRow(theirs, {u"second"s});
    EXPECT_EQ(rowsOf(ours).size(), 2U);
    other->createTable({u"New", {textColumn(u"A", 50)}, {}});
    EXPECT_TRUE(m_file->hasTable(u"New"));
    const auto reader = File::open(m_path, {.readOnly = true});
    EXPECT_EQ(rowsOf(reader->table(u"T")).size(), 2U);
    EXPECT_EQ(codeOf([&] { insertRow(reader->table(u"T"), {u"third"s}); }), Code::ReadOnlyDatabase);
}

// The same name, the same inode, another content.
TEST_F(ChangingRows, CopiedOverWhileItIsOpen)
{
    m_file->createTable({u"Old", {textColumn(u"A", 50)}, {}});
    Table &old = m_file->table(u"Old");
    insertRow(old, {u"old"s});
    const Bytes backup = readFile(m_path);
    m_file->createTable({u"New", {textColumn(u"A", 50)}, {}});
    Table &fresh = m_file->table(u"New");
    const RowId row = insertRow(fresh, {u"new"s});

    writeFile(m_path, backup); // of this very database
    EXPECT_EQ(codeOf([&] { updateCell(fresh, row, 0, u"x"s); }), Code::TableNotFound);
    File::open(m_path)->createTable({u"Other", {textColumn(u"A", 50)}, {}});
    EXPECT_EQ(codeOf([&] { insertRow(fresh, {u"x"s}); }), Code::TableNotFound) << "not into Other";
    insertRow(m_file->table(u"Other"), {u"other"s});
    EXPECT_EQ(rowsOf(old), std::vector<Row>{{u"old"s}});

    Bytes another = readFile(m_path); // made a day later
    const auto day = static_cast<std::int32_t>(currentDate().days);
    for (std::byte *at = another.data() + 14 * kPageSize; at < another.data() + 15 * kPageSize - 8; ++at) {
        if (const auto date = load<double>(at); date >= day - 1 && date < day + 1)
            store(at, date + 1);
    }
    writeFile(m_path, another);
    EXPECT_EQ(codeOf([&] { rowsOf(old); }), Code::WriteError);
    EXPECT_EQ(codeOf([&] { insertRow(old, {u"x"s}); }), Code::WriteError);
    EXPECT_EQ(codeOf([&] { Scope scope(*m_file); }), Code::WriteError);
    EXPECT_EQ(codeOf([&] { m_file->tableNames(); }), Code::WriteError);
    EXPECT_EQ(readFile(m_path), another);
    EXPECT_EQ(rowsOf(reopened(u"Other")).size(), 1U);
}

} // namespace
} // namespace vardelin::jet::test
