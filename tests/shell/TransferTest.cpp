// Logs and clients between files, from the menu of a Display window; other programs compare source and
// target.

#include "tests/shell/TransferOffice.h"
#include "tests/support/Judges.h"

#include "database/Transfer.h"
#include "platform/system/Files.h"
#include "tests/jet/Processes.h"

#include <QProgressBar>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

const QString kCouldNot =
    u"Could not open source Vardelin database.  Please try again.  Error description: "_s;

using Office = TransferOffice;

// Rows as other programs see them, without the auto-number at their head.
QStringList logsOf(const QString &file)
{
    QStringList rows = exportedRows(file, u"Vardelins"_s);
    for (QString &row : rows)
        row = row.section(u',', 1);
    return rows;
}

TEST(ExportLogs, carriesTheSelectionWholeAndClosesItUnderTheWindow)
{
    Office office;
    office.addLog(u"Farrow, Edith"_s, 46302.5, DateSerial{46302.6}, QString(5000, u'n'));
    office.addLog(u"Abernathy, Peter"_s, 46300.5, NullValue{});
    office.addLog(u"Farrow, Edith"_s, 46301.5, DateSerial{46301.6}, u"\u00e4\u2026 \"quoted\" end"_s);
    office.open();
    office.window->showSelection(
        u"Select * from Vardelins where Client = 'Farrow, Edith' order by [Beginning Time]"_s);
    typeOver(control<QLineEdit>(office.window, u"Text5"_s), u"typed just now"_s); // goes to the record first
    const QString target = office.folder.filePath(u"target.mdb"_s);
    office.run(u"mnuExportVardelins"_s, target, u"Vardelins have been successfully exported to "_s + target);
    EXPECT_EQ(office.columnOf(target, u"Vardelins"_s, u"Log Summary"_s),
              (QStringList{u"typed just now"_s, QString()}));
    const QStringList source = logsOf(office.global.DatabaseFileName);
    EXPECT_EQ(logsOf(target), (QStringList{source[2], source[0]})) << "what the window shows, in its order";
    EXPECT_EQ(office.columnOf(target, u"Vardelins"_s, u"Indexing Field"_s), (QStringList{u"1"_s, u"2"_s}));
    expectSound(target, VARDELIN_ROOT);
    EXPECT_FALSE(office.window->control().isOpen());
    EXPECT_FALSE(office.busy());
    // The window stands there without harm.
    for (const auto &menu : {u"mnuSaveChanges"_s, u"mnuGraphics"_s, u"mnuText"_s})
        choose(office.window, menu);
    office.window->resize(500, 400);
    QTest::qWait(10);

    // An existing target takes the records in addition; a window without records exports none.
    office.window->showSelection(u"Select * from Vardelins"_s);
    office.run(u"mnuExportVardelins"_s, target, u"Vardelins have been successfully exported to "_s + target);
    EXPECT_EQ(logsOf(target).size(), 5);
    office.window->showSelection(u"Select * from Vardelins where Client = 'nobody'"_s);
    const QString empty = office.folder.filePath(u"empty.mdb"_s);
    office.run(u"mnuExportVardelins"_s, empty, u"Vardelins have been successfully exported to "_s + empty);
    EXPECT_EQ(logsOf(empty), QStringList());
    // Nothing can be added to the closed set, but an import fills the window anew.
    office.run(u"mnuImportVardelins"_s, target, u"The selected Vardelins have successfully been imported"_s);
    EXPECT_TRUE(office.window->control().isOpen());
    EXPECT_EQ(logsOf(office.global.DatabaseFileName).size(), 3);
}

TEST(ImportLogs, addsWithoutFeesAndWithDurationsOfItsOwn)
{
    Office office;
    const QString source = office.otherFile(u"source.mdb"_s, [&] {
        office.addLog(u"Farrow, Edith"_s, 46310.5, DateSerial{46310.5 + 1.26 / 24});
        office.addLog(u"Jelinek, Tomas"_s, 46311.5, NullValue{});
        office.addLog(u"Dunmore, Samuel"_s, 46312.5, DateSerial{46312.5 + 0.3 / 24});
    });
    office.addLog(u"Abernathy, Peter"_s, 46300.5, DateSerial{46300.6});
    office.addLog(u"Abernathy, Peter"_s, 46301.5, DateSerial{46301.6});
    office.open();
    office.window->control().MoveFirst();
    office.run(u"mnuImportVardelins"_s, source,
               u"The selected Vardelins have successfully been imported from "_s + source + u"."_s);
    const QString own = office.global.DatabaseFileName;
    EXPECT_EQ(joinText(office.window->control().Recordset().Fields(u"Indexing Field"_s)), u"1"_s)
        << "where it stood";
    EXPECT_EQ(office.window->control().Recordset().RecordCount(), 5);
    EXPECT_EQ(office.column(u"Vardelins"_s, u"Duration"_s),
              (QStringList{u"7.5"_s, u"7.5"_s, u"1.3"_s, QString(), u"0.3"_s}));
    EXPECT_EQ(office.column(u"Vardelins"_s, u"Fee"_s),
              (QStringList{u"17.5"_s, u"17.5"_s, QString(), QString(), QString()}));
    EXPECT_EQ(office.column(u"Vardelins"_s, u"Beginning Time"_s)[3], QString())
        << "one time alone isn't carried";
    EXPECT_EQ(office.column(u"Vardelins"_s, u"Vardelin"_s)[4], u"notes"_s);
    EXPECT_FALSE(office.window->findChild<QProgressBar *>(u"Progress"_s)->isVisible());
    expectSound(own, VARDELIN_ROOT);
    EXPECT_EQ(importedDuration(DateSerial{1}, DateSerial{1 + 0.3 / 24}), u".3"_s);
    EXPECT_EQ(importedDuration(DateSerial{1}, DateSerial{2}), u"24.0"_s);
}

// A Cancel goes on with the pattern as a file's name, which nothing can open or make.
TEST(Transfers, goOnAfterACancelAndTouchNothing)
{
    Office office;
    office.addLog(u"Farrow, Edith"_s, 46310.5, DateSerial{46310.6});
    office.open();
    for (const auto &menu : {u"mnuExportVardelins"_s, u"mnuImportVardelins"_s, u"mnuExportActiveClients"_s}) {
        office.dialogs.expectCancel();
        office.dialogs.expect(kCouldNot);
        office.expectLastWord(menu);
        choose(office.window, menu);
        EXPECT_EQ(office.global.DatabaseFileName, u"*.MDB"_s);
        EXPECT_FALSE(office.busy());
    }
    office.dialogs.expectCancel();
    office.dialogs.expect(u"Import Active Clients data function aborted by user."_s);
    office.dialogs.expect(u"Please try again.  Error description: "_s);
    office.expectLastWord(u"mnuImportDatabase"_s);
    choose(office.window, u"mnuImportDatabase"_s);
    EXPECT_EQ(QDir(office.folder.path()).entryList(QDir::Files).size(), 1);
    EXPECT_EQ(office.position(), 1);
}

TEST(ExportActiveClients, leavesClientsOfTheTargetAndGivesTheWindowBack)
{
    Office office;
    office.addClient(u"Farrow"_s, u"Edith"_s, u"new"_s);
    office.addClient(u"O'Brien"_s, u"Nora"_s, u"Cork"_s);
    office.addLog(u"Farrow, Edith"_s, 46310.5, DateSerial{46310.6});
    office.addLog(u"Farrow, Edith"_s, 46311.5, DateSerial{46311.6});
    const QString target =
        office.otherFile(u"target.mdb"_s, [&] { office.addClient(u"Farrow"_s, u"Edith"_s, u"old"_s); });
    office.open();
    office.window->control().MoveFirst();
    office.global.CurrentSQL = u"Select * from Vardelins order by [Beginning Time]"_s;
    const QString said = u"Active Client information has been successfully exported to "_s;
    office.run(u"mnuExportActiveClients"_s, target, said + target);
    EXPECT_EQ(office.columnOf(target, u"Active Clients"_s, u"Active Client City"_s),
              (QStringList{u"old"_s, u"Cork"_s}));
    EXPECT_EQ(office.columnOf(target, u"Active Clients"_s, u"Active Client Notes"_s),
              (QStringList{u"kept notes"_s, QString()}))
        << "notes and forum are never carried";
    EXPECT_EQ(office.position(), 1);
    EXPECT_EQ(office.window->control().Recordset().RecordCount(), 2);
    EXPECT_FALSE(office.busy());
    const QString fresh = office.folder.filePath(u"fresh.mdb"_s); // made, with its seed rows
    office.run(u"mnuExportActiveClients"_s, fresh, said + fresh);
    EXPECT_EQ(exportedRows(fresh, u"Active Clients"_s).size(), 2);
    EXPECT_EQ(exportedRows(fresh, u"Rates"_s).size(), 15);
    expectSound(fresh, VARDELIN_ROOT);
}

TEST(ExportActiveClients, endsOnTheClientsWhereThereAreNone)
{
    Office office;
    office.addLog(u"Farrow, Edith"_s, 46310.5, DateSerial{46310.6});
    office.open();
    const QString target = office.folder.filePath(u"target.mdb"_s);
    office.run(u"mnuExportActiveClients"_s, target, u"There is no Active Client information to export."_s);
    EXPECT_TRUE(office.busy());
    EXPECT_EQ(office.global.DatabaseFileName, target);
    EXPECT_EQ(office.window->control().RecordSource, u"SELECT * FROM [Active Clients]"_s);
    EXPECT_TRUE(office.global.LogDatabase) << "the target stays open, until another file is made or opened";
    office.otherFile(u"another.mdb"_s, [] {});
    EXPECT_FALSE(office.global.LogDatabase);
    choose(office.window, u"mnuSaveChanges"_s);
    office.window->resize(500, 400);
    QTest::qWait(10);
}

TEST(ImportActiveClients, replacesByNameAndDeletesTheFirstForAnApostrophe)
{
    Office office;
    office.addClient(u"Aaron"_s, u"Ann"_s, u"first of the table"_s);
    office.addClient(u"FARROW"_s, u"edith"_s, u"old"_s);
    office.addClient(u"Jelinek"_s, u"Tomas"_s, u"stays"_s);
    const QString source = office.otherFile(u"source.mdb"_s, [&] {
        office.addClient(u"Farrow"_s, u"Edith"_s, u"new"_s);
        office.addClient(u"Dunmore"_s, u"Samuel"_s, u"added"_s);
    });
    office.open();
    const QString said = u" has successfully been imported."_s;
    office.run(u"mnuImportDatabase"_s, source, u"The Active Client information from "_s + source + said);
    const auto cities = [&] {
        QStringList all = office.column(u"Active Clients"_s, u"Active Client City"_s);
        all.sort();
        return all;
    };
    EXPECT_EQ(cities(), (QStringList{u"added"_s, u"first of the table"_s, u"new"_s, u"stays"_s}));
    EXPECT_EQ(office.column(u"Active Clients"_s, u"Active Client Notes"_s).count(u"kept notes"_s), 2)
        << "a replaced client loses what can't be carried";

    const QString irish =
        office.otherFile(u"irish.mdb"_s, [&] { office.addClient(u"O'Brien"_s, u"Nora"_s, u"Cork"_s); });
    office.run(u"mnuImportDatabase"_s, irish, u"The Active Client information from "_s + irish + said);
    EXPECT_EQ(cities(), (QStringList{u"Cork"_s, u"added"_s, u"new"_s, u"stays"_s}))
        << "the first of the table has gone";
    expectSound(office.global.DatabaseFileName, VARDELIN_ROOT);

    const QString none = office.otherFile(u"none.mdb"_s, [] {});
    office.run(u"mnuImportDatabase"_s, none,
               u"There is no Active Client information available in the selected database"_s);
    EXPECT_EQ(office.global.DatabaseFileName, none) << "not put back on this way";
    EXPECT_FALSE(office.busy());
}

// A Null name, which only a table without the key can hold, keeps the one of the record before, so that
// another client is taken for it.
TEST(ImportActiveClients, keepsTheNameBeforeForANullOne)
{
    Office office;
    office.addClient(u"Farrow"_s, u"Edith"_s, u"old"_s);
    office.addClient(u"Solo"_s, u"Edith"_s, u"taken for it"_s);
    const QString source = office.folder.filePath(u"foreign.mdb"_s);
    {
        const auto database =
            office.engine.Workspaces(0).CreateDatabase(source, u";LANGID=0x0409;CP=1252;COUNTRY=0"_s);
        dao::TableDef table{u"Active Clients"_s, {}, {}};
        for (const auto &name : {u"Client First Name"_s, u"Client Last Name"_s, u"Active Client City"_s})
            table.Fields.push_back({.Name = name, .Type = dao::dbText, .Size = 50});
        database->Append(table);
        const auto rows = database->OpenRecordset(u"Active Clients"_s);
        const Value none = NullValue{};
        for (const auto &[last, first, city] :
             {std::tuple(Value(u"Farrow"_s), Value(u"Edith"_s), u"new"_s),
              std::tuple(Value(u"Solo"_s), none, u"one name"_s), std::tuple(none, none, u"no name"_s)}) {
            rows->AddNew();
            rows->SetField(u"Client Last Name"_s, last);
            rows->SetField(u"Client First Name"_s, first);
            rows->SetField(u"Active Client City"_s, city);
            rows->Update();
        }
    }
    office.open();
    office.run(u"mnuImportDatabase"_s, source, u"The Active Client information from "_s);
    // "Solo, Edith" has gone, and the record with one name can't take the place: the key refuses it.
    EXPECT_EQ(office.column(u"Active Clients"_s, u"Active Client City"_s), QStringList{u"new"_s});

    // Where the names can't be read at all, no client is taken for another.
    const QString nameless = office.folder.filePath(u"nameless.mdb"_s);
    {
        const auto database =
            office.engine.Workspaces(0).CreateDatabase(nameless, u";LANGID=0x0409;CP=1252;COUNTRY=0"_s);
        database->Append({u"Active Clients"_s, {{.Name = u"Name"_s}}, {}});
        const auto rows = database->OpenRecordset(u"Active Clients"_s);
        rows->AddNew();
        rows->SetField(u"Name"_s, u"Edith Farrow"_s);
        rows->Update();
    }
    office.global.ClientLastName = u"Farrow"_s; // as another command may have left it
    office.run(u"mnuImportDatabase"_s, nameless, u"The Active Client information from "_s);
    EXPECT_EQ(office.column(u"Active Clients"_s, u"Active Client City"_s), QStringList{u"new"_s});
}

constexpr rlim_t kPage = 4096;

// Throws where the window shows a record that isn't there.
void lookAtEnds(Office &office)
{
    Adodc &control = office.window->control();
    if (!control.isOpen() || control.Recordset().EOF_())
        return;
    control.Recordset().MoveLast();
    control.Recordset().Fields(u"Indexing Field"_s);
    control.Recordset().MoveFirst();
    control.Recordset().Fields(u"Indexing Field"_s);
}

// How a program of its own ends that makes the transfer: at the first byte that it writes at `limit` or
// beyond, in whatever file, it dies (SIG_DFL) or is told that the disk is full (SIG_IGN).
int transferUntil(rlim_t limit, void (*atLimit)(int), const QString &menu, const QString &own,
                  const QString &other)
{
    return jet::test::Child([&] {
               Office office; // the file handles and locks of its own
               office.global.DatabaseFileName = own;
               office.open();
               const rlimit none{0, 0}, most{limit, limit};
               ::setrlimit(RLIMIT_CORE, &none);
               ::setrlimit(RLIMIT_FSIZE, &most);
               std::signal(SIGXFSZ, atLimit);
               office.dialogs.expectChoice({.FileName = other});
               office.dialogs.expectBeginning(QString()); // whatever is said at the end
               office.expectLastWord(menu);
               choose(office.window, menu);
               lookAtEnds(office);
           })
        .wait();
}

// Whatever page of whatever file is the last that gets written, both files are sound, the source is as it
// was, and what is changed holds what it held or what it shall.
TEST(Transfers, aCrashOrAFullDiskLeavesBothFilesSound)
{
    const QTemporaryDir folder;
    const QString own = folder.filePath(u"own.mdb"_s), other = folder.filePath(u"other.mdb"_s);
    for (const QString &file : {own, other}) {
        Office office;
        office.global.DatabaseFileName = file;
        CreateDatabase(office.global);
        for (int i = 0; i < 150; ++i)
            office.addClient(u"Name %1"_s.arg(file == own ? i : i + 75), u"Jo"_s,
                             QString(40, file == own ? u'o' : u'x'));
        for (int i = 0; i < 12; ++i)
            office.addLog(u"Name"_s, 46300.5 + i, DateSerial{46300.6 + i}, QString(2500, u'n'));
    }
    const QByteArray oldOwn = bytesOf(own), oldOther = bytesOf(other);
    const auto putBack = [&] {
        for (const auto &[path, bytes] : {std::pair(own, oldOwn), std::pair(other, oldOther)}) {
            QFile::remove(path + u"-journal"_s);
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            ASSERT_EQ(file.write(bytes), bytes.size());
        }
    };
    qputenv("TMPDIR", QFile::encodeName(folder.path())); // of those who die
    for (const QString &menu : {u"mnuExportVardelins"_s, u"mnuImportVardelins"_s, u"mnuExportActiveClients"_s,
                                u"mnuImportDatabase"_s}) {
        const bool toOther = menu.contains(u"Export"_s);
        const QString &changed = toOther ? other : own, &source = toOther ? own : other;
        const auto state = [&] {
            return std::pair(exportedRows(changed, u"Vardelins"_s),
                             exportedRows(changed, u"Active Clients"_s));
        };
        putBack();
        const QByteArray before = bytesOf(source);
        const auto old = state();
        ASSERT_EQ(transferUntil(RLIM_INFINITY, SIG_DFL, menu, own, other), 0) << menu.toStdString();
        const auto done = state();
        ASSERT_NE(done, old) << menu.toStdString();
        int died = 0;
        const auto size = static_cast<rlim_t>((toOther ? oldOther : oldOwn).size());
        const auto grown = static_cast<rlim_t>(QFileInfo(changed).size());
        ASSERT_GT(grown, size) << menu.toStdString();
        std::vector<rlim_t> limits{0, size / 2};
        for (rlim_t limit = size; limit <= grown;
             limit += std::max(kPage, (grown - size) / 8 / kPage * kPage))
            limits.push_back(limit);
        for (const rlim_t limit : limits) {
            for (const auto atLimit : {SIG_DFL, SIG_IGN}) {
                putBack();
                const int status = transferUntil(limit, atLimit, menu, own, other);
                const bool killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ;
                EXPECT_TRUE(killed || status == 0) << menu.toStdString() << " at " << limit;
                died += killed;
                dao::DBEngine().OpenDatabase(changed); // what is to be undone, is
                const auto now = state();
                EXPECT_TRUE(now == old || now == done) << menu.toStdString() << " at " << limit;
                EXPECT_FALSE(QFileInfo::exists(changed + u"-journal"_s));
                EXPECT_TRUE(jet::checkFile(changed.toStdString()).findings.empty())
                    << menu.toStdString() << " at " << limit;
                EXPECT_EQ(bytesOf(source), before);
            }
        }
        EXPECT_GE(died, 3) << menu.toStdString();
        expectSound(changed, VARDELIN_ROOT);
    }
    qunsetenv("TMPDIR");
}

} // namespace
