#include "benchmarks/Transfer.h"

#include "benchmarks/Figures.h"
#include "benchmarks/QuietProgram.h"
#ifdef VARDELIN_BESIDE_SQLITE
#include "benchmarks/Sqlite.h"
#endif
#include "database/CreateDatabase.h"
#include "shell/Wiring.h"
#include "shell/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

// Picks the file that it was told, and answers every box at once.
class PickingDialogs final : public Dialogs
{
public:
    QString picked;

    Answer msgBox(const MsgBox &) override { return Answer::Ok; }
    QString inputBox(const QString &, const QString &) override { return {}; }
    bool showOpen(CommonDialog &dialog) override
    {
        dialog.FileName = picked;
        return true;
    }
    bool showSave(CommonDialog &) override { return false; }
    bool showFont(CommonDialog &) override { return false; }
};

// A program with one Display window on all logs of a file.
class Office
{
public:
    explicit Office(const QString &file) : m_quiet(file)
    {
        global.DatabaseFileName = file;
        global.DefaultDisplayFont = {u"MS Sans Serif"_s, u"12"_s};
        wire(global, m_main);
        m_main.show();
    }
    void open() { m_window = global.openers.NewDisplayWindow(); }
    double choose(const QString &menu, const QString &other)
    {
        m_dialogs.picked = other;
        return secondsOf([&] { m_window->findChild<QAction *>(menu)->trigger(); });
    }
    std::int64_t logs(const QString &file)
    {
        const auto database = m_quiet.engine.OpenDatabase(file);
        return database->OpenRecordset(u"Vardelins"_s)->RecordCount();
    }

private:
    PickingDialogs m_dialogs;
    QuietProgram m_quiet;
    Services m_services{m_dialogs,      m_quiet.clock,   m_quiet.settings, m_quiet.engine,
                        m_quiet.errors, m_quiet.printer, QString()};

public:
    Global global{m_services};

private:
    frmMain m_main{global};
    DisplayWindow *m_window = nullptr;
};

void copyInSqlite(const QString &source, const QString &target)
{
#ifdef VARDELIN_BESIDE_SQLITE
    const QString theirs = target + u"-rows.sqlite"_s, copy = target + u"-copy.sqlite"_s;
    QFile::remove(theirs);
    QFile::remove(copy);
    copyToSqlite(source, theirs);
    std::printf("sqlite_copy %.6f\n", secondsOf([&] { runInSqlite("export_all", theirs, copy); }));
    QFile::remove(theirs);
    QFile::remove(copy);
#else
    static_cast<void>(source);
    static_cast<void>(target);
#endif
}

} // namespace

int transferLogs(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QString source = QFileInfo(QString::fromLocal8Bit(argv[2])).absoluteFilePath();
    const QString target = QFileInfo(QString::fromLocal8Bit(argv[3])).absoluteFilePath();
    const QString back = target + u"-back.mdb"_s;
    QFile::remove(target);
    QFile::remove(back);
    {
        Office office(source);
        office.open();
        std::printf("export %.6f\n", office.choose(u"mnuExportVardelins"_s, target));
        if (office.logs(target) != office.logs(source))
            throw std::runtime_error("logs were left behind");
    }
    {
        Office office(back);
        CreateDatabase(office.global);
        office.open();
        std::printf("import %.6f\n", office.choose(u"mnuImportVardelins"_s, source));
        if (office.logs(back) != office.logs(source))
            throw std::runtime_error("logs were left behind");
    }
    copyInSqlite(source, target);
    return 0;
}

} // namespace vardelin::bench
