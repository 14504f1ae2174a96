#include "shell/Wiring.h"

#include "billing/Invoice.h"
#include "billing/frmLetterhead.h"
#include "billing/frmPaymentsDisbursements.h"
#include "contacts/frmActiveClients.h"
#include "contacts/frmActivity.h"
#include "contacts/frmClient.h"
#include "contacts/frmEmployee.h"
#include "contacts/frmInactiveClients.h"
#include "contacts/frmProject.h"
#include "contacts/frmRate.h"
#include "platform/report/ReportWindow.h"
#include "platform/system/AppPath.h"
#include "search/DataReport1.h"
#include "search/frmSearch.h"
#include "shell/ChildWindows.h"
#include "shell/frmAboutvarden.h"
#include "shell/frmBrowser.h"
#include "shell/frmIntroduction.h"
#include "shell/frmMain.h"
#include "shell/frmTip.h"
#include "shell/state/Global.h"
#include "todo/frmToDo.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

template <class Form>
std::function<void()> modal(Global &global)
{
    return [&global] {
        Form form(global, global.frmMain);
        form.exec();
    };
}

// A window of its own kind of which there is one: asked for again it comes to the front as it is.
template <class Form>
std::function<void()> single(Global &global)
{
    return [&global, form = QPointer<Form>()]() mutable {
        if (!form) {
            form = new Form(global, global.frmMain);
            form->setAttribute(Qt::WA_DeleteOnClose);
            global.Forms.add(form);
        }
        form->show();
        form->raise();
        form->activateWindow();
    };
}

// Help asked for again comes to the front; it doesn't open twice.
void showBrowser(Global &global, frmMain &parent)
{
    auto *browser = parent.findChild<frmBrowser *>();
    if (!browser) {
        const QString folder = QCoreApplication::applicationDirPath();
        const HelpBook book{inFolder(folder, u"help"_s)};
        browser = new frmBrowser(global.services.errors, makeWebView(book, folder), book, &parent);
    }
    browser->show();
    browser->raise();
    browser->activateWindow();
}

// Asked for again, the window that is open comes to the front.
void showActiveClients(Global &global, frmMain &parent)
{
    auto *window = parent.findChild<frmActiveClients *>();
    if (!window) {
        window = new frmActiveClients(global, &parent);
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

void wire(Global &global, frmMain &parent)
{
    Openers &openers = global.openers;
    openers.frmClient = modal<frmClient>(global);
    openers.frmEmployee = modal<frmEmployee>(global);
    openers.frmProject = modal<frmProject>(global);
    openers.frmRate = modal<frmRate>(global);
    openers.frmActivity = modal<frmActivity>(global);
    openers.frmActiveClients = [&] { showActiveClients(global, parent); };
    openers.frmInactiveClients = modal<frmInactiveClients>(global);
    openers.frmLetterhead = modal<frmLetterhead>(global);
    openers.frmPaymentsDisbursements = single<frmPaymentsDisbursements>(global);
    openers.mnuCreateInvoice = [&global] { createInvoice(global); };

    openers.frmToDo = modal<frmToDo>(global);
    openers.frmTip = modal<frmTip>(global);
    openers.frmIntroduction = modal<frmIntroduction>(global);
    openers.frmAboutvarden = [&global] { frmAboutvarden(global.frmMain).exec(); };
    openers.frmBrowser = [&] { showBrowser(global, parent); };
    openers.showReport = [&](DataReport &report) {
        QWidget *active = QApplication::activeWindow();
        showReport(report, global.services.dialogs, global.services.errors, active ? active : global.frmMain);
    };
    openers.NewEntryWindow = [&] { return NewEntryWindow(global, parent); };
    openers.NewDisplayWindow = [&] { return NewDisplayWindow(global, parent); };
    openers.makeEntryWindow = [&](int index) { return entryWindowAt(global, parent, index); };
    openers.makeDisplayWindow = [&](int index) { return displayWindowAt(global, parent, index); };
    openers.frmSearch = [&global](const QString &reportName) { launchSearch(global, reportName); };
    openers.DataReport1 = [&global](const ado::Recordset &logs) { showLogReport(global, logs); };
    openers.TileHorizontally = [&] { arrangeTiled(parent, Tile::Horizontally); };
    openers.TileVertically = [&] { arrangeTiled(parent, Tile::Vertically); };
    openers.CascadeWindows = [&] { arrangeCascaded(parent); };
    openers.ExitProgram = [&] { parent.ExitProgram(); };
    openers.notYet = [&](QStringView what) {
        global.services.dialogs.msgBox({u"%1 is not part of this version yet."_s.arg(what)});
    };
}

} // namespace vardelin
