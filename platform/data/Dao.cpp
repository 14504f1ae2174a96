#include "platform/data/Dao.h"

#include "platform/data/DaoState.h"

#include <algorithm>

namespace vardelin::dao {

using data::fail;
namespace Number = data::Number;

Recordset::Recordset(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Recordset::~Recordset() = default;

Recordset::State &Recordset::state() const
{
    if (!m_state)
        fail(Number::ObjectClosed);
    m_state->use();
    return *m_state;
}

// For what happens in memory alone: whether the file has been replaced is for Update to find.
Recordset::State &Recordset::stateInMemory() const
{
    if (!m_state || !m_state->opened->isOpen())
        fail(Number::ObjectClosed);
    return *m_state;
}

void Recordset::Close()
{
    state();
    m_state.reset();
}

Recordset::State::State(std::shared_ptr<data::OpenedFile> openedFile, const QString &table)
    : opened(std::move(openedFile)),
      m_table(engineCall([&]() -> jet::Table & { return opened->file().table(toU16(table)); }))
{}

void Recordset::State::use()
{
    m_file = &opened->file(); // closed or replaced: no table to speak of
}

// ---- the row that it stands on

void Recordset::State::readPlaces()
{
    m_places.clear();
    for (jet::Cursor row = m_table.scan(); !row.atEnd(); row.next())
        m_places.push_back(row.id());
    if (!std::ranges::is_sorted(m_places))
        std::ranges::sort(m_places);
    m_placesRead = true;
}

void Recordset::State::settle()
{
    if (m_stand != Stand::Unsettled)
        return;
    readPlaces();
    if (!standOnFirstFrom(0))
        m_stand = Stand::Empty;
}

bool Recordset::State::standOnFirstFrom(std::size_t index)
{
    for (; index < m_places.size(); ++index)
        if (standOn(m_places[index]))
            return true;
    return false;
}

bool Recordset::State::standOnLastBefore(std::size_t end)
{
    while (end > 0)
        if (standOn(m_places[--end]))
            return true;
    return false;
}

bool Recordset::State::standOn(jet::RowId row)
{
    const jet::ReadScope scope(*m_file);
    if (!m_table.exists(row))
        return false;
    m_row = row;
    m_stand = Stand::Row;
    try {
        m_image.read(*m_file, m_table, {row, 0}, std::nullopt);
    } catch (const jet::Error &error) {
        if (error.code() != jet::Code::Damaged)
            throw;
        m_image.clear(); // told when its columns are asked for; the moves lead past it
    }
    return true;
}

void Recordset::State::leaveFor(Stand stand)
{
    m_image.clear();
    m_stand = m_table.rowCount() == 0 ? Stand::Empty : stand;
}

std::size_t Recordset::State::indexBehindRow() const
{
    return static_cast<std::size_t>(std::ranges::upper_bound(m_places, m_row) - m_places.begin());
}

std::size_t Recordset::State::indexOfRow() const
{
    return static_cast<std::size_t>(std::ranges::lower_bound(m_places, m_row) - m_places.begin());
}

void Recordset::State::dropEdit()
{
    m_mode = Mode::None;
    m_edits.clear();
}

// ---- moves

void Recordset::State::moveToEnd(bool first)
{
    dropEdit();
    readPlaces();
    if (first ? standOnFirstFrom(0) : standOnLastBefore(m_places.size()))
        return;
    leaveFor(Stand::Empty);
    fail(Number::NoCurrentRecord);
}

void Recordset::State::moveNext()
{
    dropEdit();
    settle();
    if (m_stand == Stand::Empty || m_stand == Stand::Behind)
        fail(Number::NoCurrentRecord);
    const auto next = [&] { return standOnFirstFrom(m_stand == Stand::Ahead ? 0 : indexBehindRow()); };
    if (next())
        return;
    readPlaces(); // rows that others have added behind
    if (!next())
        leaveFor(Stand::Behind);
}

void Recordset::State::movePrevious()
{
    dropEdit();
    settle();
    if (m_stand == Stand::Empty || m_stand == Stand::Ahead)
        fail(Number::NoCurrentRecord);
    if (!standOnLastBefore(m_stand == Stand::Behind ? m_places.size() : indexOfRow()))
        leaveFor(Stand::Ahead);
}

bool Recordset::BOF() const
{
    const State &s = state();
    return s.m_stand == State::Stand::Ahead || s.isEmpty();
}

bool Recordset::EOF_() const
{
    const State &s = state();
    return s.m_stand == State::Stand::Behind || s.isEmpty();
}

bool Recordset::State::isEmpty() const
{
    return m_stand == Stand::Empty || (m_stand == Stand::Unsettled && rowCount() == 0);
}

int Recordset::State::rowCount() const
{
    return engineCall([&] {
        const jet::ReadScope scope(*m_file);
        return static_cast<int>(m_table.rowCount());
    });
}

int Recordset::RecordCount() const
{
    return state().rowCount();
}

void Recordset::MoveFirst()
{
    State &s = state();
    engineCall([&] { s.moveToEnd(true); });
}

void Recordset::MoveLast()
{
    State &s = state();
    engineCall([&] { s.moveToEnd(false); });
}

void Recordset::MoveNext()
{
    State &s = state();
    engineCall([&] { s.moveNext(); });
}

void Recordset::MovePrevious()
{
    State &s = state();
    engineCall([&] { s.movePrevious(); });
}

// ---- fields and edits

void Recordset::State::needRow()
{
    settle();
    if (m_stand == Stand::Deleted)
        fail(Number::RowDeleted);
    if (m_stand != Stand::Row)
        fail(Number::NoCurrentRecord);
}

const jet::Cell &Recordset::State::currentCell(std::size_t column)
{
    needRow();
    if (m_image.empty())
        m_image.read(*m_file, m_table, {m_row, 0}, std::nullopt);
    return m_image.cell(*m_file, m_table, column);
}

Value Recordset::Fields(const QString &name) const
{
    State &s = state();
    return engineCall([&] {
        const std::size_t column = data::columnOf(s.m_table, name);
        if (const jet::Cell *edited = s.m_edits.find(column))
            return toValue(*edited);
        if (s.m_mode == State::Mode::Add)
            return Value(NullValue{});
        return toValue(s.currentCell(column));
    });
}

QStringList Recordset::FieldNames() const
{
    QStringList names;
    for (const jet::Column &column : state().m_table.columns())
        names.append(toQString(column.name));
    return names;
}

void Recordset::SetField(const QString &name, const Value &value)
{
    State &s = stateInMemory();
    const std::size_t column = data::columnOf(s.m_table, name);
    if (s.m_mode == State::Mode::None)
        fail(Number::UpdateWithoutEdit);
    const jet::Column &definition = s.m_table.columns()[column];
    if (definition.autoNumber)
        engineCall([] { throw jet::Error(jet::Code::AutoNumberReadOnly); });
    s.m_edits.set(column, toCell(value, definition));
}

void Recordset::AddNew()
{
    State &s = state();
    s.dropEdit();
    s.m_mode = State::Mode::Add;
}

void Recordset::Edit()
{
    State &s = state();
    s.dropEdit();
    engineCall([&] {
        s.needRow();
        s.m_image.read(*s.m_file, s.m_table, {s.m_row, 0},
                       std::nullopt); // as it is now: others may have changed or deleted it
    });
    s.m_mode = State::Mode::Edit;
}

void Recordset::Update()
{
    State &s = state();
    if (s.m_mode == State::Mode::None)
        fail(Number::UpdateWithoutEdit);
    engineCall([&] {
        if (s.m_mode == State::Mode::Add)
            s.addRow();
        else
            s.changeRow();
    });
    s.dropEdit();
}

void Recordset::State::addRow()
{
    m_lastModified = m_table.insert(m_edits.changes());
    if (m_placesRead)
        m_places.insert(std::ranges::upper_bound(m_places, *m_lastModified), *m_lastModified);
}

void Recordset::State::changeRow()
{
    if (!m_edits.changes().empty())
        m_table.update(m_row, m_edits.changes());
    m_lastModified = m_row;
    m_image.clear();
}

void Recordset::CancelUpdate()
{
    State &s = state();
    if (s.m_mode == State::Mode::None)
        fail(Number::UpdateWithoutEdit);
    s.dropEdit();
}

void Recordset::Delete()
{
    State &s = state();
    s.dropEdit();
    engineCall([&] {
        s.needRow();
        s.m_table.erase(s.m_row);
    });
    s.m_image.clear();
    s.m_stand = State::Stand::Deleted;
}

// ---- bookmarks

QByteArray Recordset::Bookmark() const
{
    State &s = state();
    engineCall([&] { s.needRow(); });
    return data::bookmarkOf(s.m_row);
}

QByteArray Recordset::LastModified() const
{
    const State &s = state();
    if (!s.m_lastModified)
        fail(Number::NoCurrentRecord);
    return data::bookmarkOf(*s.m_lastModified);
}

void Recordset::SetBookmark(const QByteArray &bookmark)
{
    State &s = state();
    const jet::RowId row = data::rowOf(bookmark);
    s.dropEdit();
    engineCall([&] {
        if (!s.m_placesRead)
            s.readPlaces();
        if (!s.standOn(row))
            fail(Number::RowDeleted);
    });
}

} // namespace vardelin::dao
