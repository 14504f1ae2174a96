#include "platform/jet/TableCreation.h"

#include "platform/jet/Header.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/Properties.h"
#include "platform/jet/TextOrder.h"

#include <algorithm>
#include <set>

namespace vardelin::jet {

namespace {

constexpr std::size_t kMaxColumns = 255, kMaxIndexes = 32, kMaxKeyColumns = 10, kLongestName = 64;
constexpr std::uint16_t kLongestText = 255, kLongestBinary = 510;
constexpr std::uint8_t kMostDigits = 28;

// ---- What a new table may be

void checkName(std::u16string_view name)
{
    const bool control = std::any_of(name.begin(), name.end(), [](char16_t c) { return c < 0x20; });
    if (name.empty() || name.size() > kLongestName || name.front() == u' ' || control ||
        name.find_first_of(u".!`[]") != name.npos)
        throw Error(Code::InvalidArgument);
}

template <class Items>
void checkNames(const Items &items)
{
    std::set<std::string> seen;
    for (const auto &item : items) {
        checkName(item.name);
        if (!seen.insert(textKey(item.name)).second)
            throw Error(Code::InvalidArgument);
    }
}

void checkColumns(const NewTable &table)
{
    if (table.columns.empty())
        throw Error(Code::InvalidArgument);
    if (table.columns.size() > kMaxColumns)
        throw Error(Code::TooManyColumns);
    int autoNumbers = 0;
    for (const NewColumn &column : table.columns) {
        const bool tooLong = (column.type == ColumnType::Text && column.size > kLongestText) ||
                             (column.type == ColumnType::Binary && column.size > kLongestBinary);
        const bool noDecimal =
            column.type == ColumnType::Decimal &&
            (column.precision == 0 || column.precision > kMostDigits || column.scale > column.precision);
        if (tooLong || noDecimal ||
            (column.autoNumber && (column.type != ColumnType::Long || ++autoNumbers > 1)))
            throw Error(Code::InvalidArgument);
    }
}

void checkIndexes(const NewTable &table)
{
    if (table.indexes.size() > kMaxIndexes)
        throw Error(Code::TooManyIndexes);
    for (const NewIndex &index : table.indexes) {
        if (index.columns.empty() || index.columns.size() > kMaxKeyColumns)
            throw Error(Code::InvalidArgument);
    }
    if (std::count_if(table.indexes.begin(), table.indexes.end(),
                      [](const NewIndex &i) { return i.primary; }) > 1)
        throw Error(Code::InvalidArgument);
}

// ---- From there to a draft

std::uint16_t lengthOf(const NewColumn &column)
{
    switch (column.type) {
    case ColumnType::Boolean:
        return 1;
    case ColumnType::Text:
        return static_cast<std::uint16_t>(2 * (column.size == 0 ? kLongestText : column.size));
    case ColumnType::Binary:
        return column.size == 0 ? kLongestBinary : column.size;
    default:
        return static_cast<std::uint16_t>(fixedSize(column.type));
    }
}

DraftColumn draftOf(const NewColumn &source, std::size_t ordinal)
{
    DraftColumn draft;
    draft.column.name = source.name;
    draft.column.type = source.type;
    draft.column.ordinal = static_cast<std::uint16_t>(ordinal);
    draft.column.length = lengthOf(source);
    draft.column.autoNumber = source.autoNumber;
    draft.column.required = source.required;
    draft.column.allowZeroLength = source.allowZeroLength;
    draft.column.compress =
        source.compress && (source.type == ColumnType::Text || source.type == ColumnType::Memo);
    if (source.type == ColumnType::Decimal) {
        draft.column.precision = source.precision;
        draft.column.scale = source.scale;
    }
    const bool fixed = source.type == ColumnType::Boolean || fixedSize(source.type) != 0;
    draft.flags = static_cast<std::uint8_t>(kNullableColumn | (fixed ? kFixedColumn : 0) |
                                            (source.autoNumber ? kAutoNumberColumn : 0));
    return draft;
}

std::uint16_t columnNumber(const DefinitionDraft &draft, std::u16string_view name)
{
    for (const DraftColumn &column : draft.columns) {
        if (compareText(column.column.name, name) == 0)
            return column.column.number;
    }
    throw Error(Code::InvalidArgument);
}

void addIndex(DefinitionDraft &draft, const NewIndex &source)
{
    DraftIndex physical;
    for (const auto &[name, descending] : source.columns) {
        const IndexColumn key{columnNumber(draft, name), descending};
        for (const IndexColumn &other : physical.index.columns) {
            if (other.column == key.column)
                throw Error(Code::InvalidArgument);
        }
        physical.index.columns.push_back(key);
    }
    const bool required = source.required || source.primary, unique = source.unique || source.primary;
    physical.flags =
        static_cast<std::uint8_t>(kAnyIndex | (unique ? kUniqueIndex : 0) | (required ? kRequiredIndex : 0) |
                                  (source.ignoreNulls ? kIgnoreNullsIndex : 0));
    LogicalIndex logical;
    logical.name = source.name;
    logical.number = logical.physical = static_cast<std::uint32_t>(draft.physical.size());
    logical.primary = source.primary;
    draft.physical.push_back(std::move(physical));
    draft.logical.push_back(std::move(logical));
}

void sortByName(std::vector<LogicalIndex> &indexes)
{
    std::sort(indexes.begin(), indexes.end(),
              [](const LogicalIndex &a, const LogicalIndex &b) { return textKey(a.name) < textKey(b.name); });
}

void addLongValues(DefinitionDraft &draft)
{
    for (const DraftColumn &column : draft.columns) {
        if (isLongValue(column.column.type))
            draft.longValues.push_back({column.column.number, {}, {}});
    }
}

DefinitionDraft draftOf(const NewTable &table)
{
    DefinitionDraft draft;
    for (const NewColumn &column : table.columns)
        draft.columns.push_back(draftOf(column, draft.columns.size()));
    numberColumns(draft);
    for (const NewIndex &index : table.indexes)
        addIndex(draft, index);
    sortByName(draft.logical);
    addLongValues(draft);
    std::size_t fixed = 0;
    for (const DraftColumn &column : draft.columns)
        fixed += column.column.fixed ? fixedSize(column.column.type) : 0;
    const std::size_t rest = 6 + 2 * std::size_t{draft.variableColumns} + (draft.maxColumns + 7U) / 8;
    if (fixed + rest > kMaxRow)
        throw Error(Code::RecordTooLarge);
    return draft;
}

// ---- Its pages

// Page of the definition, page of the maps, roots: in this order they are allocated; then the maps are
// written.
std::vector<PageNo> layOut(FileParts &parts, DefinitionDraft &draft)
{
    std::vector<PageNo> pages(pagesForDefinition(serialiseDefinition(draft).size()));
    for (PageNo &page : pages)
        page = parts.allocation().allocate();
    MapRows maps(parts);
    draft.owned = maps.add(emptyMap(), 2);
    draft.freeSpace = maps.add(emptyMap());
    for (LongValueMaps &longValue : draft.longValues) {
        longValue.owned = maps.add(emptyMap(), 2);
        longValue.freeSpace = maps.add(emptyMap());
    }
    for (DraftIndex &index : draft.physical) {
        index.index.root = parts.allocation().allocate();
        IndexTree::initRoot(parts.pager().change(index.index.root), pages.front());
    }
    for (DraftIndex &index : draft.physical)
        index.index.map = maps.add(mapOf(index.index.root));
    return pages;
}

// ---- The base tables

struct BaseColumn
{
    const char16_t *name;
    ColumnType type;
    std::uint16_t length = 0;
    std::uint8_t extraFlags = 0;
};

struct BaseIndex
{
    const char16_t *name;
    std::vector<std::uint16_t> columns;
    std::uint8_t flags;
    bool primary;
};

struct BaseTable
{
    std::vector<BaseColumn> columns;
    std::vector<BaseIndex> indexes;
};

constexpr std::uint16_t kName = 510;

std::array<BaseTable, 4> baseTables()
{
    using enum ColumnType;
    return {{{{{u"Id", Long},
               {u"ParentId", Long},
               {u"Name", Text, kName},
               {u"Type", Integer},
               {u"DateCreate", ColumnType::DateTime},
               {u"DateUpdate", ColumnType::DateTime},
               {u"Owner", Binary, kName, kSecurityColumn},
               {u"Flags", Long},
               {u"Database", Memo},
               {u"Connect", Memo},
               {u"ForeignName", Text, kName},
               {u"RmtInfoShort", Binary, kName},
               {u"RmtInfoLong", Ole},
               {u"Lv", Ole},
               {u"LvProp", Ole},
               {u"LvModule", Ole},
               {u"LvExtra", Ole}},
              {{u"ParentIdName", {1, 2}, 0x81, false}, {u"Id", {0}, 0x81, true}}},
             {{{u"ObjectId", Long},
               {u"SID", Binary, kName, kSecurityColumn},
               {u"ACM", Long},
               {u"FInheritable", Boolean}},
              {{u"ObjectId", {0}, 0x88, false}}},
             {{{u"ObjectId", Long},
               {u"Attribute", Byte},
               {u"Order", Binary, kName},
               {u"Name1", Text, kName},
               {u"Name2", Text, kName},
               {u"Expression", Memo},
               {u"Flag", Integer},
               {u"LvExtra", Long}},
              {{u"ObjectIdAttribute", {0, 1, 2}, 0x81, true}}},
             {{{u"szRelationship", Text, kName},
               {u"grbit", Long},
               {u"ccolumn", Long},
               {u"icolumn", Long},
               {u"szObject", Text, kName},
               {u"szColumn", Text, kName},
               {u"szReferencedObject", Text, kName},
               {u"szReferencedColumn", Text, kName}},
              {{u"szRelationship", {0}, 0x82, false},
               {u"szObject", {4}, 0x82, false},
               {u"szReferencedObject", {6}, 0x82, false}}}}};
}

DraftColumn draftOf(const BaseColumn &source)
{
    DraftColumn draft;
    draft.column.name = source.name;
    draft.column.type = source.type;
    const bool boolean = source.type == ColumnType::Boolean;
    const bool fixed = boolean || fixedSize(source.type) != 0;
    draft.column.length = boolean ? std::uint16_t{1}
                          : fixed ? static_cast<std::uint16_t>(fixedSize(source.type))
                                  : source.length;
    draft.flags = static_cast<std::uint8_t>(kSystemColumn | kNullableColumn | source.extraFlags |
                                            (fixed ? kFixedColumn : 0));
    return draft;
}

DefinitionDraft draftOf(const BaseTable &table)
{
    DefinitionDraft draft;
    draft.base = true;
    for (const BaseColumn &column : table.columns)
        draft.columns.push_back(draftOf(column));
    numberColumns(draft);
    addLongValues(draft);
    std::sort(draft.columns.begin(), draft.columns.end(), [](const DraftColumn &a, const DraftColumn &b) {
        return textKey(a.column.name) < textKey(b.column.name);
    });
    for (const BaseIndex &source : table.indexes) {
        DraftIndex index;
        index.flags = source.flags;
        for (const std::uint16_t column : source.columns)
            index.index.columns.push_back({column, false});
        const auto number = static_cast<std::uint32_t>(draft.physical.size());
        draft.physical.push_back(index);
        draft.logical.push_back({source.name, number, number, source.primary, false});
    }
    sortByName(draft.logical);
    return draft;
}

// Rows of usage maps on page 6 and roots from `root` on, for one base table.
void layOutBase(Pager &pager, DefinitionDraft &draft, PageNo page, PageNo &root)
{
    constexpr PageNo maps = 6;
    const auto add = [&](const Bytes &map) { return RowId{maps, DataPageEditor(pager, maps).add(map)}; };
    draft.owned = add(emptyMap());
    draft.freeSpace = add(emptyMap());
    for (LongValueMaps &longValue : draft.longValues) {
        longValue.owned = add(emptyMap());
        longValue.freeSpace = add(emptyMap());
    }
    for (DraftIndex &index : draft.physical) {
        index.index.root = root++;
        index.index.map = add(mapOf(index.index.root));
        IndexTree::initRoot(pager.change(index.index.root), page);
    }
    // The maps go by column number, the list of them by the place of the descriptor.
    std::vector<LongValueMaps> listed;
    for (const DraftColumn &column : draft.columns) {
        for (const LongValueMaps &longValue : draft.longValues) {
            if (longValue.column == column.column.number)
                listed.push_back(longValue);
        }
    }
    draft.longValues = std::move(listed);
}

} // namespace

RowId MapRows::add(const Bytes &map, std::size_t together)
{
    if (m_page == 0 || DataPage(m_parts.pager(), m_page).freeSpace() < together * (kMapRow + 2)) {
        m_page = m_parts.allocation().allocate();
        DataPageEditor::init(m_parts.pager().change(m_page), 0);
    }
    return {m_page, DataPageEditor(m_parts.pager(), m_page).add(map)};
}

PageNo createTable(FileParts &parts, const NewTable &table)
{
    checkName(table.name);
    checkNames(table.columns);
    checkNames(table.indexes);
    checkColumns(table);
    checkIndexes(table);
    if (parts.catalog().find(table.name))
        throw Error(Code::ItemExists, toUtf8(table.name));
    DefinitionDraft draft = draftOf(table);
    const std::vector<PageNo> pages = layOut(parts, draft);
    writeDefinition(parts.pager(), pages, serialiseDefinition(draft));
    std::vector<Column> columns;
    for (const DraftColumn &column : draft.columns)
        columns.push_back(column.column);
    parts.catalog().addTable(table.name, pages.front(), propertiesOf(columns));
    parts.forget();
    return pages.front();
}

void createBareFile(FileParts &parts)
{
    constexpr PageNo pagesBeforeRows = 14;
    Pager &pager = parts.pager();
    while (pager.pageCount() < pagesBeforeRows)
        pager.append();
    Allocation::initPage(pager.change(1), pagesBeforeRows);
    DataPageEditor::init(pager.change(6), 0);
    PageNo page = kObjectsPage, root = 7;
    for (const BaseTable &table : baseTables()) {
        DefinitionDraft draft = draftOf(table);
        layOutBase(pager, draft, page, root);
        writeDefinition(pager, std::span(&page, 1), serialiseDefinition(draft));
        ++page;
    }
    fillBareCatalog(parts.catalog());
    initHeader(pager.change(0));
}

} // namespace vardelin::jet
