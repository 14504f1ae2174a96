#pragma once
// The log report and an invoice of a file, and the same records through Qt's own text document. Each is a
// process of its own, so that its memory can be told, and prints "name number" lines: times in seconds,
// "peak" in bytes.

namespace vardelin::bench {

// argv[2]: the file, argv[3]: the PDF to write. "first_page": until the report's window shows its first page,
// from the opening of the record set on; "pages": their number; "count": until all are known; "pdf": until
// the whole report is written.
int makeReport(int argc, char **argv);

// The same texts as paragraphs and tabbed lines of one QTextDocument. "pdf" and "peak" as above.
int makeDocument(int argc, char **argv);

// The invoice for all logs of Generate.h's client. argv[2]: the file. "first_page": from the end of the
// command's questions until the report's window shows its first page; "count", "pages" and "peak" as above;
// "logs": on the invoice.
int makeInvoice(int argc, char **argv);

// The same rows as tabbed lines in a text field of Qt's: "first_page" and "peak".
int makeInvoiceDocument(int argc, char **argv);

} // namespace vardelin::bench
