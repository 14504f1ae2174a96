#include "platform/system/AppPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr auto kTipsFile = "TIPOFDAY.TXT"_L1;

// A build tree is known by the cache that its configuration leaves in its root.
bool isInBuildTree(const QString &folder)
{
    QDir dir(folder);
    do {
        if (dir.exists(u"CMakeCache.txt"_s))
            return true;
    } while (dir.cdUp());
    return false;
}

void copyTips(const QString &from, const QString &to)
{
    const QString target = inFolder(to, kTipsFile);
    // copy() never overwrites: a user's own tips stay.
    if (QFile::copy(inFolder(from, kTipsFile), target))
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
}

} // namespace

QString appPath()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return choosePath(QCoreApplication::applicationDirPath(), inFolder(data, u"Vardelin"_s));
}

QString choosePath(const QString &programFolder, const QString &userDataFolder)
{
    const QFileInfo program(programFolder);
    if (program.isDir() && program.isWritable() && !isInBuildTree(programFolder))
        return QDir::cleanPath(programFolder);
    QDir().mkpath(userDataFolder);
    copyTips(programFolder, userDataFolder);
    return QDir::cleanPath(userDataFolder);
}

QString inFolder(const QString &path, const QString &name)
{
    return path.endsWith(u'/') ? path + name : path + u'/' + name;
}

} // namespace vardelin
