#include "database/FileCommands.h"

#include "database/CreateDatabase.h"
#include "database/CurrentWindow.h"
#include "database/FileDialogs.h"
#include "database/LogDatabase.h"
#include "database/Names.h"
#include "platform/data/Adodc.h"
#include "platform/system/AppPath.h"
#include "platform/system/Files.h"
#include "platform/ui/BusyPointer.h"
#include "shell/state/Global.h"

#include <QDir>
#include <optional>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kAllLogs = u"Select * from Vardelins order by [Beginning Time]"_s;
const QString kJunk = u"JUNK.MDB"_s;
constexpr int kNoDatabase = 3343; // copied as any other file

// The file that the user picks; Cancel is error 32755.
QString pick(Global &global, FileCommand command)
{
    CommonDialog dialog = fileDialog(command, global.DatabaseFileName);
    global.services.dialogs.showOpen(dialog);
    return dialog.FileName;
}

void say(Global &global, const QString &text)
{
    global.services.dialogs.msgBox({text});
}

void showAllLogs(Global &global, DisplayWindow &window)
{
    global.CurrentSQL = kAllLogs;
    window.showSelection(global.CurrentSQL);
}

void makeNewFile(Global &global)
{
    setMousePointer(kBusyPointer);
    const QString old = global.DatabaseFileName;
    global.DatabaseFileName = pick(global, FileCommand::NewFile);
    if (global.DatabaseFileName == old) {
        say(global, u"This file is already open"_s);
        setMousePointer(kDefaultPointer);
        return;
    }
    CreateDatabase(global);
    showAllLogs(global, *global.openers.NewDisplayWindow());
    UpdateRecentFiles(global.services.settings, global.DatabaseFileName);
    setMousePointer(kDefaultPointer);
    say(global, u"Your new database, "_s + global.DatabaseFileName + u", has successfully been created."_s);
}

void openPickedFile(Global &global)
{
    setMousePointer(kBusyPointer);
    global.DatabaseFileName = pick(global, FileCommand::OpenFile);
    ValidateDatabase(global);
    UpdateRecentFiles(global.services.settings, global.DatabaseFileName);
    OpenLogDatabase(global);
    global.openers.NewDisplayWindow();
    setMousePointer(kDefaultPointer);
    say(global, global.DatabaseFileName + u" has successfully been opened"_s);
    global.DatabaseFileName.clear(); // windows keep their files in labels of their own
}

bool mayOverwrite(Global &global)
{
    const QString exists = global.DatabaseFileName + u" already exists"_s;
    return global.services.dialogs.msgBox({.prompt = exists + u".  Overwrite?"_s,
                                           .title = exists,
                                           .buttons = Buttons::YesNo,
                                           .icon = Icon::Question}) == Answer::Yes;
}

// What another program is writing into a database is there whole or not at all: it waits for the copy, as the
// copy does for it.
void copyAtOneMoment(const QString &source, const QString &target)
{
    ado::Connection connection;
    std::optional<ado::ReadTogether> still;
    try {
        connection.Open(ado::connectionText(source));
        still.emplace(connection);
    } catch (const RunTimeError &error) {
        if (error.number() != kNoDatabase)
            throw;
    }
    CopyFile(source, target);
}

// A window that can't show its file goes again; its number stays used.
void showCopy(Global &global)
{
    const QPointer<DisplayWindow> window = global.openers.NewDisplayWindow();
    try {
        window->setCaption(global.DatabaseFileName + window->Caption());
        showAllLogs(global, *window);
        window->control().SetBookmark(global.SavedBookmark);
    } catch (const RunTimeError &) {
        window->parentWidget()->close(); // its frame in the parent's area, and the window with it
        throw;
    }
}

void saveUnderNewName(Global &global)
{
    setMousePointer(kBusyPointer);
    global.SavedBookmark = currentWindow(global).control().Recordset().Bookmark();
    const QString old = global.DatabaseFileName;
    global.DatabaseFileName = pick(global, FileCommand::SaveFileAs);
    if (Dir(global.DatabaseFileName).isEmpty()) {
        CopyDatabaseFile(global, old, global.DatabaseFileName);
    } else {
        if (!mayOverwrite(global))
            return; // with the busy pointer and the new name: settled
        KillUnused(global, global.DatabaseFileName);
        // The source of this copy was never filled, so the file is gone and nothing takes its place: settled.
        CopyDatabaseFile(global, QString(), global.DatabaseFileName);
    }
    showCopy(global);
    setMousePointer(kDefaultPointer);
    say(global, global.DatabaseFileName + u" has successfully been saved"_s);
}

void killIfThere(const QString &path)
{
    if (!Dir(path).isEmpty())
        Kill(path);
}

// From here to the end of the renaming the data is in JUNK.MDB alone.
void putInPlace(Global &global, const QString &path)
{
    KillUnused(global, path);
    try {
        Name(kJunk, path);
    } catch (const RunTimeError &error) {
        throw RunTimeError(error.number(), error.description() + u"  Your data is in "_s +
                                               QDir::current().filePath(kJunk) + u"."_s);
    }
}

void compactPickedFile(Global &global)
{
    global.CompactFileName = pick(global, FileCommand::CompactDatabase);
    if (global.CompactFileName == global.DatabaseFileName) {
        say(global, u"You can only compact a database that is not being used.  You can compact this database "
                    u"from the "
                    u"Display window of any other Vardelin database."_s);
        return;
    }
    setMousePointer(kBusyPointer);
    killIfThere(inFolder(global.services.appPath, kJunk));
    killIfThere(inFolder(global.services.appPath, u"Backup.MDB"_s));
    // A bare name: the current folder, which needn't be the program's.
    global.services.engine.CompactDatabase(global.CompactFileName, kJunk);
    putInPlace(global, global.CompactFileName);
    setMousePointer(kDefaultPointer);
    say(global, global.CompactFileName + u" has been successfully compacted"_s);
}

} // namespace

void NewFile(Global &global)
{
    const QString old = global.DatabaseFileName;
    try {
        makeNewFile(global);
    } catch (const RunTimeError &error) {
        global.DatabaseFileName = old;
        say(global, u"Could not open new file.  Error in New File function: "_s + error.description());
        setMousePointer(kDefaultPointer);
    }
}

void OpenFile(Global &global)
{
    const QString old = global.DatabaseFileName;
    try {
        openPickedFile(global);
    } catch (const RunTimeError &) {
        say(global, u"The selected file is not a valid Vardelin file.  Please try again."_s);
        global.DatabaseFileName = old;
    }
}

void SaveFileAs(Global &global)
{
    try {
        saveUnderNewName(global);
    } catch (const RunTimeError &error) {
        setMousePointer(kDefaultPointer);
        say(global, u"Error in Save File As function: "_s + error.description());
    }
}

void CompactDatabase(Global &global)
{
    try {
        compactPickedFile(global);
    } catch (const RunTimeError &error) {
        setMousePointer(kDefaultPointer);
        say(global, error.number() == RunTime::CommonDialogCancel
                        ? u"Compact Vardelin File function aborted by user."_s
                        : u"Error in compacting data: "_s + error.description());
    }
}

void CopyDatabaseFile(Global &global, const QString &source, const QString &target)
{
    if (Dir(source).isEmpty()) {
        say(global, u"\""_s + source + u"\" is not valid file name."_s);
        return;
    }
    resumeNext([&] { copyAtOneMoment(source, target); }); // what the system says of the copy isn't looked at
}

} // namespace vardelin
