// Trees of indexes, and their entries against the rows.
#include "platform/jet/CheckState.h"
#include "platform/jet/IndexPage.h"
#include "platform/jet/IndexTree.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr int kDeepest = 20;

struct TreeEntry
{
    std::string key;
    RowId row;
    IndexPlace place() const { return {key, row}; }
};

// Walks a tree from its root; every page once, so that a circle ends it.
class TreeCheck
{
public:
    TreeCheck(CheckState &state, PageNo table, const std::string &title)
        : m_state(state), m_table(table), m_title(title)
    {}

    void walk(PageNo root)
    {
        walkPage(root, 0);
        for (std::size_t i = 0; i < m_leaves.size(); ++i) {
            const Leaf &leaf = m_leaves[i];
            const PageNo previous = i == 0 ? 0 : m_leaves[i - 1].page;
            const PageNo next = i + 1 == m_leaves.size() ? 0 : m_leaves[i + 1].page;
            if (leaf.previous != previous || leaf.next != next)
                tree(leaf.page, "the leaf isn't linked to its neighbours");
        }
    }

    const std::set<PageNo> &pages() const { return m_pages; }
    std::vector<TreeEntry> &entries() { return m_entries; }
    bool whole() const { return m_whole; }

private:
    void tree(PageNo page, std::string what)
    {
        m_state.fault(Invariant::Trees, page, m_title, std::move(what));
    }

    // Pages that the map of the index lacks are taken in, unless somebody else has them.
    bool enter(PageNo number)
    {
        if (!m_state.inFile(number) || (m_state.isOwned(number) && m_state.ownerOf(number) != m_title)) {
            tree(number, "the tree leads to a page that isn't its own");
            return false;
        }
        if (!m_pages.insert(number).second) {
            tree(number, "the tree leads to this page twice");
            return false;
        }
        if (!m_state.isOwned(number)) {
            tree(number, "a page of the tree isn't in the map of the index");
            m_state.claim(number, m_title);
        }
        return true;
    }

    // The level of the page, counted from the leaves; -1 if it can't be told.
    int walkPage(PageNo number, int depth)
    {
        if (depth > kDeepest)
            tree(number, "the tree is too deep");
        if (depth > kDeepest || !enter(number)) {
            m_whole = false;
            return -1;
        }
        int level = -1;
        m_whole &= m_state.guard(Invariant::Trees, m_title, [&] {
            const IndexPageView view(m_state.pager, number, m_table);
            checkPage(view);
            level = view.leaf() ? walkLeaf(view, depth) : walkNode(view, depth);
        });
        return level;
    }

    void checkPage(const IndexPageView &view)
    {
        if (m_state.pager.page(view.number())[1] != std::byte{1})
            tree(view.number(), "the second byte isn't 1");
        if (view.statedFree() != kIndexRoom - view.usedBytes())
            tree(view.number(), "free space is said to be " + std::to_string(view.statedFree()) +
                                    ", and is " + std::to_string(kIndexRoom - view.usedBytes()));
        std::string one, other;
        for (std::size_t i = 1; i < view.size(); ++i) {
            if (!(view.place(i - 1, one) < view.place(i, other))) {
                m_state.fault(Invariant::Entries, view.number(), m_title,
                              "the entries of the page don't rise");
                break;
            }
        }
    }

    int walkLeaf(const IndexPageView &view, int depth)
    {
        m_leaves.push_back({view.number(), view.previous(), view.next()});
        if (view.tail() != 0)
            tree(view.number(), "the leaf has a child");
        if (view.size() == 0 && depth > 0)
            m_state.add(Severity::Oddity, Invariant::Trees, view.number(), m_title,
                        "an empty leaf below the root");
        std::string store;
        if (view.size() > 0 && !m_entries.empty() && !(m_entries.back().place() < view.place(0, store)))
            m_state.fault(Invariant::Entries, view.number(), m_title,
                          "the leaf begins at or below the end of the one before");
        for (std::size_t i = 0; i < view.size(); ++i) {
            const IndexPlace place = view.place(i, store);
            m_entries.push_back({std::string(place.key), place.row});
        }
        return 0;
    }

    int walkNode(const IndexPageView &view, int depth)
    {
        if (view.childCount() == 0)
            tree(view.number(), "a node without children");
        int level = -1;
        for (std::size_t i = 0; i < view.childCount(); ++i) {
            const std::size_t before = m_entries.size();
            const int childLevel = walkPage(view.child(i), depth + 1);
            if (i > 0 && level >= 0 && childLevel >= 0 && childLevel != level)
                tree(view.number(), "the children of the node are on different levels");
            level = childLevel;
            if (i < view.size() && m_entries.size() > before)
                checkCopy(view, i);
            checkBrothers(view, i);
        }
        if (level == 0 && view.level() != 1)
            m_state.add(Severity::Oddity, Invariant::Trees, view.number(), m_title,
                        "the node says that it is on another level");
        return level < 0 ? -1 : level + 1;
    }

    // Below the entry is a fault, for searches miss what lies there; an entry that is too great only stops
    // other programs.
    void checkCopy(const IndexPageView &view, std::size_t child)
    {
        std::string store;
        const IndexPlace copy = view.place(child, store);
        if (copy < m_entries.back().place())
            m_state.fault(Invariant::Entries, view.number(), m_title,
                          "entry " + std::to_string(child) + " is below what its child holds");
        else if (copy != m_entries.back().place())
            m_state.add(Severity::Oddity, Invariant::Entries, view.number(), m_title,
                        "entry " + std::to_string(child) + " isn't the greatest below its child");
    }

    void checkBrothers(const IndexPageView &view, std::size_t child)
    {
        m_state.guard(Invariant::Trees, m_title, [&] {
            const IndexPageView node(m_state.pager, view.child(child), m_table);
            if (node.leaf())
                return;
            const PageNo previous = child == 0 ? 0 : view.child(child - 1);
            const PageNo next = child + 1 == view.childCount() ? 0 : view.child(child + 1);
            if (node.previous() != previous || node.next() != next)
                m_state.add(Severity::Oddity, Invariant::Trees, node.number(), m_title,
                            "the node isn't linked to its brothers");
        });
    }

    struct Leaf
    {
        PageNo page, previous, next;
    };
    CheckState &m_state;
    PageNo m_table;
    const std::string &m_title;
    std::set<PageNo> m_pages;
    std::vector<Leaf> m_leaves;
    std::vector<TreeEntry> m_entries;
    bool m_whole = true;
};

class KeysAgainstRows
{
public:
    KeysAgainstRows(CheckState &state, const CheckedTable &table, const PhysicalIndex &index,
                    const std::string &title)
        : m_state(state), m_table(table), m_index(index), m_title(title)
    {
        for (const IndexColumn &key : index.columns) {
            const Column *column = table.definition.byNumber(key.column);
            m_columns.push_back(column);
            m_types.push_back(column->type);
            m_allNull += key.descending ? '\xFF' : '\0';
        }
    }

    void checkUnique(const std::vector<TreeEntry> &entries)
    {
        for (std::size_t i = 1; m_index.unique && i < entries.size(); ++i) {
            if (entries[i].key == entries[i - 1].key && entries[i].key != m_allNull)
                keys(entries[i].row, "has the same key as another row");
        }
    }

    void checkRows(std::vector<TreeEntry> entries)
    {
        std::sort(entries.begin(), entries.end(),
                  [](const TreeEntry &a, const TreeEntry &b) { return a.row < b.row; });
        auto entry = entries.begin();
        for (const RowLocation &row : m_table.rows) {
            for (; entry != entries.end() && entry->row < row.first; ++entry)
                keys(entry->row, "has an entry but is no row");
            const bool found = entry != entries.end() && entry->row == row.first;
            checkRow(row, found ? &*entry : nullptr);
            if (!found)
                continue;
            for (++entry; entry != entries.end() && entry->row == row.first; ++entry)
                keys(row.first, "has more than one entry");
        }
        for (; entry != entries.end(); ++entry)
            keys(entry->row, "has an entry but is no row");
    }

private:
    void keys(RowId row, const char *what)
    {
        m_state.fault(Invariant::Keys, row.page, m_title, "row " + std::to_string(row.row) + " " + what);
    }

    void checkRow(const RowLocation &row, const TreeEntry *entry)
    {
        m_state.guard(Invariant::Keys, m_title, [&] {
            std::vector<Cell> values;
            for (const Column *column : m_columns)
                values.push_back(checkedCell(m_state, m_table, row, *column));
            const auto nulls =
                std::count_if(values.begin(), values.end(), [](const Cell &cell) { return isNull(cell); });
            if (nulls > 0 && m_index.required)
                keys(row.first, "is Null in a column of a key that must not be");
            if (m_index.ignoreNulls && nulls == static_cast<std::ptrdiff_t>(values.size())) {
                if (entry)
                    keys(row.first, "is all Null and has an entry");
                return;
            }
            if (!entry)
                return keys(row.first, "has no entry");
            if (m_table.definition.knownOrder && indexKey(m_index, m_types, values) != entry->key)
                keys(row.first, "has an entry with another key than its values make");
        });
    }

    CheckState &m_state;
    const CheckedTable &m_table;
    const PhysicalIndex &m_index;
    const std::string &m_title;
    std::vector<const Column *> m_columns;
    std::vector<ColumnType> m_types;
    std::string m_allNull;
};

std::string titleOf(const CheckedTable &table, const PhysicalIndex &index)
{
    for (const LogicalIndex &logical : table.definition.logical) {
        if (logical.physical == index.number)
            return table.title + ", index " + toUtf8(logical.name);
    }
    return table.title + ", tree " + std::to_string(index.number);
}

void checkIndex(CheckState &state, const CheckedTable &table, const PhysicalIndex &index)
{
    const std::string title = titleOf(table, index);
    const std::vector<PageNo> owned = state.takeMap(index.map, title);
    for (const PageNo page : owned)
        state.claim(page, title);
    TreeCheck tree(state, table.definition.page(), title);
    tree.walk(index.root);
    for (const PageNo page : owned) {
        if (!tree.pages().contains(page) && tree.whole())
            state.add(Severity::Waste, Invariant::Trees, page, title,
                      "the index owns a page outside its tree");
    }
    KeysAgainstRows keys(state, table, index, title);
    keys.checkUnique(tree.entries());
    if (tree.whole()) // else every entry of the part that can't be read would be missed
        keys.checkRows(std::move(tree.entries()));
}

// ---- Relationships

class ReferenceCheck
{
public:
    ReferenceCheck(CheckState &state, const TableDefinition &table, const LogicalIndex &index)
        : m_state(state), m_table(table), m_index(index),
          m_title(toUtf8(table.name) + ", index " + toUtf8(index.name))
    {}

    void check(const std::map<PageNo, TableDefinition> &tables)
    {
        const auto other = tables.find(m_index.otherTable);
        if (other == tables.end())
            return wrong("belongs to a relationship with a table that isn't there");
        const LogicalIndex *back = other->second.counterpartOf(m_index, m_table.page());
        if (!back)
            return wrong("belongs to a relationship that " + toUtf8(other->second.name) + " doesn't know");
        if (m_index.side == LogicalIndex::Side::Referring)
            checkKeys(other->second, *back);
    }

private:
    void wrong(const std::string &what)
    {
        m_state.fault(Invariant::Definitions, m_table.page(), m_title, what);
    }

    void checkKeys(const TableDefinition &other, const LogicalIndex &theirs)
    {
        const PhysicalIndex &from = m_table.physical[m_index.physical];
        const PhysicalIndex &to = other.physical[theirs.physical];
        if (from.columns.size() != 1 || !haveEqualKeys(m_table, from, other, to))
            return;
        const IndexTree tree(m_state.pager, m_table.page(), from.root);
        const IndexTree referred(m_state.pager, other.page(), to.root);
        for (auto at = tree.begin(); !at.atEnd(); at.next()) {
            if (at.key().size() > 1 && !referred.find(at.key())) // one byte: Null, which refers to nothing
                m_state.fault(Invariant::Keys, at.row().page, m_title,
                              "row " + std::to_string(at.row().row) + " refers to a row of " +
                                  toUtf8(other.name) + " that isn't there");
        }
    }

    CheckState &m_state;
    const TableDefinition &m_table;
    const LogicalIndex &m_index;
    std::string m_title;
};

} // namespace

void checkReferences(CheckState &state, const std::map<PageNo, TableDefinition> &tables)
{
    for (const auto &entry : tables) {
        const TableDefinition &table = entry.second;
        for (const LogicalIndex &index : table.logical) {
            if (index.side != LogicalIndex::Side::None)
                state.guard(Invariant::Keys, toUtf8(table.name),
                            [&] { ReferenceCheck(state, table, index).check(tables); });
        }
    }
}

void checkIndexes(CheckState &state, const CheckedTable &table)
{
    if (!table.definition.knownOrder)
        state.add(Severity::Oddity, Invariant::Keys, table.definition.page(), table.title,
                  "an index follows a text order that is unknown here; its keys aren't compared");
    for (const PhysicalIndex &index : table.definition.physical)
        state.guard(Invariant::Keys, table.title, [&] { checkIndex(state, table, index); });
}

} // namespace vardelin::jet
