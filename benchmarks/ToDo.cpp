#include "benchmarks/ToDo.h"

#include "benchmarks/Figures.h"
#include "benchmarks/Painting.h"
#include "benchmarks/QuietProgram.h"
#include "database/CreateDatabase.h"
#include "todo/frmToDo.h"

#include <QAction>
#include <QApplication>
#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kItems = 5000;
constexpr int kClients = 500;
constexpr int kRuns = 5;

// Answers every box at once.
class QuickDialogs final : public Dialogs
{
public:
    Answer msgBox(const MsgBox &) override { return Answer::Ok; }
    QString inputBox(const QString &, const QString &) override { return {}; }
    bool showOpen(CommonDialog &) override { return false; }
    bool showSave(CommonDialog &) override { return false; }
    bool showFont(CommonDialog &) override { return false; }
};

void fill(Global &global)
{
    CreateDatabase(global);
    const auto database = global.services.engine.OpenDatabase(global.DatabaseFileName);
    const auto clients = database->OpenRecordset(u"Active Clients"_s);
    const auto things = database->OpenRecordset(u"Things To Do"_s);
    database->BeginTrans();
    for (int i = 0; i < kClients; ++i) {
        clients->AddNew();
        clients->SetField(u"Client Last Name"_s, u"Last%1"_s.arg(i));
        clients->SetField(u"Client First Name"_s, u"First%1"_s.arg(i % 7));
        clients->Update();
    }
    for (int i = 0; i < kItems; ++i) {
        const int client = i * 7919 % kClients;
        things->AddNew();
        things->SetField(u"TTD Priority"_s, QString::number(i * 3 % 5 + 1));
        if (i % 4 == 0) {
            things->SetField(u"TTD Project"_s, u"Project %1"_s.arg(i * 31 % 97));
        } else {
            things->SetField(u"TTD Client Last Name"_s, u"Last%1"_s.arg(client));
            things->SetField(u"TTD Client First Name"_s, u"First%1"_s.arg(client % 7));
        }
        things->SetField(u"ThingToDo"_s,
                         u"%1 call about the hearing and file the answer"_s.arg(i * 6007 % 9973));
        things->SetField(u"Thing To Do Start Date"_s, DateSerial{45000.0 + i % 900});
        things->SetField(u"Thing To Do Deadline"_s, DateSerial{45007.0 + i % 900});
        things->Update();
    }
    database->CommitTrans();
}

void done(frmToDo &form)
{
    form.findChild<QAction *>(u"mnuDone"_s)->trigger();
}

struct Times
{
    std::vector<double> load, sort, writeBack;
};

void run(Global &global, Times &times)
{
    const std::int64_t start = nanosecondsNow();
    frmToDo form(global);
    form.show();
    QWidget *sheet = form.ListView1().viewport();
    waitForPaint(sheet);
    times.load.push_back(secondsSince(start));
    if (form.ListView1().topLevelItemCount() != kItems)
        throw std::runtime_error("the list doesn't show the items");
    for (const int column : {2, 1, 4, 0}) {
        times.sort.push_back(secondsOf([&] {
            form.ListView1().clickColumn(column);
            waitForPaint(sheet);
        }));
    }
    times.writeBack.push_back(secondsOf([&] {
        done(form);
        done(form);
    }));
    if (form.isVisible())
        throw std::runtime_error("the list wasn't written back");
}

} // namespace

int useToDo(int argc, char **argv)
{
    QApplication application(argc, argv);
    QuickDialogs dialogs;
    QuietProgram program(QString::fromLocal8Bit(argv[2]));
    Services services{dialogs,        program.clock,   program.settings, program.engine,
                      program.errors, program.printer, QString()};
    Global global{services};
    global.DatabaseFileName = program.global.DatabaseFileName;
    global.DefaultToDoFont = {u"MS Sans Serif"_s, u"12"_s};
    fill(global);
    Times times;
    for (int i = 0; i < kRuns; ++i)
        run(global, times);
    std::printf("load %.6f\nsort %.6f\nwrite_back %.6f\n", median(times.load), median(times.sort),
                median(times.writeBack));
    return 0;
}

} // namespace vardelin::bench
