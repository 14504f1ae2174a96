#include "benchmarks/SaveCost.h"

#include "benchmarks/Figures.h"
#include "benchmarks/QuietProgram.h"
#include "entry/SaveLog.h"
#include "platform/jet/Jet.h"
#include "tests/support/RecordingDisk.h"

#include <QFile>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

using jet::test::MemoryDisk;
using jet::test::RecordingDisk;
using Steps = std::vector<RecordingDisk::Step>;

const std::filesystem::path kInMemory = "/office.mdb";

LogRecord someLog()
{
    const QString notes = u"Telephone conference with opposing counsel about the schedule. "_s.repeated(10);
    return {.client = u"Hollister, Margaret"_s,
            .employee = u"Weaver, Anna"_s,
            .rate = u"200"_s,
            .summary = u"Telephone conference"_s,
            .notes = notes,
            .notesRtf = u"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Sans;}}\\pard\\f0\\fs24 "_s + notes +
                        u"\\par}"_s,
            .begin = {46'000.5},
            .end = {46'000.6}};
}

jet::Bytes contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("a generated file can't be read");
    const QByteArray all = file.readAll();
    const auto bytes = std::as_bytes(std::span(all.constData(), static_cast<std::size_t>(all.size())));
    return {bytes.begin(), bytes.end()};
}

// The last row of the table, ready to be added once more.
std::vector<jet::ColumnValue> lastRow(jet::Table &table)
{
    std::vector<jet::ColumnValue> values;
    for (jet::Cursor cursor = table.scan(); !cursor.atEnd(); cursor.next()) {
        values.clear();
        for (std::size_t column = 0; column < table.columns().size(); ++column) {
            if (!table.columns()[column].autoNumber)
                values.emplace_back(column, cursor.view().cell(column));
        }
    }
    return values;
}

// What the engine does to the disk when the last log of the file is added again, and again.
std::vector<Steps> tracesOf(const QString &path, int saves)
{
    MemoryDisk memory;
    memory.put(kInMemory, contentOf(path));
    RecordingDisk disk(memory);
    const auto file = jet::File::open(kInMemory, {}, disk);
    jet::Table &logs = file->table(u"Vardelins");
    const std::vector<jet::ColumnValue> row = lastRow(logs);
    std::vector<Steps> traces;
    for (int i = 0; i < saves; ++i) {
        const std::size_t before = disk.steps().size();
        logs.insert(row);
        traces.emplace_back(disk.steps().begin() + static_cast<std::ptrdiff_t>(before), disk.steps().end());
    }
    return traces;
}

void check(bool good, const char *what)
{
    if (!good)
        throw std::runtime_error(what);
}

// Does the steps of a trace with plain system calls: to a copy of the file, and to a journal beside it.
class PlainDisk
{
public:
    explicit PlainDisk(const QString &file)
        : m_journalPath((file + "-journal"_L1).toLocal8Bit()),
          m_folderPath(file.left(file.lastIndexOf(u'/')).toLocal8Bit()),
          m_file(::open(file.toLocal8Bit(), O_RDWR | O_CLOEXEC))
    {
        check(m_file >= 0, "open");
    }
    ~PlainDisk() { ::close(m_file); }
    PlainDisk(const PlainDisk &) = delete;
    PlainDisk &operator=(const PlainDisk &) = delete;

    void play(const Steps &trace)
    {
        for (const RecordingDisk::Step &step : trace)
            play(step);
    }

private:
    void play(const RecordingDisk::Step &step)
    {
        const int file = step.file == m_journalNumber ? m_journal : m_file;
        switch (step.kind) {
        case RecordingDisk::Kind::Create:
            m_journal = ::open(m_journalPath, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            m_journalNumber = step.file;
            return check(m_journal >= 0, "create");
        case RecordingDisk::Kind::Write:
            return check(::pwrite(file, step.bytes.data(), step.bytes.size(), static_cast<off_t>(step.at)) ==
                             static_cast<ssize_t>(step.bytes.size()),
                         "write");
        case RecordingDisk::Kind::Sync:
            return check(::fdatasync(file) == 0, "sync");
        case RecordingDisk::Kind::SyncFolder:
            return syncFolder();
        case RecordingDisk::Kind::Remove:
            ::close(m_journal);
            return check(::unlink(m_journalPath) == 0, "unlink");
        case RecordingDisk::Kind::Truncate:
            return check(::ftruncate(file, static_cast<off_t>(step.at)) == 0, "truncate");
        case RecordingDisk::Kind::Rename:
            break;
        }
        check(false, "a step that saving isn't known to take");
    }

    void syncFolder() const
    {
        const int folder = ::open(m_folderPath, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        check(folder >= 0 && ::fsync(folder) == 0, "sync of the folder");
        ::close(folder);
    }

    QByteArray m_journalPath, m_folderPath;
    int m_file = -1;
    int m_journal = -1;
    std::uint64_t m_journalNumber = 0;
};

} // namespace

SaveCost measureSaves(const QString &path, int saves)
{
    QuietProgram program(path);
    Global &global = program.global;
    const LogRecord log = someLog();
    saveLog(global, log); // once ahead, for the traces to be of this very log

    const std::vector<Steps> traces = tracesOf(path, saves);
    const QString copy = path + ".copy"_L1;
    check(QFile::copy(path, copy), "copy");
    ::sync(); // so that nobody pays for the copy's pages
    PlainDisk plain(copy);
    std::vector<double> saved, raw;
    for (const Steps &trace : traces) { // in turn, so that both meet the same state of the disk
        saved.push_back(secondsOf([&] { saveLog(global, log); }));
        raw.push_back(secondsOf([&] { plain.play(trace); }));
    }
    QFile::remove(copy);
    return {median(saved), median(raw)};
}

} // namespace vardelin::bench
