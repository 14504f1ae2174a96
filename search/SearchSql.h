#pragma once
// The SQL text of a search, as plain functions of texts and dates. Every value must be quoted already, but
// where a function says otherwise. Blanks stand as they are settled, two in a row included.

#include "platform/base/Value.h"

#include <QStringList>

namespace vardelin {

// What a search looks for: the index of the button in frmSearch, or one that no button has.
namespace SearchFor {
inline constexpr int CurrentClient = 0;
inline constexpr int AnotherClient = 1;
inline constexpr int AllActiveClients = 2;
inline constexpr int Employee = 3;
inline constexpr int Project = 4;
inline constexpr int LogText = 5;
inline constexpr int EntryFields = 6;    // the client or project of a Data entry window
inline constexpr int CurrentProject = 7; // of a report alone
} // namespace SearchFor

// When: likewise.
namespace TimeFrame {
inline constexpr int All = 0;
inline constexpr int LastMonth = 1;
inline constexpr int LastSixMonths = 2;
inline constexpr int LastYear = 3;
inline constexpr int Customized = 4;
inline constexpr int AsItStands = 5; // RangeStart and RangeEnd are not set anew
} // namespace TimeFrame

inline constexpr char16_t kSelectLogs[] = u"SELECT * FROM Vardelins ";

// A WHERE fragment narrowed by one condition; an empty one begins with it. `column` is Client, Employee or
// Project.
QString narrowed(const QString &filter, const QString &column, const QString &value);
QString narrowedByText(const QString &filter, const QString &text);
// By the project of a Data entry window: to a fragment that isn't empty " AND WHERE ..." is added, which the
// engine rejects. That is settled.
QString narrowedByEntryProject(const QString &filter, const QString &project);
// By any of the clients. A fragment that was empty opens a bracket, which stays open.
QString widenedByClients(QString filter, const QStringList &clients);

// The statement on a fragment, without range and order. That on all active clients closes the bracket and
// takes the first seven characters of the fragment for "WHERE (", whatever they are: RunTimeError 5 where it
// is shorter.
QString statementOn(const QString &filter);
QString statementOnClients(const QString &filter);

// The days from the beginning of a time frame to now; 0 for frames that aren't measured from now.
int daysOf(int timeFrame);
bool hasRange(int timeFrame);
QString rangeText(const Value &start, const Value &end);
QString searchOrder(int searchType);

// The report's statement, which no fragment narrows, without range and order: empty for a type that has none.
// The text of a log goes in as it was typed.
QString reportStatement(int searchType, const QString &value);
// `start` and `end` are looked at where the frame has a range.
QString reportEnding(int timeFrame, const Value &start, const Value &end);

} // namespace vardelin
