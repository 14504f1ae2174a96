#pragma once
// How wide and how high text is, in twips: what a layout asks, so that it needs no screen and no printer.

#include "platform/report/ReportDesign.h"

#include <memory>

namespace vardelin {

struct LineMetric
{
    double ascent = 0; // from the top of a line to its base
    double height = 0; // from line to line
};

class TextMeasurer
{
public:
    virtual ~TextMeasurer();
    virtual LineMetric lineMetric(const ReportFont &font) const = 0;
    // Adds one width for each character (UTF-16 unit) of a text without line ends. What belongs to the
    // character before, as an accent of its own or the second half of a pair, has the width 0.
    virtual void appendWidths(const ReportFont &font, QStringView text,
                              std::vector<double> &widths) const = 0;

    double width(const ReportFont &font, QStringView text) const;
};

// The faces of the machine by their outlines, the same for every screen and printer. Needs the application
// object.
class FaceMeasurer final : public TextMeasurer
{
public:
    FaceMeasurer();
    ~FaceMeasurer() override;
    LineMetric lineMetric(const ReportFont &font) const override;
    void appendWidths(const ReportFont &font, QStringView text, std::vector<double> &widths) const override;

private:
    struct Face;
    Face &face(const ReportFont &font) const;
    mutable std::vector<std::unique_ptr<Face>> m_faces;
};

} // namespace vardelin
