#pragma once
// What a command may open. Forms open each other in circles, includes do not: shell/Wiring.cpp fills this
// once; tests put in their own.

#include <QString>
#include <functional>

namespace vardelin {

class EntryWindow;
class DisplayWindow;
class DataReport;
namespace ado {
class Recordset;
}

struct Openers
{
    // Modal: return when the window is closed.
    std::function<void()> frmClient, frmEmployee, frmProject, frmRate, frmActivity;
    std::function<void()> frmToDo, frmInactiveClients, frmLetterhead;
    std::function<void()> frmTip, frmIntroduction, frmAboutvarden;
    std::function<void(DataReport &)> showReport;
    std::function<void(const ado::Recordset &logs)> DataReport1; // of all logs of the set
    // Shown, not modal. The new window's file is DatabaseFileName.
    std::function<EntryWindow *()> NewEntryWindow;
    std::function<DisplayWindow *()> NewDisplayWindow;
    std::function<void()> frmActiveClients, frmPaymentsDisbursements, frmBrowser;
    // The search, which reads SearchClient, SearchProject and which kind of window was last active. The name
    // is the one that its report entry is for; empty: that entry is off. From a Data entry window with a
    // name it searches at once, and no window opens for it.
    std::function<void(const QString &reportName)> frmSearch;
    // The whole command: it asks for client and dates and shows the invoice.
    std::function<void()> mnuCreateInvoice;
    // Makes the window of a slot again that was closed.
    std::function<EntryWindow *(int index)> makeEntryWindow;
    std::function<DisplayWindow *(int index)> makeDisplayWindow;
    std::function<void()> TileHorizontally, TileVertically, CascadeWindows;
    std::function<void()> ExitProgram;
    // Commands whose windows come later say so through this, with the command's caption.
    std::function<void(QStringView what)> notYet;

    // Opens a window, or says that it isn't there yet. The caption may hold a mnemonic.
    void open(const std::function<void()> &opener, QString caption) const
    {
        if (opener)
            opener();
        else if (notYet)
            notYet(caption.remove(u'&'));
    }
};

} // namespace vardelin
