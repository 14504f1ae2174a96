#pragma once
// A data page: rows of a table, pieces of long values, or usage maps.
//
//   offset  size      meaning
//   0       u8        1
//   1       u8        1
//   2       u16       free space: bytes between the end of the slots and the lowest row
//   4       u32       owner: definition page of the table; "LVAL" for long values; 0 for usage maps (1 on page 1)
//   8       u32       0; on the first page of a chained long value its stamp
//   12      u16       number of slots, at most 255: a row number is one byte
//   14      u16 each  slots: offset of the row in the low 13 bits, flags above
//
// Invariants:
//   1. Rows fill the page from its end downward in order of slots; row i ends where row i-1 begins, row 0 at
//      4096.
//   2. Free space is exact to the byte, since other programs put rows by it.
//   3. A slot is never used again and never goes while its page is in use; a deleted one has length 0.

#include "platform/jet/Bytes.h"

namespace vardelin::jet {

inline constexpr std::size_t kSlotsAt = 14;
inline constexpr std::size_t kMaxSlots = 255;
inline constexpr std::size_t kMaxRow = 4060;
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C; // "LVAL"

enum SlotFlags : std::uint16_t {
    kLiveRow = 0,
    kForward = 0x4000,  // the first four bytes point to the moved row
    kMovedRow = 0x8000, // reached by its forward alone
    kDeleted = 0xC000
};

struct Slot
{
    std::uint16_t flags = kDeleted;
    std::size_t begin = 0, end = 0;
    bool deleted() const { return flags == kDeleted; }
};

// A view of a page whose type and number of slots have been checked; each slot is checked as it is read.
class DataPage
{
public:
    DataPage(const Pager &pager, PageNo number, const std::byte *bytes);
    DataPage(Pager &pager, PageNo number) : DataPage(pager, number, pager.page(number)) {}

    std::uint32_t owner() const { return load<std::uint32_t>(m_bytes + 4); }
    void requireOwner(std::uint32_t owner) const;
    std::size_t slots() const { return m_slots; }
    Slot slot(std::size_t number) const;
    std::span<const std::byte> row(std::size_t number) const;
    std::size_t freeSpace() const;
    bool takesRow(std::size_t bytes) const { return m_slots < kMaxSlots && freeSpace() >= bytes + 2; }
    bool empty() const; // no row but deleted ones
    const std::byte *bytes() const { return m_bytes; }
    Place place() const { return {*m_pager, m_number}; }

private:
    const Pager *m_pager;
    PageNo m_number;
    const std::byte *m_bytes;
    std::size_t m_slots;
};

// A data page in change. Every slot has been checked before the first byte is touched.
class DataPageEditor
{
public:
    DataPageEditor(Pager &pager, PageNo number);
    static void init(std::byte *page, std::uint32_t owner);

    DataPage view() const { return {*m_pager, m_number, m_bytes}; }
    std::byte *rowBytes(std::size_t slot) { return m_bytes + view().slot(slot).begin; }
    std::uint8_t add(std::span<const std::byte> row, std::uint16_t flags = kLiveRow);    // it must fit
    void replace(std::size_t slot, std::span<const std::byte> row, std::uint16_t flags); // it must fit
    void erase(std::size_t slot);

private:
    void resize(std::size_t slot, std::size_t length);
    void setFreeSpace();
    Pager *m_pager;
    PageNo m_number;
    std::byte *m_bytes;
};

} // namespace vardelin::jet
