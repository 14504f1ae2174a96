// The billing rule of a log, held against an oracle in whole numbers: hours are rounded to tenths from their
// 15-digit text with half a tenth added, fees are rate times that, exactly.
#include "platform/base/Dates.h"
#include "platform/base/Format.h"

#include <gtest/gtest.h>

using namespace vardelin;
using namespace Qt::StringLiterals;

namespace {

__extension__ using Int128 = __int128;

constexpr int kRates[] = {0, 50, 75, 100, 125, 150, 175, 200, 225, 250, 275, 300, 325, 350, 375};
constexpr int kMinutes = 48 * 60;

// As a window does it.
QString durationText(double days)
{
    return format(Value(toDouble(Value(numberText(days))) * 24.0 + 0.05), u"##.0");
}

Int128 powerOfTen(int exponent)
{
    Int128 power = 1;
    while (exponent-- > 0)
        power *= 10;
    return power;
}

// value / 10^scale, halves away from zero, to the given number of significant digits; positive values.
struct Fixed
{
    Int128 value;
    int scale;
};
Fixed toSignificant(Fixed number, int digits)
{
    while (number.value >= powerOfTen(digits)) {
        int drop = 1;
        while (number.value / powerOfTen(drop) >= powerOfTen(digits))
            ++drop;
        number = {(number.value + powerOfTen(drop) / 2) / powerOfTen(drop), number.scale - drop};
    }
    return number;
}

// Tenths of an hour of so many minutes: the days as 15 digits, times 24, plus 0.05, shown with 15 digits,
// rounded to tenths.
Int128 tenthsOf(int minutes)
{
    const Fixed days = toSignificant({powerOfTen(30) * minutes / 1440, 30}, 15);
    const Fixed hours = toSignificant({days.value * 24 + 5 * powerOfTen(days.scale - 2), days.scale}, 15);
    const Int128 tenth = powerOfTen(hours.scale - 1);
    return (hours.value + tenth / 2) / tenth;
}

QString tenthsText(Int128 tenths)
{
    const auto number = static_cast<long long>(tenths);
    return (number >= 10 ? QString::number(number / 10) : QString()) + u'.' + QString::number(number % 10);
}

} // namespace

TEST(LogMoneyTest, TenthsOfEveryMinuteOfTwoDays)
{
    for (int minutes = 0; minutes <= kMinutes; ++minutes) {
        const QString text = durationText(minutes / 1440.0);
        ASSERT_EQ(text, tenthsText(tenthsOf(minutes))) << minutes;
        // Every tenth that was begun counts, and no time at all counts one; on a full tenth the digits that
        // the text lost decide.
        const Int128 begun = minutes / 6 + 1;
        ASSERT_TRUE(text == tenthsText(begun) || (minutes % 6 == 0 && text == tenthsText(begun - 1)))
            << minutes;
    }
    for (const auto &[minutes, text] :
         {std::pair{0, u".1"_s}, {4, u".1"_s}, {20, u".4"_s}, {100, u"1.7"_s}, {1520, u"25.4"_s}})
        EXPECT_EQ(durationText(minutes / 1440.0), text);
    EXPECT_EQ(durationText(-1.0 / 24),
              u"-1.0"_s); // an end ahead of its beginning: halves away from zero, -0.95 is -1.0
}

TEST(LogMoneyTest, FeesAreExact)
{
    for (int minutes = 0; minutes <= kMinutes; ++minutes) {
        const QString duration = durationText(minutes / 1440.0);
        for (const int rate : kRates) {
            const Decimal fee = toDecimal(Value(QString::number(rate))) * toDecimal(Value(duration));
            const auto expected = static_cast<std::int64_t>(tenthsOf(minutes) * rate * 1000);
            ASSERT_EQ(fee.toCurrency().tenThousandths, expected) << minutes << " at " << rate;
            ASSERT_EQ(toCurrency(Value(fee)).tenThousandths, expected);
        }
    }
}

TEST(LogMoneyTest, BothRoundingRulesOverAllHalves)
{
    for (int n = -20001; n <= 20001; n += 2) { // n/2 of the last place: always a half
        const bool negative = n < 0;
        const Int128 magnitude = negative ? -n : n;
        const Decimal money = *Decimal::fromParts(negative, magnitude * 5, 5);
        const int below = n > 0 ? n / 2 : (n - 1) / 2;
        EXPECT_EQ(money.toCurrency().tenThousandths,
                  below % 2 == 0 ? below : below + 1); // the even neighbour
        const int away = n > 0 ? below + 1 : below;
        EXPECT_EQ(format(Value(money), u"0.0000"), format(Value(Currency{away}), u"0.0000"));
        EXPECT_EQ(toLong(Value(n / 2.0)), below % 2 == 0 ? below : below + 1);
        EXPECT_EQ(format(Value(n / 2.0), u"0"), QString::number(away));
    }
}
