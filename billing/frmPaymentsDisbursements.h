#pragma once
// The ledger window: entry of a client's disbursements and payments, and a walk through those that are saved,
// with a search that narrows them.

#include "billing/BillingSql.h"
#include "billing/LedgerEntry.h"
#include "platform/data/Adodc.h"
#include "platform/ui/Controls.h"
#include "platform/ui/DatePicker.h"
#include "platform/ui/RecordNavigator.h"
#include "platform/ui/RecordScrollBar.h"
#include "platform/ui/TabStrip.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <array>

class QMenuBar;

namespace vardelin {

struct Global;

class frmPaymentsDisbursements : public QWidget
{
    Q_OBJECT
public:
    // A window of its own over `parent`. Loading reads DatabaseFileName and SearchClient; what fails in it is
    // said in a box, and the window stands as far as it came.
    explicit frmPaymentsDisbursements(Global &global, QWidget *parent = nullptr);
    ~frmPaymentsDisbursements() override;

private:
    // Arrays of frames by number, 1 to 4 as the tabs, 5 for the search.
    static constexpr int kSearchFrames = 5;
    struct Page
    {
        QWidget *area = nullptr; // on view while one of the frames is
        std::vector<QWidget *> frames;
    };
    // One of the two data controls with what belongs to it.
    struct Walk
    {
        Adodc control;
        RecordNavigator *navigator = nullptr;
        RecordScrollBar *scroll = nullptr;
        QLineEdit *clientBox = nullptr;                      // the name in one, from these:
        QLineEdit *firstName = nullptr, *lastName = nullptr; // hidden, bound
    };

    // frmPaymentsDisbursementsLayout.cpp
    void makeMenu(QMenuBar *bar);
    void makeFields();
    void makeWalks();
    void layOut(QMenuBar *bar);
    void layOutPages();
    QWidget *frame(int array, const QString &caption, QWidget *control);
    void bindFields();

    // frmPaymentsDisbursements.cpp
    void Form_Load();
    void loadClients();
    void loadDisbursements();
    void loadPayments();
    QStringList vendors();
    void openLedger(Ledger ledger, const QString &statement);
    void TabStrip1_Click(int tab);
    void showTab(int tab);
    void showFrames(int array, bool visible);
    void showFrame(int array, std::size_t index, bool visible);
    void enable(std::initializer_list<const char16_t *> menus, bool on);
    void mnuSave_Click();
    void saveDisbursement();
    void savePayment();
    void refuse(const Refusal &refusal, const std::array<QWidget *, 5> &fields);
    void addRow(Ledger ledger, const std::vector<std::pair<QString, Value>> &values);
    void mnuDelete_Click();
    void mnuSearch_Click();
    void mnuContinue_Click();
    bool searchLedger(Ledger ledger);
    void mnuReport_Click();
    void showClient(Ledger ledger);
    void MoveComplete(Ledger ledger, MoveReason reason);
    void followMove(Walk &walk);
    void HScroll_Change(Ledger ledger);
    Ledger ledgerOnView() const { return CurrentTab == 2 ? Ledger::Disbursements : Ledger::Payments; }
    Walk &walk(Ledger ledger) { return ledger == Ledger::Disbursements ? m_disbursements : m_payments; }

    Global &m_global;
    qint16 CurrentTab = 1;
    std::array<Page, kSearchFrames + 1> m_pages; // 0 is none
    TabStrip *TabStrip1 = nullptr;
    FreeCombo *Combo1[2] = {}; // client, vendor
    FreeCombo *Combo2 = nullptr;
    QPlainTextEdit *Text1_0 = nullptr; // description
    QLineEdit *Text1_1 = nullptr;      // amount
    QLineEdit *Text3 = nullptr;
    QLineEdit *Text5 = nullptr;
    QLineEdit *Text2_1 = nullptr, *Text2_3 = nullptr; // of the disbursement on view: vendor, amount
    QPlainTextEdit *Text2_2 = nullptr;                // description
    QLineEdit *Text4_1 = nullptr, *Text4_2 = nullptr; // of the payment on view: description, amount
    DatePicker *DTPicker1 = nullptr, *DTPicker2 = nullptr, *DTPicker3 = nullptr, *DTPicker4 = nullptr,
               *DTPicker5 = nullptr, *DTPicker6 = nullptr;
    QRadioButton *Option1[2] = {};    // fee, disbursement
    QRadioButton *Option2[2] = {};    // search within disbursements, payments
    Walk m_disbursements, m_payments; // Adodc1, Adodc2
};

} // namespace vardelin
