#pragma once
// What stands behind an opened File: its pager, its free pages, its catalog, and the tables that were asked
// for.
//
// Invariants:
//   1. Knowledge kept in memory (catalog, definitions) is of `generation`; it is compared with the bytes of
//      the file whenever others have committed or changes were undone. Our own commits change rows and counts,
//      not the knowledge; what does (a new table, rows of the catalog) calls forget().
//   2. A Table lives as long as the File. Its definition object is replaced only if the file holds another
//      one now; it never comes to stand for a table of another name.

#include "platform/jet/Allocation.h"
#include "platform/jet/Catalog.h"
#include "platform/jet/Definition.h"
#include "platform/jet/Jet.h"

#include <map>

namespace vardelin::jet {

class FileParts
{
public:
    explicit FileParts(std::unique_ptr<Pager> pager);
    ~FileParts();

    Pager &pager() { return *m_pager; }
    Allocation &allocation() { return m_allocation; }
    Catalog &catalog() { return m_catalog; }

    // Right behind the begin of a section: notices what others have committed. WriteError once another
    // database was copied over this one: what is known here, row places among it, belongs to the old one.
    void enter();
    void committed(); // right behind a commit of ours
    void forget();    // changes were undone, or the catalog was changed
    // A place in the file that was looked up is to be looked up again when this number has changed.
    std::uint64_t changes() const { return m_changes; }
    void touch() { ++m_changes; }
    std::uint64_t generation() const { return m_generation; }

    Table &baseTable(PageNo page, std::u16string_view name);
    Table &userTable(const CatalogEntry &entry);
    const TableDefinition *definitionOf(PageNo page); // of a user table, up to date; null: there is none
    // Brings the definition up to date; TableNotFound if the table has gone.
    void refresh(TableDefinition &definition);

private:
    Bytes propertiesAt(RowId catalogRow);
    void readProperties(TableDefinition &definition);
    bool isCurrent(const TableDefinition &definition, const DefinitionBytes &source);
    // What no change of a database changes: the masked part of page 0 and the moment of its creation.
    struct Origin
    {
        Bytes header;
        DateTime created;
        bool operator==(const Origin &) const = default;
    };
    std::optional<Origin> origin(); // none while the file is made, or if it can't be read
    bool isSameDatabase();

    std::unique_ptr<Pager> m_pager;
    Allocation m_allocation;
    Catalog m_catalog;
    std::map<PageNo, std::unique_ptr<Table>> m_tables;
    std::vector<std::unique_ptr<Table>> m_gone; // whose pages are another table's now
    std::optional<Origin> m_origin;
    bool m_replaced = false;
    std::uint64_t m_version = 0, m_generation = 1, m_changes = 0;
};

// A read section with the caches up to date.
class Reading
{
public:
    explicit Reading(FileParts &parts) : m_section(parts.pager()) { parts.enter(); }

private:
    ReadSection m_section;
};

// One change of the file. Without commit() it is undone.
class Writing
{
public:
    explicit Writing(FileParts &parts) : m_parts(parts), m_section(parts.pager())
    {
        parts.enter();
        parts.touch();
    }
    ~Writing()
    {
        if (!m_done)
            m_parts.forget();
    }
    void commit()
    {
        m_section.commit();
        m_parts.committed();
        m_done = true;
    }
    Writing(const Writing &) = delete;
    Writing &operator=(const Writing &) = delete;

private:
    FileParts &m_parts;
    WriteSection m_section;
    bool m_done = false;
};

} // namespace vardelin::jet
