// Done when the disk or the process gives out amid it. The limit of a file's size makes the write that goes
// beyond it fail, or the process that tries it die.

#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"
#include "todo/frmToDo.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

constexpr int kItems = 1500;
const QString kFailed = u"There was an error in returning from the To Do List: "_s;
const QString kEmptied = kFailed + u"No current record."_s;

class WriteLimit
{
public:
    WriteLimit(rlim_t bytes, void (*beyond)(int)) : m_handler(std::signal(SIGXFSZ, beyond))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~WriteLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    WriteLimit(const WriteLimit &) = delete;
    WriteLimit &operator=(const WriteLimit &) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

struct ToDoSave : testing::Test, OfficeProgram
{
    ToDoSave()
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto things = database->OpenRecordset(u"Things To Do"_s);
        database->BeginTrans();
        for (int i = 0; i < kItems; ++i) {
            things->AddNew();
            things->SetField(u"TTD Priority"_s, u"3"_s);
            things->SetField(u"TTD Project"_s, u"Martin, Martin"_s);
            things->SetField(u"ThingToDo"_s, u"item %1"_s.arg(i, 4, 10, QChar(u'0')));
            things->Update();
        }
        database->CommitTrans();
        const std::vector<std::pair<QString, Value>> client{{u"Client Last Name"_s, u"Martin"_s},
                                                            {u"Client First Name"_s, u"Martin"_s},
                                                            {u"Active Client Things To Do"_s, u"old text"_s}};
        add(u"Active Clients"_s, client);
    }
    ~ToDoSave() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    QStringList items() { return column(u"Things To Do"_s, u"ThingToDo"_s); }
    qsizetype clientLines()
    {
        return column(u"Active Clients"_s, u"Active Client Things To Do"_s).constFirst().count(u"\r\n"_s);
    }
};

TEST_F(ToDoSave, aCrashAmidDoneBringsTheOldListBack)
{
    const QStringList before = items();
    frmToDo form(global);
    form.show();
    form.ListView1().clickColumn(2);
    form.ListView1().clickColumn(2);
    int journals = 0;
    // While the journal is written, and while the pages are; whole sectors, as disks write them.
    for (const rlim_t limit : {rlim_t(4096), rlim_t(60 * 1024), rlim_t(160 * 1024), rlim_t(250 * 1024)}) {
        const pid_t child = ::fork();
        if (child == 0) {
            const WriteLimit dies(limit, SIG_DFL);
            dialogs.expect(kEmptied);
            choose(&form, u"mnuDone"_s);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ) << limit;
        journals += QFileInfo::exists(global.DatabaseFileName + u"-journal"_s) ? 1 : 0;
        EXPECT_EQ(items(), before) << limit;
        EXPECT_EQ(column(u"Active Clients"_s, u"Active Client Things To Do"_s), QStringList{u"old text"_s});
    }
    EXPECT_EQ(journals, 4) << "killed amid the writing";
}

TEST_F(ToDoSave, aFailingDiskIsToldAndALaterDoneCompletes)
{
    const QStringList before = items();
    frmToDo form(global);
    form.show();
    form.ListView1().clickColumn(2);
    form.ListView1().clickColumn(2);
    const auto failingDone = [&](rlim_t limit) {
        const WriteLimit fails(limit, SIG_IGN);
        dialogs.expectBeginning(kFailed);
        choose(&form, u"mnuDone"_s);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(form.ListView1().topLevelItemCount(), kItems) << "the list stays as it was";
    };
    for (const rlim_t limit : {rlim_t(4096), rlim_t(160 * 1024)}) {
        failingDone(limit);
        EXPECT_EQ(items(), before);
    }
    dialogs.expect(kEmptied);
    choose(&form, u"mnuDone"_s);
    EXPECT_EQ(items(), QStringList());
    failingDone(4096);
    EXPECT_EQ(items(), QStringList());
    choose(&form, u"mnuDone"_s);
    EXPECT_FALSE(form.isVisible());
    QStringList backward = before;
    std::ranges::reverse(backward);
    EXPECT_EQ(items(), backward);
    EXPECT_EQ(clientLines(), 2 * kItems) << "what the failed one had collected wasn't cleared: settled";
}

} // namespace
