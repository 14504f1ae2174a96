// What is left of a deactivation that doesn't come to its end.

#include "contacts/Deactivation.h"
#include "contacts/ActiveClientsReport.h"
#include "platform/base/Dates.h"
#include "tests/contacts/ClientWindows.h"
#include "tests/jet/Processes.h"

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

constexpr rlim_t kPage = 4096;

// How the process ends whose first byte at `limit` or beyond, in whatever file, is its death (SIG_DFL) or an
// error (SIG_IGN).
int deactivateUntil(rlim_t limit, void (*atLimit)(int), const QString &file)
{
    return jet::test::Child([&] {
               const rlimit none{0, 0}, most{limit, limit};
               ::setrlimit(RLIMIT_CORE, &none);
               ::setrlimit(RLIMIT_FSIZE, &most);
               std::signal(SIGXFSZ, atLimit);
               dao::DBEngine engine;
               const auto database = engine.OpenDatabase(file);
               const auto active = database->OpenRecordset(u"Active Clients"_s);
               if (!deactivate(*database, *active, {u"Last 21"_s, u"Jo"_s}, serialOf({2026, 10, 16})))
                   throw std::runtime_error("no such client");
           })
        .wait();
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

// The process dies, or is refused the writing, at every page that the command writes, of the journal and of
// the file.
TEST_F(ClientWindowsTest, ACrashOrAFullDiskLeavesTheClientWhereItWas)
{
    for (int i = 0; i < 30; ++i)
        addClient(u"Last %1"_s.arg(i), u"Jo"_s,
                  {{u"City"_s, u"Lansing"_s}, {u"Retainer Terms"_s, QString(900, u't')}});
    add(u"Inactive Clients"_s, {{u"Inactive Client Last Name"_s, u"Old"_s},
                                {u"Inactive Client Retainer Terms"_s, QString(900, u't')}});
    const QString before = folder.filePath(u"before.mdb"_s), file = global.DatabaseFileName;
    ASSERT_TRUE(QFile::copy(file, before));
    const auto state = [](const QString &path) {
        return std::pair(exportedRows(path, u"Active Clients"_s), exportedRows(path, u"Inactive Clients"_s));
    };
    const auto old = state(file);
    ASSERT_EQ(deactivateUntil(RLIM_INFINITY, SIG_DFL, file), 0);
    const auto moved = state(file);
    ASSERT_EQ(moved.first.size(), old.first.size() - 1);
    ASSERT_EQ(moved.second.size(), old.second.size() + 1);

    int killed = 0, refused = 0, halfWritten = 0;
    const auto pages = static_cast<rlim_t>(QFileInfo(before).size()) / kPage;
    for (rlim_t page = 0;; ++page) {
        ASSERT_LE(page, pages + 8);
        QFile::remove(file);
        QFile::remove(file + u"-journal"_s);
        ASSERT_TRUE(QFile::copy(before, file));
        if (page % 4 == 0)
            refused += WEXITSTATUS(deactivateUntil(page * kPage, SIG_IGN, file)) == 1 &&
                       bytesOf(file) == bytesOf(before);
        const int status = deactivateUntil(page * kPage, SIG_DFL, file);
        killed += WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ;
        if (WIFEXITED(status))
            break; // it had room for everything
        halfWritten += bytesOf(file) != bytesOf(before);
        engine.OpenDatabase(file);
        const auto after = state(file);
        EXPECT_TRUE(after == old) << page;
        EXPECT_FALSE(QFileInfo::exists(file + u"-journal"_s)) << page;
        EXPECT_TRUE(jet::checkFile(file.toStdString()).findings.empty()) << page;
    }
    EXPECT_TRUE(state(file) == moved);
    EXPECT_GT(killed, 20);
    EXPECT_EQ(refused, (killed + 3) / 4);
    EXPECT_GT(halfWritten, 0) << "of " << killed << " crashes one at least in the midst of the file's pages";
}

// A file whose tables were made elsewhere: active clients without a key, closed cases with one.
TEST_F(ClientWindowsTest, AnErrorAfterTheDeletionLeavesTheRowDeleted)
{
    std::vector<dao::TableDef> tables = engine.OpenDatabase(global.DatabaseFileName)->TableDefs();
    const QString loose = folder.filePath(u"loose.mdb"_s);
    {
        const auto made = engine.Workspaces(0).CreateDatabase(loose, u";LANGID=0x0409;CP=1252;COUNTRY=0"_s);
        for (dao::TableDef &table : tables) {
            if (table.Name == u"Active Clients"_s)
                table.Indexes.clear();
            if (table.Name == u"Inactive Clients"_s)
                table.Indexes = {
                    {.Name = u"ByName"_s, .Fields = {u"Inactive Client Last Name"_s}, .Unique = true}};
            made->Append(table);
        }
    }
    global.DatabaseFileName = loose;
    for (const char16_t *city : {u"Lansing", u"Flint"})
        addClient(u"Roe"_s, u"Jane"_s, {{u"City"_s, QString::fromUtf16(city)}});
    add(u"Active Clients"_s, {{u"Client Last Name"_s, u"Alone"_s}});
    call();
    const auto form = make<frmInactiveClients>();
    expectQuestion(u"Jane Roe"_s, Answer::Yes);
    answerDay(u"mnuDone"_s);
    clickOn(form.get(), u"Roe, Jane"_s);
    EXPECT_EQ(list(form.get())->entries(), (QStringList{u"Alone, "_s, u"Roe, Jane"_s}));
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client City"_s), QStringList{u"Lansing"_s})
        << "the first in the table";

    expectQuestion(u"Jane Roe"_s, Answer::Yes);
    answerDay(u"mnuDone"_s);
    dialogs.expectBeginning(u"Run-time error '3022'"_s);
    clickOn(form.get(), u"Roe, Jane"_s);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(list(form.get())->entries(), QStringList{u"Alone, "_s});
    EXPECT_EQ(column(u"Active Clients"_s, u"Client Last Name"_s), QStringList{u"Alone"_s});
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client City"_s), QStringList{u"Lansing"_s});

    ado::Connection connection;
    connection.Open(ado::connectionText(loose));
    ado::Recordset records;
    records.Open(activeClientsStatement(), connection);
    EXPECT_TRUE(records.Fields(u"Client"_s).isNull()) << "half a name is none";
}

} // namespace vardelin::testing_support
