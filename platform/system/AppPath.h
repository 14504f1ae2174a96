#pragma once
// Where the program's own files lie.

#include <QString>

namespace vardelin {

// The program's own folder if the user can write there and it isn't a build tree (which the next build may
// delete, and the office's file with it); otherwise the user's data folder (XDG_DATA_HOME/Vardelin), made if
// need be, into which the tips file is copied at first use. No separator at the end, but for the root folder.
QString appPath();

// The same, decided from its parts: tests call this.
QString choosePath(const QString &programFolder, const QString &userDataFolder);

// path & "/" & name, without a second separator behind a root folder (a path of up to 3 characters ends in
// its own).
QString inFolder(const QString &path, const QString &name);

} // namespace vardelin
