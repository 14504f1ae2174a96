#pragma once
// From the user's choice to a selection: in a new Display window, or as the log report. Neither has a trap:
// what fails goes to the caller's frame.

namespace vardelin {

struct Global;

// searchType and timeFrame: SearchSql.h. The new window stands on the last record found; where none is, a
// message says so and the window stays, empty. A window's remembered fragment narrows the search and grows
// with it: fromDisplay tells whose, the current Display window's or the current Data entry window's.
// CurrentSQL, RangeStart and RangeEnd are as before at the end; the search values keep their doubled
// apostrophes.
void SearchRoutine(Global &global, int searchType, int timeFrame, bool fromDisplay);

// Modal: returns when the report is closed. No fragment narrows it.
void ReportRoutine(Global &global, int searchType, int timeFrame);

} // namespace vardelin
