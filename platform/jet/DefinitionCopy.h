#pragma once
// A definition for the same table in another file: its bytes with dropped columns left out and every number
// and place handed out anew. Layout: Definition.h.
//
// Invariants:
//   1. Descriptors, names, indexes and their flags are kept as they are, known or not, in their order in the
//      list.
//   2. Column numbers, variable indexes and fixed offsets follow the old numbers without their gaps.
//   3. Row count, auto-number, index counts, maps and roots are of the new file; foreign keys name its tables.

#include "platform/jet/Definition.h"

#include <map>

namespace vardelin::jet {

class DefinitionCopy
{
public:
    // source: of a definition that parseDefinition() has accepted.
    DefinitionCopy(const Pager &pager, const DefinitionBytes &source);

    std::size_t pageCount() const; // of the definition itself
    std::size_t indexCount() const { return m_physical.size(); }
    std::size_t longValueCount() const { return m_longValues.size(); }

    // Places in the new file.
    void setMaps(RowId owned, RowId freeSpace);
    void setIndex(std::size_t physical, RowId map, PageNo root);
    void setLongValue(std::size_t place, RowId owned, RowId freeSpace); // in order of the column number
    // Old definition pages and the new ones. Damaged if a foreign key names another.
    void setTables(const std::map<PageNo, PageNo> &pages);

    // rows: of the table; distinct: the keys of each physical index.
    void setCounts(std::uint32_t rows, std::int32_t autoNumber, std::span<const std::uint32_t> distinct);
    Bytes bytes() const;

private:
    void read(Reader &reader);
    void renumber();

    const Pager &m_pager;
    PageNo m_page;
    Bytes m_header;               // 63 bytes
    std::vector<Bytes> m_counts;  // of the physical indexes
    std::vector<Bytes> m_columns; // descriptors
    std::vector<Bytes> m_names;   // of the columns, with their lengths
    std::vector<Bytes> m_physical, m_logical, m_logicalNames;
    std::vector<Bytes> m_longValues; // by column number
};

} // namespace vardelin::jet
