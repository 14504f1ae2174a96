#include "platform/jet/Salvage.h"

#include "platform/jet/Allocation.h"
#include "platform/jet/Catalog.h"
#include "platform/jet/Definition.h"
#include "platform/jet/Error.h"
#include "platform/jet/Header.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/Properties.h"
#include "platform/jet/RowReader.h"
#include "platform/jet/TextOrder.h"

#include <algorithm>
#include <map>
#include <set>

namespace vardelin::jet {

namespace {

constexpr std::size_t kRowsAtOnce = 1000, kLongestName = 64;
constexpr std::uint8_t kMostDigits = 28; // of a Decimal
constexpr std::uint32_t kDefinitionMark = 0x659;
constexpr std::uint32_t kSystemFlags = 0x80000002;
constexpr std::u16string_view kSetAside = u" (set aside)";

// Whether reading went well; damage is what this file is about, but not a failing disk.
template <class Read>
bool readable(Read read)
{
    try {
        read();
        return true;
    } catch (const Error &error) {
        if (error.code() != Code::Damaged)
            throw;
        return false;
    }
}

struct FoundRow
{
    RowId place;
    std::span<const std::byte> bytes;
};

struct FoundTable
{
    std::u16string name;
    TableDefinition definition;
};

// What there is in the damaged file.
class Source
{
public:
    explicit Source(Pager &pager) : m_pager(pager)
    {
        for (PageNo page = 2; page < pager.pageCount(); ++page) {
            if (isFree(page))
                continue;
            const std::byte *bytes = pager.page(page);
            if (bytes[0] == std::byte{1})
                m_pagesOf[load<PageNo>(bytes + 4)].push_back(page);
            else if (bytes[0] == std::byte{2} && load<std::uint32_t>(bytes + 12) == kDefinitionMark)
                m_definitions.insert(page);
        }
    }

    Pager &pager() { return m_pager; }

    std::vector<FoundTable> tables()
    {
        std::vector<FoundTable> found;
        readable([&] { takeCatalog(found); });
        for (const PageNo page : m_definitions) {
            if (page > kRelationshipsPage)
                take(found, page, u"Table of page " + toUtf16(std::to_string(page)), {});
        }
        return found;
    }

    // Rows in table order; moved ones in the place where they were added, if their forward is left.
    std::vector<FoundRow> rows(PageNo table)
    {
        std::vector<FoundRow> rows;
        std::map<RowId, std::span<const std::byte>> moved;
        std::set<RowId> taken;
        eachSlot(table, [&](const DataPage &page, RowId id, const Slot &slot) {
            if (slot.flags == kMovedRow)
                moved.emplace(id, page.row(id.row));
        });
        eachSlot(table, [&](const DataPage &page, RowId id, const Slot &slot) {
            if (slot.flags == kLiveRow)
                rows.push_back({id, page.row(id.row)});
            if (slot.flags != kForward)
                return;
            const auto to = moved.find(RowReader::target(page, id.row));
            if (to != moved.end() && taken.insert(to->first).second)
                rows.push_back({to->first, to->second});
        });
        for (const auto &[id, bytes] : moved) {
            if (!taken.contains(id))
                rows.push_back({id, bytes});
        }
        return rows;
    }

private:
    bool isFree(PageNo page)
    {
        bool free = false;
        readable([&] { free = UsageMap(m_pager, {1, 0}).contains(page); });
        return free;
    }

    template <class Visit>
    void eachSlot(PageNo table, Visit visit)
    {
        for (const PageNo number : m_pagesOf[table]) {
            readable([&] {
                const DataPage page(m_pager, number);
                for (std::size_t i = 0; i < std::min(page.slots(), kMaxSlots); ++i)
                    readable([&] { visit(page, RowId{number, static_cast<std::uint8_t>(i)}, page.slot(i)); });
            });
        }
    }

    void take(std::vector<FoundTable> &found, PageNo page, std::u16string name, const Bytes &properties)
    {
        readable([&] {
            FoundTable table{std::move(name), parseDefinition(m_pager, readDefinition(m_pager, page))};
            readable([&] { applyProperties(properties, {m_pager, page}, table.definition.columns); });
            found.push_back(std::move(table));
        });
    }

    void takeCatalog(std::vector<FoundTable> &found)
    {
        const TableDefinition objects = parseDefinition(m_pager, readDefinition(m_pager, kObjectsPage));
        for (const FoundRow &row : rows(kObjectsPage)) {
            readable([&] {
                const auto type = value<std::int16_t>(objects, row, u"Type");
                const auto id = value<std::int32_t>(objects, row, u"Id");
                const auto name = value<std::u16string>(objects, row, u"Name");
                const auto flags =
                    static_cast<std::uint32_t>(value<std::int32_t>(objects, row, u"Flags").value_or(0));
                const auto page = static_cast<PageNo>(id.value_or(0));
                if (type != 1 || !name || m_definitions.erase(page) == 0 || (flags & kSystemFlags) != 0)
                    return;
                Bytes properties;
                readable([&] { properties = value<Bytes>(objects, row, u"LvProp").value_or(Bytes()); });
                take(found, page, *name, properties);
            });
        }
    }

    template <class T>
    std::optional<T> value(const TableDefinition &table, const FoundRow &row, std::u16string_view name)
    {
        for (const Column &column : table.columns) {
            if (column.name != name)
                continue;
            const Cell cell = RowReader::cell(m_pager, table, column, row.bytes, row.place);
            const T *found = std::get_if<T>(&cell);
            return found ? std::optional<T>(*found) : std::nullopt;
        }
        return {};
    }

    Pager &m_pager;
    std::map<PageNo, std::vector<PageNo>> m_pagesOf; // data pages by the owner they name
    std::set<PageNo> m_definitions;                  // first pages
};

// A name that a new table or column may have, and that none in `used` has.
std::u16string usableName(std::u16string name, std::set<std::string> &used)
{
    for (char16_t &unit : name) {
        if (unit < 0x20 || std::u16string_view(u".!`[]").find(unit) != std::u16string_view::npos)
            unit = u'_';
    }
    if (name.empty() || name.front() == u' ')
        name.insert(0, 1, u'_');
    name.resize(std::min(name.size(), kLongestName));
    const std::u16string base = name.substr(0, kLongestName - 6);
    for (int i = 2; !used.insert(textKey(name)).second; ++i)
        name = base + u' ' + toUtf16(std::to_string(i));
    return name;
}

class Salvage
{
public:
    Salvage(Source &source, File &file) : m_source(source), m_file(file) {}

    SalvagedTable copy(const FoundTable &found)
    {
        m_result = {};
        m_longBytes = 0;
        m_aside = nullptr;
        m_plan = planOf(found.definition);
        m_plan.name = m_result.name = usableName(found.name, m_names);
        try {
            Table &table = m_file.createTable(m_plan);
            copyRows(found.definition, table);
        } catch (const Error &error) {
            if (error.code() == Code::DiskFull || error.code() == Code::WriteError ||
                error.code() == Code::IoError)
                throw;
            m_result.trouble = error.what();
        }
        return m_result;
    }

private:
    static NewTable planOf(const TableDefinition &definition)
    {
        NewTable plan;
        std::set<std::string> used;
        for (const Column &column : definition.columns) {
            const auto size = column.type == ColumnType::Text     ? column.length / 2
                              : column.type == ColumnType::Binary ? column.length
                                                                  : 0;
            plan.columns.push_back({usableName(column.name, used), column.type,
                                    static_cast<std::uint16_t>(size), column.autoNumber, column.required,
                                    column.allowZeroLength, column.compress, column.precision, column.scale});
            NewColumn &made = plan.columns.back();
            if (made.precision == 0 || made.precision > kMostDigits || made.scale > made.precision) {
                made.precision = kMostDigits;
                made.scale = std::min(made.scale, kMostDigits);
            }
        }
        used.clear();
        for (const LogicalIndex &logical : definition.logical) {
            if (logical.foreign)
                continue; // its tree is that of a relationship, which doesn't come along
            const PhysicalIndex &tree = definition.physical[logical.physical];
            NewIndex index{usableName(logical.name, used),
                           {},
                           logical.primary,
                           tree.unique,
                           tree.required,
                           tree.ignoreNulls};
            for (const IndexColumn &key : tree.columns)
                index.columns.emplace_back(plan.columns[*definition.placeOf(key.column)].name,
                                           key.descending);
            plan.indexes.push_back(std::move(index));
        }
        return plan;
    }

    void copyRows(const TableDefinition &definition, Table &table)
    {
        const std::vector<FoundRow> rows = m_source.rows(definition.page());
        for (std::size_t i = 0; i < rows.size();) {
            Scope scope(m_file);
            for (const std::size_t end = std::min(rows.size(), i + kRowsAtOnce); i < end; ++i)
                copyRow(definition, rows[i], table);
            scope.commit();
        }
    }

    void copyRow(const TableDefinition &definition, const FoundRow &row, Table &table)
    {
        std::vector<ColumnValue> values;
        std::size_t unreadable = 0, cut = 0;
        for (std::size_t i = 0; i < definition.columns.size(); ++i) {
            const Column &column = definition.columns[i];
            const bool read = readable([&] {
                Cell cell = RowReader::cell(m_source.pager(), definition, column, row.bytes, row.place);
                countLong(column, cell);
                if (!isNull(cell))
                    values.emplace_back(i, std::move(cell));
            });
            if (read)
                continue;
            Cell start;
            if (isLongValue(column.type))
                readable([&] { start = startOf(definition, column, row); });
            if (isNull(start)) {
                ++unreadable;
            } else {
                ++cut;
                values.emplace_back(i, std::move(start));
            }
        }
        if (unreadable == definition.columns.size() || !insert(table, values)) {
            ++m_result.lostRows;
            return;
        }
        ++m_result.rows;
        m_result.lostValues += unreadable;
        m_result.cutValues += cut;
    }

    // In a sound file no two values share their pieces. Here they may, and the copy would grow without
    // measure.
    void countLong(const Column &column, const Cell &cell)
    {
        if (!isLongValue(column.type))
            return;
        const auto *text = std::get_if<std::u16string>(&cell);
        const auto *bytes = std::get_if<Bytes>(&cell);
        m_longBytes += text ? text->size() : bytes ? bytes->size() : 0;
        if (m_longBytes > std::size_t{m_source.pager().pageCount()} * kPageSize)
            m_source.pager().damaged("long values that share their pieces");
    }

    // Null: nothing of it can be read.
    Cell startOf(const TableDefinition &definition, const Column &column, const FoundRow &row)
    {
        const RowPlace place{m_source.pager(), row.place};
        const StoredField field = readField(definition, column, row.bytes, place);
        if (m_longBytes > std::size_t{m_source.pager().pageCount()} * kPageSize)
            return {};
        Bytes start = field.present ? readableStart(m_source.pager(), field.bytes, place) : Bytes();
        if (start.empty() || column.type != ColumnType::Memo)
            return start.empty() ? Cell() : Cell(std::move(start));
        start.resize(start.size() / 2 * 2);
        return decodeText(start, place);
    }

    bool insert(Table &table, const std::vector<ColumnValue> &values)
    {
        return tryInsert([&]() -> Table & { return table; }, values) ||
               (tryInsert([&]() -> Table & { return aside(); }, values) && ++m_result.setAside != 0);
    }

    // What the table itself refuses; the disk's failures go on.
    template <class Which>
    static bool tryInsert(Which which, const std::vector<ColumnValue> &values)
    {
        try {
            which().insert(values);
            return true;
        } catch (const Error &error) {
            switch (error.code()) {
            case Code::DuplicateKey:
            case Code::NullInKey:
            case Code::NullRequired:
            case Code::ZeroLength:
            case Code::FieldTooSmall:
            case Code::RecordTooLarge:
            case Code::DecimalTooLarge:
                return false;
            default:
                throw;
            }
        }
    }

    Table &aside()
    {
        if (m_aside)
            return *m_aside;
        NewTable plan = m_plan;
        plan.name = usableName(
            plan.name.substr(0, kLongestName - kSetAside.size()) + std::u16string(kSetAside), m_names);
        plan.indexes.clear();
        for (NewColumn &column : plan.columns) {
            column.required = column.autoNumber = false;
            column.allowZeroLength = true;
            if (column.type == ColumnType::Text)
                column.size = 255;
            column.precision = kMostDigits;
        }
        m_aside = &m_file.createTable(plan);
        return *m_aside;
    }

    Source &m_source;
    File &m_file;
    std::set<std::string> m_names;
    NewTable m_plan;
    SalvagedTable m_result;
    std::size_t m_longBytes = 0; // of the table's long values so far; texts by their characters
    Table *m_aside = nullptr;
};

} // namespace

std::vector<SalvagedTable> salvageFile(const std::filesystem::path &path, const std::filesystem::path &to,
                                       Disk &disk)
{
    const std::unique_ptr<Pager> pager = Pager::open(disk, path, Pager::Access::Read);
    const ReadSection section(*pager);
    checkHeader(*pager);
    Source source(*pager);
    const std::unique_ptr<File> file = File::create(to, disk);
    Salvage salvage(source, *file);
    std::vector<SalvagedTable> tables;
    for (const FoundTable &table : source.tables())
        tables.push_back(salvage.copy(table));
    return tables;
}

} // namespace vardelin::jet
