// The catalog, definitions, property blobs and rights.
#include "platform/jet/CheckState.h"
#include "platform/jet/Properties.h"
#include "platform/jet/RowCodec.h"
#include "platform/jet/TextOrder.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::int32_t kRootContainer = 0x0F000000;
constexpr std::size_t kMostColumns = 255, kLongestName = 64, kPageHeader = 8;
constexpr std::int16_t kTableObject = 1;

bool sameName(std::u16string_view left, std::u16string_view right)
{
    return compareText(left, right) == 0;
}

class DefinitionCheck
{
public:
    DefinitionCheck(CheckState &state, const TableDefinition &definition, const std::string &title)
        : m_state(state), m_definition(definition), m_title(title)
    {}

    void check()
    {
        checkPages();
        if (m_definition.owned.page == 0)
            wrong("the table has no map of its pages");
        if (m_definition.maxColumns == 0 || m_definition.maxColumns > kMostColumns)
            wrong("the table has had " + std::to_string(m_definition.maxColumns) + " columns");
        checkColumns();
        checkPlaces();
        checkIndexes();
    }

private:
    void wrong(std::string what, PageNo page = 0)
    {
        m_state.fault(Invariant::Definitions, page ? page : m_definition.page(), m_title, std::move(what));
    }

    void checkPages()
    {
        std::size_t left = m_definition.fixedContent.size();
        for (const PageNo number : m_definition.pages) {
            const std::byte *page = m_state.pager.page(number);
            const std::size_t header = number == m_definition.page() ? 0 : kPageHeader;
            const std::size_t used = std::min(kPageSize, left + header);
            left -= used - header;
            if (page[1] != std::byte{1})
                wrong("the second byte isn't 1", number);
            const std::size_t room = used + kPageHeader > kPageSize ? 0 : kPageSize - used - kPageHeader;
            if (load<std::uint16_t>(page + 2) != room)
                m_state.add(Severity::Oddity, Invariant::Definitions, number, m_title,
                            "the free bytes of the definition are wrong");
        }
        const Bytes &content = m_definition.fixedContent;
        if (load<std::uint16_t>(content.data() + content.size() - 2) != 0xFFFF)
            wrong("the definition doesn't end where its length says");
    }

    void checkColumns()
    {
        std::size_t autoNumbers = 0;
        for (auto column = m_definition.columns.begin(); column != m_definition.columns.end(); ++column) {
            const std::string name = "column " + toUtf8(column->name);
            if (column->name.empty() || column->name.size() > kLongestName)
                wrong(name + " has a name of " + std::to_string(column->name.size()) + " characters");
            if (std::any_of(m_definition.columns.begin(), column,
                            [&](const Column &other) { return sameName(other.name, column->name); }))
                wrong(name + " is there twice");
            if (const std::size_t width = fixedSize(column->type);
                width != 0 && column->type != ColumnType::Decimal && column->length != width)
                wrong(name + " has the wrong length for its type");
            const bool text = column->type == ColumnType::Text;
            if ((text || column->type == ColumnType::Binary) &&
                (column->length == 0 || column->length > 510 || (text && column->length % 2 != 0)))
                wrong(name + " has an impossible length");
            if (column->autoNumber && (column->type != ColumnType::Long || ++autoNumbers > 1))
                wrong(name + " can't give auto-numbers");
            if (isLongValue(column->type) &&
                std::none_of(m_definition.longValues.begin(), m_definition.longValues.end(),
                             [&](const LongValueMaps &maps) { return maps.column == column->number; }))
                wrong(name + " has no usage maps for its long values");
        }
    }

    // No two columns share bytes of the fixed part, or a place in the variable one.
    void checkPlaces()
    {
        std::set<std::uint16_t> variable;
        std::map<std::size_t, std::size_t> fixed; // begin to end
        for (const Column &column : m_definition.columns) {
            if (!column.fixed && !variable.insert(column.variableIndex).second)
                wrong("column " + toUtf8(column.name) + " has the variable index of another");
            if (!column.fixed || column.type == ColumnType::Boolean)
                continue;
            const std::size_t width = fixedSize(column.type) ? fixedSize(column.type) : column.length;
            const auto [place, fresh] = fixed.emplace(column.fixedOffset, column.fixedOffset + width);
            const bool overBefore = place != fixed.begin() && std::prev(place)->second > place->first;
            const bool overNext = std::next(place) != fixed.end() && std::next(place)->first < place->second;
            if (!fresh || overBefore || overNext)
                wrong("column " + toUtf8(column.name) + " overlaps another in the fixed part");
        }
    }

    void checkIndexes()
    {
        std::set<std::uint32_t> numbers, used;
        std::size_t primary = 0;
        for (auto index = m_definition.logical.begin(); index != m_definition.logical.end(); ++index) {
            const std::string name = "index " + toUtf8(index->name);
            used.insert(index->physical);
            if (!numbers.insert(index->number).second)
                wrong(name + " has the number of another");
            if (index->primary && ++primary > 1)
                wrong(name + " is a second primary key");
            if (std::any_of(m_definition.logical.begin(), index,
                            [&](const LogicalIndex &other) { return sameName(other.name, index->name); }))
                wrong(name + " is there twice");
        }
        for (const PhysicalIndex &index : m_definition.physical) {
            std::set<std::uint16_t> columns;
            for (const IndexColumn &column : index.columns)
                columns.insert(column.column);
            if (columns.empty() || columns.size() != index.columns.size() || !used.contains(index.number))
                wrong("tree " + std::to_string(index.number) +
                      " has no index, no columns or one of them twice");
        }
    }

    CheckState &m_state;
    const TableDefinition &m_definition;
    const std::string &m_title;
};

// The values of a row of a base table by column name.
class NamedValues
{
public:
    NamedValues(CheckState &state, const CheckedTable &table, const RowLocation &row)
        : m_state(state), m_table(table), m_row(row)
    {}

    template <class T>
    std::optional<T> get(std::u16string_view name) const
    {
        const auto &columns = m_table.definition.columns;
        const auto column =
            std::find_if(columns.begin(), columns.end(), [&](const Column &c) { return c.name == name; });
        if (column == columns.end())
            return {};
        const Cell cell = checkedCell(m_state, m_table, m_row, *column);
        const T *value = std::get_if<T>(&cell);
        return value ? std::optional<T>(*value) : std::nullopt;
    }

private:
    CheckState &m_state;
    const CheckedTable &m_table;
    const RowLocation &m_row;
};

void checkObjects(CheckState &state, std::span<const CatalogObject> objects)
{
    std::set<std::int32_t> ids{kRootContainer};
    std::set<std::pair<std::int32_t, std::string>> names;
    const auto wrong = [&](const CatalogObject &object, const char *what) {
        state.fault(Invariant::Catalog, object.row.page, toUtf8(object.name), what);
    };
    for (const CatalogObject &object : objects) {
        if (!ids.insert(object.id).second)
            wrong(object, "the object has the id of another");
        if (!names.emplace(object.parent, textKey(object.name)).second)
            wrong(object, "the object has the name of another");
    }
    for (const CatalogObject &object : objects) {
        if (!ids.contains(object.parent))
            wrong(object, "the object lies in a container that isn't there");
    }
}

bool hasTable(std::span<const CatalogObject> objects, std::int32_t id)
{
    return std::any_of(objects.begin(), objects.end(), [id](const CatalogObject &object) {
        return object.type == kTableObject && object.id == id;
    });
}

} // namespace

std::optional<CheckedTable> checkDefinition(CheckState &state, PageNo page, const std::string &title)
{
    CheckedTable table;
    table.title = title;
    const bool readable = state.guard(Invariant::Definitions, title, [&] {
        DefinitionBytes source = readDefinition(state.pager, page);
        for (const PageNo part : source.pages)
            state.claim(part, title + " (definition)");
        table.definition = parseDefinition(state.pager, std::move(source));
        table.definition.name = toUtf16(title);
        DefinitionCheck(state, table.definition, title).check();
    });
    return readable ? std::optional(std::move(table)) : std::nullopt;
}

std::vector<CatalogObject> checkCatalog(CheckState &state, const CheckedTable &objects)
{
    std::vector<CatalogObject> catalog;
    for (const RowLocation &row : objects.rows) {
        state.guard(Invariant::Catalog, objects.title, [&] {
            const NamedValues values(state, objects, row);
            const auto id = values.get<std::int32_t>(u"Id");
            const auto name = values.get<std::u16string>(u"Name");
            const auto type = values.get<std::int16_t>(u"Type");
            if (!id || !name || !type)
                return state.fault(Invariant::Catalog, row.first.page, objects.title,
                                   "row " + std::to_string(row.first.row) + " lacks an id, a name or a type");
            catalog.push_back(
                {*id, values.get<std::int32_t>(u"ParentId").value_or(0), *name, *type, row.first});
        });
    }
    checkObjects(state, catalog);
    for (std::int32_t base = 2; base <= 5; ++base) {
        if (!hasTable(catalog, base))
            state.fault(Invariant::Catalog, 2, objects.title,
                        "the base table on page " + std::to_string(base) + " isn't listed");
    }
    return catalog;
}

void checkProperties(CheckState &state, const CheckedTable &objects, const CatalogObject &object,
                     CheckedTable &table)
{
    state.guard(Invariant::Properties, table.title, [&] {
        const auto row =
            std::lower_bound(objects.rows.begin(), objects.rows.end(), object.row,
                             [](const RowLocation &at, RowId sought) { return at.first < sought; });
        const auto blob = NamedValues(state, objects, *row).get<Bytes>(u"LvProp");
        if (!blob || blob->empty())
            return;
        const auto odd = [&](std::string what) {
            state.add(Severity::Oddity, Invariant::Properties, object.row.page, table.title, std::move(what));
        };
        if (!isPropertyBlob(*blob))
            odd("the properties are of an unknown kind");
        for (const std::u16string &column :
             applyProperties(*blob, {state.pager, object.row.page}, table.definition.columns))
            odd("properties are given to " + toUtf8(column) + ", a column that isn't there");
    });
}

void checkRights(CheckState &state, const CheckedTable &rights, std::span<const CatalogObject> objects)
{
    std::set<std::int32_t> known;
    for (const CatalogObject &object : objects)
        known.insert(object.id);
    for (const RowLocation &row : rights.rows) {
        state.guard(Invariant::Properties, rights.title, [&] {
            const NamedValues values(state, rights, row);
            const auto object = values.get<std::int32_t>(u"ObjectId");
            const std::string name = "row " + std::to_string(row.first.row);
            if (!object || !values.get<Bytes>(u"SID"))
                return state.fault(Invariant::Properties, row.first.page, rights.title,
                                   name + " names no object or no account");
            if (!known.contains(*object))
                state.add(Severity::Oddity, Invariant::Properties, row.first.page, rights.title,
                          name + " gives rights to an object that isn't there");
        });
    }
}

} // namespace vardelin::jet
