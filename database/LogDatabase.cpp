#include "database/LogDatabase.h"

#include "database/CreateDatabase.h"
#include "database/Names.h"
#include "database/Schema.h"
#include "platform/data/Ado.h"
#include "platform/system/AppPath.h"
#include "platform/system/Files.h"
#include "platform/ui/BusyPointer.h"
#include "platform/ui/Controls.h"
#include "shell/state/Global.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const std::array<QString, 6> kRecentKeys{u"First"_s,  u"Second"_s, u"Third"_s,
                                         u"Fourth"_s, u"Fifth"_s,  u"Sixth"_s};
const QString kRecentSection = u"MostRecentDatabases"_s;

// One pick list: every row as its entry, in table order.
template <class Entry>
void fill(QStringList &list, ado::Recordset &rows, Entry &&entry)
{
    for (; !rows.EOF_(); rows.MoveNext())
        list += entry(rows);
    rows.Close();
}

// Null joins as empty text here, so a client without a first name is "Last, ".
auto nameEntry(const QString &last, const QString &first)
{
    return [last, first](const ado::Recordset &row) {
        return joinName(joinText(row.Fields(last)), joinText(row.Fields(first)));
    };
}

// The column turned straight into a string: Null is an error.
auto columnEntry(const QString &column)
{
    return [column](const ado::Recordset &row) { return toText(row.Fields(column)); };
}

// A file whose clients can't be opened leaves the lists as they were.
void fillLists(Global &global, ado::Connection &connection)
{
    const ado::ReadTogether together(connection);
    ado::Recordset rows;
    rows.CursorType = 3;
    rows.Open(u"[Active Clients]"_s, connection);
    for (std::size_t list = 0; list < 5; ++list)
        global.List1[list].clear();
    auto &[clients, employees, projects, rates, activities, spare5, spare6, spare7] = global.List1;
    global.NoClients = rows.EOF_();
    fill(clients, rows, nameEntry(u"Client Last Name"_s, u"Client First Name"_s));
    std::stable_sort(clients.begin(), clients.end(), listLess);
    rows.Open(u"Employees"_s, connection);
    global.NoEmployees = rows.EOF_();
    fill(employees, rows, nameEntry(u"Employee Last Name"_s, u"Employee First Name"_s));
    rows.Open(u"Projects"_s, connection);
    fill(projects, rows, columnEntry(u"Projects"_s));
    rows.Open(u"Rates"_s, connection);
    fill(rates, rows, columnEntry(u"Rates"_s));
    rows.Open(u"Activities"_s, connection);
    fill(activities, rows, columnEntry(u"Activities"_s));
}

void overwriteWithDefault(Global &global)
{
    KillUnused(global, global.DatabaseFileName);
    // The default file takes the selected one's place, not a new file of its name: settled.
    global.DatabaseFileName = defaultDatabase(global.services.appPath);
    CreateDatabase(global);
}

void offerOverwrite(Global &global)
{
    Dialogs &dialogs = global.services.dialogs;
    const Answer answer =
        dialogs.msgBox({.prompt = u"Selected file is not a valid Vardelin file.  Do you want to overwrite it "
                                  u"with a valid Vardelin.MDB file?"_s,
                        .buttons = Buttons::YesNo});
    if (answer == Answer::Yes) {
        overwriteWithDefault(global);
        return;
    }
    dialogs.msgBox({u"Operation canceled by user.  Good move.  Now remember to whistle while you work.  "
                    u"Unless this annoys your "
                    u"co-workers more than you really should."_s});
    setMousePointer(kDefaultPointer);
}

} // namespace

void KillUnused(Global &global, const QString &path)
{
    constexpr int kPermissionDenied = 70, kFileInUse = 3045;
    try {
        global.services.engine.Workspaces(0).OpenDatabase(path, true);
    } catch (const RunTimeError &error) {
        if (error.number() == kFileInUse)
            throw RunTimeError(kPermissionDenied);
    }
    Kill(path); // what can't be opened, too
}

QString defaultDatabase(const QString &appPath)
{
    return inFolder(appPath, u"VARDELIN.MDB"_s);
}

void OpenLogDatabase(Global &global)
{
    global.NoClients = true;
    global.NoEmployees = true;
    if (Dir(global.DatabaseFileName).isEmpty())
        CreateDatabase(global);
    ado::Connection connection;
    connection.Open(ado::connectionText(global.DatabaseFileName));
    fillLists(global, connection);
    connection.Close();
}

void ValidateDatabase(Global &global)
{
    if (Dir(global.DatabaseFileName).isEmpty()) {
        CreateDatabase(global);
        return;
    }
    try {
        ado::Connection connection;
        connection.Open(ado::connectionText(global.DatabaseFileName));
        for (const QString &source : validationSources()) {
            ado::Recordset rows;
            rows.CursorType = 3;
            rows.Open(source, connection);
            rows.Close();
        }
        return;
    } catch (const RunTimeError &) {
    }
    offerOverwrite(global); // outside the trap: what fails here is the caller's
}

std::array<QString, 6> withRecentFile(const std::array<QString, 6> &recent, const QString &path)
{
    const auto known = recent.begin() + 5; // the sixth isn't looked at
    if (std::find(recent.begin(), known, path) != known)
        return recent;
    std::array<QString, 6> result = recent;
    const auto firstEmpty = std::find(result.begin(), result.begin() + 5, QString());
    std::move_backward(result.begin(), firstEmpty, firstEmpty + 1);
    result.front() = path;
    return result;
}

std::array<QString, 6> recentFiles(const Settings &settings)
{
    std::array<QString, 6> recent;
    std::transform(kRecentKeys.begin(), kRecentKeys.end(), recent.begin(),
                   [&](const QString &key) { return settings.GetSetting(kRecentSection, key); });
    return recent;
}

void UpdateRecentFiles(Settings &settings, const QString &path)
{
    const std::array<QString, 6> before = recentFiles(settings);
    const std::array<QString, 6> after = withRecentFile(before, path);
    for (std::size_t i = 0; i < after.size(); ++i)
        if (after[i] != before[i])
            settings.SaveSetting(kRecentSection, kRecentKeys[i], after[i]);
}

} // namespace vardelin
