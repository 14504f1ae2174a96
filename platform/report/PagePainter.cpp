#include "platform/report/PagePainter.h"

#include "platform/report/ReportFonts.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr double kRuleTwips = 10;
constexpr char16_t kFirstCombining = 0x300;

bool isPlain(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(),
                       [](QChar letter) { return letter.unicode() < kFirstCombining; });
}

} // namespace

PagePainter::Face &PagePainter::face(const ReportFont &font)
{
    const auto known = std::ranges::find(m_faces, font, &Face::font);
    if (known != m_faces.end())
        return *known;
    const double pixels = font.Size * kTwipsPerPoint * m_scale;
    Face made{font, outlineFont(font, std::max(1, qRound(pixels))), {}};
    made.raw = QRawFont::fromFont(made.whole);
    made.raw.setPixelSize(pixels);
    return m_faces.emplace_back(std::move(made));
}

// Glyphs go where the layout measured them. Text that has to be shaped, and what the face hasn't, is left to
// the painter.
void PagePainter::paintText(QPainter &painter, const ReportItem &item)
{
    Face &drawn = face(item.font);
    const QPointF base(item.left * m_scale, (item.top + item.baseline) * m_scale);
    if (isPlain(item.text)) {
        const QList<quint32> glyphs = drawn.raw.glyphIndexesForString(item.text);
        if (!glyphs.contains(0)) {
            const QList<QPointF> advances = drawn.raw.advancesForGlyphIndexes(glyphs);
            QList<QPointF> places;
            places.reserve(glyphs.size());
            QPointF at;
            for (const QPointF &advance : advances) {
                places.append(at);
                at += advance;
            }
            QGlyphRun run;
            run.setRawFont(drawn.raw);
            run.setGlyphIndexes(glyphs);
            run.setPositions(places);
            painter.drawGlyphRun(base, run);
            return;
        }
    }
    painter.setFont(drawn.whole);
    painter.drawText(base, item.text);
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
