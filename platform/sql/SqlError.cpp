#include "platform/sql/SqlError.h"

namespace vardelin::sql {

using namespace Qt::StringLiterals;

Error::Error(int number, const QString &description, qsizetype position)
    : RunTimeError(number, description), m_position(position)
{}

void fail(const QString &description, qsizetype position)
{
    throw Error(Number::SyntaxError, description, position);
}

void failInSelectList(qsizetype position)
{
    fail(u"The SELECT statement includes a reserved word or an argument name that is misspelled or missing, "
         u"or the "
         "punctuation is incorrect."_s,
         position);
}

void failInClause(QLatin1StringView clause, qsizetype position)
{
    fail(u"Syntax error in %1 clause."_s.arg(clause), position);
}

void failInExpression(QLatin1StringView what, const QString &expression, qsizetype position)
{
    // Not through arg(): the expression may hold a %1 of its own.
    fail(what + u" in query expression '"_s + expression + u"'."_s, position);
}

void failMissingParameter(qsizetype position)
{
    throw Error(Number::MissingParameter, u"No value given for one or more required parameters."_s, position);
}

void failTableNotFound(const QString &name, qsizetype position)
{
    throw Error(Number::TableNotFound,
                u"The Microsoft Jet database engine cannot find the input table or query '"_s + name +
                    u"'.  Make sure it exists and that its name is spelled correctly."_s,
                position);
}

void failTypeMismatch(qsizetype position)
{
    throw Error(Number::DataTypeMismatch, u"Data type mismatch in criteria expression."_s, position);
}

} // namespace vardelin::sql
