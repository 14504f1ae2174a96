#pragma once
// The pages of a report. What is shown, printed, exported and tested are these.

#include "platform/report/ReportRecords.h"
#include "platform/report/SectionLayout.h"

#include <map>
#include <optional>

namespace vardelin {

struct Paper
{
    int width = 12240, height = 15840; // twips; letter
    bool operator==(const Paper &) const = default;
};

struct ReportPage
{
    int number = 1;
    Paper paper;
    std::vector<ReportItem> items; // by section from top to bottom; places count from the paper's corner
};

// Lays pages as they are asked for and keeps no more of each than where it begins: a report of any length
// costs the memory of a few pages. Sections are placed within the margins; a report wider than that is
// centred on the paper. A record that has gone is left out.
class ReportPages
{
public:
    // The records and the measurer must outlive it; the design is copied.
    ReportPages(const ReportDesign &design, const ReportRecords &records, const TextMeasurer &measurer,
                const Paper &paper = {});

    const ReportDesign &design() const { return m_design; }
    const ReportRecords &records() const { return m_records; }
    const TextMeasurer &measurer() const { return m_measurer; }
    const Paper &paper() const { return m_paper; }

    int found() const { return static_cast<int>(m_starts.size()); } // pages whose beginning is known
    bool complete() const { return m_complete; }                    // found() is the count of pages
    double progress() const;                                        // 0 to 1, by records
    // Finds one more page's beginning; false once it is complete.
    bool findNext();
    int count();              // finds all
    bool printsCount() const; // its pages tell how many there are
    // Page by number from 1; RunTimeError 9 beyond the last. The count that "%P" stands for is "…" as long as
    // it isn't known.
    ReportPage page(int number);

private:
    enum class Stage { ReportHeader, Records, ReportFooter, End };
    struct Place
    {
        Stage stage = Stage::ReportHeader;
        int record = 0;
        double offset = 0; // of the section, that stands on pages before
    };
    struct Sheet;

    const ReportSection &section(ReportSection::Kind kind) const;
    std::vector<QString> textsOf(const ReportSection &section, const std::vector<Value> &values) const;
    LaidSection layBand(ReportSection::Kind kind, int page) const;
    const LaidSection *layRecord(int record); // null: it has gone
    const LaidSection &layEnd(ReportSection::Kind kind);
    void addToSums(const std::vector<Value> &values);
    bool place(Sheet &sheet, const LaidSection &laid, bool keepTogether, double &offset, int record) const;
    bool fill(Sheet &sheet, Place &at);
    ReportPage make(Place &at, int number);

    const ReportDesign m_design;
    const ReportRecords &m_records;
    const TextMeasurer &m_measurer;
    const Paper m_paper;
    QStringList m_columns;                           // that controls are bound to
    std::map<const ReportControl *, int> m_columnOf; // place in m_columns
    double m_headerHeight = 0, m_footerHeight = 0;   // of the page's

    std::vector<Place> m_starts;
    Place m_next;                     // where the first page not found begins
    std::optional<ReportPage> m_made; // the page found last
    bool m_complete = false;
    int m_summed = 0;                              // records that are in the sums
    std::map<const ReportControl *, Value> m_sums; // Empty: of no number yet
    int m_laidRecord = -1;
    std::optional<LaidSection> m_laid; // m_laidRecord's
    std::map<ReportSection::Kind, LaidSection> m_ends;
};

// All pages at once.
std::vector<ReportPage> layoutReport(const ReportDesign &design, const ReportRecords &records,
                                     const TextMeasurer &measurer, const Paper &paper = {});

// A caption with its page codes; count 0: not known yet.
QString withPageCodes(QString caption, int page, int count);

} // namespace vardelin
