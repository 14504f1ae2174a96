#pragma once
// Small reports for tests, and a measurer whose numbers can be reckoned in the head.

#include "platform/report/Report.h"
#include "platform/report/ReportPages.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

namespace vardelin::testing_support {

// Every character is 10 twips wide and every line 24 high for a point of size: 100 and 240 at 10 points.
class SquareMeasurer final : public TextMeasurer
{
public:
    LineMetric lineMetric(const ReportFont &font) const override { return {font.Size * 20, font.Size * 24}; }
    void appendWidths(const ReportFont &font, QStringView text, std::vector<double> &widths) const override
    {
        widths.insert(widths.end(), static_cast<std::size_t>(text.size()), font.Size * 10);
    }
};

inline const ReportFont kTen{QStringLiteral("Arial"), 10, false};

// A list of notes with a number each: title, column heads, a note that grows beside a fixed name, a line
// below the note, a total, page numbers.
inline ReportDesign noteDesign()
{
    using enum ReportSection::Kind;
    const auto q = [](const char *name) { return QString::fromLatin1(name); };
    ReportDesign design{q("Notes"), q("All notes"), 9360, 1440, {}};
    design.sections = {
        {q("Section4"),
         ReportHeader,
         600,
         {label(q("Label1"), {0, 0, 9000, 300}, q("Notes")).grows().in(kTen)}},
        {q("Section2"),
         PageHeader,
         400,
         {label(q("Label2"), {0, 0, 2000, 240}, q("Name")).in(kTen), line(q("Line1"), {0, 300, 9360, 0})}},
        {q("Section1"),
         Detail,
         800,
         {text(q("Text1"), {0, 0, 2000, 240}, q("Name")).in(kTen),
          text(q("Text2"), {2400, 0, 4000, 240}, q("Note")).grows().in(kTen),
          text(q("Text3"), {2400, 300, 1600, 240}, q("Hours"), q("0.0")).in(kTen)}},
        {q("Section3"),
         PageFooter,
         400,
         {label(q("Label3"), {0, 100, 9360, 240}, q("Page %p of %p")).centered().in(kTen)}},
        {q("Section5"),
         ReportFooter,
         500,
         {sum(q("Function1"), {2400, 100, 4000, 240}, q("hours"), q("#,##0.0 \"hours\"")).in(kTen)}}};
    return design;
}

inline ListedRecords notes(const std::vector<std::pair<QString, QString>> &rows)
{
    std::vector<std::vector<Value>> values;
    for (const auto &[name, note] : rows)
        values.push_back({Value(name), Value(note), Value(1.5f)});
    return ListedRecords({QStringLiteral("Name"), QStringLiteral("Note"), QStringLiteral("Hours")},
                         std::move(values));
}

} // namespace vardelin::testing_support
