#pragma once
// The command "Report" of the ledger window: all of a client's disbursements, or payments, as a letter. It
// asks for the client, shows the report and writes nothing.

#include "billing/BillingSql.h"

class QWidget;

namespace vardelin {

struct Global;

// Asks over `parent`. Works on DatabaseFileName, whatever was searched or is on view. Leaves SearchType,
// SearchClient, ClientLastName, ClientFirstName, CurrentSQL and LetterheadText as it used them. Throws
// RunTimeError, also for a letterhead that is Null or that was asked for and not made.
void makeStatement(Global &global, Ledger ledger, QWidget *parent);

} // namespace vardelin
