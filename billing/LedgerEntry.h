#pragma once
// What is typed into the ledger window and its place between scroll bar and records, as functions of values.

#include "platform/base/Value.h"

#include <optional>

namespace vardelin {

// As the fields hold it; date: Null for a picker without a value.
struct DisbursementEntry
{
    QString client, vendor, description, amount;
    Value date;
};
struct PaymentEntry
{
    QString client, amount;
    Value date;
    bool fee = true; // of the two kinds of payment; else a disbursement's
};

enum class EntryField { Client, Vendor, Description, Amount, Date };

// Why it can't be saved: the words of the first check that fails, and what it asks for; nullopt where none
// does. Whether the amount is one is left to the engine.
struct Refusal
{
    EntryField field;
    QString words;
};
std::optional<Refusal> refusalOf(const DisbursementEntry &entry);
std::optional<Refusal> refusalOf(const PaymentEntry &entry);

// "Legal fee" or "Disbursement": what the column of 12 characters gets, whatever the option's caption says.
QString paymentDescription(const PaymentEntry &entry);

// What is said after a save.
QString savedMessage(const DisbursementEntry &entry);
QString savedMessage(const PaymentEntry &entry);

// The record that a moved scroll bar asks for, from 1, halves to even; nullopt where the point works out
// below the first record.
std::optional<int> scrolledTo(int value, int maximum, int count);

} // namespace vardelin
