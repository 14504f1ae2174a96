#include "contacts/frmActiveClients.h"

#include "contacts/ActiveClientsReport.h"
#include "platform/base/Twips.h"
#include "platform/ui/DatePicker.h"
#include "shell/state/Global.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kNarrow = 7000; // twips; below, a caption is shortened

std::vector<FieldDesign> fieldDesigns()
{
    using enum FieldDesign::Kind;
    const QString zip = u"#####-####"_s, phone = u"(###) ###-####"_s;
    const auto a = [](const char16_t *column) { return u"Active Client "_s + QString::fromUtf16(column); };
    return {
        {1, 0, u"Frame1(0)"_s, u"First Address Line"_s, u"Text1(0)"_s, a(u"First Address")},
        {1, 1, u"Frame1(1)"_s, u"Second Address Line"_s, u"Text1(1)"_s, a(u"Second Address")},
        {1, 2, u"Frame1(2)"_s, u"Third Address Line"_s, u"Text1(2)"_s, a(u"Third Address")},
        {1, 3, u"Frame1(3)"_s, u"City/Town"_s, u"Text1(3)"_s, a(u"City")},
        {1, 3, u"Frame1(4)"_s, u"State"_s, u"Text1(4)"_s, a(u"State")},
        {1, 3, u"Frame1(5)"_s, u"Zip Code"_s, u"MaskEdBox1(0)"_s, a(u"Zip Code"), Mask, zip},
        {1, 4, u"Frame1(6)"_s, u"Work Telephone"_s, u"MaskEdBox1(1)"_s, a(u"Work Telephone"), Mask, phone},
        {1, 4, u"Frame1(7)"_s, u"Home Telephone"_s, u"MaskEdBox1(2)"_s, a(u"Home Telephone"), Mask, phone},
        {1, 4, u"Frame1(8)"_s, u"Cell Telephone"_s, u"MaskEdBox1(3)"_s, a(u"Cell Telephone"), Mask, phone},
        {1, 4, u"Frame1(9)"_s, u"Alternative Telephone"_s, u"MaskEdBox1(4)"_s, a(u"Alternative Telephone"),
         Mask, phone},
        {1, 5, u"Frame1(10)"_s, u"Email"_s, u"Text1(5)"_s, a(u"Email Address")},
        {1, 6, u"Frame1(11)"_s, u"Notes"_s, u"Text1(6)"_s, a(u"Notes"), Memo},
        {2, 0, u"Frame2(0)"_s, u"Retainer Date"_s, u"DTPicker1"_s, a(u"Retainer Date"), Date,
         u"MM/dd/yyyy"_s},
        {2, 0, u"Frame2(1)"_s, u"Type of Claim"_s, u"Text2(0)"_s, a(u"Claim Type")},
        {2, 1, u"Frame2(3)"_s, u"Referrer"_s, u"Text2(2)"_s, a(u"Referrer")},
        {2, 1, u"Frame2(4)"_s, u"Claim Forum"_s, u"Text2(3)"_s, a(u"Forum")},
        {2, 2, u"Frame2(5)"_s, u"Claim Index Number"_s, u"Text2(4)"_s, a(u"Claim Number")},
        {2, 2, u"Frame2(6)"_s, u"Defendants"_s, u"Text2(5)"_s, a(u"Defendant")},
        {2, 3, u"Frame2(7)"_s, u"Opposing Counsel"_s, u"Text2(6)"_s, a(u"Opposing Attorney")},
        {2, 3, u"Frame2(8)"_s, u"Opposing Counsel Telephone"_s, u"MaskEdBox2"_s, a(u"OPA Telephone"), Mask,
         phone},
        {2, 4, u"Frame2(2)"_s, u"Retainer Terms"_s, u"Text2(1)"_s, a(u"Retainer Terms"), Memo},
        {3, 0, u"Frame3"_s, u"To Do's"_s, u"Text3"_s, a(u"Things To Do"), Memo},
        {4, 0, u"Frame4"_s, u"Case History"_s, u"Text4"_s, a(u"History"), Memo},
        {5, 0, u"Frame5(0)"_s, u"Re: line of invoice"_s, u"Text5(0)"_s, a(u"Re Line"), Memo},
        {5, 1, u"Frame5(1)"_s, u"Greeting line of invoice"_s, u"Text5(1)"_s, a(u"Greeting"), Memo},
        {5, 2, u"Frame5(2)"_s, u"Closing line of invoice"_s, u"Text5(2)"_s, a(u"Closing"), Memo},
    };
}

} // namespace

frmActiveClients::frmActiveClients(Global &global, QWidget *parent)
    : ClientWindow(global, u"frmActiveClients"_s, u"Contact Database"_s, parent), Text2_7(new QLineEdit(this))
{
    layOut({.tabs = {QString(), u"Case Information"_s, u"To Do's"_s, u"Case History"_s,
                     u"Invoice Information"_s},
            .fields = fieldDesigns(),
            .navigator = u"Active Client Data Navigator"_s,
            .select = u"SELECT * FROM [Active Clients] ORDER BY [Active Clients]![Client Last Name], "
                      u"[Active Clients]![Client First Name]"_s,
            .lastName = u"Client Last Name"_s,
            .firstName = u"Client First Name"_s,
            .menu = {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { close(); }},
                     {u"mnuSave"_s, u"&Save"_s, {}, [this] { mnuSave_Click(); }},
                     {u"mnuReport"_s, u"R&eport"_s, {}, [this] { mnuReport_Click(); }}}});
    Text2_7->setObjectName(u"Text2(7)"_s);
    Text2_7->setAccessibleName(u"Retainer Date"_s);
    Text2_7->hide();
    Adodc1.bind({u"Active Client Retainer Date"_s, [this](const QString &text) { Text2_7->setText(text); },
                 [this] { return Text2_7->text(); }});
    Adodc1.onError = [this](const RunTimeError &error) {
        m_global.services.dialogs.msgBox(
            {u"Error in data control Adodc1: "_s + error.description() + u" for Active Clients table."_s});
    };
    m_global.Forms.add(this);
    Form_Load();
}

void frmActiveClients::Form_Load()
{
    const QString kept = m_global.CurrentSQL;
    m_pane->date(u"DTPicker1"_s)->setValue(DateSerial{std::floor(m_global.services.clock.now().days)});
    m_pane->showTab(1);
    refresh();
    m_global.CurrentSQL = Adodc1.RecordSource;
    const bool rows = Adodc1.isOpen() && Adodc1.Recordset().RecordCount() > 0;
    command(u"mnuSave"_s)->setEnabled(rows);
    command(u"mnuReport"_s)->setEnabled(rows);
    if (rows) {
        Adodc1.MoveLast();
        m_global.CurrentSQL = kept; // without rows it stays on the clients: settled
    }
    m_pane->field(u"Text1(0)"_s)->setFocus();
}

// The scroll bar's own moves leave tab and bar as they are: the tab catches up at the next move by the
// navigator.
void frmActiveClients::Adodc1_MoveComplete(MoveReason reason)
{
    if (reason != MoveReason::Move)
        showMove();
}

void frmActiveClients::TabStrip1_Click(int index)
{
    ClientWindow::TabStrip1_Click(index);
    static const std::array<QString, 5> first{u"Text1(0)"_s, u"Text2(0)"_s, u"Text3"_s, u"Text4"_s,
                                              u"Text5(0)"_s};
    focusFirst(first.at(static_cast<std::size_t>(index - 1)));
}

void frmActiveClients::mnuSave_Click()
{
    Dialogs &dialogs = m_global.services.dialogs;
    if (!Adodc1.isOpen() || Adodc1.Recordset().RecordCount() == 0) {
        dialogs.msgBox({noRecords()});
        close();
        return;
    }
    if (!moveAwayAndBack())
        return; // told by the data control; what was typed stands
    if (dialogs.msgBox({.prompt = u"Database updated. Continue with Active Clients window?"_s,
                        .buttons = Buttons::YesNo}) == Answer::No)
        close();
}

void frmActiveClients::mnuReport_Click()
{
    const QString kept = m_global.CurrentSQL;
    ado::Connection connection;
    connection.Open(ado::connectionText(m_global.DatabaseFileName, u"Admin"_s));
    m_global.CurrentSQL = activeClientsStatement();
    ado::Recordset records;
    records.CursorType = 3;
    records.Open(m_global.CurrentSQL, connection);
    DataReport report(dataReport2Design());
    report.bindTo(records);
    m_global.openers.showReport(report);
    m_global.CurrentSQL = kept;
}

void frmActiveClients::resizeEvent(QResizeEvent *event)
{
    ClientWindow::resizeEvent(event);
    const bool narrow = toTwips(frameGeometry().width()) < kNarrow;
    m_pane->setCaption(u"Frame1(9)"_s, narrow ? u"Alt Telephone"_s : u"Alternative Telephone"_s);
}

} // namespace vardelin
