#include "platform/jet/Allocation.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::size_t kGrowth = 32;

} // namespace

PageNo Allocation::allocate(PageNo above)
{
    const PageNo known = firstToTry();
    PageNo page = map().next(std::max(above + 1, known));
    if (page == kNoPage || page >= m_pager.pageCount()) {
        page = m_pager.append();
        reachTo(page);
    }
    if (above < known || above == 0) {
        m_seenAt = m_pager.version();
        m_allTakenBelow = page + 1;
    }
    map().setBit(page, false);
    std::memset(m_pager.change(page), 0, kPageSize);
    return page;
}

void Allocation::release(PageNo page, std::uint8_t typeByte)
{
    m_pager.change(page)[0] = std::byte{typeByte};
    m_allTakenBelow = std::min(m_allTakenBelow, page);
    reachTo(page);
    map().setBit(page, true);
}

// A page that comes within reach only now was in use all along, but for those behind the end of the file.
void Allocation::reachTo(PageNo page)
{
    while (true) {
        const auto row = map().row();
        if (row[0] == std::byte{1}) {
            const std::size_t index = page / kPagesPerBitmap;
            if (!map().bitmap(row, index))
                addBitmap(index);
            return;
        }
        if (page < load<PageNo>(row.data() + 1))
            Place{m_pager, 1}.damaged("the free page map doesn't begin at page 0");
        if (page < map().reach())
            return;
        if (DataPage(m_pager, 1).freeSpace() >= kGrowth)
            growInline();
        else
            turnIntoReference();
    }
}

void Allocation::growInline()
{
    const PageNo reach = map().reach();
    Bytes row(map().row().begin(), map().row().end());
    row.resize(row.size() + kGrowth, std::byte{0xFF});
    DataPageEditor(m_pager, 1).replace(0, row, kLiveRow);
    for (PageNo page = reach; page < m_pager.pageCount() && page < map().reach(); ++page)
        map().setBit(page, false);
}

void Allocation::turnIntoReference()
{
    const Bytes old(map().row().begin(), map().row().end());
    const PageNo first = load<PageNo>(old.data() + 1);
    const PageNo reach = map().reach();
    Bytes reference(kMapRow);
    reference[0] = std::byte{1};
    DataPageEditor(m_pager, 1).replace(0, reference, kLiveRow);
    for (std::size_t i = 0; i * kPagesPerBitmap < reach; ++i)
        addBitmap(i);
    for (PageNo page = first; page < reach; ++page) {
        const PageNo bit = page - first;
        if ((std::to_integer<unsigned>(old[5 + bit / 8]) >> (bit % 8) & 1) != 0)
            map().setBit(page, true);
    }
}

// Pages of the file are in use, those behind its end are free. The bit map page itself is a new one, and in
// use.
void Allocation::addBitmap(std::size_t index)
{
    const PageNo fresh = m_pager.append();
    std::byte *page = m_pager.change(fresh);
    std::memset(page, 0xFF, kPageSize);
    store(page, std::uint32_t{0x00000105});
    const PageNo base = static_cast<PageNo>(index) * kPagesPerBitmap;
    for (PageNo i = 0; i < kPagesPerBitmap && base + i < m_pager.pageCount(); ++i)
        page[4 + i / 8] &= ~std::byte{static_cast<unsigned char>(1U << (i % 8))};
    const std::size_t row = static_cast<std::size_t>(map().row().data() - m_pager.page(1));
    store(m_pager.change(1) + row + 1 + 4 * index, fresh);
    const std::size_t own = fresh / kPagesPerBitmap;
    if (!map().bitmap(map().row(), own))
        addBitmap(own);
    map().setBit(fresh, false);
}

void Allocation::initPage(std::byte *page, PageNo used)
{
    DataPageEditor::init(page, 1);
    Bytes free(kMapRow, std::byte{0xFF});
    std::memset(free.data(), 0, 5);
    for (PageNo i = 0; i < used; ++i)
        free[5 + i / 8] &= ~std::byte{static_cast<unsigned char>(1U << (i % 8))};
    std::size_t begin = kPageSize;
    for (std::size_t slot = 0; slot < 2; ++slot) {
        begin -= kMapRow;
        store(page + kSlotsAt + 2 * slot, static_cast<std::uint16_t>(begin));
    }
    std::memcpy(page + kPageSize - kMapRow, free.data(), kMapRow);
    store(page + 12, std::uint16_t{2});
    store(page + 2, static_cast<std::uint16_t>(begin - kSlotsAt - 4));
}

} // namespace vardelin::jet
