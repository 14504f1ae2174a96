#pragma once
// One more judge: the npm package mdb-reader, where it is installed.

#include "tests/support/Judges.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <optional>

namespace vardelin::testing_support {

// The rows of a table by name of column, dates as "2026-10-16 09:00:00"; nullopt, said in the test's output,
// without the package. root: the project's folder.
inline std::optional<QList<QJsonObject>> readByNpm(const QString &file, const QString &table,
                                                   const char *root)
{
    const QString folder = QString::fromUtf8(root);
    const QString modules = folder + QStringLiteral("/build/mdb-reader/node_modules");
    if (!QFileInfo::exists(modules + QStringLiteral("/mdb-reader"))) {
        printf("The npm package mdb-reader is not installed; its judgement is left out.\n");
        return std::nullopt;
    }
    QList<QJsonObject> rows;
    const QString text =
        outputOf(QStringLiteral("node"),
                 {folder + QStringLiteral("/tests/support/read-with-mdb-reader.mjs"), modules, file, table});
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts))
        rows += QJsonDocument::fromJson(line.toUtf8()).object();
    return rows;
}

} // namespace vardelin::testing_support
