#include "billing/Statement.h"

#include "billing/LetterReport.h"
#include "search/SearchSql.h"
#include "search/frmSearchList.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

bool isMissing(const dao::Recordset &letterheads)
{
    return letterheads.BOF() && letterheads.EOF_();
}

// Makes good for a missing letterhead. False: the user doesn't want to.
bool createLetterhead(Global &global)
{
    Dialogs &dialogs = global.services.dialogs;
    const Answer answer = dialogs.msgBox({.prompt = u"There is no letterhead set for this report, would you "
                                                    u"like to create a letterhead for your invoice?"_s,
                                          .buttons = Buttons::YesNo});
    if (answer != Answer::Yes) {
        dialogs.msgBox(
            {u"You must create a letterhead before you can create a payments or disbursements report."_s});
        return false;
    }
    global.openers.open(global.openers.frmLetterhead, u"Add or change &letterhead"_s);
    return true;
}

// False: there is none and will be none. Unlike the invoice, the command goes on with one just made.
bool readLetterhead(Global &global)
{
    dao::DBEngine &engine = global.services.engine;
    auto database = engine.OpenDatabase(global.DatabaseFileName);
    auto rows = database->OpenRecordset(u"Invoices"_s);
    if (isMissing(*rows)) {
        rows.reset();
        database.reset();
        if (!createLetterhead(global))
            return false;
        database = engine.OpenDatabase(global.DatabaseFileName);
        rows = database->OpenRecordset(u"Invoices"_s);
    }
    global.LetterheadText = toText(rows->Fields(u"Invoice Header"_s));
    return true;
}

} // namespace

void makeStatement(Global &global, Ledger ledger, QWidget *parent)
{
    const Letter kind = ledger == Ledger::Disbursements ? Letter::Disbursements : Letter::Payments;
    // SearchClient isn't cleared: a list closed without a choice leaves the client of an earlier command.
    global.SearchType = SearchFor::AnotherClient;
    frmSearchList(global, u"Select a client"_s, parent).exec();
    if (!readLetterhead(global))
        return;
    if (global.SearchClient.isEmpty()) {
        global.services.dialogs.msgBox({u"You must select a client.  Please try again."_s});
        return;
    }
    auto database = global.services.engine.OpenDatabase(global.DatabaseFileName);
    const LetterTexts texts = readLetterTexts(kind, *database, global);
    database.reset();

    global.CurrentSQL = statementSelect(ledger, global.ClientLastName, global.ClientFirstName);
    ado::Connection connection;
    connection.Open(ado::connectionText(global.DatabaseFileName, u"Admin"_s));
    ado::Recordset rows;
    rows.CursorType = 3;
    rows.Open(global.CurrentSQL, connection);
    DataReport report = letterReport(kind, global.LetterheadText, texts, global);
    report.bindTo(rows);
    global.openers.showReport(report);
}

} // namespace vardelin
