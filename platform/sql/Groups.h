#pragma once
// Rows gathered into groups, with their counts, sums and the like.

#include "platform/sql/Binder.h"
#include "platform/sql/Evaluator.h"

#include <map>
#include <string>

namespace vardelin::sql {

// What has come together of one aggregate in one group.
class Accumulator
{
public:
    void add(const Aggregate &aggregate, const Value &value);
    Value result(const Aggregate &aggregate) const;

private:
    std::int32_t m_count = 0; // of the values that aren't Null
    Value m_value{NullValue()};
};

// The results of one group: the expressions of Group By, then the aggregates. A row without columns.
class GroupRow final : public Row
{
public:
    explicit GroupRow(std::vector<Value> results) : m_results(std::move(results)) {}
    Value value(std::size_t) const override { return Value(NullValue()); }
    Value groupResult(std::size_t index) const override { return m_results[index]; }

private:
    std::vector<Value> m_results;
};

class Groups
{
public:
    // All must outlive it. Without keys there is one group, rows or none.
    Groups(const std::vector<Program> &keys, const std::vector<Aggregate> &aggregates);
    void add(const Row &row, Evaluator &evaluator);
    std::vector<GroupRow> rows() const; // in the order of their keys

private:
    struct Group
    {
        std::vector<Value> keys;
        std::vector<Accumulator> accumulators;
    };
    Group &groupOf(const std::vector<Value> &keys);

    const std::vector<Program> &m_keys;
    const std::vector<Aggregate> &m_aggregates;
    std::map<std::string, Group> m_groups;
};

} // namespace vardelin::sql
