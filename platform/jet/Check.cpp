#include "platform/jet/Check.h"

#include "platform/jet/Catalog.h"
#include "platform/jet/CheckState.h"
#include "platform/jet/Header.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::size_t kMostFindings = 20;
constexpr std::int16_t kTableObject = 1;

// "page 31: row 4 is too short" to 31 and "row 4 is too short".
std::pair<PageNo, std::string> partReason(const std::string &reason)
{
    static constexpr std::string_view kStart = "page ";
    const std::size_t colon = reason.find(": ");
    if (!reason.starts_with(kStart) || colon == std::string::npos)
        return {0, reason};
    const std::string number = reason.substr(kStart.size(), colon - kStart.size());
    if (number.empty() || number.size() > 9 || number.find_first_not_of("0123456789") != std::string::npos)
        return {0, reason};
    return {static_cast<PageNo>(std::stoul(number)), reason.substr(colon + 2)};
}

void checkTable(CheckState &state, CheckedTable &table)
{
    ++state.report.tables;
    state.report.indexes += table.definition.physical.size();
    state.guard(Invariant::Rows, table.title, [&] { checkRows(state, table); });
    state.report.rows += table.rows.size();
    checkIndexes(state, table);
}

// The catalog's own table first, for it names the others.
void checkTables(CheckState &state)
{
    auto objects = checkDefinition(state, kObjectsPage, "MSysObjects");
    if (!objects)
        return;
    checkTable(state, *objects);
    const std::vector<CatalogObject> catalog = checkCatalog(state, *objects);
    std::set<PageNo> seen{kObjectsPage};
    std::map<PageNo, TableDefinition> definitions;
    for (const CatalogObject &object : catalog) {
        const auto page = static_cast<PageNo>(object.id);
        if (object.type != kTableObject || !seen.insert(page).second)
            continue; // an id used twice has been told by checkCatalog()
        auto table = checkDefinition(state, page, toUtf8(object.name));
        if (!table)
            continue;
        checkProperties(state, *objects, object, *table);
        checkTable(state, *table);
        if (object.id == kAcesPage)
            checkRights(state, *table, catalog);
        definitions.emplace(page, std::move(table->definition));
    }
    checkReferences(state, definitions);
}

} // namespace

const char *nameOf(Invariant invariant)
{
    static constexpr const char *kNames[] = {
        "header", "ownership",   "maps",   "catalog", "definitions", "data pages", "rows",
        "values", "long values", "counts", "trees",   "entries",     "keys",       "properties"};
    return kNames[static_cast<std::size_t>(invariant) - 1];
}

std::string textOf(const Finding &finding)
{
    std::string text = "page " + std::to_string(finding.page);
    if (!finding.owner.empty())
        text += ", " + finding.owner;
    return text + ": " + finding.what;
}

bool CheckReport::has(Severity severity) const
{
    return std::any_of(findings.begin(), findings.end(),
                       [severity](const Finding &finding) { return finding.severity == severity; });
}

CheckReport checkFile(const std::filesystem::path &path, Disk &disk)
{
    const std::unique_ptr<Pager> pager = Pager::open(disk, path, Pager::Access::Read);
    const ReadSection section(*pager);
    checkHeader(*pager);
    CheckReport report;
    CheckState state(*pager, report);
    report.pages = pager->pageCount();
    state.guard(Invariant::Header, "", [&] { checkHeaderPage(state); });
    state.guard(Invariant::Maps, "", [&] { checkPageMaps(state); });
    state.guard(Invariant::Catalog, "", [&] { checkTables(state); });
    state.guard(Invariant::Ownership, "", [&] { checkOwnership(state); });
    return report;
}

// ---- What the parts share

CheckState::CheckState(Pager &checked, CheckReport &into)
    : pager(checked), report(into), m_owners(checked.pageCount())
{}

void CheckState::add(Severity severity, Invariant invariant, PageNo page, const std::string &owner,
                     std::string what)
{
    auto &found = m_found[static_cast<std::size_t>(invariant)][static_cast<std::size_t>(severity)];
    if (++found > kMostFindings)
        ++report.leftOut;
    else
        report.findings.push_back({invariant, severity, page, owner, std::move(what)});
}

// What the machine can't do isn't the file's fault.
void CheckState::stopped(Invariant invariant, const std::string &owner, const Error &error)
{
    if (error.code() != Code::Damaged)
        throw error;
    auto [page, what] = partReason(error.reason());
    fault(invariant, page, owner, std::move(what));
}

bool CheckState::claim(PageNo page, const std::string &owner)
{
    if (!inFile(page) || isOwned(page)) {
        fault(Invariant::Ownership, page, owner,
              inFile(page) ? "the page belongs to " + ownerOf(page) + " as well"
                           : "a page beyond the end of the file is listed");
        return false;
    }
    if (m_names.back() != owner)
        m_names.push_back(owner);
    m_owners[page] = static_cast<std::uint32_t>(m_names.size() - 1);
    return true;
}

void CheckState::claimMap(RowId row, const std::string &owner)
{
    if (const auto [other, fresh] = m_maps.emplace(row, owner); !fresh)
        fault(Invariant::Maps, row.page, owner, "the usage map is that of " + other->second + " as well");
    guard(Invariant::Maps, owner, [&] {
        for (const PageNo bits : UsageMap(pager, row).bitmapPages())
            claim(bits, owner + " (bit map)");
    });
}

std::vector<PageNo> CheckState::takeMap(RowId row, const std::string &owner)
{
    std::vector<PageNo> pages;
    const UsageMap map(pager, row);
    if (map.absent())
        return pages;
    claimMap(row, owner);
    guard(Invariant::Maps, owner, [&] {
        for (PageNo page = map.next(0); page != kNoPage; page = map.next(page + 1)) {
            if (!inFile(page))
                return fault(Invariant::Maps, row.page, owner,
                             "the usage map names page " + std::to_string(page) +
                                 ", beyond the end of the file");
            pages.push_back(page);
        }
    });
    return pages;
}

std::set<PageNo> CheckState::pagesOfMaps() const
{
    std::set<PageNo> pages;
    for (const auto &[row, owner] : m_maps)
        pages.insert(row.page);
    return pages;
}

} // namespace vardelin::jet
