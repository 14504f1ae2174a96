#pragma once
// Rich text between a QTextDocument and RTF, and the plain text that goes with it. A QGuiApplication must
// stand wherever a QTextDocument is handed in. Nothing here throws, and every function may be fed damaged or
// hostile text: its work and memory stay in proportion to the text, and whatever text it holds comes through.
//
// Lengths: RTF counts twips (1440 an inch), the document counts pixels of 96 an inch, so one pixel is always
// 15 twips, whatever the screen.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

class QTextDocument;

namespace vardelin {

// The document as RTF 1.9: pure ASCII, line ends CR LF, the same bytes for the same document.
// Kept exactly: text, line breaks, tabs; font family, size (to the half point), weight as bold or not,
// italic, underline and its style, strike-out, colour and background (without transparency), capitals, super-
// and subscript, links; alignment, margins, indents, spacing, line height, tab stops, background of a
// paragraph; lists; tables as rows and cells with an even width and no merging; pictures with their bytes and
// the displayed size. Text with no font of its own is written in the document's default font, and fromRtf()
// leaves it without one again.
QByteArray toRtf(const QTextDocument &document);

// Replaces the content of the document by that of the RTF, ours or another program's. The document's default
// font and undo setting stay; the undo history is emptied. Text that isn't RTF is taken as plain text (UTF-8,
// or else Windows-1252). A picture that can't be shown (a drawing in a metafile, damaged data) stands as a
// grey box, and toRtf() writes its own bytes back. So it does with an embedded object, which stays with the
// first picture of its result, or with a grey box; only one that holds raw binary data or isn't whole is left
// out, as are headers, footers, footnote marks, comments and style sheets.
void fromRtf(QByteArrayView rtf, QTextDocument &document);

// True if the text opens as RTF does, blanks and a byte order mark aside.
bool looksLikeRtf(QByteArrayView text);

// The same text that fromRtf() and plainText() give together, without decoding a picture.
QString plainTextOf(QByteArrayView rtf);

// The document's text: line ends CR LF (also for a break within a paragraph), pictures left out, hard blanks
// as blanks.
QString plainText(const QTextDocument &document);
// The same for a column of words alone: every other character stays, hard blanks too.
QString wordsOf(const QTextDocument &document);

// What a text column holds, as bytes for fromRtf(): characters outside ASCII become \u escapes if the text is
// RTF, else UTF-8.
QByteArray rtfBytes(const QString &text);

} // namespace vardelin
