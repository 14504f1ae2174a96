#include "platform/jet/UsageMap.h"

#include "platform/jet/Allocation.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

using Bits = std::span<const std::byte>;

bool bitOf(Bits bits, PageNo index)
{
    return (std::to_integer<unsigned>(bits[index / 8]) >> (index % 8) & 1) != 0;
}

std::uint8_t byteOf(Bits bits, std::size_t index)
{
    return std::to_integer<std::uint8_t>(bits[index]);
}

// Large maps are mostly blank, and every new page is looked for in them.
constexpr std::size_t kStride = 64;

bool isBlank(const std::byte *bits)
{
    std::uint64_t met = 0;
    for (std::size_t i = 0; i < kStride; i += 8)
        met |= load<std::uint64_t>(bits + i);
    return met == 0;
}

// The first set bit that isn't below `from`, or kNoPage.
PageNo nextBit(Bits bits, PageNo from)
{
    std::size_t at = from / 8;
    if (at >= bits.size())
        return kNoPage;
    unsigned byte = byteOf(bits, at) & (0xFFU << (from % 8));
    while (byte == 0) {
        for (++at; at + kStride <= bits.size() && isBlank(bits.data() + at);)
            at += kStride;
        while (at + 8 <= bits.size() && load<std::uint64_t>(bits.data() + at) == 0)
            at += 8;
        if (at >= bits.size())
            return kNoPage;
        byte = byteOf(bits, at);
    }
    return static_cast<PageNo>(at * 8) + static_cast<PageNo>(std::countr_zero(byte));
}

// The last set bit that isn't above `from`, or kNoPage.
PageNo previousBit(Bits bits, PageNo from)
{
    std::size_t at = std::min<std::size_t>(from / 8, bits.size() - 1);
    unsigned byte = byteOf(bits, at);
    if (at == from / 8)
        byte &= 0xFFU >> (7 - from % 8);
    while (byte == 0) {
        while (at >= kStride && isBlank(bits.data() + at - kStride))
            at -= kStride;
        while (at >= 8 && load<std::uint64_t>(bits.data() + at - 8) == 0)
            at -= 8;
        if (at == 0)
            return kNoPage;
        byte = byteOf(bits, --at);
    }
    return static_cast<PageNo>(at * 8) + static_cast<PageNo>(std::bit_width(byte)) - 1;
}

bool isReference(std::span<const std::byte> row)
{
    return row[0] == std::byte{1};
}

PageNo firstOf(std::span<const std::byte> row)
{
    return load<PageNo>(row.data() + 1);
}

Bits inlineBits(std::span<const std::byte> row)
{
    return row.subspan(5);
}

Bits bitmapBits(const std::byte *page)
{
    return {page + 4, kPageSize - 4};
}

} // namespace

std::span<const std::byte> UsageMap::row() const
{
    const DataPage page(m_pager, m_row.page);
    const Slot slot = page.slot(m_row.row);
    const auto bytes = page.row(m_row.row);
    if (slot.flags != kLiveRow || bytes.size() < 6 || bytes[0] > std::byte{1})
        page.place().damaged("row " + std::to_string(m_row.row) + " isn't a usage map");
    if (isReference(bytes) ? bytes.size() < kMapRow : firstOf(bytes) >= kMaxPages)
        page.place().damaged("usage map " + std::to_string(m_row.row) + " covers no page of the file");
    return bytes;
}

const std::byte *UsageMap::bitmap(std::span<const std::byte> row, std::size_t index) const
{
    const PageNo number = load<PageNo>(row.data() + 1 + 4 * index);
    if (number == 0)
        return nullptr;
    const std::byte *page = m_pager.page(number);
    if (page[0] != std::byte{5})
        Place{m_pager, number}.damaged("isn't a bit map page");
    return page;
}

bool UsageMap::contains(PageNo page) const
{
    if (absent())
        return false;
    const auto bytes = row();
    if (isReference(bytes)) {
        const std::size_t index = page / kPagesPerBitmap;
        const std::byte *bits = index < kMapSlots ? bitmap(bytes, index) : nullptr;
        return bits && bitOf(bitmapBits(bits), page % kPagesPerBitmap);
    }
    const PageNo first = firstOf(bytes);
    return page >= first && page - first < inlineBits(bytes).size() * 8 &&
           bitOf(inlineBits(bytes), page - first);
}

PageNo UsageMap::next(PageNo from) const
{
    if (absent())
        return kNoPage;
    const auto bytes = row();
    if (!isReference(bytes)) {
        const PageNo first = firstOf(bytes);
        const PageNo found = nextBit(inlineBits(bytes), from < first ? 0 : from - first);
        return found == kNoPage ? kNoPage : found + first;
    }
    for (std::size_t i = from / kPagesPerBitmap; i < kMapSlots; ++i) {
        const PageNo base = static_cast<PageNo>(i) * kPagesPerBitmap;
        if (const std::byte *bits = bitmap(bytes, i)) {
            const PageNo found = nextBit(bitmapBits(bits), from < base ? 0 : from - base);
            if (found != kNoPage)
                return base + found;
        }
    }
    return kNoPage;
}

PageNo UsageMap::previous(PageNo from) const
{
    if (absent())
        return kNoPage;
    const auto bytes = row();
    if (!isReference(bytes)) {
        const PageNo first = firstOf(bytes);
        const PageNo found = from < first ? kNoPage : previousBit(inlineBits(bytes), from - first);
        return found == kNoPage ? kNoPage : found + first;
    }
    const std::size_t top = std::min<std::size_t>(from / kPagesPerBitmap, kMapSlots - 1);
    for (std::size_t i = top + 1; i-- > 0;) {
        const PageNo base = static_cast<PageNo>(i) * kPagesPerBitmap;
        if (const std::byte *bits = bitmap(bytes, i)) {
            const PageNo found = previousBit(bitmapBits(bits), from - base);
            if (found != kNoPage)
                return base + found;
        }
    }
    return kNoPage;
}

PageNo UsageMap::reach() const
{
    const auto bytes = row();
    if (!isReference(bytes))
        return firstOf(bytes) + static_cast<PageNo>(inlineBits(bytes).size() * 8);
    for (std::size_t i = kMapSlots; i-- > 0;) {
        if (bitmap(bytes, i))
            return static_cast<PageNo>(i + 1) * kPagesPerBitmap;
    }
    return 0;
}

std::vector<PageNo> UsageMap::bitmapPages() const
{
    std::vector<PageNo> pages;
    if (absent() || !isReference(row()))
        return pages;
    for (std::size_t i = 0; i < kMapSlots; ++i) {
        if (bitmap(row(), i))
            pages.push_back(load<PageNo>(row().data() + 1 + 4 * i));
    }
    return pages;
}

std::byte *UsageMap::changeRow()
{
    const std::ptrdiff_t offset = row().data() - m_pager.page(m_row.page);
    return m_pager.change(m_row.page) + offset;
}

std::byte *UsageMap::changeBitmap(std::size_t index)
{
    const auto bytes = row();
    bitmap(bytes, index);
    return m_pager.change(load<PageNo>(bytes.data() + 1 + 4 * index));
}

void UsageMap::setBit(PageNo page, bool value)
{
    const bool reference = isReference(row());
    const PageNo index = reference ? page % kPagesPerBitmap : page - firstOf(row());
    std::byte *bits = reference ? changeBitmap(page / kPagesPerBitmap) + 4 : changeRow() + 5;
    const std::byte mask{static_cast<unsigned char>(1U << (index % 8))};
    bits[index / 8] = value ? bits[index / 8] | mask : bits[index / 8] & ~mask;
}

// Lets the bits begin elsewhere, so that they cover all pages of the set and the new one.
bool UsageMap::moveInline(PageNo page)
{
    const PageNo low = next(0), high = last();
    const PageNo begin = (low == kNoPage ? page : std::min(low, page)) / 8 * 8;
    const PageNo end = high == kNoPage ? page : std::max(high, page);
    const Bytes old(row().begin(), row().end());
    const Bits bits = inlineBits(old);
    if (end - begin >= bits.size() * 8)
        return false;
    std::byte *bytes = changeRow();
    std::memset(bytes + 5, 0, bits.size());
    store(bytes + 1, begin);
    for (PageNo i = nextBit(bits, 0); i != kNoPage; i = nextBit(bits, i + 1))
        setBit(firstOf(old) + i, true);
    return true;
}

void UsageMap::turnIntoReference(Allocation &allocation)
{
    const Bytes old(row().begin(), row().end());
    Bytes reference(kMapRow);
    reference[0] = std::byte{1};
    if (old.size() < kMapRow && DataPage(m_pager, m_row.page).freeSpace() < kMapRow - old.size())
        Place{m_pager, m_row.page}.damaged("has no room for a usage map by reference");
    DataPageEditor(m_pager, m_row.page).replace(m_row.row, reference, kLiveRow);
    const Bits bits = inlineBits(old);
    for (PageNo i = nextBit(bits, 0); i != kNoPage; i = nextBit(bits, i + 1))
        add(firstOf(old) + i, allocation);
}

void UsageMap::add(PageNo page, Allocation &allocation)
{
    if (absent() || contains(page))
        return;
    if (page >= kMaxPages)
        Place{m_pager, m_row.page}.damaged("a usage map names a page beyond any file");
    auto bytes = row();
    if (!isReference(bytes)) {
        const PageNo first = firstOf(bytes);
        const bool inside = page >= first && page - first < inlineBits(bytes).size() * 8;
        if (inside || moveInline(page)) {
            setBit(page, true);
            return;
        }
        turnIntoReference(allocation);
        bytes = row();
    }
    const std::size_t index = page / kPagesPerBitmap;
    if (!bitmap(bytes, index)) {
        const PageNo fresh = allocation.allocate();
        std::byte *map = m_pager.change(fresh);
        map[0] = std::byte{5};
        map[1] = std::byte{1};
        store(changeRow() + 1 + 4 * index, fresh);
    }
    setBit(page, true);
}

void UsageMap::remove(PageNo page)
{
    if (contains(page))
        setBit(page, false);
}

Bytes emptyMap()
{
    return Bytes(kMapRow);
}

Bytes mapOf(PageNo page)
{
    // A map that a table starts with begins at page 0 as long as its page lies within reach.
    Bytes map(kMapRow);
    const PageNo first = page < (kMapRow - 5) * 8 ? 0 : page / 8 * 8;
    store(map.data() + 1, first);
    map[5 + (page - first) / 8] = std::byte{static_cast<unsigned char>(1U << (page % 8))};
    return map;
}

} // namespace vardelin::jet
