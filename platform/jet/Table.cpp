#include "platform/jet/FileParts.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/Passage.h"
#include "platform/jet/RowCodec.h"
#include "platform/jet/RowReader.h"
#include "platform/jet/RowWriter.h"
#include "platform/jet/TextOrder.h"

#include <algorithm>

namespace vardelin::jet {

// ---- Cursor

struct Cursor::State
{
    explicit State(const Table &scanned)
        : table(&scanned), parts(&scanned.m_file), reading(std::make_unique<Reading>(*parts)),
          definition(&scanned.current()), owned(parts->pager(), definition->owned), passage(parts->pager())
    {}

    // The next row behind the slot, or the end, which gives the lock back.
    void advance();
    bool nextOnPage();
    void enter(PageNo number);
    const std::byte *passing(PageNo number);

    const Table *table;
    FileParts *parts;
    std::unique_ptr<Reading> reading;
    const TableDefinition *definition;
    UsageMap owned;
    Passage passage;
    std::optional<DataPage> page;
    PageNo number = 0;
    PageNo firstPage = 0, pagesMet = 0;
    std::size_t slot = 0; // the next to look at
    std::uint64_t changes = 0;
    RowView view;
    bool end = false;
    alignas(64) std::byte room[kPageSize]; // of a page that isn't worth being mapped
};

// A table whose pages lie scattered between those of long values is read page by page: mapping would bring
// the others along.
void Cursor::State::enter(PageNo next)
{
    constexpr PageNo kFew = 16, kScattered = 4;
    if (pagesMet++ == 0)
        firstPage = next;
    const bool scattered = pagesMet > kFew && (next - firstPage) / kScattered > pagesMet;
    page.emplace(parts->pager(), next, scattered ? passing(next) : parts->pager().page(next));
    page->requireOwner(definition->page());
    number = next;
    changes = parts->changes();
}

const std::byte *Cursor::State::passing(PageNo next)
{
    if (const std::byte *read = passage.atHand(next))
        std::memcpy(room, read, kPageSize);
    else if (parts->pager().passing(next, room) == 0)
        return parts->pager().page(next);
    return room;
}

bool Cursor::State::nextOnPage()
{
    passage.step();
    for (; slot < page->slots(); ++slot) {
        const Slot at = page->slot(slot);
        const RowId id{number, static_cast<std::uint8_t>(slot)};
        if (at.flags == kLiveRow) {
            view = RowReader::view(*table, id, {page->bytes() + at.begin, at.end - at.begin}, &passage);
        } else if (at.flags == kForward) {
            const RowLocation location{id, RowReader::target(*page, slot)};
            view = RowReader::view(*table, id, RowReader::bytes(parts->pager(), definition->page(), location),
                                   &passage);
        } else {
            continue;
        }
        ++slot;
        return true;
    }
    return false;
}

void Cursor::State::advance()
{
    if (end)
        return;
    if (changes != parts->changes()) { // the page may look different now, or may have gone
        parts->enter();
        passage.forget();
        definition = &table->current();
        page.reset();
        changes = parts->changes();
        if (number != 0 && owned.contains(number))
            enter(number);
    }
    while (!page || !nextOnPage()) {
        const PageNo next = owned.next(number + 1);
        if (next == kNoPage) {
            end = true;
            view = {};
            page.reset();
            reading.reset();
            return;
        }
        slot = 0;
        enter(next);
    }
}

Cursor::Cursor(std::unique_ptr<State> state) : m_state(std::move(state))
{
    m_state->changes = m_state->parts->changes();
    m_state->advance();
}

Cursor::Cursor(Cursor &&) noexcept = default;
Cursor &Cursor::operator=(Cursor &&) noexcept = default;
Cursor::~Cursor() = default;

bool Cursor::atEnd() const
{
    return m_state->end;
}

const RowView &Cursor::view() const
{
    return m_state->view;
}

void Cursor::next()
{
    m_state->advance();
}

// ---- Table

Table::Table(FileParts &file, std::unique_ptr<TableDefinition> definition)
    : m_file(file), m_definition(std::move(definition)), m_generation(file.generation())
{}

Table::~Table() = default;

const TableDefinition &Table::current() const
{
    if (m_generation != m_file.generation()) {
        m_file.refresh(*m_definition);
        m_generation = m_file.generation();
    }
    return *m_definition;
}

const std::u16string &Table::name() const
{
    return m_definition->name;
}

const std::vector<Column> &Table::columns() const
{
    return m_definition->columns;
}

const std::vector<LogicalIndex> &Table::indexes() const
{
    return m_definition->logical;
}

const PhysicalIndex &Table::physicalIndex(const LogicalIndex &index) const
{
    return m_definition->physical.at(index.physical);
}

std::optional<std::size_t> Table::findColumn(std::u16string_view name) const
{
    const auto &all = m_definition->columns;
    auto found = std::find_if(all.begin(), all.end(), [&](const Column &c) { return c.name == name; });
    if (found == all.end())
        found = std::find_if(all.begin(), all.end(),
                             [&](const Column &c) { return compareText(c.name, name) == 0; });
    if (found == all.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - all.begin());
}

std::uint32_t Table::rowCount() const
{
    const Reading reading(m_file);
    return load<std::uint32_t>(m_file.pager().page(current().page()) + kRowCountAt);
}

std::int32_t Table::lastAutoNumber() const
{
    const Reading reading(m_file);
    return load<std::int32_t>(m_file.pager().page(current().page()) + kAutoNumberAt);
}

Cursor Table::scan() const
{
    return Cursor(std::make_unique<Cursor::State>(*this));
}

RowView Table::row(RowId id) const
{
    const PageNo page = current().page();
    const auto location = RowReader::locate(m_file.pager(), page, id);
    if (!location)
        throw Error(Code::RowDeleted);
    return RowReader::view(*this, id, RowReader::bytes(m_file.pager(), page, *location));
}

bool Table::exists(RowId id) const
{
    const Reading reading(m_file);
    return RowReader::locate(m_file.pager(), current().page(), id).has_value();
}

std::vector<RowId> Table::find(const LogicalIndex &index, std::span<const Cell> key) const
{
    const Reading reading(m_file);
    const TableDefinition &table = current();
    PhysicalIndex leading = table.physical.at(index.physical);
    if (key.size() > leading.columns.size())
        throw Error(Code::InvalidArgument);
    leading.columns.resize(key.size());
    std::vector<ColumnType> types;
    std::vector<Cell> cells(key.begin(), key.end());
    for (std::size_t i = 0; i < key.size(); ++i) {
        const Column &column = *table.byNumber(leading.columns[i].column);
        if (!table.knownOrder && (column.type == ColumnType::Text || column.type == ColumnType::Memo))
            throw Error(Code::UnknownTextOrder);
        if (!cellFits(column, key[i]))
            throw Error(Code::InvalidArgument);
        if (const auto *decimal = std::get_if<Decimal>(&key[i]))
            cells[i] = decimalFor(column, *decimal);
        types.push_back(column.type);
    }
    const std::string prefix = indexKey(leading, types, cells);
    std::vector<RowId> rows;
    IndexTree tree(m_file.pager(), table.page(), leading.root);
    for (auto at = tree.seek(prefix); !at.atEnd() && at.key().starts_with(prefix); at.next())
        rows.push_back(at.row());
    return rows;
}

std::vector<RowId> Table::inOrder(const LogicalIndex &index) const
{
    const Reading reading(m_file);
    const TableDefinition &table = current();
    IndexTree tree(m_file.pager(), table.page(), table.physical.at(index.physical).root);
    std::vector<RowId> rows;
    for (auto at = tree.begin(); !at.atEnd(); at.next())
        rows.push_back(at.row());
    return rows;
}

// A row of the catalog may be a table that has come or gone.
void Table::noteChange()
{
    if (m_definition->page() == kObjectsPage)
        m_file.forget();
}

RowId Table::insert(std::span<const ColumnValue> values)
{
    Writing writing(m_file);
    const RowId id = RowWriter(m_file, *this, current()).insert(values, m_givenAutoNumber);
    writing.commit();
    noteChange();
    return id;
}

void Table::update(RowId id, std::span<const ColumnValue> values)
{
    Writing writing(m_file);
    RowWriter(m_file, *this, current()).update(id, values);
    writing.commit();
    noteChange();
}

void Table::erase(RowId id)
{
    Writing writing(m_file);
    RowWriter(m_file, *this, current()).erase(id);
    writing.commit();
    noteChange();
}

} // namespace vardelin::jet
