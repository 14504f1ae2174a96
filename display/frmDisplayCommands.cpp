// The menus of the Display window and what they do to the record.

#include "database/FileCommands.h"
#include "database/LogDatabase.h"
#include "database/Transfer.h"
#include "display/PrintRichText.h"
#include "display/PrintedLog.h"
#include "display/frmDisplay.h"
#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/EditCommands.h"
#include "shell/state/Global.h"
#include "shell/state/WindowCycle.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kObjectGone = 420;
constexpr int kPrintMargin = kTwipsPerInch;

} // namespace

void frmDisplay::makeMenus()
{
    const Openers &openers = m_global.openers;
    const auto call = [this](void (frmDisplay::*handler)()) {
        return [this, handler] { (this->*handler)(); };
    };
    const auto edit = [this](void (*command)(QWidget *)) {
        return [this, command] { command(activeTextField(*this)); };
    };
    const MenuEntry line{u"mnuLine"_s, u"-"_s};
    const std::vector<MenuEntry> file{
        {u"mnuSaveFileAs"_s, u"&Save File As ..."_s, {}, fileCommand(SaveFileAs)},
        {u"mnuOpenFile"_s, u"&Open File"_s, {}, fileCommand(OpenFile)},
        {u"mnuNewFile"_s, u"&New File"_s, {}, fileCommand(NewFile)},
        {u"mnuImportVardelins"_s,
         u"&Import Vardelins"_s,
         {},
         fileCommand(ImportLogs, u"The selected Vardelins have successfully been imported."_s)},
        {u"mnuExportVardelins"_s, u"&Export Vardelins"_s, {}, fileCommand(ExportLogs)},
        {u"mnuImportDatabase"_s,
         u"Import &Active Clients Information"_s,
         {},
         fileCommand(ImportActiveClients, u"The selected database has successfully been imported."_s)},
        {u"mnuExportActiveClients"_s,
         u"E&xport Active Clients Information"_s,
         {},
         fileCommand(ExportActiveClients)},
        {u"mnuCompactData"_s, u"&Compact Data"_s, {}, fileCommand(CompactDatabase)},
        {u"mnuReport"_s, u"&Report"_s, {}, call(&frmDisplay::mnuReport_Click)},
        {u"mnuLine2"_s, u"-"_s},
        {u"mnuPrintVardelin"_s, u"&Print Vardelin"_s, {}, call(&frmDisplay::mnuPrintVardelin_Click)},
        {u"mnuLine3"_s, u"-"_s},
        {u"mnuExit"_s, u"E&xit"_s, {}, [&openers] { openers.ExitProgram(); }}};
    const std::vector<MenuEntry> editing{
        {u"mnuCopy"_s, u"&Copy"_s, QKeySequence(Qt::CTRL | Qt::Key_C),
         [this] { copySelection(activeTextField(*this)); }},
        {u"mnuCut"_s, u"C&ut"_s, QKeySequence(Qt::CTRL | Qt::Key_X), edit(cutSelection)},
        {u"mnuDPaste"_s, u"&Paste"_s, QKeySequence(Qt::CTRL | Qt::Key_G), edit(pasteText)},
        {u"mnuDelete"_s, u"&Delete"_s, QKeySequence(Qt::Key_Delete), edit(deleteSelection)}};
    const std::vector<MenuEntry> view{
        {u"mnuText"_s, u"&Text"_s, {}, call(&frmDisplay::mnuText_Click)},
        {u"mnuGraphics"_s, u"&Graphics"_s, {}, call(&frmDisplay::mnuGraphics_Click)}};
    const std::vector<MenuEntry> window{
        {u"mnuTileHorizontally"_s, u"Tile &Horizontally"_s, {}, [&openers] { openers.TileHorizontally(); }},
        {u"mnuTileVertically"_s, u"Tile &Vertically"_s, {}, [&openers] { openers.TileVertically(); }},
        {u"mnuCascade"_s, u"&Cascade"_s, {}, [&openers] { openers.CascadeWindows(); }}};
    const std::vector<MenuEntry> help{
        {u"mnuIndex"_s, u"&Index"_s},
        {u"mnuTips"_s, u"&Show Tip of the Day"_s, {}, [&openers] { openers.frmTip(); }},
        {u"mnuInternet"_s,
         u"&Get help from the internet"_s,
         {},
         [&openers] { openers.open(openers.frmBrowser, u"Get help from the internet"_s); }},
        line,
        {u"mnuAbout"_s, u"&About this program"_s, {}, [&openers] {
             openers.open(openers.frmAboutvarden, u"About this program"_s);
         }}};
    m_barActions =
        makeBar(this,
                {{u"mnuFile"_s, u"&File"_s, {}, {}, file},
                 {u"mnuEdit"_s, u"&Edit"_s, {}, {}, editing},
                 {u"mnuSaveChanges"_s, u"&Save changes"_s, {}, call(&frmDisplay::mnuSaveChanges_Click)},
                 {u"mnuView"_s, u"&View"_s, {}, {}, view},
                 {u"mnuDeleteLog"_s, u"&Delete Log"_s, {}, call(&frmDisplay::mnuDeleteLog_Click)},
                 {u"mnuSearch"_s, u"&Search"_s, {}, call(&frmDisplay::mnuSearch_Click)},
                 {u"mnuActiveClients"_s,
                  u"&Active Clients"_s,
                  {},
                  [this, &openers] {
                      useThisWindow();
                      openers.open(openers.frmActiveClients, u"Active Clients"_s);
                  }},
                 {u"mnuDEnter"_s, u"Enter &data"_s, {}, call(&frmDisplay::mnuDEnter_Click)},
                 {u"mnuWindow"_s, u"&Window"_s, {}, {}, window},
                 {u"mnuHelp"_s, u"&Help"_s, {}, {}, help}},
                m_global.services.errors);
    m_windowMenu = findChild<QMenu *>(u"mnuWindow"_s);
}

// What every command on a file does first: this window is the one it came from.
void frmDisplay::useThisWindow()
{
    m_global.DisplayWindowActive = true;
    m_global.EntryWindowActive = false;
    m_global.CurrentDisplayTag = Tag;
    m_global.DatabaseFileName = file();
}

// The two imports end on a word of this window's, whatever the command itself had to say: settled.
std::function<void()> frmDisplay::fileCommand(void (*command)(Global &), const QString &lastWord)
{
    return [this, command, lastWord] {
        useThisWindow();
        command(m_global);
        if (!lastWord.isEmpty())
            m_global.services.dialogs.msgBox({lastWord});
    };
}

void frmDisplay::mnuReport_Click()
{
    m_global.openers.DataReport1(Adodc1.Recordset());
}

// A field without text leaves what the search had before.
void frmDisplay::mnuSearch_Click()
{
    if (!Text1->text().isEmpty())
        m_global.SearchClient = Text1->text();
    if (!Text3->text().isEmpty())
        m_global.SearchProject = Text3->text();
    useThisWindow();
    m_global.openers.frmSearch(!Text1->text().isEmpty()   ? m_global.SearchClient
                               : !Text3->text().isEmpty() ? m_global.SearchProject
                                                          : QString());
}

// Writes no column itself: moving off the record and back makes the data control commit.
void frmDisplay::mnuSaveChanges_Click()
{
    changeRecord([this] {
        const ado::Recordset &records = Adodc1.Recordset();
        if (records.BOF() && records.EOF_())
            return;
        if (records.BOF()) {
            if (Adodc1.MoveNext())
                Adodc1.MovePrevious();
        } else if (Adodc1.MovePrevious()) {
            Adodc1.MoveNext();
        }
    });
}

void frmDisplay::mnuDeleteLog_Click()
{
    Dialogs &dialogs = m_global.services.dialogs;
    const QString title = u"Delete This Record"_s;
    const Answer answer = dialogs.msgBox(
        {.prompt = u"Are you sure?"_s, .title = title, .buttons = Buttons::YesNo, .defaultButton = 2});
    if (answer == Answer::Yes)
        changeRecord([&] {
            const ado::Recordset &records = Adodc1.Recordset();
            if (records.EOF_() && records.BOF()) {
                dialogs.msgBox({u"There are no records to delete."_s, title});
                return;
            }
            Adodc1.Delete();
            if (records.RecordCount() > 0)
                Adodc1.MoveLast();
        });
    Text2->setFocus();
}

// An error of the engine is shown as the data control shows it, and the window goes on.
void frmDisplay::changeRecord(const std::function<void()> &change)
{
    if (!Adodc1.isOpen())
        return;
    try {
        change();
    } catch (const RunTimeError &error) {
        Adodc1.onError(error);
    }
    m_navigator->refreshButtons();
}

void frmDisplay::mnuDEnter_Click()
{
    m_global.DatabaseFileName = file();
    OpenLogDatabase(m_global);
    m_global.openers.NewEntryWindow();
}

void frmDisplay::mnuPrintVardelin_Click()
{
    try {
        printVardelin();
    } catch (const RunTimeError &error) {
        Dialogs &dialogs = m_global.services.dialogs;
        if (error.description() == descriptionOf(RunTime::NoCurrentRecord))
            dialogs.msgBox({u"No current record found in the Vardelin Display window to print."_s});
        else if (error.number() == kObjectGone)
            dialogs.msgBox({u"There is no log available for printing."_s});
    }
}

// The text is made ahead of either view: a log without one prints in neither.
void frmDisplay::printVardelin()
{
    const ado::Recordset &records = Adodc1.Recordset();
    const QString text = printedText({.client = records.Fields(u"Client"_s),
                                      .project = records.Fields(u"Project"_s),
                                      .employee = records.Fields(u"Employee"_s),
                                      .rate = records.Fields(u"Rate"_s),
                                      .summary = records.Fields(u"Log Summary"_s),
                                      .notes = records.Fields(u"Vardelin"_s),
                                      .begin = records.Fields(u"Beginning Time"_s),
                                      .end = records.Fields(u"Ending Time"_s),
                                      .duration = records.Fields(u"Duration"_s),
                                      .shownProject = Text3->text()});
    if (findChild<QAction *>(u"mnuText"_s)->isEnabled()) {
        printRich(*RichTextBox1->document());
        return;
    }
    // Beside the box, not in it: what stands in the box goes to the record.
    QTextDocument page;
    page.setDefaultFont(RichTextBox2->document()->defaultFont());
    page.setPlainText(text);
    printRich(page);
}

void frmDisplay::printRich(const QTextDocument &text)
{
    PrintRichText(m_global.services.printer, text, kPrintMargin, kPrintMargin, kPrintMargin, kPrintMargin);
}

void frmDisplay::Back_Click()
{
    if (!goBack(m_global, *this, CycleKind::Display))
        Label1->setText(Label2->text());
}

void frmDisplay::Forward_Click()
{
    if (!goForward(m_global, *this))
        Label1->setText(Label2->text());
}

} // namespace vardelin
