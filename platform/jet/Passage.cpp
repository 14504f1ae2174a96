#include "platform/jet/Passage.h"

#include <algorithm>

namespace vardelin::jet {

namespace {
constexpr std::size_t kFew = 16;     // pages that nothing is done for
constexpr std::size_t kUse = 8;      // pages that a stretch must serve, on the whole
constexpr std::size_t kPatience = 8; // stretches before that is asked
} // namespace

void Passage::forget()
{
    for (Stretch &stretch : m_stretches)
        stretch.pages = 0;
}

bool Passage::worthwhile() const
{
    return m_asked > kFew && (m_read < kPatience || m_asked >= m_read * kUse);
}

const std::byte *Passage::page(PageNo number, bool kept)
{
    ++m_asked;
    Stretch *stretch = find(number);
    if (stretch == nullptr && worthwhile())
        stretch = take(number);
    if (stretch == nullptr)
        return m_pager.page(number);
    if (kept)
        stretch->keptFor = m_row;
    return stretch->bytes.get() + (number - stretch->first) * kPageSize;
}

const std::byte *Passage::atHand(PageNo number) const
{
    for (const Stretch &stretch : m_stretches) {
        if (number - stretch.first < stretch.pages)
            return stretch.bytes.get() + (number - stretch.first) * kPageSize;
    }
    return nullptr;
}

Passage::Stretch *Passage::find(PageNo number)
{
    const auto found = std::ranges::find_if(m_stretches, [number](const Stretch &stretch) {
        return number - stretch.first < stretch.pages; // numbers below the first come out large
    });
    return found == m_stretches.end() ? nullptr : &*found;
}

// The stretch with this page, read; null where that isn't to be had.
Passage::Stretch *Passage::take(PageNo number)
{
    for (std::size_t tried = 0; tried < m_stretches.size(); ++tried) {
        Stretch &stretch = m_stretches[m_turn++ % m_stretches.size()];
        if (stretch.keptFor == m_row)
            continue;
        if (!stretch.bytes)
            stretch.bytes = std::make_unique_for_overwrite<std::byte[]>(kStretch * kPageSize);
        ++m_read;
        stretch.pages = 0; // if reading throws
        stretch.first = number;
        stretch.pages = m_pager.passing(number, {stretch.bytes.get(), kStretch * kPageSize});
        return stretch.pages == 0 ? nullptr : &stretch;
    }
    return nullptr;
}

} // namespace vardelin::jet
