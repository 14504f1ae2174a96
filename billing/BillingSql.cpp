#include "billing/BillingSql.h"

#include "shell/state/QuoteForSQL.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

QString table(Ledger ledger)
{
    return ledger == Ledger::Disbursements ? u"Disbursements"_s : u"Payments"_s;
}

// "Disbursement Date" of "Date", in brackets.
QString column(Ledger ledger, const QString &what)
{
    return u'[' + (ledger == Ledger::Disbursements ? u"Disbursement "_s : u"Payment "_s) + what + u']';
}

QString literal(const Value &moment)
{
    return u'#' + joinText(moment) + u'#';
}

QString quoted(QString text)
{
    return u'\'' + QuoteForSQL(text) + u'\'';
}

QString clientOrder(Ledger ledger)
{
    return u" Order By "_s + column(ledger, u"Client Last Name"_s) + u", "_s +
           column(ledger, u"Client First Name"_s) + u", "_s + column(ledger, u"Date"_s);
}

} // namespace

QString invoiceSelect(const QString &client)
{
    return u"SELECT * FROM Vardelins WHERE Client Like '"_s + client + u"' "_s;
}

QString statementSelect(Ledger ledger, const QString &lastName, const QString &firstName)
{
    const auto is = [&](const QString &what, const QString &text) {
        return column(ledger, what) + u" Like "_s + quoted(text);
    };
    const QString order =
        ledger == Ledger::Disbursements ? QString() : column(ledger, u"Description"_s) + u", "_s;
    return u"SELECT * FROM "_s + table(ledger) + u" WHERE "_s + is(u"Client Last Name"_s, lastName) +
           u" and "_s + is(u"Client First Name"_s, firstName) + u" ORDER BY "_s + order +
           column(ledger, u"Date"_s);
}

QString ledgerSelect(Ledger ledger)
{
    return u"Select * from "_s + table(ledger) + clientOrder(ledger);
}

QString ledgerSearch(Ledger ledger, const QString &term, const Value &start, const Value &end)
{
    const QStringList searched =
        ledger == Ledger::Disbursements
            ? QStringList{u"Amount"_s, u"Client Last Name"_s, u"Client First Name"_s, u"Payee"_s,
                          u"Description"_s}
            : QStringList{u"Amount"_s, u"Client Last Name"_s, u"Description"_s, u"Client First Name"_s};
    QStringList likes;
    for (const QString &what : searched)
        likes += column(ledger, what) + u" like '%"_s + term + u"%'"_s;
    const QString date = column(ledger, u"Date"_s);
    return u"Select * from "_s + table(ledger) + u" where "_s + date + u" >= "_s + literal(start) +
           u" and "_s + date + u" <= "_s + literal(end) + u" and ("_s + likes.join(u" or "_s) + u')' +
           clientOrder(ledger);
}

} // namespace vardelin
