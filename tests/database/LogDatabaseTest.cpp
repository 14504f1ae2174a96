#include "database/LogDatabase.h"
#include "database/CreateDatabase.h"
#include "database/Names.h"
#include "platform/system/Files.h"
#include "tests/support/Fakes.h"
#include "tests/support/Judges.h"
#include "tests/support/PrintQt.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

struct LogDatabase : testing::Test
{
    QTemporaryDir folder;
    TestProgram program;
    Global &global = program.global;

    LogDatabase()
    {
        program.services.appPath = folder.path();
        global.DatabaseFileName = folder.filePath(u"office.mdb"_s);
    }
    void add(const QString &table, const QList<QPair<QString, Value>> &values)
    {
        const auto database = program.engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(table);
        rows->AddNew();
        for (const auto &[column, value] : values)
            rows->SetField(column, value);
        rows->Update();
    }
    void addClient(const Value &last, const Value &first)
    {
        add(u"Active Clients"_s, {{u"Client Last Name"_s, last}, {u"Client First Name"_s, first}});
    }
    void writeGarbage()
    {
        QFile file(global.DatabaseFileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(20000, 'x'));
    }
};

} // namespace

TEST_F(LogDatabase, AMissingFileIsMadeWithItsTablesAndStartingRows)
{
    OpenLogDatabase(global);
    EXPECT_TRUE(global.NoClients);
    EXPECT_TRUE(global.NoEmployees);
    EXPECT_EQ(global.List1[2].size(), 6);
    EXPECT_EQ(global.List1[3].mid(0, 3),
              QStringList({u"0"_s, u"50"_s, u"75"_s})); // table order, not order of text
    EXPECT_EQ(global.List1[3].last(), u"375"_s);
    EXPECT_EQ(global.List1[4].size(), 15);

    const QString tables = outputOf(u"mdb-tables"_s, {u"-1"_s, global.DatabaseFileName});
    EXPECT_EQ(tables.split(u'\n', Qt::SkipEmptyParts),
              QStringList({u"Vardelins"_s, u"Active Clients"_s, u"Inactive Clients"_s, u"Employees"_s,
                           u"Activities"_s, u"Projects"_s, u"Rates"_s, u"Things To Do"_s, u"Disbursements"_s,
                           u"Payments"_s, u"Invoices"_s}));
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Projects"_s).first(), u"\"ADMINISTRATION\""_s);
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Rates"_s).size(), 15);
    const QString schema = outputOf(u"mdb-schema"_s, {global.DatabaseFileName});
    EXPECT_TRUE(schema.contains(u"[Payment Description]\t\t\tText (12)"_s) || schema.contains(u"Text (24)"_s))
        << schema.toStdString();
    expectSound(global.DatabaseFileName, VARDELIN_ROOT);
}

TEST_F(LogDatabase, NamesJoinAndClientsAreSortedWithoutRegardToCase)
{
    CreateDatabase(global);
    addClient(u"young"_s, u"Zoe"_s);
    addClient(u"Adams"_s, QString());
    addClient(QString(), QString());
    add(u"Employees"_s, {{u"Employee Last Name"_s, u"Zed"_s}});
    add(u"Employees"_s, {{u"Employee Last Name"_s, u"Able"_s}, {u"Employee First Name"_s, u"Ann"_s}});
    OpenLogDatabase(global);
    EXPECT_EQ(global.List1[0], QStringList({u", "_s, u"Adams, "_s, u"young, Zoe"_s}));
    EXPECT_EQ(global.List1[1],
              QStringList({u"Zed, "_s, u"Able, Ann"_s})); // a Null joins as nothing; table order
    EXPECT_FALSE(global.NoClients);
    EXPECT_FALSE(global.NoEmployees);

    add(u"Projects"_s, {{u"Projects"_s, NullValue()}}); // turned straight into a string, and fails there
    EXPECT_THROW(OpenLogDatabase(global), RunTimeError);
    EXPECT_EQ(global.List1[0].size(), 3) << "what was filled ahead of the failure stays";
}

TEST_F(LogDatabase, AFileThatCannotBeOpenedFailsWithOneSentenceAndIsNotTouched)
{
    writeGarbage();
    try {
        OpenLogDatabase(global);
        FAIL();
    } catch (const RunTimeError &error) {
        EXPECT_FALSE(error.description().isEmpty());
    }
    QFile file(global.DatabaseFileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray(20000, 'x'));

    // A database of another kind: the lists stay as they were.
    global.DatabaseFileName = folder.filePath(u"other.mdb"_s);
    program.engine.Workspaces(0).CreateDatabase(global.DatabaseFileName,
                                                u";LANGID=0x0409;CP=1252;COUNTRY=0"_s);
    global.List1[2] = QStringList{u"PAY BILLS"_s};
    EXPECT_THROW(OpenLogDatabase(global), RunTimeError);
    EXPECT_EQ(global.List1[2], QStringList{u"PAY BILLS"_s});

    global.DatabaseFileName =
        folder.filePath(u"gone/office.mdb"_s); // the folder isn't there: nothing is made
    EXPECT_THROW(OpenLogDatabase(global), RunTimeError);
}

TEST_F(LogDatabase, ValidationAsksBeforeItOverwritesAndThenMakesTheDefaultFile)
{
    const QString question =
        u"Selected file is not a valid Vardelin file.  Do you want to overwrite it with a valid Vardelin.MDB file?"_s;
    const QString selected = global.DatabaseFileName;
    ValidateDatabase(global); // missing: a new one
    EXPECT_EQ(Dir(selected), u"office.mdb"_s);
    ValidateDatabase(global); // valid: no question

    writeGarbage();
    program.dialogs.expect(question, Answer::No, Buttons::YesNo);
    program.dialogs.expect(u"Operation canceled by user.  Good move.  Now remember to whistle while you "
                           u"work.  Unless this annoys your "
                           u"co-workers more than you really should."_s);
    ValidateDatabase(global);
    EXPECT_EQ(Dir(selected), u"office.mdb"_s);

    program.dialogs.expect(question, Answer::Yes, Buttons::YesNo);
    ValidateDatabase(global);
    EXPECT_TRUE(Dir(selected).isEmpty());
    EXPECT_EQ(global.DatabaseFileName, folder.filePath(u"VARDELIN.MDB"_s));
    EXPECT_EQ(Dir(global.DatabaseFileName), u"VARDELIN.MDB"_s);

    // The default file must not be there yet: else the selected one goes and the making of the other fails.
    global.DatabaseFileName = selected;
    writeGarbage();
    program.dialogs.expect(question, Answer::Yes, Buttons::YesNo);
    EXPECT_THROW(ValidateDatabase(global), RunTimeError);
    EXPECT_TRUE(Dir(selected).isEmpty());
}

TEST(RecentFiles, FillDownwardsAndAKnownPathChangesNothing)
{
    MemorySettings settings;
    const auto joined = [&] {
        QStringList all;
        for (const QString &path : recentFiles(settings))
            all += path;
        return all.join(u' ');
    };
    for (const QString &path : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s})
        UpdateRecentFiles(settings, path);
    EXPECT_EQ(joined(), u"f e d c b a"_s);
    UpdateRecentFiles(settings, u"d"_s);
    EXPECT_EQ(joined(), u"f e d c b a"_s) << "a known path isn't moved up";
    UpdateRecentFiles(settings, u"a"_s);
    EXPECT_EQ(joined(), u"a f e d c b"_s) << "known only as the sixth: new, and no duplicate arises";
    UpdateRecentFiles(settings, u"D"_s);
    EXPECT_EQ(joined(), u"D a f e d c"_s) << "case tells paths apart";
    EXPECT_EQ(withRecentFile({u"x"_s, QString(), u"z"_s}, u"y"_s),
              (std::array<QString, 6>{u"y"_s, u"x"_s, u"z"_s}))
        << "older entries move as far as the first empty key";
}

TEST(Names, SplitAtTheFirstCommaAndBlank)
{
    EXPECT_EQ(splitName(u"Last, First"_s), (SplitName{u"Last"_s, u"First"_s}));
    EXPECT_EQ(splitName(u"Smith, Jr., John"_s), (SplitName{u"Smith"_s, u"Jr., John"_s}));
    EXPECT_EQ(splitName(u", "_s), (SplitName{}));
    EXPECT_EQ(splitName(u"PAY BILLS"_s), std::nullopt);
    EXPECT_EQ(splitName(u"Last,First"_s), std::nullopt);
}
