#pragma once
// The common dialog of the commands that work on whole files: one table of set-ups.

#include "platform/ui/Dialogs.h"

namespace vardelin {

enum class FileCommand {
    NewFile,
    OpenFile,
    SaveFileAs,
    CompactDatabase,
    ExportLogs,
    ImportLogs,
    ExportActiveClients,
    ImportActiveClients
};

// The dialog of a command, ready to be shown: Cancel is an error, a name that isn't there is asked about.
// currentFile is what compacting starts from. All commands use the dialog for opening, those that write a
// file too.
CommonDialog fileDialog(FileCommand command, const QString &currentFile = {});

} // namespace vardelin
