#pragma once
// Whether an index answers a part of Where.

#include "platform/jet/Jet.h"
#include "platform/sql/Binder.h"

namespace vardelin::sql {

struct IndexChoice
{
    const jet::LogicalIndex *index = nullptr;
    jet::Cell key; // for its first column
};

// An index whose first column Where wants to equal a value, whatever else it wants. The rows it gives must
// still be tested.
std::optional<IndexChoice> chooseIndex(const SelectSyntax &select, const jet::Table &table,
                                       const Binder &binder);

} // namespace vardelin::sql
