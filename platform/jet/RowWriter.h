#pragma once
// Adding, changing and deleting rows of a table, its indexes, long values, maps and counts with them.
//
// Invariants:
//   1. Everything that can be refused (types, lengths, Null, zero length, uniqueness, relationships, size) is
//      checked before the first change.
//   2. A row is added behind all others: on the last page of the table or on a new one above it. Table order
//      is order of adding.
//   3. A row is known everywhere by its first place. A moved row has the flag 0x8000, and its first place
//      points to it, never to another forward.
//   4. The free-space map lists a page of the table exactly if 128 bytes or more are free on it.
//   5. Where the file has a relationship, a row refers to one that is there, and one that is referred to
//      stays as it is. What the original engine would pass on (cascades) is refused.
//   6. A page left without a live row, forward or moved row is freed.

#include "platform/jet/FileParts.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/RowPlan.h"
#include "platform/jet/RowReader.h"

namespace vardelin::jet {

// Gives the tree of an index its pages.
class PagesOfIndex : public IndexPages
{
public:
    PagesOfIndex(Pager &pager, Allocation &allocation, RowId map)
        : m_pager(pager), m_allocation(allocation), m_map(pager, map)
    {}
    PageNo allocate() override;
    void release(PageNo page) override;

private:
    Pager &m_pager;
    Allocation &m_allocation;
    UsageMap m_map;
};

class RowWriter
{
public:
    // definition: the table's, up to date. Inside a write section.
    RowWriter(FileParts &parts, const Table &table, const TableDefinition &definition);

    // lastGiven: the last auto-number that was given out here, whether or not its row came to be.
    RowId insert(std::span<const ColumnValue> values, std::int32_t &lastGiven);
    void update(RowId id, std::span<const ColumnValue> values);
    void erase(RowId id);

private:
    struct Key
    {
        std::string bytes;
        bool allNull = false, anyNull = false;
    };
    struct KeyChange
    {
        const PhysicalIndex *index;
        std::optional<Key> before, after; // none: the row has no entry
    };

    RowLocation locate(RowId id) const;
    template <class ValueOf>
    std::optional<Key> keyOf(const PhysicalIndex &index, bool isNew, ValueOf valueOf) const;
    std::vector<KeyChange> keyChanges(const RowPlan *plan, const RowView *old) const;
    bool concerns(const PhysicalIndex &index, const RowPlan &plan) const;
    void checkUnique(const std::vector<KeyChange> &changes) const;
    void checkRelationships(const std::vector<KeyChange> &changes) const;
    void checkRelationship(const LogicalIndex &index, const KeyChange &change,
                           const std::vector<KeyChange> &all) const;
    void changeKeys(const std::vector<KeyChange> &changes, RowId row);

    void writeOutside(RowPlan &plan);
    void releaseLongValue(std::size_t column, std::span<const std::byte> row, RowId id);
    RowId place(std::span<const std::byte> row, std::uint16_t flags);
    void replaceRow(const RowLocation &at, std::span<const std::byte> row);
    bool replaceIfFits(RowId at, std::span<const std::byte> row, std::uint16_t flags);
    void forward(RowId from, RowId to);
    void eraseSlot(RowId at);
    void noteRoom(PageNo page);
    void changeRowCount(std::int32_t by);

    FileParts &m_parts;
    const Table &m_table;
    const TableDefinition &m_definition;
    Pager &m_pager;
    Allocation &m_allocation;
    UsageMap m_owned, m_freeSpace;
};

} // namespace vardelin::jet
