#pragma once
// Making tables: definition, usage maps and index roots; and the pages of a bare file.
//
// Usage maps of a table, as rows of a data page of their own (owner 0), in this order: owned pages, pages
// with room; these two for each long value column by column number; one for each physical index, holding the
// root page. 57 rows fill a page; a column's two maps lie on one page.
//
// A bare file, 16 pages: 0 header, 1 free page map, 2 to 5 definitions of the base tables, 6 their usage maps
// (31 rows), 7 to 13 roots of their indexes, 14 rows of MSysObjects, 15 rows of MSysACEs.

#include "platform/jet/FileParts.h"

namespace vardelin::jet {

// In a write section. ItemExists, InvalidArgument (names, sizes, columns of indexes), TooManyColumns,
// TooManyIndexes, RecordTooLarge (fixed columns that no row can hold).
PageNo createTable(FileParts &parts, const NewTable &table);

// Puts usage maps on pages of their own, one behind the other.
class MapRows
{
public:
    explicit MapRows(FileParts &parts) : m_parts(parts) {}
    // `together`: so many maps must lie on one page from this one on.
    RowId add(const Bytes &map, std::size_t together = 1);

private:
    FileParts &m_parts;
    PageNo m_page = 0;
};

// Fills an empty file; in a write section.
void createBareFile(FileParts &parts);

} // namespace vardelin::jet
