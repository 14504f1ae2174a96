#pragma once
// A report as commands use it: a design that can be changed at run time, bound to a record set, shown
// modally.
//
//     DataReport report(dataReport1Design());
//     report.Sections(u"Section4"_s).Controls(u"Label1"_s).Caption = u"No records"_s;
//     report.Sections(u"Section1"_s).setFont(u"Times New Roman"_s, 12);
//     report.bindTo(records);
//     global.openers.showReport(report); // ReportWindow.h: modal; returns when the window is closed
//
// What was changed stays in the object as long as it lives. Tests put a function of their own in place of
// Openers::showReport and read textOf(report), the words that it would print.

#include "platform/report/ReportDesign.h"
#include "platform/report/ReportRecords.h"

#include <memory>

namespace vardelin {

class DataReport
{
public:
    explicit DataReport(ReportDesign design);

    ReportSection &Sections(const QString &name) { return m_design.Sections(name); }
    const ReportDesign &design() const { return m_design; }
    QString Caption() const { return m_design.Caption; }
    void setCaption(const QString &caption) { m_design.Caption = caption; }

    // Any record set over a table or a statement; null: none, and the report is without records. It must
    // outlive the binding, and stay open while the report is shown; its position is neither used nor moved.
    void setDataSource(const ado::Recordset *source);
    // Looks at the source: RunTimeError 3265 for a column of the design that it doesn't have, 3704 if it
    // isn't open.
    void Refresh() const;
    QString DataMember; // nothing comes of it
    // Unbinds, binds and refreshes.
    void bindTo(const ado::Recordset &records);
    const ReportRecords &records() const { return *m_records; }

private:
    ReportDesign m_design;
    std::unique_ptr<ReportRecords> m_records;
};

// The lines of all pages from top to bottom, those side by side with one tab between, pages ended by a form
// feed; on letter paper.
QString textOf(const DataReport &report);

} // namespace vardelin
