#include "database/CreateDatabase.h"
#include "database/CurrentWindow.h"
#include "database/FileDialogs.h"
#include "database/Resuming.h"
#include "database/Transfer.h"
#include "database/TransferProgress.h"
#include "platform/base/Format.h"
#include "platform/data/Adodc.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Rows of an export that reach the disk together: where the disk gets full, what came before stays.
constexpr int kRowsTogether = 10'000;

const QStringList kCarried{u"Client"_s,   u"Project"_s,      u"Employee"_s,   u"Rate"_s,
                           u"Vardelin"_s, u"VardeGraphic"_s, u"Log Summary"_s};
const QString kBeginning = u"Beginning Time"_s;
const QString kEnding = u"Ending Time"_s;
const QString kDuration = u"Duration"_s;

template <class Source, class Target>
void copyIfNotNull(const Source &source, Target &target, const QString &column)
{
    if (const Value value = source.Fields(column); !value.isNull())
        target.SetField(column, value);
}

template <class Source, class Target>
void exportLog(const Resuming &resuming, const Source &source, Target &target)
{
    resuming([&] { target.AddNew(); });
    for (const QString &column : kCarried)
        resuming([&] { copyIfNotNull(source, target, column); });
    resuming([&] { copyIfNotNull(source, target, u"Fee"_s); });
    for (const QString &column : {kBeginning, kEnding, kDuration})
        resuming([&] { target.SetField(column, source.Fields(column)); });
    resuming([&] { target.Update(); });
}

template <class Source, class Target>
void importLog(const Resuming &resuming, const Source &source, Target &target)
{
    resuming([&] { target.AddNew(); });
    for (const QString &column : kCarried)
        resuming([&] { copyIfNotNull(source, target, column); });
    Value beginning = NullValue{}, ending = NullValue{};
    resuming([&] { beginning = source.Fields(kBeginning); });
    resuming([&] { ending = source.Fields(kEnding); });
    if (!beginning.isNull() && !ending.isNull()) {
        resuming([&] { target.SetField(kBeginning, beginning); });
        resuming([&] { target.SetField(kEnding, ending); });
        resuming([&] { target.SetField(kDuration, importedDuration(beginning, ending)); });
    }
    resuming([&] { target.Update(); });
}

// The picked file, opened; null, with the message, where that fails. Passing over the failure has cleared its
// description.
std::unique_ptr<dao::Database> openPicked(Global &global, const Resuming &resuming)
{
    std::unique_ptr<dao::Database> database;
    resuming([&] { database = global.services.engine.OpenDatabase(global.DatabaseFileName); });
    if (!database)
        global.services.dialogs.msgBox(
            {u"Could not open source Vardelin database.  Please try again.  Error description: "_s});
    return database;
}

void exportRows(Global &global, const Resuming &resuming, Adodc &control, dao::Database &LogDatabase)
{
    ado::Recordset &LogRecordset = control.Recordset();
    auto &TransferRecordset = *global.TransferRecordset;
    resuming([&] { LogRecordset.MoveFirst(); });
    TransferProgress progress(&currentWindow(global), LogRecordset.RecordCount());
    int together = 0;
    if (!resuming([&] { LogDatabase.BeginTrans(); }))
        return; // in use by another program: every row would wait for it in vain
    while (!LogRecordset.EOF_()) {
        {
            std::optional<ado::ReadTogether> reading; // a row's columns are read under one lock
            resuming([&] { reading.emplace(control.ActiveConnection()); });
            exportLog(resuming, LogRecordset, TransferRecordset);
        }
        if (++together == kRowsTogether) {
            together = 0;
            resuming([&] { LogDatabase.CommitTrans(); });
            if (!resuming([&] { LogDatabase.BeginTrans(); }))
                return;
        }
        if (!resuming([&] { LogRecordset.MoveNext(); }))
            break; // it would stand here for ever
        progress.rowDone();
    }
    resuming([&] { LogDatabase.CommitTrans(); });
}

} // namespace

QString importedDuration(const Value &beginning, const Value &ending)
{
    const QString days =
        toText(toDate(ending).days - toDate(beginning).days); // held as text between the two steps
    return format(toDouble(days) * 24.0, u"##.0");
}

void ExportLogs(Global &global)
{
    const Resuming resuming;
    setMousePointer(kBusyPointer);
    CommonDialog dialog = fileDialog(FileCommand::ExportLogs);
    resuming([&] { global.services.dialogs.showOpen(dialog); });
    global.CompactFileName = dialog.FileName;
    const QString old = global.DatabaseFileName;
    global.DatabaseFileName = global.CompactFileName;
    resuming([&] { global.SavedBookmark = currentWindow(global).control().Recordset().Bookmark(); });
    resuming([&] { CreateDatabase(global); }); // an existing file takes the records in addition
    const std::unique_ptr<dao::Database> LogDatabase = openPicked(global, resuming);
    if (!LogDatabase)
        return;
    resuming([&] { global.TransferRecordset = LogDatabase->OpenRecordset(u"Vardelins"_s); });
    resuming([&] {
        Adodc &control = currentWindow(global).control();
        resuming([&] { control.commitEdits(); }); // what was typed goes with it
        if (global.TransferRecordset)
            exportRows(global, resuming, control, *LogDatabase);
        resuming([&] { control.SetBookmark(global.SavedBookmark); });
        global.TransferRecordset.reset();
        control.Recordset().Close(); // the window's own: it stands still until it is filled anew
    });
    global.TransferRecordset.reset();
    setMousePointer(kDefaultPointer);
    global.services.dialogs.msgBox(
        {u"Vardelins have been successfully exported to "_s + global.DatabaseFileName});
    global.DatabaseFileName = old;
}

void ImportLogs(Global &global)
{
    const Resuming resuming;
    setMousePointer(kBusyPointer);
    CommonDialog dialog = fileDialog(FileCommand::ImportLogs);
    resuming([&] { global.services.dialogs.showOpen(dialog); });
    const QString old = global.DatabaseFileName;
    global.DatabaseFileName = dialog.FileName;
    resuming([&] { global.SavedBookmark = currentWindow(global).control().Recordset().Bookmark(); });
    const std::unique_ptr<dao::Database> LogDatabase = openPicked(global, resuming);
    if (!LogDatabase)
        return;
    resuming([&] { global.TransferRecordset = LogDatabase->OpenRecordset(u"Vardelins"_s); });
    resuming([&] {
        DisplayWindow &window = currentWindow(global);
        Adodc &control = window.control();
        ado::Recordset &LogRecordset = control.Recordset();
        const std::unique_ptr<dao::Recordset> source = std::move(global.TransferRecordset);
        if (source) {
            resuming([&] { source->MoveFirst(); });
            resuming([&] { control.commitEdits(); });
            TransferProgress progress(&window, source->RecordCount());
            control.ActiveConnection().BeginTrans();
            while (!source->EOF_()) {
                importLog(resuming, *source, LogRecordset);
                if (!resuming([&] { source->MoveNext(); }))
                    break; // it would stand here for ever
                progress.rowDone();
            }
            control.ActiveConnection().CommitTrans();
        }
        resuming([&] { control.Refresh(); });
        resuming([&] { control.SetBookmark(global.SavedBookmark); });
    });
    global.SavedBookmark.clear();
    setMousePointer(kDefaultPointer);
    global.services.dialogs.msgBox({u"The selected Vardelins have successfully been imported from "_s +
                                    global.DatabaseFileName + u"."_s});
    global.DatabaseFileName = old;
}

} // namespace vardelin
