#pragma once
// Text into lines of a width.

#include "platform/report/TextMeasurer.h"

namespace vardelin {

// How a line came to its end: by a line end of the text or the text's own, at blanks, or inside a word that
// is wider than the whole line.
enum class LineEnd { Hard, AtBlank, InWord };

struct TextLine
{
    QString text;     // without the blanks that it ends at
    double width = 0; // twips
    LineEnd end = LineEnd::Hard;
};

// CR LF, CR and LF each end a line; behind the last one no further line begins. Tabs become four blanks,
// other control characters go. At least one character stands on a line, however narrow. No text, no line.
std::vector<TextLine> breakLines(const QString &text, const ReportFont &font, double width,
                                 const TextMeasurer &measurer);

// The line without what is too wide, and "…" in its place.
TextLine elided(TextLine line, const ReportFont &font, double width, const TextMeasurer &measurer);

} // namespace vardelin
