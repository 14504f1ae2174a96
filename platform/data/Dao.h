#pragma once
// The engine's own route to a file: workspace, database, table definitions, table recordset. The writing of
// logs, lists, items and transfers goes this way.
//
// All failures throw RunTimeError with the engine's number and words. Nothing is written but by Update,
// Delete and the definition calls, each atomic and durable. Objects close themselves when they go.

#include "platform/base/Value.h"

#include <QStringList>
#include <memory>
#include <vector>

namespace vardelin::dao {

class Database;

// Field types by their customary numbers.
enum FieldType {
    dbBoolean = 1,
    dbByte = 2,
    dbInteger = 3,
    dbLong = 4,
    dbCurrency = 5,
    dbSingle = 6,
    dbDouble = 7,
    dbDate = 8,
    dbText = 10,
    dbLongBinary = 11,
    dbMemo = 12
};
inline constexpr int dbAutoIncrField = 16;

struct FieldDef
{
    QString Name;
    FieldType Type = dbText;
    int Size = 0; // characters of a text, 0 for the longest (255); other types have widths of their own
    int Attributes = 0;
    bool Required = false;
    bool AllowZeroLength = false;
};

struct IndexDef
{
    QString Name;
    QStringList Fields;
    bool Primary = false;
    bool Unique = false;
    bool Required = false;
    bool IgnoreNulls = false;
};

// A table that is still in memory until it is appended to a database.
struct TableDef
{
    QString Name;
    std::vector<FieldDef> Fields;
    std::vector<IndexDef> Indexes;
};

// A table-type recordset: the rows of one table in table order, which is the order of adding, with a key or
// without. It may stay open for as long as a window does: it holds no lock between calls, and the table is
// read as it is at each call. Rows that others add are met behind the last one or after MoveFirst; rows that
// others delete are passed over, and the one that it stands on gives 3167.
//
// Opening reads no row, so that adding to a table of any size costs the same. A row's short columns are read
// together when the record set comes to stand on it. Moves lead past a row that is damaged; 3049 comes from
// its Fields.
class Recordset
{
public:
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    // Both are true of an empty table. After Delete neither is, until a move.
    bool BOF() const;
    bool EOF_() const;       // EOF is taken by the C library
    int RecordCount() const; // of the table as it is now
    // Moves drop what AddNew or Edit has begun. 3021: MoveNext at EOF, MovePrevious at BOF, MoveFirst and
    // MoveLast in an empty table.
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    // The value of the current row, or of the row that AddNew or Edit is building. 3265 for an unknown name,
    // 3021 without a row, 3167 if the row has been deleted. The auto-number of a new row is known after
    // Update.
    Value Fields(const QString &name) const;
    // 3020 without AddNew or Edit; converts as the column needs: 3421 if it can't, 3163 if a text is too
    // long, 3164 for the auto-number.
    void SetField(const QString &name, const Value &value);
    QStringList FieldNames() const;

    void AddNew();
    void Edit();
    // Writes the new row, or the columns that were set since Edit. If the engine refuses (3022, 3058, 3167,
    // 3314, ...) nothing is written and the edit goes on with all that was set. The current row stays the one
    // it was before AddNew.
    void Update();
    void CancelUpdate();
    void Delete();
    QByteArray Bookmark() const;
    QByteArray LastModified() const;              // bookmark of the row that Update wrote last
    void SetBookmark(const QByteArray &bookmark); // 3159, 3167
    void Close();                                 // any later use: 3420

private:
    friend class Database;
    struct State;
    explicit Recordset(std::unique_ptr<State> state);
    State &state() const;
    State &stateInMemory() const;
    std::unique_ptr<State> m_state;
};

class Database
{
public:
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;
    std::unique_ptr<Recordset> OpenRecordset(const QString &table); // 3078 for an unknown name
    std::vector<TableDef> TableDefs() const;
    void Append(const TableDef &table); // TableDefs.Append
    QString Name() const;
    void Close();

    // Several changes as one in a crash: all of them or none. An error inside leaves what was done, unless
    // Rollback is asked for.
    void BeginTrans();
    void CommitTrans();
    void Rollback();

private:
    friend class Workspace;
    friend class ReadTogether;
    struct State;
    explicit Database(std::unique_ptr<State> state);
    State &state() const;
    std::unique_ptr<State> m_state;
};

// As ado::ReadTogether, for the record sets of a database. 3420 if it is closed.
class ReadTogether
{
public:
    explicit ReadTogether(Database &database);
    ~ReadTogether();
    ReadTogether(const ReadTogether &) = delete;
    ReadTogether &operator=(const ReadTogether &) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

class Workspace
{
public:
    // An empty file, opened. locale: ";LANGID=0x0409;CP=1252;COUNTRY=0" is the one that the engine makes;
    // 3001 for another. 3204 if there is a file of that name, 3044 if there is no such folder.
    std::unique_ptr<Database> CreateDatabase(const QString &path, const QString &locale);
    // 3024: no such file; 3343: not a database, or of a version that the engine doesn't know; 3045: in use.
    std::unique_ptr<Database> OpenDatabase(const QString &path, bool exclusive = false,
                                           bool readOnly = false);
};

// DBEngine.Workspaces(0), OpenDatabase, CompactDatabase.
class DBEngine
{
public:
    Workspace &Workspaces(int index); // there is one, with the index 0; 3265 for another
    std::unique_ptr<Database> OpenDatabase(const QString &path);
    // Writes what `from` holds to a new file, without the room that nothing uses. A bare name lies in the
    // current folder. 3045: `from` is open, by ourselves too; 3204: `to` exists; 3024, 3343 as OpenDatabase.
    // A failure leaves no `to`.
    void CompactDatabase(const QString &from, const QString &to);

private:
    Workspace m_workspace;
};

} // namespace vardelin::dao
