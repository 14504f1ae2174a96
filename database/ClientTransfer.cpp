#include "database/CurrentWindow.h"
#include "database/FileDialogs.h"
#include "database/LogDatabase.h"
#include "database/OtherFile.h"
#include "database/Transfer.h"
#include "database/TransferProgress.h"
#include "platform/data/Adodc.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kAllClients = u"SELECT * FROM [Active Clients]"_s;
const QString kClients = u"Active Clients"_s;
const QString kLast = u"Client Last Name"_s;
const QString kFirst = u"Client First Name"_s;

// "Active Client Client Notes" and "Active Client Claim Forum" are no columns of the table, on neither side,
// so that notes and forum are never carried: settled.
const QStringList kCarried{kFirst,
                           kLast,
                           u"Active Client First Address"_s,
                           u"Active Client Second Address"_s,
                           u"Active Client Third Address"_s,
                           u"Active Client City"_s,
                           u"Active Client State"_s,
                           u"Active Client Zip Code"_s,
                           u"Active Client Home Telephone"_s,
                           u"Active Client Work Telephone"_s,
                           u"Active Client Cell Telephone"_s,
                           u"Active Client Alternative Telephone"_s,
                           u"Active Client Email Address"_s,
                           u"Active Client Client Notes"_s,
                           u"Active Client Retainer Date"_s,
                           u"Active Client Retainer Terms"_s,
                           u"Active Client Referrer"_s,
                           u"Active Client Claim Type"_s,
                           u"Active Client Claim Forum"_s,
                           u"Active Client Claim Number"_s,
                           u"Active Client Defendant"_s,
                           u"Active Client Opposing Attorney"_s,
                           u"Active Client OPA Telephone"_s,
                           u"Active Client History"_s,
                           u"Active Client Things To Do"_s,
                           u"Active Client Re Line"_s,
                           u"Active Client Greeting"_s,
                           u"Active Client Closing"_s};

// One client as a new record. A new record that the key refuses is given up, and the one that stood there
// stays.
template <class Source, class Target>
void addClient(const Resuming &resuming, const Source &source, Target &target)
{
    resuming([&] { target.AddNew(); });
    for (const QString &column : kCarried)
        resuming([&] {
            if (const Value value = source.Fields(column); !value.isNull())
                target.SetField(column, value);
        });
    if (!resuming([&] { target.Update(); }))
        resuming([&] { target.CancelUpdate(); });
}

// The record of the imported client's name is deleted first, if there is one. The names stand in the filter
// as they are: one with an apostrophe makes it fail, the set stays whole and on its first record, and that
// one is deleted. Settled.
void importClient(const Resuming &resuming, Global &global, const dao::Recordset &source,
                  ado::Recordset &target)
{
    resuming([&] {
        global.ClientLastName = toText(source.Fields(kLast));
    }); // Null keeps the name of the record before
    resuming([&] { global.ClientFirstName = toText(source.Fields(kFirst)); });
    resuming([&] { target.SetFilter(QString()); });
    resuming([&] { target.MoveFirst(); });
    resuming([&] {
        target.SetFilter(u"[Client Last Name] = '"_s + global.ClientLastName +
                         u"' And [Client First Name] = '"_s + global.ClientFirstName + u"' "_s);
    });
    if (!target.EOF_()) {
        resuming([&] { target.Delete(); });
        resuming([&] { target.Update(); });
    }
    addClient(resuming, source, target);
}

bool hasName(const dao::Recordset &source)
{
    return !source.Fields(kLast).isNull() || !source.Fields(kFirst).isNull();
}

// Turns the window to the clients' table.
void lendWindow(Global &global, Adodc &control)
{
    leaveRecord(control);
    global.CurrentSQL = kAllClients;
    control.RecordSource = global.CurrentSQL;
    control.Refresh();
}

void giveWindowBack(Global &global, const Resuming &resuming, const QString &statement)
{
    global.CurrentSQL = statement;
    resuming([&] {
        Adodc &control = currentWindow(global).control();
        control.RecordSource = statement;
        control.Refresh();
        control.SetBookmark(global.SavedBookmark);
    });
    global.SavedBookmark.clear();
}

void exportRows(Global &global, const Resuming &resuming, ado::Recordset &LogRecordset)
{
    resuming([&] { LogRecordset.MoveFirst(); });
    TransferProgress progress(&currentWindow(global), LogRecordset.RecordCount());
    together(resuming, *global.LogDatabase, [&] {
        while (!LogRecordset.EOF_()) {
            addClient(resuming, LogRecordset, *global.TransferRecordset);
            LogRecordset.MoveNext();
            progress.rowDone();
        }
    });
}

void importRows(Global &global, const Resuming &resuming)
{
    DisplayWindow &window = currentWindow(global);
    Adodc &control = window.control();
    resuming([&] { global.SavedBookmark = control.Recordset().Bookmark(); });
    lendWindow(global, control);
    dao::Recordset &source = *global.TransferRecordset;
    TransferProgress progress(&window, source.RecordCount());
    // As one in a crash: no client is deleted without the one that takes its place.
    together(resuming, control.ActiveConnection(), [&] {
        while (!source.EOF_()) {
            bool named = false; // nor is one whose names can't be read taken for another
            resuming([&] { named = hasName(source); });
            if (named)
                importClient(resuming, global, source, control.Recordset());
            source.MoveNext();
            progress.rowDone();
        }
    });
}

} // namespace

void ExportActiveClients(Global &global)
{
    const Resuming resuming;
    setMousePointer(kBusyPointer);
    CommonDialog dialog = fileDialog(FileCommand::ExportActiveClients);
    resuming([&] { global.services.dialogs.showOpen(dialog); });
    const QString oldFile = global.DatabaseFileName, oldStatement = global.CurrentSQL;
    global.CompactFileName = global.DatabaseFileName = dialog.FileName;
    resuming([&] { global.SavedBookmark = currentWindow(global).control().Recordset().Bookmark(); });
    resuming([&] { ValidateDatabase(global); });
    if (!openOtherFile(global, resuming, kClients, u"Could not open source Vardelin database.  "_s))
        return;
    resuming([&] { lendWindow(global, currentWindow(global).control()); });
    int count = 0;
    resuming([&] { count = currentWindow(global).control().Recordset().RecordCount(); });
    if (count == 0) {
        // Nothing is put back: the window stays on the clients, the pointer busy, the target open. Settled.
        global.services.dialogs.msgBox({u"There is no Active Client information to export."_s});
        return;
    }
    resuming([&] {
        if (global.TransferRecordset)
            exportRows(global, resuming, currentWindow(global).control().Recordset());
    });
    giveWindowBack(global, resuming, oldStatement);
    setMousePointer(kDefaultPointer);
    global.services.dialogs.msgBox(
        {u"Active Client information has been successfully exported to "_s + global.DatabaseFileName});
    global.DatabaseFileName = oldFile;
    closeOtherFile(global);
}

void ImportActiveClients(Global &global)
{
    const Resuming resuming([&global](const RunTimeError &error) {
        if (error.number() == RunTime::CommonDialogCancel)
            global.services.dialogs.msgBox({u"Import Active Clients data function aborted by user."_s});
    });
    setMousePointer(kBusyPointer);
    CommonDialog dialog = fileDialog(FileCommand::ImportActiveClients);
    resuming([&] { global.services.dialogs.showOpen(dialog); });
    const QString oldFile = global.DatabaseFileName, oldStatement = global.CurrentSQL;
    global.CompactFileName = global.DatabaseFileName = dialog.FileName;
    if (!openOtherFile(global, resuming, kClients, QString()))
        return;
    int count = 0;
    resuming([&] { count = global.TransferRecordset ? global.TransferRecordset->RecordCount() : 0; });
    if (count == 0) {
        global.services.dialogs.msgBox(
            {u"There is no Active Client information available in the selected database"_s});
    } else {
        resuming([&] { importRows(global, resuming); });
        giveWindowBack(global, resuming, oldStatement);
        setMousePointer(kDefaultPointer);
        global.DatabaseFileName = oldFile;
        global.services.dialogs.msgBox({u"The Active Client information from "_s + global.CompactFileName +
                                        u" has successfully been imported."_s});
    }
    closeOtherFile(global);
    setMousePointer(kDefaultPointer);
}

} // namespace vardelin
