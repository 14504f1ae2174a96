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

namespace vardelin::jet {
class File;
}

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
    int Size = 0; // characters of a text
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

// A table-type recordset: the rows of one table in table order (in the order of its primary key once an index
// is chosen). It holds the place of its row, not the file's lock.
class Recordset
{
public:
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    bool BOF() const;
    bool EOF_() const; // EOF is taken by the C library
    int RecordCount() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    bool NoMatch() const;

    // The value of the current row, or of the row that AddNew or Edit is building. 3265 for an unknown name,
    // 3021 without a row.
    Value Fields(const QString &name) const;
    void
    SetField(const QString &name,
             const Value &value); // 3020 without AddNew or Edit; converts as the column needs (3421, 3163)
    QStringList FieldNames() const;

    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    void Delete();
    QByteArray Bookmark() const;
    void SetBookmark(const QByteArray &bookmark);
    void Close();

private:
    friend class Database;
    struct State;
    explicit Recordset(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

class Database
{
public:
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;
    std::unique_ptr<Recordset> OpenRecordset(const QString &table);
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
    struct State;
    explicit Database(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

class Workspace
{
public:
    // locale: ";LANGID=0x0409;CP=1252;COUNTRY=0" is the one that the engine makes.
    std::unique_ptr<Database> CreateDatabase(const QString &path, const QString &locale);
    std::unique_ptr<Database> OpenDatabase(const QString &path, bool exclusive = false,
                                           bool readOnly = false);
};

// DBEngine.Workspaces(0), OpenDatabase, CompactDatabase (a later command).
class DBEngine
{
public:
    Workspace &Workspaces(int index);
    std::unique_ptr<Database> OpenDatabase(const QString &path);

private:
    Workspace m_workspace;
};

} // namespace vardelin::dao
