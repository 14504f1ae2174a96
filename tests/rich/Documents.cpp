#include "tests/rich/Documents.h"

#include <QBuffer>
#include <QDebug>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

namespace vardelin::test {

using namespace Qt::StringLiterals;

namespace {

QString propertiesOf(const QTextFormat &format)
{
    QMap<int, QVariant> properties = format.properties();
    properties.remove(QTextFormat::ObjectIndex); // counts the document's lists and tables
    properties.remove(QTextFormat::ImageName);   // named anew when read
    QString text;
    QDebug(&text) << properties;
    return text;
}

QString pictureOf(const QTextDocument &document, const QTextCharFormat &format)
{
    const QUrl name(format.toImageFormat().name());
    const QImage image = document.resource(QTextDocument::ImageResource, name).value<QImage>();
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    return u"picture %1x%2 pixels %3"_s.arg(plain.width())
        .arg(plain.height())
        .arg(qHash(QByteArrayView(plain.constBits(), plain.sizeInBytes())));
}

QString placeOf(const QTextBlock &block)
{
    QString text;
    if (const QTextList *list = block.textList())
        text = u"list %1 %2 item %3 "_s.arg(list->format().style())
                   .arg(list->format().indent())
                   .arg(list->itemNumber(block));
    if (QTextTable *table = QTextCursor(block).currentTable()) {
        const QTextTableCell cell = table->cellAt(block.position());
        text += u"cell %1,%2 of %3,%4 "_s.arg(cell.row())
                    .arg(cell.column())
                    .arg(table->rows())
                    .arg(table->columns());
    }
    return text;
}

void insert(QTextDocument &document, const QString &text, const QTextCharFormat &format = {})
{
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text, format);
}

void newBlock(QTextDocument &document, const QTextBlockFormat &block, const QTextCharFormat &format = {})
{
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock(block, format);
}

void plainLines(QTextDocument &document)
{
    document.setPlainText(
        u"Called the court; hearing {moved} to \\ 3 p.m.\n\n\ttab and  two blanks \nlast"_s);
}

void oddCharacters(QTextDocument &document)
{
    document.setPlainText(
        u"Zürich – “quoted” €5 žlutý кот 日本 \U0001F600 soft\u00ADhy non\u2011break hard\u00A0blank \u200B\u0007\u001F\u007F\u0085"_s);
    insert(document, u"line\u2028break"_s);
}

void emptyLines(QTextDocument &document)
{
    document.setPlainText(u"\n\n"_s);
}

QTextCharFormat characterFormat(int which)
{
    QTextCharFormat format;
    switch (which) {
    case 0:
        format.setFontWeight(QFont::Bold);
        break;
    case 1:
        format.setFontWeight(QFont::Normal);
        break;
    case 2:
        format.setFontItalic(true);
        break;
    case 3:
        format.setFontItalic(false);
        break;
    case 4:
        format.setFontUnderline(true);
        break;
    case 5:
        format.setFontUnderline(false);
        break;
    case 6:
        format.setFontStrikeOut(true);
        break;
    case 7:
        format.setForeground(QColor(1, 2, 253));
        break;
    case 8:
        format.setForeground(QColor(Qt::black));
        break;
    case 9:
        format.setBackground(QColor(Qt::yellow));
        break;
    case 10:
        format.setFontFamilies({u"Times New Roman"_s});
        break;
    case 11:
        format.setFontFamilies({u"Ärgerliche; Schrift {1}"_s.remove(u';')});
        break;
    case 12:
        format.setFontPointSize(10.5);
        break;
    case 13:
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        break;
    case 14:
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        break;
    case 15:
        format.setVerticalAlignment(QTextCharFormat::AlignNormal);
        break;
    case 16:
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        break;
    case 17:
        format.setUnderlineStyle(QTextCharFormat::DashUnderline);
        break;
    case 18:
        format.setFontCapitalization(QFont::SmallCaps);
        break;
    case 19:
        format.setFontCapitalization(QFont::AllUppercase);
        break;
    case 20:
        format.setAnchor(true);
        format.setAnchorHref(u"https://example.org/a?b={c}&d=ü"_s);
        format.setFontUnderline(true);
        break;
    case 21: // all that differs at once, and the default font's own family and size said in so many words
        format = characterFormat(0);
        format.setFontItalic(true);
        format.setFontFamilies({u"Sans"_s});
        format.setFontPointSize(9);
        format.setForeground(QColor(Qt::red));
        format.setBackground(QColor(Qt::red));
        break;
    default:
        break;
    }
    return format;
}

void characters(QTextDocument &document)
{
    for (int i = 0; i <= 22; ++i)
        insert(document, u"%1 text "_s.arg(i), characterFormat(i));
}

void emptyBlocksWithFormat(QTextDocument &document)
{
    for (int i = 0; i <= 19; ++i)
        newBlock(document, {}, characterFormat(i));
}

void paragraphs(QTextDocument &document)
{
    QTextBlockFormat format;
    const auto add = [&](const char *text) {
        newBlock(document, format);
        insert(document, QString::fromLatin1(text));
        format = {};
    };
    for (const Qt::Alignment alignment :
         {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter, Qt::AlignJustify}) {
        format.setAlignment(alignment);
        add("aligned");
    }
    format.setLeftMargin(48);
    format.setTextIndent(-24);
    format.setRightMargin(12.2);
    add("margins");
    format.setIndent(2);
    format.setLeftMargin(7);
    add("indent");
    format.setIndent(1);
    format.setTopMargin(6);
    format.setBottomMargin(9);
    add("spacing");
    format.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
    add("one and a half");
    format.setLineHeight(30, QTextBlockFormat::FixedHeight);
    add("fixed");
    format.setLineHeight(30, QTextBlockFormat::MinimumHeight);
    add("at least");
    format.setTabPositions({QTextOption::Tab(100, QTextOption::LeftTab),
                            QTextOption::Tab(200, QTextOption::RightTab),
                            QTextOption::Tab(300, QTextOption::CenterTab)});
    add("a\tb\tc\td");
    format.setBackground(QColor(200, 220, 240));
    format.setNonBreakableLines(true);
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    format.setLayoutDirection(Qt::RightToLeft);
    add("more");
}

void lists(QTextDocument &document)
{
    QTextCursor cursor(&document);
    cursor.insertText(u"before"_s);
    for (const auto style :
         {QTextListFormat::ListDisc, QTextListFormat::ListCircle, QTextListFormat::ListSquare,
          QTextListFormat::ListDecimal, QTextListFormat::ListLowerAlpha, QTextListFormat::ListUpperAlpha,
          QTextListFormat::ListLowerRoman, QTextListFormat::ListUpperRoman, QTextListFormat::ListDecimal}) {
        QTextListFormat outer;
        outer.setStyle(style);
        outer.setIndent(1);
        cursor.insertBlock(QTextBlockFormat());
        QTextList *list = cursor.createList(outer);
        cursor.insertText(u"one"_s);
        cursor.insertBlock();
        cursor.insertText(u"two"_s);
        QTextListFormat inner;
        inner.setStyle(QTextListFormat::ListLowerAlpha);
        inner.setIndent(2);
        cursor.insertBlock();
        cursor.createList(inner);
        cursor.insertText(u"two a"_s);
        cursor.insertBlock();
        list->add(cursor.block());
        cursor.insertText(u"three"_s, characterFormat(0));
    }
    cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    cursor.insertText(u"behind"_s);
}

void tables(QTextDocument &document)
{
    QTextCursor cursor(&document);
    for (int round = 0; round < 2; ++round) {
        QTextTable *table = cursor.insertTable(2, 3);
        for (int i = 0; i < 5; ++i)
            table->cellAt(i / 3, i % 3)
                .firstCursorPosition()
                .insertText(u"cell %1\nsecond"_s.arg(i), characterFormat(i));
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(u"behind the table"_s);
    }
    cursor.insertTable(1, 1);
}

void pictures(QTextDocument &document)
{
    document.addResource(QTextDocument::ImageResource, QUrl(u"pasted"_s), testImage(40, 30));
    document.addResource(QTextDocument::ImageResource, QUrl(u"clear"_s), [] {
        QImage image = testImage(8, 8);
        image.setPixelColor(1, 1, QColor(255, 0, 0, 100));
        return image;
    }());
    QTextCursor cursor(&document);
    cursor.insertText(u"see "_s);
    QTextImageFormat format;
    format.setName(u"pasted"_s);
    format.setWidth(20);
    format.setHeight(15);
    cursor.insertImage(format);
    cursor.insertImage(format);
    cursor.insertText(u" and "_s, QTextCharFormat());
    format.setWidth(123.4);
    format.setHeight(99);
    cursor.insertImage(format);
    format.setName(u"clear"_s);
    format.setWidth(8);
    format.setHeight(8);
    cursor.insertBlock();
    cursor.insertImage(format);
}

} // namespace

QStringList describe(const QTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        lines += u"block "_s + placeOf(block) + propertiesOf(block.blockFormat());
        if (block.begin().atEnd())
            lines += u"  empty "_s + propertiesOf(block.charFormat());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            lines += u"  \"%1\" %2"_s.arg(it.fragment().text(), propertiesOf(format));
            if (format.isImageFormat())
                lines += u"    "_s + pictureOf(document, format);
        }
    }
    return lines;
}

void expectSame(const QTextDocument &actual, const QTextDocument &expected)
{
    const QStringList a = describe(actual), b = describe(expected);
    for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i)
        ASSERT_EQ(utf8(a.value(i)), utf8(b.value(i))) << "line " << i;
}

std::string utf8(const QString &text)
{
    return text.toStdString();
}

QImage testImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 5 % 256, y * 7 % 256, (x + y) % 256));
    }
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

const std::vector<Sample> &samples()
{
    static const std::vector<Sample> all{
        {"nothing", [](QTextDocument &) {}},
        {"plain lines", plainLines},
        {"odd characters", oddCharacters},
        {"empty lines", emptyLines},
        {"character formats", characters},
        {"formats of empty paragraphs", emptyBlocksWithFormat},
        {"paragraph formats", paragraphs},
        {"lists", lists},
        {"tables", tables},
        {"pictures", pictures},
    };
    return all;
}

} // namespace vardelin::test
