#include "platform/base/Decimal.h"
#include "platform/base/RunTimeError.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace vardelin;
using namespace Qt::StringLiterals;

namespace {

Decimal decimal(const QString &text)
{
    const std::optional<Decimal> number = Decimal::fromText(text);
    EXPECT_TRUE(number) << qPrintable(text);
    return number.value_or(Decimal());
}

} // namespace

TEST(DecimalTest, TextRoundsToWhatFits)
{
    const struct
    {
        const char *text, *kept;
    } cases[] = {
        {"1.50", "1.5"},
        {"-0", "0"},
        {"1E3", "1000"},
        {"1E-28", "0.0000000000000000000000000001"},
        {"5E-29", "0"}, // a half to the even digit
        {"15E-29", "0.0000000000000000000000000002"},
        {"5.00000000000000000000000000000000000000000000000000000000000000000000001E-29",
         "0.0000000000000000000000000001"},
        {"1E-100000", "0"},
        {"79228162514264337593543950335", "79228162514264337593543950335"},
        {"7.92281625142643375935439503355", "7.922816251426433759354395034"},
        {"12345678901234567890.123456789012345", "12345678901234567890.123456789"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(decimal(QString::fromLatin1(c.text)).toText(), QLatin1StringView(c.kept));
    for (const char *big :
         {"79228162514264337593543950335.5", "79228162514264337593543950336", "1E29", "1E100000"})
        EXPECT_THROW((void)Decimal::fromText(QString::fromLatin1(big)), RunTimeError) << big;
    EXPECT_FALSE(Decimal::fromText(u"an hour"_s));
    EXPECT_FALSE(Decimal::fromParts(false, 1, 29));
}

TEST(DecimalTest, ArithmeticAgreesWithWholeNumbers)
{
    // Operands below 10^12 with up to 8 places: everything fits 128 bits exactly.
    std::mt19937_64 random(7);
    std::uniform_int_distribution<std::int64_t> digits(-999999999999, 999999999999);
    std::uniform_int_distribution<int> places(0, 8);
    const auto power = [](int exponent) {
        std::int64_t value = 1;
        while (exponent-- > 0)
            value *= 10;
        return value;
    };
    for (int i = 0; i < 5000; ++i) {
        const std::int64_t a = digits(random), b = digits(random);
        const int p = places(random), q = places(random);
        const Decimal left = *Decimal::fromParts(a < 0, a < 0 ? -a : a, p),
                      right = *Decimal::fromParts(b < 0, b < 0 ? -b : b, q);
        const Decimal product = left * right, sum = left + right;
        EXPECT_TRUE(product.digits() == Decimal::Digits(a) * b && product.scale() == p + q);
        const Decimal::Digits common = Decimal::Digits(a) * power(8 - p) + Decimal::Digits(b) * power(8 - q);
        EXPECT_TRUE(sum == *Decimal::fromParts(common < 0, common < 0 ? -common : common, 8));
        EXPECT_EQ(left < right, Decimal::Digits(a) * power(8 - p) < Decimal::Digits(b) * power(8 - q));
        EXPECT_TRUE(left - right == left + -right);
        EXPECT_TRUE(decimal(left.toText()) == left);
    }
}

TEST(DecimalTest, EndsOfTheRange)
{
    const Decimal most = decimal(u"79228162514264337593543950335"_s);
    EXPECT_THROW((void)(most + Decimal(1)), RunTimeError);
    EXPECT_THROW((void)(most * Decimal(2)), RunTimeError);
    EXPECT_EQ((most * decimal(u"0.1"_s)).toText(), u"7922816251426433759354395033.5"_s);
    EXPECT_EQ((most + decimal(u"0.4"_s)).toText(), most.toText());
    EXPECT_THROW((void)(most + decimal(u"0.5"_s)),
                 RunTimeError); // rounds up to the even number, which is too big
    EXPECT_EQ((decimal(u"1E-28"_s) * decimal(u"0.5"_s)).toText(), u"0"_s);
    EXPECT_EQ((decimal(u"3E-28"_s) * decimal(u"0.5"_s)).toText(), u"0.0000000000000000000000000002"_s);
    EXPECT_THROW((void)most.toCurrency(), RunTimeError);
    EXPECT_EQ(most.toDouble(), 79228162514264337593543950335.0);
    const Currency much{std::numeric_limits<std::int64_t>::max()};
    EXPECT_THROW((void)(much + Currency{1}), RunTimeError);
    EXPECT_EQ((much + Currency{-1}).tenThousandths, much.tenThousandths - 1);
}
