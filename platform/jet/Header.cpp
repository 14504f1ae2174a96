#include "platform/jet/Header.h"

#include "platform/jet/Error.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

namespace vardelin::jet {

namespace {

constexpr std::size_t kMaskBegin = 0x18, kMaskSize = 0x80;
constexpr std::size_t kEncryptionKey = 0x3E, kPassword = 0x42, kPasswordSize = 40, kCreationDate = 0x72;
constexpr std::string_view kJetName{"Standard Jet DB\0", 16};
constexpr std::string_view kLaterName{"Standard ACE DB\0", 16};

std::array<std::byte, kMaskSize> headerMask()
{
    constexpr std::array<std::uint8_t, 4> key{0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, 256> state;
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    for (std::size_t i = 0, j = 0; i < state.size(); ++i) {
        j = (j + state[i] + key[i % key.size()]) & 0xFF;
        std::swap(state[i], state[j]);
    }
    std::array<std::byte, kMaskSize> mask;
    for (std::size_t n = 0, i = 0, j = 0; n < mask.size(); ++n) {
        i = (i + 1) & 0xFF;
        j = (j + state[i]) & 0xFF;
        std::swap(state[i], state[j]);
        mask[n] = std::byte{state[(state[i] + state[j]) & 0xFF]};
    }
    return mask;
}

void applyMask(std::byte *page)
{
    const auto mask = headerMask();
    for (std::size_t i = 0; i < mask.size(); ++i)
        page[kMaskBegin + i] ^= mask[i];
}

void applyPasswordMask(std::byte *page)
{
    const double created = load<double>(page + kCreationDate);
    const auto days = created > -1e9 && created < 1e9 ? static_cast<std::int32_t>(created) : 0;
    std::array<std::byte, 4> pattern;
    store(pattern.data(), days);
    for (std::size_t i = 0; i < kPasswordSize; ++i)
        page[kPassword + i] ^= pattern[i % pattern.size()];
}

bool hasPassword(std::byte *unmasked)
{
    applyPasswordMask(unmasked);
    return std::any_of(unmasked + kPassword, unmasked + kPassword + kPasswordSize,
                       [](std::byte b) { return b != std::byte{0}; });
}

} // namespace

void checkHeader(Pager &pager)
{
    const std::string path = pager.path().string();
    if (pager.pageCount() == 0)
        throw Error(Code::NewerFormat, path, "the file is empty");
    Bytes page(pager.page(0), pager.page(0) + kPageSize);
    const std::string_view name(reinterpret_cast<const char *>(page.data()) + 4, kJetName.size());
    if (load<std::uint32_t>(page.data()) != 0x00000100 || (name != kJetName && name != kLaterName))
        throw Error(Code::NewerFormat, path, "page 0: not such a database");
    const auto version = load<std::uint32_t>(page.data() + 0x14);
    if (name == kJetName && version == 0)
        throw Error(Code::OlderFormat, path);
    if (name != kJetName || version != 1)
        throw Error(Code::NewerFormat, path, "page 0: made by a later engine");
    applyMask(page.data());
    if (load<std::uint32_t>(page.data() + kEncryptionKey) != 0 || hasPassword(page.data()))
        throw Error(Code::Password, path);
    if (pager.pageCount() < 6)
        throw Error(Code::Damaged, path,
                    "the file is cut off behind page " + std::to_string(pager.pageCount() - 1));
}

void initHeader(std::byte *page)
{
    std::memset(page, 0, kPageSize);
    store(page, std::uint32_t{0x00000100});
    std::memcpy(page + 4, kJetName.data(), kJetName.size());
    store(page + 0x14, std::uint32_t{1});
    store(page + 0x18, std::uint32_t{0x100});
    store(page + 0x1C, std::uint32_t{0x101});
    for (std::uint32_t i = 0; i < 4; ++i)
        store(page + 0x20 + 4 * i, 2 + i);
    store(page + 0x3C, std::uint16_t{1252});
    store(page + 0x6A, std::uint32_t{0x261C});
    store(page + 0x6E, std::uint16_t{0x0409});
    store(page + kCreationDate, std::uint64_t{0x40E4AB3E3BD3853E});
    applyPasswordMask(page);
    applyMask(page);
    store(page + 0x98, std::uint32_t{0x654});
    std::memcpy(page + 0x9C, "4.0", 4);
    for (std::size_t i = 0; i < 256; ++i)
        store(page + 0xE00 + 2 * i, static_cast<std::uint16_t>(i == 0 ? 0x0101 : 0x0100));
}

} // namespace vardelin::jet
