#include "platform/jet/RowWriter.h"

#include "platform/jet/LongValue.h"

#include <algorithm>

namespace vardelin::jet {

PageNo PagesOfIndex::allocate()
{
    const PageNo page = m_allocation.allocate();
    m_map.add(page, m_allocation);
    return page;
}

void PagesOfIndex::release(PageNo page)
{
    m_map.remove(page);
    m_allocation.release(page, std::to_integer<std::uint8_t>(m_pager.page(page)[0]));
}

RowWriter::RowWriter(FileParts &parts, const Table &table, const TableDefinition &definition)
    : m_parts(parts), m_table(table), m_definition(definition), m_pager(parts.pager()),
      m_allocation(parts.allocation()), m_owned(m_pager, definition.owned),
      m_freeSpace(m_pager, definition.freeSpace)
{
    if (!definition.knownOrder)
        throw Error(Code::UnknownTextOrder);
}

// ---- The three operations

RowId RowWriter::insert(std::span<const ColumnValue> values, std::int32_t &lastGiven)
{
    RowPlan plan(m_parts, m_definition, values, nullptr, {});
    plan.giveAutoNumber(lastGiven);
    plan.check();
    const auto keys = keyChanges(&plan, nullptr);
    checkUnique(keys);
    checkRelationships(keys);
    plan.encode();

    writeOutside(plan);
    const RowId id = place(encodeRow(m_definition, plan.fields()), kLiveRow);
    changeKeys(keys, id);
    changeRowCount(1);
    if (const auto column = m_definition.autoNumberColumn()) {
        std::byte *last = m_pager.change(m_definition.page()) + kAutoNumberAt;
        store(last, std::max(load<std::int32_t>(last), std::get<std::int32_t>(plan.value(*column))));
    }
    return id;
}

void RowWriter::update(RowId id, std::span<const ColumnValue> values)
{
    const RowLocation location = locate(id);
    const auto lying = RowReader::bytes(m_pager, m_definition.page(), location);
    const Bytes oldBytes(lying.begin(), lying.end());
    const RowView old = RowReader::view(m_table, id, oldBytes);
    RowPlan plan(m_parts, m_definition, values, &old, oldBytes);
    plan.check();
    const auto keys = keyChanges(&plan, &old);
    checkUnique(keys);
    checkRelationships(keys);
    plan.encode();

    for (const std::size_t column : plan.replaced())
        releaseLongValue(column, oldBytes, id);
    writeOutside(plan);
    replaceRow(location, encodeRow(m_definition, plan.fields()));
    changeKeys(keys, id);
}

void RowWriter::erase(RowId id)
{
    const RowLocation location = locate(id);
    const auto lying = RowReader::bytes(m_pager, m_definition.page(), location);
    const Bytes oldBytes(lying.begin(), lying.end());
    const RowView old = RowReader::view(m_table, id, oldBytes);
    const auto keys = keyChanges(nullptr, &old);
    checkRelationships(keys);
    changeKeys(keys, id);
    for (std::size_t i = 0; i < m_definition.columns.size(); ++i) {
        if (isLongValue(m_definition.columns[i].type))
            releaseLongValue(i, oldBytes, id);
    }
    if (location.moved())
        eraseSlot(location.actual);
    eraseSlot(location.first);
    changeRowCount(-1);
}

RowLocation RowWriter::locate(RowId id) const
{
    const auto location = RowReader::locate(m_pager, m_definition.page(), id);
    if (!location)
        throw Error(Code::RowDeleted);
    return *location;
}

// ---- Keys

template <class ValueOf>
std::optional<RowWriter::Key> RowWriter::keyOf(const PhysicalIndex &index, bool isNew, ValueOf valueOf) const
{
    std::vector<Cell> cells;
    std::vector<ColumnType> types;
    for (const IndexColumn &key : index.columns) {
        const std::size_t column = *m_definition.placeOf(key.column);
        cells.push_back(valueOf(column));
        types.push_back(m_definition.columns[column].type);
        if (isNew && index.required && isNull(cells.back()))
            throw Error(Code::NullInKey);
    }
    const auto nulls = static_cast<std::size_t>(
        std::count_if(cells.begin(), cells.end(), [](const Cell &cell) { return isNull(cell); }));
    if (nulls == cells.size() && index.ignoreNulls)
        return std::nullopt;
    return Key{indexKey(index, types, cells), nulls == cells.size(), nulls > 0};
}

bool RowWriter::concerns(const PhysicalIndex &index, const RowPlan &plan) const
{
    return std::any_of(index.columns.begin(), index.columns.end(),
                       [&](const IndexColumn &key) { return plan.named(*m_definition.placeOf(key.column)); });
}

// Entries that go and come. plan: none for a row that is deleted; old: none for a new one.
std::vector<RowWriter::KeyChange> RowWriter::keyChanges(const RowPlan *plan, const RowView *old) const
{
    std::vector<KeyChange> changes;
    for (const PhysicalIndex &index : m_definition.physical) {
        if (plan && old && !concerns(index, *plan))
            continue;
        KeyChange change{&index, {}, {}};
        if (old)
            change.before = keyOf(index, false, [&](std::size_t column) { return old->cell(column); });
        if (plan)
            change.after = keyOf(index, true, [&](std::size_t column) { return plan->value(column); });
        const bool same = change.before && change.after && change.before->bytes == change.after->bytes;
        if (!same && (change.before || change.after))
            changes.push_back(std::move(change));
    }
    return changes;
}

void RowWriter::checkUnique(const std::vector<KeyChange> &changes) const
{
    for (const KeyChange &change : changes) {
        if (!change.index->unique || !change.after || change.after->allNull)
            continue;
        IndexTree tree(m_pager, m_definition.page(), change.index->root);
        if (tree.find(change.after->bytes))
            throw Error(Code::DuplicateKey);
    }
}

void RowWriter::checkRelationships(const std::vector<KeyChange> &changes) const
{
    for (const LogicalIndex &index : m_definition.logical) {
        for (const KeyChange &change : changes) {
            if (index.side != LogicalIndex::Side::None && index.physical == change.index->number)
                checkRelationship(index, change, changes);
        }
    }
}

// The keys of both sides are compared as they lie; what can't be found in the other table is the checker's to
// tell.
void RowWriter::checkRelationship(const LogicalIndex &index, const KeyChange &change,
                                  const std::vector<KeyChange> &all) const
{
    const TableDefinition *other = m_parts.definitionOf(index.otherTable);
    const LogicalIndex *theirs = other ? other->counterpartOf(index, m_definition.page()) : nullptr;
    if (!theirs || !haveEqualKeys(m_definition, *change.index, *other, other->physical[theirs->physical]))
        return;
    const PhysicalIndex &tree = other->physical[theirs->physical];
    const auto has = [&](const std::string &key) {
        return IndexTree(m_pager, other->page(), tree.root).find(key).has_value();
    };
    if (index.side == LogicalIndex::Side::ReferredTo) {
        if (change.before && !change.before->allNull && has(change.before->bytes))
            throw Error(Code::RelatedRecords, toUtf8(other->name));
        return;
    }
    const bool refers = change.after && !change.after->anyNull;
    const bool toItself =
        refers && other->page() == m_definition.page() &&
        std::any_of(all.begin(), all.end(), [&](const KeyChange &own) {
            return own.index->number == tree.number && own.after && own.after->bytes == change.after->bytes;
        });
    if (refers && !toItself && !has(change.after->bytes))
        throw Error(Code::RelatedRecordRequired, toUtf8(other->name));
}

void RowWriter::changeKeys(const std::vector<KeyChange> &changes, RowId row)
{
    for (const KeyChange &change : changes) {
        IndexTree tree(m_pager, m_definition.page(), change.index->root);
        PagesOfIndex pages(m_pager, m_allocation, change.index->map);
        if (change.before && !tree.erase(change.before->bytes, row, pages))
            Place{m_pager, row.page}.damaged("row " + std::to_string(row.row) + " isn't in an index");
        if (!change.after)
            continue;
        const bool isNew = change.index->unique && !change.after->allNull; // checkUnique() has found none
        if (isNew || !tree.find(change.after->bytes)) {
            std::byte *count = m_pager.change(m_definition.page()) + kIndexCountsAt +
                               12 * std::size_t{change.index->number} + 4;
            store(count, load<std::uint32_t>(count) + 1);
        }
        tree.insert(change.after->bytes, row, pages);
    }
}

// ---- Rows and long values

void RowWriter::writeOutside(RowPlan &plan)
{
    for (const RowPlan::Outside &value : plan.outside()) {
        const std::uint16_t number = m_definition.columns[value.column].number;
        LongValuePages pages(m_pager, m_allocation, m_definition.longValueMaps(number));
        plan.setHeader(value.column, pages.write(value.data));
    }
}

void RowWriter::releaseLongValue(std::size_t column, std::span<const std::byte> row, RowId id)
{
    const Column &definition = m_definition.columns[column];
    const RowPlace place{m_pager, id};
    const StoredField field = readField(m_definition, definition, row, place);
    if (field.present)
        LongValuePages(m_pager, m_allocation, m_definition.longValueMaps(definition.number))
            .release(field.bytes, place);
}

RowId RowWriter::place(std::span<const std::byte> row, std::uint16_t flags)
{
    const PageNo last = m_owned.previous(m_pager.pageCount() - 1);
    PageNo page = last;
    if (last != kNoPage)
        DataPage(m_pager, last).requireOwner(m_definition.page());
    if (last == kNoPage || !DataPage(m_pager, last).takesRow(row.size())) {
        page = m_allocation.allocate(last == kNoPage ? 0 : last);
        DataPageEditor::init(m_pager.change(page), m_definition.page());
        m_owned.add(page, m_allocation);
    }
    const RowId id{page, DataPageEditor(m_pager, page).add(row, flags)};
    noteRoom(page);
    return id;
}

void RowWriter::replaceRow(const RowLocation &at, std::span<const std::byte> row)
{
    if (replaceIfFits(at.actual, row, at.moved() ? kMovedRow : kLiveRow))
        return;
    if (!at.moved()) {
        forward(at.first, place(row, kMovedRow));
        return;
    }
    if (!replaceIfFits(at.first, row, kLiveRow))
        forward(at.first, place(row, kMovedRow));
    eraseSlot(at.actual);
}

bool RowWriter::replaceIfFits(RowId at, std::span<const std::byte> row, std::uint16_t flags)
{
    const DataPage page(m_pager, at.page);
    const std::size_t old = page.row(at.row).size();
    if (row.size() > old && row.size() - old > page.freeSpace())
        return false;
    DataPageEditor(m_pager, at.page).replace(at.row, row, flags);
    noteRoom(at.page);
    return true;
}

void RowWriter::forward(RowId from, RowId to)
{
    Bytes pointer(4);
    storeRowId(pointer.data(), to);
    DataPageEditor(m_pager, from.page).replace(from.row, pointer, kForward);
    noteRoom(from.page);
}

void RowWriter::eraseSlot(RowId at)
{
    DataPageEditor editor(m_pager, at.page);
    editor.erase(at.row);
    if (!editor.view().empty()) {
        noteRoom(at.page);
        return;
    }
    m_owned.remove(at.page);
    m_freeSpace.remove(at.page);
    m_allocation.release(at.page, 9);
}

void RowWriter::noteRoom(PageNo page)
{
    if (DataPage(m_pager, page).freeSpace() >= kWorthListing)
        m_freeSpace.add(page, m_allocation);
    else
        m_freeSpace.remove(page);
}

void RowWriter::changeRowCount(std::int32_t by)
{
    std::byte *count = m_pager.change(m_definition.page()) + kRowCountAt;
    store(count, load<std::uint32_t>(count) + static_cast<std::uint32_t>(by));
}

} // namespace vardelin::jet
