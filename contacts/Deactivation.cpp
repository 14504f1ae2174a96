#include "contacts/Deactivation.h"

#include "platform/base/RunTimeError.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Columns of both tables, in the order of writing: "Active Client ..." and "Inactive Client ..." alike.
constexpr std::array kAddressColumns{
    u"First Address",  u"Second Address", u"Third Address",  u"City",          u"State",
    u"Zip Code",       u"Home Telephone", u"Work Telephone", u"Email Address", u"Retainer Date",
    u"Retainer Terms", u"Referrer",       u"Claim Type"};

bool findFirst(dao::Recordset &active, const SplitName &name)
{
    const int count = active.RecordCount();
    active.MoveFirst();
    for (int i = 0; i < count && !active.EOF_(); ++i, active.MoveNext())
        if (joinText(active.Fields(u"Client First Name"_s)) == name.first &&
            joinText(active.Fields(u"Client Last Name"_s)) == name.last)
            return true;
    return false;
}

void copyRow(const dao::Recordset &active, dao::Recordset &inactive, const Value &closed)
{
    inactive.AddNew();
    inactive.SetField(u"Inactive Client First Name"_s, active.Fields(u"Client First Name"_s));
    inactive.SetField(u"Inactive Client Last Name"_s, active.Fields(u"Client Last Name"_s));
    for (const char16_t *column : kAddressColumns)
        inactive.SetField(u"Inactive Client "_s + QString::fromUtf16(column),
                          active.Fields(u"Active Client "_s + QString::fromUtf16(column)));
    if (!closed.isEmpty())
        inactive.SetField(u"Inactive Client Case Closed Date"_s, closed);
}

} // namespace

bool deactivate(dao::Database &database, dao::Recordset &active, const SplitName &name, const Value &closed)
{
    if (!findFirst(active, name))
        return false;
    const auto inactive = database.OpenRecordset(u"Inactive Clients"_s);
    copyRow(active, *inactive, closed);
    database.BeginTrans();
    try {
        active.Delete();
        inactive->Update();
    } catch (const RunTimeError &) {
        database.CommitTrans();
        throw;
    }
    database.CommitTrans();
    return true;
}

} // namespace vardelin
