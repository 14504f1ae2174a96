#pragma once
// Judges of a file that we wrote: mdbtools and the engine's own checker always, and jetcheck.py where it lies
// beside the project.

#include "platform/jet/Check.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

namespace vardelin::testing_support {

inline QString outputOf(const QString &program, const QStringList &arguments, int *exitCode = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    if (exitCode)
        *exitCode = process.exitCode();
    return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
}

// The rows of a table as mdb-export prints them, without the heading; dates as "2026-10-16 09:00:00".
inline QStringList exportedRows(const QString &file, const QString &table)
{
    const QString text = outputOf(QStringLiteral("mdb-export"),
                                  {QStringLiteral("-H"), QStringLiteral("-D"), QStringLiteral("%Y-%m-%d"),
                                   QStringLiteral("-T"), QStringLiteral("%Y-%m-%d %H:%M:%S"), file, table});
    return text.split(u'\n', Qt::SkipEmptyParts);
}

// Neither our own checker nor the independent one has anything to say against the file. root: the project's
// folder.
inline void expectSound(const QString &file, const char *root)
{
    for (const jet::Finding &finding : jet::checkFile(QFile::encodeName(file).toStdString()).findings)
        ADD_FAILURE() << qPrintable(file) << ": " << textOf(finding);
    const QString checker = QString::fromUtf8(root) + QStringLiteral("/../shared/tools/jetcheck.py");
    if (!QFileInfo::exists(checker)) {
        printf("The independent checker is not beside the project; %s was not judged by it.\n",
               qPrintable(QFileInfo(file).fileName()));
        return;
    }
    int exitCode = -1;
    const QString said =
        outputOf(QStringLiteral("python3"), {checker, QStringLiteral("--strict"), file}, &exitCode);
    EXPECT_EQ(exitCode, 0) << said.toStdString();
}

} // namespace vardelin::testing_support
