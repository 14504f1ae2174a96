#pragma once
// A Select statement over one table of a file, in the dialect that the provider speaks.
//
//     sql::Select select(file, u"Select Client, Fee * 2 As Twice From Vardelins Where Fee > 10 Order By
//     Client"_s); for (jet::RowId row : select.places()) ...
//
// Select [expressions and *] From table Where ... Group By ... Having ... Order By ... Names are found
// without regard to case, texts compare and sort in the engine's general order, Null makes what it touches
// Null. Depth and length are bounded by memory alone.
//
// Errors are thrown as Error, with the provider's numbers and words.

#include "platform/base/Clock.h"
#include "platform/base/RunTimeError.h"
#include "platform/base/Value.h"
#include "platform/jet/Jet.h"
#include "platform/sql/SortKey.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vardelin::sql {

namespace Number {
inline constexpr int SyntaxError = -2147217900;
inline constexpr int MissingParameter = -2147217904; // a name that is no column
inline constexpr int TableNotFound = -2147217865;
inline constexpr int DataTypeMismatch = -2147217913;
inline constexpr int NoCommandText = -2147217908;
} // namespace Number

class Error : public RunTimeError
{
public:
    Error(int number, const QString &description, qsizetype position = -1);
    // Where in the statement it was found, counted in characters from 0; -1 where it has no place of its own.
    qsizetype position() const { return m_position; }

private:
    qsizetype m_position;
};

struct ResultColumn
{
    QString name;                      // as told by As; "Expr1000" and on for an expression without a name
    std::optional<std::size_t> source; // place in Table::columns() of a plain column; none: computed
};

// A statement that is prepared: read, and its names bound to the columns of the table. The file must outlive
// it.
class Select
{
public:
    // text: a Select statement, or the bare name of a table, bracketed or not, which stands for all of its
    // rows. clock: what Date() and Now() say; the machine's if there is none. It must outlive the statement.
    Select(jet::File &file, const QString &text, const Clock *clock = nullptr);
    Select(Select &&) noexcept;
    Select &operator=(Select &&) noexcept;
    ~Select();

    const std::vector<ResultColumn> &columns() const;
    std::optional<std::size_t> findColumn(QStringView name) const; // the first of that name

    // Each row of the result is a row of the table. False with aggregates, Group By, or no From.
    bool hasPlaces() const;
    jet::Table &table() const; // only with From

    // hasPlaces(): the rows' places, in the order asked for (else in table order). No more than these and,
    // while sorting, their keys are held: eight bytes a row in the end.
    std::vector<jet::RowId> places() const;
    // The same, each with a number that `mark` reads from its row in passing.
    std::vector<MarkedPlace> places(const std::function<std::int32_t(const jet::RowView &)> &mark) const;
    // The value of a result column for a row of the table; computed on demand. Inside a ReadScope or on a
    // cursor.
    Value value(std::size_t column, const jet::RowView &row) const;

    // Any statement: all rows as values. Rows of a table are read whole, so large results are better taken by
    // their places.
    std::vector<std::vector<Value>> rows() const;

private:
    struct Prepared;
    std::unique_ptr<Prepared> m_prepared;
};

} // namespace vardelin::sql
