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
    struct Face
    {
        ReportFont font;
        QFont whole;
        QRawFont raw;
    };
    Face &face(const ReportFont &font);
    void paintText(QPainter &painter, const ReportItem &item);

    const double m_scale;
    std::vector<Face> m_faces;
};

} // namespace vardelin
