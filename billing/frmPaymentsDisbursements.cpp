#include "billing/frmPaymentsDisbursements.h"

#include "billing/Letter.h"
#include "billing/Statement.h"
#include "platform/data/RecordPlace.h"
#include "shell/state/Global.h"

#include <QApplication>
#include <QMenuBar>
#include <QSet>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// What is on view and what is on, by tab; the search's frames and Continue are left as they are.
struct TabDesign
{
    bool navigator1, navigator2; // with the scroll bar
    std::initializer_list<const char16_t *> on, off;
};
constexpr std::initializer_list<const char16_t *> kEntryOn{u"mnuSave", u"mnuReturn"};
constexpr std::initializer_list<const char16_t *> kEntryOff{u"mnuSearch", u"mnuReport", u"mnuDelete"};
constexpr std::initializer_list<const char16_t *> kWalkOn{u"mnuReport", u"mnuReturn", u"mnuSearch",
                                                          u"mnuDelete"};
constexpr std::initializer_list<const char16_t *> kWalkOff{u"mnuSave"};
constexpr TabDesign kTabs[]{{false, false, kEntryOn, kEntryOff},
                            {true, false, kWalkOn, kWalkOff},
                            {false, false, kEntryOn, kEntryOff},
                            {false, true, kWalkOn, kWalkOff}};
constexpr int kTabFrames = 4;

void setToFirst(FreeCombo *combo)
{
    combo->setText(combo->entries().value(0));
}

// What is typed next takes the place of the client.
void startWith(FreeCombo *client)
{
    client->setFocus();
    client->lineEdit()->selectAll();
}

} // namespace

frmPaymentsDisbursements::frmPaymentsDisbursements(Global &global, QWidget *parent)
    : QWidget(parent, Qt::Window), m_global(global)
{
    setObjectName(u"frmPaymentsDisbursements"_s);
    setWindowTitle(u"Disbursements and payments"_s);
    auto *bar = new QMenuBar;
    makeMenu(bar);
    makeFields();
    makeWalks();
    layOut(bar);
    bindFields();
    Form_Load();
    startWith(Combo1[0]);
}

frmPaymentsDisbursements::~frmPaymentsDisbursements() = default;

void frmPaymentsDisbursements::Form_Load()
{
    constexpr double kYear = 365;
    const DateSerial now = m_global.services.clock.now();
    for (DatePicker *picker : {DTPicker1, DTPicker2, DTPicker3, DTPicker4, DTPicker6})
        picker->setValue(now);
    DTPicker5->setValue(DateSerial{now.days - kYear});
    showTab(1);
    showFrames(kSearchFrames, false);
    enable({u"mnuContinue"}, false);
    try {
        loadClients();
        loadDisbursements();
        loadPayments();
    } catch (const RunTimeError &error) {
        m_global.services.dialogs.msgBox(
            {u"Error in loading PaymentsDisbursements form: "_s + error.description()});
    }
}

void frmPaymentsDisbursements::loadClients()
{
    const QStringList &clients = m_global.List1[static_cast<std::size_t>(PickList::Clients)];
    Combo1[0]->setEntries(clients);
    Combo2->setEntries(clients);
    if (m_global.SearchClient.isEmpty() && !clients.isEmpty())
        m_global.SearchClient = clients.first();
    if (m_global.SearchClient.isEmpty())
        return;
    Combo1[0]->setText(m_global.SearchClient);
    Combo2->setText(m_global.SearchClient);
}

void frmPaymentsDisbursements::openLedger(Ledger ledger, const QString &statement)
{
    Adodc &control = walk(ledger).control;
    control.RecordSource = statement;
    control.Refresh();
    if (!control.Recordset().EOF_())
        control.MoveLast();
}

void frmPaymentsDisbursements::loadDisbursements()
{
    Adodc &Adodc1 = m_disbursements.control;
    Adodc1.ConnectionString = ado::connectionText(m_global.DatabaseFileName);
    Adodc1.RecordSource = ledgerSelect(Ledger::Disbursements);
    Adodc1.Refresh();
    if (Adodc1.Recordset().EOF_())
        QApplication::beep();
    else
        Combo1[1]->setEntries(vendors());
    openLedger(Ledger::Disbursements, Adodc1.RecordSource);
}

void frmPaymentsDisbursements::loadPayments()
{
    m_payments.control.ConnectionString = ado::connectionText(m_global.DatabaseFileName, u"Admin"_s);
    openLedger(Ledger::Payments, ledgerSelect(Ledger::Payments));
}

// Each payee once, in the order of first appearance.
QStringList frmPaymentsDisbursements::vendors()
{
    QStringList found;
    QSet<QString> seen;
    for (ado::Recordset &records = m_disbursements.control.Recordset(); !records.EOF_(); records.MoveNext()) {
        const Value payee = records.Fields(u"Disbursement Payee"_s);
        if (payee.isNull() || seen.contains(joinText(payee)))
            continue;
        seen.insert(joinText(payee));
        found += joinText(payee);
    }
    return found;
}

// ---- tabs

void frmPaymentsDisbursements::TabStrip1_Click(int tab)
{
    if (tab != CurrentTab)
        showTab(tab);
}

void frmPaymentsDisbursements::showTab(int tab)
{
    CurrentTab = static_cast<qint16>(tab);
    const TabDesign &design = kTabs[tab - 1];
    for (int array = 1; array <= kTabFrames; ++array)
        showFrames(array, array == tab);
    m_disbursements.navigator->setVisible(design.navigator1);
    m_disbursements.scroll->setVisible(design.navigator1);
    m_payments.navigator->setVisible(design.navigator2);
    m_payments.scroll->setVisible(design.navigator2);
    enable(design.on, true);
    enable(design.off, false);
}

void frmPaymentsDisbursements::showFrames(int array, bool visible)
{
    for (std::size_t i = 0; i < m_pages[static_cast<std::size_t>(array)].frames.size(); ++i)
        showFrame(array, i, visible);
}

void frmPaymentsDisbursements::showFrame(int array, std::size_t index, bool visible)
{
    const Page &page = m_pages[static_cast<std::size_t>(array)];
    page.frames[index]->setVisible(visible);
    page.area->setVisible(
        std::ranges::any_of(page.frames, [](const QWidget *frame) { return !frame->isHidden(); }));
}

void frmPaymentsDisbursements::enable(std::initializer_list<const char16_t *> menus, bool on)
{
    for (const char16_t *menu : menus)
        findChild<QAction *>(QString::fromUtf16(menu))->setEnabled(on);
}

// ---- saving and deleting

void frmPaymentsDisbursements::mnuSave_Click()
{
    if (CurrentTab == 1)
        saveDisbursement();
    else
        savePayment();
}

namespace {

Value valueOf(const DatePicker &picker)
{
    const auto date = picker.Value();
    return date ? Value(*date) : Value(NullValue());
}

} // namespace

void frmPaymentsDisbursements::saveDisbursement()
{
    const DisbursementEntry entry{.client = Combo1[0]->Text(),
                                  .vendor = Combo1[1]->Text(),
                                  .description = Text1_0->toPlainText(),
                                  .amount = Text1_1->text(),
                                  .date = valueOf(*DTPicker1)};
    if (const auto refusal = refusalOf(entry))
        return refuse(*refusal, {Combo1[0], Combo1[1], Text1_0, Text1_1, DTPicker1});
    m_global.SearchClient = entry.client;
    const SplitName name = splitClient(m_global.SearchClient);
    addRow(Ledger::Disbursements,
           {{u"Disbursement Client First Name"_s, name.first},
            {u"Disbursement Client Last Name"_s, name.last},
            {u"Disbursement Payee"_s, entry.vendor},
            {u"Disbursement Date"_s, entry.date},
            {u"Disbursement Description"_s, QString(entry.description).replace(u'\n', u"\r\n"_s)},
            {u"Disbursement Amount"_s, entry.amount}});
    m_global.services.dialogs.msgBox({savedMessage(entry)});
    setToFirst(Combo1[0]);
    Combo1[1]->setText({});
    DTPicker1->setValue(m_global.services.clock.now());
    Text1_0->clear();
    Text1_1->clear();
    startWith(Combo1[0]);
}

void frmPaymentsDisbursements::savePayment()
{
    const PaymentEntry entry{.client = Combo2->Text(),
                             .amount = Text3->text(),
                             .date = valueOf(*DTPicker3),
                             .fee = Option1[0]->isChecked()};
    if (const auto refusal = refusalOf(entry))
        return refuse(*refusal, {Combo2, nullptr, nullptr, Text3, DTPicker3});
    m_global.SearchClient = entry.client;
    const SplitName name = splitClient(m_global.SearchClient);
    addRow(Ledger::Payments, {{u"Payment Client First Name"_s, name.first},
                              {u"Payment Client Last Name"_s, name.last},
                              {u"Payment Date"_s, entry.date},
                              {u"Payment Description"_s, paymentDescription(entry)},
                              {u"Payment Amount"_s, entry.amount}});
    m_global.services.dialogs.msgBox({savedMessage(entry)});
    setToFirst(Combo2);
    DTPicker3->setValue(m_global.services.clock.now());
    Text3->clear();
    startWith(Combo2);
}

// fields: by EntryField.
void frmPaymentsDisbursements::refuse(const Refusal &refusal, const std::array<QWidget *, 5> &fields)
{
    m_global.services.dialogs.msgBox({refusal.words});
    fields.at(static_cast<std::size_t>(refusal.field))->setFocus();
}

void frmPaymentsDisbursements::addRow(Ledger ledger, const std::vector<std::pair<QString, Value>> &values)
{
    Adodc &control = walk(ledger).control;
    ado::Recordset &records = control.Recordset();
    records.AddNew();
    try {
        for (const auto &[column, value] : values)
            records.SetField(column, value);
        records.Update();
    } catch (const RunTimeError &) {
        records.CancelUpdate();
        throw;
    }
    control.dropEdits(); // the fields show the new record
    MoveComplete(ledger, MoveReason::AddNew);
}

// Asks nothing. Where no record is on view (behind the last one, after that was deleted) nothing goes.
void frmPaymentsDisbursements::mnuDelete_Click()
{
    Walk &walk = this->walk(ledgerOnView());
    const ado::Recordset &records = walk.control.Recordset();
    if (records.AbsolutePosition() < 1)
        return;
    walk.clientBox->clear();
    walk.control.Delete();
    if (!records.BOF()) {
        walk.control.MovePrevious();
        walk.control.MoveNext();
    } else if (!records.EOF_()) {
        walk.control.MoveNext();
    }
}

// ---- searching

void frmPaymentsDisbursements::mnuSearch_Click()
{
    showFrames(CurrentTab == 2 ? 2 : 4, false);
    showFrames(kSearchFrames, true);
    enable({u"mnuContinue"}, true);
    enable({u"mnuReturn", u"mnuSearch", u"mnuDelete", u"mnuReport"}, false);
    Text5->setFocus();
}

void frmPaymentsDisbursements::mnuContinue_Click()
{
    if (Text5->text().isEmpty()) {
        m_global.services.dialogs.msgBox({u"A search cannot be made without a search term or amount being "
                                          u"entered by you.  Please try again."_s});
        // The menus stay as they are: a term or a change of tab leads on.
        showFrames(2, true);
        showFrames(kSearchFrames, false);
        return;
    }
    const Ledger searched = Option2[0]->isChecked() ? Ledger::Disbursements : Ledger::Payments;
    if (!searchLedger(searched))
        m_global.services.dialogs.msgBox({u"No records were found meeting your search criteria."_s});
    enable({u"mnuContinue"}, false);
    enable({u"mnuReturn", u"mnuSearch", u"mnuDelete", u"mnuReport"}, true);
    // A search of the payments, too, leaves disbursement frames on view, as many as there are of payments:
    // settled. The next change of tab puts that right.
    const std::size_t shown = m_pages[searched == Ledger::Disbursements ? 2 : 4].frames.size();
    for (std::size_t i = 0; i < shown; ++i)
        showFrame(2, i, true);
    showFrames(kSearchFrames, false);
}

// False: nothing was found, and the whole ledger is back.
bool frmPaymentsDisbursements::searchLedger(Ledger ledger)
{
    m_global.CurrentSQL = ledgerSearch(ledger, Text5->text(), valueOf(*DTPicker5), valueOf(*DTPicker6));
    openLedger(ledger, m_global.CurrentSQL);
    if (walk(ledger).control.Recordset().RecordCount() > 0)
        return true;
    m_global.CurrentSQL = ledgerSelect(ledger);
    openLedger(ledger, m_global.CurrentSQL);
    return false;
}

void frmPaymentsDisbursements::mnuReport_Click()
{
    makeStatement(m_global, ledgerOnView(), this);
}

// ---- walking

void frmPaymentsDisbursements::showClient(Ledger ledger)
{
    Walk &walk = this->walk(ledger);
    if (walk.control.isOpen() && !walk.control.Recordset().BOF())
        walk.clientBox->setText(joinName(walk.lastName->text(), walk.firstName->text()));
}

void frmPaymentsDisbursements::MoveComplete(Ledger ledger, MoveReason reason)
{
    Walk &walk = this->walk(ledger);
    walk.navigator->refreshButtons();
    if (reason == MoveReason::Delete || reason == MoveReason::Move)
        return;
    try {
        followMove(walk);
    } catch (const RunTimeError &error) {
        const int position = walk.control.isOpen() ? walk.control.Recordset().AbsolutePosition() : 0;
        m_global.services.dialogs.msgBox(
            {error.description() + u"   rsdyna position is: "_s + QString::number(position)});
    }
}

void frmPaymentsDisbursements::followMove(Walk &walk)
{
    const Place place = placeOf(walk.control.Recordset());
    if (place.bof && place.eof) {
        m_global.services.dialogs.msgBox(
            {u"No disbursement records have been entered yet."_s}); // of payments, too
        return;
    }
    walk.scroll->showPlace(place.position, place.count);
    walk.scroll->setValue(sliderValue(place, walk.scroll->maximum()));
}

void frmPaymentsDisbursements::HScroll_Change(Ledger ledger)
{
    Walk &walk = this->walk(ledger);
    const ado::Recordset &records = walk.control.Recordset();
    const auto asked = scrolledTo(walk.scroll->value(), walk.scroll->maximum(), records.RecordCount());
    if (asked)
        walk.control.SetAbsolutePosition(*asked);
    else if (!records.BOF())
        walk.control.SetAbsolutePosition(1);
}

} // namespace vardelin
