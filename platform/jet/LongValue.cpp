#include "platform/jet/LongValue.h"

#include "platform/jet/Error.h"

namespace vardelin::jet {

namespace {

constexpr std::uint32_t kInline = 0x80000000, kSingle = 0x40000000, kKindMask = 0xC0000000;
constexpr std::size_t kPiecePointer = 4;
// Where room is looked for: enough to fill what deletions left, few enough that an insert costs the same in
// any file.
constexpr int kPagesTried = 8;

struct Header
{
    std::uint32_t kind;
    std::size_t length;
    RowId first;
};

Header parse(std::span<const std::byte> raw, RowPlace place)
{
    if (raw.size() < kLongValueHeader)
        place.damaged("has a long value without a header");
    const auto word = load<std::uint32_t>(raw.data());
    const Header header{word & kKindMask, word & ~kKindMask, loadRowId(raw.data() + 4)};
    if (header.kind == kKindMask)
        place.damaged("has a long value of no known kind");
    if (header.kind == kInline && raw.size() - kLongValueHeader != header.length)
        place.damaged("has an inline long value of the wrong length");
    return header;
}

Bytes headerOf(std::uint32_t kind, std::size_t length, RowId first)
{
    Bytes header(kLongValueHeader);
    store(header.data(), static_cast<std::uint32_t>(length) | kind);
    storeRowId(header.data() + 4, first);
    return header;
}

std::span<const std::byte> pieceOn(const DataPage &page, RowId id)
{
    page.requireOwner(kLongValueOwner);
    if (page.slot(id.row).flags != kLiveRow)
        page.place().damaged("row " + std::to_string(id.row) + " isn't a piece of a long value");
    return page.row(id.row);
}

std::span<const std::byte> piece(Pager &pager, RowId id)
{
    return pieceOn({pager, id.page}, id);
}

std::span<const std::byte> piece(Pager &pager, RowId id, Passage *passage, bool kept)
{
    return passage ? pieceOn({pager, id.page, passage->page(id.page, kept)}, id) : piece(pager, id);
}

// Calls visit(id, data) for each piece of a chain. Every piece must add to the length or end the chain, so a
// circle ends too.
template <class Visit>
void walkChain(Pager &pager, const Header &header, RowPlace place, Visit visit, Passage *passage = nullptr)
{
    if (header.length > std::size_t{pager.pageCount()} * kPageSize)
        place.damaged("has a long value larger than the file");
    std::size_t length = 0;
    for (RowId id = header.first; id.page != 0;) {
        const auto raw = piece(pager, id, passage, false);
        if (raw.size() < kPiecePointer)
            place.damaged("has a long value with a piece that is too short");
        const RowId next = loadRowId(raw.data());
        length += raw.size() - kPiecePointer;
        if (length > header.length || (raw.size() == kPiecePointer && next.page != 0))
            place.damaged("has a long value whose pieces don't add up");
        visit(id, raw.subspan(kPiecePointer));
        id = next;
    }
    if (length != header.length)
        place.damaged("has a long value whose pieces don't add up");
}

} // namespace

std::span<const std::byte> readLongValue(Pager &pager, std::span<const std::byte> raw, RowPlace place,
                                         Bytes &store, Passage *passage)
{
    const Header header = parse(raw, place);
    if (header.kind == kInline)
        return raw.subspan(kLongValueHeader);
    if (header.kind == kSingle) {
        const auto data = piece(pager, header.first, passage, true);
        if (data.size() != header.length)
            place.damaged("has a long value of the wrong length");
        return data;
    }
    store.clear();
    const auto take = [&](RowId, std::span<const std::byte> data) {
        store.insert(store.end(), data.begin(), data.end());
    };
    walkChain(pager, header, place, take, passage);
    return store;
}

Bytes readableStart(Pager &pager, std::span<const std::byte> raw, RowPlace place)
{
    Bytes start;
    const auto take = [&](std::span<const std::byte> data) {
        start.insert(start.end(), data.begin(), data.end());
    };
    try {
        const Header header = parse(raw, place);
        if (header.kind == kSingle)
            take(piece(pager, header.first));
        else if (header.kind != kInline)
            walkChain(pager, header, place, [&](RowId, std::span<const std::byte> data) { take(data); });
    } catch (const Error &error) {
        if (error.code() != Code::Damaged)
            throw;
    }
    return start;
}

std::vector<RowId> longValuePieces(Pager &pager, std::span<const std::byte> raw, RowPlace place)
{
    const Header header = parse(raw, place);
    if (header.kind == kInline)
        return {};
    if (header.kind == kSingle) {
        piece(pager, header.first);
        return {header.first};
    }
    std::vector<RowId> pieces;
    walkChain(pager, header, place, [&](RowId id, std::span<const std::byte>) { pieces.push_back(id); });
    return pieces;
}

bool isInline(std::span<const std::byte> header)
{
    return header.size() >= kLongValueHeader && (load<std::uint32_t>(header.data()) & kKindMask) == kInline;
}

bool isChained(std::span<const std::byte> header)
{
    return header.size() >= kLongValueHeader && (load<std::uint32_t>(header.data()) & kKindMask) == 0;
}

Bytes inlineLongValue(std::span<const std::byte> data)
{
    Bytes value = headerOf(kInline, data.size(), {});
    value.insert(value.end(), data.begin(), data.end());
    return value;
}

Bytes LongValuePages::write(std::span<const std::byte> data)
{
    if (m_owned.absent())
        m_pager.damaged("a column for long values without a usage map");
    if (data.size() <= kLongestSingle)
        return headerOf(kSingle, data.size(), writeSingle(data));
    return headerOf(0, data.size(), writeChain(data));
}

PageNo LongValuePages::newPage()
{
    const PageNo page = m_allocation.allocate();
    DataPageEditor::init(m_pager.change(page), kLongValueOwner);
    m_owned.add(page, m_allocation);
    return page;
}

PageNo LongValuePages::pageWithRoom(std::size_t bytes) const
{
    PageNo page = m_freeSpace.previous(m_pager.pageCount() - 1);
    for (int tried = 0; page != kNoPage && tried < kPagesTried; ++tried) {
        const DataPage view(m_pager, page);
        view.requireOwner(kLongValueOwner);
        if (view.takesRow(bytes))
            return page;
        page = page == 0 ? kNoPage : m_freeSpace.previous(page - 1);
    }
    return kNoPage;
}

RowId LongValuePages::writeSingle(std::span<const std::byte> data)
{
    PageNo page = pageWithRoom(data.size());
    if (page == kNoPage)
        page = newPage();
    DataPageEditor editor(m_pager, page);
    const RowId id{page, editor.add(data)};
    if (editor.view().freeSpace() >= kWorthListing)
        m_freeSpace.add(page, m_allocation);
    else
        m_freeSpace.remove(page);
    return id;
}

RowId LongValuePages::writeChain(std::span<const std::byte> data)
{
    RowId first, before;
    while (!data.empty()) {
        const auto now = data.first(std::min(data.size(), kPieceData));
        data = data.subspan(now.size());
        Bytes row(kPiecePointer);
        row.insert(row.end(), now.begin(), now.end());
        const PageNo page = newPage();
        const RowId id{page, DataPageEditor(m_pager, page).add(row)};
        if (before.page == 0)
            first = id;
        else
            storeRowId(DataPageEditor(m_pager, before.page).rowBytes(before.row), id);
        before = id;
    }
    return first;
}

void LongValuePages::release(std::span<const std::byte> raw, RowPlace place)
{
    for (const RowId id : longValuePieces(m_pager, raw, place))
        erasePiece(id);
}

void LongValuePages::erasePiece(RowId id)
{
    if (!m_owned.contains(id.page))
        Place{m_pager, id.page}.damaged("holds a long value of a column that doesn't own it");
    DataPageEditor editor(m_pager, id.page);
    editor.erase(id.row);
    if (editor.view().empty()) {
        m_owned.remove(id.page);
        m_freeSpace.remove(id.page);
        m_allocation.release(id.page, 9);
    } else if (editor.view().freeSpace() >= kWorthListing) {
        m_freeSpace.add(id.page, m_allocation);
    }
}

} // namespace vardelin::jet
