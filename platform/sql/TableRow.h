#pragma once
// A row of the file, as expressions see it.

#include "platform/jet/Jet.h"
#include "platform/sql/Evaluator.h"

namespace vardelin::sql {

// Reads a column when it is asked for, and nothing else. Lasts as long as the view.
class TableRow final : public Row
{
public:
    TableRow(const jet::Table &table, const jet::RowView &view) : m_table(table), m_view(view) {}
    Value value(std::size_t column) const override;
    StoredText storedText(std::size_t column, jet::Bytes &store) const override;

private:
    bool isText(std::size_t column) const;
    const jet::Table &m_table;
    const jet::RowView &m_view;
};

} // namespace vardelin::sql
