#pragma once
// Texts of Qt in the words of a failed test. Every file of a test program includes it, or none.

#include <QString>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
