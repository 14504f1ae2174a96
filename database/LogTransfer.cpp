#include "database/CreateDatabase.h"
#include "database/CurrentWindow.h"
#include "database/FileDialogs.h"
#include "database/OtherFile.h"
#include "database/Transfer.h"
#include "database/TransferProgress.h"
#include "platform/base/Format.h"
#include "platform/data/Adodc.h"

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Rows of an export that reach the disk together: where the disk gets full, what came before stays.
constexpr int kRowsTogether = 10'000;
constexpr int kRowsUnderLock = 100; // a few milliseconds

const QStringList kCarried{u"Client"_s,   u"Project"_s,      u"Employee"_s,   u"Rate"_s,
                           u"Vardelin"_s, u"VardeGraphic"_s, u"Log Summary"_s};
const QString kLogs = u"Vardelins"_s;
const QString kCouldNotOpen = u"Could not open source Vardelin database.  "_s;
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

// Rows are read some at a time under one lock, which costs more than a row does; others that want to write
// wait as little as they would for one row.
template <class Reading, class File>
class RowsUnderLock
{
public:
    RowsUnderLock(const Resuming &resuming, File &source) : m_resuming(resuming), m_source(source) {}

    void nextRow()
    {
        if (m_row++ % kRowsUnderLock != 0)
            return;
        m_reading.reset();
        m_resuming([&] { m_reading.emplace(m_source); });
    }

private:
    const Resuming &m_resuming;
    File &m_source;
    std::optional<Reading> m_reading;
    int m_row = 0;
};

void exportRows(Global &global, const Resuming &resuming, Adodc &control)
{
    ado::Recordset &LogRecordset = control.Recordset();
    resuming([&] { LogRecordset.MoveFirst(); });
    TransferProgress progress(&currentWindow(global), LogRecordset.RecordCount());
    bool more = true;
    const auto some = [&] {
        RowsUnderLock<ado::ReadTogether, ado::Connection> reading(resuming, control.ActiveConnection());
        for (int rows = 0; rows < kRowsTogether && !LogRecordset.EOF_(); ++rows) {
            reading.nextRow();
            exportLog(resuming, LogRecordset, *global.TransferRecordset);
            if (!resuming([&] { LogRecordset.MoveNext(); }))
                return; // it would stand here for ever
            progress.rowDone();
        }
        more = !LogRecordset.EOF_();
    };
    while (std::exchange(more, false))
        together(resuming, *global.LogDatabase, some);
}

void importRows(Global &global, const Resuming &resuming)
{
    dao::Recordset &source = *global.TransferRecordset;
    resuming([&] { source.MoveFirst(); });
    Adodc &control = currentWindow(global).control();
    leaveRecord(control);
    ado::Recordset &LogRecordset = control.Recordset();
    TransferProgress progress(&currentWindow(global), source.RecordCount());
    together(resuming, control.ActiveConnection(), [&] {
        RowsUnderLock<dao::ReadTogether, dao::Database> reading(resuming, *global.LogDatabase);
        while (!source.EOF_()) {
            reading.nextRow();
            importLog(resuming, source, LogRecordset);
            source.MoveNext();
            progress.rowDone();
        }
    });
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
    if (!openOtherFile(global, resuming, kLogs, kCouldNotOpen))
        return;
    resuming([&] {
        Adodc &control = currentWindow(global).control();
        leaveRecord(control);
        if (global.TransferRecordset)
            exportRows(global, resuming, control);
        resuming([&] { control.SetBookmark(global.SavedBookmark); });
        control.Recordset().Close(); // the window's own: it stands still until it is filled anew
    });
    closeOtherFile(global);
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
    if (!openOtherFile(global, resuming, kLogs, kCouldNotOpen))
        return;
    resuming([&] {
        if (global.TransferRecordset)
            importRows(global, resuming);
    });
    resuming([&] {
        Adodc &control = currentWindow(global).control();
        control.Refresh();
        control.SetBookmark(global.SavedBookmark);
    });
    global.SavedBookmark.clear();
    setMousePointer(kDefaultPointer);
    global.services.dialogs.msgBox({u"The selected Vardelins have successfully been imported from "_s +
                                    global.DatabaseFileName + u"."_s});
    global.DatabaseFileName = old;
    closeOtherFile(global);
}

} // namespace vardelin
