#include "platform/sql/SortKey.h"

#include "platform/jet/TextOrder.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace vardelin::sql {

namespace {

enum Tag : char { NullTag = 0, NumberTag = 1, TextTag = 2 };

constexpr std::uint64_t kSign = 0x8000000000000000u;

void appendBigEndian(std::string &key, std::uint64_t bits)
{
    for (int shift = 56; shift >= 0; shift -= 8)
        key += static_cast<char>(bits >> shift);
}

// The bits of a double rise with it if the sign is turned, and the others too for a negative one.
void appendDouble(std::string &key, double number)
{
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    appendBigEndian(key, bits & kSign ? ~bits : bits | kSign);
}

} // namespace

void appendSortKey(std::string &key, const Value &value, bool descending)
{
    const std::size_t start = key.size();
    if (value.isNull()) {
        key += NullTag;
    } else if (const auto *text = std::get_if<QString>(&value.variant())) {
        key += TextTag;
        const std::u16string_view view(reinterpret_cast<const char16_t *>(text->utf16()),
                                       static_cast<std::size_t>(text->size()));
        key += jet::textKey(view, std::numeric_limits<std::size_t>::max());
    } else {
        key += NumberTag;
        appendDouble(key, toDouble(value));
        // Money has more digits than a double tells apart.
        if (const auto *money = std::get_if<Currency>(&value.variant()))
            appendBigEndian(key, static_cast<std::uint64_t>(money->tenThousandths) ^ kSign);
    }
    if (descending)
        std::transform(key.begin() + static_cast<std::ptrdiff_t>(start), key.end(),
                       key.begin() + static_cast<std::ptrdiff_t>(start),
                       [](char c) { return static_cast<char>(~c); });
}

void KeyedPlaces::add(MarkedPlace place, const std::string &key)
{
    constexpr std::size_t kPrefix = 8;
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < kPrefix; ++i)
        prefix = prefix << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0u);
    const std::string_view rest = std::string_view(key).substr(std::min(kPrefix, key.size()));
    m_entries.push_back({prefix, m_keys.size(), static_cast<std::uint32_t>(rest.size()), place});
    m_keys += rest;
}

std::vector<MarkedPlace> KeyedPlaces::sorted()
{
    const auto rest = [this](const Entry &entry) {
        return std::string_view(m_keys).substr(entry.offset, entry.size);
    };
    std::ranges::stable_sort(m_entries, [&](const Entry &left, const Entry &right) {
        return left.prefix != right.prefix ? left.prefix < right.prefix : rest(left) < rest(right);
    });
    std::vector<MarkedPlace> places;
    places.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        places.push_back(entry.place);
    return places;
}

} // namespace vardelin::sql
