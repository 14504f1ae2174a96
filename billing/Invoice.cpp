#include "billing/Invoice.h"

#include "billing/BillingSql.h"
#include "billing/LetterReport.h"
#include "search/SearchSql.h"
#include "search/frmSearchDatePicker.h"
#include "search/frmSearchList.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// The command of the Data entry window that was active last: to its file, as if chosen there.
void mnuLetterhead(Global &global)
{
    const auto slot = static_cast<std::size_t>(global.CurrentEntryTag.toInt() - 1);
    if (const EntryWindow *window = global.EntryWindows.at(slot))
        global.DatabaseFileName = window->file();
    global.openers.open(global.openers.frmLetterhead, u"Add or change &letterhead"_s);
}

void offerLetterhead(Global &global)
{
    const Answer answer =
        global.services.dialogs.msgBox({.prompt = u"There is no letterhead set for this invoice, would you "
                                                  u"like to create a letterhead for your invoice?"_s,
                                        .buttons = Buttons::YesNo});
    if (answer == Answer::Yes)
        mnuLetterhead(global);
}

// False: there is none. A Null letterhead leaves the text of the letter before.
bool readLetterhead(Global &global, dao::Database &database)
{
    const auto rows = database.OpenRecordset(u"Invoices"_s);
    if (rows->BOF() && rows->EOF_())
        return false;
    if (const Value header = rows->Fields(u"Invoice Header"_s); !header.isNull())
        global.LetterheadText = toText(header) + u"\r\n\r\n"_s;
    return true;
}

void run(Global &global)
{
    auto database = global.services.engine.OpenDatabase(global.DatabaseFileName);
    if (!readLetterhead(global, *database)) {
        database.reset();
        offerLetterhead(global);
        return; // on either answer; the invoice isn't resumed
    }
    // SearchClient isn't cleared: a list closed without a choice leaves the client of an earlier command.
    global.SearchType = SearchFor::AnotherClient;
    frmSearchList(global, u"Select Client"_s, global.frmMain).exec();
    if (global.SearchClient.isEmpty()) {
        global.services.dialogs.msgBox({u"Please make a selection from the pull-down list and try again."_s});
        return;
    }
    const LetterTexts texts = readLetterTexts(Letter::Invoice, *database, global);
    database.reset();

    global.CurrentSQL = invoiceSelect(global.SearchClient);
    frmSearchDatePicker(global, global.frmMain).exec(); // left by Return, the range stays what it was
    global.CurrentSQL += rangeText(global.RangeStart, global.RangeEnd);
    ado::Connection connection;
    connection.Open(ado::connectionText(global.DatabaseFileName, u"Admin"_s));
    ado::Recordset logs;
    logs.CursorType = 3;
    logs.Open(global.CurrentSQL, connection);
    DataReport report = letterReport(Letter::Invoice, global.LetterheadText, texts, global);
    report.bindTo(logs);
    global.openers.showReport(report);
}

} // namespace

void createInvoice(Global &global)
{
    try {
        run(global);
    } catch (const RunTimeError &error) {
        global.services.dialogs.msgBox(
            {u"Error:  "_s + QString::number(error.number()) + u"  "_s + error.description()});
    }
}

} // namespace vardelin
