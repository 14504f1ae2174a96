#include "platform/system/AppPath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

TEST(AppPath, isTheProgramsFolderWhereOneMayWrite)
{
    const QTemporaryDir top;
    const QString program = inFolder(top.path(), u"office program"_s);
    const QString data = inFolder(top.path(), u"data"_s);
    QDir().mkpath(program);
    EXPECT_EQ(choosePath(program, data), program);
    EXPECT_EQ(choosePath(program + u'/', data), program);
    EXPECT_FALSE(QDir(data).exists()) << "nothing is made that isn't used";
}

TEST(AppPath, isTheUsersDataFolderInABuildTreeOrWithoutTheRightToWrite)
{
    const QTemporaryDir top;
    const QString bin = inFolder(top.path(), u"build/bin"_s);
    const QString data = inFolder(top.path(), u"share/Vardelin"_s);
    const QString tips = inFolder(data, u"TIPOFDAY.TXT"_s);
    QDir().mkpath(bin);
    write(inFolder(top.path(), u"build/CMakeCache.txt"_s), "");
    write(inFolder(bin, u"TIPOFDAY.TXT"_s), "A tip\n");
    QFile::setPermissions(inFolder(bin, u"TIPOFDAY.TXT"_s), QFile::ReadOwner);

    EXPECT_EQ(choosePath(bin, data), data);
    EXPECT_EQ(read(tips), "A tip\n");
    EXPECT_TRUE(QFile::permissions(tips) & QFile::WriteOwner);

    write(tips, "The user's own tip\n");
    EXPECT_EQ(choosePath(bin, data), data);
    EXPECT_EQ(read(tips), "The user's own tip\n") << "tips are copied once";

    const QString gone = inFolder(top.path(), u"no such folder"_s);
    EXPECT_EQ(choosePath(gone, data), data);
}

TEST(AppPath, joinsNamesWithOneSeparator)
{
    EXPECT_EQ(inFolder(u"/"_s, u"VARDELIN.MDB"_s), u"/VARDELIN.MDB"_s);
    EXPECT_EQ(inFolder(u"/db"_s, u"VARDELIN.MDB"_s), u"/db/VARDELIN.MDB"_s);
    EXPECT_EQ(inFolder(u"/home/office"_s, u"VARDELIN.MDB"_s), u"/home/office/VARDELIN.MDB"_s);
}

TEST(AppPath, ofTheTestProgramIsNotItsBuildTree)
{
    const QString path = appPath();
    EXPECT_TRUE(path.endsWith(u"/Vardelin"_s)) << path.toStdString();
    EXPECT_TRUE(QDir(path).exists());
}

} // namespace
