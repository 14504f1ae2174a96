#pragma once
// Memo and OLE values. The row holds a header of 12 bytes:
//
//   0   u32  length of the data in bytes in the low 30 bits, kind in the top two
//   4   u32  row pointer of the first piece, 0 when inline
//   8   u32  stamp: equals the u32 at 8 of the first piece's page; 0 unless chained
//   12       the data, inline only
//
//   inline   0x80000000  behind the header
//   single   0x40000000  one row of a long value page, the whole row
//   chained  0           rows that begin with the row pointer of the next (0 at the end)
//
// Invariants:
//   1. A piece belongs to one value, and its page to one column: in the column's owned-pages map.
//   2. Pages of chained pieces aren't in the free-space map; a page left without a piece is freed.
//   3. Out of the row a text is never compressed. A zero-length text is a bare header.

#include "platform/jet/Allocation.h"
#include "platform/jet/Passage.h"
#include "platform/jet/RowCodec.h"

namespace vardelin::jet {

inline constexpr std::size_t kLongValueHeader = 12, kLongestInline = 64, kLongestSingle = 4076,
                             kPieceData = 4072;
inline constexpr std::size_t kLongestLongValue = 0x3FFFFFFF;

// The data of a value: where it lies if that is one piece, else gathered into `store`.
// With a passage: valid until its step().
std::span<const std::byte> readLongValue(Pager &pager, std::span<const std::byte> header, RowPlace place,
                                         Bytes &store, Passage *passage = nullptr);
// As much of a damaged value as can be read from its start.
Bytes readableStart(Pager &pager, std::span<const std::byte> header, RowPlace place);
// The rows that hold the data, in order; none for an inline value.
std::vector<RowId> longValuePieces(Pager &pager, std::span<const std::byte> header, RowPlace place);
bool isInline(std::span<const std::byte> header);
bool isChained(std::span<const std::byte> header);
Bytes inlineLongValue(std::span<const std::byte> data);

// A page is listed as having room from this number of free bytes on.
inline constexpr std::size_t kWorthListing = 128;

// Writes and frees the pieces of one column's values.
class LongValuePages
{
public:
    LongValuePages(Pager &pager, Allocation &allocation, const LongValueMaps &maps)
        : m_pager(pager), m_allocation(allocation), m_owned(pager, maps.owned),
          m_freeSpace(pager, maps.freeSpace)
    {}
    Bytes write(std::span<const std::byte> data); // the header
    void release(std::span<const std::byte> header, RowPlace place);

private:
    RowId writeSingle(std::span<const std::byte> data);
    RowId writeChain(std::span<const std::byte> data);
    PageNo newPage();
    PageNo pageWithRoom(std::size_t bytes) const;
    void erasePiece(RowId piece);
    Pager &m_pager;
    Allocation &m_allocation;
    UsageMap m_owned, m_freeSpace;
};

} // namespace vardelin::jet
