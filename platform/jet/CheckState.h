#pragma once
// What the parts of the checker share. Only the files Check*.cpp look at it.

#include "platform/jet/Check.h"
#include "platform/jet/Definition.h"
#include "platform/jet/Error.h"
#include "platform/jet/RowReader.h"
#include "platform/jet/UsageMap.h"

#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>

namespace vardelin::jet {

class CheckState
{
public:
    CheckState(Pager &pager, CheckReport &report);

    Pager &pager;
    CheckReport &report;

    void add(Severity severity, Invariant invariant, PageNo page, const std::string &owner, std::string what);
    void fault(Invariant invariant, PageNo page, const std::string &owner, std::string what)
    {
        add(Severity::Fault, invariant, page, owner, std::move(what));
    }

    // Runs a step that reads the file. Damage that stops it becomes a fault, and guard() false.
    template <class Step>
    bool guard(Invariant invariant, const std::string &owner, Step step)
    {
        try {
            step();
            return true;
        } catch (const Error &error) {
            stopped(invariant, owner, error);
            return false;
        }
    }

    // ---- Ownership

    bool inFile(PageNo page) const { return page < pager.pageCount(); }
    bool claim(PageNo page, const std::string &owner); // false: it can't be, and a fault is noted
    bool isOwned(PageNo page) const { return m_owners[page] != 0; }
    const std::string &ownerOf(PageNo page) const { return m_names[m_owners[page]]; }

    // The row of a usage map, and the pages that hold its bits, get this owner.
    void claimMap(RowId map, const std::string &owner);
    // Does so, and tells the pages of the map that lie in the file; they aren't claimed.
    std::vector<PageNo> takeMap(RowId map, const std::string &owner);
    std::set<PageNo> pagesOfMaps() const;
    bool isMap(RowId row) const { return m_maps.contains(row); }

private:
    void stopped(Invariant invariant, const std::string &owner, const Error &error);
    std::vector<std::uint32_t> m_owners; // for each page, a place in m_names; 0: nobody yet
    std::vector<std::string> m_names{""};
    std::map<RowId, std::string> m_maps; // by the map's row, whose it is
    std::array<std::array<std::size_t, 3>, kInvariants + 1> m_found{};
};

// A table as far as it could be read.
struct CheckedTable
{
    TableDefinition definition;
    std::string title;
    std::vector<RowLocation> rows; // live ones that can be decoded, by first place
};

struct CatalogObject
{
    std::int32_t id = 0, parent = 0;
    std::u16string name;
    std::int16_t type = 0;
    RowId row;
};

// ---- CheckPages.cpp

void checkHeaderPage(CheckState &state);
void checkPageMaps(CheckState &state);
// A data page: type, owner, slots and free space. False if its rows can't be read.
bool checkDataPage(CheckState &state, PageNo page, std::uint32_t owner, const std::string &title);
// At the end: what nobody claimed.
void checkOwnership(CheckState &state);

// ---- CheckTables.cpp

std::optional<CheckedTable> checkDefinition(CheckState &state, PageNo page, const std::string &title);
std::vector<CatalogObject> checkCatalog(CheckState &state, const CheckedTable &objects);
void checkProperties(CheckState &state, const CheckedTable &objects, const CatalogObject &object,
                     CheckedTable &table);
void checkRights(CheckState &state, const CheckedTable &rights, std::span<const CatalogObject> objects);

// ---- CheckRows.cpp

void checkRows(CheckState &state, CheckedTable &table); // fills table.rows
// A row's value; Null for what can't be read. For tables whose rows have been checked.
Cell checkedCell(CheckState &state, const CheckedTable &table, const RowLocation &row, const Column &column);

// ---- CheckIndexes.cpp

void checkIndexes(CheckState &state, const CheckedTable &table);
// Relationships: both tables know each other, and every key that refers to another table is there. By page.
void checkReferences(CheckState &state, const std::map<PageNo, TableDefinition> &tables);

} // namespace vardelin::jet
