#include "entry/SaveLog.h"

#include "shell/state/Global.h"
#include "shell/state/Trim.h"

using namespace Qt::StringLiterals;

namespace vardelin {

void saveLog(Global &global, const LogRecord &log)
{
    const auto LogDatabase = global.services.engine.OpenDatabase(global.DatabaseFileName);
    const auto LogRecordset = LogDatabase->OpenRecordset(u"Vardelins"_s);
    LogRecordset->AddNew();
    LogRecordset->SetField(u"Client"_s, Trim(log.client));
    LogRecordset->SetField(u"Employee"_s, Trim(log.employee));
    LogRecordset->SetField(u"Project"_s, Trim(log.project));
    global.CurrentRate = Trim(log.rate);
    LogRecordset->SetField(u"Rate"_s, global.CurrentRate);
    LogRecordset->SetField(u"Log Summary"_s, logSummary(log.summary, log.notes));
    LogRecordset->SetField(u"Vardelin"_s, Trim(log.notes));
    LogRecordset->SetField(u"VardeGraphic"_s, log.notesRtf);
    LogRecordset->SetField(u"Beginning Time"_s, log.begin);
    LogRecordset->SetField(u"Ending Time"_s, log.end);
    global.CurrentDuration = durationText(log.begin, log.end);
    LogRecordset->SetField(u"Duration"_s, global.CurrentDuration);
    global.CurrentFee =
        feeOf(global.CurrentRate, global.CurrentDuration); // from the tenths, not the exact time
    LogRecordset->SetField(u"Fee"_s, storedFee(global.CurrentFee));
    LogRecordset->Update();
    LogRecordset->Close();
    LogDatabase->Close();
}

} // namespace vardelin
