// What statements of rows in text files can't show: long and deep statements, places, indexes, errors'
// positions.
#include "platform/sql/Select.h"
#include "platform/sql/Cells.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

class SelectTest : public testing::Test
{
protected:
    SelectTest()
        : m_file(jet::File::create(std::filesystem::path(m_folder.filePath(u"select.mdb"_s).toStdString())))
    {
        jet::NewTable table;
        table.name = u"Logs";
        table.columns = {{u"Id", jet::ColumnType::Long, 0, true},
                         {u"Client", jet::ColumnType::Text, 200},
                         {u"Notes", jet::ColumnType::Memo}};
        table.indexes.push_back({u"PrimaryKey", {{u"Id", false}}, true, true, true, false});
        m_file->createTable(table);
    }

    void addLogs(int count)
    {
        jet::Scope scope(*m_file);
        for (int i = 0; i < count; ++i)
            logs().insert(std::vector<jet::ColumnValue>{{1, toU16(u"Client %1"_s.arg(i % 100))},
                                                        {2, toU16(u"note %1 "_s.arg(i))}});
        scope.commit();
    }

    jet::Table &logs() { return m_file->table(u"Logs"); }

    std::vector<std::int32_t> ids(const QString &statement)
    {
        const Select select(*m_file, statement);
        std::vector<std::int32_t> ids;
        const jet::ReadScope scope(*m_file);
        for (const jet::RowId place : select.places())
            ids.push_back(logs().row(place).longValue(0));
        return ids;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<jet::File> m_file;
};

} // namespace

TEST_F(SelectTest, FiveThousandClientsAreOneStatement)
{
    addLogs(300);
    QString filter;
    for (int i = 0; i < 5000; ++i)
        filter += u"%1Client Like 'CLIENT %2' "_s.arg(i == 0 ? u""_s : u" OR "_s).arg(i * 2);
    EXPECT_EQ(ids(u"SELECT * FROM Logs  WHERE (%1) ORDER BY Client, Id"_s.arg(filter)).size(), 150u);
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE (%1) AND Id Between 1 And 10"_s.arg(filter)),
              (std::vector<std::int32_t>{1, 3, 5, 7, 9}));
    // Terms of another kind among them keep their meaning.
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE Id = 2 OR %1 OR Client Like '% 33'"_s.arg(filter)).size(), 154u);
}

TEST_F(SelectTest, DepthIsBoundedByMemoryAlone)
{
    addLogs(3);
    const int depth = 100000;
    const QString open(depth, u'('), close(depth, u')');
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE "_s + open + u"Id = 2"_s + close), std::vector<std::int32_t>{2});
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE "_s + u"Not "_s.repeated(depth) + u"Id = 2"_s),
              std::vector<std::int32_t>{2});
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE Id = "_s + u"(1 + "_s.repeated(depth) + u"2 - %1"_s.arg(depth) +
                  close),
              std::vector<std::int32_t>{2});
    EXPECT_EQ(ids(u"SELECT * FROM Logs WHERE Id = 1"_s + u" Or Id = 3"_s.repeated(depth)),
              (std::vector<std::int32_t>{1, 3}));
    EXPECT_EQ(
        ids(u"SELECT * FROM Logs WHERE "_s + u"IIf(Id = 9, 0, "_s.repeated(depth) + u"Id = 3"_s + close),
        std::vector<std::int32_t>{3});
    for (const QString &broken : {open + u"Id = 2"_s, u"Id = 2"_s + close, u"IIf("_s.repeated(depth),
                                  u"Id Between "_s.repeated(depth), u"'"_s + QString(depth, u'x'),
                                  u'[' + QString(depth, u'x'), u'#' + QString(depth, u'1')})
        EXPECT_THROW(ids(u"SELECT * FROM Logs WHERE "_s + broken), Error) << qPrintable(broken.left(20));
}

TEST_F(SelectTest, AnIndexGivesWhatAScanGives)
{
    addLogs(500);
    for (const auto &condition : {u"Id = 77"_s, u"77 = Id"_s, u"Id = 77.0 And Client Like 'client%'"_s,
                                  u"Id = 77 And Notes Is Null"_s, u"Id = 77.5"_s, u"Id = 1E20"_s,
                                  u"Id = 77 Or Id = 78"_s, u"Id = Null"_s, u"Id = -1"_s})
        EXPECT_EQ(ids(u"Select * From Logs Where "_s + condition),
                  ids(u"Select * From Logs Where (%1) + 0"_s.arg(condition)))
            << qPrintable(condition);
    EXPECT_EQ(ids(u"Select * From Logs Where Id = 77"_s), std::vector<std::int32_t>{77});
}

TEST_F(SelectTest, PlacesOutliveOtherChanges)
{
    addLogs(50);
    const Select select(*m_file, u"Select Client, Client & '!' As Loud, Id From Logs Order By Id Desc"_s);
    EXPECT_TRUE(select.hasPlaces());
    EXPECT_EQ(select.columns()[0].source, 1u);
    EXPECT_FALSE(select.columns()[1].source);
    EXPECT_EQ(select.findColumn(u"LOUD"), 1u);
    EXPECT_FALSE(select.findColumn(u"Notes"));
    const std::vector<jet::RowId> places = select.places();
    ASSERT_EQ(places.size(), 50u);
    logs().update(places[0], std::vector<jet::ColumnValue>{{1, std::u16string(180, u'x')}});
    logs().erase(places[1]);
    const jet::ReadScope scope(*m_file);
    EXPECT_EQ(select.value(1, logs().row(places[0])), Value(QString(180, u'x') + u'!'));
    EXPECT_EQ(select.value(2, logs().row(places[0])), Value(50));
    EXPECT_FALSE(logs().exists(places[1]));
    EXPECT_EQ(select.places().size(), 49u);
}

TEST_F(SelectTest, OrderIsStable)
{
    addLogs(400);
    const std::vector<std::int32_t> order = ids(u"Select * From Logs Order By Client"_s);
    for (std::size_t i = 1; i < order.size(); ++i) {
        if ((order[i - 1] - 1) % 100 == (order[i] - 1) % 100) {
            ASSERT_LT(order[i - 1], order[i]);
        }
    }
}

TEST_F(SelectTest, BareNamesOfTables)
{
    addLogs(3);
    for (const QString &source : {u"Logs"_s, u"[logs]"_s, u" LOGS "_s})
        EXPECT_EQ(ids(source).size(), 3u);
    for (const auto &[source, number] : {std::pair{u"Nothing"_s, Number::TableNotFound},
                                         {u"[No Thing]"_s, Number::TableNotFound},
                                         {u""_s, Number::NoCommandText},
                                         {u"ORDER BY [Beginning Time]"_s, Number::SyntaxError}}) {
        try {
            (void)ids(source);
            ADD_FAILURE() << qPrintable(source);
        } catch (const Error &error) {
            EXPECT_EQ(error.number(), number) << qPrintable(source);
        }
    }
}

TEST_F(SelectTest, ErrorsTellTheirPlace)
{
    const struct
    {
        const char *statement;
        const char *at; // what stands there
    } cases[] = {
        {"Select * From Logs Where Id = 1 Client", "Client"},
        {"Select * From Logs Where Nobody = 1", "Nobody"},
        {"Select * From Nowhere", "Nowhere"},
        {"Select * From Logs AND Id = 1", "AND"},
        {"Select Foo(1) From Logs", "Foo"},
    };
    for (const auto &c : cases) {
        const QString statement = QString::fromLatin1(c.statement);
        try {
            (void)ids(statement);
            ADD_FAILURE() << c.statement;
        } catch (const Error &error) {
            EXPECT_EQ(error.position(), statement.lastIndexOf(QLatin1StringView(c.at))) << c.statement;
        }
    }
}

} // namespace vardelin::sql
