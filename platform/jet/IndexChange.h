#pragma once
// How a tree changes its shape. Only IndexTree.cpp and IndexChange.cpp look at it.

#include "platform/jet/IndexPage.h"
#include "platform/jet/IndexTree.h"

#include <array>
#include <optional>

namespace vardelin::jet {

// The way from the root to a leaf.
struct IndexStep
{
    PageNo page = 0;
    std::size_t place =
        0;             // node: which child was taken; leaf: the first entry that isn't below what was sought
    bool tail = false; // the child has no entry
};

class IndexPath
{
public:
    static constexpr std::size_t kDeepest = 20; // a real tree of 2 GiB has at most 12 levels

    std::size_t depth() const { return m_size; }
    const IndexStep &leaf() const { return m_steps[m_size - 1]; }
    IndexStep &operator[](std::size_t depth) { return m_steps[depth]; }
    const IndexStep &operator[](std::size_t depth) const { return m_steps[depth]; }
    bool contains(PageNo page) const;
    bool full() const { return m_size == kDeepest; }
    void push(const IndexStep &step) { m_steps[m_size++] = step; }
    void pushFront(const IndexStep &step);
    bool onlyTails() const; // no node on the way has a copy of the leaf's greatest entry

private:
    std::array<IndexStep, kDeepest + 1> m_steps;
    std::size_t m_size = 0;
};

// The way to the first leaf that can hold an entry that isn't below `sought`; `leaf` becomes its view.
IndexPath descend(Pager &pager, PageNo table, PageNo root, const IndexPlace &sought,
                  std::optional<IndexPageView> &leaf);

class IndexChange
{
public:
    IndexChange(Pager &pager, PageNo table, PageNo root, IndexPages &pages)
        : m_pager(pager), m_table(table), m_root(root), m_pages(pages)
    {}

    void insert(const IndexPlace &entry);
    bool erase(const IndexPlace &entry);

private:
    struct Owned // a place whose key lives as long as it does
    {
        std::string key;
        RowId row;
        operator IndexPlace() const { return {key, row}; }
    };

    IndexPath pathTo(const IndexPlace &entry) const
    {
        std::optional<IndexPageView> leaf;
        return descend(m_pager, m_table, m_root, entry, leaf);
    }
    IndexPage read(PageNo page) const { return IndexPageView(m_pager, page, m_table).takeApart(); }

    // Writes a changed page, splitting it if it has grown too full. The path is spent afterwards.
    void store(IndexPath &path, std::size_t depth, IndexPage &page, bool rising);
    void growRoot(IndexPath &path, const IndexPage &root);
    void split(IndexPath &path, std::size_t depth, IndexPage &page, bool rising);
    void tidyNode(IndexPage &node) const;
    void unlinkChildren(const IndexPage &left, const IndexPage &right);

    // Takes a page that became empty out of the tree, and nodes above it that become empty with it.
    void removePage(IndexPath &path, std::size_t depth);
    void link(PageNo left, PageNo right, PageNo leftLedTo, PageNo rightLedTo, bool leaf);

    void correctCopies(const Owned &greatest);
    std::optional<std::size_t> copyToCorrect(const IndexPath &path, const IndexPlace &greatest) const;
    std::optional<Owned> greatestBelow(PageNo page) const;

    Pager &m_pager;
    PageNo m_table;
    PageNo m_root;
    IndexPages &m_pages;
};

} // namespace vardelin::jet
