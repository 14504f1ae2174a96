#include "platform/report/LineBreak.h"

#include <algorithm>
#include <numeric>

namespace vardelin {

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr char16_t kFirstIdeograph = 0x2E80; // from here on a line may end behind any character
constexpr double kSlack = 0.01;              // of a twip, for sums of fractions

bool isBlank(QChar letter)
{
    return letter == u' ';
}

QString printable(QString text)
{
    const auto control = [](QChar letter) { return letter < u' ' || letter == QChar(0x7F); };
    if (std::none_of(text.cbegin(), text.cend(), control))
        return text;
    text.replace(u'\t', QStringLiteral("    "));
    text.removeIf(control);
    return text;
}

// One paragraph, character by character.
class Breaker
{
public:
    Breaker(const QString &text, const ReportFont &font, double width, const TextMeasurer &measurer)
        : m_text(text), m_width(width + kSlack)
    {
        m_widths.reserve(static_cast<std::size_t>(text.size()));
        measurer.appendWidths(font, text, m_widths);
    }

    void into(std::vector<TextLine> &lines)
    {
        qsizetype from = 0;
        do {
            const qsizetype end = lineEnd(from);
            qsizetype next = end;
            while (next < m_text.size() && isBlank(m_text[next]))
                ++next;
            qsizetype shown = end;
            while (shown > from && isBlank(m_text[shown - 1]) && next < m_text.size())
                --shown;
            const LineEnd kind = next >= m_text.size()                    ? LineEnd::Hard
                                 : next > end || isBlank(m_text[end - 1]) ? LineEnd::AtBlank
                                                                          : LineEnd::InWord;
            lines.push_back({m_text.mid(from, shown - from), widthOf(from, shown), kind});
            from = next;
        } while (from < m_text.size());
    }

private:
    double at(qsizetype place) const { return m_widths[static_cast<std::size_t>(place)]; }
    double widthOf(qsizetype from, qsizetype to) const
    {
        return std::accumulate(m_widths.begin() + from, m_widths.begin() + to, 0.0);
    }
    bool mayEndBehind(qsizetype place) const
    {
        const QChar letter = m_text[place];
        return isBlank(letter) || letter.unicode() >= kFirstIdeograph ||
               (letter == u'-' && place + 1 < m_text.size() && m_text[place + 1].isLetter());
    }
    // Where the line that begins at `from` ends; blanks at its end may stand out.
    qsizetype lineEnd(qsizetype from) const
    {
        double used = 0;
        qsizetype opportunity = from;
        for (qsizetype place = from; place < m_text.size(); ++place) {
            used += at(place);
            if (used > m_width && !isBlank(m_text[place]) && place > from && at(place) > 0)
                return opportunity > from ? opportunity : place;
            if (mayEndBehind(place) && !(place + 1 < m_text.size() && at(place + 1) == 0))
                opportunity = place + 1;
        }
        return m_text.size();
    }

    const QString &m_text;
    const double m_width;
    std::vector<double> m_widths;
};

} // namespace

std::vector<TextLine> breakLines(const QString &text, const ReportFont &font, double width,
                                 const TextMeasurer &measurer)
{
    std::vector<TextLine> lines;
    for (qsizetype from = 0; from < text.size();) {
        qsizetype end = from;
        while (end < text.size() && text[end] != u'\r' && text[end] != u'\n')
            ++end;
        Breaker(printable(text.mid(from, end - from)), font, width, measurer).into(lines);
        const bool pair = end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n';
        from = end + (pair ? 2 : 1);
    }
    return lines;
}

TextLine elided(TextLine line, const ReportFont &font, double width, const TextMeasurer &measurer)
{
    std::vector<double> widths;
    measurer.appendWidths(font, line.text, widths);
    double used = measurer.width(font, QStringView(&kEllipsis, 1));
    std::size_t kept = 0;
    while (kept < widths.size() && used + widths[kept] <= width + kSlack)
        used += widths[kept++];
    line.text = line.text.left(static_cast<qsizetype>(kept)) + kEllipsis;
    line.width = used;
    return line;
}

} // namespace vardelin
