// The letters as reports: fonts, totals, and what the whole commands put on paper.

#include "billing/LetterReport.h"
#include "billing/BillingSql.h"
#include "platform/base/Format.h"
#include "platform/report/ReportPages.h"
#include "tests/billing/BillingOffice.h"

#include <random>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

const FontSetting kNone, kTimes{u"Times New Roman"_s, u"12.5"_s}, kCourier{u"Courier New"_s, u"10.5"_s},
    kArial{u"Arial"_s, u"9.75"_s};

// Of the letterhead, another label of the header, the detail's text, the footer's sum.
QString fontsOf(DataReport report)
{
    QStringList fonts;
    for (const auto &[section, name] : {std::pair{u"Section4"_s, u"Label1"_s},
                                        {u"Section4"_s, u"Label2"_s},
                                        {u"Section1"_s, u"Text1"_s},
                                        {u"Section5"_s, u"Function1"_s}}) {
        const ReportFont &font = report.Sections(section).Controls(name).Font;
        fonts += font.Name.left(1) + QString::number(font.Size);
    }
    return fonts.join(u' ');
}

// Of an amount as another reader exports it: "-12.5000", "0"; nothing for Null.
std::int64_t tenThousandths(const QString &exported)
{
    QString digits = exported.section(u'.', 0, 0) + exported.section(u'.', 1).leftJustified(4, u'0');
    return exported.isEmpty() ? 0 : digits.toLongLong();
}

} // namespace

struct LetterReportTest : BillingTest
{
    DataReport letter(Letter kind) { return letterReport(kind, {}, {}, global); }

    ado::Connection connection;
    ado::Recordset rows;
    void open(const QString &statement)
    {
        if (!connection.isOpen())
            connection.Open(ado::connectionText(global.DatabaseFileName));
        if (rows.isOpen())
            rows.Close();
        rows.Open(statement, connection);
    }
};

TEST_F(LetterReportTest, TheReportFontOverridesTheLetterheadOnTheInvoiceAlone)
{
    const struct
    {
        FontSetting letterhead, detail, report;
        const char16_t *invoice, *statement;
    } cases[]{
        {kNone, kNone, kNone, u"A14.25 A8.25 A9 A9", u"A14.25 A8.25 A8.25 A8.25"},
        {kTimes, kNone, kNone, u"T12 A8.25 A9 A9", u"T12.5 A8.25 A8.25 A8.25"},
        {kTimes, kCourier, kArial, u"A9.75 A9.75 C10 A9.75", u"T12.5 A9.75 C10.5 A9.75"},
        {kNone, kCourier, kNone, u"A14.25 A8.25 C10 A9", u"A14.25 A8.25 C10.5 A8.25"},
        {{{}, u"20"_s}, kNone, kNone, u"A20 A8.25 A9 A9", u"A14.25 A8.25 A8.25 A8.25"},
    };
    for (const auto &c : cases) {
        global.DefaultLetterheadFont = c.letterhead;
        global.DefaultVardelinFont = c.detail;
        global.DefaultReportFont = c.report;
        EXPECT_EQ(fontsOf(letter(Letter::Invoice)), QString::fromUtf16(c.invoice));
        EXPECT_EQ(fontsOf(letter(Letter::Disbursements)), QString::fromUtf16(c.statement));
        EXPECT_EQ(fontsOf(letter(Letter::Payments)), QString::fromUtf16(c.statement));
    }
    global.DefaultReportFont = {u"Arial"_s, u"large"_s};
    EXPECT_THROW(letter(Letter::Invoice), RunTimeError);
}

// The total of 10,000 logs against a sum over the file as another reader exports it.
TEST_F(LetterReportTest, TotalsAreExact)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int64_t> amount(-90'000'000'000, 90'000'000'000);
    std::vector<Value> fees{NullValue(), Currency{0}, Currency{9'000'000'000'000'000'000 / 10'000}};
    while (fees.size() < 10'000)
        fees.emplace_back(Currency{amount(random)});
    addLogs(u"Roe, Jane"_s, fees, u"Call"_s);
    addLogs(u"Adams, Al"_s, {Currency{10'000}}, u"Another's"_s);

    std::int64_t sum = 0;
    for (const QString &row : exportedRows(global.DatabaseFileName, u"Vardelins"_s)) {
        if (!row.contains("Roe"_L1))
            continue;
        sum += tenThousandths(row.section(u',', -1));
    }
    open(invoiceSelect(u"Roe, Jane"_s));
    EXPECT_EQ(rows.RecordCount(), 10'000);
    DataReport report = letter(Letter::Invoice);
    report.setDataSource(&rows);
    const QString printed = textOf(report);
    EXPECT_TRUE(printed.contains(u"Total:\t"_s + format(Currency{sum}, u"\"$\"#,##0.00")))
        << printed.right(200).toStdString();

    const auto totalOf = [&](const std::vector<Value> &some) {
        addLogs(u"Doe, %1"_s.arg(some.size()), some, u"Call"_s);
        open(invoiceSelect(u"Doe, %1"_s.arg(some.size())));
        report.setDataSource(&rows);
        return textOf(report).section(u"Total:"_s, 1).section(u'\n', 0, 0);
    };
    EXPECT_EQ(totalOf({}), QString()) << "of no logs a total of nothing";
    EXPECT_EQ(totalOf({NullValue()}), QString());
    EXPECT_EQ(totalOf({Currency{-5'000}, NullValue()}), u"\t-$0.50"_s);
    const auto statementTotal = [&](Letter kind, Ledger ledger, const QString &table, int place) {
        std::int64_t expected = 0;
        for (const QString &row : exportedRows(global.DatabaseFileName, table))
            expected += tenThousandths(row.section(u',', place, place));
        open(statementSelect(ledger, u"Roe"_s, u"Jane"_s));
        DataReport statement = letter(kind);
        statement.setDataSource(&rows);
        EXPECT_TRUE(
            textOf(statement).contains(u":\t"_s + format(Currency{expected}, u"\"$\"#,##0.00") + u'\n'))
            << expected;
    };
    for (const double paid : {0.005, -1234567.8901, 99'999'999'999.99}) {
        addDisbursement({u"Roe"_s, u"Jane"_s}, u"Court"_s, paid);
        addPayment({u"Roe"_s, u"Jane"_s}, paid < 0, 3 * paid);
    }
    statementTotal(Letter::Disbursements, Ledger::Disbursements, u"Disbursements"_s, 4);
    statementTotal(Letter::Payments, Ledger::Payments, u"Payments"_s, 4);
    // Beyond what one amount can be.
    const Value largest = Currency{std::numeric_limits<std::int64_t>::max()};
    EXPECT_EQ(totalOf({largest, largest, Currency{10'000}}), u"\t$1,844,674,407,370,956.16"_s);
}

} // namespace vardelin::testing_support
