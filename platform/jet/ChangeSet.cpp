#include "platform/jet/ChangeSet.h"

#include <algorithm>
#include <cstring>

namespace vardelin::jet {

namespace {
constexpr std::size_t kSlab = 16;       // copies that are allocated together
constexpr std::size_t kSpareSlabs = 16; // kept from one command to the next
} // namespace

void ChangeSet::begin(PageNo pageCount)
{
    m_levels.push_back({pageCount, m_undo.size()});
}

ChangeSet::Copy *ChangeSet::take()
{
    if (m_free.empty()) {
        m_slabs.push_back(std::make_unique_for_overwrite<Copy[]>(kSlab));
        for (std::size_t i = kSlab; i-- > 0;)
            give(&m_slabs.back()[i]);
    }
    Copy *copy = m_free.back();
    m_free.pop_back();
    return copy;
}

ChangeSet::Copy *&ChangeSet::place(PageNo page)
{
    const std::size_t group = page / kGroup;
    if (group >= m_groups.size())
        m_groups.resize(group + 1);
    if (!m_groups[group])
        m_groups[group] = std::make_unique<Group>(); // of nulls
    return (*m_groups[group])[page % kGroup];
}

std::byte *ChangeSet::change(PageNo page, const std::byte *base)
{
    Copy *&copy = place(page);
    if (copy != nullptr && copy->level == level())
        return copy->bytes;
    const Undo undo{copy, copy == nullptr ? nullptr : take(), copy == nullptr ? 0 : copy->level};
    if (copy != nullptr) {
        std::memcpy(undo.before->bytes, copy->bytes, kPageSize);
    } else {
        copy = take();
        copy->page = page;
        if (base != nullptr)
            std::memcpy(copy->bytes, base, kPageSize);
        else
            std::memset(copy->bytes, 0, kPageSize);
        m_touched.push_back(page);
        ++m_live;
    }
    copy->level = level();
    if (level() > 1)
        m_undo.push_back({copy, undo.before, undo.level});
    return copy->bytes;
}

void ChangeSet::keepInner()
{
    const std::size_t outer = level() - 1;
    const std::size_t first = m_levels.back().firstUndo;
    std::size_t kept = first;
    for (std::size_t i = first; i < m_undo.size(); ++i) {
        const Undo undo = m_undo[i];
        undo.copy->level = outer;
        const bool outerKnows = outer == 1 || undo.level == outer;
        if (!outerKnows)
            m_undo[kept++] = undo;
        else if (undo.before != nullptr)
            give(undo.before);
    }
    m_undo.resize(kept);
    m_levels.pop_back();
}

PageNo ChangeSet::undoInner()
{
    const Level ended = m_levels.back();
    for (; m_undo.size() > ended.firstUndo; m_undo.pop_back()) {
        const Undo &undo = m_undo.back();
        if (undo.before != nullptr) {
            std::memcpy(undo.copy->bytes, undo.before->bytes, kPageSize);
            undo.copy->level = undo.level;
            give(undo.before);
        } else {
            place(undo.copy->page) = nullptr;
            give(undo.copy);
            --m_live;
        }
    }
    m_levels.pop_back();
    return ended.pageCount;
}

PageNo ChangeSet::dropAll()
{
    const PageNo pageCount = m_levels.front().pageCount;
    forgetPages();
    m_levels.clear();
    m_undo.clear();
    m_slabs.resize(std::min(m_slabs.size(), kSpareSlabs));
    freeAll();
    return pageCount;
}

void ChangeSet::freeAll()
{
    m_free.clear();
    for (const auto &slab : m_slabs) {
        for (std::size_t i = 0; i < kSlab; ++i)
            give(&slab[i]);
    }
}

void ChangeSet::forgetPages()
{
    for (const PageNo page : m_touched)
        place(page) = nullptr;
    m_touched.clear();
    m_live = 0;
    freeAll();
}

std::vector<PageNo> ChangeSet::pages() const
{
    std::vector<PageNo> result = m_touched;
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    std::erase_if(result, [this](PageNo page) { return find(page) == nullptr; });
    return result;
}

} // namespace vardelin::jet
