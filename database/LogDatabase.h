#pragma once
// Opening a file: the pick-list cache, the test of a file, the list of recent files.

#include <QString>
#include <QStringList>
#include <array>

namespace vardelin {

struct Global;
class Settings;

// The name of the default file, beside the program.
QString defaultDatabase(const QString &appPath);

// Fills the pick-list cache, NoClients and NoEmployees from the file named by DatabaseFileName, which is made
// first if it isn't there. No trap: what fails goes to the caller, and the lists stay as the failing step
// left them.
void OpenLogDatabase(Global &global);

// Whether the file named by DatabaseFileName is one of the program's: the provider can open it and each of
// its tables. A missing file is made. For one that isn't valid the user is asked; Yes deletes it and makes
// the *default* file in the program's folder, to which DatabaseFileName then points. Returns nothing on
// purpose: the caller goes on, and what isn't valid fails there.
void ValidateDatabase(Global &global);

// Deletes a file. RunTimeError 70 while anyone has it open as a database, this program included: the system
// at hand would let it go with all that is in it.
void KillUnused(Global &global, const QString &path);

// Puts a path at the head of the recent files, unless one of the first five is the same, letter for letter.
void UpdateRecentFiles(Settings &settings, const QString &path);

// The keys First to Sixth after a path was opened: the decision of UpdateRecentFiles. nullopt-like: returned
// unchanged if it is known.
std::array<QString, 6> withRecentFile(const std::array<QString, 6> &recent, const QString &path);

// First to Sixth as the settings hold them.
std::array<QString, 6> recentFiles(const Settings &settings);

} // namespace vardelin
