#pragma once
// Files of statements and the rows that they should give. Anyone can add to them.
//
//     # a comment
//     table Payments (Payment Amount currency, Payment Date date, Notes memo)
//     60.5 | 10/16/2026 | Null
//
//     query Select [Payment Amount] From Payments
//     60.5
//
//     query Select Nothing From Payments
//     error No value given
//
// A blank line ends a block. Column types: boolean byte integer long auto currency single double date text
// memo; "key" behind the first type makes it the primary key. Rows are values between " | ": Null, '' for the
// empty text, \r for a carriage return. A date stands as the run time shows it. A query may open its expected
// rows with "columns a | b", and ends with none for an empty result.

#include <QString>
#include <QStringList>
#include <vector>

namespace vardelin::sqltest {

struct Block
{
    int line = 0; // from 1
    QString text; // "table ..." or "query ..."
    QStringList lines;
};

std::vector<Block> readCases(const QString &path);
QStringList caseFiles(); // base names

} // namespace vardelin::sqltest
