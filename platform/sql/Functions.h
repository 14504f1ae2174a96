#pragma once
// The functions that expressions may call.

#include "platform/base/Clock.h"
#include "platform/base/Value.h"

#include <span>

namespace vardelin::sql {

using Arguments = std::span<const Value>;

// What the values of an expression are, as far as it can be told before any row is read.
enum class Kind : std::uint8_t { Any, Null, Number, Date, Text };

struct Function
{
    QStringView name;
    std::size_t least, most; // arguments
    Kind result;
    // Throws RunTimeErrors.
    Value (*call)(Arguments arguments, const Clock &clock);
};

// Without regard to case, with or without a $ at the end; nullptr if there is none.
const Function *findFunction(QStringView name);

} // namespace vardelin::sql
