#pragma once
// The log report: every field of every log of a record set, and the time spent on them.

#include "platform/report/ReportDesign.h"

namespace vardelin {

struct Global;
namespace ado {
class Recordset;
}

ReportDesign dataReport1Design();

// Modal: returns when the report's window is closed. `title` takes the place of the report's own where it
// isn't empty.
void showLogReport(Global &global, const ado::Recordset &logs, const QString &title = {});

} // namespace vardelin
