// The words of the letters, of the statements to the engine, and of the ledger's checks.

#include "billing/Letter.h"
#include "billing/BillingSql.h"
#include "billing/LedgerEntry.h"
#include "platform/base/RunTimeError.h"
#include "tests/support/PrintQt.h"

#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const Value kNull = NullValue();

// A client with all there is.
LetterClient fullClient()
{
    return {.addresses = {u"1 Main St"_s, u"Suite 2"_s, u"Rear"_s},
            .city = u"Springfield"_s,
            .state = u"IL"_s,
            .zip = u"62701"_s,
            .reLine = u"Re: Roe v. Doe"_s,
            .greeting = u"As agreed:"_s,
            .closing = u"Yours,"_s};
}

const SplitName kName{u"Roe"_s, u"Jane"_s};

} // namespace

TEST(LetterTest, AClientSplitsAtTheFirstCommaAndBlank)
{
    const std::tuple<QString, QString, QString> split[]{
        {u"Roe, Jane"_s, u"Roe"_s, u"Jane"_s},  {u"Roe, Jane, Jr."_s, u"Roe"_s, u"Jane, Jr."_s},
        {u"Roe, Jane "_s, u"Roe"_s, u"ane "_s}, // cut from the right, as long as without the blank
        {u" Roe, Jane"_s, u" Roe"_s, u"ane"_s}, {u", "_s + u"Jane"_s, u""_s, u"Jane"_s},
    };
    for (const auto &[client, last, first] : split)
        EXPECT_EQ(splitClient(client), (SplitName{last, first})) << client.toStdString();
    for (const QString &client : {u"Estate"_s, u"Roe,Jane"_s, u"Roe, "_s, QString()}) {
        try {
            splitClient(client);
            ADD_FAILURE() << client.toStdString();
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), 5);
        }
    }
}

TEST(LetterTest, AddressLinesWithAZipCodeByItsLengthAlone)
{
    const std::array<Value, 3> full = fullClient().addresses, none{kNull, kNull, kNull};
    const QString first = u"Jane Roe\r\n"_s, town = u"Springfield"_s, zip = u"62701"_s;
    const struct
    {
        std::array<Value, 3> addresses;
        Value city, state, zip;
        QString block;
    } cases[]{
        {full, town, u"IL"_s, zip, u"1 Main St\r\nSuite 2\r\nRear\r\nSpringfield, IL  62701"_s},
        {{kNull, u"  "_s, u" Rear "_s}, town, u"IL"_s, zip, u" Rear \r\nSpringfield, IL  62701"_s},
        {none, u" X "_s, u" IL "_s, u" 123456789 "_s, u"X, IL  12345-6789"_s},
        {none, kNull, kNull, u"12345-6789"_s, u"  12345--6789"_s},
        {none, town, kNull, zip, u"  62701"_s}, // no city without a state
        {none, u" "_s, u"IL"_s, kNull, u"  "_s},
    };
    for (const auto &c : cases) {
        const LetterClient client{c.addresses, c.city, c.state, c.zip, kNull, kNull, kNull};
        EXPECT_EQ(letterTexts(Letter::Invoice, kName, client).AddressBlock, first + c.block);
    }
    EXPECT_EQ(letterTexts(Letter::Payments, kName, std::nullopt).AddressBlock, first);
}

TEST(LetterTest, NullAndTheEmptyTextAreNotTreatedAlike)
{
    const QString salutation = u"Dear Client:\r\n\r\n"_s, truly = u"Very truly yours,\r\n\r\n\r\n"_s;
    const struct
    {
        Letter kind;
        QString sentence;
        QString nullClosing, emptyClosing, ownClosing;
    } letters[]{
        {Letter::Invoice, u"This is your current statement for services rendered."_s, u"\r\n"_s, truly,
         u"Yours,\r\n"_s},
        {Letter::Disbursements,
         u"This is your current statement for disbursements we have rendered on your behalf."_s, truly, truly,
         u"Yours,\r\n\r\n\r\n"_s + truly},
        {Letter::Payments, u"This is your current statement of payments made by you."_s, truly, truly,
         u"Yours,\r\n\r\n\r\n"_s + truly},
    };
    for (const auto &letter : letters) {
        LetterClient client = fullClient();
        const auto texts = [&] { return letterTexts(letter.kind, kName, client); };
        EXPECT_EQ(texts().ReLineText, u"Re: Roe v. Doe\r\n"_s);
        EXPECT_EQ(texts().GreetingText, salutation + u"As agreed:\r\n"_s);
        EXPECT_EQ(texts().ClosingText, letter.ownClosing);
        client.reLine = client.greeting = client.closing = QString();
        EXPECT_EQ(texts().ReLineText, QString());
        EXPECT_EQ(texts().GreetingText, salutation + letter.sentence + u"\r\n"_s);
        EXPECT_EQ(texts().ClosingText, letter.emptyClosing);
        client.reLine = client.greeting = client.closing = kNull;
        EXPECT_EQ(texts().ReLineText, u"\r\n"_s);
        EXPECT_EQ(texts().GreetingText, salutation + letter.sentence + u"\r\n"_s);
        EXPECT_EQ(texts().ClosingText, letter.nullClosing);
    }
}

TEST(BillingSqlTest, StatementsLetterForLetter)
{
    const Value start = DateSerial{46311.375}, end = DateSerial{46312};
    EXPECT_EQ(statementSelect(Ledger::Disbursements, u"O'Neil"_s, u"Ann"_s),
              u"SELECT * FROM Disbursements WHERE [Disbursement Client Last Name] Like 'O''Neil' and "
              u"[Disbursement Client First Name] Like 'Ann' ORDER BY [Disbursement Date]"_s);
    EXPECT_EQ(statementSelect(Ledger::Payments, u"Roe"_s, u"D'A"_s),
              u"SELECT * FROM Payments WHERE [Payment Client Last Name] Like 'Roe' and [Payment Client First "
              u"Name] Like 'D''A' ORDER BY [Payment Description], [Payment Date]"_s);
    EXPECT_EQ(
        ledgerSearch(Ledger::Disbursements, u"x"_s, start, end),
        u"Select * from Disbursements where [Disbursement Date] >= #10/16/2026 9:00:00 AM# and "
        u"[Disbursement Date] <= #10/17/2026# and ([Disbursement Amount] like '%x%' or [Disbursement "
        u"Client Last Name] like '%x%' or [Disbursement Client First Name] like '%x%' or [Disbursement "
        u"Payee] like '%x%' or [Disbursement Description] like '%x%') Order By [Disbursement Client Last "
        u"Name], [Disbursement Client First Name], [Disbursement Date]"_s);
    EXPECT_EQ(
        ledgerSearch(Ledger::Payments, u"x"_s, start, end),
        u"Select * from Payments where [Payment Date] >= #10/16/2026 9:00:00 AM# and [Payment Date] <= "
        u"#10/17/2026# and ([Payment Amount] like '%x%' or [Payment Client Last Name] like '%x%' or "
        u"[Payment Description] like '%x%' or [Payment Client First Name] like '%x%') Order By [Payment "
        u"Client Last Name], [Payment Client First Name], [Payment Date]"_s);
}

TEST(LedgerEntryTest, ChecksInTheirOrder)
{
    // Each check is met by filling what it asked for.
    DisbursementEntry entry{.client = {}, .vendor = {}, .description = {}, .amount = {}, .date = kNull};
    using Field = EntryField;
    const auto expectRefusal = [](const std::optional<Refusal> &refusal, Field field, const QString &words) {
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->words, words);
        EXPECT_EQ(refusal->field, field);
    };
    const std::tuple<Field, QString, std::function<void()>> checks[]{
        {Field::Client, u"select or enter the name of a client"_s, [&] { entry.client = u"Roe, Jane"_s; }},
        {Field::Vendor, u"select or enter the name of a disbursement vendor"_s,
         [&] { entry.vendor = u"Court"_s; }},
        {Field::Description, u"enter a description for the disbursment"_s,
         [&] { entry.description = u"Filing"_s; }},
        {Field::Amount, u"enter the amount of the disbursment"_s, [&] { entry.amount = u"0"_s; }},
        {Field::Date, u"select the date the disbursement was made"_s,
         [&] { entry.date = DateSerial{46311.375}; }}};
    for (const auto &[field, words, fill] : checks) {
        expectRefusal(refusalOf(entry), field,
                      u"Please %1 before saving this disbursement record."_s.arg(words));
        fill();
    }
    EXPECT_FALSE(refusalOf(entry));
    PaymentEntry payment{.client = {}, .amount = {}, .date = kNull};
    const std::tuple<Field, QString, std::function<void()>> paymentChecks[]{
        {Field::Client, u"select or enter the name of a client"_s, [&] { payment.client = u"Roe, Jane"_s; }},
        {Field::Amount, u"enter the amount of the payment"_s, [&] { payment.amount = u"0"_s; }},
        {Field::Date, u"select the date the payment was made"_s, [&] { payment.date = DateSerial{46311}; }}};
    for (const auto &[field, words, fill] : paymentChecks) {
        expectRefusal(refusalOf(payment), field,
                      u"Please %1 before saving this payment record."_s.arg(words));
        fill();
    }
    EXPECT_FALSE(refusalOf(payment));
}

} // namespace vardelin
