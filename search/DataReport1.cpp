#include "search/DataReport1.h"

#include "platform/report/Report.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Once per log. The notes are printed as they are stored.
std::vector<ReportControl> logControls()
{
    return {
        label(u"Label2"_s, {0, 0, 570, 285}, u"Client:"_s),
        text(u"Text2"_s, {1440, 0, 3030, 285}, u"Client"_s),
        label(u"Label3"_s, {4896, 0, 720, 285}, u"Project:"_s),
        text(u"Text3"_s, {5616, 0, 3030, 285}, u"Project"_s),
        label(u"Label4"_s, {0, 288, 855, 285}, u"Employee:"_s),
        text(u"Text4"_s, {1440, 288, 3030, 285}, u"Employee"_s),
        label(u"Label5"_s, {4896, 288, 585, 285}, u"Rate:"_s),
        text(u"Text5"_s, {5616, 288, 1440, 285}, u"Rate"_s),
        label(u"Label6"_s, {0, 576, 1140, 285}, u"Log summary:"_s),
        text(u"Text9"_s, {1440, 576, 7200, 285}, u"Log Summary"_s),
        label(u"Label7"_s, {0, 864, 420, 285}, u"Log:"_s),
        text(u"Text1"_s, {1440, 864, 7776, 285}, u"Vardelin"_s).grows(),
        label(u"Label8"_s, {0, 1152, 1290, 285}, u"Beginning Time:"_s),
        text(u"Text6"_s, {1440, 1152, 2010, 300}, u"Beginning Time"_s),
        label(u"Label9"_s, {3600, 1152, 1305, 285}, u"Ending Time:"_s),
        text(u"Text7"_s, {4896, 1152, 1740, 300}, u"Ending Time"_s),
        label(u"Label10"_s, {7200, 1152, 870, 285}, u"Duration:"_s),
        text(u"Text8"_s, {8064, 1152, 1140, 300}, u"Duration"_s),
    };
}

} // namespace

ReportDesign dataReport1Design()
{
    using Kind = ReportSection::Kind;
    return {.Name = u"DataReport1"_s,
            .Caption = u"Vardelin Report"_s,
            .Width = 9240,
            .sections = {
                {u"Section4"_s,
                 Kind::ReportHeader,
                 645,
                 {label(u"Label1"_s, {144, 0, 9072, 576}, u"Vardelin Report"_s)
                      .centered()
                      .grows()
                      .in({u"Arial"_s, 14.25, true})}},
                {u"Section2"_s, Kind::PageHeader, 0},
                {u"Section1"_s, Kind::Detail, 1875, logControls()},
                {u"Section3"_s, Kind::PageFooter, 45},
                {u"Section5"_s,
                 Kind::ReportFooter,
                 1305,
                 {label(u"Label11"_s, {6048, 288, 1290, 285}, u"Total time spent:"_s),
                  sum(u"Function1"_s, {7488, 288, 1725, 285}, u"Duration"_s, u"#,###.0 hours"_s)}},
            }};
}

// The report object lives as long as its window: a title of this report doesn't stay for the next.
void showLogReport(Global &global, const ado::Recordset &logs, const QString &title)
{
    DataReport report(dataReport1Design());
    if (!title.isEmpty())
        report.Sections(u"Section4"_s).Controls(u"Label1"_s).Caption = title;
    report.bindTo(logs);
    global.openers.showReport(report);
}

} // namespace vardelin
