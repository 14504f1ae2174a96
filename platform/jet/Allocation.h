#pragma once
// Giving out and taking back the pages of a file: the free page map, page 1 row 0.
//
// Invariants:
//   1. The bits have the opposite sense of all other maps: 1 = free. Bits of pages behind the end of the file
//      are 1.
//   2. A page of the file that the map doesn't reach counts as in use, so that no page is given out twice.
//   3. The map reaches every page: its row grows by 32 bytes (256 pages) at a time as long as page 1 has room,
//      then it turns into a map by reference, whose new bit map pages are filled with 0xFF.
//   4. Row 1 of page 1 is a second map that nothing uses; it is kept, and only moves as row 0 grows.

#include "platform/jet/UsageMap.h"

namespace vardelin::jet {

class Allocation
{
public:
    explicit Allocation(Pager &pager) : m_pager(pager) {}

    // A page of zeros above `above`: a free one, or a new one at the end. Data pages of a table lie above all
    // others of it, since a scan goes by page number and rows come in the order of adding.
    PageNo allocate(PageNo above = 0);
    // Back to the free pages; the caller has taken it out of its owner's maps. typeByte: 9 for a data page, 8
    // for a definition.
    void release(PageNo page, std::uint8_t typeByte);

    // Page 1 of a fresh file, with the first `used` pages in use.
    static void initPage(std::byte *page, PageNo used);

private:
    UsageMap map() const { return {m_pager, RowId{1, 0}}; }
    void reachTo(PageNo page);
    void growInline();
    void turnIntoReference();
    void addBitmap(std::size_t index);
    PageNo firstToTry() const { return m_seenAt == m_pager.version() ? m_allTakenBelow : 0; }
    Pager &m_pager;
    // What was seen of the free page map when the pager's version was m_seenAt; our own changes are followed.
    std::uint64_t m_seenAt = 0;
    PageNo m_allTakenBelow = 0;
};

} // namespace vardelin::jet
