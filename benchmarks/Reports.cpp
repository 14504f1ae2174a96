#include "benchmarks/Reports.h"

#include "benchmarks/Figures.h"
#include "benchmarks/Generate.h"
#include "benchmarks/Painting.h"
#include "benchmarks/QuietProgram.h"
#include "billing/BillingSql.h"
#include "billing/LetterReport.h"
#include "platform/base/Format.h"
#include "platform/report/ReportView.h"
#include "platform/report/ReportWindow.h"
#include "platform/ui/Fonts.h"
#include "search/DataReport1.h"
#include "search/SearchSql.h"

#include <QApplication>
#include <QFile>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>
#include <cstdio>
#include <fstream>
#include <string>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kKilobyte = 1024;

void tell(const char *name, double number)
{
    std::printf("%s %.6f\n", name, number);
}

// The most memory that this program held. getrusage() would tell that of the one that started it, if it held
// more.
void tellPeak()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kilobytes = 0; word == "VmHWM:" && status >> kilobytes)
            tell("peak", kilobytes * kKilobyte);
}

struct Logs
{
    explicit Logs(const char *file,
                  const QString &statement = u"SELECT * FROM Vardelins ORDER BY [Beginning Time]"_s)
    {
        connection.Open(ado::connectionText(QString::fromLocal8Bit(file)));
        rows.Open(statement, connection);
    }
    ado::Connection connection;
    ado::Recordset rows;
};

QString invoiceStatement()
{
    constexpr double kAllTimes = 100'000; // days
    return invoiceSelect(QString::fromUtf16(kClient)) +
           rangeText(Value(DateSerial{0}), Value(DateSerial{kAllTimes}));
}

void showFirstPage(const DataReport &report, QtDialogs &dialogs, ErrorFrame &errors)
{
    ReportWindow window(report, dialogs, errors);
    PaintWatch watch({[&](QWidget *painted) {
        return painted == window.findChild<ReportView *>(u"Pages"_s)->viewport();
    }});
    window.show();
    watch.wait();
}

} // namespace

int makeReport(int argc, char **argv)
{
    QApplication application(argc, argv);
    installFontSubstitutions();
    QtDialogs dialogs;
    ErrorFrame errors(dialogs, [] {});
    const std::int64_t start = nanosecondsNow();
    Logs logs(argv[2]);
    DataReport report(dataReport1Design());
    report.bindTo(logs.rows);
    showFirstPage(report, dialogs, errors);
    tell("first_page", secondsSince(start));
    const FaceMeasurer measurer;
    ReportPages pages(report.design(), report.records(), measurer);
    tell("count", secondsOf([&] { pages.count(); }));
    tell("pages", pages.found());
    tell("pdf", secondsOf([&] {
             ReportPages again(report.design(), report.records(), measurer);
             exportReport(again, QString::fromLocal8Bit(argv[3]), writePdf, [](int, int) { return true; });
         }));
    tellPeak();
    return 0;
}

int makeDocument(int argc, char **argv)
{
    QApplication application(argc, argv);
    installFontSubstitutions();
    Logs logs(argv[2]);
    const std::int64_t start = nanosecondsNow();
    QTextDocument document;
    QFont font(u"Arial"_s);
    font.setPointSizeF(8.25);
    document.setDefaultFont(font);
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    for (; !logs.rows.EOF_(); logs.rows.MoveNext()) {
        const auto field = [&](const QString &name) { return joinText(logs.rows.Fields(name)); };
        cursor.insertText(
            u"Client:\t%1\tProject:\t%2\nEmployee:\t%3\tRate:\t%4\nLog summary:\t%5\nLog:\t"_s.arg(
                field(u"Client"_s), field(u"Project"_s), field(u"Employee"_s), field(u"Rate"_s),
                field(u"Log Summary"_s)));
        cursor.insertText(field(u"Vardelin"_s));
        cursor.insertText(u"\nBeginning Time:\t%1\tEnding Time:\t%2\tDuration:\t%3\n\n"_s.arg(
            field(u"Beginning Time"_s), field(u"Ending Time"_s), field(u"Duration"_s)));
    }
    QPdfWriter writer(QString::fromLocal8Bit(argv[3]));
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(25.4, 25.4, 25.4, 25.4), QPageLayout::Millimeter);
    document.print(&writer);
    tell("pdf", secondsSince(start));
    tellPeak();
    return 0;
}

int makeInvoice(int argc, char **argv)
{
    QApplication application(argc, argv);
    installFontSubstitutions();
    QuietProgram program(QString::fromLocal8Bit(argv[2]));
    program.global.SearchClient = QString::fromUtf16(kClient);
    const std::int64_t start = nanosecondsNow();
    const auto database = program.engine.OpenDatabase(program.global.DatabaseFileName);
    const LetterTexts texts = readLetterTexts(Letter::Invoice, *database, program.global);
    Logs logs(argv[2], invoiceStatement());
    DataReport report =
        letterReport(Letter::Invoice, u"Archer & Archer\r\n12 Court Square"_s, texts, program.global);
    report.bindTo(logs.rows);
    showFirstPage(report, program.dialogs, program.errors);
    tell("first_page", secondsSince(start));
    tell("logs", logs.rows.RecordCount());
    const FaceMeasurer measurer;
    ReportPages pages(report.design(), report.records(), measurer);
    tell("count", secondsOf([&] { pages.count(); }));
    tell("pages", pages.found());
    tellPeak();
    return 0;
}

int makeInvoiceDocument(int argc, char **argv)
{
    QApplication application(argc, argv);
    installFontSubstitutions();
    const std::int64_t start = nanosecondsNow();
    Logs logs(argv[2], invoiceStatement());
    QPlainTextEdit edit;
    edit.setReadOnly(true);
    QTextCursor cursor(edit.document());
    for (; !logs.rows.EOF_(); logs.rows.MoveNext()) {
        const auto field = [&](const QString &name) { return logs.rows.Fields(name); };
        const QString money = u"\"$\"#,##0.00"_s;
        cursor.insertText(u"Employee:\tWhen:\tRate:\tTime (in tenths of an hour):\tFee:\n%1\t%2\t%3\t%4\t%5\n"
                          u"Service provided:\n%6\n\n"_s.arg(
                              joinText(field(u"Employee"_s)),
                              format(field(u"Beginning Time"_s), u"m/d/yy h:nn AM/PM"),
                              format(field(u"Rate"_s), money), joinText(field(u"Duration"_s)),
                              format(field(u"Fee"_s), money), joinText(field(u"Log Summary"_s))));
    }
    edit.moveCursor(QTextCursor::Start);
    PaintWatch watch({[&](QWidget *painted) { return painted == edit.viewport(); }});
    edit.show();
    watch.wait();
    tell("first_page", secondsSince(start));
    tellPeak();
    return 0;
}

} // namespace vardelin::bench
