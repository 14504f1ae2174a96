#include "platform/jet/Compact.h"

#include "platform/jet/DefinitionCopy.h"
#include "platform/jet/FileParts.h"
#include "platform/jet/Header.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/RowCodec.h"
#include "platform/jet/RowReader.h"
#include "platform/jet/RowWriter.h"
#include "platform/jet/TableCreation.h"

#include <algorithm>
#include <array>
#include <deque>

namespace vardelin::jet {

namespace {

constexpr PageNo kFirstFree = kRelationshipsPage + 1;

// ---- Checksums

// One number for each column, which doesn't depend on the order of the rows, and the number of rows.
class Checksums
{
public:
    explicit Checksums(std::size_t columns) : m_columns(columns) {}

    // The row's values, long ones whole, one after the other.
    void add(std::size_t column, bool present, std::span<const std::byte> value)
    {
        std::uint64_t hash = present ? 0x9E3779B97F4A7C15 : 0x51;
        if (value.size() >= 2 * kLanes * 8)
            hash = mixed(hash ^ foldLong(value));
        for (; value.size() >= 8; value = value.subspan(8))
            hash = mixed(hash ^ load<std::uint64_t>(value.data()));
        std::uint64_t rest = value.size();
        for (const std::byte byte : value)
            rest = rest << 8 | std::to_integer<std::uint64_t>(byte);
        m_row = mixed(m_row ^ mixed(hash ^ rest));
        m_columns[column] += m_row; // with all columns before it, so that values can't change rows
    }
    void endRow()
    {
        m_row = 0;
        ++m_rows;
    }
    std::uint32_t rows() const { return m_rows; }
    bool operator==(const Checksums &) const = default;

private:
    static constexpr std::size_t kLanes = 4;

    // Takes what fills the lanes off the value. The lanes don't wait for one another.
    static std::uint64_t foldLong(std::span<const std::byte> &value)
    {
        std::array<std::uint64_t, kLanes> lanes{1, 2, 3, 4};
        for (; value.size() >= kLanes * 8; value = value.subspan(kLanes * 8)) {
            for (std::size_t i = 0; i < kLanes; ++i)
                lanes[i] = mixed(lanes[i] ^ load<std::uint64_t>(value.data() + 8 * i));
        }
        std::uint64_t hash = 0;
        for (const std::uint64_t lane : lanes)
            hash = mixed(hash ^ lane);
        return hash;
    }
    static std::uint64_t mixed(std::uint64_t word)
    {
        word *= 0xBF58476D1CE4E5B9;
        return word ^ word >> 29;
    }
    std::vector<std::uint64_t> m_columns;
    std::uint64_t m_row = 0;
    std::uint32_t m_rows = 0;
};

// ---- Filling pages

// Puts rows on pages of their own, one behind the other.
class RowFiller
{
public:
    RowFiller(Pager &pager, Allocation &allocation, const TableDefinition &table)
        : m_pager(pager), m_allocation(allocation), m_table(table.page()), m_owned(pager, table.owned),
          m_freeSpace(pager, table.freeSpace)
    {}
    RowId add(std::span<const std::byte> row)
    {
        if (m_page == 0 || !DataPage(m_pager, m_page).takesRow(row.size())) {
            finish();
            m_page = m_allocation.allocate(m_page);
            DataPageEditor::init(m_pager.change(m_page), m_table);
            m_owned.add(m_page, m_allocation);
        }
        return {m_page, DataPageEditor(m_pager, m_page).add(row)};
    }
    void finish()
    {
        if (m_page != 0 && DataPage(m_pager, m_page).freeSpace() >= kWorthListing)
            m_freeSpace.add(m_page, m_allocation);
    }

private:
    Pager &m_pager;
    Allocation &m_allocation;
    PageNo m_table, m_page = 0;
    UsageMap m_owned, m_freeSpace;
};

using Entries = std::vector<std::pair<std::string, RowId>>;

std::uint32_t sortEntries(Entries &entries, const PhysicalIndex &index)
{
    if (!std::is_sorted(entries.begin(), entries.end()))
        std::sort(entries.begin(), entries.end());
    std::uint32_t distinct = entries.empty() ? 0 : 1;
    for (std::size_t i = 1; i < entries.size(); ++i)
        distinct += entries[i].first != entries[i - 1].first;
    // Only keys that are Null throughout may be there more than once.
    const auto allNull = [&](const std::string &key) { return key.size() == index.columns.size(); };
    for (std::size_t i = 1; index.unique && i < entries.size(); ++i) {
        if (entries[i].first == entries[i - 1].first && !allNull(entries[i].first))
            throw Error(Code::DuplicateKey);
    }
    return distinct;
}

} // namespace

// ---- One file to the other

class Compaction
{
public:
    Compaction(FileParts &source, FileParts &target) : m_source(source), m_target(target) {}
    void run();

private:
    struct Job // one table
    {
        const Table *table;
        DefinitionCopy copy;
        std::vector<PageNo> pages;
    };

    void layOutBase();
    void layOut();
    void layOut(Job &job, MapRows &maps);
    void copyTable(Job &job);

    FileParts &m_source, &m_target;
    std::deque<Job> m_jobs; // in order of the catalog
    std::map<PageNo, PageNo> m_pages;
};

// The rows and indexes of one table.
class TableCopy
{
public:
    TableCopy(FileParts &source, FileParts &target, const Table &table, const TableDefinition &from,
              const TableDefinition &to, const std::map<PageNo, PageNo> &pages);
    void copyRows();
    std::vector<std::uint32_t> buildIndexes(); // the distinct keys of each
    void verify() const;
    std::uint32_t rows() const { return m_before.rows(); }
    std::int32_t highestAutoNumber() const { return m_highest; }

private:
    std::vector<RowId> order() const;
    void copyRow(RowId id);
    PageNo newId(std::size_t column, PageNo id) const;
    StoredField translated(std::size_t column, StoredField field);
    Cell keyCell(const RowView &row, std::size_t column) const;
    StoredField longValue(std::size_t column, StoredField field, RowPlace place);
    void collectKeys(const RowView &row, RowId at);
    void takeOldKeys(std::size_t index);
    void verifyIndex(std::size_t index) const;

    FileParts &m_source, &m_target;
    const Table &m_table;
    const TableDefinition &m_from, &m_to; // equal in the order of columns and indexes
    const std::map<PageNo, PageNo> &m_pages;
    Passage m_passage; // through the source
    RowFiller m_filler;
    std::map<std::size_t, LongValuePages> m_longValues; // by column
    std::vector<Entries> m_entries;
    std::map<RowId, RowId> m_moved; // only where old keys are needed
    Checksums m_before;
    std::int32_t m_highest = 0;
    std::size_t m_outside = 0; // bytes of long values so far
    std::deque<Bytes> m_store; // of the row in hand
};

TableCopy::TableCopy(FileParts &source, FileParts &target, const Table &table, const TableDefinition &from,
                     const TableDefinition &to, const std::map<PageNo, PageNo> &pages)
    : m_source(source), m_target(target), m_table(table), m_from(from), m_to(to), m_pages(pages),
      m_passage(source.pager()), m_filler(target.pager(), target.allocation(), to),
      m_entries(from.physical.size()), m_before(from.columns.size())
{
    for (std::size_t i = 0; i < to.columns.size(); ++i) {
        if (isLongValue(to.columns[i].type))
            m_longValues.try_emplace(i, target.pager(), target.allocation(),
                                     to.longValueMaps(to.columns[i].number));
    }
}

std::vector<RowId> TableCopy::order() const
{
    std::vector<RowId> rows;
    for (Cursor at = m_table.scan(); !at.atEnd(); at.next())
        rows.push_back(at.id());
    const auto primary = std::find_if(m_from.logical.begin(), m_from.logical.end(),
                                      [](const LogicalIndex &index) { return index.primary; });
    if (primary == m_from.logical.end() || m_from.page() <= kRelationshipsPage)
        return rows;
    std::vector<RowId> byKey = m_table.inOrder(*primary), sorted = byKey;
    std::sort(sorted.begin(), sorted.end());
    return sorted == rows ? byKey : rows;
}

void TableCopy::copyRows()
{
    for (const RowId id : order()) {
        copyRow(id);
        m_target.pager().writeEarly();
    }
    m_filler.finish();
}

void TableCopy::copyRow(RowId id)
{
    const RowView row = m_table.row(id);
    const RowPlace place{m_source.pager(), id};
    const auto location = RowReader::locate(m_source.pager(), m_from.page(), id);
    const auto bytes = RowReader::bytes(m_source.pager(), m_from.page(), *location);
    std::vector<StoredField> fields;
    m_store.clear();
    m_passage.step();
    for (std::size_t i = 0; i < m_from.columns.size(); ++i) {
        const Column &column = m_from.columns[i];
        StoredField field = translated(i, readField(m_from, column, bytes, place));
        if (field.present && isLongValue(column.type))
            field = longValue(i, field, place);
        else
            m_before.add(i, field.present, field.bytes);
        if (field.present && column.autoNumber && column.type == ColumnType::Long)
            m_highest = std::max(m_highest, load<std::int32_t>(field.bytes.data()));
        fields.push_back(field);
    }
    m_before.endRow();
    const RowId at = m_filler.add(encodeRow(m_to, fields));
    if (m_from.knownOrder)
        collectKeys(row, at);
    else
        m_moved[id] = at;
}

// In the base tables a table is named by its definition page.
PageNo TableCopy::newId(std::size_t column, PageNo id) const
{
    const std::u16string &name = m_from.columns[column].name;
    if (m_from.page() > kRelationshipsPage || (name != u"Id" && name != u"ObjectId"))
        return id;
    const auto found = m_pages.find(id);
    return found == m_pages.end() ? id : found->second;
}

StoredField TableCopy::translated(std::size_t column, StoredField field)
{
    if (!field.present || field.bytes.size() != 4)
        return field;
    const auto id = load<PageNo>(field.bytes.data());
    if (newId(column, id) == id)
        return field;
    store(m_store.emplace_back(4).data(), newId(column, id));
    return {true, m_store.back()};
}

Cell TableCopy::keyCell(const RowView &row, std::size_t column) const
{
    const Cell cell = row.cell(column);
    const auto *id = std::get_if<std::int32_t>(&cell);
    return id ? Cell(static_cast<std::int32_t>(newId(column, static_cast<PageNo>(*id)))) : cell;
}

StoredField TableCopy::longValue(std::size_t column, StoredField field, RowPlace place)
{
    Bytes &gathered = m_store.emplace_back();
    const auto data = readLongValue(m_source.pager(), field.bytes, place, gathered, &m_passage);
    m_before.add(column, true, data);
    if (isInline(field.bytes))
        return field;
    m_outside += data.size();
    if (m_outside > std::size_t{m_source.pager().pageCount()} * kPageSize)
        place.damaged("shares its long values with other rows"); // or the copy would grow without measure
    m_store.push_back(data.empty() ? inlineLongValue({}) : m_longValues.at(column).write(data));
    return {true, m_store.back()};
}

// ---- Indexes

void TableCopy::collectKeys(const RowView &row, RowId at)
{
    for (std::size_t i = 0; i < m_from.physical.size(); ++i) {
        const PhysicalIndex &index = m_from.physical[i];
        std::vector<Cell> cells;
        std::vector<ColumnType> types;
        bool allNull = true;
        for (const IndexColumn &key : index.columns) {
            const std::size_t column = *m_from.placeOf(key.column);
            types.push_back(m_from.columns[column].type);
            cells.push_back(keyCell(row, column));
            allNull &= isNull(cells.back());
        }
        if (allNull && index.ignoreNulls)
            continue;
        m_entries[i].emplace_back(indexKey(index, types, cells), at);
    }
}

void TableCopy::takeOldKeys(std::size_t index)
{
    IndexTree tree(m_source.pager(), m_from.page(), m_from.physical[index].root);
    for (auto at = tree.begin(); !at.atEnd(); at.next()) {
        const auto found = m_moved.find(at.row());
        if (found == m_moved.end())
            Place{m_source.pager(), at.row().page}.damaged("an index leads to a row that isn't there");
        m_entries[index].emplace_back(at.key(), found->second);
    }
}

std::vector<std::uint32_t> TableCopy::buildIndexes()
{
    std::vector<std::uint32_t> distinct;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (!m_from.knownOrder)
            takeOldKeys(i);
        const PhysicalIndex &index = m_to.physical[i];
        distinct.push_back(sortEntries(m_entries[i], index));
        PagesOfIndex pages(m_target.pager(), m_target.allocation(), index.map);
        IndexTree(m_target.pager(), m_to.page(), index.root).build(m_entries[i], pages);
        m_target.pager().writeEarly();
    }
    return distinct;
}

// ---- Judging what was written, from its pages

void TableCopy::verify() const
{
    Pager &pager = m_target.pager();
    Checksums after(m_to.columns.size());
    const UsageMap owned(pager, m_to.owned);
    Bytes gathered;
    Passage passage(pager);
    for (PageNo number = owned.next(0); number != kNoPage; number = owned.next(number + 1)) {
        const DataPage page(pager, number);
        page.requireOwner(m_to.page());
        for (std::size_t slot = 0; slot < page.slots(); ++slot) {
            const RowPlace place{pager, {number, static_cast<std::uint8_t>(slot)}};
            for (std::size_t i = 0; i < m_to.columns.size(); ++i) {
                const StoredField field = readField(m_to, m_to.columns[i], page.row(slot), place);
                const bool outside = field.present && isLongValue(m_to.columns[i].type);
                after.add(i, field.present,
                          outside ? readLongValue(pager, field.bytes, place, gathered, &passage)
                                  : field.bytes);
            }
            after.endRow();
            passage.step();
        }
    }
    if (after != m_before)
        throw Error(Code::WriteError, {}, "the compacted table " + toUtf8(m_from.name) + " differs");
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        verifyIndex(i);
}

void TableCopy::verifyIndex(std::size_t index) const
{
    const IndexTree tree(m_target.pager(), m_to.page(), m_to.physical[index].root);
    std::size_t met = 0;
    bool same = true;
    for (auto at = tree.begin(); same && !at.atEnd(); at.next(), ++met)
        same = met < m_entries[index].size() && at.row() == m_entries[index][met].second &&
               at.key() == m_entries[index][met].first;
    if (!same || met != m_entries[index].size())
        throw Error(Code::WriteError, {},
                    "an index of the compacted table " + toUtf8(m_from.name) + " differs");
}

// ---- The whole file

void Compaction::run()
{
    layOutBase();
    layOut();
    for (Job &job : m_jobs)
        copyTable(job);
}

// Pages 0 to 5: header, page map, and the first pages of the four definitions.
void Compaction::layOutBase()
{
    Pager &pager = m_target.pager();
    while (pager.pageCount() < kFirstFree)
        pager.append();
    Allocation::initPage(pager.change(1), kFirstFree);
    std::memcpy(pager.change(0), m_source.pager().page(0), kPageSize);
}

// Every definition gets its place before the first is written, for they name one another.
void Compaction::layOut()
{
    const auto take = [this](const Table &table) {
        const DefinitionBytes bytes = readDefinition(m_source.pager(), table.current().page());
        m_jobs.push_back({&table, DefinitionCopy(m_source.pager(), bytes), {}});
    };
    // The base tables stand at their pages, whatever the catalog says.
    PageNo base = kObjectsPage;
    for (const char16_t *name : {u"MSysObjects", u"MSysACEs", u"MSysQueries", u"MSysRelationships"})
        take(m_source.baseTable(base++, name));
    for (const CatalogEntry &entry : m_source.catalog().tables()) {
        if (entry.page > kRelationshipsPage)
            take(m_source.userTable(entry));
    }
    MapRows baseMaps(m_target);
    for (Job &job : m_jobs) {
        const PageNo old = job.table->current().page();
        const bool isBase = old <= kRelationshipsPage;
        MapRows ownMaps(m_target);
        job.pages.assign(1, isBase ? old : m_target.allocation().allocate());
        m_pages[old] = job.pages.front();
        layOut(job, isBase ? baseMaps : ownMaps);
    }
    for (Job &job : m_jobs)
        job.copy.setTables(m_pages);
}

void Compaction::layOut(Job &job, MapRows &maps)
{
    Pager &pager = m_target.pager();
    Allocation &allocation = m_target.allocation();
    while (job.pages.size() < job.copy.pageCount())
        job.pages.push_back(allocation.allocate());
    const RowId owned = maps.add(emptyMap(), 2);
    job.copy.setMaps(owned, maps.add(emptyMap()));
    for (std::size_t i = 0; i < job.copy.longValueCount(); ++i) {
        const RowId pages = maps.add(emptyMap(), 2);
        job.copy.setLongValue(i, pages, maps.add(emptyMap()));
    }
    std::vector<PageNo> roots;
    for (std::size_t i = 0; i < job.copy.indexCount(); ++i) {
        roots.push_back(allocation.allocate());
        IndexTree::initRoot(pager.change(roots.back()), job.pages.front());
    }
    for (std::size_t i = 0; i < roots.size(); ++i)
        job.copy.setIndex(i, maps.add(mapOf(roots[i])), roots[i]);
}

void Compaction::copyTable(Job &job)
{
    Pager &pager = m_target.pager();
    writeDefinition(pager, job.pages, job.copy.bytes());
    const TableDefinition to = parseDefinition(pager, readDefinition(pager, job.pages.front()));
    TableCopy copy(m_source, m_target, *job.table, job.table->current(), to, m_pages);
    copy.copyRows();
    const auto distinct = copy.buildIndexes();
    job.copy.setCounts(copy.rows(), copy.highestAutoNumber(), distinct);
    writeDefinition(pager, job.pages, job.copy.bytes());
    copy.verify();
}

void compactFile(const std::filesystem::path &from, const std::filesystem::path &to, Disk &disk)
{
    FileParts source(Pager::open(disk, from, Pager::Access::Read, Pager::Sharing::Exclusive));
    const Reading reading(source);
    checkHeader(source.pager());
    FileParts target(Pager::open(disk, to, Pager::Access::Create));
    Writing writing(target);
    Compaction(source, target).run();
    writing.commit();
}

} // namespace vardelin::jet
