#pragma once
// The operations of Operations.h on the same rows in SQLite, as a C program would do them: default journal
// and durability, prepared statements, everything fetched that ours fetches.

#include "benchmarks/Operations.h"

namespace vardelin::bench {

// Makes a new SQLite file with the tables, rows and the primary key of a generated file.
void copyToSqlite(const QString &mdb, const QString &sqlite);

// out: as for ours, a new file. The same check as ours. Besides them "export_all": as export_client, every
// log.
Check runInSqlite(std::string_view operation, const QString &file, const QString &out);

} // namespace vardelin::bench
