#include "platform/system/Files.h"

#include "platform/base/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kFileExists = 58;
constexpr int kPermissionDenied = 70;
constexpr int kDiskFull = 61;

[[noreturn]] void failWith(int systemError)
{
    switch (systemError) {
    case ENOENT:
        throw RunTimeError(RunTime::FileNotFound);
    case ENOTDIR:
        throw RunTimeError(RunTime::PathNotFound);
    case EACCES:
    case EPERM:
    case EBUSY:
        throw RunTimeError(kPermissionDenied);
    case EEXIST:
        throw RunTimeError(kFileExists);
    case ENOSPC:
        throw RunTimeError(kDiskFull);
    default:
        throw RunTimeError(RunTime::PathFileAccess);
    }
}

} // namespace

QString Dir(const QString &path)
{
    const QFileInfo info(path);
    return !path.isEmpty() && info.isFile() ? info.fileName() : QString();
}

void Kill(const QString &path)
{
    if (std::remove(QFile::encodeName(path).constData()) != 0)
        failWith(errno);
}

void Name(const QString &from, const QString &to)
{
    if (QFileInfo::exists(to))
        throw RunTimeError(kFileExists);
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        failWith(errno);
}

void CopyFile(const QString &from, const QString &to)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        throw RunTimeError(QFileInfo::exists(from) ? kPermissionDenied : RunTime::FileNotFound);
    QSaveFile target(to);
    if (!target.open(QIODevice::WriteOnly))
        throw RunTimeError(QFileInfo(to).dir().exists() ? RunTime::PathFileAccess : RunTime::PathNotFound);
    QByteArray piece(1 << 20, Qt::Uninitialized);
    for (;;) {
        const qint64 got = source.read(piece.data(), piece.size());
        if (got < 0 || (got > 0 && target.write(piece.constData(), got) != got))
            throw RunTimeError(RunTime::PathFileAccess);
        if (got == 0)
            break;
    }
    if (!target.commit())
        throw RunTimeError(RunTime::PathFileAccess);
}

} // namespace vardelin
