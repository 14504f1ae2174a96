#include "platform/report/PdfFont.h"

#include "platform/report/PdfFile.h"
#include "platform/report/TrueTypeSubset.h"

#include <QPainterPath>
#include <algorithm>

namespace vardelin {

namespace {

constexpr std::size_t kKnown = 0x300;   // characters whose glyphs are kept at hand
constexpr std::size_t kMeanings = 100;  // at most in one list
constexpr double kUnits = 1000;         // of a font's measures, to its size
constexpr int kDrawn = 256;             // glyphs of a font whose outlines are drawings
constexpr const char kTag[] = "REPORT"; // six letters: not the whole face

QByteArray number(qsizetype value)
{
    return QByteArray::number(static_cast<qlonglong>(value));
}

QByteArray hex(int code, int digits)
{
    return '<' + QByteArray::number(code, 16).rightJustified(digits, '0') + '>';
}

QByteArray postScriptName(const QRawFont &face)
{
    QByteArray name = QByteArray(kTag) + '+';
    for (const QChar letter : face.familyName() + u'-' + face.styleName())
        if (letter.isLetterOrNumber() && letter.unicode() < 0x80)
            name += static_cast<char>(letter.unicode());
    return name;
}

// A TrueType face whose outlines are those in the file, and not blended from them.
bool isPlain(const QRawFont &face)
{
    return face.fontTable("fvar").isEmpty() && !trueTypeSubset(face, {}).isEmpty();
}

void appendByte(QByteArray &content, char byte)
{
    if (byte == '\r') { // by itself it would be read as a line feed
        content += "\\r";
        return;
    }
    if (byte == '(' || byte == ')' || byte == '\\')
        content += '\\';
    content += byte;
}

} // namespace

PdfFont::PdfFont(QRawFont face, QByteArray name, bool bold)
    : m_face(std::move(face)), m_name(std::move(name)), m_trueType(isPlain(m_face)),
      m_thickened(bold && m_face.weight() < QFont::DemiBold), m_known(kKnown)
{
    m_face.setPixelSize(m_face.unitsPerEm());
}

PdfFont::Use &PdfFont::taken(quint32 glyph)
{
    return m_used.try_emplace(glyph, Use{static_cast<int>(m_used.size())}).first->second;
}

quint32 PdfFont::find(QChar letter)
{
    const quint32 glyph = m_face.glyphIndexesForString(letter).value(0);
    if (glyph == 0)
        return 0;
    QString &text = taken(glyph).text;
    if (text.isEmpty())
        text = letter;
    if (letter.unicode() < m_known.size())
        m_known[letter.unicode()] = glyph;
    return glyph;
}

void PdfFont::append(QByteArray &content, quint32 glyph) const
{
    if (!m_trueType)
        return appendByte(content, static_cast<char>(m_used.at(glyph).number % kDrawn));
    appendByte(content, static_cast<char>(glyph >> 8));
    appendByte(content, static_cast<char>(glyph & 0xFF));
}

QByteArray PdfFont::nameFor(quint32 glyph) const
{
    return m_trueType ? m_name : m_name + 'x' + number(m_used.at(glyph).number / kDrawn);
}

double PdfFont::share(double design) const
{
    return design * kUnits / m_face.unitsPerEm();
}

double PdfFont::advance(quint32 glyph) const
{
    return m_face.advancesForGlyphIndexes({glyph}).value(0).x();
}

// What the codes of a font of the file stand for.
QByteArray PdfFont::meaning(int part) const
{
    const int digits = m_trueType ? 4 : 2;
    std::vector<QByteArray> lines;
    for (const auto &[glyph, use] : m_used)
        if (!use.text.isEmpty() && (m_trueType || use.number / kDrawn == part))
            lines.push_back(hex(m_trueType ? static_cast<int>(glyph) : use.number % kDrawn, digits) + '<' +
                            pdfText(use.text).mid(5) + '\n'); // without the mark of its order
    QByteArray map = "/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n/CMapType 2 def\n"
                     "/CMapName/Adobe-Identity-UCS def\n"
                     "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
                     "1 begincodespacerange " +
                     hex(0, digits) + '<' + QByteArray(digits, 'f') + "> endcodespacerange\n";
    for (std::size_t from = 0; from < lines.size(); from += kMeanings) {
        const std::size_t to = std::min(lines.size(), from + kMeanings);
        map += number(static_cast<qsizetype>(to - from)) + " beginbfchar\n";
        for (std::size_t i = from; i < to; ++i)
            map += lines[i];
        map += "endbfchar\n";
    }
    return map + "endcmap CMapName currentdict/CMap defineresource pop end end\n";
}

int PdfFont::writeMeaning(PdfFile &file, int part) const
{
    const int object = file.newObject();
    file.writeStream(object, {}, meaning(part));
    return object;
}

int PdfFont::writeDescriptor(PdfFile &file, const QByteArray &name) const
{
    std::set<quint32> glyphs;
    for (const auto &[glyph, use] : m_used)
        glyphs.insert(glyph);
    const QByteArray subset = trueTypeSubset(m_face, std::move(glyphs));
    const int program = file.newObject(), descriptor = file.newObject();
    file.writeStream(program, "/Length1 " + number(subset.size()), subset);
    const QByteArray ascent = pdfNumber(share(m_face.ascent())),
                     descent = pdfNumber(-share(m_face.descent()));
    file.write(descriptor, "<</Type/FontDescriptor/FontName/" + name +
                               "/Flags 4/ItalicAngle 0/StemV 80/FontBBox[0 " + descent + ' ' +
                               pdfNumber(share(m_face.maxCharWidth())) + ' ' + ascent + "]/Ascent " + ascent +
                               "/Descent " + descent + "/CapHeight " + pdfNumber(share(m_face.capHeight())) +
                               "/FontFile2 " + pdfReference(program) + ">>");
    return descriptor;
}

int PdfFont::writeTrueType(PdfFile &file) const
{
    QByteArray widths;
    for (const auto &[glyph, use] : m_used)
        widths += number(glyph) + '[' + pdfNumber(share(advance(glyph))) + ']';
    const QByteArray name = postScriptName(m_face);
    const int descriptor = writeDescriptor(file, name), meanings = writeMeaning(file, 0);
    const int glyphs = file.newObject(), font = file.newObject();
    file.write(glyphs,
               "<</Type/Font/Subtype/CIDFontType2/CIDToGIDMap/Identity/BaseFont/" + name +
                   "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                   pdfReference(descriptor) + "/W[" + widths + "]>>");
    file.write(font, "<</Type/Font/Subtype/Type0/BaseFont/" + name + "/Encoding/Identity-H/DescendantFonts[" +
                         pdfReference(glyphs) + "]/ToUnicode " + pdfReference(meanings) + ">>");
    return font;
}

// What draws a glyph, in units of the design.
QByteArray PdfFont::drawing(quint32 glyph) const
{
    const QPainterPath path = m_face.pathForGlyph(glyph);
    const QRectF box = path.controlPointRect();
    QByteArray words;
    const auto add = [&words](double x, double y) { words += pdfNumber(x) + ' ' + pdfNumber(-y) + ' '; };
    add(advance(glyph), 0);
    add(box.left(), box.bottom());
    add(box.right(), box.top());
    words += "d1\n";
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        add(element.x, element.y);
        if (element.isMoveTo())
            words += "m\n";
        else if (element.isLineTo())
            words += "l\n";
        else if (element.type == QPainterPath::CurveToDataElement &&
                 path.elementAt(i - 1).type == QPainterPath::CurveToDataElement)
            words += "c\n"; // the last of three points
    }
    return words + "f\n";
}

int PdfFont::writeDrawn(PdfFile &file, int part) const
{
    QByteArray drawings, names;
    std::map<int, QByteArray> widths;
    for (const auto &[glyph, use] : m_used) {
        if (use.number / kDrawn != part)
            continue;
        const int drawn = file.newObject(), code = use.number % kDrawn;
        file.writeStream(drawn, {}, drawing(glyph));
        drawings += "/g" + number(code) + ' ' + pdfReference(drawn);
        widths[code] = pdfNumber(advance(glyph)) + ' ';
    }
    QByteArray all;
    for (const auto &[code, width] : widths) {
        names += "/g" + number(code);
        all += width;
    }
    const int meanings = writeMeaning(file, part), font = file.newObject();
    const QByteArray unit = QByteArray::number(1 / m_face.unitsPerEm(), 'f', 8);
    file.write(font, "<</Type/Font/Subtype/Type3/FontBBox[0 0 0 0]/FontMatrix[" + unit + " 0 0 " + unit +
                         " 0 0]/CharProcs<<" + drawings + ">>/Encoding<</Type/Encoding/Differences[0" +
                         names + "]>>/FirstChar 0/LastChar " +
                         number(static_cast<qsizetype>(widths.size()) - 1) + "/Widths[" + all +
                         "]/Resources<<>>/ToUnicode " + pdfReference(meanings) + ">>");
    return font;
}

QByteArray PdfFont::write(PdfFile &file) const
{
    if (m_trueType)
        return '/' + m_name + ' ' + pdfReference(writeTrueType(file));
    QByteArray entries;
    for (int part = 0; part * kDrawn < static_cast<int>(m_used.size()); ++part)
        entries += '/' + m_name + 'x' + number(part) + ' ' + pdfReference(writeDrawn(file, part));
    return entries;
}

} // namespace vardelin
