#include "platform/sql/Evaluator.h"

#include "platform/base/RunTimeError.h"
#include "platform/sql/Operators.h"

namespace vardelin::sql {

StoredText Row::storedText(std::size_t, jet::Bytes &) const
{
    return {};
}

Value Row::groupResult(std::size_t) const
{
    throw RunTimeError(RunTime::InvalidProcedureCall);
}

Value Evaluator::evaluate(const Program &program, const Row &row)
{
    // Most conditions are one question to one column: no stack is needed.
    if (program.steps.size() == 1) {
        if (std::optional<Value> result = ofColumn(program.steps.front(), program, row))
            return *std::move(result);
    }
    m_stack.clear();
    for (std::size_t at = 0; at < program.steps.size(); ++at) {
        const Instruction &step = program.steps[at];
        switch (step.step) {
        case Step::Skip:
            at = step.a - 1;
            break;
        case Step::SkipUnlessHolds:
            if (!holds(pop()))
                at = step.a - 1;
            break;
        case Step::SkipIfFalse:
        case Step::SkipIfTrue: {
            const bool decides = step.step == Step::SkipIfTrue;
            if (!m_stack.back().isNull() && toBoolean(m_stack.back()) == decides) {
                m_stack.back() = Value(decides);
                at = step.a - 1;
            }
            break;
        }
        default:
            run(step, program, row);
        }
    }
    return pop();
}

Value Evaluator::pop()
{
    Value top = std::move(m_stack.back());
    m_stack.pop_back();
    return top;
}

void Evaluator::run(const Instruction &step, const Program &program, const Row &row)
{
    switch (step.step) {
    case Step::Literal:
        m_stack.push_back(program.literals[step.a]);
        break;
    case Step::Group:
        m_stack.push_back(row.groupResult(step.a));
        break;
    case Step::Binary:
    case Step::Logic: {
        const Value right = pop();
        Value &left = m_stack.back();
        left =
            step.step == Step::Logic ? applyLogic(step.op, left, right) : applyBinary(step.op, left, right);
        break;
    }
    case Step::Not:
        m_stack.back() = logicalNot(m_stack.back());
        break;
    case Step::Negate:
        m_stack.back() = negated(m_stack.back());
        break;
    case Step::IsNull:
        m_stack.back() = Value(m_stack.back().isNull() != step.negated);
        break;
    case Step::Between:
        return between(step.negated);
    case Step::In:
        return in(step);
    case Step::Like:
        return like(step.negated);
    case Step::Call:
        return call(step, program);
    default:
        m_stack.push_back(*ofColumn(step, program, row));
    }
}

// nullopt: the step asks for something else.
std::optional<Value> Evaluator::ofColumn(const Instruction &step, const Program &program, const Row &row)
{
    switch (step.step) {
    case Step::Column:
        return row.value(step.a);
    case Step::EqualsColumn:
        return equalsColumn(step, program, row);
    case Step::LikeColumn:
        return likeColumn(step, program, row);
    case Step::LikeAnyColumn:
        return likeAnyColumn(step, program, row);
    default:
        return std::nullopt;
    }
}

// The bounds may stand in either order.
void Evaluator::between(bool negated)
{
    const Value upper = pop(), lower = pop(), value = pop();
    const auto within = [&](const Value &low, const Value &high) {
        return applyLogic(Op::And, applyBinary(Op::GreaterEqual, value, low),
                          applyBinary(Op::LessEqual, value, high));
    };
    const Value result = applyLogic(Op::Or, within(lower, upper), within(upper, lower));
    m_stack.push_back(negated ? logicalNot(result) : result);
}

void Evaluator::in(const Instruction &step)
{
    const auto first = m_stack.end() - step.b;
    const Value value = *(first - 1);
    Value result(false);
    for (auto candidate = first; candidate != m_stack.end() && !holds(result); ++candidate)
        result = applyLogic(Op::Or, result, applyBinary(Op::Equal, value, *candidate));
    m_stack.erase(first - 1, m_stack.end());
    m_stack.push_back(step.negated ? logicalNot(result) : result);
}

void Evaluator::like(bool negated)
{
    const Value pattern = pop(), text = pop();
    if (pattern.isNull() || text.isNull())
        m_stack.emplace_back(NullValue());
    else
        m_stack.emplace_back(LikePattern(toText(pattern)).matches(toText(text)) != negated);
}

Value Evaluator::equalsColumn(const Instruction &step, const Program &program, const Row &row)
{
    const EqualText &text = program.texts[step.b];
    const StoredText stored = row.storedText(step.a, m_store);
    if (!stored.known)
        return applyBinary(Op::Equal, row.value(step.a), Value(text.text()));
    if (stored.null)
        return Value(NullValue());
    return Value(text.matchesStored(stored.bytes, m_text));
}

Value Evaluator::likeColumn(const Instruction &step, const Program &program, const Row &row)
{
    const LikePattern &pattern = program.patterns[step.b];
    const StoredText stored = row.storedText(step.a, m_store);
    if (stored.known)
        return stored.null ? Value(NullValue()) : Value(pattern.matchesStored(stored.bytes) != step.negated);
    const Value value = row.value(step.a);
    return value.isNull() ? value : Value(pattern.matches(toText(value)) != step.negated);
}

Value Evaluator::likeAnyColumn(const Instruction &step, const Program &program, const Row &row)
{
    const Value value = row.value(step.a);
    if (value.isNull())
        return value;
    return Value(program.words[step.b].contains(folded(toText(value))));
}

void Evaluator::call(const Instruction &step, const Program &program)
{
    const std::size_t below = m_stack.size() - step.b;
    Value result = program.functions[step.a]->call(std::span(m_stack).subspan(below), *m_clock);
    m_stack.resize(below);
    m_stack.push_back(std::move(result));
}

} // namespace vardelin::sql
