#include "platform/sql/Groups.h"

#include "platform/sql/Operators.h"
#include "platform/sql/SortKey.h"

namespace vardelin::sql {

namespace {

bool isMoney(const Value &value)
{
    return std::holds_alternative<Currency>(value.variant()) ||
           std::holds_alternative<Decimal>(value.variant());
}

// Money is summed exactly, all else as floating numbers.
Value sum(const Value &total, const Value &value)
{
    const Value addend = isMoney(value) ? value : Value(toDouble(value));
    return total.isNull() ? addend : applyBinary(Op::Add, total, addend);
}

Value average(const Value &total, std::int32_t count)
{
    const Value result = applyBinary(Op::Divide, total, Value(count));
    return std::holds_alternative<Currency>(total.variant()) ? Value(toCurrency(result)) : result;
}

} // namespace

void Accumulator::add(const Aggregate &aggregate, const Value &value)
{
    if (value.isNull())
        return;
    ++m_count;
    switch (aggregate.function) {
    case Aggregate::Function::Count:
        break;
    case Aggregate::Function::Sum:
    case Aggregate::Function::Avg:
        m_value = sum(m_value, value);
        break;
    case Aggregate::Function::Min:
    case Aggregate::Function::Max:
        const bool wantsLess = aggregate.function == Aggregate::Function::Min;
        const int order = compareValues(value, m_value).value_or(0);
        if (m_value.isNull() || (wantsLess ? order < 0 : order > 0))
            m_value = value;
        break;
    }
}

Value Accumulator::result(const Aggregate &aggregate) const
{
    if (aggregate.function == Aggregate::Function::Count)
        return Value(m_count);
    if (aggregate.function == Aggregate::Function::Avg && m_count > 0)
        return average(m_value, m_count);
    return m_value;
}

Groups::Groups(const std::vector<Program> &keys, const std::vector<Aggregate> &aggregates)
    : m_keys(keys), m_aggregates(aggregates)
{
    if (keys.empty())
        groupOf({});
}

Groups::Group &Groups::groupOf(const std::vector<Value> &keys)
{
    std::string key;
    for (const Value &value : keys)
        appendSortKey(key, value, false);
    Group &group = m_groups[key];
    if (group.accumulators.size() != m_aggregates.size() || group.keys.size() != keys.size()) {
        group.keys = keys;
        group.accumulators.resize(m_aggregates.size());
    }
    return group;
}

void Groups::add(const Row &row, Evaluator &evaluator)
{
    std::vector<Value> keys;
    for (const Program &key : m_keys)
        keys.push_back(evaluator.evaluate(key, row));
    Group &group = groupOf(keys);
    for (std::size_t i = 0; i < m_aggregates.size(); ++i) {
        const Aggregate &aggregate = m_aggregates[i];
        group.accumulators[i].add(aggregate, aggregate.argument ? evaluator.evaluate(*aggregate.argument, row)
                                                                : Value(1));
    }
}

std::vector<GroupRow> Groups::rows() const
{
    std::vector<GroupRow> rows;
    for (const auto &[key, group] : m_groups) {
        std::vector<Value> results = group.keys;
        for (std::size_t i = 0; i < m_aggregates.size(); ++i)
            results.push_back(group.accumulators[i].result(m_aggregates[i]));
        rows.emplace_back(std::move(results));
    }
    return rows;
}

} // namespace vardelin::sql
