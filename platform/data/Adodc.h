#pragma once
// The bound data control without its face: a record set, the fields that are bound to it, and what happens on
// a move. Its face, the navigator bar, is platform/ui's RecordNavigator.

#include "platform/data/Ado.h"

#include <functional>

namespace vardelin {

// Why the current record changed: the customary reason codes.
enum class MoveReason {
    AddNew = 1,
    Delete = 2,
    Update = 3,
    Requery = 7,
    Move = 10,
    FirstChange = 11,
    MoveFirst = 12,
    MoveNext = 13,
    MovePrevious = 14,
    MoveLast = 15
};

// A field that shows one column. Text goes both ways in the column's default text form.
struct BoundField
{
    QString column;
    std::function<void(const QString &text)> show; // the record under the navigator; "" for Null or no record
    std::function<QString()> text; // what the field holds now; compared with what was shown to see an edit
};

class Adodc
{
public:
    Adodc();
    ~Adodc();

    QString ConnectionString;
    QString RecordSource;

    void bind(BoundField field);
    void setColumnReader(const QString &column, std::function<QString(const Value &)> toText);

    // Opens the record set anew from ConnectionString and RecordSource and stands on its first record. Edits
    // that aren't committed are dropped. Throws RunTimeError; the old set is gone then.
    void Refresh();
    bool isOpen() const;
    ado::Recordset &Recordset();

    // Moves commit the edits of the bound fields first. A commit that the engine refuses: onError is told
    // (default: thrown), the record stays current, the fields keep what was typed, and the move doesn't take
    // place.
    bool MoveFirst();
    bool MoveLast();
    bool MoveNext();
    bool MovePrevious();
    bool SetAbsolutePosition(int position);
    void Delete();
    bool commitEdits(); // without a move
    void dropEdits();   // the fields show the record again
    bool edited() const;

    std::function<void(MoveReason)> MoveComplete; // after the fields show the new record
    std::function<void(const class RunTimeError &)> onError;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace vardelin
