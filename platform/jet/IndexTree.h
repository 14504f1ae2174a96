#pragma once
// One physical index as a tree of pages. Layout of pages and entries: IndexPage.h.
//
// Invariants of a sound tree:
//   1. The root page never changes its number. A small tree is one leaf.
//   2. Entries rise by key, then by row, through all leaves; the leaves are one chain in that order.
//   3. A node with n > 1 children has n - 1 entries and a tail; with one child, one entry and no tail.
//   4. A node's entry is an exact copy of the greatest entry below its child.
//   5. Children of one node that are nodes themselves are linked to one another, and to no others.
// Trees by other programs may break 3 to 5 (entries that only bound their child); they are read, and changes
// mend what they touch. A tree that breaks the rest gives Damaged, with a reason that names the page; no walk
// goes on without end.

#include "platform/jet/Pager.h"
#include "platform/jet/Types.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace vardelin::jet {

class IndexPageView; // IndexPage.h

// Where the tree gets pages from and gives them back to: the free page map and the index's own usage map.
class IndexPages
{
public:
    virtual ~IndexPages() = default;
    virtual PageNo allocate() = 0; // zero-filled, in the index's map
    virtual void release(PageNo page) = 0;
};

// The key bytes of a row for an index: per column the start byte and the value (README of the format in
// IndexKey.cpp). values: one cell a key column, in the order of the index; fewer give the start of the keys
// of all rows with these values. Text beyond 255 units doesn't count. InvalidArgument for a cell that isn't
// of the column's type, or OLE, which has no keys.
std::string indexKey(const PhysicalIndex &index, std::span<const ColumnType> types,
                     std::span<const Cell> values);

class IndexTree
{
public:
    // table: definition page of the table, which stands in every page of the tree.
    IndexTree(Pager &pager, PageNo table, PageNo root);

    // A place in the tree; entries rise by key, then by row. Valid while the tree isn't changed and the
    // section lasts.
    class Cursor
    {
    public:
        bool atEnd() const { return m_leaf == nullptr; }
        std::string_view key() const { return m_key; } // until next()
        RowId row() const { return m_row; }
        void next();

    private:
        friend class IndexTree;
        void load();
        Pager *m_pager = nullptr;
        PageNo m_table = 0;
        std::shared_ptr<const IndexPageView> m_leaf; // none at the end
        std::size_t m_entry = 0;
        std::string m_key;
        RowId m_row;
        std::size_t m_pagesSeen = 0; // bounds a walk through a damaged chain
    };

    Cursor begin() const;
    Cursor seek(std::string_view key) const;               // the first entry whose key isn't below `key`
    std::optional<RowId> find(std::string_view key) const; // the first row with exactly this key

    // RecordTooLarge for a key of which no two would fit on a page; Damaged if the entry is there already.
    void insert(std::string_view key, RowId row, IndexPages &pages);
    bool erase(std::string_view key, RowId row, IndexPages &pages); // false: there is no such entry
    static void initRoot(std::byte *page, PageNo table);            // an empty leaf

    // An empty tree from entries that rise already (InvalidArgument if not): full leaves from the left, the
    // levels on top.
    void build(std::span<const std::pair<std::string, RowId>> entries, IndexPages &pages);

private:
    Pager &m_pager;
    PageNo m_table;
    PageNo m_root;
};

} // namespace vardelin::jet
