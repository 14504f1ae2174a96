#pragma once
// The pages of long values, for one who passes over a table's rows in their order.
//
// The values of rows that were added one after the other lie one behind the other. To read such pages a
// stretch at a time is faster than to have each of them mapped and then to wait for its first bytes: what was
// just read is at hand.
//
// Invariants:
//   1. A page that was asked for to be kept stays where it is until step().
//   2. Values that lie here and there aren't read in stretches: who finds too little use in them maps the pages instead.

#include "platform/jet/Pager.h"

#include <array>
#include <memory>

namespace vardelin::jet {

class Passage
{
public:
    explicit Passage(Pager &pager) : m_pager(pager) {}

    void step() { ++m_row; } // the next row: nothing need be kept any more
    void forget();           // the pages may have been changed
    // As Pager::page(). Not kept: valid until the next call.
    const std::byte *page(PageNo number, bool kept);
    // The same where it costs nothing; null otherwise.
    const std::byte *atHand(PageNo number) const;

private:
    static constexpr std::size_t kStretch = 32; // pages
    struct Stretch
    {
        PageNo first = 0;
        std::size_t pages = 0;
        std::uint64_t keptFor = 0; // a row
        std::unique_ptr<std::byte[]> bytes;
    };
    Stretch *find(PageNo number);
    Stretch *take(PageNo number);
    bool worthwhile() const;

    Pager &m_pager;
    std::array<Stretch, 4> m_stretches;
    std::size_t m_turn = 0;
    std::uint64_t m_row = 1;
    std::size_t m_asked = 0, m_read = 0; // pages, stretches
};

} // namespace vardelin::jet
