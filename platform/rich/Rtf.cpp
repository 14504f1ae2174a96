#include "platform/rich/Rtf.h"

#include "platform/rich/RtfBuilder.h"
#include "platform/rich/RtfReader.h"
#include "platform/rich/RtfWriter.h"

#include <QStringDecoder>
#include <QTextDocument>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
constexpr int kWestern = 1252;

QString decodedPlain(QByteArrayView text)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = utf8.decode(text);
    return utf8.hasError() ? CodePages().decode(text, kWestern) : decoded;
}

// Plain text as paragraphs without a format.
RtfContent contentOfPlain(QByteArrayView bytes)
{
    QString text = decodedPlain(bytes);
    text.remove(QChar(0));
    text.replace("\r\n"_L1, "\n"_L1);
    text.replace(u'\r', u'\n');
    text.replace(QChar::ParagraphSeparator, u'\n');
    for (const char16_t structure : {u'\uFDD0', u'\uFDD1', u'\uFFFC'})
        text.replace(QChar(structure), QChar(QChar::ReplacementCharacter));
    RtfContent content;
    for (const QString &line : text.split(u'\n')) {
        content.paragraphs.emplace_back();
        if (!line.isEmpty())
            content.paragraphs.back().runs.push_back({line, {}});
    }
    return content;
}

QByteArrayView withoutMark(QByteArrayView text)
{
    return text.startsWith(kByteOrderMark) ? text.sliced(kByteOrderMark.size()) : text;
}

RtfContent contentOf(QByteArrayView text)
{
    const QByteArrayView whole = withoutMark(text);
    return looksLikeRtf(whole) ? RtfReader(whole.trimmed()).read() : contentOfPlain(whole);
}

} // namespace

bool looksLikeRtf(QByteArrayView text)
{
    return withoutMark(text).trimmed().startsWith("{\\rtf");
}

QByteArray toRtf(const QTextDocument &document)
{
    return RtfWriter(document).write();
}

void fromRtf(QByteArrayView rtf, QTextDocument &document)
{
    const RtfContent content = contentOf(rtf);
    const bool undo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    document.clear();
    RtfBuilder(document).build(content);
    document.setUndoRedoEnabled(undo);
    document.setModified(false);
}

QString plainTextOf(QByteArrayView rtf)
{
    return plainText(contentOf(rtf));
}

QString plainText(const QTextDocument &document)
{
    QString text = document.toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    return text.replace("\n"_L1, "\r\n"_L1);
}

// toPlainText() would make blanks of hard blanks, and lines of what merely marks frames.
QString wordsOf(const QTextDocument &document)
{
    QString text = document.toRawText();
    for (const QChar lineEnd : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        text.replace(lineEnd, "\r\n"_L1);
    return text;
}

QByteArray rtfBytes(const QString &text)
{
    const QStringView whole =
        QStringView(text).startsWith(QChar::ByteOrderMark) ? QStringView(text).sliced(1) : text;
    if (!looksLikeRtf(whole.left(64).toUtf8()))
        return whole.toUtf8();
    QByteArray rtf;
    rtf.reserve(whole.size());
    for (const QChar c : whole) {
        // In a group with its own \uc, for the text around may have asked for another fallback.
        if (c.unicode() < 0x80)
            rtf += char(c.unicode());
        else
            rtf += "{\\uc1\\u" + QByteArray::number(int(qint16(c.unicode()))) + "?}";
    }
    return rtf;
}

} // namespace vardelin
