#pragma once
// The shape of an office's file: eleven flat tables that refer to each other by copied text, two keys, 36
// seed rows.

#include "platform/data/Dao.h"

#include <QStringList>
#include <vector>

namespace vardelin {

// The eleven tables in the order in which they are appended. Every text and memo column allows zero-length
// strings and no column is required: only the two keys refuse Null.
const std::vector<dao::TableDef> &schema();

struct SeedRows
{
    QString table; // its only column bears the table's name
    QStringList rows;
};

// What a new file starts with, in order of adding.
const std::vector<SeedRows> &seedRows();

// The tables by which a file is judged to be one of the program's, in the order of the test, as sources of a
// recordset.
const QStringList &validationSources();

} // namespace vardelin
