#pragma once
// What a row is to become, worked out and checked before anything is written.
//
// Memo: up to 32 units stay in the row as long as that has room (4060 bytes), compressed as any text can be;
// longer ones go out of it, never compressed. OLE: up to 64 bytes stay.

#include "platform/jet/FileParts.h"
#include "platform/jet/RowCodec.h"

#include <deque>

namespace vardelin::jet {

class RowPlan
{
public:
    // old: the row as it is, for an update; its bytes must outlive the plan. Columns that aren't named keep
    // their values, in a new row they are Null. Throws InvalidArgument, AutoNumberReadOnly, DecimalTruncated,
    // DecimalTooLarge.
    RowPlan(FileParts &parts, const TableDefinition &table, std::span<const ColumnValue> values,
            const RowView *old, std::span<const std::byte> oldBytes);

    void giveAutoNumber(std::int32_t &lastGiven); // NumberOverflow behind the last one there is
    void check() const;                           // NullRequired, ZeroLength, FieldTooSmall
    void encode();                                // RecordTooLarge

    bool named(std::size_t column) const { return m_cells[column] != nullptr; }
    Cell value(std::size_t column) const; // as it will be

    struct Outside
    {
        std::size_t column;
        Bytes data;
    };
    std::vector<Outside> &outside() { return m_outside; }
    const std::vector<std::size_t> &replaced() const
    {
        return m_replaced;
    }                                                 // whose old pieces are to be freed
    void setHeader(std::size_t column, Bytes header); // of a long value written outside
    const std::vector<StoredField> &fields() const { return m_fields; }

private:
    void checkCell(const Column &column, const Cell &cell) const;
    void encodeColumn(std::size_t column);
    void encodeLongValue(std::size_t column, const Cell &cell);
    bool keepsOld(std::size_t column, std::span<const std::byte> data, bool stays);
    void putOutside(std::size_t column, Bytes data);
    bool moveLongestOutside();
    std::span<const std::byte> keep(Bytes bytes);
    StoredField oldField(std::size_t column) const;

    FileParts &m_parts;
    const TableDefinition &m_table;
    const RowView *m_old;
    std::span<const std::byte> m_oldBytes;
    std::vector<const Cell *> m_cells; // null: not named
    Cell m_autoNumber;
    std::deque<Cell> m_decimals; // brought to the scale of their columns
    std::vector<StoredField> m_fields;
    std::vector<Outside> m_outside;
    std::vector<std::size_t> m_replaced;
    std::deque<Bytes> m_store; // owns what the fields show
};

} // namespace vardelin::jet
