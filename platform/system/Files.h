#pragma once
// The file statements of the run time. Failures throw RunTimeError: 53 file not found, 70 permission denied,
// 75 path/file access error, 76 path not found, 58 file already exists.

#include <QString>

namespace vardelin {

// The name, without its folder, of the file at `path`; empty where there is none.
QString Dir(const QString &path);
void Kill(const QString &path);
// Name ... As: moves within a file system; an existing target is error 58.
void Name(const QString &from, const QString &to);
// Replaces the target; whole or not at all (a temporary file beside it, renamed when it is on the disk).
void CopyFile(const QString &from, const QString &to);

} // namespace vardelin
