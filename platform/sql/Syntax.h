#pragma once
// What a statement says, before any name in it means something.

#include "platform/base/Value.h"

#include <QSet>
#include <QStringList>
#include <optional>
#include <span>
#include <vector>

namespace vardelin::sql {

enum class Op : std::uint8_t {
    Imp,
    Eqv,
    Xor,
    Or,
    And,
    Not,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Like,
    Between,
    In,
    IsNull,
    Join,
    Add,
    Subtract,
    Modulo,
    WholeDivide,
    Multiply,
    Divide,
    Negate,
    Power
};

enum class NodeKind : std::uint8_t {
    Literal,
    Column,   // name, table
    Star,     // the * of Count(*)
    Operator, // op; negated for Not Like, Not Between, Not In, Is Not Null
    Call,     // name
    LikeAny   // child 0 is like one of the plain texts of wordSets[words]
};

using NodeId = std::uint32_t;

struct Node
{
    NodeKind kind = NodeKind::Literal;
    Op op = Op::Equal;
    bool negated = false;
    std::uint32_t firstChild = 0, childCount = 0; // in Tree::children
    std::uint32_t words = 0;
    qsizetype position = 0; // in the statement
    Value literal;
    QString name, table;
};

// All expressions of a statement. Nodes name each other by number, so that neither building nor walking nor
// destroying a deep tree needs the stack.
struct Tree
{
    std::vector<Node> nodes;
    std::vector<NodeId> childIds;
    std::vector<QSet<QString>> wordSets; // folded for comparison

    NodeId add(Node node, std::span<const NodeId> children = {});
    std::span<const NodeId> children(NodeId id) const
    {
        return std::span(childIds).subspan(nodes[id].firstChild, nodes[id].childCount);
    }
};

// A piece of the statement with its place in the text, which errors and the comparison of expressions go by.
struct Expression
{
    NodeId root = 0;
    QString text;
};

struct Item
{
    std::optional<Expression> expression; // none: *
    QString table;                        // of a *, where it was told
    QString alias;
};

struct OrderItem
{
    Expression expression;
    bool descending = false;
};

struct SelectSyntax
{
    Tree tree;
    std::vector<Item> items;
    QString table, tableAlias; // empty without From
    qsizetype tablePosition = 0;
    std::optional<Expression> where, having;
    std::vector<Expression> groupBy;
    std::vector<OrderItem> orderBy;
};

SelectSyntax parseSelect(const QString &text);

// Turns long Or chains of Like with plain texts on one column into one look-up, so that a statement of some
// thousand clients costs no more a row than one of a few.
NodeId mergeLikes(Tree &tree, NodeId root);

} // namespace vardelin::sql
