#pragma once
// The public face of the engine: files, tables, rows, indexes, scopes.
//
//     auto file = jet::File::open("office.mdb");
//     jet::Table &logs = file->table(u"Vardelins");
//     for (jet::Cursor row = logs.scan(); !row.atEnd(); row.next())
//         total += row.view().currency(11)...
//
// A File belongs to one thread. Several Files, in one process or in many, may be open on one path at a time.
// Every change is atomic and durable by itself, or with others inside a Scope. Failures throw Error and leave
// the file as it was.

#include "platform/jet/Disk.h"
#include "platform/jet/Error.h"
#include "platform/jet/Types.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace vardelin::jet {

class File;
class Table;
struct TableDefinition; // Definition.h
struct StoredField;     // RowCodec.h
class FileParts;        // File.cpp: pager, catalog, allocation
class Passage;          // Passage.h

// Room for one text after the other.
class TextBuffer
{
public:
    char16_t *reserve(std::size_t units) // what was in it is lost
    {
        if (units > m_size) {
            m_size = std::max(units, 2 * m_size);
            m_units = std::make_unique_for_overwrite<char16_t[]>(m_size);
        }
        return m_units.get();
    }

private:
    friend class RowView;
    std::unique_ptr<char16_t[]> m_units;
    std::size_t m_size = 0;
    Bytes m_pieces; // of a long value in several
};

// A row where it lies. Valid inside the read scope that gave it, or until the cursor that gave it goes on,
// and not beyond the next change of the file.
class RowView
{
public:
    RowView() = default;
    RowId id() const { return m_id; }
    // column: place in Table::columns(). Each tells Null first; the typed readers want a column of that type
    // that isn't Null.
    bool isNull(std::size_t column) const;
    Cell cell(std::size_t column) const; // any type, long values read whole
    std::int32_t longValue(std::size_t column) const;
    Currency currency(std::size_t column) const;
    double number(std::size_t column) const;       // Single, Double, DateTime, and the whole numbers
    std::u16string text(std::size_t column) const; // Text, Memo
    // The same, empty for Null; valid as the row is, and until the buffer is used again. A text that lies in
    // the file as UTF-16 in one piece is not copied.
    std::u16string_view text(std::size_t column, TextBuffer &buffer) const;
    // A text as it lies in the file: compressed (one byte a character behind FF FE) or UTF-16LE; nullopt for
    // Null. A long value in one piece is not copied; a chained one is gathered into `store`.
    std::optional<std::span<const std::byte>> storedText(std::size_t column, Bytes &store) const;

private:
    friend class Table;
    friend class Cursor;
    friend struct RowReader;
    StoredField field(std::size_t column) const;
    const Table *m_table = nullptr;
    RowId m_id;
    std::span<const std::byte> m_bytes; // the row itself, wherever it was moved to
    Passage *m_passage = nullptr;       // of the cursor that stands on it
};

// Rows in table order (page by page, slot by slot: the order of adding). Holds a read lock while it stands on
// a row. The rows that are added behind it are met, rows deleted ahead are not.
class Cursor
{
public:
    Cursor(Cursor &&) noexcept;
    Cursor &operator=(Cursor &&) noexcept;
    ~Cursor();
    bool atEnd() const;
    const RowView &view() const;
    RowId id() const { return view().id(); }
    void next();

private:
    friend class Table;
    struct State;
    explicit Cursor(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

// A value for a column, by its place in Table::columns().
using ColumnValue = std::pair<std::size_t, Cell>;

class Table
{
public:
    ~Table();
    const std::u16string &name() const;
    const std::vector<Column> &columns() const; // in the user's order (by ordinal)
    const std::vector<LogicalIndex> &indexes() const;
    const PhysicalIndex &physicalIndex(const LogicalIndex &index) const;
    std::optional<std::size_t> findColumn(std::u16string_view name) const; // without regard to case
    std::uint32_t rowCount() const;

    Cursor scan() const;
    // The row at its first place; RowDeleted if it has gone. Only inside a ReadScope or Scope.
    RowView row(RowId id) const;
    bool exists(RowId id) const;

    // Rows by index: those whose leading key columns equal `key` (one cell for each), in index order.
    std::vector<RowId> find(const LogicalIndex &index, std::span<const Cell> key) const;
    std::vector<RowId> inOrder(const LogicalIndex &index) const;

    // Columns that aren't named are Null. The auto-number is given by the engine unless it is named;
    // lastAutoNumber() tells it.
    RowId insert(std::span<const ColumnValue> values);
    void update(RowId id, std::span<const ColumnValue> values); // the columns named; the others keep theirs
    void erase(RowId id);
    std::int32_t lastAutoNumber() const;

private:
    friend class File;
    friend class FileParts;
    friend class Catalog;
    friend class Compaction;
    friend class RowView;
    friend class Cursor;
    friend struct RowReader;
    Table(FileParts &file, std::unique_ptr<TableDefinition> definition);
    const TableDefinition &current() const; // in a section: as the file has it now
    void noteChange();
    FileParts &m_file;
    std::unique_ptr<TableDefinition> m_definition;
    mutable std::uint64_t m_generation = 0; // of FileParts, that the definition was last compared with
    std::int32_t m_givenAutoNumber = 0;     // the last one given out; a failed insert doesn't give it back
};

// What a new table is to be.
struct NewColumn
{
    std::u16string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t size = 0; // Text: characters; Binary: bytes
    bool autoNumber = false;
    bool required = false;
    bool allowZeroLength = false;
    bool compress = false;
    std::uint8_t precision = 18, scale = 0; // Decimal: digits in all, 1 to 28, and behind the point
};

struct NewIndex
{
    std::u16string name;
    std::vector<std::pair<std::u16string, bool>> columns; // name, descending
    bool primary = false, unique = false, required = false, ignoreNulls = false;
};

struct NewTable
{
    std::u16string name;
    std::vector<NewColumn> columns;
    std::vector<NewIndex> indexes;
};

struct OpenOptions
{
    bool readOnly = false;
    // Nobody else may have it open, and nobody can open it meanwhile; FileInUse otherwise.
    bool exclusive = false;
};

class File
{
public:
    static std::unique_ptr<File> open(const std::filesystem::path &path, OpenOptions options = {},
                                      Disk &disk = systemDisk());
    // A bare file: the four base tables. DatabaseExists if the name is taken.
    static std::unique_ptr<File> create(const std::filesystem::path &path, Disk &disk = systemDisk());
    ~File();

    const std::filesystem::path &path() const;
    std::vector<std::u16string> tableNames() const; // user tables, in catalog order
    bool hasTable(std::u16string_view name) const;
    // Without regard to case; TableNotFound. The reference lasts as long as the File.
    Table &table(std::u16string_view name);
    Table &createTable(const NewTable &table);

private:
    friend class Scope;
    friend class ReadScope;
    explicit File(std::unique_ptr<FileParts> parts);
    std::unique_ptr<FileParts> m_parts;
};

// All that is read inside it is of one moment; no commit of another comes between. Keep it short.
class ReadScope
{
public:
    explicit ReadScope(const File &file);
    ~ReadScope();
    ReadScope(const ReadScope &) = delete;
    ReadScope &operator=(const ReadScope &) = delete;

private:
    FileParts &m_parts;
};

// Several changes as one: a crash at any moment leaves all of them or none. An operation that throws inside
// has undone itself alone, and the scope can go on. Without commit() all of them are undone.
class Scope
{
public:
    explicit Scope(File &file);
    ~Scope();
    void commit();
    Scope(const Scope &) = delete;
    Scope &operator=(const Scope &) = delete;

private:
    FileParts &m_parts;
    bool m_open = true;
};

} // namespace vardelin::jet
