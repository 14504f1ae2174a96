#pragma once
// The command "Create invoice": a client's logs over a period as a letter. It asks for client and dates,
// shows the report and writes nothing.

namespace vardelin {

struct Global;

// Works on DatabaseFileName. Leaves SearchType, SearchClient, ClientLastName, ClientFirstName, RangeStart,
// RangeEnd, CurrentSQL and LetterheadText as it used them. Any RunTimeError is said in a box.
void createInvoice(Global &global);

} // namespace vardelin
