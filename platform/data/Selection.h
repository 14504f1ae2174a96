#pragma once
// What a source, a table's name or a Select statement, gives to a static record set.

#include "platform/data/OpenedFile.h"

namespace vardelin::data {

// A field of a record set: a column of the table, or an expression's value.
struct Field
{
    QString name;
    std::size_t column = 0; // in the table, or in the computed rows
};

struct Selection
{
    std::vector<Field> fields;
    // Rows of a table, in the order asked for ...
    jet::Table *table = nullptr; // lives as long as the file
    std::optional<std::size_t> numberColumn;
    std::vector<RowPlace> places;
    // ... or rows of values, where the statement computes.
    std::vector<std::vector<Value>> computed;

    bool updatable() const { return table != nullptr; }
    std::size_t size() const { return table ? places.size() : computed.size(); }
    const Field *find(const QString &name) const;  // without regard to case
    const Field &field(const QString &name) const; // ItemNotFound
    void erase(std::size_t row);
};

// 3078 for an unknown table; the words of the statement's own errors: platform/sql/Select.h.
Selection select(jet::File &file, const QString &source);

} // namespace vardelin::data
