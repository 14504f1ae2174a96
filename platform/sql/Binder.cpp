#include "platform/sql/Binder.h"

#include "platform/sql/Cells.h"
#include "platform/sql/SqlError.h"

#include <algorithm>
#include <utility>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

bool same(QStringView left, QStringView right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

bool isIif(const Node &node)
{
    return node.kind == NodeKind::Call && same(node.name, u"IIf");
}

bool isComparison(Op op)
{
    return op >= Op::Equal && op <= Op::GreaterEqual;
}

bool isLogic(Op op)
{
    return op <= Op::And;
}

Kind literalKind(const Value &value)
{
    if (value.isNull())
        return Kind::Null;
    if (value.isText())
        return Kind::Text;
    return std::holds_alternative<DateSerial>(value.variant()) ? Kind::Date : Kind::Number;
}

Kind commonKind(Kind left, Kind right)
{
    if (left == Kind::Null)
        return right;
    return right == Kind::Null || left == right ? left : Kind::Any;
}

} // namespace

Binder::Binder(const SelectSyntax &select, std::span<const jet::Column> columns)
    : m_select(select), m_columns(columns)
{}

Program Binder::bindRow(const Expression &expression)
{
    return bind(expression, Mode::Row);
}

Program Binder::bindGroup(const Expression &expression)
{
    return bind(expression, Mode::Group);
}

Program Binder::bindCriteria(const Expression &expression)
{
    return bind(expression, Mode::Criteria);
}

Program Binder::bind(const Expression &expression, Mode mode)
{
    m_mode = mode;
    m_text = expression.text;
    m_program = {};
    m_kinds.clear();
    if (mode != Mode::Group || !bindWholeGroup(expression))
        walk(expression.root);
    m_program.kind = m_kinds.back();
    return std::exchange(m_program, {});
}

// Children before their parent, over a stack of its own.
void Binder::walk(NodeId root)
{
    std::vector<Visit> visits;
    const auto open = [&](NodeId id) {
        if (!enter(id))
            visits.push_back({id});
    };
    open(root);
    while (!visits.empty()) {
        Visit &visit = visits.back();
        const auto children = m_select.tree.children(visit.node);
        if (visit.nextChild < children.size()) {
            beforeChild(visit);
            open(children[visit.nextChild++]); // `visit` may have moved
            continue;
        }
        const Visit done = visit;
        visits.pop_back();
        leave(done);
    }
}

void Binder::emit(Instruction step, Kind kind, std::size_t operands)
{
    m_program.steps.push_back(step);
    m_kinds.resize(m_kinds.size() - operands);
    m_kinds.push_back(kind);
}

bool Binder::enter(NodeId id)
{
    const Node &node = m_select.tree.nodes[id];
    switch (node.kind) {
    case NodeKind::Literal:
        emit({Step::Literal, {}, false, static_cast<std::uint32_t>(m_program.literals.size()), 0},
             literalKind(node.literal), 0);
        m_program.literals.push_back(node.literal);
        return true;
    case NodeKind::Column:
        bindColumn(node);
        return true;
    case NodeKind::Star:
        failInExpression("Syntax error"_L1, m_text, node.position);
    case NodeKind::LikeAny:
        bindLikeAny(id);
        return true;
    case NodeKind::Operator:
        return (node.op == Op::Like && bindLike(id)) || (node.op == Op::Equal && bindEqual(id));
    case NodeKind::Call:
        if (bindAggregate(id))
            return true;
        checkCall(node);
    }
    return false;
}

std::size_t Binder::findColumn(const Node &node) const
{
    const bool known =
        node.table.isEmpty() || same(node.table, m_select.table) || same(node.table, m_select.tableAlias);
    const auto column = std::ranges::find_if(
        m_columns, [&](const jet::Column &c) { return same(toQString(c.name), node.name); });
    if (!known || column == m_columns.end())
        failMissingParameter(node.position);
    return static_cast<std::size_t>(column - m_columns.begin());
}

Kind Binder::columnKind(std::size_t column) const
{
    switch (m_columns[column].type) {
    case jet::ColumnType::Text:
    case jet::ColumnType::Memo:
    case jet::ColumnType::Guid:
    case jet::ColumnType::Binary:
    case jet::ColumnType::Ole:
    case jet::ColumnType::Big:
        return Kind::Text;
    case jet::ColumnType::DateTime:
        return Kind::Date;
    default:
        return Kind::Number;
    }
}

void Binder::bindColumn(const Node &node)
{
    const std::size_t column = findColumn(node);
    if (m_mode == Mode::Group)
        bindGroupColumn(column);
    else
        emit({Step::Column, {}, false, static_cast<std::uint32_t>(column), 0}, columnKind(column), 0);
}

void Binder::bindGroupColumn(std::size_t column)
{
    for (std::size_t i = 0; i < m_select.groupBy.size(); ++i) {
        const Node &key = m_select.tree.nodes[m_select.groupBy[i].root];
        if (key.kind == NodeKind::Column && findColumn(key) == column)
            return emit({Step::Group, {}, false, static_cast<std::uint32_t>(i), 0}, columnKind(column), 0);
    }
    fail(u"You tried to execute a query that does not include the specified expression '"_s + m_text +
             u"' as part of an aggregate function."_s,
         -1);
}

// The whole expression stands in Group By, word for word.
bool Binder::bindWholeGroup(const Expression &expression)
{
    for (std::size_t i = 0; i < m_select.groupBy.size(); ++i) {
        if (same(m_select.groupBy[i].text.simplified(), expression.text.simplified())) {
            emit({Step::Group, {}, false, static_cast<std::uint32_t>(i), 0}, Kind::Any, 0);
            return true;
        }
    }
    return false;
}

// Column Like 'pattern': the pattern is read once, and the text may be searched where it lies.
bool Binder::bindLike(NodeId id)
{
    const Node &node = m_select.tree.nodes[id];
    const Node &left = m_select.tree.nodes[m_select.tree.children(id)[0]];
    const Node &right = m_select.tree.nodes[m_select.tree.children(id)[1]];
    if (m_mode == Mode::Group || left.kind != NodeKind::Column || right.kind != NodeKind::Literal ||
        right.literal.isNull())
        return false;
    const auto column = static_cast<std::uint32_t>(findColumn(left));
    emit({Step::LikeColumn, {}, node.negated, column, static_cast<std::uint32_t>(m_program.patterns.size())},
         Kind::Number, 0);
    m_program.patterns.emplace_back(toText(right.literal));
    return true;
}

// Column = 'text': compared without a value being made of the column.
bool Binder::bindEqual(NodeId id)
{
    const Node &left = m_select.tree.nodes[m_select.tree.children(id)[0]];
    const Node &right = m_select.tree.nodes[m_select.tree.children(id)[1]];
    if (m_mode == Mode::Group || left.kind != NodeKind::Column || right.kind != NodeKind::Literal ||
        !right.literal.isText())
        return false;
    const std::size_t column = findColumn(left);
    if (columnKind(column) != Kind::Text)
        return false;
    emit({Step::EqualsColumn,
          {},
          false,
          static_cast<std::uint32_t>(column),
          static_cast<std::uint32_t>(m_program.texts.size())},
         Kind::Number, 0);
    m_program.texts.emplace_back(toText(right.literal));
    return true;
}

void Binder::bindLikeAny(NodeId id)
{
    const Node &node = m_select.tree.nodes[id];
    const auto column =
        static_cast<std::uint32_t>(findColumn(m_select.tree.nodes[m_select.tree.children(id)[0]]));
    emit({Step::LikeAnyColumn, {}, false, column, static_cast<std::uint32_t>(m_program.words.size())},
         Kind::Number, 0);
    m_program.words.push_back(m_select.tree.wordSets[node.words]);
}

std::optional<Aggregate::Function> Binder::findAggregate(QStringView name)
{
    static constexpr std::pair<QStringView, Aggregate::Function> kNames[] = {
        {u"Count", Aggregate::Function::Count}, {u"Sum", Aggregate::Function::Sum},
        {u"Avg", Aggregate::Function::Avg},     {u"Min", Aggregate::Function::Min},
        {u"Max", Aggregate::Function::Max},
    };
    const auto found =
        std::ranges::find_if(kNames, [name](const auto &entry) { return same(entry.first, name); });
    return found == std::end(kNames) ? std::nullopt : std::optional(found->second);
}

bool Binder::bindAggregate(NodeId id)
{
    const Node &node = m_select.tree.nodes[id];
    const auto function = findAggregate(node.name);
    if (!function)
        return false;
    if (m_mode == Mode::Criteria)
        fail(u"Cannot have aggregate function in WHERE clause ("_s + m_text + u")."_s, node.position);
    if (m_mode == Mode::Row)
        fail(u"Cannot have aggregate function in expression ("_s + m_text + u")."_s, node.position);
    if (node.childCount != 1)
        failInExpression("Wrong number of arguments used with function"_L1, m_text, node.position);
    Aggregate aggregate{*function, std::nullopt};
    const NodeId argument = m_select.tree.children(id)[0];
    const bool star = m_select.tree.nodes[argument].kind == NodeKind::Star;
    Kind kind = *function == Aggregate::Function::Count ? Kind::Number : Kind::Any;
    if (!star) {
        Binder inner(m_select, m_columns);
        aggregate.argument = inner.bindRow({argument, m_text});
        if (*function == Aggregate::Function::Min || *function == Aggregate::Function::Max)
            kind = aggregate.argument->kind;
        else if (*function != Aggregate::Function::Count && aggregate.argument->kind == Kind::Text)
            failTypeMismatch(node.position);
    } else if (*function != Aggregate::Function::Count) {
        failInExpression("Syntax error"_L1, m_text, node.position);
    }
    emit({Step::Group,
          {},
          false,
          static_cast<std::uint32_t>(m_select.groupBy.size() + m_aggregates.size()),
          0},
         kind, 0);
    m_aggregates.push_back(std::move(aggregate));
    return true;
}

void Binder::checkCall(const Node &node) const
{
    const Function *function = findFunction(node.name);
    if (!function && !isIif(node))
        fail(u"Undefined function '"_s + node.name + u"' in expression."_s, node.position);
    const std::size_t least = function ? function->least : 3, most = function ? function->most : 3;
    if (node.childCount < least || node.childCount > most)
        failInExpression("Wrong number of arguments used with function"_L1, m_text, node.position);
}

// And and Or stop where the first operand decides; IIf evaluates the branch that it takes and no other.
void Binder::beforeChild(Visit &visit)
{
    const Node &node = m_select.tree.nodes[visit.node];
    const auto skip = [&](Step step) {
        visit.patch = m_program.steps.size();
        m_program.steps.push_back({step});
    };
    if (isIif(node) && visit.nextChild == 1) {
        skip(Step::SkipUnlessHolds);
    } else if (isIif(node) && visit.nextChild == 2) {
        m_program.steps[visit.patch].a = here() + 1;
        skip(Step::Skip);
    } else if (node.kind == NodeKind::Operator && visit.nextChild == 1 &&
               (node.op == Op::And || node.op == Op::Or)) {
        skip(node.op == Op::And ? Step::SkipIfFalse : Step::SkipIfTrue);
    }
}

void Binder::leave(const Visit &visit)
{
    if (m_select.tree.nodes[visit.node].kind == NodeKind::Call)
        leaveCall(visit);
    else
        leaveOperator(visit);
}

void Binder::leaveCall(const Visit &visit)
{
    const Node &node = m_select.tree.nodes[visit.node];
    if (isIif(node)) {
        m_program.steps[visit.patch].a = here();
        const Kind kind = commonKind(m_kinds[m_kinds.size() - 2], m_kinds.back());
        m_kinds.resize(m_kinds.size() - 3);
        m_kinds.push_back(kind);
        return;
    }
    const Function *function = findFunction(node.name);
    emit({Step::Call, {}, false, static_cast<std::uint32_t>(m_program.functions.size()), node.childCount},
         function->result, node.childCount);
    m_program.functions.push_back(function);
}

// Text beside a number or a date is refused at once, rows or none.
void Binder::checkComparable(std::size_t operands, qsizetype position) const
{
    bool text = false, other = false;
    for (std::size_t i = m_kinds.size() - operands; i < m_kinds.size(); ++i) {
        text = text || m_kinds[i] == Kind::Text;
        other = other || m_kinds[i] == Kind::Number || m_kinds[i] == Kind::Date;
    }
    if (text && other)
        failTypeMismatch(position);
}

Kind Binder::sumKind() const
{
    const Kind left = m_kinds[m_kinds.size() - 2], right = m_kinds.back();
    if (left == Kind::Date || right == Kind::Date)
        return Kind::Any;
    return left == right ? left : Kind::Any;
}

void Binder::leaveOperator(const Visit &visit)
{
    const Node &node = m_select.tree.nodes[visit.node];
    Instruction step{Step::Binary, node.op, node.negated, 0, node.childCount};
    Kind kind = Kind::Number;
    if (isLogic(node.op)) {
        step.step = Step::Logic;
    } else if (isComparison(node.op)) {
        checkComparable(2, node.position);
    } else if (node.op == Op::Between || node.op == Op::In) {
        checkComparable(node.childCount, node.position);
        step.step = node.op == Op::In ? Step::In : Step::Between;
        step.b = node.childCount - 1;
    } else if (node.op == Op::Not) {
        step.step = Step::Not;
    } else if (node.op == Op::Negate) {
        step.step = Step::Negate;
    } else if (node.op == Op::IsNull) {
        step.step = Step::IsNull;
    } else if (node.op == Op::Like) {
        step.step = Step::Like;
    } else if (node.op == Op::Join) {
        kind = Kind::Text;
    } else if (node.op == Op::Add || node.op == Op::Subtract) {
        kind = sumKind();
    }
    emit(step, kind, node.childCount);
    if (isLogic(node.op) && visit.patch != 0)
        m_program.steps[visit.patch].a = here();
}

} // namespace vardelin::sql
