#pragma once
// The birth of a log.

#include "entry/LogRecord.h"

namespace vardelin {

struct Global;

// Adds the log to Vardelins of the file named by DatabaseFileName, whichever file the window shows, and
// closes the file again. Leaves CurrentRate, CurrentDuration and CurrentFee at the values of this
// computation. RunTimeError where the rate is no number, a text is too long for its column, or the file can't
// be opened or written; nothing of the log is in the file then.
void saveLog(Global &global, const LogRecord &log);

} // namespace vardelin
