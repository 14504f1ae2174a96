#pragma once
// What a source, a table's name or a Select statement, gives to a static record set.

#include "platform/data/OpenedFile.h"
#include "platform/sql/Select.h"

namespace vardelin::data {

// The rows of a statement: places in its table, whose columns are read later, or rows of values where a row
// of the result isn't a row of the table. It must not outlive the file.
class Selection
{
public:
    Selection(jet::File &file, const QString &source); // errors: platform/sql/Select.h

    const std::vector<sql::ResultColumn> &fields() const { return m_select.columns(); }
    std::optional<std::size_t> findField(const QString &name) const { return m_select.findColumn(name); }
    std::size_t fieldAt(const QString &name) const; // ItemNotFound

    // Rows of a table can be changed, added and deleted; computed ones can't.
    bool updatable() const { return m_select.hasPlaces(); }
    std::size_t size() const { return updatable() ? m_places.size() : m_rows.size(); }
    jet::Table &table() const { return m_select.table(); }
    const std::optional<std::size_t> &numberColumn() const { return m_numberColumn; }
    const std::vector<RowPlace> &places() const { return m_places; }
    // The table's column that a field shows; NotSupported for an expression.
    std::size_t columnOf(std::size_t field) const;
    Value value(const jet::File &file, std::size_t row, std::size_t field) const; // read or computed now

    void append(jet::RowId row); // the row that was inserted last
    void erase(std::size_t row);
    void keepOnly(const std::vector<RowPlace> &places); // in the order of this one

private:
    sql::Select m_select;
    std::optional<std::size_t> m_numberColumn;
    std::vector<RowPlace> m_places;
    std::vector<std::vector<Value>> m_rows;
};

} // namespace vardelin::data
