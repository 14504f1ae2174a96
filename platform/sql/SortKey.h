#pragma once
// Bytes by which rows are put in order.

#include "platform/base/Value.h"
#include "platform/jet/Types.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vardelin::sql {

// Behind what stands in `key` already. Keys compare bytewise: Null first, then numbers and dates, then texts
// in the general order.
void appendSortKey(std::string &key, const Value &value, bool descending);

// A row's place with what its reader noted of it on the way.
struct MarkedPlace
{
    jet::RowId row;
    std::int32_t mark = 0;
};

// Rows' places on their way to be sorted: the place, the first bytes of its key, and all keys' other bytes in
// one piece.
class KeyedPlaces
{
public:
    void add(MarkedPlace place, const std::string &key);
    std::vector<MarkedPlace> sorted(); // stable; once

private:
    struct Entry
    {
        std::uint64_t prefix;
        std::size_t offset;
        std::uint32_t size;
        MarkedPlace place;
    };
    std::vector<Entry> m_entries;
    std::string m_keys;
};

} // namespace vardelin::sql
