#include "Office.h"

#include <QMap>

namespace vardelin {
namespace {

using namespace Qt::StringLiterals;

// The control over all logs, with fields that are plain texts, and what it tells.
class AdodcTest : public Office
{
protected:
    AdodcTest()
    {
        for (const QString &name :
             {u"Client"_s, u"Rate"_s, u"Beginning Time"_s, u"Duration"_s, u"Fee"_s, u"Vardelin"_s})
            bind(name);
        control.ConnectionString = ado::connectionText(path);
        control.RecordSource = u"Select * from Vardelins order by [Beginning Time]"_s;
        control.MoveComplete = [this](MoveReason reason) { told.append(static_cast<int>(reason)); };
        control.onError = [this](const RunTimeError &error) { errors.append(error.number()); };
    }
    void bind(const QString &name)
    {
        control.bind({name, [this, name](const QString &text) { field[name] = text; },
                      [this, name] { return field[name]; }});
    }
    QList<int> takeTold() { return std::exchange(told, {}); }
    QList<int> takeErrors() { return std::exchange(errors, {}); }

    QMap<QString, QString> field;
    QList<int> told, errors;
    Adodc control;
};

TEST_F(AdodcTest, ShowsColumnsInTheirTextForms)
{
    add(u"Vardelins"_s, {{u"Client"_s, Value(u"Able, Ann"_s)},
                         {u"Beginning Time"_s, Value(u"10/16/2026 9:54:33 PM"_s)},
                         {u"Duration"_s, Value(u"16.1"_s)},
                         {u"Fee"_s, Value(u"60.5"_s)},
                         {u"Vardelin"_s, Value(u"{\\rtf1 notes}"_s)}});
    control.setColumnReader(
        u"rate"_s, [](const Value &value) { return value.isNull() ? u"no rate"_s : joinText(value); });
    control.Refresh();
    EXPECT_EQ(field[u"Client"_s], u"Able, Ann"_s);
    EXPECT_EQ(field[u"Beginning Time"_s], u"10/16/2026 9:54:33 PM"_s);
    EXPECT_EQ(field[u"Duration"_s], u"16.1"_s);
    EXPECT_EQ(field[u"Fee"_s], u"60.5"_s);
    EXPECT_EQ(field[u"Vardelin"_s], u"{\\rtf1 notes}"_s);
    EXPECT_EQ(field[u"Rate"_s], u"no rate"_s);
    EXPECT_FALSE(control.edited());
    EXPECT_EQ(takeTold(), QList<int>{7});
}

TEST_F(AdodcTest, TellsTheReasonOfEachMove)
{
    EXPECT_EQ(errorOf([&] { control.Recordset(); }), 91);
    addLogs(1, 4);
    control.Refresh();
    EXPECT_TRUE(control.MoveLast() && control.MovePrevious() && control.MoveNext() && control.MoveFirst());
    EXPECT_TRUE(control.SetAbsolutePosition(3));
    EXPECT_EQ(takeTold(), (QList<int>{7, 15, 14, 13, 12, 10}));
    EXPECT_EQ(field[u"Client"_s], u"Client 3"_s);
    const QByteArray bookmark = control.Recordset().Bookmark();
    control.Delete();
    EXPECT_EQ(field[u"Client"_s], QString());
    EXPECT_TRUE(control.MoveLast());
    EXPECT_EQ(field[u"Client"_s], u"Client 4"_s);
    EXPECT_EQ(takeTold(), (QList<int>{2, 15}));
    EXPECT_TRUE(control.MoveNext()); // on to the end, as the record set does
    EXPECT_TRUE(control.Recordset().EOF_());
    EXPECT_EQ(field[u"Client"_s], QString());
    EXPECT_EQ(errorOf([&] { control.MoveNext(); }), 3021);
    EXPECT_EQ(takeTold(), QList<int>{13});
    EXPECT_EQ(errorOf([&] { control.SetBookmark(bookmark); }), 3159);
}

TEST_F(AdodcTest, DeletesTheOnlyRecord)
{
    addLogs(1, 1);
    control.Refresh();
    field[u"Rate"_s] = u"typed"_s;
    control.Delete();
    EXPECT_TRUE(control.Recordset().BOF() && control.Recordset().EOF_());
    EXPECT_TRUE(control.MoveLast());
    EXPECT_EQ(field[u"Rate"_s], QString());
    EXPECT_EQ(takeTold(), (QList<int>{7, 2, 15}));
    field[u"Rate"_s] = u"typed on nothing"_s;
    EXPECT_FALSE(control.edited());
    EXPECT_TRUE(control.commitEdits());
    control.Refresh();
    EXPECT_EQ(field[u"Rate"_s], QString());
    EXPECT_EQ(column(u"Vardelins"_s, u"Rate"_s), QStringList());
}

// Off the record and back: the way in which windows save.
TEST_F(AdodcTest, CommitsWhatWasTypedWhenTheRecordIsLeft)
{
    addLogs(1, 1);
    control.Refresh();
    add(u"Rates"_s, {{u"Rates"_s, Value(u"50"_s)}}); // the file changes meanwhile, elsewhere
    field[u"Rate"_s] = u"150"_s;
    field[u"Duration"_s] = u".4"_s;
    field[u"Fee"_s] = u"$1,060.5"_s;
    field[u"Beginning Time"_s] = u"2026-10-16 21:54"_s;
    EXPECT_TRUE(control.edited());
    EXPECT_TRUE(control.MovePrevious());
    EXPECT_TRUE(control.Recordset().BOF());
    EXPECT_EQ(field[u"Rate"_s], QString());
    EXPECT_TRUE(control.MoveNext());
    EXPECT_EQ(field[u"Rate"_s], u"150"_s);
    EXPECT_EQ(field[u"Duration"_s], u"0.4"_s);
    EXPECT_EQ(field[u"Fee"_s], u"1060.5"_s);
    EXPECT_EQ(field[u"Beginning Time"_s], u"10/16/2026 9:54:00 PM"_s);
    EXPECT_EQ(exported(u"Vardelins"_s),
              QStringList{u"1,Client 1,150,,10/16/26 21:54:00,0.40000001,1060.5000"_s});
    field[u"Beginning Time"_s].clear(); // a date that is taken away
    field[u"Client"_s].clear();
    EXPECT_TRUE(control.commitEdits());
    EXPECT_EQ(control.Recordset().Fields(u"Beginning Time"_s), Value(NullValue{}));
    EXPECT_EQ(control.Recordset().Fields(u"Client"_s), Value(QString(u""_s)));
    expectSound();
}

TEST_F(AdodcTest, StaysWithWhatTheEngineRefuses)
{
    addLogs(1, 2);
    control.Refresh();
    takeTold();
    const struct
    {
        const char *column, *typed;
        int error;
    } rows[] = {
        {"Duration", "two hours", 3421},
        {"Beginning Time", "13/45/2026", 3421},
        {"Fee", "much", 3421},
        {"Rate", "more than ten", 3163},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.column);
        const QString name = QString::fromLatin1(row.column), typed = QString::fromLatin1(row.typed);
        field[u"Client"_s] = u"Typed beside it"_s;
        field[name] = typed;
        EXPECT_FALSE(control.MoveNext());
        EXPECT_FALSE(control.SetAbsolutePosition(2));
        EXPECT_FALSE(control.commitEdits());
        EXPECT_EQ(takeErrors(), (QList<int>{row.error, row.error, row.error}));
        EXPECT_EQ(takeTold(), QList<int>());
        EXPECT_EQ(control.Recordset().AbsolutePosition(), 1);
        EXPECT_EQ(field[name], typed);
        EXPECT_EQ(field[u"Client"_s], u"Typed beside it"_s);
        EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s)[0], u"Client 1"_s);
        control.dropEdits();
        EXPECT_EQ(field[u"Client"_s], u"Client 1"_s);
    }
    field[u"Rate"_s] = u"more than ten"_s;
    control.onError = nullptr;
    EXPECT_EQ(errorOf([&] { control.MoveNext(); }), 3163);
    field[u"Rate"_s] = u"ten"_s;
    EXPECT_TRUE(control.MoveNext());
    EXPECT_EQ(column(u"Vardelins"_s, u"Rate"_s)[0], u"ten"_s);
}

TEST_F(AdodcTest, DropsEditsAtRefreshAndEmptiesTheFieldsWhenItFails)
{
    addLogs(1, 2);
    control.Refresh();
    field[u"Client"_s] = u"Typed"_s;
    control.Refresh();
    EXPECT_EQ(field[u"Client"_s], u"Client 1"_s);
    EXPECT_EQ(column(u"Vardelins"_s, u"Client"_s)[0], u"Client 1"_s);
    add(u"Active Clients"_s,
        {{u"Client Last Name"_s, Value(u"Able"_s)}, {u"Client First Name"_s, Value(u""_s)}});
    control.RecordSource = u"[Active Clients]"_s; // lent to another table: the fields' columns aren't there
    control.Refresh();
    EXPECT_EQ(control.Recordset().RecordCount(), 1);
    EXPECT_EQ(field[u"Client"_s], QString());
    field[u"Client"_s] = u"typed beside the table"_s;
    EXPECT_TRUE(control.MoveNext());
    EXPECT_EQ(takeErrors(), QList<int>());
    control.ConnectionString = ado::connectionText(pathOf(u"none.mdb"_s));
    EXPECT_EQ(errorOf([&] { control.Refresh(); }), 3024);
    EXPECT_FALSE(control.isOpen());
    EXPECT_EQ(field[u"Client"_s], QString());
}

TEST_F(AdodcTest, TellsOfARecordThatOthersDeleted)
{
    addLogs(1, 3);
    control.Refresh();
    {
        const auto database = open();
        const auto logs = database->OpenRecordset(u"Vardelins"_s);
        logs->MoveNext();
        logs->Delete();
    }
    EXPECT_TRUE(control.MoveNext());
    EXPECT_EQ(takeErrors(), QList<int>{3167});
    EXPECT_EQ(field[u"Client"_s], QString());
    EXPECT_EQ(takeTold(), (QList<int>{7, 13}));
    EXPECT_TRUE(control.MoveNext());
    EXPECT_EQ(field[u"Client"_s], u"Client 3"_s);
    EXPECT_EQ(takeErrors(), QList<int>());
}

TEST_F(AdodcTest, LetsTwoFieldsShareAColumn)
{
    addLogs(1, 1);
    QString twin;
    control.bind({u"Beginning Time"_s, [&](const QString &text) { twin = text; }, [&] { return twin; }});
    control.Refresh();
    EXPECT_EQ(twin, u"3/16/2023"_s);
    twin = u"3/17/2023"_s;
    EXPECT_TRUE(control.commitEdits());
    EXPECT_EQ(field[u"Beginning Time"_s], u"3/17/2023"_s);
    field[u"Beginning Time"_s] = u"3/18/2023"_s;
    EXPECT_TRUE(control.commitEdits());
    EXPECT_EQ(twin, u"3/18/2023"_s);
}

} // namespace
} // namespace vardelin
