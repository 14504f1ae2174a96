#include "tests/sql/CaseFile.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

namespace vardelin::sqltest {

std::vector<Block> readCases(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("can't read " + path.toStdString());
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    std::vector<Block> blocks;
    bool inBlock = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.startsWith(u'#'))
            continue;
        if (line.isEmpty())
            inBlock = false;
        else if (!inBlock)
            blocks.push_back({static_cast<int>(i) + 1, line, {}});
        else
            blocks.back().lines += line;
        inBlock = inBlock || !line.isEmpty();
    }
    return blocks;
}

QStringList caseFiles()
{
    QStringList names;
    for (const QString &file : QDir(QStringLiteral(SQL_CASES)).entryList({QStringLiteral("*.sqltest")}))
        names += file.chopped(8);
    return names;
}

} // namespace vardelin::sqltest
