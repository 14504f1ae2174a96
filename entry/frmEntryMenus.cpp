// The menus of the Data entry window: name, caption, shortcut, command.
#include "entry/frmEntryWithFrames.h"

#include "shell/state/EditCommands.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

std::vector<MenuEntry> frmEntryWithFrames::menuTable()
{
    return {
        {u"mnuFile"_s, u"&File"_s, {}, {}, fileMenu()},
        {u"mnuEdit"_s, u"&Edit"_s, {}, {}, editMenu()},
        {u"mnuLogcompleted"_s, u"&Log completed"_s, {}, [this] { mnuLogcompleted_Click(); }},
        {u"mnuEnterDisplay"_s, u"&Display"_s, {}, [this] { mnuEnterDisplay_Click(); }},
        {u"mnuSearch"_s, u"&Search"_s, {}, [this] { mnuSearch_Click(); }},
        {u"mnuNewEntry"_s, u"&New Entry"_s, {}, [this] { mnuNewEntry_Click(); }},
        {u"mnuLists"_s, u"&Lists"_s, {}, {}, listsMenu()},
        {u"mnuClients"_s, u"&Clients"_s, {}, {}, clientsMenu()},
        {u"mnuWindow"_s, u"&Window"_s, {}, {}, windowMenuTable()},
        {u"mnuHelp"_s, u"&Help"_s, {}, {}, helpMenu()},
    };
}

std::vector<MenuEntry> frmEntryWithFrames::fileMenu()
{
    std::vector<MenuEntry> entries;
    for (int i = 0; i < 5; ++i)
        entries.push_back(
            {u"mnuFileName(%1)"_s.arg(i), u"FileName"_s, {}, [this, i] { mnuFileName_Click(i); }});
    entries.push_back({u"mnuSeparator"_s, u"-"_s});
    entries.push_back({u"mnuExit"_s, u"E&xit"_s, {}, [this] { m_global.openers.ExitProgram(); }});
    return entries;
}

std::vector<MenuEntry> frmEntryWithFrames::editMenu()
{
    const auto font = [this](FontSetting Global::*setting, const QString &word) {
        return [this, setting, word] { chooseFont(setting, word); };
    };
    const std::vector<MenuEntry> invoiceFonts{
        {u"mnuLetterheadfont"_s,
         u"Le&tterhead font"_s,
         {},
         font(&Global::DefaultLetterheadFont, u"Letterhead"_s)},
        {u"mnuReportfont"_s, u"&Report font"_s, {}, font(&Global::DefaultReportFont, u"Report"_s)},
        {u"mnuVardelinfont"_s, u"&Vardelin font"_s, {}, font(&Global::DefaultVardelinFont, u"Vardelin"_s)},
    };
    const std::vector<MenuEntry> fonts{
        {u"mnuDisplayfont"_s, u"&Display font"_s, {}, font(&Global::DefaultDisplayFont, u"Display"_s)},
        {u"mnuDataentryfont"_s, u"Data &entry font"_s, {}, font(&Global::DefaultEntryFont, u"Entry"_s)},
        {u"mnuInvoiceFont"_s, u"&Invoice Fonts"_s, {}, {}, invoiceFonts},
        {u"mnuPrintFont"_s, u"&Print font"_s, {}, font(&Global::DefaultPrintFont, u"Print"_s)},
    };
    return {
        {u"mnuCopy"_s, u"&Copy"_s, Qt::CTRL | Qt::Key_C, [this] { copySelection(activeTextField(*this)); }},
        {u"mnuCut"_s, u"Cu&t"_s, Qt::CTRL | Qt::Key_X, [this] { cutSelection(activeTextField(*this)); }},
        {u"mnuEPaste"_s, u"&Paste"_s, Qt::CTRL | Qt::Key_G, [this] { pasteText(activeTextField(*this)); }},
        {u"mnuDelete"_s, u"&Delete"_s, Qt::Key_Delete, [this] { deleteSelection(activeTextField(*this)); }},
        {u"mnuLine2"_s, u"-"_s},
        {u"mnuFonts"_s, u"F&onts"_s, {}, {}, fonts},
        {u"mnuLine"_s, u"-"_s},
        {u"mnuSelectAll"_s, u"&Select All"_s, Qt::CTRL | Qt::Key_A, [this] { mnuSelectAll_Click(); }},
    };
}

std::vector<MenuEntry> frmEntryWithFrames::listsMenu()
{
    return {
        {u"mnuActivity"_s, u"&Activities"_s, Qt::Key_F3, launches(u"mnuActivity", &Openers::frmActivity)},
        {u"mnuEmployees"_s, u"&Employees"_s, Qt::Key_F4, launches(u"mnuEmployees", &Openers::frmEmployee)},
        {u"mnuProject"_s, u"&Projects"_s, Qt::Key_F5, launches(u"mnuProject", &Openers::frmProject)},
        {u"mnuRates"_s, u"&Rates"_s, Qt::Key_F6, launches(u"mnuRates", &Openers::frmRate)},
        {u"mnuThingsToDo"_s, u"&Things To Do"_s, Qt::Key_F7, launches(u"mnuThingsToDo", &Openers::frmToDo)},
    };
}

std::vector<MenuEntry> frmEntryWithFrames::clientsMenu()
{
    const std::vector<MenuEntry> invoice{
        {u"mnuLetterhead"_s,
         u"Add or change &letterhead"_s,
         {},
         launches(u"mnuLetterhead", &Openers::frmLetterhead)},
        {u"mnuCreateInvoice"_s,
         u"Create in&voice"_s,
         {},
         [this] { openWindow(u"mnuCreateInvoice"_s, m_global.openers.mnuCreateInvoice); }},
    };
    return {
        {u"mnuCClient"_s, u"&Add a client"_s, Qt::Key_F2, launches(u"mnuCClient", &Openers::frmClient)},
        {u"mnuActiveClients"_s,
         u"&Contact database"_s,
         {},
         launches(u"mnuActiveClients", &Openers::frmActiveClients)},
        {u"mnuInactiveClients"_s,
         u"I&nactive Clients"_s,
         {},
         launches(u"mnuInactiveClients", &Openers::frmInactiveClients)},
        {u"mnuDisbursements"_s, u"&Disbursements/Payments"_s, {}, [this] { mnuDisbursements_Click(); }},
        {u"mnuClientInvoice"_s, u"&Invoice"_s, {}, {}, invoice},
    };
}

std::vector<MenuEntry> frmEntryWithFrames::windowMenuTable()
{
    return {
        {u"mnuTileHorizontally"_s,
         u"Tile &Horizontally"_s,
         {},
         [this] { m_global.openers.TileHorizontally(); }},
        {u"mnuTileVertically"_s, u"Tile &Vertically"_s, {}, [this] { m_global.openers.TileVertically(); }},
        {u"mnuCascade"_s, u"&Cascade"_s, {}, [this] { m_global.openers.CascadeWindows(); }},
    };
}

std::vector<MenuEntry> frmEntryWithFrames::helpMenu()
{
    return {
        {u"mnuIndex"_s, u"&Index"_s},
        {u"mnuTips"_s,
         u"&Show Tip of the Day"_s,
         {},
         [this] { openWindow(u"mnuTips"_s, m_global.openers.frmTip); }},
        {u"mnuWeb"_s,
         u"&Get help from the internet"_s,
         {},
         [this] { openWindow(u"mnuWeb"_s, m_global.openers.frmBrowser); }},
        {u"mnujunk"_s, u"-"_s},
        {u"mnuAbout"_s,
         u"&About this program"_s,
         {},
         [this] { openWindow(u"mnuAbout"_s, m_global.openers.frmAboutvarden); }},
    };
}

QAction *frmEntryWithFrames::menuAction(const QString &name) const
{
    return findChild<QAction *>(name);
}

} // namespace vardelin
