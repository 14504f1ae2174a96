#pragma once
// What the operators of expressions do with two values.

#include "platform/sql/Syntax.h"

#include <optional>

namespace vardelin::sql {

int compareTexts(const QString &left, const QString &right); // below, at or above 0: the general order

// Below 0, 0, above 0; nullopt where a value is Null. Numbers, dates and Booleans compare as numbers, exactly
// where neither is a floating one; texts in the general order. RunTimeError 13 for a text beside anything
// else.
std::optional<int> compareValues(const Value &left, const Value &right);

// Comparison, joining and arithmetic. Null gives Null, except that & takes one Null for an empty text.
// RunTimeError 13, 6 or 11.
Value applyBinary(Op op, const Value &left, const Value &right);
Value negated(const Value &value);

// Three-valued logic over Booleans, numbers and Null.
Value applyLogic(Op op, const Value &left, const Value &right);
Value logicalNot(const Value &value);

// True, and neither False nor Null.
bool holds(const Value &value);

} // namespace vardelin::sql
