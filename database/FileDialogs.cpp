#include "database/FileDialogs.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kShort = u"Log files *.mdb|*.mdb"_s;
const QString kFull = u"Log files *.mdb|*.mdb|All files *.*|*.*"_s;

struct Setup
{
    FileCommand command;
    QString title, filter;
};

const std::array kSetups{
    Setup{FileCommand::NewFile, u"Opening New Vardelin Database File"_s, kFull},
    Setup{FileCommand::OpenFile, u"Opening Vardelin Database File"_s, kFull},
    Setup{FileCommand::SaveFileAs, u"Choosing new name for Vardelin Database File"_s, kShort},
    Setup{FileCommand::CompactDatabase, u"Selecting Vardelin Database File to be compacted"_s, kFull},
    Setup{FileCommand::ExportLogs, u"Selecting name for database file to contain exported Vardelins."_s,
          kFull},
    Setup{FileCommand::ImportLogs,
          u"Selecting Vardelin Database File containing source of Vardelin records to be imported."_s, kFull},
    Setup{FileCommand::ExportActiveClients,
          u"Selecting name for database file to contain exported Active Clients information."_s, kFull},
    Setup{FileCommand::ImportActiveClients,
          u"Selecting Vardelin Database File containing source of Active Client records to be imported."_s,
          kFull}};

} // namespace

CommonDialog fileDialog(FileCommand command, const QString &currentFile)
{
    const Setup &setup = kSetups.at(static_cast<std::size_t>(command));
    Q_ASSERT(setup.command == command);
    return {.DialogTitle = setup.title,
            .FileName = command == FileCommand::CompactDatabase ? currentFile : u"*.MDB"_s,
            .Filter = setup.filter,
            .DefaultExt = u".mdb"_s,
            .CancelError = true,
            .overwritePrompt = true,
            .createPrompt = true};
}

} // namespace vardelin
