#pragma once
// An office with a Display window, from whose menu the transfers are chosen.

#include "database/CreateDatabase.h"
#include "platform/ui/BusyPointer.h"
#include "tests/shell/Running.h"

namespace vardelin::testing_support {

using namespace Qt::StringLiterals;

struct TransferOffice : OfficeProgram
{
    TransferOffice()
    {
        wire(global, main);
        QDir::setCurrent(folder.path());
    }
    ~TransferOffice() { setMousePointer(kDefaultPointer); }

    void open()
    {
        main.show();
        window = global.openers.NewDisplayWindow();
    }
    void addLog(const QString &client, double beginning, const Value &ending,
                const QString &notes = u"notes"_s)
    {
        add(u"Vardelins"_s, {{u"Client"_s, client},
                             {u"Rate"_s, u"175"_s},
                             {u"Vardelin"_s, notes},
                             {u"VardeGraphic"_s, u"{\\rtf1 "_s + notes + u'}'},
                             {u"Fee"_s, u"17.5"_s},
                             {u"Duration"_s, u"7.5"_s},
                             {u"Beginning Time"_s, DateSerial{beginning}},
                             {u"Ending Time"_s, ending}});
    }
    void addClient(const Value &last, const Value &first, const QString &city)
    {
        add(u"Active Clients"_s, {{u"Client Last Name"_s, last},
                                  {u"Client First Name"_s, first},
                                  {u"Active Client City"_s, city},
                                  {u"Active Client Notes"_s, u"kept notes"_s},
                                  {u"Active Client Forum"_s, u"kept forum"_s}});
    }
    // Another file of the office, made by `fill`, with this one put back.
    QString otherFile(const QString &name, const std::function<void()> &fill)
    {
        const QString own = global.DatabaseFileName;
        global.DatabaseFileName = folder.filePath(name);
        CreateDatabase(global);
        fill();
        return std::exchange(global.DatabaseFileName, own);
    }
    QStringList columnOf(const QString &file, const QString &table, const QString &name)
    {
        const QString own = std::exchange(global.DatabaseFileName, file);
        const QStringList values = column(table, name);
        global.DatabaseFileName = own;
        return values;
    }
    void run(const QString &menu, const QString &file, const QString &message)
    {
        dialogs.expectChoice({.FileName = file});
        dialogs.expectBeginning(message);
        expectLastWord(menu);
        choose(window, menu);
    }
    // An import's end, told by the window after all that the command itself has told.
    void expectLastWord(const QString &menu)
    {
        if (menu == "mnuImportVardelins"_L1)
            dialogs.expect(u"The selected Vardelins have successfully been imported."_s);
        if (menu == "mnuImportDatabase"_L1)
            dialogs.expect(u"The selected database has successfully been imported."_s);
    }
    bool busy() const { return QGuiApplication::overrideCursor() != nullptr; }
    int position() { return window->control().Recordset().AbsolutePosition(); }

    frmMain main{global};
    DisplayWindow *window = nullptr;
};

} // namespace vardelin::testing_support
