// vardelin-compare [FOLDER] [LOGS...]: times our operations beside SQLite's and mdbtools' on the same rows,
// in turn, and a plain pass over the file's bytes. Prints a table for each number of logs (1000 and 100000
// where none is given). FOLDER, for the files that it makes and removes again, should lie on a disk.

#include "benchmarks/Figures.h"
#include "benchmarks/Generate.h"
#include "benchmarks/Operations.h"
#include "benchmarks/Sqlite.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using namespace vardelin::bench;

struct Row
{
    std::string_view operation;
    double goal;      // ours divided by SQLite's; 0: none
    int times;        // of each, in turn; the shortest counts
    const char *peer; // what mdbtools has for it, with FILE for the file; null: nothing
};

constexpr Row kRows[] = {
    {"open_lists", 1.0, 41,
     "mdb-export FILE 'Active Clients'; mdb-export FILE Employees; mdb-export FILE Projects; mdb-export FILE "
     "Rates; "
     "mdb-export FILE Activities"},
    {"scan_all", 0.35, 9, "mdb-export FILE Vardelins"},
    {"count_client", 0.2, 15,
     "echo \"select Client from Vardelins where Client = 'Hollister, Margaret'\" | mdb-sql FILE"},
    {"like_rare", 0.5, 9,
     "echo \"select Client from Vardelins where Vardelin like '%ESTOPPEL%'\" | mdb-sql FILE"},
    {"like_common", 0.5, 9,
     "echo \"select Client from Vardelins where Vardelin like '%SUBPOENA%'\" | mdb-sql FILE"},
    {"order_last", 0.25, 15, nullptr},
    {"insert_one", 1.2, 101, nullptr},
    {"insert_1k_each", 1.2, 3, nullptr},
    {"insert_10k", 2.0, 5, nullptr},
    {"update_memo", 1.2, 101, nullptr},
    {"delete_row", 1.2, 101, nullptr},
    {"export_client", 0.6, 7, nullptr},
    {"compact", 1.2, 3, nullptr}};

// The shortest of many; elapsed time and processor time each by itself.
struct Best
{
    Figures figures{1e9, 1e9};
    Check check;

    void add(const std::function<void()> &work)
    {
        const Figures now = figuresOf(work);
        figures.seconds = std::min(figures.seconds, now.seconds);
        figures.cpuSeconds = std::min(figures.cpuSeconds, now.cpuSeconds);
    }
};

void fail(const QString &what)
{
    throw std::runtime_error(what.toStdString());
}

QString toNewName(const QString &from, const QString &to)
{
    QFile::remove(to);
    if (!QFile::copy(from, to))
        fail(u"no copy of "_s + from);
    return to;
}

// Every byte once, and nothing done with it.
void passOver(const QString &path, int into)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path);
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    std::uint64_t sum = 0;
    while (const qint64 count = file.read(buffer.data(), buffer.size())) {
        if (count < 0 ||
            (into >= 0 && ::write(into, buffer.constData(), static_cast<std::size_t>(count)) != count))
            fail(path);
        for (qint64 at = 0; at + 8 <= count; at += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, buffer.constData() + at, sizeof word);
            sum += word;
        }
    }
    volatile std::uint64_t kept = sum;
    static_cast<void>(kept);
}

void copyOver(const QString &path, const QString &out)
{
    const int copy =
        ::open(QFile::encodeName(out).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    passOver(path, copy);
    const bool synced = ::fdatasync(copy) == 0;
    ::close(copy);
    if (!synced)
        fail(out);
}

double floorOf(const Row &row, Operation::Kind kind, const QString &file, const QString &out)
{
    Best best;
    for (int i = 0; i < 3; ++i) {
        if (row.operation == "compact")
            best.add([&] { copyOver(file, out); });
        else if (kind == Operation::Kind::Reads && row.operation != "open_lists")
            best.add([&] { passOver(file, -1); });
        else
            return 0;
    }
    return best.figures.seconds;
}

double peerOf(const Row &row, const QString &file)
{
    if (!row.peer)
        return 0;
    const QString command = QString::fromUtf8(row.peer).replace(u"FILE"_s, u'"' + file + u'"');
    Best best;
    for (int i = 0; i < 3; ++i) {
        best.add([&] {
            QProcess process;
            process.setStandardOutputFile(QProcess::nullDevice());
            process.start(u"sh"_s, {u"-c"_s, command});
            if (!process.waitForFinished(600'000) || process.exitCode() != 0)
                fail(u"mdbtools: "_s + QString::fromUtf8(process.readAllStandardError()));
        });
    }
    return best.figures.seconds;
}

void print(const char *format, double value)
{
    value == 0 ? std::printf(" %11s", "-") : std::printf(format, value);
}

// Ours and SQLite's in turn, so that both have the same weather.
void compare(const Row &row, const QString &folder, const QString &mdb, const QString &sqlite)
{
    const Operation &operation = *findOperation(row.operation);
    const bool writes = operation.kind == Operation::Kind::Writes;
    const QString ours = writes ? toNewName(mdb, folder + u"/work.mdb"_s) : mdb;
    const QString theirs = writes ? toNewName(sqlite, folder + u"/work.sqlite"_s) : sqlite;
    const QString oursOut = folder + u"/out.mdb"_s, theirsOut = folder + u"/out.sqlite"_s;
    const bool large = QFile(mdb).size() > 1'000'000'000;
    const int times = large ? std::min(row.times, 3) : row.times;
    Best our, their;
    for (int i = 0; i < times; ++i) {
        QFile::remove(oursOut);
        QFile::remove(theirsOut);
        our.add([&] { our.check = operation.run(ours, oursOut); });
        their.add([&] { their.check = runInSqlite(row.operation, theirs, theirsOut); });
        if (our.check != their.check)
            fail(u"different results of "_s + QString::fromUtf8(row.operation.data()));
    }
    const double ratio = our.figures.seconds / their.figures.seconds;
    std::printf("%-15s %11.6f %11.6f %11.6f %11.6f %7.2f %5.2f %-6s", row.operation.data(),
                our.figures.seconds, our.figures.cpuSeconds, their.figures.seconds, their.figures.cpuSeconds,
                ratio, row.goal, ratio <= row.goal ? "met" : "missed");
    print(" %11.6f", peerOf(row, mdb));
    print(" %11.6f", floorOf(row, operation.kind, mdb, oursOut));
    std::printf("\n");
    std::fflush(stdout);
    for (const QString &made : {oursOut, theirsOut, folder + u"/work.mdb"_s, folder + u"/work.sqlite"_s})
        QFile::remove(made);
}

// MiB of memory of its own that a process has now: neither the mapped file nor the libraries.
double ownMemory(qint64 process)
{
    QFile status(u"/proc/%1/status"_s.arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray all = status.readAll();
    const qsizetype at = all.indexOf("RssAnon:");
    return at < 0 ? 0 : all.mid(at + 8, all.indexOf("kB", at) - at - 8).trimmed().toDouble() / 1024;
}

double memoryOf(const char *operation, const QString &mdb, const QString &out)
{
    QFile::remove(out);
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + u"/vardelin-operations"_s,
                  {mdb, QString::fromUtf8(operation), u"1"_s, out});
    double most = 0;
    while (!process.waitForFinished(1) && process.state() != QProcess::NotRunning)
        most = std::max(most, ownMemory(process.processId()));
    if (process.exitCode() != 0)
        fail(u"a process under measurement failed"_s);
    QFile::remove(out);
    return most;
}

void compareAll(const QString &folder, int logs)
{
    const QString mdb = folder + u"/office.mdb"_s, sqlite = folder + u"/office.sqlite"_s;
    generate(mdb, logs);
    copyToSqlite(mdb, sqlite);
    std::printf("\n%d logs: %.1f MB, in SQLite %.1f MB. Seconds, the shortest of several.\n", logs,
                static_cast<double>(QFile(mdb).size()) / 1e6,
                static_cast<double>(QFile(sqlite).size()) / 1e6);
    std::printf("%-15s %11s %11s %11s %11s %7s %5s %-6s %11s %11s\n", "operation", "ours", "processor",
                "SQLite", "processor", "ratio", "goal", "", "mdbtools", "bytes alone");
    for (const Row &row : kRows)
        compare(row, folder, mdb, sqlite);
    std::printf("memory of its own, MiB (the most at any moment, without mapped pages):\n");
    for (const char *operation : {"open_lists", "scan_all", "like_common", "order_last", "compact"})
        std::printf("  %s %.0f", operation, memoryOf(operation, mdb, folder + u"/out.mdb"_s));
    std::printf("\n");
    std::fflush(stdout);
    QFile::remove(mdb);
    QFile::remove(sqlite);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString folder = argc > 1 ? QFile::decodeName(argv[1]) : QCoreApplication::applicationDirPath();
    try {
        const QTemporaryDir files(QDir(folder).absoluteFilePath(u"vardelin-compare-XXXXXX"_s));
        if (!files.isValid())
            throw std::runtime_error("the folder can't be written");
        for (int i = 2; i < argc; ++i)
            compareAll(files.path(), std::max(1, std::atoi(argv[i])));
        for (const int logs : {1'000, 100'000}) {
            if (argc < 3)
                compareAll(files.path(), logs);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
