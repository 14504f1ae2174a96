#pragma once
// Runs programs over rows.

#include "platform/jet/Types.h"
#include "platform/sql/Program.h"

#include <span>

namespace vardelin::sql {

// A column's text as it lies in the file, so that it needn't be decoded to be searched.
struct StoredText
{
    bool known = false; // false: it isn't to be had
    bool null = false;
    std::span<const std::byte> bytes;
};

// Where a program's columns come from: a row of the file, a group, a row in memory.
class Row
{
public:
    virtual ~Row() = default;
    virtual Value value(std::size_t column) const = 0;
    virtual StoredText storedText(std::size_t column, jet::Bytes &store) const; // `store` may hold the bytes
    virtual Value groupResult(std::size_t index) const;
};

class Evaluator
{
public:
    explicit Evaluator(const Clock &clock) : m_clock(&clock) {}
    Value evaluate(const Program &program, const Row &row); // throws RunTimeError

private:
    Value pop();
    void run(const Instruction &step, const Program &program, const Row &row);
    std::optional<Value> ofColumn(const Instruction &step, const Program &program, const Row &row);
    void between(bool negated);
    void in(const Instruction &step);
    void like(bool negated);
    Value equalsColumn(const Instruction &step, const Program &program, const Row &row);
    Value likeColumn(const Instruction &step, const Program &program, const Row &row);
    Value likeAnyColumn(const Instruction &step, const Program &program, const Row &row);
    void call(const Instruction &step, const Program &program);

    const Clock *m_clock;
    std::vector<Value> m_stack;
    jet::Bytes m_store;
    QString m_text;
};

} // namespace vardelin::sql
