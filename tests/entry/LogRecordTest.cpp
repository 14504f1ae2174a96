#include "entry/LogRecord.h"

#include "platform/base/RunTimeError.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

TEST(LogRecord, DurationBillsEveryBegunTenth)
{
    struct Row
    {
        const char *reason;
        double minutes;
        const char16_t *text;
    };
    const Row rows[] = {
        {"no time still bills a tenth", 0, u".1"},
        {"a second, which becomes a text with an exponent", 1.0 / 60, u".1"},
        {"four minutes", 4, u".1"},
        {"twenty minutes", 20, u".4"},
        {"an hour and forty minutes", 100, u"1.7"},
        {"more than a day", 25 * 60 + 20, u"25.4"},
        {"an end ahead of the beginning", -20, u"-.3"},
    };
    for (const Row &row : rows) {
        for (const double begin : {0.0, 46311.375, 46311.9999}) {
            const DateSerial from{begin}, to{begin + row.minutes / 1440};
            EXPECT_EQ(durationText(from, to), QString::fromUtf16(row.text))
                << row.reason << " from " << begin;
        }
    }
}

TEST(LogRecord, FeeIsExactAndRoundsToMoneyAtTheEnd)
{
    struct Row
    {
        const char16_t *rate, *duration;
        Value fee;
    };
    const Row rows[] = {
        {u"150", u".4", Currency{600000}},
        {u"99.99", u".3", Currency{299970}},
        {u"$1,250.50", u"1.7", Currency{21258500}},
        {u"0.0025", u".1", Currency{2}},
        {u"0.0035", u".1", Currency{4}},
        {u"200", u"-.3", Currency{-600000}},
        {u"", u".4", std::int16_t(0)},
    };
    for (const Row &row : rows) {
        const Value fee = feeOf(QString::fromUtf16(row.rate), QString::fromUtf16(row.duration));
        EXPECT_EQ(storedFee(fee), row.fee) << QString::fromUtf16(row.rate).toStdString();
    }
    EXPECT_EQ(feeOf(u"33.333"_s, u".1"_s), Value(*Decimal::fromText(u"3.3333")))
        << "no rounding ahead of money";
    try {
        feeOf(u"abc"_s, u".1"_s);
        ADD_FAILURE() << "a rate that is no number has no fee";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), RunTime::TypeMismatch);
    }
}

TEST(LogRecord, ClientOrProjectMustBeThere)
{
    EXPECT_FALSE(hasClientOrProject({.client = u"   "_s, .employee = u"Roe, Jane"_s, .rate = u"150"_s}));
    EXPECT_TRUE(hasClientOrProject({.client = u"Last, First"_s}));
    EXPECT_TRUE(hasClientOrProject({.project = u"MARKETING"_s}));
    EXPECT_TRUE(hasClientOrProject({.client = u"\t"_s})) << "only blanks count as empty";
}

TEST(LogRecord, SummaryComesFromTheNotesWhereNoneIsTyped)
{
    const QString notes = u"\r\n  Conference "_s + QString(150, u'x');
    EXPECT_EQ(logSummary(u"  typed  "_s, notes), u"typed"_s);
    EXPECT_EQ(logSummary(u"   "_s, notes), notes.left(100)) << "as they stand, not trimmed";
    EXPECT_EQ(logSummary({}, {}), QString());
    EXPECT_EQ(logSummary(QString(130, u'y'), notes).size(), 130) << "a typed one isn't cut";
    EXPECT_EQ(logSummary({}, QString(99, u'x') + u"\U0001F600"_s), QString(99, u'x')) << "no half characters";
}

TEST(LogRecord, NotesPassToTheSummary)
{
    EXPECT_EQ(passToSummary({}, u"call"_s), u"call"_s);
    EXPECT_EQ(passToSummary(u"Long"_s, u"call"_s), u"Long call"_s);
    EXPECT_EQ(passToSummary(u"Long "_s, u"call"_s), u"Long  call"_s)
        << "a blank at the end doesn't count, but";
    EXPECT_EQ(passToSummary(u"A "_s, u"call"_s), u"A call"_s) << "in a text of two characters it does";
    EXPECT_EQ(passToSummary(u"A"_s, u"call"_s), u"A call"_s);
    EXPECT_EQ(activitiesText({u"Review file"_s, u"Attend"_s}), u" Review file Attend"_s);
}

} // namespace vardelin
