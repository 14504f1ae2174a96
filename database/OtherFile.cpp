#include "database/OtherFile.h"

#include "platform/data/Adodc.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

bool openOtherFile(Global &global, const Resuming &resuming, const QString &table, const QString &message)
{
    closeOtherFile(global);
    resuming([&] { global.LogDatabase = global.services.engine.OpenDatabase(global.DatabaseFileName); });
    if (!global.LogDatabase) {
        global.services.dialogs.msgBox({message + u"Please try again.  Error description: "_s});
        return false;
    }
    resuming([&] { global.TransferRecordset = global.LogDatabase->OpenRecordset(table); });
    return true;
}

void closeOtherFile(Global &global)
{
    global.TransferRecordset.reset();
    global.LogDatabase.reset();
}

void leaveRecord(Adodc &control)
{
    if (!control.commitEdits())
        control.dropEdits();
}

} // namespace vardelin
