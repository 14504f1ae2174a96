#pragma once
// What both routes to a file have in common: the opened file and the row that a record set stands on.

#include "platform/base/RunTimeError.h"
#include "platform/base/Value.h"
#include "platform/jet/Jet.h"
#include "platform/sql/Cells.h"

#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

namespace vardelin::data {

// Numbers that the objects of both routes raise by themselves; the others come from the engine.
namespace Number {
inline constexpr int InvalidArgument = 3001;
inline constexpr int UpdateWithoutEdit = 3020;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int NoTransaction = 3034;
inline constexpr int FileReplaced = 3043;
inline constexpr int NotABookmark = 3159;
inline constexpr int RowDeleted = 3167;
inline constexpr int NotSupported = 3251;
inline constexpr int ItemNotFound = 3265;
inline constexpr int ObjectClosed = 3420;
inline constexpr int ConnectionClosed = 3704;
inline constexpr int ConnectionOpen = 3705;
inline constexpr int UnknownProvider = 3706;
inline constexpr int NoConnection = 3709;
} // namespace Number

// Throws RunTimeError with the number's customary description.
[[noreturn]] void fail(int number);

// A file that is shared by the objects opened through it; it closes with the last of them, or when it is told
// to.
class OpenedFile
{
public:
    static std::shared_ptr<OpenedFile> open(const QString &path, jet::OpenOptions options = {});
    static std::shared_ptr<OpenedFile> create(const QString &path);
    ~OpenedFile();

    // The file, for one call. ObjectClosed after close(); FileReplaced if the path has come to stand for
    // another file or for none: what is read here would be old by then, and what is written would be lost.
    // Inside a transaction its beginning and its end ask that for all of it.
    jet::File &file();
    // Once more for objects that only want to know.
    bool isOpen() const { return m_file != nullptr; }
    const QString &path() const { return m_path; }
    void close();

    // Transactions: several changes as one in a crash. commit and rollback end the innermost; 3034 without
    // one.
    void begin();
    void commit();
    void rollback();

    // While it lives, what is read is of one moment: one lock and one look at the path for all of it. It ends
    // before the file is closed.
    class ReadTogether
    {
    public:
        explicit ReadTogether(OpenedFile &opened) : m_opened(opened), m_scope(opened.file())
        {
            ++opened.m_together;
        }
        ~ReadTogether() { --m_opened.m_together; }
        ReadTogether(const ReadTogether &) = delete;
        ReadTogether &operator=(const ReadTogether &) = delete;

    private:
        OpenedFile &m_opened;
        jet::ReadScope m_scope;
    };

private:
    struct Identity
    {
        std::uint64_t device = 0, number = 0;
        bool operator==(const Identity &) const = default;
    };
    OpenedFile(const QString &path, std::unique_ptr<jet::File> file);
    std::optional<Identity> present() const;
    void checkPlace() const;

    QString m_path;
    std::unique_ptr<jet::File> m_file;
    Identity m_identity;
    std::vector<std::unique_ptr<jet::Scope>> m_scopes; // innermost last
    int m_together = 0;                                // ReadTogethers that live
};

// The place of a column by its name, without regard to case; ItemNotFound.
std::size_t columnOf(const jet::Table &table, const QString &name);

// A row as a record set remembers it: its place, and its auto-number where the table has one. A place whose
// row was deleted can be taken by a later row; the number tells them apart.
struct RowPlace
{
    jet::RowId row;
    std::int32_t number = 0;
};

std::optional<std::size_t> autoNumberColumn(const jet::Table &table);
std::int32_t numberOf(const jet::RowView &row, std::size_t numberColumn); // 0 for Null

// The row at its place, inside a scope; RowDeleted if it has gone, or if the place is another row's now.
jet::RowView rowAt(const jet::Table &table, const RowPlace &place, std::optional<std::size_t> numberColumn);

// The short columns of one row as they were at one moment, and its long values as they are asked for.
class RowImage
{
public:
    bool empty() const { return m_cells.empty(); }
    void clear() { m_cells.clear(); }
    void read(const jet::File &file, const jet::Table &table, const RowPlace &place,
              std::optional<std::size_t> numberColumn);
    // A long value is read here; RowDeleted if the row has gone meanwhile.
    const jet::Cell &cell(const jet::File &file, const jet::Table &table, std::size_t column);

private:
    RowPlace m_place;
    std::optional<std::size_t> m_numberColumn;
    std::vector<std::optional<jet::Cell>> m_cells;
};

// Changes of a row that aren't written yet, by column; the later value of a column counts.
class EditBuffer
{
public:
    void set(std::size_t column, jet::Cell cell);
    const jet::Cell *find(std::size_t column) const;
    const std::vector<jet::ColumnValue> &changes() const { return m_changes; }
    void clear() { m_changes.clear(); }

private:
    std::vector<jet::ColumnValue> m_changes;
};

// A bookmark: the row's place in six bytes behind a mark. Row places survive a copy of the file, so a
// bookmark leads to the same record there.
QByteArray bookmarkOf(jet::RowId row);
jet::RowId rowOf(const QByteArray &bookmark); // NotABookmark

} // namespace vardelin::data
