#pragma once
// What a table recordset and a database hold; for the sources of the engine's route alone.

#include "platform/data/Dao.h"
#include "platform/data/OpenedFile.h"

namespace vardelin::dao {

struct Database::State
{
    std::shared_ptr<data::OpenedFile> opened;
};

// Where a record set stands:
//
//     Unsettled -> Ahead | Row | Deleted | Behind | Empty
//
// Unsettled is the first row, not looked up yet. Deleted is the place of a row that this record set deleted;
// a move leads to its neighbours. The places of all rows are read at the first move; at each arrival a place
// is looked at again.
struct Recordset::State
{
    enum class Stand { Unsettled, Ahead, Row, Deleted, Behind, Empty };
    enum class Mode { None, Add, Edit };

    State(std::shared_ptr<data::OpenedFile> openedFile, const QString &table);
    void use();

    bool isEmpty() const;
    int rowCount() const;
    void settle();
    void needRow();
    const jet::Cell &currentCell(std::size_t column);
    void moveToEnd(bool first);
    void moveNext();
    void movePrevious();
    void dropEdit();
    void addRow();
    void changeRow();

    void readPlaces();
    bool standOnFirstFrom(std::size_t index);
    bool standOnLastBefore(std::size_t end);
    bool standOn(jet::RowId row); // false: the row has gone
    void leaveFor(Stand stand);
    std::size_t indexBehindRow() const;
    std::size_t indexOfRow() const;

    std::shared_ptr<data::OpenedFile> opened;
    jet::File *m_file = nullptr;
    jet::Table &m_table;
    std::vector<jet::RowId> m_places; // rising: table order
    bool m_placesRead = false;
    Stand m_stand = Stand::Unsettled;
    jet::RowId m_row;
    data::RowImage m_image;
    Mode m_mode = Mode::None;
    data::EditBuffer m_edits;
    std::optional<jet::RowId> m_lastModified;
};

} // namespace vardelin::dao
