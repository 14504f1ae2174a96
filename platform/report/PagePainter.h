#pragma once
// A page onto a screen, a printer or a PDF.

#include "platform/report/ReportPages.h"

#include <QRawFont>

class QPainter;

namespace vardelin {

class PagePainter
{
public:
    // scale: units of the painter to a twip. It keeps the fonts of one scale.
    explicit PagePainter(double scale) : m_scale(scale) {}
    double scale() const { return m_scale; }
    // In the painter's pen colour, the paper's corner at its origin; nothing is painted outside `twips` (the
    // paper's coordinates), where it isn't empty.
    void paint(QPainter &painter, const ReportPage &page, const QRectF &twips = {});

private:
    struct Glyph
    {
        quint32 index = 0; // 0: not looked for, or none
        double advance = 0;
    };
    struct Face
    {
        ReportFont font;
        QFont whole;
        QRawFont raw;
        std::vector<Glyph> glyphs; // by character, of those that stand for themselves
    };
    Face &face(const ReportFont &font);
    bool findGlyphs(Face &drawn, const QString &text);
    void paintText(QPainter &painter, const ReportItem &item);

    const double m_scale;
    std::vector<Face> m_faces;
    QList<quint32> m_glyphs; // of a line
    QList<QPointF> m_places;
};

} // namespace vardelin
