// Page 0, the page maps, data pages as such, and who owns what.
#include "platform/jet/CheckState.h"
#include "platform/jet/Header.h"

namespace vardelin::jet {

namespace {

constexpr RowId kFreePages{1, 0}, kSecondMap{1, 1};
constexpr std::uint16_t kUnusedFlag = 0x2000;

bool hasUnusedFlags(const DataPage &page)
{
    for (std::size_t i = 0; i < page.slots(); ++i) {
        if (load<std::uint16_t>(page.bytes() + kSlotsAt + 2 * i) & kUnusedFlag)
            return true;
    }
    return false;
}

// A page whose row is a usage map that nothing names.
void checkPageOfMaps(CheckState &state, PageNo number)
{
    if (!checkDataPage(state, number, number == 1 ? 1 : 0, "usage maps"))
        return;
    const DataPage page(state.pager, number);
    for (std::size_t i = 0; i < page.slots(); ++i) {
        const RowId row{number, static_cast<std::uint8_t>(i)};
        if (page.slot(i).flags == kLiveRow && !state.isMap(row))
            state.add(Severity::Waste, Invariant::Maps, number, "usage maps",
                      "row " + std::to_string(i) + " is a usage map that nothing names");
    }
}

} // namespace

// The pointers in page 0 are the same in every file, and so is the mask over them: they are compared as they
// lie.
void checkHeaderPage(CheckState &state)
{
    static constexpr std::size_t kPointers = 0x18, kPointersEnd = 0x30, kVersion = 0x9C;
    Bytes fresh(kPageSize);
    initHeader(fresh.data());
    const std::byte *page = state.pager.page(0);
    if (std::memcmp(page + kPointers, fresh.data() + kPointers, kPointersEnd - kPointers) != 0)
        state.fault(Invariant::Header, 0, "header",
                    "the pointers to the page maps and base tables are wrong");
    if (std::memcmp(page + kVersion, fresh.data() + kVersion, 4) != 0)
        state.add(Severity::Oddity, Invariant::Header, 0, "header", "the text of the version isn't 4.0");
}

void checkPageMaps(CheckState &state)
{
    state.claim(0, "header");
    state.takeMap(kSecondMap, "second page map");
    state.claimMap(kFreePages, "free page map"); // its pages belong to nobody
}

bool checkDataPage(CheckState &state, PageNo number, std::uint32_t owner, const std::string &title)
{
    return state.guard(Invariant::DataPages, title, [&] {
        const DataPage page(state.pager, number);
        for (std::size_t i = 0; i < page.slots(); ++i)
            page.slot(i);
        const auto wrong = [&](std::string what) {
            state.fault(Invariant::DataPages, number, title, std::move(what));
        };
        if (page.bytes()[1] != std::byte{1})
            wrong("the second byte isn't 1");
        if (page.owner() != owner)
            wrong("the page says that it belongs to another owner");
        const auto stated = load<std::uint16_t>(page.bytes() + 2);
        if (stated != page.freeSpace())
            wrong("free space is said to be " + std::to_string(stated) + ", and is " +
                  std::to_string(page.freeSpace()));
        if (page.slots() > kMaxSlots)
            wrong("the page has " + std::to_string(page.slots()) + " rows");
        if (hasUnusedFlags(page))
            wrong("a slot has an unknown flag");
    });
}

void checkOwnership(CheckState &state)
{
    std::set<PageNo> maps = state.pagesOfMaps();
    maps.insert(1);
    for (const PageNo page : maps) {
        if (state.claim(page, "usage maps"))
            checkPageOfMaps(state, page);
    }
    const UsageMap free(state.pager, kFreePages);
    const PageNo reach = free.reach();
    for (PageNo page = 0; page < state.pager.pageCount(); ++page) {
        const bool isFree = free.contains(page);
        if (state.isOwned(page) && isFree)
            state.fault(Invariant::Ownership, page, state.ownerOf(page),
                        "the page is in use and marked free");
        if (!state.isOwned(page) && !isFree)
            state.add(page < reach ? Severity::Waste : Severity::Oddity, Invariant::Ownership, page, "",
                      "the page belongs to nothing, and isn't free");
    }
}

} // namespace vardelin::jet
