// The statements of searches and reports, letter for letter.
#include "search/SearchSql.h"

#include "platform/base/RunTimeError.h"
#include "shell/state/QuoteForSQL.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

QString quoted(QString text)
{
    return QuoteForSQL(text);
}

TEST(SearchSql, QuotingDoublesApostrophesInPlaceAndEveryTime)
{
    QString name = u"O'Neil, D'Arcy '"_s;
    EXPECT_EQ(QuoteForSQL(name), u"O''Neil, D''Arcy ''"_s);
    QuoteForSQL(name);
    EXPECT_EQ(name, u"O''''Neil, D''''Arcy ''''"_s);
    const QString zeros = u"''"_s + QChar(u'\0') + QChar(u'\0') + u"%_["_s + QChar(u'\0');
    EXPECT_EQ(quoted(zeros), u"''''%_["_s);
    EXPECT_EQ(quoted({}), QString());
}

TEST(SearchSql, FragmentsGrowByCondition)
{
    const QString start = u"WHERE Client Like 'A' "_s;
    EXPECT_EQ(narrowed({}, u"Client"_s, u"A"_s), start);
    EXPECT_EQ(narrowed(start, u"Client"_s, u"B"_s), start + u" AND Client Like 'B' "_s);
    EXPECT_EQ(narrowed({}, u"Employee"_s, u"A"_s), u"WHERE Employee Like 'A' "_s);
    EXPECT_EQ(narrowed(start, u"Project"_s, u"P"_s), start + u" AND Project Like 'P' "_s);
    EXPECT_EQ(narrowedByText({}, u"A"_s), u"WHERE Vardelin Like '%A%' "_s);
    EXPECT_EQ(narrowedByText(start, {}), start + u" AND Vardelin Like '%%' "_s);
    EXPECT_EQ(narrowedByEntryProject({}, u"P"_s), u"WHERE Project Like 'P' "_s);
    EXPECT_EQ(narrowedByEntryProject(start, u"P"_s), start + u" AND WHERE Project Like 'P' "_s);
    EXPECT_EQ(widenedByClients({}, {u"A"_s, u"B"_s}), u"WHERE (Client Like 'A'  OR Client Like 'B' "_s);
    EXPECT_EQ(widenedByClients(start, {u"B"_s, u"C"_s}),
              start + u" OR Client Like 'B'  OR Client Like 'C' "_s);
}

TEST(SearchSql, StatementsOfSearches)
{
    const Value s = DateSerial{46280.91288194444}, e = DateSerial{46311};
    const QString range = u"AND [Beginning Time] BETWEEN #9/15/2026 9:54:33 PM# AND #10/16/2026# "_s;
    const QString select = u"SELECT * FROM Vardelins "_s;
    const auto statement = [](int type, const QString &filter) {
        return type == SearchFor::AllActiveClients ? statementOnClients(filter) : statementOn(filter);
    };
    const QString client = narrowed({}, u"Client"_s, u"A"_s);
    const QString clients = widenedByClients({}, {u"A"_s, u"B"_s});
    struct Row
    {
        int type;
        QString filter;
        bool range;
        QString expected;
    };
    const Row rows[] = {
        {0, client, false, u"SELECT * FROM Vardelins WHERE Client Like 'A'  ORDER BY [Beginning Time]"_s},
        {3, narrowed({}, u"Employee"_s, u"A"_s), true,
         select + u"WHERE Employee Like 'A' "_s + range + u" ORDER BY [Beginning Time]"_s},
        {2, clients, false,
         u"SELECT * FROM Vardelins  WHERE (Client Like 'A'  OR Client Like 'B' )  ORDER BY Client, [Beginning Time]"_s},
        {2, clients, true,
         select + u" WHERE (Client Like 'A'  OR Client Like 'B' ) "_s + range +
             u" ORDER BY Client, [Beginning Time]"_s},
        {5, narrowedByText({}, u"A"_s), false,
         u"SELECT * FROM Vardelins WHERE Vardelin Like '%A%'  ORDER BY [Beginning Time]"_s},
        {0, narrowed(client, u"Client"_s, u"B"_s), false,
         u"SELECT * FROM Vardelins WHERE Client Like 'A'  AND Client Like 'B'  ORDER BY [Beginning Time]"_s},
        {2, widenedByClients(client, {u"B"_s}), false,
         u"SELECT * FROM Vardelins  WHERE (lient Like 'A'  OR Client Like 'B' )  ORDER BY Client, [Beginning Time]"_s},
        {6, {}, false, u"SELECT * FROM Vardelins  ORDER BY [Beginning Time]"_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(statement(row.type, row.filter) + (row.range ? rangeText(s, e) : QString()) +
                      searchOrder(row.type),
                  row.expected);
    EXPECT_THROW(statementOnClients({}), RunTimeError);
    EXPECT_EQ(rangeText({}, NullValue()), u"AND [Beginning Time] BETWEEN ## AND ## "_s);
}

TEST(SearchSql, StatementsOfReports)
{
    const QString order = u"ORDER BY [Beginning Time]"_s;
    const Value s = DateSerial{46300}, e = DateSerial{46311};
    EXPECT_EQ(reportStatement(0, u"A"_s), u"SELECT * FROM Vardelins WHERE Client Like 'A' "_s);
    EXPECT_EQ(reportStatement(1, u"A"_s), reportStatement(0, u"A"_s));
    EXPECT_EQ(reportStatement(3, u"A"_s), u"SELECT * FROM Vardelins WHERE Employee Like 'A' "_s);
    EXPECT_EQ(reportStatement(4, u"A"_s), u"SELECT * FROM Vardelins WHERE Project Like 'A' "_s);
    EXPECT_EQ(reportStatement(5, u"A"_s), u"SELECT * FROM Vardelins WHERE Vardelin LIKE '%A%' "_s);
    EXPECT_EQ(reportStatement(7, u"A"_s), reportStatement(4, u"A"_s));
    for (const int none : {2, 6, 8, -1})
        EXPECT_EQ(reportStatement(none, u"A"_s), QString()) << none;
    EXPECT_EQ(reportEnding(0, s, e), order);
    for (const int frame : {1, 2, 3, 4})
        EXPECT_EQ(reportEnding(frame, s, e),
                  u"AND [Beginning Time] BETWEEN #10/5/2026# AND #10/16/2026# "_s + order);
    for (const int none : {5, 6, -1})
        EXPECT_EQ(reportEnding(none, s, e), QString()) << none;
    const int days[] = {0, 31, 183, 366, 0, 0, 0};
    for (int frame = 0; frame < 7; ++frame)
        EXPECT_EQ(daysOf(frame), days[frame]);
}

} // namespace

} // namespace vardelin
