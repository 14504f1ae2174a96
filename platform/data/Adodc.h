#pragma once
// The bound data control without its face: a record set, the fields that are bound to it, and what happens on
// a move. Its face, the navigator bar, is platform/ui's RecordNavigator.

#include "platform/base/RunTimeError.h"
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

// A field that shows one column. Text goes both ways in the column's default text form: dates as in the
// United States, currency and numbers without a mask, a Single with 7 digits. Two fields may show the same
// column; one whose column the record set doesn't have stays empty.
struct BoundField
{
    QString column;
    std::function<void(const QString &text)> show; // the record under the navigator; "" for Null or no record
    // What the field holds now; compared with what it held right after `show` to see an edit, and asked for
    // after each `show` and before each move, so it should cost little while nothing was typed. Empty: a
    // field that only shows.
    std::function<QString()> text;
};

class Adodc
{
public:
    Adodc();
    ~Adodc();
    Adodc(const Adodc &) = delete;
    Adodc &operator=(const Adodc &) = delete;

    QString ConnectionString;
    QString RecordSource;

    void bind(BoundField field); // `show` is called at the next record
    // Another text form for a column's fields; what is typed there goes to the engine as it stands all the
    // same.
    void setColumnReader(const QString &column, std::function<QString(const Value &)> toText);

    // Opens the record set anew from ConnectionString and RecordSource, stands on its first record and
    // reports Requery. Edits that aren't committed are dropped. Throws RunTimeError; the old set is gone
    // then, and the fields are empty.
    void Refresh();
    bool isOpen() const;
    // Moving or changing it directly leaves the fields as they are: end with dropEdits(), or use the
    // functions here. 91 before Refresh.
    ado::Recordset &Recordset();
    ado::Connection &ActiveConnection(); // of the record set

    // The record set's own moves, which go on to BOF and EOF. They commit the edits of the bound fields
    // first. A commit that the engine refuses: onError is told (default: thrown), the record stays current,
    // the fields keep what was typed, and the move doesn't take place: false. A move that leads nowhere
    // throws 3021. A record that has gone under its place is moved to all the same; the fields are empty, and
    // onError is told 3167.
    bool MoveFirst();
    bool MoveLast();
    bool MoveNext();
    bool MovePrevious();
    bool SetAbsolutePosition(int position);
    bool SetBookmark(const QByteArray &bookmark);
    // The record goes, and what was typed into its fields. No move: the fields are empty until one.
    void Delete();
    // Without a move. An edited field whose text is empty becomes Null in a column that isn't text. The
    // fields show the record as it is stored afterwards. Where there is no current record there is nothing to
    // commit. False: refused.
    bool commitEdits();
    void dropEdits(); // the fields show the record again
    bool edited() const;

    std::function<void(MoveReason)> MoveComplete; // after the fields show the new record
    std::function<void(const RunTimeError &)> onError;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace vardelin
