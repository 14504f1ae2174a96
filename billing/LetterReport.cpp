#include "billing/LetterReport.h"

#include "platform/base/Format.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

using Kind = ReportSection::Kind;

const QString kMoney = u"\"$\"#,##0.00"_s;
const ReportFont kStationery{.Name = u"Arial"_s, .Size = 14.25};
const ReportFont kInvoiceText{.Name = u"Arial"_s, .Size = 9};

ReportControl small(ReportControl control)
{
    return std::move(control).in(kInvoiceText);
}

} // namespace

ReportDesign dataReport3Design()
{
    return {
        .Name = u"DataReport3"_s,
        .Caption = u"Invoice"_s,
        .Width = 9360,
        .sections = {
            {.Name = u"Section4"_s,
             .kind = Kind::ReportHeader,
             .Height = 1440,
             .controls = {label(u"Label1"_s, {144, 0, 9060, 285}, u"Stationery"_s).in(kStationery).grows(),
                          label(u"Label2"_s, {144, 288, 9072, 285}, u"Date"_s).grows(),
                          label(u"Label3"_s, {144, 576, 9072, 285}, u"Client"_s).grows(),
                          label(u"Label4"_s, {144, 864, 9072, 285}, u"Re Line"_s).grows(),
                          label(u"Label5"_s, {144, 1152, 9072, 288}, u"Greeting"_s).grows()}},
            {.Name = u"Section2"_s, .kind = Kind::PageHeader},
            {.Name = u"Section1"_s,
             .kind = Kind::Detail,
             .Height = 1755,
             .controls = {label(u"Label8"_s, {144, 288, 1155, 300}, u"Employee:"_s),
                          label(u"Label13"_s, {2880, 288, 870, 300}, u"When:"_s),
                          label(u"Label9"_s, {4608, 288, 720, 300}, u"Rate:"_s),
                          label(u"Label10"_s, {5472, 288, 2160, 300}, u"Time (in tenths of an hour):"_s),
                          label(u"Label11"_s, {7632, 288, 1005, 300}, u"Fee:"_s),
                          small(text(u"Text1"_s, {144, 576, 2448, 240}, u"Employee"_s)),
                          small(text(u"Text2"_s, {2880, 576, 1728, 240}, u"Beginning Time"_s,
                                     u"m/d/yy h:nn AM/PM"_s)),
                          small(text(u"Text3"_s, {4608, 576, 864, 240}, u"Rate"_s, kMoney)),
                          small(text(u"Text4"_s, {5472, 576, 1440, 240}, u"Duration"_s)),
                          small(text(u"Text5"_s, {7632, 576, 1008, 240}, u"Fee"_s, kMoney)),
                          label(u"Label7"_s, {144, 864, 2880, 285}, u"Service provided:"_s),
                          small(text(u"Text6"_s, {144, 1152, 8490, 240}, u"Log Summary"_s))}},
            {.Name = u"Section3"_s,
             .kind = Kind::PageFooter,
             .Height = 555,
             .controls = {small(label(u"Label14"_s, {144, 144, 8496, 288}, u"Page %p of %p"_s).centered())}},
            {.Name = u"Section5"_s,
             .kind = Kind::ReportFooter,
             .Height = 1770,
             .controls = {label(u"Label12"_s, {5904, 288, 1440, 285}, u"Total:"_s),
                          small(sum(u"Function1"_s, {7632, 288, 1005, 240}, u"Fee"_s, kMoney)),
                          label(u"Label6"_s, {144, 1008, 9060, 300}, u"Closing"_s).grows()}}}};
}

ReportDesign dataReport4Design()
{
    return {
        .Name = u"DataReport4"_s,
        .Caption = u"Statement of disbursements"_s,
        .Width = 9360,
        .sections = {
            {.Name = u"Section4"_s,
             .kind = Kind::ReportHeader,
             .Height = 1785,
             .controls =
                 {label(u"Label1"_s, {144, 0, 9072, 432}, u"Stationery"_s).in(kStationery).centered().grows(),
                  label(u"Label2"_s, {144, 576, 9072, 288}, {}).grows(),
                  label(u"Label3"_s, {144, 864, 9072, 288}, {}).grows(),
                  label(u"Label4"_s, {144, 1152, 9072, 300}, {}).grows(),
                  label(u"Label5"_s, {144, 1440, 9072, 285}, {}).grows()}},
            {.Name = u"Section2"_s, .kind = Kind::PageHeader},
            {.Name = u"Section1"_s,
             .kind = Kind::Detail,
             .Height = 840,
             .controls = {text(u"Text1"_s, {144, 144, 8496, 288}, u"Disbursement Description"_s),
                          text(u"Text2"_s, {144, 432, 4020, 300}, u"Disbursement Payee"_s),
                          text(u"Text3"_s, {4320, 432, 2595, 300}, u"Disbursement Date"_s, u"MMMM d, yyyy"_s),
                          text(u"Text4"_s, {7200, 432, 1725, 300}, u"Disbursement Amount"_s, kMoney)}},
            {.Name = u"Section3"_s,
             .kind = Kind::PageFooter,
             .Height = 360,
             .controls = {label(u"Label7"_s, {144, 0, 9072, 288}, {}).centered()}},
            {.Name = u"Section5"_s,
             .kind = Kind::ReportFooter,
             .Height = 1710,
             .controls = {label(u"Label8"_s, {4896, 432, 1875, 240}, u"Total Disbursements:"_s).right(),
                          sum(u"Function1"_s, {7200, 432, 1440, 240}, u"Disbursement Amount"_s, kMoney),
                          label(u"Label6"_s, {144, 864, 9060, 285}, {}).grows()}}}};
}

ReportDesign dataReport5Design()
{
    return {
        .Name = u"DataReport5"_s,
        .Caption = u"Statement of payments"_s,
        .Width = 9345,
        .sections = {{.Name = u"Section4"_s,
                      .kind = Kind::ReportHeader,
                      .Height = 1800,
                      .controls = {label(u"Label1"_s, {144, 144, 9060, 285}, u"Stationery"_s)
                                       .in(kStationery)
                                       .centered()
                                       .grows(),
                                   label(u"Label2"_s, {144, 576, 9072, 285}, {}).grows(),
                                   label(u"Label3"_s, {144, 864, 9072, 285}, {}).grows(),
                                   label(u"Label4"_s, {144, 1152, 9072, 285}, {}).grows(),
                                   label(u"Label5"_s, {144, 1440, 9072, 285}, {}).grows()}},
                     {.Name = u"Section2"_s, .kind = Kind::PageHeader},
                     {.Name = u"Section1"_s,
                      .kind = Kind::Detail,
                      .Height = 495,
                      .controls = {text(u"Text1"_s, {144, 144, 3312, 288}, u"Payment Description"_s),
                                   text(u"Text2"_s, {3600, 144, 2736, 288}, u"Payment Date"_s, u"M/d/yyyy"_s),
                                   text(u"Text3"_s, {7200, 144, 2007, 285}, u"Payment Amount"_s, kMoney)}},
                     {.Name = u"Section3"_s,
                      .kind = Kind::PageFooter,
                      .Height = 435,
                      .controls = {label(u"Label7"_s, {144, 144, 9072, 288}, {}).centered()}},
                     {.Name = u"Section5"_s,
                      .kind = Kind::ReportFooter,
                      .Height = 1650,
                      .controls = {label(u"Label8"_s, {4176, 432, 2595, 240}, u"Payments Total:"_s).right(),
                                   sum(u"Function1"_s, {7200, 432, 2010, 240}, u"Payment Amount"_s, kMoney),
                                   label(u"Label6"_s, {144, 1152, 9060, 285}, {}).grows()}}}};
}

LetterTexts readLetterTexts(Letter kind, dao::Database &database, Global &global)
{
    const SplitName name = splitClient(global.SearchClient);
    global.ClientLastName = name.last;
    global.ClientFirstName = name.first;
    return letterTexts(kind, name, findLetterClient(database, name));
}

namespace {

ReportDesign designOf(Letter kind)
{
    switch (kind) {
    case Letter::Invoice:
        return dataReport3Design();
    case Letter::Disbursements:
        return dataReport4Design();
    case Letter::Payments:
        break;
    }
    return dataReport5Design();
}

double pointsOf(const FontSetting &font)
{
    return toDouble(Value(font.size));
}

// Whole points, whatever fraction the setting has.
double wholePointsOf(const FontSetting &font)
{
    return toInteger(Value(font.size));
}

void setFont(ReportSection &section, const FontSetting &font, double (*points)(const FontSetting &))
{
    if (!font.name.isEmpty())
        section.setFont(font.name, points(font));
}

void setWords(DataReport &report, const QString &letterhead, const LetterTexts &texts, DateSerial today)
{
    const QString lineEnd = u"\r\n"_s, twoLineEnds = lineEnd + lineEnd;
    ReportSection &header = report.Sections(u"Section4"_s);
    header.Controls(u"Label1"_s).Caption = letterhead + lineEnd;
    header.Controls(u"Label2"_s).Caption = format(today, u"mmmm d, yyyy") + twoLineEnds;
    header.Controls(u"Label3"_s).Caption = texts.AddressBlock + twoLineEnds;
    header.Controls(u"Label4"_s).Caption = texts.ReLineText + twoLineEnds;
    header.Controls(u"Label5"_s).Caption = texts.GreetingText + twoLineEnds;
    report.Sections(u"Section5"_s).Controls(u"Label6"_s).Caption = texts.ClosingText + twoLineEnds;
}

} // namespace

// The order of the fonts is what tells the letters apart: the letterhead's comes first, so that a report font
// overrides it, and on statements it comes again at the end. The invoice takes whole points for letterhead
// and details.
DataReport letterReport(Letter kind, const QString &letterhead, const LetterTexts &texts,
                        const Global &global)
{
    DataReport report(designOf(kind));
    ReportFont &stationery = report.Sections(u"Section4"_s).Controls(u"Label1"_s).Font;
    const FontSetting &own = global.DefaultLetterheadFont;
    if (!own.name.isEmpty())
        stationery.Name = own.name;
    if (kind == Letter::Invoice && !own.size.isEmpty())
        stationery.Size = wholePointsOf(own);
    setWords(report, letterhead, texts, global.services.clock.now());
    if (kind != Letter::Invoice)
        report.Sections(u"Section3"_s).Controls(u"Label7"_s).Caption = u"Page %p"_s;
    setFont(report.Sections(u"Section1"_s), global.DefaultVardelinFont,
            kind == Letter::Invoice ? wholePointsOf : pointsOf);
    setFont(report.Sections(u"Section4"_s), global.DefaultReportFont, pointsOf);
    setFont(report.Sections(u"Section5"_s), global.DefaultReportFont, pointsOf);
    if (kind != Letter::Invoice && !own.name.isEmpty()) {
        stationery.Name = own.name;
        stationery.Size = pointsOf(own);
    }
    return report;
}

} // namespace vardelin
