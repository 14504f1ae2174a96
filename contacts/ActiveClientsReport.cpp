#include "contacts/ActiveClientsReport.h"

using namespace Qt::StringLiterals;

namespace vardelin {

// Each computed column is a block of text with carriage returns in it. "+" passes a Null on where "&"
// wouldn't.
QString activeClientsStatement()
{
    return
        // clang-format off
        u"SELECT *, [Client First Name] + ' ' + [Client Last Name] + "
        u"IIF([Active Client First Address]<>'',"
        u"'\r' + [Active Client First Address],'') + "
        u"IIF([Active Client Second Address]<>'',"
        u"'\r' + [Active Client Second Address],'') + "
        u"IIF([Active Client Third Address]<>'',"
        u"'\r' + [Active Client Third Address],'') + "
        u"IIF([Active Client City]<>'' AND [Active Client State]<>'',"
        u"'\r' + [Active Client City] + ', '"
        u" + [Active Client State] + IIF([Active Client Zip Code]<>'',"
        u"'  ' + [Active Client Zip Code],''),'') + "
        u"IIF([Active Client Home Telephone]<>'',"
        u"'\r' + 'Home: ' + Format([Active Client Home Telephone],'(###) ###-####'),'') + "
        u"IIF([Active Client Work Telephone]<>'',"
        u"'\r' + 'Work: ' + Format([Active Client Work Telephone],'(###) ###-####'),'') + "
        u"IIF([Active Client Cell Telephone]<>'',"
        u"'\r' + 'Cell: ' + Format([Active Client Cell Telephone],'(###) ###-####'),'') + "
        u"IIF([Active Client Alternative Telephone]<>'',"
        u"'\r' + 'Alternative: ' + Format([Active Client Alternative Telephone],'(###) ###-####'),'') + "
        u"IIF([Active Client Email Address]<>'',"
        u"'\r' + 'Email: ' + [Active Client Email Address] + '\r\r','') AS Client, "
        u"IIF(IsNull([Active Client Retainer Date]) OR Cstr([Active Client Retainer Date])='',"
        u"'','Retainer Date: ' + Format(Cstr([Active Client Retainer Date]),'mmmm d, yyyy')) + "
        u"IIF([Active Client Referrer]<>'',"
        u"'\r' + 'Referrer: ' + ([Active Client Referrer]),'') + "
        u"IIF([Active Client Retainer Terms]<>'',"
        u"'\r' + 'Retainer Terms: ' + ([Active Client Retainer Terms]),'') + "
        u"IIF([Active Client Claim Type]<>'',"
        u"'\r' + 'Claim Type: ' + [Active Client Claim Type],'') + "
        u"IIF([Active Client Forum]<>'',"
        u"'\r' + 'Forum: ' + [Active Client Forum],'') + "
        u"IIF([Active Client Claim Number]<>'',"
        u"'\r' + 'Claim Number: '"
        u" + [Active Client Claim Number],'') AS CaseInfo, "
        u"IIF([Active Client Defendant]<>'',"
        u"'\r' + 'Defendant: ' + [Active Client Defendant],'') + "
        u"IIF([Active Client Opposing Attorney]<>'',"
        u"'\r' + 'Opposing Attorney: ' + [Active Client Opposing Attorney],'') + "
        u"IIF([Active Client OPA Telephone]<>'',"
        u"'\r' + 'OPA Telephone: '"
        u" + Format([Active Client OPA Telephone], '(###) ###-####'),'') AS Defendant, "
        u"IIF([Active Client Things To Do]<>'',"
        u"[Active Client Things To Do],'') AS [Things To Do] "
        u"FROM [Active Clients] "
        u"ORDER BY [Client Last Name], [Client First Name]"_s;
    // clang-format on
}

ReportDesign dataReport2Design()
{
    using Kind = ReportSection::Kind;
    // Four columns with a gap between; a head and its rule above each.
    constexpr int kColumn = 2610, kStep = 2730, kLine = 225;
    const auto at = [](int column) { return column * kStep; };
    const auto head = [&](const QString &name, int column, const QString &caption) {
        return label(name, {at(column), 60, kColumn, 240}, caption).in({u"Arial"_s, 9, true});
    };
    const auto rule = [&](const QString &name, int column) {
        return line(name, {at(column), 330, kColumn, 0});
    };
    const auto block = [&](const QString &name, int column, const QString &field) {
        return text(name, {at(column), 60, kColumn, kLine}, field).grows().in({u"Arial"_s, 9, false});
    };
    const int width = at(3) + kColumn;
    return {.Name = u"DataReport2"_s,
            .Caption = u"Active Clients Report"_s,
            .Width = width,
            .margin = 720,
            .sections = {
                {u"Section2"_s,
                 Kind::ReportHeader,
                 540,
                 {label(u"Label4"_s, {0, 60, width, 360}, u"Vardelin Active Clients Report"_s)
                      .centered()
                      .in({u"Arial"_s, 14.25, true})}},
                {u"Section4"_s,
                 Kind::PageHeader,
                 390,
                 {head(u"Label1"_s, 0, u"Client Information"_s), head(u"Label2"_s, 1, u"Case Information"_s),
                  head(u"Label5"_s, 2, u"Defendant"_s), head(u"Label3"_s, 3, u"Priority Things To Do"_s),
                  rule(u"Line1"_s, 0), rule(u"Line2"_s, 1), rule(u"Line3"_s, 2), rule(u"Line4"_s, 3)}},
                {u"Section1"_s,
                 Kind::Detail,
                 375,
                 {block(u"Text1"_s, 0, u"Client"_s), block(u"Text2"_s, 1, u"CaseInfo"_s),
                  block(u"Text4"_s, 2, u"Defendant"_s), block(u"Text3"_s, 3, u"Things To Do"_s)}},
                {u"Section5"_s, Kind::PageFooter, 0},
                {u"Section3"_s, Kind::ReportFooter, 0}}};
}

} // namespace vardelin
