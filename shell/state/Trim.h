#pragma once
// Trim as the run time does it: leading and trailing blanks only, no tabs, line ends or wider kinds of blank.

#include <QString>

namespace vardelin {

inline QString Trim(const QString &text)
{
    qsizetype first = 0, end = text.size();
    while (first < end && text[first] == u' ')
        ++first;
    while (end > first && text[end - 1] == u' ')
        --end;
    return text.mid(first, end - first);
}

} // namespace vardelin
