#include "platform/sql/Cells.h"

#include <gtest/gtest.h>

using namespace vardelin;
using namespace Qt::StringLiterals;

namespace {

jet::Column column(jet::ColumnType type, std::uint16_t length = 0)
{
    jet::Column column;
    column.type = type;
    column.length = length;
    return column;
}

int errorOf(const Value &value, const jet::Column &column)
{
    try {
        (void)toCell(value, column);
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}

} // namespace

TEST(CellsTest, ValuesComeBack)
{
    const struct
    {
        jet::ColumnType type;
        Value value;
    } cases[] = {
        {jet::ColumnType::Boolean, true},
        {jet::ColumnType::Byte, std::int16_t(255)},
        {jet::ColumnType::Integer, std::int16_t(-7)},
        {jet::ColumnType::Long, 70000},
        {jet::ColumnType::Currency, Currency{605000}},
        {jet::ColumnType::Single, 0.4f},
        {jet::ColumnType::Double, 0.1},
        {jet::ColumnType::DateTime, DateSerial{45000.5}},
        {jet::ColumnType::Text, u"\uFEFFtext"_s}, // a byte order mark is a character like others
        {jet::ColumnType::Memo, u""_s},
        {jet::ColumnType::Ole, u"bytes \u00FF"_s},
    };
    for (const auto &c : cases)
        EXPECT_EQ(toValue(toCell(c.value, column(c.type, 400))), c.value) << static_cast<int>(c.type);
    jet::Column decimal = column(jet::ColumnType::Decimal);
    decimal.scale = 3;
    EXPECT_EQ(toText(toValue(toCell(Value(u"-12.5"_s), decimal))), u"-12.5"_s);
    EXPECT_EQ(errorOf(Value(u"1.2345"_s), decimal), 3421);
    EXPECT_TRUE(jet::isNull(toCell(Value(), column(jet::ColumnType::Text))));
    EXPECT_TRUE(toValue(jet::Cell()).isNull());
}

TEST(CellsTest, WhatAColumnDoesNotTake)
{
    EXPECT_EQ(errorOf(Value(u"many"_s), column(jet::ColumnType::Long)), 3421);
    EXPECT_EQ(errorOf(Value(256), column(jet::ColumnType::Byte)), 3421);
    EXPECT_EQ(errorOf(Value(40000), column(jet::ColumnType::Integer)), 3421);
    EXPECT_EQ(errorOf(Value(u"soon"_s), column(jet::ColumnType::DateTime)), 3421);
    EXPECT_EQ(errorOf(Value(u"Thirteen chars"_s), column(jet::ColumnType::Text, 24)), 3163);
    EXPECT_EQ(errorOf(Value(u"Twelve chars"_s), column(jet::ColumnType::Text, 24)), 0);
    EXPECT_EQ(toCell(Value(u".4"_s), column(jet::ColumnType::Single)), jet::Cell(0.4f));
}

TEST(CellsTest, EngineErrorsKeepNumberAndWords)
{
    try {
        engineCall([]() -> int { throw jet::Error(jet::Code::RowDeleted); });
        FAIL();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), 3167);
        EXPECT_EQ(error.description(), QString::fromUtf8(jet::Error(jet::Code::RowDeleted).what()));
    }
    EXPECT_EQ(engineCall([] { return 5; }), 5);
}
