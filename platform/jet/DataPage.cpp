#include "platform/jet/DataPage.h"

namespace vardelin::jet {

namespace {

constexpr std::uint16_t kOffsetMask = 0x1FFF;

std::uint16_t slotWord(const std::byte *page, std::size_t slot)
{
    return load<std::uint16_t>(page + kSlotsAt + 2 * slot);
}

void setSlotWord(std::byte *page, std::size_t slot, std::size_t offset, std::uint16_t flags)
{
    store(page + kSlotsAt + 2 * slot, static_cast<std::uint16_t>(offset | flags));
}

} // namespace

DataPage::DataPage(const Pager &pager, PageNo number, const std::byte *bytes)
    : m_pager(&pager), m_number(number), m_bytes(bytes), m_slots(load<std::uint16_t>(bytes + 12))
{
    if (bytes[0] != std::byte{1})
        place().damaged("isn't a data page");
    if (m_slots > (kPageSize - kSlotsAt) / 2)
        place().damaged("claims " + std::to_string(m_slots) + " rows");
}

void DataPage::requireOwner(std::uint32_t owner) const
{
    if (this->owner() != owner)
        place().damaged("belongs to another owner");
}

Slot DataPage::slot(std::size_t number) const
{
    if (number >= m_slots)
        place().damaged("has no row " + std::to_string(number));
    const std::uint16_t word = slotWord(m_bytes, number);
    Slot slot;
    slot.flags = word & kDeleted;
    slot.begin = word & kOffsetMask;
    slot.end = number == 0 ? kPageSize : slotWord(m_bytes, number - 1) & kOffsetMask;
    if (slot.end > kPageSize || slot.begin > slot.end || slot.begin < kSlotsAt + 2 * m_slots)
        place().damaged("row " + std::to_string(number) + " lies outside its page");
    return slot;
}

std::span<const std::byte> DataPage::row(std::size_t number) const
{
    const Slot at = slot(number);
    return {m_bytes + at.begin, at.end - at.begin};
}

std::size_t DataPage::freeSpace() const
{
    const std::size_t lowest = m_slots == 0 ? kPageSize : slot(m_slots - 1).begin;
    return lowest - kSlotsAt - 2 * m_slots;
}

bool DataPage::empty() const
{
    for (std::size_t i = 0; i < m_slots; ++i) {
        if ((slotWord(m_bytes, i) & kDeleted) != kDeleted)
            return false;
    }
    return true;
}

DataPageEditor::DataPageEditor(Pager &pager, PageNo number)
    : m_pager(&pager), m_number(number), m_bytes(nullptr)
{
    const DataPage before(pager, number);
    for (std::size_t i = 0; i < before.slots(); ++i)
        before.slot(i);
    m_bytes = pager.change(number);
}

void DataPageEditor::init(std::byte *page, std::uint32_t owner)
{
    std::memset(page, 0, kPageSize);
    page[0] = page[1] = std::byte{1};
    store(page + 2, static_cast<std::uint16_t>(kPageSize - kSlotsAt));
    store(page + 4, owner);
}

void DataPageEditor::setFreeSpace()
{
    store(m_bytes + 2, static_cast<std::uint16_t>(view().freeSpace()));
}

std::uint8_t DataPageEditor::add(std::span<const std::byte> row, std::uint16_t flags)
{
    const DataPage page = view();
    if (!page.takesRow(row.size()))
        page.place().damaged("has no room for a row");
    const std::size_t slot = page.slots();
    const std::size_t begin = (slot == 0 ? kPageSize : page.slot(slot - 1).begin) - row.size();
    std::memcpy(m_bytes + begin, row.data(), row.size());
    setSlotWord(m_bytes, slot, begin, flags);
    store(m_bytes + 12, static_cast<std::uint16_t>(slot + 1));
    setFreeSpace();
    return static_cast<std::uint8_t>(slot);
}

// Moves the rows of higher slots so that this one has the new length; its content is undefined afterwards.
void DataPageEditor::resize(std::size_t slot, std::size_t length)
{
    const DataPage page = view();
    const Slot at = page.slot(slot);
    const std::size_t old = at.end - at.begin;
    if (length > old && length - old > page.freeSpace())
        page.place().damaged("has no room for a longer row");
    const std::size_t last = page.slots() - 1;
    const std::size_t lowest = page.slot(last).begin;
    const std::size_t target = lowest + old - length;
    std::memmove(m_bytes + target, m_bytes + lowest, at.begin - lowest);
    for (std::size_t i = slot; i <= last; ++i) {
        const std::uint16_t word = slotWord(m_bytes, i);
        setSlotWord(m_bytes, i, (word & kOffsetMask) + old - length, word & kDeleted);
    }
    setFreeSpace();
}

void DataPageEditor::replace(std::size_t slot, std::span<const std::byte> row, std::uint16_t flags)
{
    const Slot at = view().slot(slot);
    if (row.size() != at.end - at.begin)
        resize(slot, row.size());
    const std::size_t begin = at.end - row.size();
    if (!row.empty())
        std::memcpy(m_bytes + begin, row.data(), row.size());
    setSlotWord(m_bytes, slot, begin, flags);
}

void DataPageEditor::erase(std::size_t slot)
{
    replace(slot, {}, kDeleted);
}

} // namespace vardelin::jet
