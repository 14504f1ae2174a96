// An input is a file's pages and, behind the last whole one, a script of at most kLongestScript bytes.
// Changes are those that a page file suffers: a wrong bit, number or row pointer, a page written to the wrong
// place, a file cut off.

#include "tests/fuzz/PageMutator.h"
#include "platform/jet/Bytes.h"

#include <algorithm>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace vardelin::jet::fuzz {

namespace {

constexpr std::size_t kLongestScript = 96;
static_assert(kLongestScript < kPageSize);

class Mutation
{
public:
    Mutation(std::uint8_t *data, std::size_t size, unsigned seed)
        : m_pages(data), m_count(size / kPageSize), m_random(seed)
    {}

    std::size_t count() const { return m_count; }
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    void changePages()
    {
        for (std::size_t times = 1 + below(3); times > 0 && m_count > 0; --times)
            changeOne();
    }

private:
    // Bytes that mean something are rarely zero; the heads of pages and their ends matter most.
    std::uint8_t *place(std::size_t width)
    {
        std::uint8_t *page = m_pages + below(m_count) * kPageSize;
        std::size_t at = 0;
        for (int tries = 0; tries < 16; ++tries) {
            at = below(3) == 0 ? below(64) : below(kPageSize);
            if (page[at] != 0)
                break;
        }
        return page + std::min(at, kPageSize - width);
    }

    void changeOne()
    {
        switch (below(8)) {
        case 0:
            *place(1) ^= static_cast<std::uint8_t>(1U << below(8));
            return;
        case 1:
            *place(1) = static_cast<std::uint8_t>(below(256));
            return;
        case 2:
            change16();
            return;
        case 3:
        case 4:
            change32();
            return;
        case 5: // a piece of a page elsewhere
            std::memmove(place(64), place(64), 1 + below(64));
            return;
        case 6: // a page in the place of another
            std::memmove(m_pages + below(m_count) * kPageSize, m_pages + below(m_count) * kPageSize,
                         kPageSize);
            return;
        default:
            if (below(16) == 0)
                m_count = 1 + below(m_count);
            else
                *place(1) = 0;
        }
    }

    void change16()
    {
        constexpr std::uint16_t kOdd[] = {0, 1, 0xFFFF, 4095, 4096, 14, 0x4000, 0x8000, 0xC000, 255, 256};
        std::uint8_t *at = place(2);
        auto value = load<std::uint16_t>(reinterpret_cast<std::byte *>(at));
        value =
            below(2) == 0 ? kOdd[below(std::size(kOdd))] : static_cast<std::uint16_t>(value + below(9) - 4U);
        store(reinterpret_cast<std::byte *>(at), value);
    }

    void change32() // mostly another page, or a row of one
    {
        constexpr std::uint32_t kOdd[] = {0, 1, 0xFFFFFFFF, 0x7FFFFFFF, 0x80000000, 0x40000000, 0x3FFFFFFF};
        const auto page = static_cast<std::uint32_t>(below(m_count + 1));
        const std::uint32_t value = below(3) == 0   ? kOdd[below(std::size(kOdd))]
                                    : below(2) == 0 ? page
                                                    : page << 8 | static_cast<std::uint32_t>(below(8));
        store(reinterpret_cast<std::byte *>(place(4)), value);
    }

    std::uint8_t *m_pages;
    std::size_t m_count;
    std::minstd_rand m_random;
};

} // namespace

Input split(const std::uint8_t *data, std::size_t size)
{
    const std::size_t pages = size / kPageSize * kPageSize;
    const auto *bytes = reinterpret_cast<const std::byte *>(data);
    return {Bytes(bytes, bytes + pages), {data + pages, std::min(size - pages, kLongestScript)}};
}

} // namespace vardelin::jet::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed)
{
    using namespace vardelin::jet;
    fuzz::Mutation mutation(data, size, seed);
    const std::size_t before = mutation.count() * kPageSize;
    std::size_t script = std::min(size - before, fuzz::kLongestScript);
    if (mutation.below(3) != 0)
        mutation.changePages();
    const std::size_t pages = mutation.count() * kPageSize;
    std::memmove(data + pages, data + before, script);
    const std::size_t room = std::min(maxSize - pages, fuzz::kLongestScript);
    if (room > 0 && mutation.below(2) == 0)
        script = LLVMFuzzerMutate(data + pages, std::min(script, room), room);
    return pages + script;
}
