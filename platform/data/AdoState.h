#pragma once
// What a connection and a static record set hold; for the sources of the provider's route alone.

#include "platform/data/Ado.h"
#include "platform/data/Selection.h"

namespace vardelin::ado {

struct Connection::State
{
    std::shared_ptr<data::OpenedFile> opened;
};

struct Recordset::State
{
    std::shared_ptr<data::OpenedFile> opened;
    QString source;
    std::optional<data::Selection> rows;       // always there once it is open
    std::optional<data::Selection> unfiltered; // the whole set, while `rows` is a filtered part of it
    QString filter;

    // Where it stands: on the row `at`, or ahead of it where a row was deleted; -1 is ahead of the first,
    // size() behind the last.
    std::ptrdiff_t at = 0;
    bool deleted = false;
    bool adding = false; // the new row is current; `at` keeps the place to come back to
    std::vector<std::pair<std::size_t, Value>> edits; // by field
    data::RowImage image;

    std::ptrdiff_t size() const { return static_cast<std::ptrdiff_t>(rows->size()); }
    bool onRow() const { return !adding && !deleted && at >= 0 && at < size(); }
    const data::RowPlace &place() const { return rows->places()[static_cast<std::size_t>(at)]; }

    void run(); // fetches the rows and stands on the first
    void needRow() const;
    void needMove();
    void standAt(std::ptrdiff_t position);
    Value read(std::size_t field);
    std::vector<jet::ColumnValue> converted() const;
    void insertRow();
    void updateRow();
    void eraseRow();
};

} // namespace vardelin::ado
