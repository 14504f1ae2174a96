#include "platform/report/TextMeasurer.h"

#include "platform/report/ReportFonts.h"

#include <QFontMetricsF>
#include <QHash>
#include <QTextBoundaryFinder>
#include <array>
#include <numeric>

namespace vardelin {

namespace {

constexpr int kPixels = 2048; // outlines are measured this large, so that nothing is rounded
constexpr double kTwipsPerPoint = 20;
constexpr char16_t kFirstCombining = 0x300; // below it a character is as wide as its glyph

} // namespace

TextMeasurer::~TextMeasurer() = default;

double TextMeasurer::width(const ReportFont &font, QStringView text) const
{
    std::vector<double> widths;
    appendWidths(font, text, widths);
    return std::accumulate(widths.begin(), widths.end(), 0.0);
}

// Widths are shares of the size, so that one face serves all sizes.
struct FaceMeasurer::Face
{
    Face(const ReportFont &font, const QFont &large) : name(font.Name), bold(font.Bold), metrics(large)
    {
        widths.fill(-1);
    }
    double share(QStringView cluster)
    {
        const char16_t first = cluster.front().unicode();
        double &known =
            cluster.size() == 1 && first < kFirstCombining ? widths[first] : rare[cluster.toString()];
        if (known <= 0)
            known = metrics.horizontalAdvance(cluster.toString()) / kPixels;
        return known;
    }

    QString name;
    bool bold;
    QFontMetricsF metrics;
    std::array<double, kFirstCombining> widths;
    QHash<QString, double> rare;
};

FaceMeasurer::FaceMeasurer() = default;
FaceMeasurer::~FaceMeasurer() = default;

FaceMeasurer::Face &FaceMeasurer::face(const ReportFont &font) const
{
    for (const auto &known : m_faces)
        if (known->bold == font.Bold && known->name == font.Name)
            return *known;
    return *m_faces.emplace_back(std::make_unique<Face>(font, outlineFont(font, kPixels)));
}

LineMetric FaceMeasurer::lineMetric(const ReportFont &font) const
{
    const QFontMetricsF &metrics = face(font).metrics;
    const double unit = font.Size * kTwipsPerPoint / kPixels;
    return {metrics.ascent() * unit, (metrics.ascent() + metrics.descent()) * unit};
}

void FaceMeasurer::appendWidths(const ReportFont &font, QStringView text, std::vector<double> &widths) const
{
    Face &measured = face(font);
    const double size = font.Size * kTwipsPerPoint;
    const bool plain = std::all_of(text.begin(), text.end(),
                                   [](QChar letter) { return letter.unicode() < kFirstCombining; });
    if (plain) {
        for (qsizetype at = 0; at < text.size(); ++at)
            widths.push_back(measured.share(text.mid(at, 1)) * size);
        return;
    }
    QTextBoundaryFinder clusters(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (qsizetype from = 0, to = clusters.toNextBoundary(); to > from;
         from = to, to = clusters.toNextBoundary()) {
        widths.push_back(measured.share(text.mid(from, to - from)) * size);
        widths.insert(widths.end(), static_cast<std::size_t>(to - from - 1), 0.0);
    }
}

} // namespace vardelin
