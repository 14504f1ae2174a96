#include "Office.h"

#include "platform/sql/Select.h"

#include <QFile>

namespace vardelin {
namespace {

using namespace Qt::StringLiterals;

class AdoTest : public Office
{
protected:
    void openLogs(ado::Recordset &records,
                  const QString &source = u"Select * from Vardelins order by [Beginning Time]"_s)
    {
        if (!m_connection.isOpen())
            m_connection.Open(ado::connectionText(path));
        records.CursorType = 3;
        records.Open(source, m_connection);
    }
    static QString client(const ado::Recordset &records) { return joinText(records.Fields(u"Client"_s)); }

    ado::Connection m_connection;
};

TEST_F(AdoTest, OpensByTheConnectionText)
{
    QFile text(pathOf(u"letter.mdb"_s));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write(QByteArray(20000, 'x'));
    text.close();
    const QString awkward = pathOf(u"a;b \"c\".mdb"_s);
    createOffice(awkward);
    const QString missing = pathOf(u"none.mdb"_s);
    const struct
    {
        QString connection;
        QString opened, refused;
    } rows[] = {
        {ado::connectionText(path), path, {}},
        {ado::connectionText(awkward), awkward, {}},
        {u"provider = microsoft.jet.oledb.4.0 ;Persist Security Info=False;User ID=Admin;data source= "_s +
             path + u';',
         path,
         {}},
        {u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source='"_s + path + u"';Mode=Read"_s, path, {}},
        {ado::connectionText(missing), {}, u"Could not find file '%1'."_s.arg(missing)},
        {ado::connectionText(text.fileName()),
         {},
         u"Unrecognized database format '%1'."_s.arg(text.fileName())},
        {u"Data Source="_s + path, {}, u"Provider cannot be found. It may not be properly installed."_s},
    };
    EXPECT_EQ(
        ado::connectionText(u"a.mdb"_s, u"Admin"_s),
        u"Provider=Microsoft.Jet.OLEDB.4.0;Persist Security Info=False;User ID=Admin;Data Source=a.mdb"_s);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.connection.toStdString());
        ado::Connection connection;
        EXPECT_EQ(wordsOf([&] { connection.Open(row.connection); }), row.refused);
        EXPECT_EQ(connection.path(), row.opened);
        EXPECT_EQ(connection.isOpen(), row.refused.isEmpty());
    }
    const auto alone = m_engine.Workspaces(0).OpenDatabase(path, true);
    EXPECT_EQ(errorOf([&] { m_connection.Open(ado::connectionText(path)); }), 3045);
}

TEST_F(AdoTest, OpensTablesByNameAndClosesWithTheConnection)
{
    add(u"Active Clients"_s,
        {{u"Client Last Name"_s, Value(u"Able"_s)}, {u"Client First Name"_s, Value(u"Ann"_s)}});
    ado::Recordset records;
    EXPECT_EQ(errorOf([&] { records.Open(u"Rates"_s, m_connection); }), 3709);
    EXPECT_EQ(errorOf([&] { records.MoveNext(); }), 3704);
    openLogs(records, u"[Active Clients]"_s);
    EXPECT_EQ(records.FieldNames(),
              (QStringList{u"Client First Name"_s, u"Client Last Name"_s, u"Retainer Date"_s}));
    EXPECT_EQ(records.Fields(u"client last name"_s), Value(u"Able"_s));
    EXPECT_EQ(records.Collect(u"Retainer Date"_s), Value(NullValue{}));
    EXPECT_EQ(errorOf([&] { records.Fields(u"Active Client Client Notes"_s); }), 3265);
    EXPECT_EQ(errorOf([&] { openLogs(records, u"Rates"_s); }), 3705);
    records.Close();
    openLogs(records, u"Rates"_s);
    EXPECT_TRUE(records.BOF() && records.EOF_());
    records.Close();
    EXPECT_EQ(errorOf([&] { openLogs(records, u"[Things To Do]"_s); }), sql::Number::TableNotFound);
    openLogs(records, u"Active Clients"_s);
    m_connection.Close();
    EXPECT_FALSE(records.isOpen());
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client Last Name"_s); }), 3704);
}

TEST_F(AdoTest, WalksByPosition)
{
    ado::Recordset records;
    openLogs(records);
    EXPECT_EQ(records.RecordCount(), 0);
    EXPECT_EQ(records.AbsolutePosition(), -1);
    for (const auto move : {&ado::Recordset::MoveFirst, &ado::Recordset::MoveLast, &ado::Recordset::MoveNext,
                            &ado::Recordset::MovePrevious})
        EXPECT_EQ(errorOf([&] { (records.*move)(); }), 3021);
    EXPECT_EQ(errorOf([&] { records.SetAbsolutePosition(1); }), 3001);
    addLogs(1, 1);
    EXPECT_TRUE(records.EOF_()); // static
    records.Requery();
    ASSERT_EQ(client(records), u"Client 1"_s);
    records.MovePrevious(); // of one record: ahead of it and back
    EXPECT_TRUE(records.BOF() && !records.EOF_());
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client"_s); }), 3021);
    EXPECT_EQ(errorOf([&] { records.MovePrevious(); }), 3021);
    records.MoveNext();
    EXPECT_EQ(client(records), u"Client 1"_s);
    records.MoveNext();
    EXPECT_TRUE(records.EOF_() && !records.BOF());
    EXPECT_EQ(errorOf([&] { records.MoveNext(); }), 3021);

    addLogs(2, 5);
    records.Requery();
    records.SetAbsolutePosition(4);
    EXPECT_EQ(client(records), u"Client 4"_s);
    const QByteArray bookmark = records.Bookmark();
    records.MoveLast();
    EXPECT_EQ(records.AbsolutePosition(), 5);
    EXPECT_EQ(errorOf([&] { records.SetAbsolutePosition(6); }), 3001);
    records.Requery();
    records.SetBookmark(bookmark);
    EXPECT_EQ(records.AbsolutePosition(), 4);
    EXPECT_EQ(errorOf([&] { records.SetBookmark("nonsense"); }), 3159);

    const QString copy = pathOf(u"copy.mdb"_s);
    ASSERT_TRUE(QFile::copy(path, copy));
    ado::Connection other;
    other.Open(ado::connectionText(copy));
    ado::Recordset theirs;
    theirs.Open(u"Select * from Vardelins order by [Beginning Time] desc"_s, other);
    theirs.SetBookmark(bookmark);
    EXPECT_EQ(client(theirs), u"Client 4"_s);
    EXPECT_EQ(theirs.AbsolutePosition(), 2);
    theirs.Close();
    theirs.Open(u"Select * from Vardelins where Duration < .35"_s, other);
    EXPECT_EQ(errorOf([&] { theirs.SetBookmark(bookmark); }), 3159);
    EXPECT_EQ(client(theirs), u"Client 1"_s);
}

TEST_F(AdoTest, OrdersAndSelectsByAStatement)
{
    addLogs(1, 12);
    ado::Recordset records;
    openLogs(records, u"Select * from Vardelins where Duration > 1 order by [Beginning Time] desc"_s);
    QStringList clients;
    for (; !records.EOF_(); records.MoveNext())
        clients.append(client(records));
    EXPECT_EQ(clients, (QStringList{u"Client 12"_s, u"Client 11"_s}));
    records.Close();
    EXPECT_EQ(errorOf([&] { openLogs(records, u"Select * from"_s); }), sql::Number::SyntaxError);
    EXPECT_EQ(errorOf([&] { openLogs(records, u"Select * from Nobody"_s); }), sql::Number::TableNotFound);

    openLogs(records, u"Select Client, Duration * 10 As Tenths from Vardelins where Duration > 1"_s);
    EXPECT_NEAR(toDouble(records.Fields(u"Tenths"_s)), 11, 1e-5);
    EXPECT_EQ(errorOf([&] { records.SetField(u"Tenths"_s, Value(1)); }), 3251);
    records.SetField(u"Client"_s, Value(u"Eleven"_s));
    records.Update();
    records.Close();
    openLogs(records, u"Select Count(*) As Rows, Max(Duration) As Longest from Vardelins"_s);
    EXPECT_EQ(records.RecordCount(), 1);
    EXPECT_EQ(toLong(records.Fields(u"Rows"_s)), 12);
    EXPECT_EQ(toDouble(records.Fields(u"Longest"_s)), toDouble(Value(1.2f)));
    EXPECT_EQ(errorOf([&] { records.SetField(u"Rows"_s, Value(1)); }), 3251);
    EXPECT_EQ(errorOf([&] { records.AddNew(); }), 3251);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), 3251);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s)[10], u"Eleven"_s);
}

TEST_F(AdoTest, WritesOnlyWhatWasSetAndKeepsWhatIsRefused)
{
    addLogs(1, 3);
    ado::Recordset records, theirs;
    openLogs(records);
    openLogs(theirs);
    theirs.SetField(u"Rate"_s, Value(u"75"_s));
    theirs.Update();
    records.SetField(u"Duration"_s, Value(u".5"_s));
    records.SetField(u"Client"_s, Value(u"Able, Ann"_s));
    EXPECT_TRUE(records.EditPending());
    EXPECT_EQ(records.Fields(u"Duration"_s), Value(u".5"_s)); // as it was set, until it is written
    records.Update();
    EXPECT_EQ(records.Fields(u"Duration"_s), Value(0.5f));
    EXPECT_EQ(records.Fields(u"Rate"_s), Value(u"75"_s)); // theirs still stands

    records.SetField(u"Client"_s, Value(u"Baker, Bea"_s));
    records.SetField(u"Rate"_s, Value(u"a rate that is too long"_s));
    EXPECT_EQ(errorOf([&] { records.Update(); }), 3163);
    EXPECT_EQ(errorOf([&] { records.MoveNext(); }), 3163);
    EXPECT_EQ(records.AbsolutePosition(), 1);
    EXPECT_EQ(client(records), u"Baker, Bea"_s);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s)[0], u"Able, Ann"_s); // nothing of it is written
    records.SetField(u"Rate"_s, Value(u"80"_s));
    records.MoveNext(); // writes
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s)[0], u"Baker, Bea"_s);
    records.SetField(u"Client"_s, Value(u"x"_s));
    records.CancelUpdate();
    EXPECT_EQ(client(records), u"Client 2"_s);
    EXPECT_EQ(exported(u"Vardelins"_s).value(0).section(u',', 1), u"Baker, Bea,80,,03/16/23 00:00:00,0.5,"_s);
    expectSound();
}

TEST_F(AdoTest, AddsBehindTheOthers)
{
    addLogs(1, 2);
    ado::Recordset records;
    openLogs(records);
    records.AddNew();
    EXPECT_EQ(records.AbsolutePosition(), 3);
    EXPECT_FALSE(records.BOF() || records.EOF_());
    EXPECT_EQ(records.Fields(u"Client"_s), Value(NullValue{}));
    records.SetField(u"Client"_s, Value(u"New"_s));
    records.CancelUpdate();
    EXPECT_EQ(client(records), u"Client 1"_s);
    records.AddNew();
    records.SetField(u"Client"_s, Value(u"New"_s));
    records.Update();
    EXPECT_EQ(records.RecordCount(), 3);
    EXPECT_EQ(records.AbsolutePosition(), 3);
    EXPECT_EQ(records.Fields(u"Indexing Field"_s), Value(3));
    records.MoveNext();
    EXPECT_TRUE(records.EOF_());

    ado::Recordset clients;
    openLogs(clients, u"[Active Clients]"_s);
    clients.AddNew();
    clients.SetField(u"Client Last Name"_s, Value(u"Able"_s));
    EXPECT_EQ(errorOf([&] { clients.Update(); }), 3058);
    EXPECT_TRUE(clients.EditPending());
    clients.SetField(u"Client First Name"_s, Value(u""_s));
    clients.Update();
    EXPECT_EQ(clients.RecordCount(), 1);
    expectSound();
}

TEST_F(AdoTest, FiltersByTwoNames)
{
    for (const auto &[last, first] : {std::pair{u"Able"_s, u"Ann"_s},
                                      {u"O'Neil"_s, u"Pat"_s},
                                      {u"Able"_s, u"Bea"_s},
                                      {u"Cole"_s, u"Ann"_s}})
        add(u"Active Clients"_s,
            {{u"Client Last Name"_s, Value(last)}, {u"Client First Name"_s, Value(first)}});
    const auto names = [](const QString &last, const QString &first) {
        return u"[Client Last Name] = '"_s + last + u"' And [Client First Name] = '"_s + first + u"' "_s;
    };
    ado::Recordset records;
    openLogs(records, u"SELECT * FROM [Active Clients]"_s);
    records.MoveLast();
    records.SetFilter(names(u"able"_s, u"BEA"_s));
    EXPECT_EQ(records.RecordCount(), 1);
    EXPECT_EQ(records.AbsolutePosition(), 1);
    EXPECT_EQ(records.Fields(u"Client First Name"_s), Value(u"Bea"_s));
    records.MoveNext();
    EXPECT_TRUE(records.EOF_());
    // What is no condition leaves the filter that was, and every row in its place.
    for (const QString &refused :
         {names(u"O'Neil"_s, u"Pat"_s), u"Nobody = 1"_s, u"[Client Last Name] = 5"_s, u"Order By 1"_s,
          u"[Client Last Name] = 'Able' Order By [Client First Name]"_s, u"[Client Last Name] = 'Able';"_s,
          u"[Client Last Name"_s, u"'Able"_s})
        EXPECT_EQ(errorOf([&] { records.SetFilter(refused); }), 3001) << refused.toStdString();
    EXPECT_EQ(records.Filter(), names(u"able"_s, u"BEA"_s));
    EXPECT_EQ(records.RecordCount(), 1);
    records.SetFilter(names(u"O''Neil"_s, u"Pat"_s));
    EXPECT_EQ(records.Fields(u"Client Last Name"_s), Value(u"O'Neil"_s));
    records.SetFilter(names(u"Able"_s, u"Pat"_s));
    EXPECT_TRUE(records.BOF() && records.EOF_());
    records.AddNew(); // seen through the filter and without it
    records.SetField(u"Client Last Name"_s, Value(u"New"_s));
    records.SetField(u"Client First Name"_s, Value(u""_s));
    records.Update();
    EXPECT_EQ(records.RecordCount(), 1);
    records.SetFilter(names(u"Cole"_s, u"Ann"_s));
    records.Delete();
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client Last Name"_s); }), 3021);
    records.SetFilter({});
    EXPECT_EQ(records.RecordCount(), 4);
    EXPECT_EQ(records.AbsolutePosition(), 1);
    EXPECT_EQ(column(u"Active Clients"_s, u"Client Last Name"_s),
              (QStringList{u"Able"_s, u"O'Neil"_s, u"Able"_s, u"New"_s}));
    expectSound();
}

TEST_F(AdoTest, DeletesAndGoesOnFromThere)
{
    addLogs(1, 4);
    ado::Recordset records;
    openLogs(records);
    records.MoveNext();
    records.Delete();
    EXPECT_EQ(records.RecordCount(), 3);
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client"_s); }), 3167);
    records.MovePrevious();
    EXPECT_EQ(client(records), u"Client 1"_s);
    records.MoveNext();
    EXPECT_EQ(client(records), u"Client 3"_s);
    records.Delete();
    records.MoveNext();
    EXPECT_EQ(client(records), u"Client 4"_s);
    records.Delete();
    records.MoveNext();
    EXPECT_TRUE(records.EOF_() && !records.BOF());
    records.MoveFirst();
    records.Delete(); // the last one
    EXPECT_TRUE(records.BOF() && records.EOF_());
    EXPECT_EQ(errorOf([&] { records.MoveLast(); }), 0);
    EXPECT_EQ(errorOf([&] { records.MoveLast(); }), 3021);
    EXPECT_EQ(exported(u"Vardelins"_s), QStringList());
    expectSound();
}

TEST_F(AdoTest, TellsOfARowThatOthersDeleted)
{
    addLogs(1, 3);
    ado::Recordset records, theirs;
    openLogs(records);
    openLogs(theirs);
    records.MoveNext();
    EXPECT_EQ(client(records), u"Client 2"_s);
    theirs.MoveNext();
    theirs.Delete();
    theirs.MoveLast();
    theirs.Delete();
    addLogs(4, 4);
    records.SetField(u"Client"_s, Value(u"Typed"_s));
    EXPECT_EQ(errorOf([&] { records.Update(); }), 3167);
    EXPECT_EQ(client(records), u"Typed"_s);
    records.CancelUpdate();
    EXPECT_EQ(errorOf([&] { records.Delete(); }), 3167);
    records.MoveNext();
    EXPECT_EQ(wordsOf([&] { records.Fields(u"Client"_s); }), u"Record is deleted."_s);
    EXPECT_EQ(records.RecordCount(), 3);
    records.Requery();
    EXPECT_EQ(records.RecordCount(), 2);
    records.MoveNext();
    EXPECT_EQ(client(records), u"Client 4"_s);
}

// All rows go, their page with them, and new rows take the very places: they are not the rows that were
// selected.
TEST_F(AdoTest, NeverShowsAnotherRowInTheDeletedOnesPlace)
{
    addLogs(1, 2);
    ado::Recordset records;
    openLogs(records);
    {
        const auto database = open();
        for (const auto logs = database->OpenRecordset(u"Vardelins"_s); !logs->EOF_(); logs->MoveNext())
            logs->Delete();
    }
    addLogs(3, 4);
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client"_s); }), 3167);
    records.SetField(u"Client"_s, Value(u"Typed"_s));
    EXPECT_EQ(errorOf([&] { records.Update(); }), 3167);
    records.CancelUpdate();
    EXPECT_EQ(errorOf([&] { records.Delete(); }), 3167);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s), (QStringList{u"Client 3"_s, u"Client 4"_s}));
}

// One moment from the first reading to the last: nobody can write in between.
TEST_F(AdoTest, ReadsTogetherWhatIsOfOneMoment)
{
    addLogs(1, 2);
    EXPECT_EQ(errorOf([&] { const ado::ReadTogether together(m_connection); }), 3709);
    ado::Recordset records;
    openLogs(records);
    const auto other = open();
    const auto logs = other->OpenRecordset(u"Vardelins"_s);
    logs->AddNew();
    logs->SetField(u"Client"_s, Value(u"Later"_s));
    {
        const ado::ReadTogether together(m_connection);
        EXPECT_EQ(client(records), u"Client 1"_s);
        EXPECT_EQ(errorOf([&] { logs->Update(); }), 3050);
        records.MoveNext();
        EXPECT_EQ(client(records), u"Client 2"_s);
    }
    logs->Update();
    records.Requery();
    EXPECT_EQ(records.RecordCount(), 3);
}

TEST_F(AdoTest, TellsOfAFileThatWasReplaced)
{
    addLogs(1, 2);
    ado::Recordset records;
    openLogs(records);
    ASSERT_TRUE(QFile::rename(path, pathOf(u"old.mdb"_s)));
    createOffice(path);
    addLogs(7, 8);
    EXPECT_EQ(errorOf([&] { records.Fields(u"Client"_s); }), 3043);
    records.SetField(u"Client"_s, Value(u"Typed"_s));
    EXPECT_EQ(errorOf([&] { records.Update(); }), 3043);
    EXPECT_EQ(client(records), u"Typed"_s);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), 3043);
    EXPECT_EQ(errorOf([&] { records.Requery(); }), 3043);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s), (QStringList{u"Client 7"_s, u"Client 8"_s}));
}

} // namespace
} // namespace vardelin
