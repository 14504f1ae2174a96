// vardelin-bench [FOLDER]: measures what a user waits for. Prints "name seconds" lines, then "goal" lines: a
// name, what was reached, and the goal. FOLDER, for the files that it makes and removes again, should lie on
// a disk and not in memory; the program's own is taken where none is given.

#include "benchmarks/Children.h"
#include "benchmarks/Contacts.h"
#include "benchmarks/Figures.h"
#include "benchmarks/Generate.h"
#include "benchmarks/Reports.h"
#include "benchmarks/SaveCost.h"
#include "benchmarks/ToDo.h"
#include "benchmarks/Transfer.h"
#include "platform/system/Settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <cstring>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

using namespace vardelin;
using namespace vardelin::bench;

constexpr int kLogs = 100'000;
constexpr int kStarts = 15;
constexpr int kSaves = 101;
constexpr int kReportLogs = 10'000;
constexpr int kInvoicedLogs = 21'000; // of which the client of the invoice has a few more than 500
constexpr int kReports = 3;
constexpr int kClients = 5'000;
constexpr int kClosed = 1'000;
constexpr double kMegabyte = 1'000'000;

void tell(const char *name, double seconds)
{
    std::printf("%-32s %.6f\n", name, seconds);
    std::fflush(stdout);
}

void tellGoal(const char *name, double reached, double goal)
{
    std::printf("goal %-32s %.3f (at most %.1f: %s)\n", name, reached, goal,
                reached <= goal ? "met" : "missed");
}

// One run of this program in a process of its own; its lines by name.
QMap<QByteArray, double> runChild(const QStringList &arguments)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForFinished(60'000) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        throw std::runtime_error("a process under measurement failed");
    QMap<QByteArray, double> lines;
    for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
        if (const qsizetype blank = line.indexOf(' '); blank > 0)
            lines[line.left(blank)] = line.mid(blank + 1).toDouble();
    }
    return lines;
}

// The next start finds this file, and no tip.
void chooseFile(const QString &path)
{
    const std::unique_ptr<Settings> settings = userSettings();
    settings->SaveSetting(u"DefaultLogFile"_s, u"Default Log File"_s, path);
    settings->SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
}

double secondsToPaint(const QString &what, int expectedRecords)
{
    const std::int64_t start = nanosecondsNow();
    const QMap<QByteArray, double> lines = runChild({what});
    if (lines.value("records", 0) != expectedRecords)
        throw std::runtime_error("the program doesn't show the file");
    return (lines.value("painted") - static_cast<double>(start)) * 1e-9;
}

void measureStarts(const QString &empty, const QString &large)
{
    std::vector<double> bareTimes, menuTimes, emptyTimes, largeTimes;
    for (int i = 0; i <= kStarts; ++i) {
        const double bare = secondsToPaint(u"--bare-window"_s, 0);
        const double withMenu = secondsToPaint(u"--bare-window-menu"_s, 0);
        chooseFile(empty);
        const double onEmpty = secondsToPaint(u"--program"_s, 0);
        chooseFile(large);
        const double onLarge = secondsToPaint(u"--program"_s, kLogs);
        if (i == 0)
            continue; // warms up
        bareTimes.push_back(bare);
        menuTimes.push_back(withMenu);
        emptyTimes.push_back(onEmpty);
        largeTimes.push_back(onLarge);
    }
    tell("start_bare_window", median(bareTimes));
    tell("start_bare_window_with_menu", median(menuTimes));
    tell("start_empty_file", median(emptyTimes));
    tell("start_100000_logs", median(largeTimes));
    tellGoal("start_empty_file/bare", median(emptyTimes) / median(bareTimes), 1.5);
    tellGoal("start_100000_logs/bare", median(largeTimes) / median(bareTimes), 1.5);
}

void measureDisplay(const QString &large)
{
    chooseFile(large);
    const QMap<QByteArray, double> lines = runChild({u"--display"_s});
    for (const char *name : {"open_display", "search_rare_word", "search_common_word", "first_record",
                             "next_record", "previous_record"})
        tell(qPrintable(QString::fromLatin1(name) + "_100000_logs"_L1), lines[name]);
    tellGoal("open_display_100000_logs", lines["open_display"], 0.3);
    tellGoal("search_rare_word_100000_logs", lines["search_rare_word"], 0.5);
    tellGoal("search_common_word_100000_logs", lines["search_common_word"], 0.5);
}

// The middle of some runs, by name.
QMap<QByteArray, double> medianOfChildren(const QStringList &arguments)
{
    QMap<QByteArray, std::vector<double>> runs;
    for (int i = 0; i < kReports; ++i) {
        const QMap<QByteArray, double> lines = runChild(arguments);
        for (auto line = lines.begin(); line != lines.end(); ++line)
            runs[line.key()].push_back(line.value());
    }
    QMap<QByteArray, double> middle;
    for (auto run = runs.begin(); run != runs.end(); ++run)
        middle[run.key()] = median(run.value());
    return middle;
}

void measureReport(const QString &file, const QString &pdf)
{
    const QMap<QByteArray, double> report = medianOfChildren({u"--report"_s, file, pdf});
    const QMap<QByteArray, double> document = medianOfChildren({u"--report-document"_s, file, pdf});
    tell("report_first_page_10000_logs", report["first_page"]);
    tell("report_count_10000_logs", report["count"]);
    tell("report_pdf_10000_logs", report["pdf"]);
    tell("document_pdf_10000_logs", document["pdf"]);
    std::printf("memory at most: report of %.0f pages %.1f MB, document %.1f MB\n", report["pages"],
                report["peak"] / kMegabyte, document["peak"] / kMegabyte);
    tellGoal("report_first_page_10000_logs", report["first_page"], 0.3);
    tellGoal("report_pdf_10000_logs", report["pdf"], 3.0);
    tellGoal("report_megabytes", report["peak"] / kMegabyte, 100);
}

void measureToDo(const QString &file)
{
    const QMap<QByteArray, double> lines = runChild({u"--todo"_s, file});
    for (const char *name : {"load", "sort", "write_back"})
        tell(qPrintable(u"todo_5000_"_s + QString::fromLatin1(name)), lines[name]);
    for (const char *name : {"load", "sort", "write_back"})
        tellGoal(qPrintable(u"todo_5000_"_s + QString::fromLatin1(name)), lines[name], 1.0);
}

void measureContacts(const QString &file)
{
    const QMap<QByteArray, double> lines = runChild({u"--contacts"_s, file});
    for (const char *name :
         {"open_contacts", "open_inactive", "display_inactive", "contacts_report_first_page"})
        tell(qPrintable(QString::fromLatin1(name) + "_5000_clients"_L1), lines[name]);
    tellGoal("open_contacts_5000_clients", lines["open_contacts"], 0.2);
    tellGoal("contacts_report_first_page_5000", lines["contacts_report_first_page"], 0.5);
}

void measureInvoice(const QString &file)
{
    const QMap<QByteArray, double> invoice = medianOfChildren({u"--invoice"_s, file});
    const QMap<QByteArray, double> document = medianOfChildren({u"--invoice-document"_s, file});
    if (invoice["logs"] < 500)
        throw std::runtime_error("the invoice has too few logs");
    tell("invoice_first_page_500_logs", invoice["first_page"]);
    tell("invoice_count_500_logs", invoice["count"]);
    tell("document_shown_500_logs", document["first_page"]);
    std::printf("memory at most: invoice of %.0f pages %.1f MB, document %.1f MB\n", invoice["pages"],
                invoice["peak"] / kMegabyte, document["peak"] / kMegabyte);
    tellGoal("invoice_first_page_500_logs", invoice["first_page"], 0.3);
}

void measureTransfer(const QString &file, const QString &other)
{
    const QMap<QByteArray, double> lines = runChild({u"--transfer"_s, file, other});
    tell("export_100000_logs", lines["export"]);
    tell("import_100000_logs", lines["import"]);
    if (lines.contains("sqlite_copy"))
        tell("sqlite_copy_100000_logs", lines["sqlite_copy"]);
    tellGoal("export_100000_logs", lines["export"], 3.0);
    tellGoal("import_100000_logs", lines["import"], 3.0);
}

void measureSave(const QString &file)
{
    const SaveCost cost = measureSaves(file, kSaves);
    tell("save_one_log", cost.save);
    tell("save_raw_pattern", cost.raw);
    tellGoal("save_one_log/raw", cost.save / cost.raw, 2.0);
}

int measureAll(const QString &folder)
{
    QTemporaryDir files(QDir(folder).absoluteFilePath(u"vardelin-bench-XXXXXX"_s));
    if (!files.isValid())
        throw std::runtime_error("the folder can't be written");
    // Neither the user's settings nor the user's files are touched.
    qputenv("XDG_CONFIG_HOME", files.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", files.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", files.path().toLocal8Bit());
    const QString empty = files.filePath(u"empty.mdb"_s);
    const QString small = files.filePath(u"small.mdb"_s);
    const QString large = files.filePath(u"large.mdb"_s);
    generate(empty, 0);
    generate(small, 1000);
    tell("generate_100000_logs", secondsOf([&] { generate(large, kLogs); }));
    measureSave(small);
    measureStarts(empty, large);
    measureDisplay(large);
    measureTransfer(large, files.filePath(u"transferred.mdb"_s));
    const QString middle = files.filePath(u"middle.mdb"_s);
    generate(middle, kReportLogs);
    measureReport(middle, files.filePath(u"report.pdf"_s));
    measureToDo(files.filePath(u"todo.mdb"_s));
    const QString clients = files.filePath(u"clients.mdb"_s);
    generateClients(clients, kClients, kClosed);
    measureContacts(clients);
    const QString invoiced = files.filePath(u"invoiced.mdb"_s);
    generate(invoiced, kInvoicedLogs);
    measureInvoice(invoiced);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const char *argument = argc > 1 ? argv[1] : "";
    try {
        if (std::strcmp(argument, "--program") == 0)
            return startProgram(argc, argv);
        if (std::strcmp(argument, "--bare-window") == 0)
            return startBareWindow(argc, argv, false);
        if (std::strcmp(argument, "--bare-window-menu") == 0)
            return startBareWindow(argc, argv, true);
        if (std::strcmp(argument, "--display") == 0)
            return useDisplay(argc, argv);
        if (argc > 2 && std::strcmp(argument, "--contacts") == 0)
            return useContacts(argc, argv);
        if (argc > 3 && std::strcmp(argument, "--report") == 0)
            return makeReport(argc, argv);
        if (argc > 3 && std::strcmp(argument, "--report-document") == 0)
            return makeDocument(argc, argv);
        if (argc > 2 && std::strcmp(argument, "--todo") == 0)
            return useToDo(argc, argv);
        if (argc > 3 && std::strcmp(argument, "--transfer") == 0)
            return transferLogs(argc, argv);
        if (argc > 2 && std::strcmp(argument, "--invoice") == 0)
            return makeInvoice(argc, argv);
        if (argc > 2 && std::strcmp(argument, "--invoice-document") == 0)
            return makeInvoiceDocument(argc, argv);
        QCoreApplication application(argc, argv);
        return measureAll(argc > 1 ? QString::fromLocal8Bit(argument)
                                   : QCoreApplication::applicationDirPath());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
