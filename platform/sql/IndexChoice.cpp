#include "platform/sql/IndexChoice.h"

#include "platform/sql/Cells.h"

namespace vardelin::sql {

namespace {

constexpr std::uint16_t kGeneralOrder = 0x0409;

bool isOperator(const Node &node, Op op)
{
    return node.kind == NodeKind::Operator && node.op == op;
}

bool isSearchable(const jet::Column &column)
{
    const bool text = column.type == jet::ColumnType::Text || column.type == jet::ColumnType::Memo;
    return !text || (column.orderVersion == 0 && column.locale == kGeneralOrder);
}

std::optional<IndexChoice> indexOn(const jet::Table &table, std::size_t column, const Value &wanted)
{
    const jet::Column &definition = table.columns()[column];
    for (const jet::LogicalIndex &index : table.indexes()) {
        const jet::PhysicalIndex &physical = table.physicalIndex(index);
        if (physical.columns.empty() || physical.columns.front().column != definition.number ||
            !isSearchable(definition))
            continue;
        try {
            return IndexChoice{&index, toCell(wanted, definition)};
        } catch (const RunTimeError &) {
            return std::nullopt; // no value that the column can hold: the scan tells what comes of it
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<IndexChoice> chooseIndex(const SelectSyntax &select, const jet::Table &table,
                                       const Binder &binder)
{
    std::vector<NodeId> open;
    if (select.where)
        open.push_back(select.where->root);
    while (!open.empty()) {
        const NodeId id = open.back();
        open.pop_back();
        const Node &node = select.tree.nodes[id];
        const auto children = select.tree.children(id);
        if (isOperator(node, Op::And))
            open.insert(open.end(), children.begin(), children.end());
        if (!isOperator(node, Op::Equal))
            continue;
        const Node *column = &select.tree.nodes[children[0]], *value = &select.tree.nodes[children[1]];
        if (column->kind != NodeKind::Column)
            std::swap(column, value);
        if (column->kind != NodeKind::Column || value->kind != NodeKind::Literal || value->literal.isNull())
            continue;
        if (const auto choice = indexOn(table, binder.findColumn(*column), value->literal))
            return choice;
    }
    return std::nullopt;
}

} // namespace vardelin::sql
