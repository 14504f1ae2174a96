// The commands on whole files, from the menu of a Display window.

#include "tests/shell/Running.h"
#include "tests/support/Judges.h"

#include "database/FileCommands.h"
#include "database/LogDatabase.h"
#include "platform/system/Files.h"
#include "platform/ui/BusyPointer.h"
#include "tests/jet/Processes.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

// An office of three logs with a Display window on it.
struct Office : OfficeProgram
{
    Office()
    {
        wire(global, main);
        for (const double day : {46300.5, 46301.5, 46302.5})
            add(u"Vardelins"_s, {{u"Client"_s, u"Hollister, Margaret"_s},
                                 {u"Vardelin"_s, u"day %1"_s.arg(day)},
                                 {u"Beginning Time"_s, DateSerial{day}},
                                 {u"Ending Time"_s, DateSerial{day + 0.05}}});
        main.show();
        window = global.openers.NewDisplayWindow();
        original = global.DatabaseFileName;
        QDir::setCurrent(folder.path());
    }
    ~Office() { setMousePointer(kDefaultPointer); }

    void pick(const QString &name) { dialogs.expectChoice({.FileName = name}); }
    void run(const QString &menu) { choose(window, menu); }
    bool busy() const { return QGuiApplication::overrideCursor() != nullptr; }
    QString at(const QString &name) const { return folder.filePath(name); }
    DisplayWindow *last() { return global.DisplayWindows.back(); }

    frmMain main{global};
    DisplayWindow *window = nullptr;
    QString original;
};

TEST(NewFile, makesAFileAndAWindowAndPutsTheOldNameBackWhereItFails)
{
    Office office;
    const QString fresh = office.at(u"fresh.mdb"_s);
    office.pick(fresh);
    office.dialogs.expect(u"Your new database, "_s + fresh + u", has successfully been created."_s);
    office.run(u"mnuNewFile"_s);
    EXPECT_EQ(office.dialogs.lastChoice.DialogTitle, u"Opening New Vardelin Database File"_s);
    EXPECT_EQ(office.dialogs.lastChoice.FileName, u"*.MDB"_s);
    EXPECT_EQ(office.dialogs.lastChoice.DefaultExt, u".mdb"_s);
    EXPECT_TRUE(office.dialogs.lastChoice.CancelError && office.dialogs.lastChoice.createPrompt);
    EXPECT_EQ(office.last()->file(), fresh);
    EXPECT_EQ(office.last()->Caption(), u"Display form 2"_s);
    EXPECT_EQ(office.window->file(), office.original) << "the caller's window keeps its file";
    EXPECT_EQ(recentFiles(office.settings)[0], fresh);
    EXPECT_FALSE(office.busy());
    expectSound(fresh, VARDELIN_ROOT);

    office.pick(office.original);
    office.dialogs.expect(u"This file is already open"_s);
    office.run(u"mnuNewFile"_s);
    office.pick(fresh); // it exists
    office.dialogs.expectBeginning(u"Could not open new file.  Error in New File function: "_s);
    office.run(u"mnuNewFile"_s);
    EXPECT_EQ(office.global.DatabaseFileName, office.original);
    office.dialogs.expectCancel();
    office.dialogs.expect(u"Could not open new file.  Error in New File function: Cancel was selected."_s);
    office.run(u"mnuNewFile"_s);
    EXPECT_EQ(office.global.DatabaseFileName, office.original);
    EXPECT_FALSE(office.busy());
}

TEST(OpenFile, opensAndClearsTheNameAndLeavesThePointerBusyWhereItFails)
{
    Office office;
    const QString other = office.at(u"other.mdb"_s);
    CopyFile(office.original, other);
    office.pick(other);
    office.dialogs.expect(other + u" has successfully been opened"_s);
    office.run(u"mnuOpenFile"_s);
    EXPECT_EQ(office.global.DatabaseFileName, QString());
    EXPECT_EQ(office.last()->file(), other);
    EXPECT_EQ(recentFiles(office.settings)[0], other);
    EXPECT_FALSE(office.busy());

    const QString sentence = u"The selected file is not a valid Vardelin file.  Please try again."_s;
    office.dialogs.expectCancel();
    office.dialogs.expect(sentence);
    office.run(u"mnuOpenFile"_s);
    EXPECT_EQ(office.global.DatabaseFileName, office.original);
    EXPECT_TRUE(office.busy());

    const QString text = office.at(u"letter.mdb"_s);
    QFile letter(text);
    ASSERT_TRUE(letter.open(QIODevice::WriteOnly));
    letter.write(QByteArray(5000, 'x'));
    letter.close();
    const QString question = u"Selected file is not a valid Vardelin file.  Do you want to overwrite it "
                             u"with a valid Vardelin.MDB file?"_s;
    office.pick(text);
    office.dialogs.expect(question, Answer::No, Buttons::YesNo);
    office.dialogs.expectBeginning(u"Operation canceled by user."_s);
    office.dialogs.expect(sentence);
    office.run(u"mnuOpenFile"_s);
    EXPECT_TRUE(QFile::exists(text)) << "No leaves it";
    EXPECT_EQ(recentFiles(office.settings)[0], text) << "it entered the recent files all the same";

    office.pick(text);
    office.dialogs.expect(question, Answer::Yes, Buttons::YesNo);
    const QString byDefault = defaultDatabase(office.folder.path());
    office.dialogs.expect(byDefault + u" has successfully been opened"_s);
    office.run(u"mnuOpenFile"_s);
    EXPECT_FALSE(QFile::exists(text)) << "the default file took the place of the one picked";
    EXPECT_EQ(office.last()->file(), byDefault);
}

TEST(SaveFileAs, copiesAndStandsOnTheSameRecord)
{
    Office office;
    office.window->control().MoveFirst();
    office.window->control().MoveNext();
    const QString copy = office.at(u"copy.mdb"_s);
    office.pick(copy);
    office.dialogs.expect(copy + u" has successfully been saved"_s);
    office.run(u"mnuSaveFileAs"_s);
    EXPECT_EQ(office.last()->Caption(), copy + u"Display form 2"_s);
    EXPECT_EQ(office.last()->control().Recordset().AbsolutePosition(), 2);
    EXPECT_EQ(office.global.DatabaseFileName, copy);
    EXPECT_EQ(recentFiles(office.settings)[0], QString()) << "the recent files don't follow";
    EXPECT_EQ(exportedRows(copy, u"Vardelins"_s), exportedRows(office.original, u"Vardelins"_s));
    expectSound(copy, VARDELIN_ROOT);

    office.dialogs.expectCancel();
    office.dialogs.expect(u"Error in Save File As function: Cancel was selected."_s);
    office.run(u"mnuSaveFileAs"_s);
    const MsgBox overwrite{.prompt = copy + u" already exists.  Overwrite?"_s,
                           .title = copy + u" already exists"_s,
                           .buttons = Buttons::YesNo,
                           .icon = Icon::Question};
    office.pick(copy);
    office.dialogs.expect(overwrite, Answer::No);
    office.run(u"mnuSaveFileAs"_s);
    EXPECT_TRUE(QFile::exists(copy) && office.busy());
    EXPECT_EQ(office.global.DatabaseFileName, copy);
}

// The copy's source was never filled: the file at the new name goes and nothing takes its place.
TEST(SaveFileAs, losesAnExistingTargetAndSaysSo)
{
    Office office;
    const QString target = office.at(u"target.mdb"_s);
    CopyFile(office.original, target);
    office.pick(target);
    office.dialogs.expect(target + u" already exists.  Overwrite?"_s, Answer::Yes, Buttons::YesNo);
    office.dialogs.expect(u"\"\" is not valid file name."_s);
    office.dialogs.expectBeginning(u"Error in Save File As function: Could not find file"_s);
    office.run(u"mnuSaveFileAs"_s);
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_TRUE(QFile::exists(office.original));
    QTest::qWait(10);
    EXPECT_FALSE(office.last()) << "no window stays that can't show its file";

    const QByteArray held = bytesOf(office.original); // the window's own file
    office.pick(office.original);
    office.dialogs.expect(office.original + u" already exists.  Overwrite?"_s, Answer::Yes, Buttons::YesNo);
    office.dialogs.expect(u"Error in Save File As function: Permission denied"_s);
    office.run(u"mnuSaveFileAs"_s);
    EXPECT_EQ(bytesOf(office.original), held);
}

TEST(CompactDatabase, putsATighterFileInPlaceAndRefusesOneInUse)
{
    Office office;
    const QString old = office.at(u"old.mdb"_s);
    CopyFile(office.original, old);
    for (const auto &leftover : {u"JUNK.MDB"_s, u"Backup.MDB"_s})
        CopyFile(office.original, office.at(leftover));
    const QStringList rows = exportedRows(old, u"Vardelins"_s);
    office.pick(old);
    office.dialogs.expect(old + u" has been successfully compacted"_s);
    office.run(u"mnuCompactData"_s);
    EXPECT_EQ(office.dialogs.lastChoice.FileName, office.original);
    EXPECT_EQ(exportedRows(old, u"Vardelins"_s), rows);
    EXPECT_FALSE(QFile::exists(office.at(u"JUNK.MDB"_s)) || QFile::exists(office.at(u"Backup.MDB"_s)));
    expectSound(old, VARDELIN_ROOT);

    office.pick(office.original);
    office.dialogs.expectBeginning(u"You can only compact a database that is not being used."_s);
    office.run(u"mnuCompactData"_s);
    office.dialogs.expectCancel();
    office.dialogs.expect(u"Compact Vardelin File function aborted by user."_s);
    office.run(u"mnuCompactData"_s);
    office.global.DatabaseFileName = old;
    office.global.openers.NewDisplayWindow();
    office.pick(old); // another window has it open
    office.dialogs.expectBeginning(u"Error in compacting data: "_s);
    office.run(u"mnuCompactData"_s);
    EXPECT_EQ(exportedRows(old, u"Vardelins"_s), rows);
    EXPECT_FALSE(office.busy());
}

// Another program's changes are in the copy whole or not at all.
TEST(SaveFileAs, copiesOneMomentWhileAnotherProgramWrites)
{
    Office office;
    for (int i = 0; i < 40; ++i) // the last log lies far behind the rates
        office.add(u"Vardelins"_s,
                   {{u"Employee"_s, QString(200, u'e')}, {u"Vardelin"_s, QString(60'000, u'n')}});
    jet::test::Pipe started;
    jet::test::Child writer([&] {
        dao::DBEngine engine;
        const auto database = engine.OpenDatabase(office.original);
        const auto logs = database->OpenRecordset(u"Vardelins"_s);
        const auto rates = database->OpenRecordset(u"Rates"_s);
        for (int i = 0;; ++i) {
            const Value text = QString::number(i);
            database->BeginTrans();
            for (const auto &[rows, column] :
                 {std::pair(logs.get(), u"Client"_s), std::pair(rates.get(), u"Rates"_s)}) {
                rows->MoveLast();
                rows->Edit();
                rows->SetField(column, text);
                rows->Update();
            }
            database->CommitTrans();
            if (i == 0)
                started.send('s');
        }
    });
    started.receive<char>();
    const QString copy = office.at(u"copy.mdb"_s);
    for (int i = 0; i < 20; ++i) {
        CopyDatabaseFile(office.global, office.original, copy);
        const auto database = office.engine.OpenDatabase(copy);
        const auto logs = database->OpenRecordset(u"Vardelins"_s),
                   rates = database->OpenRecordset(u"Rates"_s);
        logs->MoveLast();
        rates->MoveLast();
        ASSERT_EQ(joinText(logs->Fields(u"Client"_s)), joinText(rates->Fields(u"Rates"_s))) << i;
        ASSERT_TRUE(jet::checkFile(copy.toStdString()).findings.empty()) << i;
    }
    writer.kill();
    expectSound(copy, VARDELIN_ROOT);
}

// A folder that the run time may not write to keeps the data where it is, in JUNK.MDB, and the message says
// where.
TEST(CompactDatabase, leavesTheDataInJunkWhereTheRenamingFails)
{
    Office office;
    const QTemporaryDir elsewhere(
        u"/dev/shm/vardelin-XXXXXX"_s); // another file system: a rename can't reach it
    struct stat here = {}, there = {};
    ASSERT_EQ(::stat(qPrintable(office.folder.path()), &here), 0);
    if (!elsewhere.isValid() || ::stat(qPrintable(elsewhere.path()), &there) != 0 ||
        here.st_dev == there.st_dev)
        GTEST_SKIP() << "There is no second file system here on which to let the renaming fail.";
    const QString old = elsewhere.filePath(u"old.mdb"_s);
    CopyFile(office.original, old);
    office.pick(old);
    office.dialogs.expectBeginning(u"Error in compacting data: "_s);
    office.run(u"mnuCompactData"_s);
    EXPECT_FALSE(QFile::exists(old));
    EXPECT_EQ(exportedRows(office.at(u"JUNK.MDB"_s), u"Vardelins"_s),
              exportedRows(office.original, u"Vardelins"_s));
}

} // namespace
