#pragma once
// Prints rich text as it stands: no header, no footer, no page number.

class QTextDocument;

namespace vardelin {

class Printer;

// Margins in twips from the paper's edges. Fonts are the document's own, lines wrap at the right margin, a
// picture is no larger than what the margins leave; an empty document is an empty page. The document stays as
// it is. What fails is thrown, and nothing is printed then.
void PrintRichText(Printer &printer, const QTextDocument &text, int left, int top, int right, int bottom);

} // namespace vardelin
