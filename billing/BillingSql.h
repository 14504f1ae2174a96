#pragma once
// The statements of billing, as texts.

#include "platform/base/Value.h"

namespace vardelin {

enum class Ledger { Disbursements, Payments };

// A client's logs; search/SearchSql.h's rangeText() follows. The name goes in as it stands: one with an
// apostrophe gives a statement that the engine refuses. There is no order: logs come as the engine gives
// them.
QString invoiceSelect(const QString &client);

// A client's rows of a ledger; names with apostrophes are safe.
QString statementSelect(Ledger ledger, const QString &lastName, const QString &firstName);

// The whole ledger in the order of its clients, and what a search in it selects: rows of the time with the
// term in any column. The term goes in as it stands: % and _ are the engine's wildcards, an apostrophe breaks
// the statement.
QString ledgerSelect(Ledger ledger);
QString ledgerSearch(Ledger ledger, const QString &term, const Value &start, const Value &end);

} // namespace vardelin
