#pragma once
// The catalog: MSysObjects (page 2), one row an object, and MSysACEs (page 3), the rights, one row an object
// and account.
//
//   MSysObjects  Id (tables: page of the definition), ParentId, Name, Type (1 table, 2 database, 3 container,
//                5 query, ...), DateCreate, DateUpdate, Owner (security id), Flags (0x80000000 or 0x2: system
//                object), ..., LvProp (property blob)
//   MSysACEs     ObjectId, SID, ACM, FInheritable
//
// Security ids are two bytes XORed with a mask of the file: Engine 02 03, Creator 02 04, Users 02 01, Admin
// 03 01. The mask is the owner of the row MSysObjects XOR 02 03.

#include "platform/jet/Jet.h"

namespace vardelin::jet {

inline constexpr PageNo kObjectsPage = 2, kAcesPage = 3, kQueriesPage = 4, kRelationshipsPage = 5;
inline constexpr std::int32_t kTablesContainer = 0x0F000001;

// Places in the columns of the base tables, in the order in which this engine asks for them.
struct ObjectColumns
{
    std::size_t id, parentId, name, type, dateCreate, dateUpdate, owner, flags, lvProp;
};

struct CatalogEntry
{
    std::u16string name;
    PageNo page = 0;
    RowId row; // in MSysObjects
    bool system = false;
};

class Catalog
{
public:
    explicit Catalog(FileParts &parts) : m_parts(parts) {}
    void forget() { m_known = false; }

    Table &objects(); // MSysObjects
    Table &aces();    // MSysACEs
    static ObjectColumns columnsOf(const Table &objects);

    const std::vector<CatalogEntry> &tables(); // in table order; in a section
    const CatalogEntry *find(std::u16string_view name);
    const CatalogEntry *find(PageNo page);

    // When the database was made: the date of MSysObjects itself, 0 if nothing says so.
    DateTime created();

    // The row of a new table and its rights; in a write section.
    RowId addTable(std::u16string_view name, PageNo page, const Bytes &properties);

private:
    std::array<std::byte, 2> securityMask();
    Bytes pagesOfObjects();
    FileParts &m_parts;
    std::vector<CatalogEntry> m_tables;
    Bytes m_seen;         // the pages of MSysObjects that m_tables was read from
    bool m_known = false; // that they still are the same
};

// Rows of the catalog and of the rights in a bare file.
void fillBareCatalog(Catalog &catalog);

// Now, in local time.
DateTime currentDate();

} // namespace vardelin::jet
