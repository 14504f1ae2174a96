#pragma once
// What a report looks like: sections with controls, as plain tables. Lengths are in twips, 1440 to the inch;
// places of controls count from the left margin and from the top of their section.

#include <QString>
#include <vector>

namespace vardelin {

struct ReportFont
{
    QString Name = QStringLiteral("Arial");
    double Size = 8.25; // points
    bool Bold = false;
    bool operator==(const ReportFont &) const = default;
};

enum class ReportAlignment { Left, Center, Right };

struct ReportBox
{
    int left = 0, top = 0, width = 0, height = 0;
};

struct ReportControl
{
    enum class Kind { Label, Text, Sum, Line };

    Kind kind = Kind::Label;
    QString Name;
    ReportBox box;
    // Label: its text. In page headers and footers "%p" is the number of the page and "%P" the count of
    // pages; a second "%p" in one caption, "Page %p of %p", is the count, too.
    QString Caption = {};
    QString DataField = {};  // Text and Sum: the column; without regard to case
    QString DataFormat = {}; // a mask of base/Format.h; empty: the default text form
    ReportAlignment Alignment = ReportAlignment::Left;
    bool CanGrow = false;
    ReportFont Font = {};

    // For tables of controls: text(...).grows(), label(...).centered().in({"Arial", 14.25, true}).
    ReportControl grows() &&;
    ReportControl centered() &&;
    ReportControl right() &&;
    ReportControl in(const ReportFont &font) &&;
};

ReportControl label(const QString &name, ReportBox box, const QString &caption);
ReportControl text(const QString &name, ReportBox box, const QString &column, const QString &format = {});
// The sum of a column over the whole report; of no number at all it is Null, which prints nothing.
ReportControl sum(const QString &name, ReportBox box, const QString &column, const QString &format = {});
// A rule, a hairline: across if it is at least as wide as high, else upright. One as high as its section
// grows with it.
ReportControl line(const QString &name, ReportBox box);

struct ReportSection
{
    // The order on paper: the report header opens the first page, the page header follows it there and opens
    // all others; the report footer follows the last record; the page footer stands at the foot of each page.
    enum class Kind { ReportHeader, PageHeader, Detail, PageFooter, ReportFooter };

    QString Name;
    Kind kind = Kind::Detail;
    int Height = 0;
    std::vector<ReportControl> controls = {};
    // Goes to a new page where it doesn't fit the rest of one, unless a whole page is too short for it. What
    // is too long breaks between lines of text.
    bool KeepTogether = true;

    ReportControl &Controls(const QString &name);   // RunTimeError 9 where there is none
    void setFont(const QString &name, double size); // of every control; bold stays as it is
};

struct ReportDesign
{
    QString Name;      // "DataReport1"
    QString Caption;   // of the window
    int Width = 0;     // of the sections
    int margin = 1440; // on all four sides
    std::vector<ReportSection> sections = {};

    ReportSection &Sections(const QString &name);                 // RunTimeError 9 where there is none
    const ReportSection *section(ReportSection::Kind kind) const; // null where there is none
};

} // namespace vardelin
