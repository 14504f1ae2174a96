#include "platform/base/Dates.h"
#include "platform/base/RunTimeError.h"

#include <gtest/gtest.h>

using namespace vardelin;
using namespace Qt::StringLiterals;

TEST(DatesTest, EveryDayAgreesWithTheCalendar)
{
    const QDate epoch(1899, 12, 30);
    QDate date(100, 1, 1);
    for (auto day = static_cast<int>(kFirstDay); day <= static_cast<int>(kLastDay);
         ++day, date = date.addDays(1)) {
        const DateParts parts = partsOf({double(day)});
        if (parts != DateParts{date.year(), date.month(), date.day(), 0, 0, 0} ||
            serialOf(parts).days != day || weekdayOf({double(day)}) != date.dayOfWeek() % 7 + 1)
            FAIL() << qPrintable(date.toString(Qt::ISODate));
    }
    EXPECT_EQ(date, QDate(10000, 1, 1));
    EXPECT_EQ(epoch.daysTo(QDate(2026, 10, 16)), serialOf({2026, 10, 16, 0, 0, 0}).days);
}

TEST(DatesTest, EverySecondOfADayComesBack)
{
    for (const int year : {100, 1899, 2026, 9999}) {
        for (int second = 0; second < 86400; second += 7) {
            const DateParts parts{year, 2, 28, second / 3600, second / 60 % 60, second % 60};
            const DateSerial date = serialOf(parts);
            ASSERT_EQ(partsOf(date), parts) << year << ' ' << second;
            const std::optional<DateSerial> read = dateFromText(dateText(date));
            ASSERT_TRUE(read && *read == date) << qPrintable(dateText(date));
            ASSERT_EQ(fromQDateTime(toQDateTime(date)), date);
        }
    }
}

TEST(DatesTest, TimesRunForwardBeforeTheFirstDay)
{
    EXPECT_EQ(partsOf({-1.25}), (DateParts{1899, 12, 29, 6, 0, 0}));
    EXPECT_EQ(serialOf({1899, 12, 29, 6, 0, 0}).days, -1.25);
    EXPECT_EQ(partsOf({0.99999999}), (DateParts{1899, 12, 31, 0, 0, 0}));
    EXPECT_EQ(partsOf({1e300}), DateParts());
    EXPECT_EQ(partsOf({std::numeric_limits<double>::quiet_NaN()}), DateParts());
}

TEST(DatesTest, DefaultText)
{
    const struct
    {
        DateParts parts;
        const char *text;
    } cases[] = {
        {{2026, 10, 16, 21, 54, 33}, "10/16/2026 9:54:33 PM"},
        {{2026, 10, 16, 0, 0, 0}, "10/16/2026"},
        {{2026, 1, 2, 0, 0, 1}, "1/2/2026 12:00:01 AM"},
        {{2026, 1, 2, 12, 0, 0}, "1/2/2026 12:00:00 PM"},
        {{1899, 12, 30, 9, 5, 0}, "9:05:00 AM"},
        {{1899, 12, 30, 0, 0, 0}, "12:00:00 AM"},
        {{100, 1, 1, 0, 0, 0}, "1/1/100"},
        {{100, 1, 1, 21, 54, 33}, "1/1/100 9:54:33 PM"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(dateText(serialOf(c.parts)), QLatin1StringView(c.text));
}

TEST(DatesTest, FromText)
{
    const int thisYear = QDate::currentDate().year();
    const struct
    {
        const char *text;
        DateParts parts;
    } cases[] = {
        {"10/16/2026 9:54:33 PM", {2026, 10, 16, 21, 54, 33}},
        {" 10/16/26 ", {2026, 10, 16, 0, 0, 0}},
        {"1/1/29", {2029, 1, 1, 0, 0, 0}},
        {"1/1/30", {1930, 1, 1, 0, 0, 0}},
        {"10-16-2026", {2026, 10, 16, 0, 0, 0}},
        {"2026-10-16 21:54", {2026, 10, 16, 21, 54, 0}},
        {"2026/10/16", {2026, 10, 16, 0, 0, 0}},
        {"16/10/2026", {2026, 10, 16, 0, 0, 0}}, // no sixteenth month: the other way round
        {"16 Oct 2026", {2026, 10, 16, 0, 0, 0}},
        {"16-oct-26", {2026, 10, 16, 0, 0, 0}},
        {"Oct. 16, 2026", {2026, 10, 16, 0, 0, 0}},
        {"October 16, 2026", {2026, 10, 16, 0, 0, 0}},
        {"Friday, October 16, 2026", {2026, 10, 16, 0, 0, 0}},
        {"October 2026", {2026, 10, 1, 0, 0, 0}},
        {"10/2026", {2026, 10, 1, 0, 0, 0}},
        {"2/28", {thisYear, 2, 28, 0, 0, 0}},
        {"May 5", {thisYear, 5, 5, 0, 0, 0}},
        {"9:54 PM", {1899, 12, 30, 21, 54, 0}},
        {"9:54pm", {1899, 12, 30, 21, 54, 0}},
        {"9 am", {1899, 12, 30, 9, 0, 0}},
        {"12:30 AM", {1899, 12, 30, 0, 30, 0}},
        {"12:30 p", {1899, 12, 30, 12, 30, 0}},
        {"23:59:59", {1899, 12, 30, 23, 59, 59}},
        {"9:54 PM 10/16/2026", {2026, 10, 16, 21, 54, 0}},
        {"2/29/2028", {2028, 2, 29, 0, 0, 0}},
        {"1/1/100", {100, 1, 1, 0, 0, 0}},
        {"12/31/9999", {9999, 12, 31, 0, 0, 0}},
    };
    for (const auto &c : cases) {
        const std::optional<DateSerial> date = dateFromText(QString::fromLatin1(c.text));
        ASSERT_TRUE(date) << c.text;
        EXPECT_EQ(*date, serialOf(c.parts)) << c.text;
    }
    for (const char *text : {"",
                             " ",
                             "tomorrow",
                             "2/29/2026",
                             "13/13/2026",
                             "10/16/2026/1",
                             "10//2026",
                             "10/16/",
                             "/10/16",
                             "24:00",
                             "9:60",
                             "9:54:60",
                             "13:00 AM",
                             "10/16/2026 9",
                             "9:54 9:55",
                             "10/16/20266",
                             "12",
                             "45000",
                             "1.5",
                             "10/0/2026",
                             "0/10/2026",
                             "Oct Nov 2026",
                             "16 October 2026 5",
                             "9:",
                             ":9",
                             "10/16/2026,,",
                             "May"})
        EXPECT_FALSE(dateFromText(QString::fromLatin1(text))) << text;
}

TEST(DatesTest, ConversionToADate)
{
    EXPECT_EQ(toDate(Value(u"45000.5"_s)).days, 45000.5);
    EXPECT_EQ(toDate(Value(2)).days, 2);
    for (const double days : {kFirstDay - 1, kLastDay + 1, 1e300})
        EXPECT_THROW((void)toDate(Value(days)), RunTimeError) << days;
    try {
        (void)toDate(Value(u"soon"_s));
        FAIL();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), RunTime::TypeMismatch);
    }
}
