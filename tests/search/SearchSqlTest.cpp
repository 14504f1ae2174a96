// The statements of searches and reports, letter for letter.
#include "search/SearchSql.h"

#include "platform/base/RunTimeError.h"
#include "shell/state/QuoteForSQL.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

TEST(SearchSql, QuotingDoublesApostrophesInPlaceAndEveryTime)
{
    QString name = u"O'Neil, D'Arcy '%_["_s + QChar(u'\0') + QChar(u'\0');
    EXPECT_EQ(QuoteForSQL(name), u"O''Neil, D''Arcy ''%_["_s);
    QuoteForSQL(name);
    EXPECT_EQ(name, u"O''''Neil, D''''Arcy ''''%_["_s);
}

TEST(SearchSql, StatementsOfSearches)
{
    const QString a = narrowed({}, u"Client"_s, u"A"_s);
    const QString clients = widenedByClients({}, {u"A"_s, u"B"_s});
    const QString range = rangeText(DateSerial{46280.91288194444}, DateSerial{46311});
    EXPECT_EQ(range, u"AND [Beginning Time] BETWEEN #9/15/2026 9:54:33 PM# AND #10/16/2026# "_s);
    struct Row
    {
        int type;
        QString filter, range, expected;
    };
    const Row rows[] = {
        {0, a, {}, u"WHERE Client Like 'A'  ORDER BY [Beginning Time]"_s},
        {3, narrowed({}, u"Employee"_s, u"A"_s), range,
         u"WHERE Employee Like 'A' "_s + range + u" ORDER BY [Beginning Time]"_s},
        {2,
         clients,
         {},
         u" WHERE (Client Like 'A'  OR Client Like 'B' )  ORDER BY Client, [Beginning Time]"_s},
        {2, clients, range,
         u" WHERE (Client Like 'A'  OR Client Like 'B' ) "_s + range +
             u" ORDER BY Client, [Beginning Time]"_s},
        {2,
         widenedByClients(a, {u"B"_s}),
         {},
         u" WHERE (lient Like 'A'  OR Client Like 'B' )  ORDER BY Client, [Beginning Time]"_s},
        {5, narrowedByText({}, u"A"_s), {}, u"WHERE Vardelin Like '%A%'  ORDER BY [Beginning Time]"_s},
        {0,
         narrowed(a, u"Client"_s, u"B"_s),
         {},
         u"WHERE Client Like 'A'  AND Client Like 'B'  ORDER BY [Beginning Time]"_s},
        {6, narrowedByEntryProject({}, u"P"_s), {}, u"WHERE Project Like 'P'  ORDER BY [Beginning Time]"_s},
        {6,
         narrowedByEntryProject(a, u"P"_s),
         {},
         u"WHERE Client Like 'A'  AND WHERE Project Like 'P'  ORDER BY [Beginning Time]"_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ((row.type == 2 ? statementOnClients(row.filter) : statementOn(row.filter)) + row.range +
                      searchOrder(row.type),
                  u"SELECT * FROM Vardelins "_s + row.expected);
    EXPECT_THROW(statementOnClients({}), RunTimeError);
}

TEST(SearchSql, StatementsOfReports)
{
    const QString order = u"ORDER BY [Beginning Time]"_s;
    const Value s = DateSerial{46300}, e = DateSerial{46311};
    const QString client = u"Client Like 'A' "_s, project = u"Project Like 'A' "_s;
    const QString conditions[] = {
        client,    client,  {},       u"Employee Like 'A' "_s, project, u"Vardelin LIKE '%A%' "_s,
        QString(), project, QString()};
    for (int type = 0; type < 9; ++type)
        EXPECT_EQ(reportStatement(type, u"A"_s),
                  conditions[type].isEmpty() ? QString()
                                             : u"SELECT * FROM Vardelins WHERE "_s + conditions[type]);
    EXPECT_EQ(reportEnding(0, s, e), order);
    for (const int frame : {1, 2, 3, 4})
        EXPECT_EQ(reportEnding(frame, s, e),
                  u"AND [Beginning Time] BETWEEN #10/5/2026# AND #10/16/2026# "_s + order);
    EXPECT_EQ(reportEnding(5, s, e) + reportEnding(-1, s, e), QString());
}

} // namespace vardelin
