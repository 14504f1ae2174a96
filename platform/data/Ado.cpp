#include "platform/data/Ado.h"

#include "platform/data/AdoState.h"

#include <algorithm>

namespace vardelin::ado {

using data::fail;
namespace Number = data::Number;

Recordset::Recordset() = default;
Recordset::~Recordset() = default;

Recordset::State &Recordset::state() const
{
    if (!m_state || !m_state->opened->isOpen())
        fail(Number::ConnectionClosed);
    return *m_state;
}

// ---- opening

void Recordset::State::run()
{
    rows = engineCall([&] { return data::Selection(opened->file(), source); });
    unfiltered.reset();
    filter.clear();
    edits.clear();
    adding = false;
    standAt(0);
}

void Recordset::Open(const QString &source, Connection &connection)
{
    if (isOpen())
        fail(Number::ConnectionOpen);
    if (!connection.isOpen())
        fail(Number::NoConnection);
    auto state = std::make_unique<State>();
    state->opened = connection.m_state->opened;
    state->source = source;
    state->run();
    m_state = std::move(state);
}

void Recordset::Close()
{
    state();
    m_state.reset();
}

bool Recordset::isOpen() const
{
    return m_state && m_state->opened->isOpen();
}

void Recordset::Requery()
{
    state().run();
}

// ---- position

void Recordset::State::standAt(std::ptrdiff_t position)
{
    at = position;
    deleted = false;
    image.clear();
}

void Recordset::State::needRow() const
{
    if (adding)
        return;
    if (deleted)
        fail(rows->size() == 0 ? Number::NoCurrentRecord : Number::RowDeleted);
    if (!onRow())
        fail(Number::NoCurrentRecord);
}

// A set that Delete has just emptied has nowhere to move to, and says nothing; one that is empty refuses.
void Recordset::State::needMove()
{
    if (rows->size() == 0 && !deleted)
        fail(Number::NoCurrentRecord);
}

bool Recordset::BOF() const
{
    const State &s = state();
    return !s.adding && (s.size() == 0 || s.at < 0);
}

bool Recordset::EOF_() const
{
    const State &s = state();
    return !s.adding && (s.size() == 0 || (s.at >= s.size() && !s.deleted));
}

int Recordset::RecordCount() const
{
    return static_cast<int>(state().size());
}

int Recordset::AbsolutePosition() const
{
    const State &s = state();
    if (s.adding)
        return static_cast<int>(s.size()) + 1;
    return s.onRow() ? static_cast<int>(s.at) + 1 : -1;
}

void Recordset::SetAbsolutePosition(int position)
{
    State &s = state();
    if (position < 1 || position > s.size())
        fail(Number::InvalidArgument);
    Update();
    s.standAt(position - 1);
}

void Recordset::MoveFirst()
{
    State &s = state();
    Update();
    s.needMove();
    s.standAt(0);
}

void Recordset::MoveLast()
{
    State &s = state();
    Update();
    s.needMove();
    s.standAt(s.size() - 1);
}

void Recordset::MoveNext()
{
    State &s = state();
    Update();
    s.needMove();
    if (s.at >= s.size() && !s.deleted)
        fail(Number::NoCurrentRecord);
    s.standAt(s.deleted ? s.at : s.at + 1);
}

void Recordset::MovePrevious()
{
    State &s = state();
    Update();
    s.needMove();
    if (s.at < 0)
        fail(Number::NoCurrentRecord);
    s.standAt(s.at - 1);
}

QByteArray Recordset::Bookmark() const
{
    const State &s = state();
    s.needRow();
    if (s.adding || !s.rows->updatable())
        fail(Number::NoCurrentRecord);
    return data::bookmarkOf(s.place().row);
}

void Recordset::SetBookmark(const QByteArray &bookmark)
{
    State &s = state();
    const jet::RowId row = data::rowOf(bookmark);
    const auto place = std::ranges::find(s.rows->places(), row, &data::RowPlace::row);
    if (place == s.rows->places().end())
        fail(Number::NotABookmark);
    const auto position = place - s.rows->places().begin();
    Update();
    s.standAt(position);
}

// ---- fields

Value Recordset::State::read(std::size_t field)
{
    jet::File &file = opened->file();
    return engineCall([&] {
        if (!rows->updatable() || !rows->fields()[field].source)
            return rows->value(file, static_cast<std::size_t>(at), field);
        if (image.empty())
            image.read(file, rows->table(), place(), rows->numberColumn());
        return toValue(image.cell(file, rows->table(), rows->columnOf(field)));
    });
}

QStringList Recordset::FieldNames() const
{
    QStringList names;
    for (const sql::ResultColumn &field : state().rows->fields())
        names.append(field.name);
    return names;
}

bool Recordset::HasField(const QString &name) const
{
    return state().rows->findField(name).has_value();
}

Value Recordset::Fields(const QString &name) const
{
    State &s = state();
    const std::size_t field = s.rows->fieldAt(name);
    s.needRow();
    const auto edited = std::ranges::find(s.edits, field, &std::pair<std::size_t, Value>::first);
    if (edited != s.edits.end())
        return edited->second;
    return s.adding ? Value(NullValue{}) : s.read(field);
}

std::vector<Value> Recordset::ValuesAt(int position, const QStringList &names) const
{
    const State &s = state();
    if (position < 1 || position > s.size())
        fail(Number::InvalidArgument);
    const auto row = static_cast<std::size_t>(position - 1);
    jet::File &file = s.opened->file();
    data::RowImage image;
    std::vector<Value> values;
    for (const QString &name : names) {
        const std::size_t field = s.rows->fieldAt(name);
        values.push_back(engineCall([&] {
            if (!s.rows->updatable() || !s.rows->fields()[field].source)
                return s.rows->value(file, row, field);
            if (image.empty())
                image.read(file, s.rows->table(), s.rows->places()[row], s.rows->numberColumn());
            return toValue(image.cell(file, s.rows->table(), s.rows->columnOf(field)));
        }));
    }
    return values;
}

void Recordset::SetField(const QString &name, const Value &value)
{
    State &s = state();
    const std::size_t field = s.rows->fieldAt(name);
    s.needRow();
    if (!s.rows->updatable())
        fail(Number::NotSupported);
    s.rows->columnOf(field);
    const auto edited = std::ranges::find(s.edits, field, &std::pair<std::size_t, Value>::first);
    if (edited != s.edits.end())
        edited->second = value;
    else
        s.edits.emplace_back(field, value);
}

// ---- edits

bool Recordset::EditPending() const
{
    const State &s = state();
    return s.adding || !s.edits.empty();
}

void Recordset::AddNew()
{
    State &s = state();
    if (!s.rows->updatable())
        fail(Number::NotSupported);
    Update();
    s.image.clear();
    s.adding = true;
}

std::vector<jet::ColumnValue> Recordset::State::converted() const
{
    std::vector<jet::ColumnValue> cells;
    for (const auto &[field, value] : edits) {
        const std::size_t column = rows->columnOf(field);
        const jet::Column &definition = rows->table().columns()[column];
        if (definition.autoNumber)
            throw jet::Error(jet::Code::AutoNumberReadOnly);
        cells.emplace_back(column, toCell(value, definition));
    }
    return cells;
}

void Recordset::State::insertRow()
{
    const jet::RowId row = rows->table().insert(converted());
    rows->append(row);
    if (unfiltered)
        unfiltered->append(row);
    adding = false;
    standAt(size() - 1);
}

void Recordset::State::updateRow()
{
    const std::vector<jet::ColumnValue> cells = converted();
    jet::Scope scope(opened->file());
    data::rowAt(rows->table(), place(), rows->numberColumn());
    rows->table().update(place().row, cells);
    scope.commit();
    image.clear();
}

void Recordset::Update()
{
    State &s = state();
    if (!EditPending())
        return;
    s.opened->file();
    engineCall([&] {
        if (s.adding)
            s.insertRow();
        else
            s.updateRow();
    });
    s.edits.clear();
}

void Recordset::CancelUpdate()
{
    State &s = state();
    s.edits.clear();
    s.adding = false;
}

void Recordset::Delete()
{
    State &s = state();
    if (s.adding)
        return CancelUpdate();
    s.needRow();
    if (!s.rows->updatable())
        fail(Number::NotSupported);
    engineCall([&] {
        jet::Scope scope(s.opened->file());
        data::rowAt(s.rows->table(), s.place(), s.rows->numberColumn());
        s.rows->table().erase(s.place().row);
        scope.commit();
    });
    s.edits.clear();
    s.eraseRow();
}

} // namespace vardelin::ado
