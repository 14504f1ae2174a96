#include "platform/ui/WordWrap.h"

#include <QPlainTextEdit>
#include <QTextBlock>

namespace vardelin {

namespace {

constexpr qsizetype kLongestWord = 5000; // letters; a few milliseconds

bool hasEndlessWord(QStringView text)
{
    qsizetype wordStart = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isSpace())
            wordStart = i + 1;
        else if (i - wordStart >= kLongestWord)
            return true;
    }
    return false;
}

QTextOption::WrapMode modeFor(bool endlessWord)
{
    return endlessWord ? QTextOption::WrapAnywhere : QTextOption::WrapAtWordBoundaryOrAnywhere;
}

} // namespace

QTextOption::WrapMode wrapModeFor(QStringView text)
{
    return modeFor(hasEndlessWord(text));
}

QTextOption::WrapMode wrapModeFor(const QTextDocument &document)
{
    bool endless = false;
    for (QTextBlock block = document.begin(); block.isValid() && !endless; block = block.next())
        endless = hasEndlessWord(block.text());
    return modeFor(endless);
}

void showPlainText(QPlainTextEdit &edit, const QString &text)
{
    edit.clear(); // or the old text would be laid out once more in the new mode
    edit.setWordWrapMode(wrapModeFor(text));
    edit.setPlainText(text);
}

} // namespace vardelin
