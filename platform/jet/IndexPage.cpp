#include "platform/jet/IndexPage.h"

#include "platform/jet/Bytes.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vardelin::jet {

namespace {

constexpr std::size_t kFree = 2, kTable = 4, kPrevious = 12, kNext = 16, kTail = 20, kPrefix = 24,
                      kLevel = 26, kEnds = 27;
constexpr std::size_t kEndsBytes = kIndexEntries - kEnds;
constexpr auto kLeafType = std::byte{4}, kNodeType = std::byte{3};

std::uint32_t big(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

std::byte *putBig(std::byte *at, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        *at++ = static_cast<std::byte>(value >> shift);
    return at;
}

std::byte *putBytes(std::byte *at, std::string_view bytes)
{
    if (!bytes.empty())
        std::memcpy(at, bytes.data(), bytes.size());
    return at + bytes.size();
}

std::uint32_t rowNumber(RowId row)
{
    return row.page << 8 | row.row;
}

void setEnd(std::byte *page, std::size_t end)
{
    page[kEnds + end / 8] |= static_cast<std::byte>(1u << (end % 8));
}

void setEnds(std::byte *page, std::span<const std::uint16_t> ends)
{
    std::memset(page + kEnds, 0, kEndsBytes);
    for (const std::uint16_t end : ends)
        setEnd(page, end);
}

void setUsed(std::byte *page, std::size_t used)
{
    store(page + kFree, static_cast<std::uint16_t>(kIndexRoom - used));
}

void writeHeader(std::byte *page, bool leaf, PageNo table)
{
    std::memset(page, 0, kPageSize);
    page[0] = leaf ? kLeafType : kNodeType;
    page[1] = std::byte{1};
    store(page + kTable, table);
    setUsed(page, 0);
}

// Prefixes are taken from keys alone, never from the row behind them.
std::size_t commonPrefix(std::span<const IndexEntry> entries)
{
    if (entries.size() < 2)
        return 0;
    const std::string &first = entries.front().key, &last = entries.back().key;
    const auto ends = std::mismatch(first.begin(), first.end(), last.begin(), last.end());
    return static_cast<std::size_t>(ends.first - first.begin());
}

std::size_t wholeBytes(std::span<const IndexEntry> entries, bool leaf)
{
    std::size_t bytes = 0;
    for (const IndexEntry &entry : entries)
        bytes += entry.size(leaf);
    return bytes;
}

} // namespace

bool entriesFit(std::span<const IndexEntry> entries, bool leaf, bool withPrefix)
{
    const std::size_t whole = wholeBytes(entries, leaf);
    if (whole <= kIndexRoom || !withPrefix || entries.empty())
        return whole <= kIndexRoom;
    return whole - commonPrefix(entries) * (entries.size() - 1) <= kIndexRoom;
}

bool IndexPage::fits() const
{
    return entriesFit(entries, leaf, hadPrefix);
}

void IndexPage::write(std::byte *page, PageNo table) const
{
    writeHeader(page, leaf, table);
    store(page + kPrevious, previous);
    store(page + kNext, next);
    store(page + kTail, tail);
    page[kLevel] = static_cast<std::byte>(level);
    const std::size_t prefix = wholeBytes(entries, leaf) <= kIndexRoom ? 0 : commonPrefix(entries);
    store(page + kPrefix, static_cast<std::uint16_t>(prefix));
    std::byte *const first = page + kIndexEntries;
    std::byte *at = first;
    for (const IndexEntry &entry : entries) {
        at = putBytes(at, std::string_view(entry.key).substr(at == first ? 0 : prefix));
        at = putBig(at, rowNumber(entry.row));
        if (!leaf)
            at = putBig(at, entry.child);
        setEnd(page, static_cast<std::size_t>(at - first));
    }
    setUsed(page, static_cast<std::size_t>(at - first));
}

IndexPageView::IndexPageView(Pager &pager, PageNo number, PageNo table) : m_number(number)
{
    m_bytes = pager.page(number);
    if (const char *found = problem(table))
        pager.damaged("page " + std::to_string(number) + ": " + found);
}

const char *IndexPageView::problem(PageNo table)
{
    if (m_bytes[0] != kLeafType && m_bytes[0] != kNodeType)
        return "a page of an index was expected here";
    m_leaf = m_bytes[0] == kLeafType;
    m_prefix = load<std::uint16_t>(m_bytes + kPrefix);
    if (load<std::uint32_t>(m_bytes + kTable) != table)
        return "this page of an index belongs to another table";
    return readEnds();
}

// Every visit of a page passes through here, so the loop does no more than it must.
const char *IndexPageView::readEnds()
{
    constexpr std::size_t last = kIndexRoom / 8; // the byte of the last end that there can be
    static_assert(kIndexRoom % 8 == 0 && last + 1 == kEndsBytes);
    if ((m_bytes[kEnds + last] & ~std::byte{1}) != std::byte{0})
        return "an entry of the index ends beyond the page";
    const std::size_t behindKey = kRowBytes + (m_leaf ? 0 : kChildBytes);
    std::size_t start = 0, count = 0;
    bool tooShort = false;
    for (std::size_t i = 0; i < kEndsBytes; i += 8) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, m_bytes + kEnds + i, std::min<std::size_t>(8, kEndsBytes - i));
        for (; bits != 0; bits &= bits - 1) {
            const std::size_t end = 8 * i + static_cast<std::size_t>(std::countr_zero(bits));
            if (count == kIndexRoom)
                return "an entry of the index is too short";
            tooShort |= end - start + m_prefix <= behindKey;
            m_ends[count++] = static_cast<std::uint16_t>(end);
            start = end;
        }
    }
    m_count = count;
    if (count != 0 && m_prefix > m_ends[0])
        return "the common prefix is longer than the first entry of the index";
    if (tooShort || (count != 0 && m_ends[0] <= behindKey))
        return "an entry of the index is too short";
    return nullptr;
}

std::uint8_t IndexPageView::level() const
{
    return std::to_integer<std::uint8_t>(m_bytes[kLevel]);
}

PageNo IndexPageView::previous() const
{
    return load<std::uint32_t>(m_bytes + kPrevious);
}

PageNo IndexPageView::next() const
{
    return load<std::uint32_t>(m_bytes + kNext);
}

PageNo IndexPageView::tail() const
{
    return load<std::uint32_t>(m_bytes + kTail);
}

std::uint16_t IndexPageView::statedFree() const
{
    return load<std::uint16_t>(m_bytes + kFree);
}

std::string_view IndexPageView::whole(std::size_t entry, std::string &store) const
{
    const char *const first = reinterpret_cast<const char *>(m_bytes + kIndexEntries);
    const std::size_t from = start(entry);
    const std::string_view stored(first + from, m_ends[entry] - from);
    if (entry == 0 || m_prefix == 0)
        return stored;
    store.assign(first, m_prefix).append(stored);
    return store;
}

IndexPlace IndexPageView::place(std::size_t entry, std::string &store) const
{
    std::string_view bytes = whole(entry, store);
    bytes.remove_suffix(m_leaf ? 0 : kChildBytes);
    const std::uint32_t row = big(bytes.substr(bytes.size() - kRowBytes));
    bytes.remove_suffix(kRowBytes);
    return {bytes, {row >> 8, static_cast<std::uint8_t>(row)}};
}

PageNo IndexPageView::entryChild(std::size_t entry) const
{
    std::string store;
    const std::string_view bytes = whole(entry, store);
    return big(bytes.substr(bytes.size() - kChildBytes));
}

std::size_t IndexPageView::lowerBound(const IndexPlace &sought) const
{
    std::string store;
    std::size_t low = 0, high = m_count;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (place(middle, store) < sought)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

IndexPage IndexPageView::takeApart() const
{
    IndexPage page{.leaf = m_leaf,
                   .level = level(),
                   .previous = previous(),
                   .next = next(),
                   .tail = m_leaf ? 0 : tail(),
                   .hadPrefix = m_prefix != 0,
                   .entries = {}};
    page.entries.reserve(m_count);
    std::string store;
    for (std::size_t i = 0; i < m_count; ++i) {
        const IndexPlace here = place(i, store);
        page.entries.push_back({std::string(here.key), here.row, m_leaf ? 0 : entryChild(i)});
    }
    return page;
}

bool IndexPageView::canInsert(std::string_view key) const
{
    return m_leaf && m_prefix == 0 && usedBytes() + key.size() + kRowBytes <= kIndexRoom;
}

void IndexPageView::insertInPlace(std::byte *page, std::size_t at, std::string_view key, RowId row) const
{
    const std::size_t length = key.size() + kRowBytes, from = start(at), used = usedBytes();
    std::byte *const place = page + kIndexEntries + from;
    std::memmove(place + length, place, used - from);
    putBig(putBytes(place, key), rowNumber(row));
    setUsed(page, used + length);
    if (at == m_count)
        return setEnd(page, used + length);
    std::uint16_t ends[kIndexRoom];
    std::copy_n(m_ends, at, ends);
    ends[at] = static_cast<std::uint16_t>(from + length);
    for (std::size_t i = at; i < m_count; ++i)
        ends[i + 1] = static_cast<std::uint16_t>(m_ends[i] + length);
    setEnds(page, {ends, m_count + 1});
}

void IndexPageView::eraseInPlace(std::byte *page, std::size_t at) const
{
    const std::size_t from = start(at), length = m_ends[at] - from, used = usedBytes();
    std::byte *const place = page + kIndexEntries + from;
    std::memmove(place, place + length, used - from - length);
    std::memset(page + kIndexEntries + used - length, 0, length);
    setUsed(page, used - length);
    std::uint16_t ends[kIndexRoom];
    std::copy_n(m_ends, at, ends);
    for (std::size_t i = at + 1; i < m_count; ++i)
        ends[i - 1] = static_cast<std::uint16_t>(m_ends[i] - length);
    setEnds(page, {ends, m_count - 1});
}

void writeEmptyLeaf(std::byte *page, PageNo table)
{
    writeHeader(page, true, table);
}

void setIndexPrevious(std::byte *page, PageNo previous)
{
    store(page + kPrevious, previous);
}

void setIndexNext(std::byte *page, PageNo next)
{
    store(page + kNext, next);
}

} // namespace vardelin::jet
