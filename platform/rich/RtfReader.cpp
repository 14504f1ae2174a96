#include "platform/rich/RtfReader.h"

#include <algorithm>
#include <utility>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t kDeepest = 4000;
constexpr int kBoxSide = 480; // twips, of what stands for an object that shows nothing

using Kind = RtfToken::Kind;

bool hexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The address in a field's instruction, such as HYPERLINK "https://example.org/"; empty for other fields.
QString linkOf(const QString &instruction)
{
    const QString trimmed = instruction.trimmed();
    if (!trimmed.startsWith("HYPERLINK"_L1))
        return {};
    const qsizetype start = trimmed.indexOf(u'"');
    const qsizetype end = start < 0 ? -1 : trimmed.indexOf(u'"', start + 1);
    if (end < 0 || trimmed.first(start).contains("\\l"_L1))
        return {};
    return cleanName(trimmed.sliced(start + 1, end - start - 1), u'"', kLongestLink);
}

// A character that QTextDocument would take for structure is no text.
QChar harmless(QChar c)
{
    switch (c.unicode()) {
    case 0x000A:
        return QChar::LineSeparator;
    case 0xFDD0:
    case 0xFDD1:
    case 0xFFFC:
        return QChar::ReplacementCharacter;
    default:
        return c;
    }
}

// The text of an object as it can be written again: ASCII in whole groups, with CR LF at line ends. Empty
// where that isn't sure: binary data, or a line end that is no mere layout.
QByteArray keptObject(const QByteArray &text)
{
    QByteArray kept;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool lineEnd = c == '\r' || c == '\n';
        if (lineEnd && kept.endsWith('\\'))
            return {};
        if (!lineEnd && c != '\t' && (c < ' ' || c > '~'))
            return {};
        if (!lineEnd)
            kept += c;
        else if (!kept.endsWith('\n'))
            kept += "\r\n";
    }
    return kept.contains("\\bin") || kept.trimmed().isEmpty() ? QByteArray() : kept;
}

QTextListFormat::Style styleOfBullet(const QString &text)
{
    if (text.contains(u'o'))
        return QTextListFormat::ListCircle;
    if (text.contains(QChar(0x25AA)) || text.contains(QChar(0xA7)))
        return QTextListFormat::ListSquare;
    return QTextListFormat::ListDisc;
}

} // namespace

RtfReader::RtfReader(QByteArrayView rtf) : m_lexer(rtf)
{
    m_states.emplace_back();
}

RtfContent RtfReader::read()
{
    for (RtfToken token = m_lexer.next(); token.kind != Kind::End; token = m_lexer.next()) {
        take(token);
        m_tokenAt = m_lexer.at();
    }
    flush();
    m_object.depth = 0; // one that doesn't end is damaged
    while (m_states.size() > 1)
        close();
    return finished();
}

RtfContent RtfReader::finished()
{
    // The last \par ends the last paragraph; it doesn't begin another one.
    if (m_begun || m_content.paragraphs.empty())
        endParagraph(false, false);
    return std::move(m_content);
}

void RtfReader::take(const RtfToken &token)
{
    if (token.kind != Kind::Byte && token.kind != Kind::Text)
        flush();
    if (m_passOver > 0 && passOver(token))
        return;
    switch (token.kind) {
    case Kind::Open:
        open();
        break;
    case Kind::Close:
        close();
        break;
    case Kind::Word:
        word(token);
        break;
    case Kind::Symbol:
        symbol(token.symbol);
        break;
    case Kind::Byte: {
        const char byte = char(token.parameter);
        bytes(QByteArrayView(&byte, 1));
        break;
    }
    case Kind::Text:
        bytes(token.text);
        break;
    case Kind::Binary:
        if (state().destination == Destination::Picture)
            m_picture.bytes += token.text;
        break;
    case Kind::End:
        break;
    }
    const bool star = token.kind == Kind::Symbol && token.symbol == '*';
    m_groupStarts = token.kind == Kind::Open || (star && m_groupStarts);
}

bool RtfReader::passOver(const RtfToken &token)
{
    // Writers forget the fallback at times: a word that is no character must not fall to it.
    const bool structure = token.kind == Kind::Open || token.kind == Kind::Close;
    if (structure || (token.kind == Kind::Word && !isCharacter(token.text))) {
        m_passOver = 0;
        return false;
    }
    if (token.kind != Kind::Text) {
        --m_passOver;
        return true;
    }
    const qsizetype passed = std::min<qsizetype>(m_passOver, token.text.size());
    m_passOver -= int(passed);
    if (passed < token.text.size())
        bytes(token.text.sliced(passed));
    return true;
}

void RtfReader::open()
{
    m_optional = false;
    m_groupAt = m_tokenAt;
    if (m_states.size() >= kDeepest) {
        ++m_beyond;
        return;
    }
    m_states.push_back(m_states.back());
    state().ownsDestination = false;
}

void RtfReader::close()
{
    m_optional = false;
    if (m_beyond > 0) {
        --m_beyond;
        return;
    }
    if (m_states.size() == 1) // one brace too many: what follows is text all the same
        return;
    const Destination destination = state().destination;
    const bool owned = state().ownsDestination;
    m_states.pop_back();
    if (m_object.inResult && m_states.size() == m_object.depth) {
        m_object.inResult = false;
        m_object.from = m_lexer.at();
    }
    if (owned)
        finish(destination);
}

void RtfReader::begin(Destination destination)
{
    if (destination != Destination::Same)
        state().destination = destination;
    state().ownsDestination = destination != Destination::Same;
    switch (destination) {
    case Destination::Picture:
        m_picture = {};
        break;
    case Destination::Instruction:
        m_instruction.clear();
        m_link.clear();
        break;
    case Destination::Bullets:
        m_bullets = {};
        m_bulletsFound = false;
        m_bulletText.clear();
        break;
    default:
        break;
    }
}

void RtfReader::finish(Destination destination)
{
    switch (destination) {
    case Destination::Picture:
        if (!m_picture.bytes.isEmpty())
            addPicture(std::move(m_picture));
        m_picture = {};
        break;
    case Destination::Object:
        finishObject();
        break;
    case Destination::Instruction:
        m_link = linkOf(m_instruction);
        break;
    case Destination::Generator:
        m_ours = m_ours || m_generator.startsWith("Vardelin"_L1);
        break;
    case Destination::Bullets:
        if (!m_bulletsFound)
            break;
        if (m_bullets.style == QTextListFormat::ListDisc)
            m_bullets.style = styleOfBullet(m_bulletText);
        state().list = m_bullets;
        break;
    default:
        break;
    }
}

void RtfReader::addPicture(RtfPicture &&picture)
{
    m_paragraph.runs.push_back({{}, state().character, int(m_content.pictures.size())});
    m_content.pictures.push_back(std::move(picture));
    m_begun = true;
}

void RtfReader::beginObject()
{
    m_object = {};
    m_object.depth = m_states.size();
    m_object.from = m_lexer.at();
    m_object.picture = m_content.pictures.size();
    begin(Destination::Object);
}

void RtfReader::keepPieceOfObject()
{
    const QByteArrayView piece = m_lexer.text().sliced(m_object.from, m_tokenAt - m_object.from);
    if (!m_object.kept.isEmpty() && !piece.isEmpty())
        m_object.kept += '\n';
    m_object.kept += piece;
}

// What is kept of an object goes with the first picture of its result, and with a grey box where there is
// none.
void RtfReader::finishObject()
{
    if (m_object.depth == 0)
        return;
    keepPieceOfObject();
    const Object object = std::exchange(m_object, {});
    const QByteArray kept = keptObject(object.kept);
    if (kept.isEmpty())
        return;
    if (m_content.pictures.size() == object.picture) {
        RtfPicture box;
        box.goalWidth = box.goalHeight = kBoxSide;
        addPicture(std::move(box));
    }
    m_content.pictures[object.picture].object = kept;
}

void RtfReader::symbol(char symbol)
{
    switch (symbol) {
    case '*':
        m_optional = true;
        break;
    case '~':
        text(QString(QChar::Nbsp));
        break;
    case '-':
        text(QString(QChar::SoftHyphen));
        break;
    case '_':
        text(QString(QChar(0x2011)));
        break;
    case '\n':
        endOfParagraph({});
        break;
    case '\t':
        text(u"\t"_s);
        break;
    case '{':
    case '}':
    case '\\':
        bytes(QByteArrayView(&symbol, 1));
        break;
    default: // index marks and the like
        break;
    }
}

void RtfReader::bytes(QByteArrayView bytes)
{
    switch (state().destination) {
    case Destination::Skip:
    case Destination::PicturesOnly:
    case Destination::Ansi:
    case Destination::Object:
        break;
    case Destination::Colours:
        colourText(bytes);
        break;
    default:
        m_bytes += bytes;
        break;
    }
}

int RtfReader::page() const
{
    const State &now = m_states.back();
    const bool table = now.destination == Destination::Fonts;
    const auto font = m_fonts.find(table ? m_currentFont : now.font);
    return font != m_fonts.end() && font->second.page > 0 ? font->second.page : m_documentPage;
}

void RtfReader::flush()
{
    if (m_bytes.isEmpty())
        return;
    const QByteArray gathered = std::exchange(m_bytes, {});
    if (state().destination == Destination::Picture) {
        QByteArray digits;
        std::copy_if(gathered.begin(), gathered.end(), std::back_inserter(digits), hexDigit);
        digits.truncate(digits.size() / 2 * 2);
        m_picture.bytes += QByteArray::fromHex(digits);
        return;
    }
    text(m_pages.decode(gathered, page()));
}

void RtfReader::text(const QString &text)
{
    switch (state().destination) {
    case Destination::Body:
        bodyText(text);
        break;
    case Destination::Fonts:
        fontText(text);
        break;
    case Destination::Instruction:
        m_instruction += text;
        break;
    case Destination::Generator:
        m_generator += text;
        break;
    case Destination::BulletText:
        m_bulletText += text;
        break;
    default:
        break;
    }
}

void RtfReader::fontText(const QString &text)
{
    for (const QChar c : text) {
        if (c == u';')
            m_currentFont = -1;
        else if (const auto font = m_fonts.find(m_currentFont); font != m_fonts.end())
            font->second.name += c;
    }
}

void RtfReader::colourText(QByteArrayView text)
{
    for (const char c : text) {
        if (c == ';')
            m_colours.push_back(std::exchange(m_colour, {}));
    }
}

void RtfReader::bodyText(QString text)
{
    text.remove(QChar(0));
    text.remove(u'\r');
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != QChar::ParagraphSeparator) {
            text[i] = harmless(text[i]);
            continue;
        }
        append(text.sliced(start, i - start));
        endParagraph(false, false);
        start = i + 1;
    }
    append(text.sliced(start));
}

void RtfReader::append(const QString &text)
{
    if (text.isEmpty())
        return;
    m_begun = true;
    auto &runs = m_paragraph.runs;
    if (!runs.empty() && runs.back().picture < 0 && runs.back().format == state().character)
        runs.back().text += text;
    else
        runs.push_back({text, state().character});
}

void RtfReader::endParagraph(bool endsCell, bool endsRow)
{
    m_paragraph.format = state().block;
    m_paragraph.endFormat = state().character;
    m_paragraph.list = state().list;
    if (state().list) { // the list itself indents
        m_paragraph.format.clearProperty(QTextFormat::BlockLeftMargin);
        m_paragraph.format.clearProperty(QTextFormat::TextIndent);
    }
    m_paragraph.inTable = state().inTable || endsCell;
    m_paragraph.endsCell = endsCell || endsRow;
    m_paragraph.endsRow = endsRow;
    m_content.paragraphs.push_back(std::exchange(m_paragraph, {}));
    m_begun = false;
    if (state().list)
        state().list->starts = false;
}

} // namespace vardelin
