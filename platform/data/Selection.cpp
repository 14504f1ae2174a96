#include "platform/data/Selection.h"

#include <algorithm>

namespace vardelin::data {

Selection::Selection(jet::File &file, const QString &source) : m_select(file, source)
{
    if (!updatable()) {
        m_rows = m_select.rows();
        return;
    }
    const jet::ReadScope scope(file); // places and numbers of one moment
    m_numberColumn = autoNumberColumn(table());
    const auto number = [this](const jet::RowView &row) {
        return m_numberColumn ? numberOf(row, *m_numberColumn) : 0;
    };
    const std::vector<sql::MarkedPlace> rows = m_select.places(number);
    m_places.reserve(rows.size());
    for (const sql::MarkedPlace &row : rows)
        m_places.push_back({row.row, row.mark});
}

std::size_t Selection::fieldAt(const QString &name) const
{
    const auto field = findField(name);
    if (!field)
        fail(Number::ItemNotFound);
    return *field;
}

std::size_t Selection::columnOf(std::size_t field) const
{
    const auto column = fields()[field].source;
    if (!column)
        fail(Number::NotSupported);
    return *column;
}

Value Selection::value(const jet::File &file, std::size_t row, std::size_t field) const
{
    if (!updatable())
        return m_rows[row][field];
    const jet::ReadScope scope(file);
    return m_select.value(field, rowAt(table(), m_places[row], m_numberColumn));
}

void Selection::append(jet::RowId row)
{
    m_places.push_back({row, m_numberColumn ? table().lastAutoNumber() : 0});
}

void Selection::erase(std::size_t row)
{
    m_places.erase(m_places.begin() + static_cast<std::ptrdiff_t>(row));
}

// A filter leaves one row of many thousand, and a transfer sets one for each row: only its own rows are
// sorted.
void Selection::keepOnly(const std::vector<RowPlace> &places)
{
    if (m_places.empty())
        return;
    std::vector<jet::RowId> own;
    for (const RowPlace &place : m_places)
        own.push_back(place.row);
    std::ranges::sort(own);
    std::vector<bool> kept(own.size());
    for (const RowPlace &place : places) {
        const auto at = std::ranges::lower_bound(own, place.row);
        if (at != own.end() && *at == place.row)
            kept[static_cast<std::size_t>(at - own.begin())] = true;
    }
    std::erase_if(m_places, [&](const RowPlace &place) {
        return !kept[static_cast<std::size_t>(std::ranges::lower_bound(own, place.row) - own.begin())];
    });
}

} // namespace vardelin::data
