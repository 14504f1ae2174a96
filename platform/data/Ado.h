#pragma once
// The provider's route to a file: a connection by its text, and static client-side recordsets over a table or
// a statement.

#include "platform/base/Value.h"

#include <QStringList>
#include <memory>
#include <vector>

namespace vardelin::ado {

// "Provider=Microsoft.Jet.OLEDB.4.0;Persist Security Info=False;", "User ID=" and a user where one is told,
// "Data Source=" and the path, which stands in quotes where it has a semicolon or a quote in it.
QString connectionText(const QString &path, const QString &user = {});

class Recordset;
class ReadTogether;

class Connection
{
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    // Name and value pairs between semicolons; names without regard to case, others than Provider and Data
    // Source are passed over. 3706: another provider; 3024 "Could not find file 'path'."; 3343 "Unrecognized
    // database format 'path'."; 3045: in use; 3705: open already.
    void Open(const QString &connectionText);
    void Close(); // its record sets are closed with it; 3704 if it isn't open
    bool isOpen() const;
    QString path() const;

    // Several changes as one in a crash, as in dao::Database.
    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();

private:
    friend class Recordset;
    friend class ReadTogether;
    struct State;
    std::unique_ptr<State> m_state;
};

// While it lives, all that is read through the connection is of one moment, and the file is locked and looked
// for once: for a few quick readings one after the other. It ends before the connection closes. 3709 if the
// connection isn't open, 3043 as with Recordset, and the engine's "locked".
class ReadTogether
{
public:
    explicit ReadTogether(Connection &connection);
    ~ReadTogether();
    ReadTogether(const ReadTogether &) = delete;
    ReadTogether &operator=(const ReadTogether &) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The places of the rows of a selection, fetched at Open in the order asked for; the rows' columns are read
// when they are asked for (the current row's short columns together), so that a record set on a million logs
// costs a few dozen bytes a row and no memo. Which rows, and in what order, stays as it was at Open until
// Requery; what a row holds is read anew at each arrival. Optimistic: Update and Delete go to the row by its
// place. A row that others have deleted keeps its position; touching it gives 3167 "Record is deleted.", and
// so does touching one that this record set deleted, as long as no move has left it. A file that was replaced
// under it gives 3043.
//
// BOF and EOF are both true of an empty set, at once when Delete takes the last row. 3021: MoveNext at EOF,
// MovePrevious at BOF, any move in a set that is empty; the first move after the Delete that emptied it is
// let pass.
class Recordset
{
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    int CursorType = 0; // 3: static, which is what it always is
    // source: a table name, bracketed or not, or a Select statement. It stands on the first row. 3705 if it
    // is open, 3709 if the connection isn't; an unknown table and the errors of a statement:
    // platform/sql/Select.h. All the other members give 3704 on a record set that isn't open.
    void Open(const QString &source, Connection &connection);
    void Close(); // drops an edit that isn't written
    bool isOpen() const;
    void Requery(); // as Close and Open; on failure the old rows stay

    // Only the rows of the set for which a condition holds, as in a Where, are there to be moved over; it
    // stands on the first of them, or at EOF. An empty text takes the filter away. Rows that are added while
    // it holds belong to both sets. 3001 for a text that is no condition, with the set as it was; not for
    // computed rows (3251).
    void SetFilter(const QString &condition);
    const QString &Filter() const;

    bool BOF() const;
    bool EOF_() const;
    int RecordCount() const;
    int AbsolutePosition() const; // from 1; -1 without a current row
    // A move off a row with an edit writes the edit first; where that is refused, the error comes and the row
    // stays current.
    void SetAbsolutePosition(int position); // 3001 outside 1 to RecordCount
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // Bookmarks lead to the same record after Requery, in another record set on the table, and in a copy of
    // the file.
    QByteArray Bookmark() const;
    void SetBookmark(const QByteArray &bookmark); // 3159 if the row isn't in the set

    QStringList FieldNames() const;
    bool HasField(const QString &name) const; // names of fields go without regard to case
    Value Fields(const QString &name) const;  // with the edits that aren't written yet; 3265, 3021, 3167
    Value Collect(const QString &name) const { return Fields(name); }
    // Columns of the row at a position, from 1, as the file has them: without a move and without regard to an
    // edit. 3001 outside 1 to RecordCount; 3265; 3167.
    std::vector<Value> ValuesAt(int position, const QStringList &names) const;
    // Begins an edit of the current row. The value isn't looked at before Update.
    void SetField(const QString &name, const Value &value);
    bool EditPending() const; // after SetField or AddNew, until Update or CancelUpdate
    void AddNew(); // a new row is current, behind the others; after Update it is the last of the set
    // Writes the columns that were set, or the new row; nothing pending: does nothing. Throws with the edits
    // kept where the engine refuses: 3421, 3163, 3022, 3058, 3167 ... and 3251 for rows that are computed.
    void Update();
    void CancelUpdate(); // after AddNew the row that was current before is so again
    // The current row goes; the place stays, before the next row, until a move. A new row is just given up.
    void Delete();

private:
    struct State;
    State &state() const;
    std::unique_ptr<State> m_state;
};

} // namespace vardelin::ado
