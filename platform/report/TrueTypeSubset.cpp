#include "platform/report/TrueTypeSubset.h"

#include <QRawFont>
#include <QtEndian>
#include <bit>
#include <utility>
#include <vector>

namespace vardelin {

namespace {

constexpr qsizetype kLongPlaces = 50;  // in the table "head": whether those in "loca" are of four bytes
constexpr qsizetype kAdjustment = 8;   // in the same: the file's checksum
constexpr qsizetype kGlyphHeader = 10; // bytes of a glyph ahead of its outline
constexpr quint32 kWholeSum = 0xB1B0AFBA;

quint16 wordAt(const QByteArray &bytes, qsizetype at)
{
    return at >= 0 && at + 2 <= bytes.size() ? qFromBigEndian<quint16>(bytes.constData() + at) : 0;
}

quint32 longAt(const QByteArray &bytes, qsizetype at)
{
    return at >= 0 && at + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.constData() + at) : 0;
}

void putWord(QByteArray &bytes, int word)
{
    bytes += static_cast<char>(word >> 8);
    bytes += static_cast<char>(word & 0xFF);
}

void putLong(QByteArray &bytes, quint32 number)
{
    putWord(bytes, static_cast<int>(number >> 16));
    putWord(bytes, static_cast<int>(number & 0xFFFF));
}

void setLong(QByteArray &bytes, qsizetype at, quint32 number)
{
    qToBigEndian(number, bytes.data() + at);
}

void pad(QByteArray &table)
{
    table.append((4 - table.size() % 4) % 4, '\0');
}

quint32 checksum(const QByteArray &table)
{
    quint32 sum = 0;
    for (qsizetype at = 0; at < table.size(); at += 4)
        sum += longAt(table, at);
    return sum;
}

class Outlines
{
public:
    explicit Outlines(const QRawFont &face)
        : m_glyf(face.fontTable("glyf")), m_loca(face.fontTable("loca")),
          m_long(wordAt(face.fontTable("head"), kLongPlaces) != 0),
          m_count(m_loca.size() / (m_long ? 4 : 2) - 1)
    {}
    qsizetype count() const { return m_count; }
    QByteArray of(quint32 glyph) const
    {
        const qsizetype from = place(glyph), to = place(glyph + 1);
        return glyph < m_count && from < to && to <= m_glyf.size() ? m_glyf.mid(from, to - from)
                                                                   : QByteArray();
    }
    // The glyphs that a glyph is composed of.
    static std::vector<quint32> parts(const QByteArray &outline)
    {
        constexpr int words = 1, scale = 8, more = 0x20, twoScales = 0x40, matrix = 0x80;
        std::vector<quint32> glyphs;
        if (static_cast<qint16>(wordAt(outline, 0)) >= 0)
            return glyphs;
        int flags = more;
        for (qsizetype at = kGlyphHeader; flags & more && at + 4 <= outline.size();) {
            flags = wordAt(outline, at);
            glyphs.push_back(wordAt(outline, at + 2));
            at += 4 + (flags & words ? 4 : 2) +
                  (flags & matrix      ? 8
                   : flags & twoScales ? 4
                   : flags & scale     ? 2
                                       : 0);
        }
        return glyphs;
    }

private:
    qsizetype place(quint32 glyph) const
    {
        return m_long ? static_cast<qsizetype>(longAt(m_loca, 4 * static_cast<qsizetype>(glyph)))
                      : 2 * static_cast<qsizetype>(wordAt(m_loca, 2 * static_cast<qsizetype>(glyph)));
    }

    const QByteArray m_glyf, m_loca;
    const bool m_long;
    const qsizetype m_count;
};

// The tables "glyf" and "loca".
std::pair<QByteArray, QByteArray> withGlyphs(const Outlines &outlines, std::set<quint32> glyphs)
{
    glyphs.insert(0);
    std::vector<quint32> open(glyphs.begin(), glyphs.end());
    while (!open.empty()) {
        const quint32 glyph = open.back();
        open.pop_back();
        for (const quint32 part : Outlines::parts(outlines.of(glyph)))
            if (glyphs.insert(part).second)
                open.push_back(part);
    }
    QByteArray glyf, loca;
    for (quint32 glyph = 0; glyph < outlines.count(); ++glyph) {
        putLong(loca, static_cast<quint32>(glyf.size()));
        if (glyphs.contains(glyph)) {
            glyf += outlines.of(glyph);
            pad(glyf);
        }
    }
    putLong(loca, static_cast<quint32>(glyf.size()));
    return {glyf, loca};
}

} // namespace

QByteArray trueTypeSubset(const QRawFont &face, std::set<quint32> glyphs)
{
    const Outlines outlines(face);
    QByteArray head = face.fontTable("head");
    if (outlines.count() < 1 || head.size() <= kLongPlaces + 1)
        return {};
    auto [glyf, loca] = withGlyphs(outlines, std::move(glyphs));
    setLong(head, kAdjustment, 0);
    head[kLongPlaces] = 0;
    head[kLongPlaces + 1] = 1;
    std::vector<std::pair<const char *, QByteArray>> tables = {{"cvt ", face.fontTable("cvt ")},
                                                               {"fpgm", face.fontTable("fpgm")},
                                                               {"glyf", glyf},
                                                               {"head", head},
                                                               {"hhea", face.fontTable("hhea")},
                                                               {"hmtx", face.fontTable("hmtx")},
                                                               {"loca", loca},
                                                               {"maxp", face.fontTable("maxp")},
                                                               {"prep", face.fontTable("prep")}};
    std::erase_if(tables, [](const auto &table) { return table.second.isEmpty(); });
    constexpr quint32 header = 12, entry = 16;
    const auto count = static_cast<quint32>(tables.size());
    const auto power = static_cast<int>(std::bit_width(count)) - 1;
    QByteArray file, data;
    putLong(file, 0x00010000);
    putWord(file, static_cast<int>(count));
    putWord(file, static_cast<int>(entry << power));
    putWord(file, power);
    putWord(file, static_cast<int>(entry * count - (entry << power)));
    qsizetype adjustment = 0;
    for (const auto &[name, content] : tables) {
        const auto place = static_cast<quint32>(header + entry * count + data.size());
        QByteArray padded = content;
        pad(padded);
        file += name;
        putLong(file, checksum(padded));
        putLong(file, place);
        putLong(file, static_cast<quint32>(content.size()));
        if (qstrcmp(name, "head") == 0)
            adjustment = place + kAdjustment;
        data += padded;
    }
    file += data;
    setLong(file, adjustment, kWholeSum - checksum(file));
    return file;
}

} // namespace vardelin
