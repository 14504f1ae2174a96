#pragma once
// An office with clients, logs and a ledger, for the tests of billing.

#include "database/Names.h"
#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"

#include <gtest/gtest.h>

namespace vardelin::testing_support {

struct BillingTest : testing::Test, OfficeProgram
{
    ~BillingTest() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    // Logs of one client, from 46300 on a day apart (5 October 2026, 9 in the morning), by their fees.
    void addLogs(const QString &client, const std::vector<Value> &fees, const QString &summary)
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(QStringLiteral("Vardelins"));
        database->BeginTrans();
        double begin = 46300.375;
        for (const Value &fee : fees) {
            rows->AddNew();
            rows->SetField(QStringLiteral("Client"), client);
            rows->SetField(QStringLiteral("Employee"), QStringLiteral("Baxter, Bo"));
            rows->SetField(QStringLiteral("Rate"), QStringLiteral("125.5"));
            rows->SetField(QStringLiteral("Duration"), 1.5f);
            rows->SetField(QStringLiteral("Log Summary"), summary);
            rows->SetField(QStringLiteral("Beginning Time"), DateSerial{begin++});
            rows->SetField(QStringLiteral("Fee"), fee);
            rows->Update();
        }
        database->CommitTrans();
    }
    void setLetterhead(const Value &text)
    {
        add(QStringLiteral("Invoices"), {{QStringLiteral("Invoice Header"), text}});
    }

    static Currency money(double amount) { return toCurrency(Value(amount)); }

    void addDisbursement(const SplitName &client, const QString &payee, double amount, double day = 46300)
    {
        add(QStringLiteral("Disbursements"),
            {{QStringLiteral("Disbursement Client First Name"), client.first},
             {QStringLiteral("Disbursement Client Last Name"), client.last},
             {QStringLiteral("Disbursement Payee"), payee},
             {QStringLiteral("Disbursement Description"), payee + QStringLiteral(" work")},
             {QStringLiteral("Disbursement Date"), DateSerial{day}},
             {QStringLiteral("Disbursement Amount"), money(amount)}});
    }
    void addPayment(const SplitName &client, bool fee, double amount, double day = 46300)
    {
        add(QStringLiteral("Payments"), {{QStringLiteral("Payment Client First Name"), client.first},
                                         {QStringLiteral("Payment Client Last Name"), client.last},
                                         {QStringLiteral("Payment Description"),
                                          fee ? QStringLiteral("Legal fee") : QStringLiteral("Disbursement")},
                                         {QStringLiteral("Payment Date"), DateSerial{day}},
                                         {QStringLiteral("Payment Amount"), money(amount)}});
    }
};

} // namespace vardelin::testing_support
