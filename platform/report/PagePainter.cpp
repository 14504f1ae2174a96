#include "platform/report/PagePainter.h"

#include "platform/report/ReportFonts.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr double kRuleTwips = 10;
constexpr char16_t kFirstCombining = 0x300;
constexpr double kDrift = 4;  // units, that a glyph may stand off its measured place
constexpr double kFine = 0.4; // units to the twip, from which on a glyph may stand on whole units

} // namespace

PagePainter::Face &PagePainter::face(const ReportFont &font)
{
    const auto known = std::ranges::find(m_faces, font, &Face::font);
    if (known != m_faces.end())
        return *known;
    const double pixels = font.Size * kTwipsPerPoint * m_scale;
    Face made{font, outlineFont(font, std::max(1, qRound(pixels))), {}, {}};
    made.raw = QRawFont::fromFont(made.whole);
    made.raw.setPixelSize(pixels);
    made.glyphs.resize(kFirstCombining);
    return m_faces.emplace_back(std::move(made));
}

// The glyphs of a line and their places; false where it has to be shaped, or the face hasn't all of it. On
// paper words begin on whole units and advance by them, so that a PDF of many pages says the same of the same
// word each time: a third less to write, and nothing that can be seen.
bool PagePainter::findGlyphs(Face &drawn, const QString &text)
{
    m_glyphs.clear();
    m_places.clear();
    const bool fine = m_scale >= kFine;
    double x = 0, inWord = 0; // measured, and of the glyphs since the last blank
    double word = 0;          // where it begins
    for (const QChar letter : text) {
        if (letter.unicode() >= kFirstCombining)
            return false;
        Glyph &glyph = drawn.glyphs[letter.unicode()];
        if (glyph.index == 0) {
            glyph.index = drawn.raw.glyphIndexesForString(letter).value(0);
            if (glyph.index == 0)
                return false;
            glyph.advance = drawn.raw.advancesForGlyphIndexes({glyph.index}).value(0).x();
        }
        m_glyphs.append(glyph.index);
        if (std::abs(word + inWord - x) > kDrift) { // a long word
            word = std::round(x);
            inWord = 0;
        }
        m_places.append({fine ? word + inWord : x, 0});
        x += glyph.advance;
        inWord += std::round(glyph.advance);
        if (letter == u' ') {
            word = std::round(x);
            inWord = 0;
        }
    }
    return true;
}

void PagePainter::paintText(QPainter &painter, const ReportItem &item)
{
    Face &drawn = face(item.font);
    QPointF base(item.left * m_scale, (item.top + item.baseline) * m_scale);
    if (m_scale >= kFine)
        base = base.toPoint();
    if (!findGlyphs(drawn, item.text)) {
        painter.setFont(drawn.whole);
        painter.drawText(base, item.text);
        return;
    }
    QGlyphRun run;
    run.setRawFont(drawn.raw);
    run.setGlyphIndexes(m_glyphs);
    run.setPositions(m_places);
    painter.drawGlyphRun(base, run);
}

void PagePainter::paint(QPainter &painter, const ReportPage &page, const QRectF &twips)
{
    for (const ReportItem &item : page.items) {
        if (!twips.isEmpty() && !twips.intersects(QRectF(item.left, item.top, std::max(1.0, item.width),
                                                         std::max(1.0, item.height))))
            continue;
        if (!item.isRule()) {
            paintText(painter, item);
            continue;
        }
        const double thick = kRuleTwips * m_scale;
        const bool across = item.width >= item.height;
        painter.fillRect(QRectF(item.left * m_scale, item.top * m_scale,
                                across ? item.width * m_scale : thick,
                                across ? thick : item.height * m_scale),
                         painter.pen().color());
    }
}

} // namespace vardelin
