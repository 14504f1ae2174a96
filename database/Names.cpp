#include "database/Names.h"

using namespace Qt::StringLiterals;

namespace vardelin {

std::optional<SplitName> splitName(const QString &text)
{
    const qsizetype comma = text.indexOf(", "_L1);
    if (comma < 0)
        return std::nullopt;
    return SplitName{text.left(comma), text.mid(comma + 2)};
}

QString joinName(const QString &last, const QString &first)
{
    return last + ", "_L1 + first;
}

} // namespace vardelin
