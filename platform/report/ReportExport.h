#pragma once
// A report as a file, and on a printer.

#include "platform/report/PageText.h"

class QIODevice;
class QPrinter;

namespace vardelin {

// Each writes the whole report to a device that is open for writing: false where the progress said no; what
// was written until then is of no use. RunTimeError 61 where the device takes no more.

// The pages, with text that can be searched, the report's caption as title, and a bookmark for each record:
// the first text of its section, neighbours with the same text under one.
bool writePdf(ReportPages &pages, QIODevice &device, const ReportProgress &progress);
// One file that needs no other: the pages with each text in its place.
bool writeHtml(ReportPages &pages, QIODevice &device, const ReportProgress &progress);
// UTF-8, lines as on paper, pages ended by a form feed.
bool writeText(ReportPages &pages, QIODevice &device, const ReportProgress &progress);
// The records with the columns of the detail section, under their names; values in their default text form.
// UTF-8 with its mark, CR LF, fields in quotes where they need them.
bool writeCsv(ReportPages &pages, QIODevice &device, const ReportProgress &progress);

// The pages one after the other, found while they are taken: false where the progress said no.
bool forEachPage(ReportPages &pages, const ReportProgress &progress,
                 const std::function<void(const ReportPage &page)> &take);

using ReportWriter = bool (*)(ReportPages &, QIODevice &, const ReportProgress &);

// Writes the file whole or, on false and on errors, not at all: what stood there stays. RunTimeError 75 where
// it can't be written.
bool exportReport(ReportPages &pages, const QString &path, ReportWriter writer,
                  const ReportProgress &progress);

// Prints pages as the printer is set up: its range (all where it has none), copies and order. The pages are
// laid on its paper. RunTimeError 482 where printing fails.
bool printReport(ReportPages &pages, QPrinter &printer, const ReportProgress &progress);

// The printer's paper.
Paper paperOf(const QPrinter &printer);

} // namespace vardelin
