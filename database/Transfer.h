#pragma once
// Logs and clients from one file to another. The caller has made its Display window the current one and its
// file DatabaseFileName.
//
// All four pass over what fails (see Resuming.h), a Cancel in the dialog too: they go on with the pattern
// "*.MDB" as a file's name, which nothing can open. What comes of each course is settled.

#include "platform/base/Value.h"

namespace vardelin {

struct Global;

// The records of the current Display window, in its order, to a new file, or to the Vardelins of an existing
// one. Closes the record set under the window.
void ExportLogs(Global &global);

// All logs of another file to the file of the window, without their fees, with durations computed afresh.
void ImportLogs(Global &global);

// All clients of the window's file to another, new or not; a client that is there stays as it is.
void ExportActiveClients(Global &global);

// All clients of another file to the window's, each in place of the one of its name.
void ImportActiveClients(Global &global);

// The duration that an import gives a log, as the text it is stored from: hours, one decimal place, no digit
// ahead of the point below one. Both are dates.
QString importedDuration(const Value &beginning, const Value &ending);

} // namespace vardelin
