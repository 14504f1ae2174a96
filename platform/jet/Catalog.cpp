#include "platform/jet/Catalog.h"

#include "platform/jet/FileParts.h"
#include "platform/jet/TextOrder.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace vardelin::jet {

namespace {

using Id = std::array<std::byte, 2>;
constexpr Id kEngine{std::byte{2}, std::byte{3}}, kCreator{std::byte{2}, std::byte{4}};
constexpr Id kUsers{std::byte{2}, std::byte{1}}, kAdmin{std::byte{3}, std::byte{1}};
constexpr Id kFreshMask{std::byte{0x67}, std::byte{0x8A}}; // belongs to the page 0 of Header.cpp
constexpr std::int32_t kSystemFlag = INT32_MIN;
constexpr std::int16_t kTable = 1, kDatabase = 2, kContainer = 3;
constexpr std::int32_t kRoot = 0x0F000000, kDatabases = 0x0F000002, kRelationships = 0x0F000003,
                       kMsysDb = 0x10000000;

Bytes masked(const Id &plain, const Id &mask)
{
    return {plain[0] ^ mask[0], plain[1] ^ mask[1]};
}

std::size_t columnNamed(const Table &table, std::u16string_view name)
{
    const auto place = table.findColumn(name);
    if (!place)
        throw Error(Code::Damaged, {}, "page 2: the catalog lacks the column " + toUtf8(name));
    return *place;
}

template <class T>
std::optional<T> valueOf(const RowView &row, std::size_t column)
{
    const Cell cell = row.cell(column);
    const T *value = std::get_if<T>(&cell);
    return value ? std::optional<T>(*value) : std::nullopt;
}

void addRight(Table &aces, std::int32_t object, const Bytes &account, std::uint32_t rights, bool inheritable)
{
    const ColumnValue values[] = {{columnNamed(aces, u"ObjectId"), object},
                                  {columnNamed(aces, u"SID"), account},
                                  {columnNamed(aces, u"ACM"), static_cast<std::int32_t>(rights)},
                                  {columnNamed(aces, u"FInheritable"), inheritable}};
    aces.insert(values);
}

} // namespace

DateTime currentDate()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const std::chrono::sys_days day = std::chrono::year{local.tm_year + 1900} /
                                      std::chrono::month{static_cast<unsigned>(local.tm_mon + 1)} /
                                      std::chrono::day{static_cast<unsigned>(local.tm_mday)};
    const std::chrono::sys_days base = std::chrono::year{1899} / 12 / 30;
    const int time = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
    return {static_cast<double>((day - base).count()) + time / 86400.0};
}

Table &Catalog::objects()
{
    return m_parts.baseTable(kObjectsPage, u"MSysObjects");
}

Table &Catalog::aces()
{
    return m_parts.baseTable(kAcesPage, u"MSysACEs");
}

ObjectColumns Catalog::columnsOf(const Table &objects)
{
    const auto at = [&](std::u16string_view name) { return columnNamed(objects, name); };
    return {at(u"Id"),         at(u"ParentId"), at(u"Name"),  at(u"Type"),  at(u"DateCreate"),
            at(u"DateUpdate"), at(u"Owner"),    at(u"Flags"), at(u"LvProp")};
}

Bytes Catalog::pagesOfObjects()
{
    Pager &pager = m_parts.pager();
    const UsageMap owned(pager, objects().current().owned);
    Bytes bytes;
    for (PageNo page = owned.next(0); page != kNoPage; page = owned.next(page + 1)) {
        const std::byte *raw = pager.page(page);
        bytes.insert(bytes.end(), raw, raw + kPageSize);
    }
    return bytes;
}

const std::vector<CatalogEntry> &Catalog::tables()
{
    if (m_known)
        return m_tables;
    Bytes now = pagesOfObjects();
    m_known = !m_seen.empty() && sameBytes(now, m_seen);
    if (m_known)
        return m_tables;
    m_seen.clear();
    m_tables.clear();
    const ObjectColumns at = columnsOf(objects());
    for (Cursor row = objects().scan(); !row.atEnd(); row.next()) {
        const RowView &view = row.view();
        if (valueOf<std::int16_t>(view, at.type) != kTable)
            continue;
        const auto name = valueOf<std::u16string>(view, at.name);
        const auto id = valueOf<std::int32_t>(view, at.id);
        if (!name || !id || *id <= 0)
            throw Error(Code::Damaged, m_parts.pager().path().string(),
                        "page 2: a table without a name or a page");
        const auto flags = static_cast<std::uint32_t>(valueOf<std::int32_t>(view, at.flags).value_or(0));
        m_tables.push_back({*name, static_cast<PageNo>(*id), row.id(), (flags & 0x80000002) != 0});
    }
    m_seen = std::move(now);
    m_known = true;
    return m_tables;
}

const CatalogEntry *Catalog::find(std::u16string_view name)
{
    const auto &all = tables();
    const auto found = std::find_if(all.begin(), all.end(), [&](const CatalogEntry &entry) {
        return compareText(entry.name, name) == 0;
    });
    return found == all.end() ? nullptr : &*found;
}

const CatalogEntry *Catalog::find(PageNo page)
{
    const auto &all = tables();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const CatalogEntry &entry) { return entry.page == page; });
    return found == all.end() ? nullptr : &*found;
}

DateTime Catalog::created()
{
    const ObjectColumns at = columnsOf(objects());
    for (Cursor row = objects().scan(); !row.atEnd(); row.next()) {
        if (valueOf<std::int32_t>(row.view(), at.id) == static_cast<std::int32_t>(kObjectsPage))
            return valueOf<DateTime>(row.view(), at.dateCreate).value_or(DateTime{});
    }
    return {};
}

std::array<std::byte, 2> Catalog::securityMask()
{
    const ObjectColumns at = columnsOf(objects());
    if (const CatalogEntry *entry = find(kObjectsPage)) {
        const auto owner = valueOf<Bytes>(objects().row(entry->row), at.owner);
        if (owner && owner->size() == 2)
            return {(*owner)[0] ^ kEngine[0], (*owner)[1] ^ kEngine[1]};
    }
    return kFreshMask;
}

RowId Catalog::addTable(std::u16string_view name, PageNo page, const Bytes &properties)
{
    const ObjectColumns at = columnsOf(objects());
    const auto mask = securityMask();
    const auto id = static_cast<std::int32_t>(page);
    const DateTime now = currentDate();
    const ColumnValue values[] = {{at.id, id},
                                  {at.parentId, kTablesContainer},
                                  {at.name, std::u16string(name)},
                                  {at.type, kTable},
                                  {at.dateCreate, now},
                                  {at.dateUpdate, now},
                                  {at.owner, masked(kAdmin, mask)},
                                  {at.flags, std::int32_t{0}},
                                  {at.lvProp, properties}};
    const RowId row = objects().insert(values);
    addRight(aces(), id, masked(kAdmin, mask), 0x000F00FE, false);
    addRight(aces(), id, masked(kUsers, mask), 0x000FFEFF, false);
    return row;
}

void fillBareCatalog(Catalog &catalog)
{
    struct Object
    {
        std::int32_t id, parent;
        const char16_t *name;
        std::int16_t type;
        Id owner;
    };
    const Object rows[] = {{kTablesContainer, kRoot, u"Tables", kContainer, kEngine},
                           {kDatabases, kRoot, u"Databases", kContainer, kEngine},
                           {kRelationships, kRoot, u"Relationships", kContainer, kEngine},
                           {kMsysDb, kDatabases, u"MSysDb", kDatabase, kAdmin},
                           {kObjectsPage, kTablesContainer, u"MSysObjects", kTable, kEngine},
                           {kAcesPage, kTablesContainer, u"MSysACEs", kTable, kEngine},
                           {kQueriesPage, kTablesContainer, u"MSysQueries", kTable, kEngine},
                           {kRelationshipsPage, kTablesContainer, u"MSysRelationships", kTable, kEngine}};
    const ObjectColumns at = Catalog::columnsOf(catalog.objects());
    const DateTime now = currentDate();
    for (const Object &object : rows) {
        const ColumnValue values[] = {{at.id, object.id},
                                      {at.parentId, object.parent},
                                      {at.name, std::u16string(object.name)},
                                      {at.type, object.type},
                                      {at.dateCreate, now},
                                      {at.dateUpdate, now},
                                      {at.owner, masked(object.owner, kFreshMask)},
                                      {at.flags, kSystemFlag}};
        catalog.objects().insert(values);
    }
    struct Right
    {
        std::int32_t object;
        Id account;
        std::uint32_t rights;
        bool inheritable;
    };
    const Right rights[] = {{kObjectsPage, kAdmin, 0x00060000, false},
                            {kAcesPage, kAdmin, 0x00060000, false},
                            {kQueriesPage, kAdmin, 0x00060000, false},
                            {kRelationshipsPage, kAdmin, 0x000E0000, false},
                            {kTablesContainer, kCreator, 0x000F00FE, true},
                            {kTablesContainer, kAdmin, 0x00060001, false},
                            {kRelationships, kCreator, 0x000F00FE, true},
                            {kRelationships, kAdmin, 0x00060001, false},
                            {kDatabases, kAdmin, 0x00060000, false},
                            {kMsysDb, kAdmin, 0x0006000E, false},
                            {kMsysDb, kUsers, 0x0000000E, false},
                            {kQueriesPage, kUsers, 0x00000014, false},
                            {kRelationshipsPage, kUsers, 0x00000014, false},
                            {kObjectsPage, kUsers, 0x00000014, false},
                            {kTablesContainer, kUsers, 0x000FFEFF, true},
                            {kRelationships, kUsers, 0x000FFFFF, true}};
    for (const Right &right : rights)
        addRight(catalog.aces(), right.object, masked(right.account, kFreshMask), right.rights,
                 right.inheritable);
}

} // namespace vardelin::jet
