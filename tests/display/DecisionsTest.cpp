#include "display/FeeTip.h"
#include "platform/base/RunTimeError.h"
#include "platform/data/RecordPlace.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

TEST(FeeTip, isRateTimesDurationInItsPlainestForm)
{
    EXPECT_EQ(feeTip(u"60"_s, u"1"_s), u"Fee for services is $60"_s);
    EXPECT_EQ(feeTip(u"60.5"_s, u"1.0"_s), u"Fee for services is $60.5"_s);
    EXPECT_EQ(feeTip(u"150"_s, u".4"_s), u"Fee for services is $60"_s);
    EXPECT_EQ(feeTip(u"0.1"_s, u"0.2"_s), u"Fee for services is $0.02"_s) << "exact decimals";
    EXPECT_EQ(feeTip(u"1.00005"_s, u"1"_s), u"Fee for services is $1"_s) << "four places, halves to even";
    EXPECT_EQ(feeTip(u"1.00015"_s, u"1"_s), u"Fee for services is $1.0002"_s);
    EXPECT_EQ(feeTip(QString(), u"1"_s), std::nullopt);
    EXPECT_EQ(feeTip(u"60"_s, QString()), std::nullopt);
    try {
        feeTip(u"pro bono"_s, u"1"_s);
        ADD_FAILURE() << "no number was taken for one";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), RunTime::TypeMismatch);
    }
}

TEST(Slider, standsWhereTheRecordDoes)
{
    const auto at = [](int position, int count) {
        return sliderValue({.bof = false, .eof = false, .position = position, .count = count}, 100);
    };
    EXPECT_EQ(at(1, 10), 0) << "the first, though a tenth of the way";
    EXPECT_EQ(at(1, 1), 0);
    EXPECT_EQ(at(10, 10), 100);
    EXPECT_EQ(at(3, 8), 38) << "37.5";
    EXPECT_EQ(at(5, 8), 62) << "62.5: halves to the even number";
    EXPECT_EQ(at(2, 3), 67);
    EXPECT_EQ(at(5, 0), 0);
    EXPECT_EQ(sliderValue({true, true, -1, 0}, 100), 0);
    EXPECT_EQ(sliderValue({true, false, -2, 9}, 100), 0);
    EXPECT_EQ(sliderValue({false, true, -3, 9}, 100), 100);
}

TEST(Slider, asksForTheNearestRecord)
{
    EXPECT_EQ(sliderPosition(100, 100, 7), 7);
    EXPECT_EQ(sliderPosition(50, 100, 5), 2) << "2.5: halves to the even number";
    EXPECT_EQ(sliderPosition(70, 100, 5), 4);
    EXPECT_EQ(sliderPosition(20, 100, 5), 1);
    EXPECT_EQ(sliderPosition(19, 100, 5), std::nullopt);
    EXPECT_EQ(sliderPosition(0, 100, 5), std::nullopt);
    EXPECT_EQ(sliderPosition(100, 100, 0), std::nullopt);
    for (int count = 1; count <= 300; ++count) {
        for (int value = 0; value <= 100; ++value) {
            const int position = sliderPosition(value, 100, count).value_or(1);
            EXPECT_GE(position, 1);
            EXPECT_LE(position, count);
        }
    }
}

} // namespace
