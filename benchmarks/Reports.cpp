#include "benchmarks/Reports.h"

#include "benchmarks/Figures.h"
#include "benchmarks/Painting.h"
#include "platform/report/ReportView.h"
#include "platform/report/ReportWindow.h"
#include "platform/ui/Fonts.h"
#include "search/DataReport1.h"

#include <QApplication>
#include <QFile>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <cstdio>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kKilobyte = 1024;

void tell(const char *name, double number)
{
    std::printf("%s %.6f\n", name, number);
}

void tellPeak()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    tell("peak", static_cast<double>(usage.ru_maxrss) * kKilobyte);
}

struct Logs
{
    explicit Logs(const char *file)
    {
        connection.Open(ado::connectionText(QString::fromLocal8Bit(file)));
        rows.Open(u"SELECT * FROM Vardelins ORDER BY [Beginning Time]"_s, connection);
    }
    ado::Connection connection;
    ado::Recordset rows;
};

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
    report.setDataSource(&logs.rows);
    report.Refresh();
    {
        ReportWindow window(report, dialogs, errors);
        PaintWatch watch({[&](QWidget *painted) {
            return painted == window.findChild<ReportView *>(u"Pages"_s)->viewport();
        }});
        window.show();
        watch.wait();
        tell("first_page", secondsSince(start));
    }
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

} // namespace vardelin::bench
