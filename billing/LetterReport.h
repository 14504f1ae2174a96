#pragma once
// The three letters as reports, and how their words and fonts get into them.

#include "billing/Letter.h"
#include "platform/report/Report.h"

namespace vardelin {

struct Global;

ReportDesign dataReport3Design(); // invoice
ReportDesign dataReport4Design(); // statement of disbursements
ReportDesign dataReport5Design(); // statement of payments

// The words for SearchClient, from its row in Active Clients; leaves ClientLastName and ClientFirstName.
// Throws as splitClient() does.
LetterTexts readLetterTexts(Letter kind, dao::Database &database, Global &global);

// The report of a letter with its words, the present date and the fonts of the settings in it; bound to
// nothing yet. RunTimeError 13 where a font's size is no number.
DataReport letterReport(Letter kind, const QString &letterhead, const LetterTexts &texts,
                        const Global &global);

} // namespace vardelin
