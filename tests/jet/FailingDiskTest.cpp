// Whatever the disk refuses, and whenever: an operation is done whole or not at all, and the opened file
// serves on.

#include "platform/jet/Salvage.h"
#include "tests/jet/RowFixtures.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/MemoryDisk.h"

namespace vardelin::jet::test {
namespace {

using namespace std::string_literals;

constexpr const char *kName = "office.mdb";

Bytes notesFile()
{
    MemoryDisk disk;
    const auto file = File::create(kName, disk);
    Table &notes = file->createTable(
        {u"Notes",
         {autoNumberColumn(u"Id"), textColumn(u"Name", 100), plainColumn(u"Note", ColumnType::Memo)},
         {{u"PrimaryKey", {{u"Id", false}}, true}, {u"ByName", {{u"Name", false}}}}});
    Scope scope(*file);
    for (std::size_t i = 0; i < 60; ++i)
        insertRow(notes, {{}, u"Name "s + std::u16string(i, u'n'), std::u16string(i * 90, u'o')});
    scope.commit();
    return disk.content(kName);
}

RowId rowOf(const Table &notes, int skip)
{
    Cursor at = notes.scan();
    for (; skip > 0; --skip)
        at.next();
    return at.id();
}

struct Kind
{
    const char *name;
    void (*change)(File &file);
};

const Kind kKinds[] = {
    {"insert",
     [](File &file) {
         insertRow(file.table(u"Notes"), {{}, u"New"s, std::u16string(5000, u'x')});
     }},
    {"update",
     [](File &file) {
         Table &notes = file.table(u"Notes");
         const ColumnValue values[] = {{1, std::u16string(100, u'z')}, {2, std::u16string(9000, u'y')}};
         notes.update(rowOf(notes, 3), values);
     }},
    {"erase", [](File &file) { file.table(u"Notes").erase(rowOf(file.table(u"Notes"), 55)); }},
    {"table",
     [](File &file) {
         file.createTable({u"More", {textColumn(u"A", 20)}, {}});
     }},
    {"scope",
     [](File &file) {
         Scope scope(file);
         Table &notes = file.table(u"Notes");
         for (Cursor at = notes.scan(); !at.atEnd(); at.next())
             notes.erase(at.id());
         insertRow(notes, {{}, u"Alone"s, {}});
         scope.commit();
     }},
};

std::vector<Row> contentOf(MemoryDisk &disk)
{
    EXPECT_TRUE(checkFile(kName, disk).clean());
    const auto file = File::open(kName, {}, disk);
    std::vector<Row> rows = rowsOf(file->table(u"Notes"));
    rows.push_back({file->hasTable(u"More")});
    return rows;
}

struct Trial
{
    const Kind &kind;
    FaultyDisk::Fault fault;
    Code code;
    bool maps;
};

// The n-th operation fails. False: there were fewer.
bool tryOne(const Trial &trial, int n, const Bytes &before, const std::vector<Row> &old,
            const std::vector<Row> &changed)
{
    MemoryDisk memory;
    memory.put(kName, before);
    FaultyDisk disk(memory, trial.maps);
    const auto file = File::open(kName, {}, disk);
    disk.failAt(n, trial.fault, trial.code);
    const auto reported = codeOf([&] { trial.kind.change(*file); });
    const bool reached = disk.operations() >= n;
    EXPECT_TRUE(disk.hasFailed() || !reported);
    disk.heal();
    const std::vector<Row> now = contentOf(memory);
    const bool notEvenUndone = reported && trial.fault == FaultyDisk::Fault::FromThenOn && now == changed;
    EXPECT_TRUE(now == (reported ? old : changed) || notEvenUndone);
    EXPECT_EQ(memory.names().size(), 1U);
    EXPECT_EQ(codeOf([&] { insertRow(file->table(u"Notes"), {{}, u"After"s, {}}); }), std::nullopt);
    EXPECT_EQ(contentOf(memory).size(), now.size() + 1);
    return reached;
}

TEST(FailingDisk, EveryKindOfChangeIsWholeOrNotAtAll)
{
    const Bytes before = notesFile();
    for (const Kind &kind : kKinds) {
        MemoryDisk memory;
        memory.put(kName, before);
        const std::vector<Row> old = contentOf(memory);
        kind.change(*File::open(kName, {}, memory));
        const std::vector<Row> changed = contentOf(memory);
        ASSERT_NE(old, changed);
        for (const auto fault : {FaultyDisk::Fault::Once, FaultyDisk::Fault::FromThenOn}) {
            for (const auto &[code, maps] :
                 {std::pair(Code::WriteError, false), {Code::WriteError, true}, {Code::DiskFull, false}}) {
                const int step = code == Code::DiskFull || fault == FaultyDisk::Fault::FromThenOn ? 5 : 2;
                for (int n = 1; tryOne({kind, fault, code, maps}, n, before, old, changed); n += step)
                    ASSERT_FALSE(HasFailure())
                        << kind.name << ", operation " << n << (maps ? ", mapped" : "");
            }
        }
    }
}

// A scan tells of what it couldn't read, rather than leave rows out.
TEST(FailingDisk, NoRowIsLeftOutByAScan)
{
    MemoryDisk memory;
    memory.put(kName, notesFile());
    const std::vector<Row> all = rowsOf(File::open(kName, {}, memory)->table(u"Notes"));
    for (const bool maps : {false, true}) {
        FaultyDisk disk(memory, maps);
        int refused = 0;
        for (int n = 1;; ++n) {
            const auto file = File::open(kName, {.readOnly = true}, disk);
            disk.failAt(n, FaultyDisk::Fault::Once);
            std::vector<Row> rows;
            const auto reported = codeOf([&] { rows = rowsOf(file->table(u"Notes")); });
            const bool reached = disk.hasFailed();
            disk.heal();
            if (!reached)
                break;
            EXPECT_TRUE(reported == Code::IoError || rows == all) << "operation " << n;
            refused += reported ? 1 : 0;
            EXPECT_EQ(rowsOf(file->table(u"Notes")), all) << "afterwards";
        }
        EXPECT_GT(refused, 10);
    }
}

TEST(FailingDisk, SalvageTellsDamageFromAFailingDisk)
{
    MemoryDisk memory;
    memory.put(kName, notesFile());
    for (int n = 1, refused = 0;; n += 3) {
        FaultyDisk disk(memory);
        disk.failAt(n, FaultyDisk::Fault::Once);
        std::vector<SalvagedTable> tables;
        const auto reported = codeOf([&] { tables = salvageFile(kName, "new.mdb", disk); });
        if (!disk.hasFailed()) {
            EXPECT_GT(refused, 20);
            return;
        }
        refused += reported ? 1 : 0;
        if (!reported) {
            ASSERT_EQ(tables.size(), 1U);
            EXPECT_EQ(tables[0].rows, 60U) << "operation " << n;
        }
        if (memory.exists("new.mdb"))
            memory.remove("new.mdb");
    }
}

} // namespace
} // namespace vardelin::jet::test
