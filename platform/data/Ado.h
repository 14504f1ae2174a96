#pragma once
// The provider's route to a file: a connection by its text, and static client-side recordsets over a table or
// a statement.

#include "platform/base/Value.h"

#include <QStringList>
#include <memory>
#include <vector>

namespace vardelin::ado {

// "Provider=Microsoft.Jet.OLEDB.4.0;Persist Security Info=False;Data Source=" and the path: the one text of
// the program.
QString connectionText(const QString &path);

class Recordset;

class Connection
{
public:
    Connection();
    ~Connection();
    void Open(const QString &connectionText); // throws RunTimeError with the provider's words
    void Close();
    bool isOpen() const;
    QString path() const;

private:
    friend class Recordset;
    struct State;
    std::shared_ptr<State> m_state;
};

// The places of the rows of a selection, fetched at Open in the order asked for; the rows' columns are read
// when they are asked for (and the current row is kept), so that a record set on a million logs costs a few
// dozen bytes a row and no memo. Optimistic: Update and Delete go to the row by its place. A row that has
// gone, or the file, gives the engine's error.
class Recordset
{
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    int CursorType = 0; // 3: static, which is what it always is
    // source: a table name, bracketed or not, or a Select statement.
    void Open(const QString &source, Connection &connection);
    void Close();
    bool isOpen() const;
    void Requery();

    bool BOF() const;
    bool EOF_() const;
    int RecordCount() const;
    int AbsolutePosition() const; // from 1; -1 without a current row
    void SetAbsolutePosition(int position);
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    QByteArray Bookmark() const;
    void SetBookmark(const QByteArray &bookmark);

    QStringList FieldNames() const;
    Value Fields(const QString &name) const; // with the edits that aren't written yet
    Value Collect(const QString &name) const { return Fields(name); }
    void SetField(const QString &name,
                  const Value &value); // begins an edit of the current row; nothing is checked before Update
    bool EditPending() const;
    void AddNew();
    void
    Update(); // writes the edits of the current row; throws, with the edits kept, where the engine refuses
    void CancelUpdate();
    void Delete(); // the current row goes; the place stays, before the next row, until a move

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace vardelin::ado
