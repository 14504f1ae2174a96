#include "platform/base/Value.h"
#include "platform/base/RunTimeError.h"

#include <QLocale>
#include <clocale>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace vardelin;
using namespace Qt::StringLiterals;

namespace {

int errorOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.description(), descriptionOf(error.number()));
        return error.number();
    }
    return 0;
}

} // namespace

TEST(ValueTest, NumbersAsText)
{
    const struct
    {
        double number;
        const char *text;
    } cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {0.5, "0.5"},
        {-0.5, "-0.5"},
        {60.5, "60.5"},
        {100, "100"},
        {0.1 + 0.2, "0.3"},
        {1.0 / 3, "0.333333333333333"},
        {2.0 / 3, "0.666666666666667"},
        {1.0 / 86400, "1.15740740740741E-05"},
        {1.0 / 30, "3.33333333333333E-02"}, // the plain form would need sixteen places
        {0.0078125, "0.0078125"},
        {0.0001, "0.0001"},
        {1e-16, "1E-16"},
        {123456789012345, "123456789012345"},
        {999999999999999, "999999999999999"},
        {999999999999999.9, "1E+15"},
        {1e15, "1E+15"},
        {1234567890123456789.0, "1.23456789012346E+18"},
        {1e100, "1E+100"},
        {-1.7976931348623157e308, "-1.79769313486232E+308"},
        {5e-324, "4.94065645841247E-324"},
        {100000000000000.5, "100000000000001"}, // a half goes away from zero here
    };
    for (const auto &c : cases)
        EXPECT_EQ(numberText(c.number), QLatin1StringView(c.text));
    EXPECT_EQ(numberText(0.4f), u"0.4"_s);
    EXPECT_EQ(numberText(1.0f / 3), u"0.3333333"_s);
    EXPECT_EQ(numberText(0.01401764f), u"1.401764E-02"_s);
    EXPECT_EQ(numberText(12345678.0f), u"1.234568E+07"_s);
}

// Leaves digits where the functions called next keep what they work on.
[[gnu::noinline]] void litterTheStack(char digit)
{
    volatile char litter[8192];
    for (volatile char &c : litter)
        c = digit;
}

TEST(ValueTest, NumbersAsTextAreTheSameWhateverWasInMemory)
{
    for (const char digit : {'0', '6', '9', 'e'}) {
        litterTheStack(digit);
        EXPECT_EQ(numberText(0.4f), u"0.4"_s);
        litterTheStack(digit);
        EXPECT_EQ(numberText(1234.5), u"1234.5"_s);
        litterTheStack(digit);
        EXPECT_EQ(numberText(1e-200), u"1E-200"_s);
    }
}

TEST(ValueTest, NumberTextReadsBackAsTheNearestNumberOfItsDigits)
{
    std::mt19937_64 random(20261016);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-300, 300);
    for (int i = 0; i < 20000; ++i) {
        const double number = mantissa(random) * std::pow(10.0, exponent(random));
        const double back = toDouble(Value(numberText(number)));
        EXPECT_LE(std::fabs(back - number), std::fabs(number) * 5.0000001e-15) << number;
        EXPECT_EQ(numberText(back), numberText(number));
        EXPECT_EQ(val(numberText(number)), back);
    }
}

TEST(ValueTest, NumbersFromText)
{
    const struct
    {
        const char16_t *text;
        double number;
    } cases[] = {
        {u"150", 150},
        {u"  150\t", 150},
        {u"-.5", -0.5},
        {u"5.", 5},
        {u"7-", -7},
        {u" - 7 ", -7},
        {u"+3", 3},
        {u"1,234.50", 1234.5},
        {u"$1,234.50", 1234.5},
        {u"-$5", -5},
        {u"$-5", -5},
        {u"($5.25)", -5.25},
        {u"(5)", -5},
        {u"5 $", 5},
        {u"1.5E3", 1500},
        {u"1.5d-3", 0.0015},
        {u"1e+02", 100},
        {u"&H1F", 31},
        {u"&hffff", -1},
        {u"&HFFFF&", 65535},
        {u"&HFFFFFFFF", -1},
        {u"&O17", 15},
        {u"0.1", 0.1},
        {u"179769313486231570000000000000000000000000", 1.7976931348623157e41},
        {u"1E-400", 0},
    };
    for (const auto &c : cases) {
        const Value text(QString::fromUtf16(c.text));
        EXPECT_EQ(toDouble(text), c.number) << qPrintable(toText(text));
        EXPECT_TRUE(isNumeric(text)) << qPrintable(toText(text));
    }
    for (const char16_t *text :
         {u"",   u" ",  u".",    u"$",     u"-",  u"abc", u"12a", u"1 2", u"1e", u"1e+",     u"--1",
          u"(5", u"5)", u"(-5)", u"1.2.3", u",5", u"&HG", u"&H",  u"$$5", u"5%", u"1/2/2000"}) {
        const Value value(QString::fromUtf16(text));
        EXPECT_EQ(errorOf([&] { toDouble(value); }), RunTime::TypeMismatch) << qPrintable(toText(value));
        EXPECT_FALSE(isNumeric(value)) << qPrintable(toText(value));
    }
    EXPECT_EQ(errorOf([] { toDouble(Value(u"1E400"_s)); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toDouble(Value(u"1E99999999999999999999"_s)); }), RunTime::Overflow);
}

TEST(ValueTest, ValReadsWhatATextBeginsWith)
{
    const struct
    {
        const char16_t *text;
        double number;
    } cases[] = {
        {u"150 an hour", 150},
        {u" 1 615 198th Street", 1615198},
        {u"", 0},
        {u"none", 0},
        {u"$5", 0},
        {u"-$5", 0},
        {u"1,234", 1},
        {u"-.5x", -0.5},
        {u"1e", 1},
        {u"1e2x", 100},
        {u"1d2", 100},
        {u"&H1Fz", 31},
        {u"2.5.7", 2.5},
        {u"--3", 0},
        {u"1E999", 0},
        {u"+4", 4},
    };
    for (const auto &c : cases)
        EXPECT_EQ(val(c.text), c.number) << qPrintable(QString::fromUtf16(c.text));
}

TEST(ValueTest, WholeNumbersRoundHalvesToEven)
{
    for (const auto &[text, whole] :
         {std::pair{u"0.5"_s, 0}, {u"1.5"_s, 2}, {u"2.5"_s, 2}, {u"-2.5"_s, -2}, {u"2.51"_s, 3}}) {
        EXPECT_EQ(toLong(Value(text)), whole);
        EXPECT_EQ(toInteger(Value(text.toDouble())), whole);
        EXPECT_EQ(toLong(Value(*Decimal::fromText(text))), whole);
    }
    EXPECT_EQ(toLong(Value(true)), -1);
    EXPECT_EQ(toInteger(Value(32767.49)), 32767);
    EXPECT_EQ(errorOf([] { toInteger(Value(32767.5)); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toLong(Value(2147483648.0)); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toLong(Value(std::numeric_limits<double>::quiet_NaN())); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toSingle(Value(1e39)); }), RunTime::Overflow);
}

TEST(ValueTest, MoneyHasFourPlaces)
{
    const struct
    {
        Value value;
        std::int64_t tenThousandths;
    } cases[] = {
        {Value(u"60.5"_s), 605000},
        {Value(u"$1,000.00005"_s), 10000000}, // halves to the even digit
        {Value(u"0.00015"_s), 2},
        {Value(0.03125), 312},
        {Value(0.09375), 938},
        {Value(-0.03125), -312},
        {Value(true), -10000},
        {Value(0.1f), 1000},
        {Value(), 0},
        {Value(u"922337203685477.5807"_s), std::numeric_limits<std::int64_t>::max()},
        {Value(u"-922337203685477.5808"_s), std::numeric_limits<std::int64_t>::min()},
    };
    for (const auto &c : cases)
        EXPECT_EQ(toCurrency(c.value).tenThousandths, c.tenThousandths);
    EXPECT_EQ(errorOf([] { toCurrency(Value(u"922337203685477.58075"_s)); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toCurrency(Value(1e15)); }), RunTime::Overflow);
    EXPECT_EQ(errorOf([] { toCurrency(Value(u"ten"_s)); }), RunTime::TypeMismatch);
    EXPECT_EQ(toText(Value(Currency{600000})), u"60"_s);
    EXPECT_EQ(toText(Value(Currency{605000})), u"60.5"_s);
    EXPECT_EQ(toText(Value(Currency{-5})), u"-0.0005"_s);
    EXPECT_EQ(toText(Value(Currency{std::numeric_limits<std::int64_t>::min()})), u"-922337203685477.5808"_s);
}

TEST(ValueTest, NullEmptyBooleanAndTheirKin)
{
    const Value null{NullValue()};
    const std::function<void()> conversions[] = {
        [&] { toText(null); },     [&] { toBoolean(null); }, [&] { toInteger(null); },
        [&] { toLong(null); },     [&] { toSingle(null); },  [&] { toDouble(null); },
        [&] { toCurrency(null); }, [&] { toDecimal(null); }, [&] { toDate(null); },
    };
    for (const auto &conversion : conversions)
        EXPECT_EQ(errorOf(conversion), RunTime::InvalidUseOfNull);
    EXPECT_EQ(joinText(null), QString());
    EXPECT_EQ(toText(Value()), QString());
    EXPECT_EQ(toDouble(Value()), 0);
    EXPECT_EQ(toText(Value(true)), u"True"_s);
    EXPECT_TRUE(toBoolean(Value(u" true "_s)));
    EXPECT_FALSE(toBoolean(Value(u"0"_s)));
    EXPECT_TRUE(toBoolean(Value(0.1)));
    EXPECT_EQ(errorOf([] { toBoolean(Value(u"maybe"_s)); }), RunTime::TypeMismatch);
    EXPECT_NE(Value(1), Value(1.0));
    EXPECT_NE(Value(), null);
    EXPECT_TRUE(isNumeric(Value()));
    EXPECT_FALSE(isNumeric(null));
    EXPECT_FALSE(isNumeric(Value(DateSerial{1})));
}

TEST(ValueTest, TextIsTheSameInEveryLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const bool german = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    EXPECT_EQ(numberText(1234.5), u"1234.5"_s);
    EXPECT_EQ(toDouble(Value(u"1,234.5"_s)), 1234.5);
    EXPECT_EQ(dateText({45000.75}), u"3/15/2023 6:00:00 PM"_s);
    if (!german)
        printf("the machine has no German locale; Qt's alone was changed\n");
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}

TEST(ValueTest, TheStandardMessage)
{
    EXPECT_EQ(standardMessage(RunTimeError(13)), u"Run-time error '13':\n\nType mismatch"_s);
    EXPECT_EQ(standardMessage(RunTimeError(3021)), u"Run-time error '3021':\n\nNo current record."_s);
    EXPECT_EQ(standardMessage(RunTimeError(-2147217900, u"Syntax error."_s)),
              u"Run-time error '-2147217900':\n\nSyntax error."_s);
    EXPECT_EQ(RunTimeError(94).what(), std::string("Invalid use of Null"));
    for (const int number : {1, 4, -1, 32756, 99999})
        EXPECT_EQ(descriptionOf(number), u"Application-defined or object-defined error"_s);
    // The table must stay in order to be searched.
    for (const int number : {5, 6, 7, 9, 11, 13, 53, 75, 76, 91, 94, 3020, 3021, 3265, 3421, 32755})
        EXPECT_NE(descriptionOf(number), descriptionOf(1)) << number;
}
