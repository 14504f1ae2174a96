#pragma once
// Walks a whole tree of an index and holds it to the invariants of IndexTree.h.

#include "platform/jet/IndexPage.h"
#include "tests/jet/MemoryPager.h"

#include <gtest/gtest.h>
#include <map>

namespace vardelin::jet {

using TreeEntries = std::vector<std::pair<std::string, RowId>>;

class TreeWalk
{
public:
    TreeWalk(MemoryPager &pager, PageNo table, PageNo root) : m_pager(pager), m_table(table)
    {
        levels = walk(root) + 1;
        checkChain();
    }

    TreeEntries entries; // in the order of the leaves
    std::set<PageNo> pages;
    int levels = 0;

private:
    int walk(PageNo number)
    {
        pages.insert(number);
        const IndexPageView view(m_pager, number, m_table);
        EXPECT_EQ(view.statedFree(), kIndexRoom - view.usedBytes()) << "page " << number;
        if (view.leaf()) {
            m_leaves.push_back({number, view.previous(), view.next()});
            for (const IndexEntry &entry : view.takeApart().entries)
                entries.emplace_back(entry.key, entry.row);
            EXPECT_EQ(view.level(), 0) << "page " << number;
            return 0;
        }
        EXPECT_GT(view.childCount(), 0u) << "page " << number;
        EXPECT_EQ(view.tail() == 0, view.childCount() == 1) << "page " << number;
        int level = 0;
        for (std::size_t i = 0; i < view.childCount(); ++i) {
            level = walk(view.child(i)) + 1;
            EXPECT_EQ(view.level(), level) << "page " << number;
            checkCopy(view, i);
            checkBrothers(view, i, level);
        }
        return level;
    }

    void checkCopy(const IndexPageView &view, std::size_t child)
    {
        if (child == view.size())
            return;
        std::string store;
        const IndexPlace copy = view.place(child, store);
        ASSERT_FALSE(entries.empty());
        EXPECT_TRUE(copy.key == entries.back().first && copy.row == entries.back().second)
            << "page " << view.number() << ": entry " << child << " isn't the greatest below its child";
    }

    void checkBrothers(const IndexPageView &view, std::size_t child, int level)
    {
        if (level < 2)
            return;
        const IndexPageView node(m_pager, view.child(child), m_table);
        EXPECT_EQ(node.previous(), child == 0 ? 0 : view.child(child - 1)) << "page " << node.number();
        EXPECT_EQ(node.next(), child + 1 == view.childCount() ? 0 : view.child(child + 1))
            << "page " << node.number();
    }

    void checkChain() const
    {
        for (std::size_t i = 0; i < m_leaves.size(); ++i) {
            EXPECT_EQ(m_leaves[i].previous, i == 0 ? 0 : m_leaves[i - 1].page);
            EXPECT_EQ(m_leaves[i].next, i + 1 == m_leaves.size() ? 0 : m_leaves[i + 1].page);
        }
    }

    struct Leaf
    {
        PageNo page, previous, next;
    };
    MemoryPager &m_pager;
    PageNo m_table;
    std::vector<Leaf> m_leaves;
};

} // namespace vardelin::jet
