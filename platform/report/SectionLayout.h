#pragma once
// A section with its texts into lines of text and rules, of any height; pages are cut from these.

#include "platform/report/LineBreak.h"

namespace vardelin {

// A line of text or a rule. Lengths in twips, from the top left corner of the section while it is laid out,
// from that of the paper once it stands on a page.
struct ReportItem
{
    double left = 0, top = 0, width = 0, height = 0;
    QString text = {};   // empty: a rule
    double baseline = 0; // below the top
    ReportFont font = {};
    LineEnd end = LineEnd::Hard; // how it goes on in the next line of its control
    ReportSection::Kind section = ReportSection::Kind::Detail;
    int control = 0; // its place in the section's table
    int record = -1; // from 0; of the detail section

    bool isRule() const { return text.isEmpty(); }
    double bottom() const { return top + height; }
};

struct LaidSection
{
    std::vector<ReportItem> items; // by control; empty lines take height but are no items
    double height = 0;
};

// texts: one for each control. A control that grows takes the lines it needs, and so does one whose box is
// lower than one line of its font; what begins below it (its lower half and beyond) moves down with all that
// stands beside. A control that doesn't grow shows what its box holds: one line that is a little too wide is
// set in a smaller size, down to seven tenths; of a longer text the last line ends in "…", and on the left of
// a box that touches its own a text ends a little earlier. A number (a sum, or what has a number's format)
// keeps all of its digits, however small or far beyond its box.
LaidSection laySection(const ReportSection &section, const std::vector<QString> &texts,
                       const TextMeasurer &measurer);

} // namespace vardelin
