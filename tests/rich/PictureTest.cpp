// Pictures as other programs put them into RTF, and their way through the document.
#include "platform/rich/Rtf.h"
#include "platform/rich/RtfPicture.h"
#include "tests/rich/Documents.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QUrl>
#include <QtEndian>

namespace vardelin::test {

using namespace Qt::StringLiterals;

namespace {

QByteArray le32(qint64 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(quint32(value), bytes.data());
    return bytes;
}

QByteArray le16(int value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(quint16(value), bytes.data());
    return bytes;
}

QImage opaque(int width, int height)
{
    return testImage(width, height).convertToFormat(QImage::Format_RGB32);
}

QByteArray dibOf(const QImage &image)
{
    return encoded(image, "BMP").sliced(14);
}

QByteArray wmfRecord(int function, const QByteArray &body)
{
    return le32((6 + body.size() + 1) / 2) + le16(function) + body + QByteArray(body.size() % 2, '\0');
}

QByteArray wmfOf(const QByteArray &records)
{
    return le16(1) + le16(9) + le16(0x300) + le32((18 + records.size()) / 2) + le16(0) + le32(100) + le16(0) +
           records + wmfRecord(0, {});
}

QByteArray emfRecord(int type, const QByteArray &body)
{
    return le32(type) + le32(8 + body.size()) + body;
}

QByteArray emfOf(const QByteArray &dib)
{
    const QByteArray header = dib.first(40), bits = dib.sliced(40);
    const QByteArray fields =
        QByteArray(40, '\0') + le32(80) + le32(40) + le32(120) + le32(bits.size()) + QByteArray(16, '\0');
    return emfRecord(1, QByteArray(80, '\0')) + emfRecord(81, fields + header + bits) +
           emfRecord(14, QByteArray(12, '\0'));
}

QByteArray group(const QByteArray &words, const QByteArray &bytes)
{
    return "{\\rtf1 a{\\pict" + words + "\\picwgoal300\\pichgoal150\r\n" + bytes.toHex() + "}b}";
}

QTextImageFormat imageFormat(const QTextDocument &document)
{
    for (auto it = document.begin().begin(); !it.atEnd(); ++it) {
        if (it.fragment().charFormat().isImageFormat())
            return it.fragment().charFormat().toImageFormat();
    }
    return {};
}

QImage shown(const QTextDocument &document)
{
    return document.resource(QTextDocument::ImageResource, QUrl(imageFormat(document).name()))
        .value<QImage>()
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

TEST(Picture, EveryKindIsShownAndKeptByteForByte)
{
    const QImage image = opaque(12, 9);
    const QByteArray dib = dibOf(image), jpeg = encoded(image, "JPEG");
    const QByteArray stretch = le32(0x00CC0020) + le16(0) + QByteArray(16, '\0') + dib;
    struct Case
    {
        const char *words;
        QByteArray bytes;
        QImage expected;
    };
    const Case cases[] = {
        {"\\pngblip", encoded(image, "PNG"), image},
        {"\\jpegblip\\picw12\\pich9", jpeg, QImage::fromData(jpeg).convertToFormat(QImage::Format_RGB32)},
        {"\\dibitmap0", dib, image},
        {"\\dibitmap0", dibOf(image.convertToFormat(QImage::Format_Indexed8)),
         image.convertToFormat(QImage::Format_Indexed8).convertToFormat(QImage::Format_RGB32)},
        {"\\wmetafile8\\picw529\\pich265", wmfOf(wmfRecord(0x0103, le16(8)) + wmfRecord(0x0F43, stretch)),
         image},
        {"\\wmetafile8", wmfOf(wmfRecord(0x0B41, le32(0x00CC0020) + QByteArray(16, '\0') + dib)), image},
        {"\\wmetafile8",
         le32(0x9AC6CDD7) + QByteArray(18, '\0') +
             wmfOf(wmfRecord(0x0940, le32(0x00CC0020) + QByteArray(12, '\0') + dib)),
         image},
        {"\\emfblip", emfOf(dib), image},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.words);
        QTextDocument document;
        fromRtf(group(c.words, c.bytes), document);
        EXPECT_EQ(shown(document), c.expected);
        EXPECT_EQ(imageFormat(document).width(), 20);
        EXPECT_EQ(imageFormat(document).height(), 10);
        EXPECT_EQ(utf8(plainText(document)), "ab");
        const QByteArray written = toRtf(document).replace("\r\n", "");
        EXPECT_TRUE(written.contains(c.words + QByteArray("\\picwgoal300\\pichgoal150") + c.bytes.toHex()))
            << written.toStdString();
    }
}

TEST(Picture, WhatCannotBeShownIsKeptAsWell)
{
    const QByteArray drawing = wmfOf(wmfRecord(0x041B, QByteArray(8, '\1'))); // a rectangle
    for (const char *words :
         {"\\wmetafile8\\picw5080\\pich2540", "\\wbitmap0\\wbmbitspixel1", "\\macpict", "\\pngblip"}) {
        SCOPED_TRACE(words);
        QTextDocument document;
        fromRtf(group(words, drawing), document);
        EXPECT_FALSE(shown(document).isNull());
        EXPECT_EQ(imageFormat(document).width(), 20);
        QTextCursor(&document).insertText(u"edited "_s);
        const QByteArray written = toRtf(document).replace("\r\n", "");
        EXPECT_TRUE(written.contains(words + QByteArray("\\picwgoal300\\pichgoal150") + drawing.toHex()));
    }
}

// An embedded object shows its result; what other programs open it by goes through an edit.
TEST(Picture, EmbeddedObjectsAreKept)
{
    const QByteArray png = encoded(opaque(5, 4), "PNG");
    const QByteArray pict = "{\\pict\\pngblip\\picwgoal150\\pichgoal300\r\n" + png.toHex() + "}";
    const QByteArray data = "\\objemb\\objw900{\\*\\objclass Word.Document.8}{\\*\\objdata 0105\r\n00ff}";
    struct Case
    {
        QByteArray object, text, written; // of the object, without line ends
    };
    const Case cases[] = {
        {data + "{\\result{\\pard " + pict + "}}", "", data + "{\\result" + pict + "}"},
        {data + "{\\result see " + pict + "there}{\\*\\objname x}", "see there",
         data + "{\\*\\objname x}{\\result" + pict + "}"},
        {data + "{\\result words alone}", "words alone", data},
        {data, "", data},
        {"\\objemb{\\*\\objdata \\bin2 }}}{\\result text}", "text", {}},
        {"\\objemb{\\*\\objdata \xe9}", "", {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.object.toStdString());
        QTextDocument document, again;
        fromRtf("{\\rtf1 a{\\object" + c.object + "}b}", document);
        EXPECT_EQ(utf8(plainText(document)), "a" + c.text.toStdString() + "b");
        EXPECT_EQ(utf8(plainTextOf("{\\rtf1 a{\\object" + c.object + "}b}")), utf8(plainText(document)));
        QTextCursor(&document).insertText(u"edited "_s);
        const QByteArray written = toRtf(document);
        const QByteArray flat = QByteArray(written).replace("\r\n", "");
        if (c.written.isEmpty())
            EXPECT_FALSE(flat.contains("\\object"));
        else
            EXPECT_TRUE(flat.contains("{\\object" + QByteArray(c.written).replace("\r\n", "") + "}"))
                << flat.toStdString();
        fromRtf(written, again);
        EXPECT_EQ(toRtf(again).toStdString(), written.toStdString());
    }
    QTextDocument cut;
    fromRtf("{\\rtf1 a{\\object" + data, cut); // ends too soon
    EXPECT_EQ(utf8(plainText(cut)), "a");
    EXPECT_FALSE(toRtf(cut).contains("object"));
}

TEST(Picture, FormsOfTheGroup)
{
    const QImage image = opaque(5, 4);
    const QByteArray png = encoded(image, "PNG"), hex = png.toHex();
    const QByteArray pict = "{\\pict\\pngblip\\picwgoal150\\pichgoal300\\picscalex200\\picscaley50 ";
    for (const QByteArray &inner : {
             QByteArray(pict + hex + '}'),
             QByteArray("{\\*\\shppict" + pict + "{\\*\\picprop{\\sp{\\sn a}{\\sv b}}}{\\*\\blipuid 00ff}" +
                        hex + "}}{\\nonshppict{\\pict\\wmetafile8 00}}"),
             QByteArray(pict + "\\bin" + QByteArray::number(png.size()) + ' ' + png + '}'),
             QByteArray("{\\object\\objemb{\\*\\objdata 01}{\\result{\\pard " + pict + hex.toUpper() +
                        "}}}}"),
             QByteArray("{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv " + pict + hex + "}}}{\\shprslt x}}}"),
         }) {
        SCOPED_TRACE(inner.left(60).toStdString());
        QTextDocument document;
        fromRtf("{\\rtf1 " + inner + "}", document);
        EXPECT_EQ(shown(document), image);
        EXPECT_EQ(imageFormat(document).width(), 20);
        EXPECT_EQ(imageFormat(document).height(), 10);
        EXPECT_EQ(utf8(plainText(document)), "");
    }
}

TEST(Picture, SizesNobodyGave)
{
    EXPECT_EQ(displaySize({}, QSize(7, 3)), QSizeF(7, 3));
    RtfPicture metafile;
    metafile.kind = RtfPicture::Kind::Wmf;
    metafile.width = 2540;
    metafile.height = 1270;
    EXPECT_EQ(displaySize(metafile, QSize()), QSizeF(96, 48));
    RtfPicture huge;
    huge.goalWidth = huge.goalHeight = 2147483647;
    huge.scaleX = huge.scaleY = 2147483647;
    EXPECT_EQ(displaySize(huge, QSize()), QSizeF(32767, 32767));
    huge.goalWidth = huge.goalHeight = -5;
    huge.scaleX = -100;
    huge.scaleY = 1;
    EXPECT_EQ(displaySize(huge, QSize()), QSizeF(1, 1));
}

TEST(Picture, PastedPicturesKeepTheirPixelsAndTheirOwnBytes)
{
    const QByteArray jpeg = encoded(opaque(30, 20), "JPEG");
    QTextDocument document;
    document.addResource(QTextDocument::ImageResource, QUrl(u"a"_s), jpeg);
    document.addResource(QTextDocument::ImageResource, QUrl(u"b"_s), opaque(300, 200));
    QTextCursor cursor(&document);
    cursor.insertImage(u"a"_s); // no size given: shown in its own
    QTextImageFormat small;
    small.setName(u"b"_s);
    small.setWidth(30);
    cursor.insertImage(small);
    cursor.insertImage(u"nowhere"_s);
    const QByteArray rtf = toRtf(document);
    EXPECT_TRUE(QByteArray(rtf)
                    .replace("\r\n", "")
                    .contains("\\jpegblip\\picw30\\pich20\\picwgoal450\\pichgoal300" + jpeg.toHex()));
    EXPECT_TRUE(rtf.contains("\\pngblip\\picw300\\pich200\\picwgoal450\\pichgoal300"));
    EXPECT_EQ(rtf.count("{\\pict"), 2);
}

} // namespace vardelin::test
