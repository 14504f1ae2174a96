#pragma once
// What the four transfers share: the file that the user has picked, beside the one of the window.

#include "database/Resuming.h"

#include <QString>

namespace vardelin {

class Adodc;
struct Global;

// Opens the file named by DatabaseFileName as LogDatabase, and its table as TransferRecordset, which stays
// null where there is no such table. False, with the message, where the file can't be opened; passing over
// the failure has cleared its description, with which the message would end.
bool openOtherFile(Global &global, const Resuming &resuming, const QString &table, const QString &message);
void closeOtherFile(Global &global);

// What was typed into the window's fields goes to its record, as whenever the record is left. What the engine
// refuses is told by the data control, and dropped.
void leaveRecord(Adodc &control);

// Several changes as one in a crash. File: dao::Database or ado::Connection. Nothing is done where another
// program is writing: each row would wait for it in vain.
template <class File, class Work>
void together(const Resuming &resuming, File &file, const Work &work)
{
    if (!resuming([&] { file.BeginTrans(); }))
        return;
    resuming(work);
    resuming([&] { file.CommitTrans(); });
}

} // namespace vardelin
