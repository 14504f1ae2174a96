// What the notes field can make goes to RTF and comes back the same.
#include "platform/rich/Rtf.h"
#include "tests/rich/Documents.h"

#include <QFont>
#include <QTextBlock>
#include <QTextCursor>

namespace vardelin::test {

using namespace Qt::StringLiterals;

TEST(RoundTrip, EveryDocumentComesBackAsItWas)
{
    for (const Sample &sample : samples()) {
        SCOPED_TRACE(sample.name);
        QTextDocument document;
        document.setDefaultFont(QFont(u"Sans"_s, 9));
        sample.make(document);
        const QByteArray rtf = toRtf(document);

        QTextDocument back;
        back.setDefaultFont(QFont(u"Sans"_s, 9));
        fromRtf(rtf, back);
        expectSame(back, document);
        EXPECT_EQ(utf8(plainTextOf(rtf)), utf8(plainText(document)));
        EXPECT_EQ(toRtf(document), rtf) << "two writings of one document differ";
        EXPECT_EQ(toRtf(back).toStdString(), rtf.toStdString());
    }
}

TEST(RoundTrip, TheTextIsAsciiAndBalanced)
{
    for (const Sample &sample : samples()) {
        SCOPED_TRACE(sample.name);
        QTextDocument document;
        sample.make(document);
        const QByteArray rtf = toRtf(document);
        EXPECT_TRUE(looksLikeRtf(rtf));
        int depth = 0;
        for (qsizetype i = 0; i < rtf.size(); ++i) {
            const char c = rtf[i];
            ASSERT_TRUE((c >= 0x20 && c < 0x7F) || c == '\r' || c == '\n')
                << "byte " << int(c) << " at " << i;
            if (c == '\\' && (rtf[i + 1] == '{' || rtf[i + 1] == '}' || rtf[i + 1] == '\\'))
                ++i;
            else
                depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            ASSERT_TRUE(depth > 0 || rtf.sliced(i + 1).trimmed().isEmpty()) << i;
        }
        EXPECT_EQ(depth, 0);
    }
}

// What another program has to find in the text.
TEST(RoundTrip, OthersFindTheCustomaryWords)
{
    QTextDocument document;
    document.setDefaultFont(QFont(u"Arial"_s, 10));
    QTextCursor cursor(&document);
    QTextCharFormat format;
    format.setFontWeight(QFont::Bold);
    format.setForeground(QColor(255, 0, 0));
    cursor.insertText(u"né 日\U0001F600"_s, format);
    const QByteArray rtf = toRtf(document);
    for (const char *part :
         {"{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}", "{\\colortbl ;\\red255\\green0\\blue0;}",
          "\\pard\\plain\\fs20\\f0 {\\b\\cf1 n\\u233? \\u26085?\\u-10179?\\u-8704?}\\par"})
        EXPECT_TRUE(rtf.contains(part)) << part << "\nin " << rtf.toStdString();
}

TEST(RoundTrip, TextWithoutAFontFollowsTheFieldItIsShownIn)
{
    QTextDocument document;
    document.setDefaultFont(QFont(u"Arial"_s, 10));
    document.setPlainText(u"note"_s);
    QTextDocument other;
    other.setDefaultFont(QFont(u"Times New Roman"_s, 14));
    fromRtf(toRtf(document), other);
    const QTextCharFormat format = other.begin().begin().fragment().charFormat();
    EXPECT_FALSE(format.hasProperty(QTextFormat::FontFamilies));
    EXPECT_FALSE(format.hasProperty(QTextFormat::FontPointSize));
    EXPECT_EQ(other.defaultFont().family(), u"Times New Roman"_s);
}

TEST(RoundTrip, ReadingReplacesTheContentAndForgetsTheHistory)
{
    QTextDocument document;
    document.setPlainText(u"old"_s);
    QTextCursor(&document).insertText(u"older "_s);
    fromRtf("{\\rtf1 new}", document);
    EXPECT_EQ(utf8(document.toPlainText()), "new");
    EXPECT_TRUE(document.isUndoRedoEnabled());
    EXPECT_FALSE(document.isUndoAvailable());
    EXPECT_FALSE(document.isModified());
}

TEST(RoundTrip, PlainTextHasTheLineEndsOfTheColumn)
{
    QTextDocument document;
    document.addResource(QTextDocument::ImageResource, QUrl(u"p"_s), testImage(4, 4));
    QTextCursor cursor(&document);
    cursor.insertText(u"a\u00A0b\u2028c\n\n"_s);
    cursor.insertImage(u"p"_s);
    cursor.insertText(u"d"_s);
    EXPECT_EQ(utf8(plainText(document)), "a b\r\nc\r\n\r\nd");
    EXPECT_EQ(utf8(plainTextOf(toRtf(document))), "a b\r\nc\r\n\r\nd");
}

} // namespace vardelin::test
