#include "billing/LedgerEntry.h"

#include "platform/base/Format.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

struct Check
{
    EntryField field;
    bool fails;
    const char16_t *message;
};

std::optional<Refusal> firstFailure(std::initializer_list<Check> checks)
{
    for (const Check &check : checks) {
        if (check.fails)
            return Refusal{check.field, QString::fromUtf16(check.message)};
    }
    return std::nullopt;
}

QString savedLines(const QStringList &lines, const Value &date)
{
    return u"This record has been saved:\n\n"_s + lines.join(u'\n') + u'\n' + format(date, u"M/d/yyyy");
}

} // namespace

std::optional<Refusal> refusalOf(const DisbursementEntry &entry)
{
    return firstFailure({
        {EntryField::Client, entry.client.isEmpty(),
         u"Please select or enter the name of a client before saving this disbursement record."},
        {EntryField::Vendor, entry.vendor.isEmpty(),
         u"Please select or enter the name of a disbursement vendor before saving this disbursement record."},
        {EntryField::Description, entry.description.isEmpty(),
         u"Please enter a description for the disbursment before saving this disbursement record."},
        {EntryField::Amount, entry.amount.isEmpty(),
         u"Please enter the amount of the disbursment before saving this disbursement record."},
        {EntryField::Date, entry.date.isNull(),
         u"Please select the date the disbursement was made before saving this disbursement record."},
    });
}

std::optional<Refusal> refusalOf(const PaymentEntry &entry)
{
    return firstFailure({
        {EntryField::Client, entry.client.isEmpty(),
         u"Please select or enter the name of a client before saving this payment record."},
        {EntryField::Amount, entry.amount.isEmpty(),
         u"Please enter the amount of the payment before saving this payment record."},
        {EntryField::Date, entry.date.isNull(),
         u"Please select the date the payment was made before saving this payment record."},
    });
}

QString paymentDescription(const PaymentEntry &entry)
{
    return entry.fee ? u"Legal fee"_s : u"Disbursement"_s;
}

QString savedMessage(const DisbursementEntry &entry)
{
    return savedLines({entry.client, entry.vendor, entry.description, entry.amount}, entry.date);
}

QString savedMessage(const PaymentEntry &entry)
{
    return savedLines({entry.client, paymentDescription(entry), entry.amount}, entry.date);
}

std::optional<int> scrolledTo(int value, int maximum, int count)
{
    const double place = static_cast<double>(count) / maximum * value;
    if (place < 1)
        return std::nullopt;
    return toLong(Value(place));
}

} // namespace vardelin
