#pragma once
// The pages that a write section has changed, and what its inner sections need to undo themselves.
//
// 1. The outermost section (level 1) undoes itself by dropping all copies; it keeps no older contents.
// 2. An inner section (level 2 and up) keeps, of each page that it changes, the content from before its first
// change. So its cost
//    follows the pages that it touches, not those that the sections around it have changed.
// 3. Looking up a page takes two steps (which group, where in it), so that nothing grows with the file.
// 4. A copy stays at its address while it exists: until the outermost section ends, or the section that made
// it is undone.

#include "platform/jet/Types.h"

#include <array>
#include <memory>

namespace vardelin::jet {

class ChangeSet
{
public:
    std::size_t level() const { return m_levels.size(); } // 0: no section is open
    void begin(PageNo pageCount);
    void
    keepInner(); // ends the innermost section, of level 2 or above; its changes belong to the one around it
    PageNo undoInner(); // undoes and ends it; the page count that it began with
    PageNo dropAll();   // ends every section; the page count that the outermost began with
    bool empty() const { return m_live == 0; }
    std::size_t size() const { return m_live; } // changed pages
    void forgetPages();                         // all copies go, the one section that is open stays

    // The changed copy, or null.
    std::byte *find(PageNo page) const
    {
        const std::size_t group = page / kGroup;
        if (group >= m_groups.size() || !m_groups[group])
            return nullptr;
        Copy *copy = (*m_groups[group])[page % kGroup];
        return copy ? copy->bytes : nullptr;
    }
    // The copy, made from `base` (or zeros where base is null) if there is none yet.
    std::byte *change(PageNo page, const std::byte *base);
    std::vector<PageNo> pages() const; // changed ones, rising

private:
    struct Copy
    {
        PageNo page;
        std::size_t level; // the innermost level that knows how to undo it
        alignas(64) std::byte bytes[kPageSize];
    };

    struct Undo
    {
        Copy *copy = nullptr;
        Copy *before = nullptr; // null: the page had no copy
        std::size_t level = 0;  // of the copy before
    };

    struct Level
    {
        PageNo pageCount = 0;
        std::size_t firstUndo = 0;
    };

    static constexpr std::size_t kGroup = 512; // pages
    using Group = std::array<Copy *, kGroup>;

    Copy *&place(PageNo page);
    Copy *take();
    void give(Copy *copy) { m_free.push_back(copy); }
    void freeAll();

    std::vector<Level> m_levels;
    std::vector<Undo> m_undo;
    std::vector<std::unique_ptr<Group>> m_groups;
    std::vector<PageNo>
        m_touched; // every page that got a copy since the outermost section began; some twice, some undone
    std::size_t m_live = 0;
    std::vector<std::unique_ptr<Copy[]>> m_slabs; // all copies, used or free; kSlab in each
    std::vector<Copy *> m_free;
};

} // namespace vardelin::jet
