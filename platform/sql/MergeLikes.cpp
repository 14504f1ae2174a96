#include "platform/sql/Like.h"
#include "platform/sql/Syntax.h"

#include <map>
#include <utility>

namespace vardelin::sql {

namespace {

constexpr std::size_t kWorthwhile = 8;

bool isOr(const Node &node)
{
    return node.kind == NodeKind::Operator && node.op == Op::Or;
}

// Column Like 'text' with nothing special in the text.
bool isPlainLike(const Tree &tree, NodeId id)
{
    const Node &node = tree.nodes[id];
    if (node.kind != NodeKind::Operator || node.op != Op::Like || node.negated)
        return false;
    const Node &pattern = tree.nodes[tree.children(id)[1]];
    const auto *text = std::get_if<QString>(&pattern.literal.variant());
    return tree.nodes[tree.children(id)[0]].kind == NodeKind::Column && pattern.kind == NodeKind::Literal &&
           text && !text->contains(u'%') && !text->contains(u'_') && !text->contains(u'[');
}

std::vector<NodeId> termsOf(const Tree &tree, NodeId root)
{
    std::vector<NodeId> terms, open{root};
    while (!open.empty()) {
        const NodeId id = open.back();
        open.pop_back();
        if (isOr(tree.nodes[id])) {
            open.push_back(tree.children(id)[1]);
            open.push_back(tree.children(id)[0]);
        } else {
            terms.push_back(id);
        }
    }
    return terms;
}

NodeId lookUp(Tree &tree, const std::vector<NodeId> &likes)
{
    Node node;
    node.kind = NodeKind::LikeAny;
    node.position = tree.nodes[likes.front()].position;
    node.words = static_cast<std::uint32_t>(tree.wordSets.size());
    QSet<QString> words;
    for (const NodeId like : likes)
        words.insert(folded(std::get<QString>(tree.nodes[tree.children(like)[1]].literal.variant())));
    tree.wordSets.push_back(std::move(words));
    const NodeId column = tree.children(likes.front())[0];
    return tree.add(std::move(node), std::span(&column, 1));
}

// The terms of an Or chain, with those that one look-up answers put together.
std::vector<NodeId> mergedTerms(Tree &tree, const std::vector<NodeId> &terms)
{
    std::map<std::pair<QString, QString>, std::vector<NodeId>> likes;
    std::vector<NodeId> result;
    for (const NodeId term : terms) {
        if (!isPlainLike(tree, term)) {
            result.push_back(term);
            continue;
        }
        const Node &column = tree.nodes[tree.children(term)[0]];
        likes[{column.table.toCaseFolded(), column.name.toCaseFolded()}].push_back(term);
    }
    for (const auto &[column, same] : likes) {
        if (same.size() < kWorthwhile)
            result.insert(result.end(), same.begin(), same.end());
        else
            result.push_back(lookUp(tree, same));
    }
    return result;
}

NodeId mergedChain(Tree &tree, NodeId root)
{
    const std::vector<NodeId> terms = termsOf(tree, root);
    const std::vector<NodeId> merged = mergedTerms(tree, terms);
    if (merged.size() == terms.size())
        return root;
    NodeId chain = merged.front();
    for (std::size_t i = 1; i < merged.size(); ++i) {
        const Node copy = tree.nodes[root];
        const NodeId pair[] = {chain, merged[i]};
        chain = tree.add(copy, pair);
    }
    return chain;
}

} // namespace

NodeId mergeLikes(Tree &tree, NodeId root)
{
    // The root and what hangs under it by And, which is where such chains come from.
    if (isOr(tree.nodes[root]))
        return mergedChain(tree, root);
    std::vector<NodeId> open{root};
    while (!open.empty()) {
        const Node node = tree.nodes[open.back()];
        open.pop_back();
        if (node.kind != NodeKind::Operator || node.op != Op::And)
            continue;
        for (std::uint32_t i = 0; i < node.childCount; ++i) {
            NodeId child = tree.childIds[node.firstChild + i];
            if (isOr(tree.nodes[child])) {
                child = mergedChain(tree, child);
                tree.childIds[node.firstChild + i] = child;
            }
            open.push_back(child);
        }
    }
    return root;
}

} // namespace vardelin::sql
