#include "search/SearchSql.h"

#include "platform/base/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

QString like(const QString &column, const QString &value)
{
    return column + u" Like '"_s + value + u"' "_s;
}

} // namespace

QString narrowed(const QString &filter, const QString &column, const QString &value)
{
    return filter + (filter.isEmpty() ? u"WHERE "_s : u" AND "_s) + like(column, value);
}

QString narrowedByText(const QString &filter, const QString &text)
{
    return narrowed(filter, u"Vardelin"_s, u'%' + text + u'%');
}

QString narrowedByEntryProject(const QString &filter, const QString &project)
{
    return filter + (filter.isEmpty() ? u"WHERE "_s : u" AND WHERE "_s) + like(u"Project"_s, project);
}

QString widenedByClients(QString filter, const QStringList &clients)
{
    for (const QString &client : clients)
        filter += (filter.isEmpty() ? u"WHERE ("_s : u" OR "_s) + like(u"Client"_s, client);
    return filter;
}

QString statementOn(const QString &filter)
{
    return QString::fromUtf16(kSelectLogs) + filter;
}

QString statementOnClients(const QString &filter)
{
    constexpr qsizetype opening = 7; // of "WHERE ("
    if (filter.size() < opening)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return QString::fromUtf16(kSelectLogs) + u" WHERE ("_s + filter.mid(opening) + u") "_s;
}

int daysOf(int timeFrame)
{
    switch (timeFrame) {
    case TimeFrame::LastMonth:
        return 31;
    case TimeFrame::LastSixMonths:
        return 183;
    case TimeFrame::LastYear:
        return 366;
    default:
        return 0;
    }
}

bool hasRange(int timeFrame)
{
    return timeFrame >= TimeFrame::LastMonth && timeFrame <= TimeFrame::AsItStands;
}

QString rangeText(const Value &start, const Value &end)
{
    return u"AND [Beginning Time] BETWEEN #"_s + joinText(start) + u"# AND #"_s + joinText(end) + u"# "_s;
}

QString searchOrder(int searchType)
{
    return searchType == SearchFor::AllActiveClients ? u" ORDER BY Client, [Beginning Time]"_s
                                                     : u" ORDER BY [Beginning Time]"_s;
}

QString reportStatement(int searchType, const QString &value)
{
    switch (searchType) {
    case SearchFor::CurrentClient:
    case SearchFor::AnotherClient:
        return statementOn(narrowed({}, u"Client"_s, value));
    case SearchFor::Employee:
        return statementOn(narrowed({}, u"Employee"_s, value));
    case SearchFor::Project:
    case SearchFor::CurrentProject:
        return statementOn(narrowed({}, u"Project"_s, value));
    case SearchFor::LogText:
        return statementOn(u"WHERE Vardelin LIKE '%"_s + value + u"%' "_s);
    default:
        return {};
    }
}

QString reportEnding(int timeFrame, const Value &start, const Value &end)
{
    QString order = u"ORDER BY [Beginning Time]"_s;
    if (timeFrame == TimeFrame::All)
        return order;
    return hasRange(timeFrame) && timeFrame != TimeFrame::AsItStands ? rangeText(start, end) + order
                                                                     : QString();
}

} // namespace vardelin
