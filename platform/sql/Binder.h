#pragma once
// Gives the names in a statement their meaning: columns of its table, functions, aggregates; and checks that
// what is compared can be.

#include "platform/jet/Types.h"
#include "platform/sql/Program.h"
#include "platform/sql/Syntax.h"

namespace vardelin::sql {

// Count(*) has no argument.
struct Aggregate
{
    enum class Function : std::uint8_t { Count, Sum, Avg, Min, Max };
    Function function = Function::Count;
    std::optional<Program> argument;
};

class Binder
{
public:
    // columns: of the table in From; none without. Both must outlive the binder.
    Binder(const SelectSyntax &select, std::span<const jet::Column> columns);

    Program bindRow(const Expression &expression);
    // An expression over groups: its columns must stand in Group By, its aggregates are collected.
    // Step::Group counts the expressions of Group By first, then the aggregates.
    Program bindGroup(const Expression &expression);
    Program bindCriteria(const Expression &expression); // of Where: no aggregates, with their own words
    const std::vector<Aggregate> &aggregates() const { return m_aggregates; }

    static std::optional<Aggregate::Function> findAggregate(QStringView name);
    std::size_t findColumn(const Node &node) const; // Error if there is none

private:
    enum class Mode { Row, Group, Criteria };
    struct Visit
    {
        NodeId node = 0;
        std::uint32_t nextChild = 0;
        std::size_t patch = 0; // the step that skips to the end of this node
    };

    Program bind(const Expression &expression, Mode mode);
    void walk(NodeId root);
    bool enter(NodeId id); // true: done, its children need no visit
    void beforeChild(Visit &visit);
    void leave(const Visit &visit);
    void leaveOperator(const Visit &visit);
    void leaveCall(const Visit &visit);
    void checkCall(const Node &node) const;

    void bindColumn(const Node &node);
    bool bindLike(NodeId id);
    bool bindEqual(NodeId id);
    void bindLikeAny(NodeId id);
    bool bindAggregate(NodeId id);
    void bindGroupColumn(std::size_t column);
    bool bindWholeGroup(const Expression &expression);
    Kind columnKind(std::size_t column) const;
    void checkComparable(std::size_t operands, qsizetype position) const;
    void emit(Instruction step, Kind kind, std::size_t operands);
    Kind sumKind() const;
    std::uint32_t here() const { return static_cast<std::uint32_t>(m_program.steps.size()); }

    const SelectSyntax &m_select;
    std::span<const jet::Column> m_columns;
    std::vector<Aggregate> m_aggregates;
    Mode m_mode = Mode::Row;
    QString m_text; // of the expression in hand
    Program m_program;
    std::vector<Kind> m_kinds; // of the values that would be on the stack
};

} // namespace vardelin::sql
