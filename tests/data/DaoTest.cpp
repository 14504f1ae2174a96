#include "Office.h"

#include <QDir>
#include <QFile>

namespace vardelin {
namespace {

using namespace Qt::StringLiterals;

class DaoTest : public Office
{
};

TEST_F(DaoTest, TellsWhatItAppended)
{
    const auto tables = open()->TableDefs();
    ASSERT_EQ(tables.size(), 3u);
    const dao::TableDef &logs = tables[0], wanted = logTable();
    EXPECT_EQ(logs.Name, wanted.Name);
    ASSERT_EQ(logs.Fields.size(), wanted.Fields.size());
    for (std::size_t i = 0; i < wanted.Fields.size(); ++i) {
        EXPECT_EQ(logs.Fields[i].Name, wanted.Fields[i].Name);
        EXPECT_EQ(logs.Fields[i].Type, wanted.Fields[i].Type);
        EXPECT_EQ(logs.Fields[i].Attributes, wanted.Fields[i].Attributes);
        EXPECT_EQ(logs.Fields[i].AllowZeroLength, wanted.Fields[i].AllowZeroLength);
    }
    EXPECT_EQ(logs.Fields[1].Size, 200);
    ASSERT_EQ(tables[1].Indexes.size(), 1u);
    EXPECT_EQ(tables[1].Indexes[0].Fields, (QStringList{u"Client Last Name"_s, u"Client First Name"_s}));
    EXPECT_TRUE(tables[1].Indexes[0].Primary && tables[1].Indexes[0].Required);
    EXPECT_EQ(errorOf([&] { open()->Append(logTable()); }), 3010);
    expectSound();
}

TEST_F(DaoTest, RefusesFilesThatItCannotCreateOrOpen)
{
    QFile text(pathOf(u"letter.mdb"_s));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("Dear Sir");
    text.close();
    dao::Workspace &workspace = m_engine.Workspaces(0);
    const QString locale = QString::fromLatin1(kLocale);
    EXPECT_EQ(errorOf([&] { workspace.CreateDatabase(path, locale); }), 3204);
    EXPECT_EQ(errorOf([&] { workspace.CreateDatabase(pathOf(u"none/new.mdb"_s), locale); }), 3044);
    EXPECT_EQ(errorOf([&] { workspace.CreateDatabase(pathOf(u"new.mdb"_s), u";LANGID=0x0407"_s); }), 3001);
    EXPECT_FALSE(QFile::exists(pathOf(u"new.mdb"_s)));
    EXPECT_EQ(errorOf([&] { workspace.OpenDatabase(pathOf(u"none.mdb"_s)); }), 3024);
    EXPECT_EQ(errorOf([&] { workspace.OpenDatabase(text.fileName()); }), 3343);
    EXPECT_EQ(errorOf([&] { open()->OpenRecordset(u"Nobody"_s); }), 3078);
    EXPECT_EQ(errorOf([&] { m_engine.Workspaces(1); }), 3265);
}

TEST_F(DaoTest, CompactsAFileThatNobodyHasOpen)
{
    addLogs(1, 40);
    const QStringList clients = column(u"Vardelins"_s, u"Client"_s);
    const QString junk = pathOf(u"JUNK.MDB"_s);
    auto database = open();
    EXPECT_EQ(errorOf([&] { m_engine.CompactDatabase(path, junk); }), 3045);
    EXPECT_FALSE(QFile::exists(junk));
    database.reset();
    EXPECT_EQ(errorOf([&] { m_engine.CompactDatabase(path, path); }), 3204);
    EXPECT_EQ(errorOf([&] { m_engine.CompactDatabase(pathOf(u"none.mdb"_s), junk); }), 3024);

    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    m_engine.CompactDatabase(path, u"JUNK.MDB"_s);
    QDir::setCurrent(before);
    ASSERT_TRUE(QFile::remove(path) && QFile::rename(junk, path));
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s), clients);
    addLogs(41, 42);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s).size(), 42);
    expectSound();
}

TEST_F(DaoTest, ConvertsAsTheColumnAsks)
{
    const struct
    {
        const char *column;
        Value given;
        int error;
        Value stored;
    } rows[] = {
        {"Duration", Value(u".4"_s), 0, Value(0.4f)},
        {"Duration", Value(u"-1.75E1"_s), 0, Value(-17.5f)},
        {"Duration", Value(u"two hours"_s), 3421, {}},
        {"Duration", Value(u"1E99"_s), 3421, {}},
        {"Rate", Value(50), 0, Value(u"50"_s)},
        {"Rate", Value(u"1234567890"_s), 0, Value(u"1234567890"_s)},
        {"Rate", Value(u"12345678901"_s), 3163, {}},
        {"Rate", Value(QString()), 0, Value(u""_s)},
        {"Rate", Value(NullValue{}), 0, Value(NullValue{})},
        {"Fee", Value(0), 0, Value(Currency{0})},
        {"Fee", Value(u"60.00005"_s), 0, Value(Currency{600000})},
        {"Fee", Value(u"$1,234.50"_s), 0, Value(Currency{12345000})},
        {"Fee", Value(u"much"_s), 3421, {}},
        {"Beginning Time", Value(u"10/16/2026 9:54:33 PM"_s), 0,
         Value(DateSerial{46311.0 + 78873.0 / 86400})},
        {"Beginning Time", Value(u"tomorrow"_s), 3421, {}},
        {"Beginning Time", Value(), 0, Value(NullValue{})},
        {"Vardelin", Value(QString(70000, u'\u017D')), 0, Value(QString(70000, u'\u017D'))},
        {"Client", Value(QString(201, u'x')), 3163, {}},
        {"Indexing Field", Value(7), 3164, {}},
        {"Nothing", Value(7), 3265, {}},
    };
    const auto database = open();
    const auto logs = database->OpenRecordset(u"Vardelins"_s);
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.column) + " = " + joinText(row.given).left(30).toStdString());
        const QString column = QString::fromLatin1(row.column);
        logs->AddNew();
        EXPECT_EQ(errorOf([&] { logs->SetField(column, row.given); }), row.error);
        logs->Update();
        if (row.error == 0) {
            logs->SetBookmark(logs->LastModified());
            EXPECT_EQ(logs->Fields(column), row.stored);
        }
    }
    EXPECT_EQ(logs->RecordCount(), static_cast<int>(std::size(rows)));
    expectSound();
}

TEST_F(DaoTest, WalksAndCountsAndTellsItsEnds)
{
    const auto database = open();
    const auto logs = database->OpenRecordset(u"Vardelins"_s);
    EXPECT_TRUE(logs->BOF() && logs->EOF_());
    for (const auto move : {&dao::Recordset::MoveFirst, &dao::Recordset::MoveLast, &dao::Recordset::MoveNext,
                            &dao::Recordset::MovePrevious})
        EXPECT_EQ(errorOf([&] { ((*logs).*move)(); }), 3021);
    EXPECT_EQ(errorOf([&] { logs->Fields(u"Client"_s); }), 3021);
    EXPECT_EQ(errorOf([&] { logs->Edit(); }), 3021);
    EXPECT_EQ(errorOf([&] { logs->Delete(); }), 3021);

    addLogs(1, 3);
    EXPECT_EQ(logs->RecordCount(), 3);
    logs->MoveFirst();
    EXPECT_EQ(logs->Fields(u"client"_s), Value(u"Client 1"_s));
    logs->MovePrevious();
    EXPECT_TRUE(logs->BOF() && !logs->EOF_());
    EXPECT_EQ(errorOf([&] { logs->MovePrevious(); }), 3021);
    logs->MoveNext();
    EXPECT_EQ(logs->Fields(u"Indexing Field"_s), Value(1));
    logs->MoveLast();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 3"_s));
    addLogs(4, 4); // by another, behind the last
    logs->MoveNext();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 4"_s));
    logs->MoveNext();
    EXPECT_TRUE(logs->EOF_() && !logs->BOF());
    EXPECT_EQ(errorOf([&] { logs->MoveNext(); }), 3021);
    logs->MovePrevious();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 4"_s));
    logs->Close();
    EXPECT_EQ(errorOf([&] { logs->MoveFirst(); }), 3420);
}

TEST_F(DaoTest, KeepsTheEditThatTheEngineRefuses)
{
    add(u"Active Clients"_s,
        {{u"Client Last Name"_s, Value(u"Able"_s)}, {u"Client First Name"_s, Value(u"Ann"_s)}});
    const auto database = open();
    const auto clients = database->OpenRecordset(u"Active Clients"_s);
    EXPECT_EQ(errorOf([&] { clients->Update(); }), 3020);
    EXPECT_EQ(errorOf([&] { clients->CancelUpdate(); }), 3020);
    EXPECT_EQ(errorOf([&] { clients->SetField(u"Client Last Name"_s, Value(u"x"_s)); }), 3020);

    clients->AddNew();
    clients->SetField(u"Client Last Name"_s, Value(u"ABLE"_s)); // the key makes no difference of case
    EXPECT_EQ(errorOf([&] { clients->Update(); }), 3058);
    clients->SetField(u"Client First Name"_s, Value(u"Ann"_s));
    EXPECT_EQ(errorOf([&] { clients->Update(); }), 3022);
    EXPECT_EQ(clients->RecordCount(), 1);
    EXPECT_EQ(clients->Fields(u"Client Last Name"_s), Value(u"ABLE"_s));
    clients->SetField(u"Client First Name"_s, Value(u""_s));
    clients->Update();
    EXPECT_EQ(clients->Fields(u"Client Last Name"_s), Value(u"Able"_s)); // the current row is still the first
    EXPECT_EQ(exported(u"Active Clients"_s), (QStringList{u"Ann,Able,"_s, u",ABLE,"_s}));

    clients->Edit();
    clients->SetField(u"Client First Name"_s, Value(u"Bea"_s));
    EXPECT_EQ(clients->Fields(u"Client First Name"_s), Value(u"Bea"_s));
    clients->MoveNext(); // an edit that is left is dropped
    clients->MovePrevious();
    EXPECT_EQ(clients->Fields(u"Client First Name"_s), Value(u"Ann"_s));
    expectSound();
}

TEST_F(DaoTest, DeletesWhileItWalks)
{
    addLogs(1, 5);
    const auto database = open();
    const auto logs = database->OpenRecordset(u"Vardelins"_s);
    logs->MoveNext();
    logs->Delete();
    EXPECT_FALSE(logs->BOF() || logs->EOF_());
    EXPECT_EQ(errorOf([&] { logs->Fields(u"Client"_s); }), 3167);
    EXPECT_EQ(errorOf([&] { logs->Delete(); }), 3167);
    logs->MoveNext();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 3"_s));
    logs->MovePrevious();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 1"_s));
    for (; !logs->EOF_(); logs->MoveNext())
        logs->Delete();
    EXPECT_TRUE(logs->BOF());
    EXPECT_EQ(logs->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { logs->MoveFirst(); }), 3021);
    addLogs(6, 6);
    EXPECT_EQ(column(u"Vardelins"_s, u"Indexing Field"_s), QStringList{u"6"_s}); // numbers aren't given twice
    expectSound();
}

// A list window stays open while another one, on another opening of the file, changes the table.
TEST_F(DaoTest, StandsOnATableThatOthersChange)
{
    addLogs(1, 4);
    const auto database = open(), other = open();
    const auto logs = database->OpenRecordset(u"Vardelins"_s), theirs = other->OpenRecordset(u"Vardelins"_s);
    logs->MoveNext();
    theirs->MoveNext();
    theirs->Edit();
    theirs->SetField(u"Rate"_s, Value(u"75"_s));
    theirs->Update();
    logs->Edit();
    EXPECT_EQ(logs->Fields(u"Rate"_s), Value(u"75"_s)); // the row as it is now
    logs->SetField(u"Client"_s, Value(u"Changed"_s));
    theirs->Delete();
    EXPECT_EQ(errorOf([&] { logs->Update(); }), 3167);
    EXPECT_EQ(wordsOf([&] { logs->Update(); }), u"Record is deleted."_s);
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Changed"_s)); // typed, and not lost
    EXPECT_EQ(errorOf([&] { logs->CancelUpdate(); }), 0);
    EXPECT_EQ(errorOf([&] { logs->Edit(); }), 3167);
    theirs->MoveNext();
    theirs->Delete();
    EXPECT_EQ(logs->RecordCount(), 2);
    logs->MoveNext();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 4"_s));
    logs->MovePrevious();
    EXPECT_EQ(logs->Fields(u"Client"_s), Value(u"Client 1"_s));
    expectSound();
}

TEST_F(DaoTest, CommitsAndRollsBackSeveralChanges)
{
    const auto database = open();
    const auto rates = database->OpenRecordset(u"Rates"_s);
    const auto addRate = [&](int rate) {
        rates->AddNew();
        rates->SetField(u"Rates"_s, rate);
        rates->Update();
    };
    EXPECT_EQ(errorOf([&] { database->CommitTrans(); }), 3034);
    EXPECT_EQ(errorOf([&] { database->Rollback(); }), 3034);
    database->BeginTrans();
    addRate(50);
    database->BeginTrans();
    addRate(75);
    EXPECT_EQ(rates->RecordCount(), 2);
    database->Rollback();
    addRate(100);
    EXPECT_EQ(column(u"Rates"_s, u"Rates"_s), QStringList()); // nobody else sees it before it is committed
    database->CommitTrans();
    EXPECT_EQ(column(u"Rates"_s, u"Rates"_s), (QStringList{u"50"_s, u"100"_s}));
    database->BeginTrans();
    rates->MoveFirst();
    rates->Delete();
    database->Close(); // not committed
    EXPECT_EQ(errorOf([&] { rates->MoveFirst(); }), 3420);
    EXPECT_EQ(exported(u"Rates"_s), (QStringList{u"50"_s, u"100"_s}));
    expectSound();
}

TEST_F(DaoTest, RefusesToWriteIntoAFileThatWasReplaced)
{
    addLogs(1, 2);
    const auto database = open();
    const auto logs = database->OpenRecordset(u"Vardelins"_s);
    logs->AddNew();
    logs->SetField(u"Client"_s, Value(u"Typed"_s));
    createOffice(pathOf(u"other.mdb"_s));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(errorOf([&] { logs->Update(); }), 3043);
    ASSERT_TRUE(QFile::rename(pathOf(u"other.mdb"_s), path));
    EXPECT_EQ(errorOf([&] { logs->Update(); }), 3043);
    EXPECT_EQ(errorOf([&] { logs->RecordCount(); }), 3043);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s), QStringList());
}

} // namespace
} // namespace vardelin
