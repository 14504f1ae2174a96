#pragma once
// What the tests of tables and rows share: the office's eleven tables, plain rows to compare with, the
// judges.

#include "platform/jet/Check.h"
#include "platform/jet/Jet.h"
#include "tests/jet/Judge.h"
#include "tests/jet/PagerFixtures.h"

#include <gtest/gtest.h>

namespace vardelin::jet::test {

using Row = std::vector<Cell>;

inline NewColumn textColumn(std::u16string name, std::uint16_t size)
{
    return {std::move(name), ColumnType::Text, size, false, false, true, true};
}

inline NewColumn plainColumn(std::u16string name, ColumnType type)
{
    return {std::move(name), type, 0, false, false, type == ColumnType::Memo, false};
}

inline NewColumn autoNumberColumn(std::u16string name)
{
    return {std::move(name), ColumnType::Long, 0, true, false, false, false};
}

std::vector<NewTable> officeTables();

// Every row of a table, in table order.
inline std::vector<Row> rowsOf(const Table &table)
{
    std::vector<Row> rows;
    for (Cursor at = table.scan(); !at.atEnd(); at.next()) {
        Row row;
        for (std::size_t i = 0; i < table.columns().size(); ++i)
            row.push_back(at.view().cell(i));
        rows.push_back(std::move(row));
    }
    return rows;
}

inline RowId insertRow(Table &table, const Row &row)
{
    std::vector<ColumnValue> values;
    for (std::size_t i = 0; i < row.size(); ++i)
        values.emplace_back(i, row[i]);
    return table.insert(values);
}

inline void updateCell(Table &table, RowId id, std::size_t column, Cell cell)
{
    const ColumnValue value{column, std::move(cell)};
    table.update(id, {&value, 1});
}

// Neither our own checker nor the independent one has anything to say, notes included.
inline void expectSound(const std::filesystem::path &file, const char *forWhat)
{
    for (const Finding &finding : checkFile(file).findings)
        ADD_FAILURE() << forWhat << ": " << textOf(finding);
    if (!judge::present(forWhat))
        return;
    const judge::Said said = judge::check("--strict " + judge::quoted(file.string()));
    EXPECT_EQ(said.status, 0) << forWhat << "\n" << said.text;
}

// A row as the checker's --dump prints it.
std::string jsonOf(const Table &table, const RowView &row);

// The rows of every user table have the values that the checker reads from the file.
void expectSameValues(File &file);

} // namespace vardelin::jet::test
