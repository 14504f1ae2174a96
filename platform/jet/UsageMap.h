#pragma once
// A usage map: a set of page numbers, kept as one row of a data page.
//
// Inline (69 bytes as a rule, longer ones occur):
//   0  u8    0
//   1  u32   first page of the bits, a multiple of 8
//   5  rest  bit k (lowest first) of byte i stands for page first + 8*i + k
// By reference (69 bytes):
//   0  u8         1
//   1  17 * u32   numbers of bit map pages, 0 = none of its pages is in the set
// Bit map page i (type 5: 05 01 00 00, then 4092 bytes of bits) covers the 32736 pages from 32736 * i on.
//
// Invariants:
//   1. An inline map moves as long as its pages span no more than its bits, then turns into one by reference,
//      for good.
//   2. A bit map page is allocated like any other and is in no map but that of free pages.

#include "platform/jet/DataPage.h"

namespace vardelin::jet {

inline constexpr std::size_t kMapRow = 69;
inline constexpr std::size_t kMapSlots = 17;
inline constexpr PageNo kPagesPerBitmap = 8 * (kPageSize - 4);
inline constexpr PageNo kNoPage = 0xFFFFFFFF;

// Gives out pages for the bit maps of usage maps, and for everything else.
class Allocation;

class UsageMap
{
public:
    UsageMap(Pager &pager, RowId row) : m_pager(pager), m_row(row) {}

    // A zero row pointer, found in foreign files, stands for no map at all: empty, and nothing goes in.
    bool absent() const { return m_row.page == 0; }
    bool contains(PageNo page) const;
    PageNo
    next(PageNo from) const; // the lowest page of the set that isn't below `from`; kNoPage if there is none
    PageNo previous(PageNo from) const; // the highest that isn't above `from`
    PageNo last() const { return previous(kNoPage - 1); }
    PageNo reach() const;                    // the page behind the last one that a bit stands for
    std::vector<PageNo> bitmapPages() const; // of a map by reference: the pages that hold its bits

    void add(PageNo page, Allocation &allocation);
    void remove(PageNo page);

private:
    friend class Allocation;
    std::span<const std::byte> row() const;
    const std::byte *bitmap(std::span<const std::byte> row, std::size_t index) const; // null: none
    std::byte *changeRow();
    std::byte *changeBitmap(std::size_t index);
    bool moveInline(PageNo page);
    void turnIntoReference(Allocation &allocation);
    void setBit(PageNo page, bool value); // within reach
    Pager &m_pager;
    RowId m_row;
};

// An empty inline map as a row, or one that holds a single page.
Bytes emptyMap();
Bytes mapOf(PageNo page);

} // namespace vardelin::jet
