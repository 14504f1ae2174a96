#include "platform/ui/NotesEdit.h"

#include "platform/rich/Rtf.h"
#include "platform/rich/RtfPicture.h"
#include "platform/ui/NotePictures.h"
#include "platform/ui/PictureObject.h"
#include "platform/ui/WordWrap.h"

#include <QFile>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QTextDocumentFragment>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const auto kRtf = u"text/rtf"_s;
const QStringList kRtfKinds{kRtf, u"application/rtf"_s, u"text/richtext"_s};

QByteArray rtfIn(const QMimeData &source)
{
    for (const QString &kind : kRtfKinds) {
        const QByteArray rtf = source.data(kind);
        if (looksLikeRtf(rtf))
            return rtf;
    }
    return {};
}

bool hasTextBesidePictures(const QString &html)
{
    return !QTextDocumentFragment::fromHtml(html)
                .toPlainText()
                .remove(QChar::ObjectReplacementCharacter)
                .trimmed()
                .isEmpty();
}

// How text that is typed next should look: as before, but not as a picture.
QTextCharFormat textFormat(QTextCharFormat format)
{
    for (const auto property :
         {QTextFormat::ObjectType, QTextFormat::ImageName, QTextFormat::ImageWidth, QTextFormat::ImageHeight})
        format.clearProperty(property);
    return format;
}

} // namespace

NotesEdit::NotesEdit(QWidget *parent) : QTextEdit(parent)
{
    setTabChangesFocus(true); // else the keyboard gets into the notes and not out again
    PictureObject::install(*document());
}

QString NotesEdit::Text() const
{
    return acceptRichText() ? plainText(*document()) : wordsOf(*document());
}

QString NotesEdit::TextRTF() const
{
    return QString::fromLatin1(toRtf(*document()));
}

void NotesEdit::setTextRTF(const QString &rtf)
{
    clearAll();
    document()->setLayoutEnabled(false);
    fromRtf(rtfBytes(rtf), *document());
    setWordWrapMode(wrapModeFor(*document()));
    document()->setLayoutEnabled(true);
    document()->clearUndoRedoStacks();
    document()->setModified(false);
    moveCursor(QTextCursor::Start);
}

void NotesEdit::setText(const QString &plain)
{
    clearAll();
    setWordWrapMode(wrapModeFor(plain));
    setPlainText(plain);
}

QString NotesEdit::SelText() const
{
    return textCursor()
        .selection()
        .toPlainText()
        .remove(QChar::ObjectReplacementCharacter)
        .replace(u'\n', "\r\n"_L1);
}

void NotesEdit::setSelText(const QString &text)
{
    QString lines = text;
    lines.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
    textCursor().insertText(lines, textFormat(currentCharFormat()));
    ensureCursorVisible();
}

// Formats, too: what is typed into emptied notes looks plain again.
void NotesEdit::clearAll()
{
    document()->clearUndoRedoStacks();
    releasePictures(*document());
    clear();
    setCurrentCharFormat({});
}

// Where words alone are kept, pictures and formats would be gone with the next record.
bool NotesEdit::canInsertFromMimeData(const QMimeData *source) const
{
    if (!acceptRichText())
        return source->hasText();
    return source->hasImage() || source->hasUrls() || !rtfIn(*source).isEmpty() ||
           QTextEdit::canInsertFromMimeData(source);
}

// The richest form that says all: other programs put a picture of the text beside the text, and a mere
// address beside a picture.
void NotesEdit::insertFromMimeData(const QMimeData *source)
{
    if (isReadOnly())
        return;
    if (const auto mode = wrapModeFor(source->text()); mode == QTextOption::WrapAnywhere)
        setWordWrapMode(mode);
    if (!acceptRichText())
        return QTextEdit::insertFromMimeData(source);
    const bool textInHtml = source->hasHtml() && hasTextBesidePictures(source->html());
    if (const QByteArray rtf = rtfIn(*source); !rtf.isEmpty())
        insertRtf(rtf);
    else if (source->hasUrls() && insertPictureFiles(source->urls()))
        return;
    else if (source->hasImage() && !textInHtml)
        insertClipboardPicture(*source);
    else if (source->hasHtml())
        insertHtmlText(source->html());
    else
        QTextEdit::insertFromMimeData(source);
    ensureCursorVisible();
}

QMimeData *NotesEdit::createMimeDataFromSelection() const
{
    auto *mime = QTextEdit::createMimeDataFromSelection();
    QTextDocument part;
    QTextCursor(&part).insertFragment(textCursor().selection());
    copyPictures(*document(), part);
    mime->setData(kRtf, toRtf(part));
    mime->setText(SelText());
    return mime;
}

void NotesEdit::insertRtf(const QByteArray &rtf)
{
    QTextDocument pasted;
    pasted.setDefaultFont(document()->defaultFont());
    fromRtf(rtf, pasted);
    copyPictures(pasted, *document());
    textCursor().insertFragment(QTextDocumentFragment(&pasted));
}

void NotesEdit::insertHtmlText(const QString &html)
{
    QTextDocument pasted;
    pasted.setDefaultFont(document()->defaultFont());
    pasted.setHtml(html);
    adoptPictures(pasted, *document());
    textCursor().insertFragment(QTextDocumentFragment(&pasted));
}

void NotesEdit::insertClipboardPicture(const QMimeData &source)
{
    std::optional<QTextImageFormat> picture;
    if (const QByteArray png = source.data(u"image/png"_s); !png.isEmpty())
        picture = addPicture(*document(), png);
    if (!picture)
        picture = addPicture(*document(), source.imageData().value<QImage>());
    if (picture)
        insertPicture(*picture);
}

// False if there is anything else than readable pictures; nothing is inserted then.
bool NotesEdit::insertPictureFiles(const QList<QUrl> &urls)
{
    std::vector<QTextImageFormat> pictures;
    for (const QUrl &url : urls) {
        QFile file(url.toLocalFile());
        if (!url.isLocalFile() || !file.open(QIODevice::ReadOnly))
            return false;
        const auto picture = addPicture(*document(), file.readAll());
        if (!picture)
            return false;
        pictures.push_back(*picture);
    }
    for (const auto &picture : pictures)
        insertPicture(picture);
    return true;
}

void NotesEdit::insertPicture(const QTextImageFormat &picture)
{
    const QTextCharFormat typed = textFormat(currentCharFormat());
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    // Qt gives the line before the height of a picture that didn't fit on it any more.
    if (!cursor.atBlockStart() && picture.width() > viewport()->width() - cursorRect().right())
        cursor.insertBlock();
    cursor.insertImage(picture);
    cursor.endEditBlock();
    setTextCursor(cursor);
    setCurrentCharFormat(typed);
}

void NotesEdit::keyPressEvent(QKeyEvent *event)
{
    const QPointer<NotesEdit> self = this;
    if (keyPressed && keyPressed(event->key())) {
        event->accept();
        return;
    }
    if (self && !formatByKey(*event))
        QTextEdit::keyPressEvent(event);
}

// Ctrl+B, I and U as rich text fields have them, and Ctrl+Tab for the tab that Tab itself doesn't give.
bool NotesEdit::formatByKey(const QKeyEvent &event)
{
    if (event.modifiers() != Qt::ControlModifier || isReadOnly())
        return false;
    if (!acceptRichText() && event.key() != Qt::Key_Tab)
        return false;
    switch (event.key()) {
    case Qt::Key_B:
        setFontWeight(fontWeight() > QFont::Medium ? QFont::Normal : QFont::Bold);
        return true;
    case Qt::Key_I:
        setFontItalic(!fontItalic());
        return true;
    case Qt::Key_U:
        setFontUnderline(!fontUnderline());
        return true;
    case Qt::Key_Tab:
        textCursor().insertText(u"\t"_s);
        return true;
    default:
        return false;
    }
}

void NotesEdit::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    if (gotFocus)
        gotFocus();
}

} // namespace vardelin
