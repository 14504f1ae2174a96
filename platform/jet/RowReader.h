#pragma once
// Finding the bytes of a row from its first place.
//
// Invariants:
//   1. A forward leads to a moved row of the same table, and a moved row is never a forward itself.

#include "platform/jet/DataPage.h"
#include "platform/jet/Jet.h"

namespace vardelin::jet {

// Where a row was added and where its bytes are now.
struct RowLocation
{
    RowId first, actual;
    bool moved() const { return first != actual; }
};

struct RowReader
{
    static std::optional<RowLocation> locate(Pager &pager, PageNo table, RowId id); // none: it has gone
    // The moved row of a forward.
    static RowId target(const DataPage &page, std::size_t slot);
    static std::span<const std::byte> bytes(Pager &pager, PageNo table, const RowLocation &location);
    // The value of a column; long values are read whole.
    static Cell cell(Pager &pager, const TableDefinition &table, const Column &column,
                     std::span<const std::byte> row, RowId place, Passage *passage = nullptr);
    static RowView view(const Table &table, RowId id, std::span<const std::byte> bytes,
                        Passage *passage = nullptr);
};

} // namespace vardelin::jet
