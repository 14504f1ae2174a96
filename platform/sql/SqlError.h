#pragma once
// The errors of statements, in the provider's words.

#include "platform/sql/Select.h"

namespace vardelin::sql {

[[noreturn]] void fail(const QString &description, qsizetype position);

[[noreturn]] void failInSelectList(qsizetype position);
[[noreturn]] void failInClause(QLatin1StringView clause, qsizetype position); // "FROM", "WHERE", ...
// what: "Syntax error (missing operator)" and its kin; the expression stands behind it.
[[noreturn]] void failInExpression(QLatin1StringView what, const QString &expression, qsizetype position);
[[noreturn]] void failMissingParameter(qsizetype position);
[[noreturn]] void failTableNotFound(const QString &name, qsizetype position);
[[noreturn]] void failTypeMismatch(qsizetype position);

} // namespace vardelin::sql
