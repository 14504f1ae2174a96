// The rows of a table: pages, slots, forwards, values, long values and counts.
#include "platform/jet/CheckState.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/RowCodec.h"

#include <algorithm>
#include <utility>

namespace vardelin::jet {

namespace {

constexpr std::size_t kMuchRoom = kPageSize / 2;
constexpr std::uint8_t kBaseTable = 0x53;

std::string rowName(RowId id)
{
    return "row " + std::to_string(id.row);
}

class RowsOfTable
{
public:
    RowsOfTable(CheckState &state, CheckedTable &table)
        : m_state(state), m_table(table), m_definition(table.definition)
    {}

    void check()
    {
        takePages();
        takeLongValuePages();
        for (const PageNo page : m_pages)
            m_state.guard(Invariant::DataPages, m_table.title, [&] { findRows(page); });
        joinForwards();
        std::sort(m_table.rows.begin(), m_table.rows.end(),
                  [](const RowLocation &a, const RowLocation &b) { return a.first < b.first; });
        m_found = m_table.rows.size();
        std::erase_if(m_table.rows, [this](const RowLocation &row) { return !checkRow(row); });
        checkPieces();
        checkCounts();
    }

private:
    // ---- Pages

    void expectPart(const std::vector<PageNo> &listed, const std::vector<PageNo> &owned, RowId map,
                    const std::string &who)
    {
        if (!std::includes(owned.begin(), owned.end(), listed.begin(), listed.end()))
            m_state.fault(Invariant::Maps, map.page, who, "pages are said to have room that aren't owned");
    }

    void takePages()
    {
        const std::string who = m_table.title + " (data)";
        const auto owned = m_state.takeMap(m_definition.owned, who);
        for (const PageNo page : owned) {
            if (m_state.claim(page, who) && checkDataPage(m_state, page, m_definition.page(), m_table.title))
                m_pages.push_back(page);
        }
        const auto listed = m_state.takeMap(m_definition.freeSpace, m_table.title + " (pages with room)");
        expectPart(listed, owned, m_definition.freeSpace, m_table.title);
        for (const PageNo page : m_pages) {
            if (DataPage(m_state.pager, page).freeSpace() > kMuchRoom &&
                !std::binary_search(listed.begin(), listed.end(), page))
                m_state.add(Severity::Oddity, Invariant::Maps, page, m_table.title,
                            "a page with much room isn't listed as such");
        }
    }

    void takeLongValuePages()
    {
        for (const LongValueMaps &maps : m_definition.longValues) {
            const Column *column = m_definition.byNumber(maps.column);
            const std::string who =
                m_table.title + "." + (column ? toUtf8(column->name) : std::to_string(maps.column));
            if (!column || !isLongValue(column->type))
                m_state.add(Severity::Oddity, Invariant::Definitions, m_definition.page(), who,
                            "maps for no long value column");
            const auto owned = m_state.takeMap(maps.owned, who + " (long values)");
            expectPart(m_state.takeMap(maps.freeSpace, who + " (pages with room)"), owned, maps.owned, who);
            for (const PageNo page : owned) {
                if (m_state.claim(page, who + " (long values)") &&
                    checkDataPage(m_state, page, kLongValueOwner, who))
                    takePieces(page, maps.column);
            }
        }
    }

    void takePieces(PageNo number, std::uint16_t column)
    {
        const DataPage page(m_state.pager, number);
        for (std::size_t i = 0; i < page.slots(); ++i) {
            if (!page.slot(i).deleted())
                m_pieces.emplace(RowId{number, static_cast<std::uint8_t>(i)}, Piece{column});
        }
    }

    // ---- Rows and forwards

    void findRows(PageNo number)
    {
        const DataPage page(m_state.pager, number);
        for (std::size_t i = 0; i < std::min(page.slots(), kMaxSlots); ++i) {
            const RowId id{number, static_cast<std::uint8_t>(i)};
            const auto flags = page.slot(i).flags;
            if (flags == kLiveRow)
                m_table.rows.push_back({id, id});
            else if (flags == kMovedRow)
                m_moved.insert(id);
            else if (flags == kForward)
                m_state.guard(Invariant::Rows, m_table.title,
                              [&] { m_forwards.emplace_back(id, RowReader::target(page, i)); });
        }
    }

    void joinForwards()
    {
        for (const auto &[from, to] : m_forwards) {
            if (m_moved.erase(to) != 0)
                m_table.rows.push_back({from, to});
            else
                m_state.fault(Invariant::Rows, from.page, m_table.title,
                              rowName(from) + " leads to row " + std::to_string(to.row) + " of page " +
                                  std::to_string(to.page) +
                                  ", which is no moved row or has been led to before");
        }
        for (const RowId lost : m_moved)
            m_state.add(Severity::Waste, Invariant::Rows, lost.page, m_table.title,
                        rowName(lost) + " is a moved row that nothing leads to");
    }

    bool checkRow(const RowLocation &row)
    {
        return m_state.guard(Invariant::Rows, m_table.title, [&] {
            const auto bytes = RowReader::bytes(m_state.pager, m_definition.page(), row);
            const RowPlace place{m_state.pager, row.actual};
            checkShape(bytes, place);
            for (const Column &column : m_definition.columns)
                checkValue(column, readField(m_definition, column, bytes, place), row);
        });
    }

    // Offsets of all variable values, those of dropped columns included.
    void checkShape(std::span<const std::byte> row, RowPlace place)
    {
        if (row.size() < 3)
            place.damaged("is too short");
        const std::size_t columns = load<std::uint16_t>(row.data()), maskBytes = (columns + 7) / 8;
        if (columns == 0 || columns > m_definition.maxColumns || row.size() < maskBytes + 2)
            place.damaged("doesn't fit its table");
        if (columns % 8 != 0 && std::to_integer<unsigned>(row.back()) >> (columns % 8) != 0)
            m_state.add(Severity::Oddity, Invariant::Rows, place.id.page, m_table.title,
                        rowName(place.id) + " has bits for columns that it hasn't");
        if (m_definition.variableColumns == 0)
            return;
        const std::size_t body = row.size() - maskBytes;
        const std::size_t count = body < 6 ? 0 : load<std::uint16_t>(row.data() + body - 2);
        if (body < 6 + 2 * count || count > m_definition.variableColumns)
            place.damaged("has an impossible number of variable columns");
        std::size_t before = 2 + (columns == m_definition.maxColumns ? m_definition.fixedEnd : 0);
        for (std::size_t i = 0; i <= count; ++i) {
            const std::size_t begin = load<std::uint16_t>(row.data() + body - 4 - 2 * i);
            if (begin < before || begin > body - 4 - 2 * count)
                place.damaged("has variable values that don't follow each other");
            before = begin;
        }
    }

    // ---- Values

    void checkValue(const Column &column, const StoredField &field, const RowLocation &row)
    {
        const auto wrong = [&](const char *what) {
            m_state.fault(Invariant::Values, row.actual.page, m_table.title,
                          rowName(row.actual) + ": " + toUtf8(column.name) + " " + what);
        };
        if (!field.present) {
            if (column.required && column.type != ColumnType::Boolean && !column.autoNumber)
                wrong("is Null and must not be");
            return;
        }
        if (isLongValue(column.type))
            return checkLongValue(column, field, row);
        if (column.type == ColumnType::Boolean)
            return;
        const Cell cell = decodeCell(column, field.bytes, {m_state.pager, row.actual});
        if (const auto *text = std::get_if<std::u16string>(&cell)) {
            if (text->size() > column.length / 2U)
                wrong("is longer than the column allows");
            if (text->empty() && !column.allowZeroLength)
                wrong("is a zero-length text and must not be");
        }
        const std::size_t width = fixedSize(column.type);
        if (width != 0 ? field.bytes.size() != width
                       : column.type == ColumnType::Binary && field.bytes.size() > column.length)
            wrong("has the wrong length for its type");
        if (column.autoNumber && column.type == ColumnType::Long)
            m_lastAuto = std::max(m_lastAuto, std::get<std::int32_t>(cell));
    }

    void checkLongValue(const Column &column, const StoredField &field, const RowLocation &row)
    {
        const RowPlace place{m_state.pager, row.actual};
        if (m_piecesSeen > m_pieces.size())
            return; // said already: values share their pieces
        m_state.guard(Invariant::LongValues, m_table.title, [&] {
            const auto pieces = longValuePieces(m_state.pager, field.bytes, place);
            m_piecesSeen += pieces.size();
            for (const RowId piece : pieces)
                usePiece(piece, column, row);
            Bytes store;
            const auto data = readLongValue(m_state.pager, field.bytes, place, store);
            if (column.type == ColumnType::Memo)
                decodeText(data, place);
            if (!pieces.empty() && isChained(field.bytes) &&
                load<std::uint32_t>(field.bytes.data() + 8) !=
                    load<std::uint32_t>(m_state.pager.page(pieces.front().page) + 8))
                place.damaged("has a long value whose stamp isn't that of its first page");
        });
    }

    void usePiece(RowId piece, const Column &column, const RowLocation &row)
    {
        const auto found = m_pieces.find(piece);
        const auto wrong = [&](const char *what) {
            m_state.fault(Invariant::LongValues, piece.page, m_table.title,
                          rowName(piece) + ", a piece of " + toUtf8(column.name) + " of row " +
                              std::to_string(row.first.row) + " on page " + std::to_string(row.first.page) +
                              ", " + what);
        };
        if (found == m_pieces.end())
            return wrong("lies on a page that the column doesn't own");
        if (found->second.column != column.number)
            wrong("lies on a page of another column");
        if (std::exchange(found->second.used, true))
            wrong("is used by another value as well");
    }

    void checkPieces()
    {
        for (const auto &[id, piece] : m_pieces) {
            if (!piece.used)
                m_state.add(Severity::Waste, Invariant::LongValues, id.page, m_table.title,
                            rowName(id) + " is a piece of a long value that no row uses");
        }
    }

    // ---- Counts

    void checkCounts()
    {
        const std::byte *page = m_state.pager.page(m_definition.page());
        const auto stated = load<std::uint32_t>(page + kRowCountAt);
        const bool base = load<std::uint8_t>(page + 40) == kBaseTable; // the original engine lets these drift
        if (stated != m_found)
            m_state.add(base ? Severity::Oddity : Severity::Fault, Invariant::Counts, m_definition.page(),
                        m_table.title,
                        "the definition says " + std::to_string(stated) + " rows, there are " +
                            std::to_string(m_found));
        if (const auto last = load<std::int32_t>(page + kAutoNumberAt); m_lastAuto > last)
            m_state.fault(Invariant::Counts, m_definition.page(), m_table.title,
                          "the last auto-number is " + std::to_string(last) + ", but a row has " +
                              std::to_string(m_lastAuto));
    }

    struct Piece
    {
        std::uint16_t column = 0;
        bool used = false;
    };
    CheckState &m_state;
    CheckedTable &m_table;
    const TableDefinition &m_definition;
    std::vector<PageNo> m_pages;
    std::vector<std::pair<RowId, RowId>> m_forwards;
    std::set<RowId> m_moved;
    std::map<RowId, Piece> m_pieces;
    std::size_t m_piecesSeen = 0; // of all values; more than there are means that values share them
    std::size_t m_found = 0;
    std::int32_t m_lastAuto = 0;
};

} // namespace

void checkRows(CheckState &state, CheckedTable &table)
{
    RowsOfTable(state, table).check();
}

Cell checkedCell(CheckState &state, const CheckedTable &table, const RowLocation &row, const Column &column)
{
    const auto bytes = RowReader::bytes(state.pager, table.definition.page(), row);
    return RowReader::cell(state.pager, table.definition, column, bytes, row.actual);
}

} // namespace vardelin::jet
