// The commands that make an invoice and statements, with the windows in which they ask.

#include "billing/Invoice.h"
#include "billing/Statement.h"
#include "platform/report/Report.h"
#include "platform/report/ReportExport.h"
#include "tests/billing/BillingOffice.h"
#include "tests/shell/Running.h"
#include "tests/support/Golden.h"

#include <QListWidget>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct LetterCommandsTest : BillingTest
{
    LetterCommandsTest()
    {
        global.List1[0] = {u"Adams, Al"_s, u"Roe, Jane"_s};
        global.openers.showReport = [this](DataReport &report) {
            printed += textOf(report);
            printedPdf = pdfTextOf(report);
        };
        global.openers.frmLetterhead = [this] {
            ++letterheads;
            if (createdLetterhead)
                setLetterhead(*createdLetterhead);
        };
    }
    // Picks an entry of the list, or closes it without a click.
    void pick(const QString &caption, const QString &client)
    {
        modal.expect(u"frmSearchList"_s, [=](QWidget *form) {
            EXPECT_EQ(form->windowTitle(), caption);
            auto *list = control<QListWidget>(form, u"List1"_s);
            if (client.isEmpty())
                return void(form->close());
            const QRect place = list->visualItemRect(list->findItems(client, Qt::MatchExactly).value(0));
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place.center());
        });
    }
    void leaveDates(const QString &menu)
    {
        modal.expect(u"frmSearchDatePicker"_s, [=](QWidget *form) { choose(form, menu); });
    }
    void addClient(const SplitName &name, const std::vector<std::pair<QString, QString>> &columns)
    {
        std::vector<std::pair<QString, Value>> values{{u"Client First Name"_s, name.first},
                                                      {u"Client Last Name"_s, name.last}};
        for (const auto &[what, text] : columns)
            values.emplace_back(u"Active Client "_s + what, text);
        add(u"Active Clients"_s, values);
    }
    void addRoe()
    {
        addClient({u"Doe"_s, u"John"_s}, {{u"City"_s, u"Elsewhere"_s}});
        addClient({u"Roe"_s, u"Jane"_s}, {{u"First Address"_s, u"1 Main St"_s},
                                          {u"Second Address"_s, u"Suite 2"_s},
                                          {u"City"_s, u"Springfield"_s},
                                          {u"State"_s, u"IL"_s},
                                          {u"Zip Code"_s, u"627010123"_s},
                                          {u"Re Line"_s, u"Re: Roe v. Doe"_s},
                                          {u"Closing"_s, u"With kind regards,"_s}});
    }
    // The words of the report as a PDF, read by another program.
    QString pdfTextOf(const DataReport &report)
    {
        const QString path = folder.filePath(u"letter.pdf"_s);
        const FaceMeasurer measurer;
        ReportPages pages(report.design(), report.records(), measurer);
        exportReport(pages, path, writePdf, [](int, int) { return true; });
        return outputOf(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s});
    }
    static QString letters(QString text) { return text.remove(QRegularExpression(u"\\s"_s)); }
    // What was put on paper last, against the file of that name.
    void expectPrinted(const QString &name)
    {
        EXPECT_EQ(printed.size(), 1);
        expectGolden(QStringLiteral(VARDELIN_ROOT "/tests/billing/pages/") + name, printed.value(0).toUtf8());
        EXPECT_EQ(letters(printedPdf).toStdString(), letters(printed.value(0)).toStdString());
    }
    QByteArray fileBytes()
    {
        QFile file(global.DatabaseFileName);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    ModalScript modal;
    QStringList printed;
    QString printedPdf;
    int letterheads = 0;
    std::optional<QString> createdLetterhead;
    static const inline QString kLetterhead = u"Law Office of Ann Archer\r\n12 Court Square\r\nSpringfield"_s;
    static const inline QString kInvoiceQuestion =
        u"There is no letterhead set for this invoice, would you like to create a letterhead for your invoice?"_s;
    static const inline QString kReportQuestion =
        u"There is no letterhead set for this report, would you like to create a letterhead for your invoice?"_s;
};

TEST_F(LetterCommandsTest, AnInvoiceOnPaperAndNothingInTheFile)
{
    setLetterhead(kLetterhead);
    addRoe();
    addLogs(
        u"Roe, Jane"_s, {Currency{1'882'500}, NullValue(), Currency{-50'000}, Currency{123'456'789'000}},
        u"Telephone conference with opposing counsel about the lease, the deposit and the date of trial"_s);
    addLogs(u"Doe, John"_s, {Currency{10'000}}, u"Another client's"_s);
    const QByteArray before = fileBytes();
    pick(u"Select Client"_s, u"Roe, Jane"_s);
    leaveDates(u"mnuContinue"_s);
    createInvoice(global);
    expectPrinted(u"invoice.txt"_s);
    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(global.CurrentSQL,
              u"SELECT * FROM Vardelins WHERE Client Like 'Roe, Jane' AND [Beginning Time] BETWEEN "
              u"#5/31/2026 9:00:00 AM# AND #10/16/2026 9:00:00 AM# "_s);
    EXPECT_EQ(global.LetterheadText, kLetterhead + u"\r\n\r\n"_s);

    // The same period again; then a range of earlier is kept where the dates are left by Return.
    global.RangeStart = DateSerial{1}, global.RangeEnd = DateSerial{2};
    pick(u"Select Client"_s, u"Roe, Jane"_s);
    leaveDates(u"mnuReturn"_s);
    createInvoice(global);
    EXPECT_TRUE(printed.last().contains(u"\nTotal:\n"_s)) << "no logs, a total of nothing, and no message";
    EXPECT_FALSE(printed.last().contains(u"Employee:"_s));
}

TEST_F(LetterCommandsTest, WithoutALetterheadTheInvoiceEndsOnEitherAnswer)
{
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        createdLetterhead = QString();
        dialogs.expect(kInvoiceQuestion, answer, Buttons::YesNo);
        global.EntryWindows = {nullptr};
        createInvoice(global);
        EXPECT_EQ(letterheads, answer == Answer::Yes ? 1 : 0);
    }
    // An empty letterhead is one; a Null one leaves the words of the letter before.
    pick(u"Select Client"_s, {});
    dialogs.expect(u"Please make a selection from the pull-down list and try again."_s);
    createInvoice(global);
    EXPECT_EQ(global.LetterheadText, u"\r\n\r\n"_s);
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(u"Invoices"_s);
        rows->Edit();
        rows->SetField(u"Invoice Header"_s, NullValue());
        rows->Update();
    }
    global.LetterheadText = u"Earlier"_s;
    pick(u"Select Client"_s, u"Roe, Jane"_s);
    leaveDates(u"mnuContinue"_s);
    createInvoice(global);
    EXPECT_EQ(global.LetterheadText, u"Earlier"_s);
    pick(u"Select a client"_s, u"Roe, Jane"_s);
    try {
        makeStatement(global, Ledger::Payments, nullptr);
        ADD_FAILURE();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), 94);
    }
}

TEST_F(LetterCommandsTest, AClientOfEarlierSurvivesAListClosedWithoutAClick)
{
    setLetterhead(kLetterhead);
    addLogs(u"Gone, Guy"_s, {Currency{10'000}}, u"Call"_s);
    global.SearchClient = u"Gone, Guy"_s;
    pick(u"Select Client"_s, {});
    leaveDates(u"mnuContinue"_s);
    createInvoice(global);
    const QString page = printed.value(0);
    EXPECT_TRUE(page.contains(u"Guy Gone\n"_s) && page.contains(u"$1.00"_s));
    EXPECT_FALSE(page.contains(u"Dear Client"_s) || page.contains(u"truly"_s)) << "he isn't an active client";
}

TEST_F(LetterCommandsTest, FailuresOfTheInvoiceAreSaidWithTheirNumber)
{
    setLetterhead(kLetterhead);
    const auto failing = [&](const QString &client, const QString &beginning, bool dates) {
        global.SearchClient = client;
        pick(u"Select Client"_s, {});
        if (dates)
            leaveDates(u"mnuReturn"_s);
        dialogs.expectBeginning(u"Error:  "_s + beginning);
        createInvoice(global);
    };
    failing(u"Estate"_s, u"5  Invalid procedure call"_s, false);
    failing(u"Roe, Jane"_s, u"-2147217900  Syntax error"_s, true); // the range was never set
    global.RangeStart = DateSerial{46000}, global.RangeEnd = DateSerial{47000};
    failing(u"O'Neil, Ann"_s, u"-2147217900  Syntax error"_s, true);
    EXPECT_EQ(printed, QStringList());

    addPayment({u"O'Neil"_s, u"Ann"_s}, true, 5);
    pick(u"Select a client"_s, {});
    makeStatement(global, Ledger::Payments, nullptr);
    EXPECT_TRUE(printed.value(0).contains(u"$5.00"_s)) << "statements are quoted";
}

TEST_F(LetterCommandsTest, StatementsOnPaper)
{
    setLetterhead(kLetterhead);
    addRoe();
    const SplitName roe{u"Roe"_s, u"Jane"_s};
    addDisbursement(roe, u"Rail"_s, 1234.5, 46305);
    addDisbursement(roe, u"Court"_s, -60.25, 46300);
    addDisbursement({u"Doe"_s, u"John"_s}, u"Court"_s, 7);
    addPayment(roe, true, 100, 46300);
    addPayment(roe, true, 0.1, 46200);
    addPayment(roe, false, 9000, 46310);
    const QByteArray before = fileBytes();
    for (const Ledger ledger : {Ledger::Disbursements, Ledger::Payments}) {
        printed.clear();
        pick(u"Select a client"_s, u"Roe, Jane"_s);
        makeStatement(global, ledger, nullptr);
        expectPrinted(ledger == Ledger::Disbursements ? u"disbursements.txt"_s : u"payments.txt"_s);
    }
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(LetterCommandsTest, AStatementGoesOnWithALetterheadJustMade)
{
    const auto make = [&](Answer answer) {
        pick(u"Select a client"_s, u"Roe, Jane"_s);
        dialogs.expect(kReportQuestion, answer, Buttons::YesNo);
        if (answer == Answer::No)
            dialogs.expect(
                u"You must create a letterhead before you can create a payments or disbursements report."_s);
        makeStatement(global, Ledger::Payments, nullptr);
    };
    make(Answer::No);
    EXPECT_THROW(make(Answer::Yes), RunTimeError) << "the letterhead window was left by Return";
    EXPECT_EQ(printed, QStringList());
    createdLetterhead = kLetterhead;
    make(Answer::Yes);
    EXPECT_TRUE(printed.value(0).startsWith(u"Law Office of Ann Archer\n"_s));
    global.SearchClient.clear();
    pick(u"Select a client"_s, {});
    dialogs.expect(u"You must select a client.  Please try again."_s);
    makeStatement(global, Ledger::Payments, nullptr);
    EXPECT_EQ(printed.size(), 1);
}

} // namespace vardelin::testing_support
