// Which control word does what, and what those of characters, tables and groups do.
#include "platform/rich/RtfReader.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLargestFont = 3276; // half points
constexpr int kMostFallback = 8;   // characters; more would only hide text
constexpr int kBulletIndent = 360; // twips for each level, in what we write

std::string_view viewOf(QByteArrayView bytes)
{
    return {bytes.data(), size_t(bytes.size())};
}

} // namespace

struct RtfReader::Tables
{
    std::unordered_map<std::string_view, char16_t> characters;
    std::unordered_map<std::string_view, Destination> destinations;
    std::unordered_map<std::string_view, Handler> handlers;
    std::unordered_map<std::string_view, QTextCharFormat::UnderlineStyle> underlines;
    std::unordered_map<std::string_view, QTextListFormat::Style> bullets;
    std::unordered_map<std::string_view, RtfPicture::Kind> pictures;
};

const RtfReader::Tables &RtfReader::tables()
{
    using D = Destination;
    using R = RtfReader;
    using K = RtfPicture::Kind;
    static const Tables tables{
        {{"tab", u'\t'},         {"line", u'\u2028'},    {"lbr", u'\u2028'},       {"softline", u'\u2028'},
         {"nestcell", u'\t'},    {"nestrow", u'\u2028'}, {"emdash", u'\u2014'},    {"endash", u'\u2013'},
         {"lquote", u'\u2018'},  {"rquote", u'\u2019'},  {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'},
         {"bullet", u'\u2022'},  {"emspace", u'\u2003'}, {"enspace", u'\u2002'},   {"qmspace", u'\u2005'},
         {"zwbo", u'\u200B'},    {"zwnbo", u'\u2060'},   {"zwj", u'\u200D'},       {"zwnj", u'\u200C'},
         {"ltrmark", u'\u200E'}, {"rtlmark", u'\u200F'}},

        {{"fonttbl", D::Fonts},
         {"colortbl", D::Colours},
         {"generator", D::Generator},
         {"pict", D::Picture},
         {"shppict", D::Same},
         {"nonshppict", D::Skip},
         {"picprop", D::Skip},
         {"blipuid", D::Skip},
         {"bliptag", D::Same},
         {"fldinst", D::Instruction},
         {"fldrslt", D::Same},
         {"result", D::Same},
         {"objdata", D::Skip},
         {"objclass", D::Skip},
         {"objname", D::Skip},
         {"shpinst", D::PicturesOnly},
         {"sp", D::PicturesOnly},
         {"shptxt", D::Body},
         {"shprslt", D::Skip},
         {"upr", D::Ansi},
         {"pn", D::Bullets},
         {"pntxtb", D::BulletText},
         {"pntxta", D::Skip},
         {"pntext", D::Skip},
         {"stylesheet", D::Skip},
         {"info", D::Skip},
         {"header", D::Skip},
         {"headerl", D::Skip},
         {"headerr", D::Skip},
         {"headerf", D::Skip},
         {"footer", D::Skip},
         {"footerl", D::Skip},
         {"footerr", D::Skip},
         {"footerf", D::Skip},
         {"ftnsep", D::Skip},
         {"ftnsepc", D::Skip},
         {"ftncn", D::Skip},
         {"aftnsep", D::Skip},
         {"aftnsepc", D::Skip},
         {"aftncn", D::Skip},
         {"filetbl", D::Skip},
         {"revtbl", D::Skip},
         {"listtable", D::Skip},
         {"listoverridetable", D::Skip},
         {"falt", D::Skip},
         {"panose", D::Skip},
         {"fontemb", D::Skip},
         {"fontfile", D::Skip},
         {"xe", D::Skip},
         {"tc", D::Skip},
         {"bkmkstart", D::Skip},
         {"bkmkend", D::Skip},
         {"annotation", D::Skip},
         {"atnid", D::Skip},
         {"atnauthor", D::Skip},
         {"nesttableprops", D::Skip},
         {"nonesttables", D::Skip},
         {"private", D::Skip},
         {"template", D::Skip},
         {"listtext", D::Same},
         {"footnote", D::Body}},

        {{"u", &R::unicode},
         {"uc", &R::setFallback},
         {"ansi", &R::setPage},
         {"mac", &R::setPage},
         {"pc", &R::setPage},
         {"pca", &R::setPage},
         {"ansicpg", &R::setPage},
         {"deff", &R::setDefaultFont},
         {"f", &R::setFont},
         {"fs", &R::setSize},
         {"cf", &R::setColour},
         {"cb", &R::setBackground},
         {"highlight", &R::setBackground},
         {"chcbpat", &R::setBackground},
         {"cbpat", &R::setParagraphBackground},
         {"b", &R::setWeight},
         {"i", &R::setItalic},
         {"strike", &R::setStrike},
         {"striked", &R::setStrike},
         {"caps", &R::setCapitals},
         {"scaps", &R::setCapitals},
         {"super", &R::setBaseline},
         {"sub", &R::setBaseline},
         {"nosupersub", &R::setBaseline},
         {"up", &R::setRaised},
         {"dn", &R::setLowered},
         {"plain", &R::plain},
         {"pard", &R::paragraphDefaults},
         {"ql", &R::setAlignment},
         {"qr", &R::setAlignment},
         {"qc", &R::setAlignment},
         {"qj", &R::setAlignment},
         {"qd", &R::setAlignment},
         {"li", &R::setIndent},
         {"ri", &R::setIndent},
         {"fi", &R::setIndent},
         {"sb", &R::setIndent},
         {"sa", &R::setIndent},
         {"vdindent", &R::setOwnIndent},
         {"sl", &R::setSpacing},
         {"slmult", &R::setSpacing},
         {"tx", &R::setTab},
         {"tqr", &R::setTab},
         {"tqc", &R::setTab},
         {"tqdec", &R::setTab},
         {"rtlpar", &R::setFlow},
         {"ltrpar", &R::setFlow},
         {"keep", &R::setFlow},
         {"pagebb", &R::setFlow},
         {"intbl", &R::setInTable},
         {"par", &R::endOfParagraph},
         {"cell", &R::endOfCell},
         {"row", &R::endOfRow},
         {"page", &R::endOfPage},
         {"sect", &R::endOfPage},
         {"column", &R::endOfPage},
         {"field", &R::beginField}},

        {{"ul", QTextCharFormat::SingleUnderline},
         {"uldb", QTextCharFormat::SingleUnderline},
         {"ulth", QTextCharFormat::SingleUnderline},
         {"ulw", QTextCharFormat::SingleUnderline},
         {"uldash", QTextCharFormat::DashUnderline},
         {"uld", QTextCharFormat::DotLine},
         {"uldashd", QTextCharFormat::DashDotLine},
         {"uldashdd", QTextCharFormat::DashDotDotLine},
         {"ulwave", QTextCharFormat::WaveUnderline},
         {"ulnone", QTextCharFormat::NoUnderline}},

        {{"pnlvlblt", QTextListFormat::ListDisc},
         {"pndec", QTextListFormat::ListDecimal},
         {"pnlcltr", QTextListFormat::ListLowerAlpha},
         {"pnucltr", QTextListFormat::ListUpperAlpha},
         {"pnlcrm", QTextListFormat::ListLowerRoman},
         {"pnucrm", QTextListFormat::ListUpperRoman}},

        {{"pngblip", K::Png},
         {"jpegblip", K::Jpeg},
         {"dibitmap", K::Dib},
         {"wmetafile", K::Wmf},
         {"emfblip", K::Emf},
         {"wbitmap", K::Unknown},
         {"macpict", K::Unknown},
         {"pmmetafile", K::Unknown}},
    };
    return tables;
}

bool RtfReader::isCharacter(QByteArrayView word)
{
    return tables().characters.contains(viewOf(word));
}

void RtfReader::word(const RtfToken &token)
{
    const bool optional = std::exchange(m_optional, false);
    const Destination now = state().destination;
    if (now == Destination::Ansi && token.text == "ud")
        state().destination = Destination::Body;
    if (now == Destination::Skip || now == Destination::Ansi)
        return;
    if (now == Destination::Object) {
        objectWord(token);
        return;
    }
    if (now == Destination::Body && token.text == "object" && m_groupStarts && m_object.depth == 0 &&
        m_beyond == 0) {
        beginObject();
        return;
    }
    const auto found = tables().destinations.find(viewOf(token.text));
    if (found != tables().destinations.end() && (m_groupStarts || found->second == Destination::Picture)) {
        begin(found->second);
        if (token.text == "fldrslt")
            beginResult();
    } else if (optional && m_groupStarts) {
        begin(Destination::Skip);
    } else if (token.text == "u" || token.text == "uc") {
        (this->*tables().handlers.at(viewOf(token.text)))(token);
    } else if (now == Destination::Fonts) {
        fontWord(token);
    } else if (now == Destination::Colours) {
        colourWord(token);
    } else if (now == Destination::Picture) {
        pictureWord(token);
    } else if (now == Destination::Bullets) {
        bulletWord(token);
    } else if (now == Destination::Body) {
        bodyWord(token);
    }
}

// The group of the result stands directly in that of the object.
void RtfReader::objectWord(const RtfToken &token)
{
    if (token.text != "result" || !m_groupStarts || m_object.inResult || m_beyond > 0 ||
        m_states.size() != m_object.depth + 1)
        return;
    m_tokenAt = m_groupAt;
    keepPieceOfObject();
    m_object.inResult = true;
    begin(Destination::Body);
}

void RtfReader::bodyWord(const RtfToken &token)
{
    const std::string_view name = viewOf(token.text);
    const Tables &all = tables();
    if (const auto handler = all.handlers.find(name); handler != all.handlers.end())
        (this->*handler->second)(token);
    else if (const auto character = all.characters.find(name); character != all.characters.end())
        text(QString(QChar(character->second)));
    else if (all.underlines.contains(name))
        setUnderline(token);
}

void RtfReader::fontWord(const RtfToken &token)
{
    if (token.text == "f") {
        m_currentFont = token.parameter;
        m_fonts[m_currentFont] = {};
        return;
    }
    const auto font = m_fonts.find(m_currentFont);
    if (font == m_fonts.end())
        return;
    if (token.text == "fcharset")
        font->second.page = codePageOfCharset(token.parameter);
    else if (token.text == "cpg")
        font->second.page = token.parameter;
}

void RtfReader::colourWord(const RtfToken &token)
{
    if (token.text != "red" && token.text != "green" && token.text != "blue")
        return;
    if (!m_colour.isValid())
        m_colour = QColor(0, 0, 0);
    const int value = std::clamp(token.parameter, 0, 255);
    if (token.text == "red")
        m_colour.setRed(value);
    else if (token.text == "green")
        m_colour.setGreen(value);
    else
        m_colour.setBlue(value);
}

void RtfReader::pictureWord(const RtfToken &token)
{
    const QByteArrayView name = token.text;
    if (name == "picwgoal") {
        m_picture.goalWidth = token.parameter;
        return;
    }
    if (name == "pichgoal") {
        m_picture.goalHeight = token.parameter;
        return;
    }
    if (name == "picscalex" || name == "picscaley") {
        (name == "picscalex" ? m_picture.scaleX : m_picture.scaleY) = token.parameter;
        return;
    }
    const auto kind = tables().pictures.find(viewOf(name));
    if (kind != tables().pictures.end())
        m_picture.kind = kind->second;
    else if (name == "picw")
        m_picture.width = token.parameter;
    else if (name == "pich")
        m_picture.height = token.parameter;
    else if (!name.startsWith("wbm") && !name.startsWith("piccrop"))
        return;
    m_picture.words += '\\' + name.toByteArray();
    if (token.hasParameter)
        m_picture.words += QByteArray::number(token.parameter);
}

void RtfReader::bulletWord(const RtfToken &token)
{
    const auto style = tables().bullets.find(viewOf(token.text));
    if (style != tables().bullets.end()) {
        m_bullets.style = style->second;
        m_bulletsFound = true;
    } else if (m_ours && token.text == "pnindent") {
        m_bullets.indent = std::clamp(token.parameter / kBulletIndent, 1, 40);
    } else if (m_ours && token.text == "pnstart") {
        m_bullets.starts = true;
    }
}

void RtfReader::unicode(const RtfToken &token)
{
    const int code = token.parameter < 0 ? token.parameter + 0x10000 : token.parameter;
    if (code > 0 && code <= 0xFFFF)
        text(QString(QChar(char16_t(code))));
    else if (code > 0xFFFF && code <= 0x10FFFF) {
        const char32_t whole = char32_t(code);
        text(QString::fromUcs4(&whole, 1));
    }
    m_passOver = state().fallback;
}

void RtfReader::setFallback(const RtfToken &token)
{
    state().fallback = std::clamp(token.hasParameter ? token.parameter : 1, 0, kMostFallback);
}

void RtfReader::setPage(const RtfToken &token)
{
    if (token.text == "ansicpg")
        m_documentPage = token.parameter;
    else if (token.text == "mac")
        m_documentPage = 10000;
    else if (token.text == "pc")
        m_documentPage = 437;
    else if (token.text == "pca")
        m_documentPage = 850;
}

void RtfReader::setDefaultFont(const RtfToken &token)
{
    m_defaultFont = token.parameter;
    state().font = token.parameter; // for its code page; the face stays open until \plain or \f
}

void RtfReader::setFont(const RtfToken &token)
{
    state().font = token.parameter;
    if (m_ours && token.parameter == 0) { // stands for the document's own font
        state().character.clearProperty(QTextFormat::FontFamilies);
        state().character.clearProperty(QTextFormat::FontPointSize);
        return;
    }
    const auto font = m_fonts.find(token.parameter);
    const QString name =
        font == m_fonts.end() ? QString() : cleanName(font->second.name, u';', kLongestFontName);
    if (!name.isEmpty())
        state().character.setFontFamilies({name});
}

void RtfReader::setSize(const RtfToken &token)
{
    const int halfPoints = token.hasParameter ? token.parameter : 24;
    state().character.setFontPointSize(std::clamp(halfPoints, 2, kLargestFont) / 2.0);
}

QBrush RtfReader::brush(int index) const
{
    if (index < 0 || size_t(index) >= m_colours.size() || !m_colours[size_t(index)].isValid())
        return {};
    return QBrush(m_colours[size_t(index)]);
}

void RtfReader::setColour(const RtfToken &token)
{
    const QBrush colour = brush(token.parameter);
    if (colour.style() == Qt::NoBrush)
        state().character.clearForeground();
    else
        state().character.setForeground(colour);
}

void RtfReader::setBackground(const RtfToken &token)
{
    const QBrush colour = brush(token.parameter);
    if (colour.style() == Qt::NoBrush)
        state().character.clearBackground();
    else
        state().character.setBackground(colour);
}

void RtfReader::setParagraphBackground(const RtfToken &token)
{
    const QBrush colour = brush(token.parameter);
    if (colour.style() == Qt::NoBrush)
        state().block.clearBackground();
    else
        state().block.setBackground(colour);
}

void RtfReader::setWeight(const RtfToken &token)
{
    state().character.setFontWeight(token.isOn() ? QFont::Bold : QFont::Normal);
}

void RtfReader::setItalic(const RtfToken &token)
{
    state().character.setFontItalic(token.isOn());
}

void RtfReader::setStrike(const RtfToken &token)
{
    state().character.setFontStrikeOut(token.isOn());
}

void RtfReader::setUnderline(const RtfToken &token)
{
    const auto style = tables().underlines.at(viewOf(token.text));
    // As the field's own command does it; setUnderlineStyle() would say the same with one property more.
    if (!token.isOn() || style == QTextCharFormat::NoUnderline || style == QTextCharFormat::SingleUnderline)
        state().character.setFontUnderline(token.isOn() && style == QTextCharFormat::SingleUnderline);
    else
        state().character.setUnderlineStyle(style);
}

void RtfReader::setCapitals(const RtfToken &token)
{
    const QFont::Capitalization kind = token.text == "caps" ? QFont::AllUppercase : QFont::SmallCaps;
    state().character.setFontCapitalization(token.isOn() ? kind : QFont::MixedCase);
}

void RtfReader::setBaseline(const RtfToken &token)
{
    const bool raised = token.text == "super", lowered = token.text == "sub";
    if (!token.isOn() || (!raised && !lowered))
        state().character.setVerticalAlignment(QTextCharFormat::AlignNormal);
    else
        state().character.setVerticalAlignment(raised ? QTextCharFormat::AlignSuperScript
                                                      : QTextCharFormat::AlignSubScript);
}

void RtfReader::setRaised(const RtfToken &token)
{
    state().character.setVerticalAlignment(token.isOn() ? QTextCharFormat::AlignSuperScript
                                                        : QTextCharFormat::AlignNormal);
}

void RtfReader::setLowered(const RtfToken &token)
{
    state().character.setVerticalAlignment(token.isOn() ? QTextCharFormat::AlignSubScript
                                                        : QTextCharFormat::AlignNormal);
}

void RtfReader::plain(const RtfToken &)
{
    const QString link = state().character.anchorHref();
    state().character = {};
    if (!link.isEmpty()) {
        state().character.setAnchor(true);
        state().character.setAnchorHref(link);
    }
    if (m_ours)
        return;
    RtfToken font;
    font.parameter = m_defaultFont;
    setFont(font);
    setSize({});
}

void RtfReader::endOfParagraph(const RtfToken &)
{
    if (state().destination == Destination::Body)
        endParagraph(false, false);
}

void RtfReader::endOfCell(const RtfToken &)
{
    endParagraph(true, false);
}

void RtfReader::endOfRow(const RtfToken &)
{
    if (m_begun)
        endParagraph(true, true);
    else if (!m_content.paragraphs.empty() && m_content.paragraphs.back().endsCell)
        m_content.paragraphs.back().endsRow = true;
}

void RtfReader::endOfPage(const RtfToken &)
{
    if (m_begun)
        endParagraph(false, false);
}

void RtfReader::beginField(const RtfToken &)
{
    m_instruction.clear();
    m_link.clear();
}

void RtfReader::beginResult()
{
    if (m_link.isEmpty())
        return;
    state().character.setAnchor(true);
    state().character.setAnchorHref(std::exchange(m_link, {}));
}

} // namespace vardelin
