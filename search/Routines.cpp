#include "search/Routines.h"

#include "platform/data/Ado.h"
#include "platform/ui/BusyPointer.h"
#include "search/DataReport1.h"
#include "search/SearchSql.h"
#include "search/frmSearch.h"
#include "search/frmSearchDatePicker.h"
#include "search/frmSearchList.h"
#include "shell/state/Global.h"
#include "shell/state/QuoteForSQL.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr char16_t kNoRecords[] =
    u"Sorry, no records were found meeting your search criteria.  "
    u"Closing this report window will return you to your Vardelin display window.";

// What a routine changes on its way and puts back at its end. A failure on the way leaves it changed.
struct SavedRange
{
    explicit SavedRange(const Global &global) : start(global.RangeStart), end(global.RangeEnd) {}
    void restore(Global &global) const
    {
        global.RangeStart = start;
        global.RangeEnd = end;
    }
    const Value start, end;
};

// The window of a Tag; one that was closed is made anew.
template <class Window>
Window &windowOf(const std::vector<QPointer<Window>> &windows, const QString &tag,
                 const std::function<Window *(int)> &makeAnew)
{
    const int index = tag.toInt() - 1;
    if (Window *window = windows.at(static_cast<std::size_t>(index)))
        return *window;
    return *makeAnew(index);
}

DisplayWindow &currentDisplay(const Global &global)
{
    return windowOf(global.DisplayWindows, global.CurrentDisplayTag, global.openers.makeDisplayWindow);
}

EntryWindow &currentEntry(const Global &global)
{
    return windowOf(global.EntryWindows, global.CurrentEntryTag, global.openers.makeEntryWindow);
}

void pick(Global &global, const QString &caption)
{
    frmSearchList(global, caption, global.frmMain).exec();
}

void askForText(Global &global)
{
    global.SearchText = global.services.dialogs.inputBox(u"Enter the text being sought in your Vardelins"_s,
                                                         u"Search for Vardelin text"_s);
}

// RangeStart and RangeEnd by time frame.
void setRange(Global &global, int timeFrame)
{
    if (const int days = daysOf(timeFrame)) {
        const DateSerial now = global.services.clock.now();
        global.RangeEnd = now;
        global.RangeStart = DateSerial{now.days - days};
    } else if (timeFrame == TimeFrame::Customized) {
        frmSearchDatePicker(global, global.frmMain).exec();
    }
}

void narrowByAllClients(Global &global)
{
    QStringList quoted;
    for (const QString &client : global.List1[static_cast<std::size_t>(PickList::Clients)]) {
        global.SearchClient = client;
        quoted += QuoteForSQL(global.SearchClient);
    }
    global.SQLFilter = widenedByClients(global.SQLFilter, quoted);
    global.CurrentSQL = statementOnClients(global.SQLFilter);
}

// SearchClient, SearchEmployee, SearchProject and SearchText by type, where the type doesn't take them as
// they stand.
void askForValue(Global &global, int searchType, bool fromDisplay)
{
    switch (searchType) {
    case SearchFor::CurrentClient:
        global.SearchClient = fromDisplay ? currentDisplay(global).client() : currentEntry(global).client();
        break;
    case SearchFor::AnotherClient:
        pick(global, u"Select a client"_s);
        break;
    case SearchFor::Employee:
        pick(global, u"Select an employee"_s);
        break;
    case SearchFor::Project:
        pick(global, u"Select a project"_s);
        break;
    case SearchFor::LogText:
        askForText(global);
        break;
    default:
        break;
    }
}

QString narrowedByEntryFields(Global &global)
{
    if (!global.SearchClient.isEmpty())
        return narrowed(global.SQLFilter, u"Client"_s, QuoteForSQL(global.SearchClient));
    if (!global.SearchProject.isEmpty())
        return narrowedByEntryProject(global.SQLFilter, QuoteForSQL(global.SearchProject));
    return global.SQLFilter;
}

// SQLFilter and CurrentSQL by type; an unknown type leaves both.
void narrow(Global &global, int searchType)
{
    QString &filter = global.SQLFilter;
    switch (searchType) {
    case SearchFor::CurrentClient:
    case SearchFor::AnotherClient:
        filter = narrowed(filter, u"Client"_s, QuoteForSQL(global.SearchClient));
        break;
    case SearchFor::AllActiveClients:
        narrowByAllClients(global);
        return;
    case SearchFor::Employee:
        filter = narrowed(filter, u"Employee"_s, QuoteForSQL(global.SearchEmployee));
        break;
    case SearchFor::Project:
        filter = narrowed(filter, u"Project"_s, QuoteForSQL(global.SearchProject));
        break;
    case SearchFor::LogText:
        filter = narrowedByText(filter, QuoteForSQL(global.SearchText));
        break;
    case SearchFor::EntryFields:
        filter = narrowedByEntryFields(global);
        break;
    default:
        return;
    }
    global.CurrentSQL = statementOn(filter);
}

// The statement of a search, in CurrentSQL; the ways to ask the user are all in here.
void buildStatement(Global &global, int searchType, int timeFrame, bool fromDisplay)
{
    askForValue(global, searchType, fromDisplay);
    narrow(global, searchType);
    setRange(global, timeFrame);
    if (hasRange(timeFrame))
        global.CurrentSQL += rangeText(global.RangeStart, global.RangeEnd);
    global.CurrentSQL += searchOrder(searchType);
}

void newDisplayWindow(Global &global)
{
    const BusyPointer busy;
    global.openers.NewDisplayWindow();
}

// The statement of a report up to its range; values by type.
QString reportBeginning(Global &global, int searchType)
{
    switch (searchType) {
    case SearchFor::CurrentClient:
        global.SearchClient = currentDisplay(global).client();
        return reportStatement(searchType, QuoteForSQL(global.SearchClient));
    case SearchFor::AnotherClient:
        pick(global, u"Select Client"_s);
        return reportStatement(searchType, QuoteForSQL(global.SearchClient));
    case SearchFor::Employee:
        pick(global, u"Select Employee"_s);
        return reportStatement(searchType, QuoteForSQL(global.SearchEmployee));
    case SearchFor::Project:
        pick(global, u"Select Project"_s);
        return reportStatement(searchType, QuoteForSQL(global.SearchProject));
    case SearchFor::LogText:
        askForText(global);
        return reportStatement(searchType, global.SearchText);
    case SearchFor::CurrentProject:
        return reportStatement(searchType, QuoteForSQL(global.SearchProject));
    default:
        return {};
    }
}

void showReportOn(Global &global, const QString &statement)
{
    ado::Connection connection;
    ado::Recordset records;
    {
        const BusyPointer busy;
        connection.Open(ado::connectionText(global.DatabaseFileName, u"Admin"_s));
        records.CursorType = 3;
        records.Open(statement, connection);
    }
    showLogReport(global, records, records.RecordCount() == 0 ? QString::fromUtf16(kNoRecords) : QString());
    records.Close();
    connection.Close();
}

} // namespace

// NewDisplayWindow overwrites CurrentSQL, the range and the current Display window: hence the order of the
// steps.
void SearchRoutine(Global &global, int searchType, int timeFrame, bool fromDisplay)
{
    const QString savedSQL = global.CurrentSQL;
    const SavedRange savedRange(global);
    global.SQLSelect = QString::fromUtf16(kSelectLogs);
    if (fromDisplay) {
        global.SQLFilter = currentDisplay(global).whereFragment();
    } else {
        global.SQLFilter = currentEntry(global).whereFragment();
        newDisplayWindow(global);
        currentDisplay(global).setSelection(global.CurrentSQL, global.SQLFilter);
    }
    buildStatement(global, searchType, timeFrame, fromDisplay);
    const QString statement = global.CurrentSQL;
    if (fromDisplay) {
        global.DatabaseFileName = currentDisplay(global).file();
        newDisplayWindow(global);
    } else {
        currentEntry(global).setWhereFragment(global.SQLFilter);
    }
    global.CurrentSQL = statement;
    DisplayWindow &result = currentDisplay(global);
    {
        const BusyPointer busy;
        result.setSelection(statement, global.SQLFilter);
        result.showSelection(statement);
    }
    global.CurrentSQL = savedSQL;
    savedRange.restore(global);
    if (result.recordCount() == 0) {
        result.SetFocus();
        global.services.dialogs.msgBox({u"No such records were found."_s});
    } else {
        result.showLast();
        result.SetFocus();
    }
    unloadSearch(global);
}

void ReportRoutine(Global &global, int searchType, int timeFrame)
{
    const SavedRange savedRange(global);
    QString statement = reportBeginning(global, searchType);
    setRange(global, timeFrame);
    statement += reportEnding(timeFrame, global.RangeStart, global.RangeEnd);
    savedRange.restore(global);
    showReportOn(global, statement);
    unloadSearch(global);
}

} // namespace vardelin
