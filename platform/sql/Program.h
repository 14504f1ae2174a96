#pragma once
// An expression that is bound: steps over a stack of values. A program runs without recursion, however deep
// the expression was.

#include "platform/sql/EqualText.h"
#include "platform/sql/Functions.h"
#include "platform/sql/Like.h"
#include "platform/sql/Syntax.h"

#include <QSet>
#include <vector>

namespace vardelin::sql {

enum class Step : std::uint8_t {
    Literal, // literals[a] onto the stack
    Column,  // the row's column a
    Group,   // the group's result a
    Binary,  // op, over the two on top
    Logic,   // op, the same
    Not,
    Negate,
    IsNull,
    Between,         // value, lower, upper
    In,              // value and b texts, numbers or dates
    Like,            // text and pattern
    LikeColumn,      // column a and patterns[b]
    EqualsColumn,    // column a and texts[b]
    LikeAnyColumn,   // column a and words[b]
    Call,            // functions[a] with b arguments
    SkipIfFalse,     // on to a, with False on top, where the And is decided
    SkipIfTrue,      // the same for Or
    SkipUnlessHolds, // takes the top; on to a unless it is True
    Skip             // on to a
};

struct Instruction
{
    Step step;
    Op op = Op::Equal;
    bool negated = false;
    std::uint32_t a = 0, b = 0;
};

struct Program
{
    std::vector<Instruction> steps;
    std::vector<Value> literals;
    std::vector<const Function *> functions;
    std::vector<LikePattern> patterns;
    std::vector<EqualText> texts;
    std::vector<QSet<QString>> words;
    Kind kind = Kind::Any; // of its result
};

} // namespace vardelin::sql
