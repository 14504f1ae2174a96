#pragma once
// Moving a client's row from Active Clients to Inactive Clients.

#include "database/Names.h"
#include "platform/data/Dao.h"

namespace vardelin {

// The first active row of exactly this name goes, and one of the columns that closed cases keep is added,
// with the day of closure (Empty or Null: none). False: no such row, nothing is written. The active row is
// deleted before the inactive one is written; a crash in between leaves both as they were, an error in
// between leaves what was done. active: a record set on Active Clients of this database; 3021 where that is
// empty.
bool deactivate(dao::Database &database, dao::Recordset &active, const SplitName &name, const Value &closed);

} // namespace vardelin
