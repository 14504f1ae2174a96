#include "platform/rich/RtfWriter.h"
#include "platform/rich/RtfContent.h"
#include "platform/rich/RtfPicture.h"

#include <QTextList>
#include <algorithm>
#include <utility>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr int kBulletIndent = 360; // twips for each level
constexpr int kIndentWidth = 40;   // pixels for each QTextBlockFormat::indent() level
constexpr int kTableWidth = 9000;  // twips

QByteArray number(const char *word, int value)
{
    return word + QByteArray::number(value);
}

QByteArray number(const char *word, double pixels)
{
    return number(word, qRound(pixels * kTwipsPerPixel));
}

QByteArray flag(const char *word, bool on)
{
    return on ? QByteArray(word) : QByteArray(word) + '0';
}

QByteArray unicodeEscape(char16_t c)
{
    return "\\u" + QByteArray::number(int(qint16(c))) + '?';
}

void appendEscaped(QByteArray &rtf, char16_t c)
{
    switch (c) {
    case u'\\':
    case u'{':
    case u'}':
        rtf += '\\';
        rtf += char(c);
        break;
    case u'\t':
        rtf += "\\tab ";
        break;
    case u'\u2028':
        rtf += "\\line ";
        break;
    case u'\u00A0':
        rtf += "\\~";
        break;
    case u'\u00AD':
        rtf += "\\-";
        break;
    case u'\u2011':
        rtf += "\\_";
        break;
    default:
        if (c >= 0x20 && c < 0x7F)
            rtf += char(c);
        else
            rtf += unicodeEscape(c);
        break;
    }
}

QByteArray alignmentWord(Qt::Alignment alignment)
{
    switch ((alignment & Qt::AlignHorizontal_Mask).toInt()) {
    case Qt::AlignRight:
    case Qt::AlignTrailing | Qt::AlignAbsolute:
        return "\\qr";
    case Qt::AlignHCenter:
        return "\\qc";
    case Qt::AlignJustify:
        return "\\qj";
    default:
        return "\\ql";
    }
}

struct BulletWords
{
    QByteArray level; // what numbers or marks the list has
    QByteArray mark;  // {\pntxtb ...}: the mark, or {\pntxta ...}: what follows the number
};

BulletWords bulletWords(QTextListFormat::Style style)
{
    switch (style) {
    case QTextListFormat::ListCircle:
        return {"\\pnlvlblt", "{\\pntxtb o}"};
    case QTextListFormat::ListSquare:
        return {"\\pnlvlblt", "{\\pntxtb\\u9642?}"};
    case QTextListFormat::ListDecimal:
        return {"\\pnlvlbody\\pndec", "{\\pntxta .}"};
    case QTextListFormat::ListLowerAlpha:
        return {"\\pnlvlbody\\pnlcltr", "{\\pntxta .}"};
    case QTextListFormat::ListUpperAlpha:
        return {"\\pnlvlbody\\pnucltr", "{\\pntxta .}"};
    case QTextListFormat::ListLowerRoman:
        return {"\\pnlvlbody\\pnlcrm", "{\\pntxta .}"};
    case QTextListFormat::ListUpperRoman:
        return {"\\pnlvlbody\\pnucrm", "{\\pntxta .}"};
    default:
        return {"\\pnlvlblt", "{\\pntxtb\\u8226?}"};
    }
}

QByteArray shownMark(const QTextBlock &block, const QTextListFormat &format)
{
    switch (format.style()) {
    case QTextListFormat::ListCircle:
        return "o";
    case QTextListFormat::ListSquare:
        return unicodeEscape(0x25AA);
    case QTextListFormat::ListDecimal:
    case QTextListFormat::ListLowerAlpha:
    case QTextListFormat::ListUpperAlpha:
    case QTextListFormat::ListLowerRoman:
    case QTextListFormat::ListUpperRoman:
        return escapedRtf(block.textList()->itemText(block));
    default:
        return unicodeEscape(0x2022);
    }
}

} // namespace

QByteArray escapedRtf(QStringView text)
{
    QByteArray rtf;
    rtf.reserve(text.size());
    for (const QChar c : text)
        appendEscaped(rtf, c.unicode());
    return rtf;
}

QByteArray RtfWriter::write()
{
    for (QTextBlock at = m_document.begin(); at.isValid(); at = at.next())
        block(at);
    return header() + m_body + "}\r\n";
}

int RtfWriter::defaultHalfPoints() const
{
    const QFont font = m_document.defaultFont();
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 0.75;
    return std::max(2, qRound(points * 2));
}

QByteArray RtfWriter::header() const
{
    const auto font = [](qsizetype index, const QString &name) {
        return "{\\f" + QByteArray::number(index) + "\\fnil\\fcharset0 " + escapedRtf(name) + ";}";
    };
    QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl" +
                     font(0, cleanName(m_document.defaultFont().family(), u';', kLongestFontName));
    for (qsizetype i = 0; i < m_fonts.size(); ++i)
        rtf += font(i + 1, m_fonts[i]);
    rtf += "}\r\n";
    if (!m_colours.empty()) {
        rtf += "{\\colortbl ;";
        for (const QRgb colour : m_colours)
            rtf += number("\\red", qRed(colour)) + number("\\green", qGreen(colour)) +
                   number("\\blue", qBlue(colour)) + ';';
        rtf += "}\r\n";
    }
    return rtf + "{\\*\\generator Vardelin;}\\viewkind4\r\n";
}

int RtfWriter::fontNumber(const QString &family)
{
    const qsizetype known = m_fonts.indexOf(family);
    if (known >= 0)
        return int(known) + 1;
    m_fonts.append(family);
    return int(m_fonts.size());
}

int RtfWriter::colourNumber(const QColor &colour)
{
    const QRgb rgb = colour.rgb() | 0xFF000000u;
    const auto known = std::find(m_colours.begin(), m_colours.end(), rgb);
    if (known != m_colours.end())
        return int(known - m_colours.begin()) + 1;
    m_colours.push_back(rgb);
    return int(m_colours.size());
}

void RtfWriter::block(const QTextBlock &block)
{
    QTextTable *table = tableAt(block);
    if (table)
        enterCell(table, block);
    m_body += number("\\pard\\plain\\fs", defaultHalfPoints()) + "\\f0";
    if (table)
        m_body += "\\intbl";
    paragraphFormat(block.blockFormat(), block.textList() != nullptr);
    if (block.textList())
        bullet(block);
    else
        m_body += ' ';
    for (auto part = block.begin(); !part.atEnd(); ++part)
        fragment(part.fragment());
    endRun();

    const bool cellEnds = table && endsCell(table, block);
    const QByteArray ending = cellEnds ? "\\cell" : "\\par";
    // Only an empty paragraph's own format shows: typing goes on in it.
    const QByteArray words = block.begin().atEnd() ? characterWords(block.charFormat()) : QByteArray();
    m_body += words.isEmpty() ? ending + "\r\n" : '{' + words + ending + "}\r\n";
    if (cellEnds)
        leaveCell(table, block);
}

void RtfWriter::paragraphFormat(const QTextBlockFormat &format, bool inList)
{
    if (format.hasProperty(QTextFormat::BlockAlignment))
        m_body += alignmentWord(format.alignment());
    const int levels = inList ? 0 : format.indent();
    if (!inList && (levels > 0 || format.hasProperty(QTextFormat::BlockLeftMargin)))
        m_body += number("\\li", format.leftMargin() + levels * kIndentWidth);
    if (levels > 0)
        m_body += number("\\vdindent", levels);
    if (!inList && format.hasProperty(QTextFormat::TextIndent))
        m_body += number("\\fi", format.textIndent());
    if (format.hasProperty(QTextFormat::BlockRightMargin))
        m_body += number("\\ri", format.rightMargin());
    if (format.background().style() == Qt::SolidPattern)
        m_body += number("\\cbpat", colourNumber(format.background().color()));
    if (format.nonBreakableLines())
        m_body += "\\keep";
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
        m_body += "\\pagebb";
    if (format.hasProperty(QTextFormat::LayoutDirection))
        m_body += format.layoutDirection() == Qt::RightToLeft ? "\\rtlpar" : "\\ltrpar";
    spacing(format);
    tabs(format);
}

void RtfWriter::spacing(const QTextBlockFormat &format)
{
    if (format.hasProperty(QTextFormat::BlockTopMargin))
        m_body += number("\\sb", format.topMargin());
    if (format.hasProperty(QTextFormat::BlockBottomMargin))
        m_body += number("\\sa", format.bottomMargin());
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        m_body += number("\\sl", qRound(format.lineHeight() * 2.4)) + "\\slmult1";
        break;
    case QTextBlockFormat::FixedHeight:
        m_body += number("\\sl", -format.lineHeight()) + "\\slmult0";
        break;
    case QTextBlockFormat::MinimumHeight:
        m_body += number("\\sl", format.lineHeight()) + "\\slmult0";
        break;
    default:
        break;
    }
}

void RtfWriter::tabs(const QTextBlockFormat &format)
{
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        if (tab.type == QTextOption::RightTab)
            m_body += "\\tqr";
        else if (tab.type == QTextOption::CenterTab)
            m_body += "\\tqc";
        else if (tab.type == QTextOption::DelimiterTab)
            m_body += "\\tqdec";
        m_body += number("\\tx", tab.position);
    }
}

void RtfWriter::bullet(const QTextBlock &block)
{
    const QTextListFormat format = block.textList()->format();
    const BulletWords words = bulletWords(format.style());
    const int indent = std::clamp(format.indent(), 1, 40) * kBulletIndent;
    m_body += number("\\fi", -kBulletIndent) + number("\\li", indent + kBulletIndent);
    m_body += "{\\pntext " + shownMark(block, format) + "\\tab}{\\*\\pn" + words.level +
              number("\\pnindent", indent);
    if (m_startedLists.insert(block.textList()).second)
        m_body += "\\pnstart1";
    m_body += words.mark + '}';
}

void RtfWriter::fragment(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    if (format.isImageFormat()) {
        endRun();
        const QByteArray picture = pictureGroup(m_document, format.toImageFormat());
        for (qsizetype i = 0; i < fragment.text().size(); ++i)
            m_body += picture;
        return;
    }
    const QByteArray words = characterWords(format);
    const QString link = cleanName(format.anchorHref().replace(u'"', "%22"_L1), u'"', kLongestLink);
    if (words != m_run.words || link != m_run.link)
        endRun();
    m_run.words = words;
    m_run.link = link;
    m_run.text += fragment.text().remove(QChar::ObjectReplacementCharacter);
}

void RtfWriter::endRun()
{
    const Run run = std::exchange(m_run, {});
    if (run.text.isEmpty())
        return;
    QByteArray rtf = escapedRtf(run.text);
    if (!run.words.isEmpty())
        rtf = '{' + run.words + ' ' + rtf + '}';
    if (!run.link.isEmpty())
        rtf = "{\\field{\\*\\fldinst HYPERLINK \"" + escapedRtf(run.link) + "\"}{\\fldrslt" +
              (run.words.isEmpty() ? " " : "") + rtf + "}}";
    m_body += rtf;
}

QByteArray RtfWriter::fontWords(const QTextCharFormat &format)
{
    QByteArray words;
    const QString family = cleanName(format.fontFamilies().toStringList().value(0), u';', kLongestFontName);
    if (!family.isEmpty())
        words += number("\\f", fontNumber(family));
    if (format.hasProperty(QTextFormat::FontPointSize))
        words += number("\\fs", std::max(2, qRound(format.fontPointSize() * 2)));
    else if (format.hasProperty(QTextFormat::FontPixelSize))
        words += number("\\fs", std::max(2, qRound(format.doubleProperty(QTextFormat::FontPixelSize) * 1.5)));
    return words;
}

QByteArray RtfWriter::underlineWord(const QTextCharFormat &format) const
{
    if (!format.hasProperty(QTextFormat::TextUnderlineStyle))
        return {};
    switch (format.underlineStyle()) {
    case QTextCharFormat::SingleUnderline:
        return "\\ul";
    case QTextCharFormat::DashUnderline:
        return "\\uldash";
    case QTextCharFormat::DotLine:
        return "\\uld";
    case QTextCharFormat::DashDotLine:
        return "\\uldashd";
    case QTextCharFormat::DashDotDotLine:
        return "\\uldashdd";
    case QTextCharFormat::WaveUnderline:
        return "\\ulwave";
    default:
        return "\\ulnone";
    }
}

QByteArray RtfWriter::characterWords(const QTextCharFormat &format)
{
    QByteArray words = fontWords(format);
    if (format.hasProperty(QTextFormat::FontWeight))
        words += flag("\\b", format.fontWeight() >= QFont::DemiBold);
    if (format.hasProperty(QTextFormat::FontItalic))
        words += flag("\\i", format.fontItalic());
    words += underlineWord(format);
    if (format.hasProperty(QTextFormat::FontStrikeOut))
        words += flag("\\strike", format.fontStrikeOut());
    if (format.fontCapitalization() == QFont::AllUppercase)
        words += "\\caps";
    else if (format.fontCapitalization() == QFont::SmallCaps)
        words += "\\scaps";
    else if (format.hasProperty(QTextFormat::FontCapitalization))
        words += "\\caps0";
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        words += "\\super";
    else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript)
        words += "\\sub";
    else if (format.hasProperty(QTextFormat::TextVerticalAlignment))
        words += "\\nosupersub";
    if (format.foreground().style() == Qt::SolidPattern)
        words += number("\\cf", colourNumber(format.foreground().color()));
    if (format.background().style() == Qt::SolidPattern) {
        const QByteArray colour = QByteArray::number(colourNumber(format.background().color()));
        words += "\\chcbpat" + colour + "\\highlight" + colour;
    }
    return words;
}

QTextTable *RtfWriter::tableAt(const QTextBlock &block) const
{
    if (!block.isValid())
        return nullptr;
    QTextTable *outermost = nullptr;
    for (QTextFrame *frame = QTextCursor(block).currentFrame(); frame; frame = frame->parentFrame()) {
        if (auto *table = qobject_cast<QTextTable *>(frame))
            outermost = table;
    }
    return outermost;
}

bool RtfWriter::endsCell(const QTextTable *table, const QTextBlock &block) const
{
    const QTextBlock next = block.next();
    return tableAt(next) != table || table->cellAt(next.position()) != table->cellAt(block.position());
}

// Merged cells cover places of the grid that have no paragraph; these are written as empty cells.
void RtfWriter::enterCell(const QTextTable *table, const QTextBlock &block)
{
    const QTextTableCell cell = table->cellAt(block.position());
    if (m_table != table) {
        m_table = table;
        m_row = m_column = 0;
        rowStart(table->columns());
    }
    while (m_row < cell.row() || (m_row == cell.row() && m_column < cell.column())) {
        m_body += "\\pard\\intbl\\cell\r\n";
        nextCell();
    }
}

void RtfWriter::leaveCell(const QTextTable *table, const QTextBlock &block)
{
    nextCell();
    if (tableAt(block.next()) == table)
        return;
    while (m_row < table->rows()) {
        m_body += "\\pard\\intbl\\cell\r\n";
        nextCell();
    }
    m_table = nullptr;
}

void RtfWriter::nextCell()
{
    if (++m_column < m_table->columns())
        return;
    m_body += "\\row\r\n";
    m_column = 0;
    if (++m_row < m_table->rows())
        rowStart(m_table->columns());
}

void RtfWriter::rowStart(int columns)
{
    m_body += "\\trowd\\trgaph108\\trleft0";
    for (int column = 1; column <= columns; ++column) {
        for (const char *side : {"t", "l", "b", "r"})
            m_body += QByteArray("\\clbrdr") + side + "\\brdrs\\brdrw10";
        m_body += number("\\cellx", kTableWidth * column / columns);
    }
    m_body += "\r\n";
}

} // namespace vardelin
