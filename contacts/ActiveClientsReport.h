#pragma once
// The report on all active clients: one statement whose columns are blocks of text, and the design that
// places them side by side.

#include "platform/report/Report.h"

namespace vardelin {

QString activeClientsStatement();
ReportDesign dataReport2Design();

} // namespace vardelin
