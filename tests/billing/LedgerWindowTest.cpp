// The ledger window: entry, walking, deleting, searching.

#include "billing/frmPaymentsDisbursements.h"
#include "tests/billing/BillingOffice.h"

#include <QLineEdit>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

const QString kNoRecords = u"No disbursement records have been entered yet."_s;
const SplitName kAdams{u"Adams"_s, u"Al"_s}, kRoe{u"Roe"_s, u"Jane"_s};

} // namespace

struct LedgerWindowTest : BillingTest
{
    LedgerWindowTest() { global.List1[0] = {u"Adams, Al"_s, u"Roe, Jane"_s}; }

    // expected: the boxes of the load.
    void open(int emptyBoxes = 0)
    {
        for (int i = 0; i < emptyBoxes; ++i)
            dialogs.expect(kNoRecords);
        window = std::make_unique<frmPaymentsDisbursements>(global);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        EXPECT_TRUE(dialogs.done());
    }
    // Two disbursements of Roe and one of Adams, in that order of adding, and two payments.
    void addRows()
    {
        addDisbursement(kRoe, u"Court"_s, 60.5, 46300);
        addDisbursement(kRoe, u"Rail"_s, 1234.5, 46305);
        addDisbursement(kAdams, u"Court"_s, 7, 46310);
        addPayment(kRoe, true, 100, 46300);
        addPayment(kAdams, false, 50, 46301);
    }
    template <class Control>
    Control *the(const QString &name) const
    {
        return control<Control>(window.get(), name);
    }
    QString text(const QString &name) const { return the<QLineEdit>(name)->text(); }
    void tab(int number) { the<TabStrip>(u"TabStrip1"_s)->setCurrentIndex(number - 1); }
    void press(const QString &navigator, const QString &button)
    {
        QTest::mouseClick(control<QToolButton>(the<QWidget>(navigator), button), Qt::LeftButton);
    }
    int scroll(int number) const { return the<QScrollBar>(u"HScroll%1"_s.arg(number))->value(); }
    void moveScroll(int number, int value)
    {
        auto *bar = the<QScrollBar>(u"HScroll%1"_s.arg(number));
        static_cast<QAbstractSlider *>(bar)->setValue(value); // as its handle does
    }
    // The frames on view: "1:01234" is all of Frame1.
    QString framesOnView() const
    {
        QMap<QString, QString> shown;
        for (const auto *frame : window->findChildren<QGroupBox *>()) {
            if (frame->isVisible())
                shown[frame->objectName().mid(5, 1) + u':'] += frame->objectName()[7];
        }
        return shown.isEmpty() ? QString() : shown.keys().join(QString()) + shown.values().join(u'|');
    }
    // The commands that are on: "Return Save ".
    QString commandsOn() const
    {
        QString on;
        for (const auto *action : window->findChildren<QAction *>(QRegularExpression(u"^mnu"_s)))
            on += action->isEnabled() ? action->objectName().mid(3) + u' ' : QString();
        return on;
    }
    QString record(int page) const
    {
        const QString name = page == 2 ? u"Text2(%1)"_s : u"Text4(%1)"_s;
        return text(name.arg(0)) + u" | "_s + text(name.arg(1)) + u" | "_s +
               text(name.arg(page == 2 ? 3 : 2));
    }
    void fillDisbursement(const QString &amount)
    {
        the<FreeCombo>(u"Combo1(0)"_s)->setText(u"O'Neil, Ann"_s);
        the<FreeCombo>(u"Combo1(1)"_s)->setText(u"New & Co"_s);
        the<QPlainTextEdit>(u"Text1(0)"_s)->setPlainText(u"Copies\nof all"_s);
        typeOver(the<QLineEdit>(u"Text1(1)"_s), amount);
    }

    std::unique_ptr<frmPaymentsDisbursements> window;
};

TEST_F(LedgerWindowTest, LoadsClientsVendorsAndTheLastRecords)
{
    addRows();
    open();
    EXPECT_EQ(global.SearchClient, u"Adams, Al"_s) << "none came along: the first";
    EXPECT_EQ(the<FreeCombo>(u"Combo1(0)"_s)->Text(), u"Adams, Al"_s);
    EXPECT_EQ(the<FreeCombo>(u"Combo2"_s)->Text(), u"Adams, Al"_s);
    EXPECT_EQ(the<FreeCombo>(u"Combo1(1)"_s)->entries(), (QStringList{u"Court"_s, u"Rail"_s}))
        << "each once, as they first appear under the order of the clients";
    EXPECT_EQ(record(2), u"Roe, Jane | Rail | $1,234.50"_s);
    EXPECT_EQ(record(4), u"Roe, Jane | Legal fee | $100.00"_s);
    EXPECT_EQ(the<DatePicker>(u"DTPicker2"_s)->Value(), DateSerial{46305});
    EXPECT_EQ(the<DatePicker>(u"DTPicker5"_s)->Value(), DateSerial{clock.moment.days - 365});
    EXPECT_EQ(framesOnView(), u"1:01234"_s);
    EXPECT_EQ(commandsOn(), u"Return Save "_s);
    EXPECT_TRUE(the<FreeCombo>(u"Combo1(0)"_s)->hasFocus());

    global.SearchClient = u"Someone Else"_s;
    open();
    EXPECT_EQ(the<FreeCombo>(u"Combo2"_s)->Text(), u"Someone Else"_s);
}

TEST_F(LedgerWindowTest, EmptyTablesSaySoAtEachMoveAndInOneWording)
{
    open(3); // disbursements opened twice, payments once
    tab(2);
    EXPECT_EQ(record(2), u" |  | "_s);
    EXPECT_EQ(the<DatePicker>(u"DTPicker2"_s)->Value(), std::nullopt);
    choose(window.get(), u"mnuDelete"_s);

    global.DatabaseFileName = folder.filePath(u"none.mdb"_s);
    dialogs.expectBeginning(u"Error in loading PaymentsDisbursements form: "_s);
    const frmPaymentsDisbursements broken(global);
    global.DatabaseFileName = folder.filePath(u"office.mdb"_s);
}

TEST_F(LedgerWindowTest, TabsShowTheirFramesAndCommands)
{
    addRows();
    open();
    const auto walks = [&] {
        QString shown;
        for (const char16_t *name : {u"Adodc1", u"HScroll1", u"Adodc2", u"HScroll2"}) {
            if (the<QWidget>(QString::fromUtf16(name))->isVisible())
                shown += QString::fromUtf16(name) + u' ';
        }
        return shown;
    };
    const QString walking = u"Return Delete Search Report "_s;
    const std::tuple<int, QString, QString, QString> tabs[]{{2, u"2:01234"_s, u"Adodc1 HScroll1 "_s, walking},
                                                            {3, u"3:0123"_s, {}, u"Return Save "_s},
                                                            {4, u"4:0123"_s, u"Adodc2 HScroll2 "_s, walking},
                                                            {1, u"1:01234"_s, {}, u"Return Save "_s}};
    for (const auto &[number, frames, shown, commands] : tabs) {
        tab(number);
        EXPECT_EQ(framesOnView(), frames);
        EXPECT_EQ(walks(), shown);
        EXPECT_EQ(commandsOn(), commands);
    }
}

TEST_F(LedgerWindowTest, ADisbursementIsSavedAndTheFieldsAreReady)
{
    open(3);
    fillDisbursement(u"$1,234.5678"_s);
    the<DatePicker>(u"DTPicker1"_s)->setValue(std::nullopt);
    dialogs.expect(
        u"Please select the date the disbursement was made before saving this disbursement record."_s);
    choose(window.get(), u"mnuSave"_s);
    EXPECT_TRUE(the<DatePicker>(u"DTPicker1"_s)->isAncestorOf(window->focusWidget()));
    the<DatePicker>(u"DTPicker1"_s)->setValue(clock.moment);
    dialogs.expect(
        u"This record has been saved:\n\nO'Neil, Ann\nNew & Co\nCopies\nof all\n$1,234.5678\n10/16/2026"_s);
    choose(window.get(), u"mnuSave"_s);
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Disbursements"_s).join(u'|'),
              u"\"Copies\r|of all\",\"Ann\",\"O'Neil\",\"2026-10-16 09:00:00\",1234.5678,\"New & Co\""_s);
    EXPECT_EQ(global.SearchClient, u"O'Neil, Ann"_s);
    EXPECT_EQ(the<FreeCombo>(u"Combo1(0)"_s)->Text(), u"Adams, Al"_s);
    EXPECT_EQ(the<FreeCombo>(u"Combo1(1)"_s)->Text() + text(u"Text1(1)"_s), QString());
    EXPECT_EQ(the<FreeCombo>(u"Combo1(1)"_s)->entries(), QStringList());
    EXPECT_TRUE(the<FreeCombo>(u"Combo1(0)"_s)->hasFocus());
    EXPECT_EQ(the<FreeCombo>(u"Combo1(0)"_s)->lineEdit()->selectedText(), u"Adams, Al"_s)
        << "ready for the next client";
    tab(2);
    EXPECT_EQ(record(2), u"O'Neil, Ann | New & Co | $1,234.57"_s);
}

TEST_F(LedgerWindowTest, APaymentIsSavedUnderItsStoredName)
{
    open(3);
    tab(3);
    dialogs.expect(u"Please enter the amount of the payment before saving this payment record."_s);
    choose(window.get(), u"mnuSave"_s);
    EXPECT_TRUE(the<QLineEdit>(u"Text3"_s)->hasFocus()) << "where it was refused";
    const std::pair<QString, QString> amounts[]{
        {u"0"_s, u"0"_s}, {u"-5.25"_s, u"-5.25"_s}, {u"922337203685477.5807"_s, u"922337203685477.5807"_s}};
    for (const auto &[typed, stored] : amounts) {
        typeOver(the<QLineEdit>(u"Text3"_s), typed);
        dialogs.expect(u"This record has been saved:\n\nAdams, Al\nLegal fee\n"_s + typed +
                       u"\n10/16/2026"_s);
        choose(window.get(), u"mnuSave"_s);
        EXPECT_EQ(column(u"Payments"_s, u"Payment Amount"_s).last(), stored);
    }
    the<QRadioButton>(u"Option1(1)"_s)->click();
    typeOver(the<QLineEdit>(u"Text3"_s), u"7"_s);
    dialogs.expect(u"This record has been saved:\n\nAdams, Al\nDisbursement\n7\n10/16/2026"_s);
    choose(window.get(), u"mnuSave"_s);
    EXPECT_EQ(column(u"Payments"_s, u"Payment Description"_s).last(), u"Disbursement"_s);
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Payments"_s).size(), 4);
}

TEST_F(LedgerWindowTest, WhatCantBeSavedEndsTheProgramAndWritesNothing)
{
    open(3);
    dialogs.expect(standardMessage(RunTimeError(3421)));
    for (const char16_t *amount : {u"much", u"922337203685477.5808"}) { // one box: the program is ending
        fillDisbursement(QString::fromUtf16(amount));
        choose(window.get(), u"mnuSave"_s);
    }
    fillDisbursement(u"5"_s);
    the<FreeCombo>(u"Combo1(0)"_s)->setText(u"Estate"_s);
    choose(window.get(), u"mnuSave"_s);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(column(u"Disbursements"_s, u"Disbursement Amount"_s), QStringList());
}

TEST_F(LedgerWindowTest, ScrollBarAndNavigatorMoveTheSameRecords)
{
    addRows();
    open();
    tab(2);
    EXPECT_EQ(scroll(1), 100);
    press(u"Adodc1"_s, u"Previous"_s);
    EXPECT_EQ(scroll(1), 67);
    EXPECT_EQ(record(2), u"Roe, Jane | Court | $60.50"_s);
    press(u"Adodc1"_s, u"First"_s);
    EXPECT_EQ(scroll(1), 0);
    EXPECT_EQ(record(2), u"Adams, Al | Court | $7.00"_s);
    moveScroll(1, 60);
    EXPECT_EQ(scroll(1), 60) << "not pushed back";
    EXPECT_EQ(record(2), u"Roe, Jane | Court | $60.50"_s);
    moveScroll(1, 3);
    EXPECT_EQ(record(2), u"Adams, Al | Court | $7.00"_s);
    EXPECT_EQ(record(4), u"Roe, Jane | Legal fee | $100.00"_s) << "the payments stay";
    tab(4);
    moveScroll(2, 50);
    EXPECT_EQ(record(4), u"Adams, Al | Disbursement | $50.00"_s);
}

TEST_F(LedgerWindowTest, DeleteAsksNothingAndStandsOnTheNextRecord)
{
    addRows();
    open();
    tab(2);
    press(u"Adodc1"_s, u"First"_s);
    choose(window.get(), u"mnuDelete"_s);
    EXPECT_EQ(record(2), u"Roe, Jane | Court | $60.50"_s);
    press(u"Adodc1"_s, u"Last"_s);
    choose(window.get(), u"mnuDelete"_s); // and behind the last one then
    EXPECT_EQ(scroll(1), 100);
    EXPECT_EQ(record(2), u",  |  | "_s);
    choose(window.get(), u"mnuDelete"_s);
    EXPECT_EQ(column(u"Disbursements"_s, u"Disbursement Payee"_s), QStringList{u"Court"_s});
    press(u"Adodc1"_s, u"Last"_s);
    EXPECT_EQ(scroll(1), 0);
    moveScroll(1, 50);
    choose(window.get(), u"mnuDelete"_s);
    EXPECT_EQ(scroll(1), 50) << "the deletion of the only record doesn't move it";
    EXPECT_EQ(record(2), u" |  | "_s);
    EXPECT_EQ(column(u"Disbursements"_s, u"Disbursement Payee"_s), QStringList());
    EXPECT_EQ(column(u"Payments"_s, u"Payment Amount"_s).size(), 2);
}

TEST_F(LedgerWindowTest, ASearchNarrowsTheChosenLedgerForGood)
{
    addRows();
    open();
    tab(2);
    choose(window.get(), u"mnuSearch"_s);
    EXPECT_EQ(framesOnView(), u"5:012"_s);
    EXPECT_EQ(commandsOn(), u"Continue "_s);

    dialogs.expect(
        u"A search cannot be made without a search term or amount being entered by you.  Please try again."_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(framesOnView(), u"2:01234"_s);
    EXPECT_EQ(commandsOn(), u"Continue "_s) << "left only with a term or by a change of tab";

    the<QLineEdit>(u"Text5"_s)->setText(u"COURT"_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(framesOnView(), u"2:01234"_s);
    EXPECT_EQ(commandsOn(), u"Return Delete Search Report "_s);
    EXPECT_EQ(record(2), u"Roe, Jane | Court | $60.50"_s);
    press(u"Adodc1"_s, u"Previous"_s);
    EXPECT_EQ(record(2), u"Adams, Al | Court | $7.00"_s);
    tab(1);
    tab(2);
    EXPECT_EQ(record(2), u"Adams, Al | Court | $7.00"_s) << "no command brings the whole ledger back";

    // Amounts are compared as text, without sign and separators; a search in vain brings all back.
    choose(window.get(), u"mnuSearch"_s);
    the<QLineEdit>(u"Text5"_s)->setText(u"1,234"_s);
    dialogs.expect(kNoRecords);
    dialogs.expect(u"No records were found meeting your search criteria."_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(global.CurrentSQL, ledgerSelect(Ledger::Disbursements));
    the<QLineEdit>(u"Text5"_s)->setText(u"1234"_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(record(2), u"Roe, Jane | Rail | $1,234.50"_s);
}

TEST_F(LedgerWindowTest, APaymentSearchLeavesFourDisbursementFramesOnView)
{
    addRows();
    open();
    tab(4);
    choose(window.get(), u"mnuSearch"_s);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(the<QRadioButton>(u"Option2(0)"_s)->hasFocus()) << "the chosen one";
    QTest::keyClick(window->focusWidget(), Qt::Key_Right);
    the<QLineEdit>(u"Text5"_s)->setText(u"adams"_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(framesOnView(), u"2:0123"_s);
    EXPECT_EQ(record(4), u"Adams, Al | Disbursement | $50.00"_s);
    tab(2);
    EXPECT_EQ(framesOnView(), u"2:01234"_s);
    EXPECT_EQ(record(2), u"Roe, Jane | Rail | $1,234.50"_s) << "the disbursements weren't searched";
    choose(window.get(), u"mnuSearch"_s);
    the<QLineEdit>(u"Text5"_s)->setText(u"O'Neil"_s);
    dialogs.expectBeginning(u"Run-time error '"_s);
    choose(window.get(), u"mnuContinue"_s);
    EXPECT_EQ(ended, 1);
}

} // namespace vardelin::testing_support
