#pragma once
// One page of an index. Only IndexTree.cpp and the checker look at it.
//
//    0  u8   4 leaf, 3 node
//    1  u8   1
//    2  u16  free space: 3616 - bytes of entries
//    4  u32  definition page of the table
//    8  u32  0
//   12  u32  previous page of the level, 0 = none
//   16  u32  next page of the level, 0 = none
//   20  u32  node: page of the last child, which has no entry ("tail"); 0 in a leaf, and in a node with one child
//   24  u16  length of the common prefix p
//   26  u8   level: 0 leaf, 1 the nodes above leaves, ...
//   27  453  entry ends: bit k (lowest first) of byte i is set if an entry ends 8*i + k bytes behind 480
//  480  3616 entries, back to back. With p > 0 the first p bytes of the first entry are left out of all others
//
// An entry: key, page of the row (u24), row number (u8); in a node then the child's page (u32). Big-endian,
// all of it. Entries rise by key (bytes, unsigned), then by row. A node's entry is a copy of the greatest
// entry below its child.

#include "platform/jet/Pager.h"
#include "platform/jet/Types.h"

#include <span>
#include <string>

namespace vardelin::jet {

inline constexpr std::size_t kIndexEntries = 480;
inline constexpr std::size_t kIndexRoom = kPageSize - kIndexEntries;
inline constexpr std::size_t kRowBytes = 4;
inline constexpr std::size_t kChildBytes = 4;
// A page must have room for two entries.
inline constexpr std::size_t kLongestKey = kIndexRoom / 2 - kRowBytes - kChildBytes;

// What entries sort by.
struct IndexPlace
{
    std::string_view key;
    RowId row;
    bool operator==(const IndexPlace &) const = default;
    bool operator<(const IndexPlace &other) const
    {
        const int byKey = key.compare(other.key);
        return byKey < 0 || (byKey == 0 && row < other.row);
    }
};

struct IndexEntry
{
    std::string key;
    RowId row;
    PageNo child = 0; // 0 in a leaf
    IndexPlace place() const { return {key, row}; }
    std::size_t size(bool leaf) const { return key.size() + kRowBytes + (leaf ? 0 : kChildBytes); }
};

// A page taken apart, to be changed and put together again.
struct IndexPage
{
    bool leaf = true;
    std::uint8_t level = 0;
    PageNo previous = 0, next = 0, tail = 0;
    // Only such a page gets a prefix again: others split first, which keeps changes in place quick.
    bool hadPrefix = false;
    std::vector<IndexEntry> entries;

    std::size_t childCount() const { return entries.size() + (tail != 0 ? 1 : 0); }
    PageNo child(std::size_t place) const { return place < entries.size() ? entries[place].child : tail; }
    bool fits() const;
    void write(std::byte *page, PageNo table) const;
};

bool entriesFit(std::span<const IndexEntry> entries, bool leaf, bool withPrefix);

// A page where it lies. Every bound has been checked when the constructor returns. It keeps the places of the
// entries, and a pointer to the bytes, which the next change of the page ends.
class IndexPageView
{
public:
    // Damaged, with a reason that names the page, if it isn't a whole index page of this table.
    IndexPageView(Pager &pager, PageNo number, PageNo table);

    PageNo number() const { return m_number; }
    bool leaf() const { return m_leaf; }
    std::uint8_t level() const;
    PageNo previous() const;
    PageNo next() const;
    PageNo tail() const;
    std::uint16_t statedFree() const;
    std::size_t prefixLength() const { return m_prefix; }
    std::size_t size() const { return m_count; }
    std::size_t usedBytes() const { return m_count ? m_ends[m_count - 1] : 0; }

    // The place of an entry. Its key lies in the page or, on a page with a prefix, in `store`.
    IndexPlace place(std::size_t entry, std::string &store) const;
    PageNo entryChild(std::size_t entry) const;
    std::size_t lowerBound(const IndexPlace &sought) const; // the first entry that isn't below it

    // The children of a node are those of its entries and then the tail, if there is one. Which of them is
    // the one to search in?
    std::size_t childCount() const { return m_count + (tail() != 0 ? 1 : 0); }
    PageNo child(std::size_t place) const { return place < m_count ? entryChild(place) : tail(); }

    IndexPage takeApart() const;

    // Changes in place, on the page's changed copy. Only for a leaf without prefix; false if there is no
    // room.
    bool canInsert(std::string_view key) const;
    void insertInPlace(std::byte *page, std::size_t at, std::string_view key, RowId row) const;
    void eraseInPlace(std::byte *page, std::size_t at) const;

private:
    std::size_t start(std::size_t entry) const { return entry == 0 ? 0 : m_ends[entry - 1]; }
    std::string_view whole(std::size_t entry, std::string &store) const;
    const char *problem(PageNo table);
    const char *readEnds();

    const std::byte *m_bytes = nullptr;
    PageNo m_number = 0;
    bool m_leaf = true;
    std::size_t m_prefix = 0;
    std::size_t m_count = 0;
    std::uint16_t m_ends[kIndexRoom]; // only the first m_count are set
};

// An empty leaf.
void writeEmptyLeaf(std::byte *page, PageNo table);
void setIndexPrevious(std::byte *page, PageNo previous);
void setIndexNext(std::byte *page, PageNo next);

} // namespace vardelin::jet
