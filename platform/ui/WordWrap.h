#pragma once
// Where the lines of a text field break. Qt takes a second to break a word of a hundred thousand letters and
// a quarter of a minute for four times as many; what other programs left in a memo may be such a word, as the
// bytes of a picture are. A text that has one is broken at any letter, which costs the same for all texts.

#include <QTextOption>

class QPlainTextEdit;
class QTextDocument;

namespace vardelin {

QTextOption::WrapMode wrapModeFor(QStringView text);
QTextOption::WrapMode wrapModeFor(const QTextDocument &document);

// setPlainText() with the mode that the text needs.
void showPlainText(QPlainTextEdit &edit, const QString &text);

} // namespace vardelin
