#pragma once
// A mask taken apart, and the three ways to fill one. Behind Format.h.

#include "platform/base/DigitString.h"
#include "platform/base/Value.h"

#include <vector>

namespace vardelin {

// A character of a mask; literal: it stood in quotes or behind a backslash and means only itself.
struct MaskChar
{
    QChar c;
    bool literal = false;
    bool is(QChar other) const { return !literal && c == other; }
};
using Mask = std::vector<MaskChar>; // one section

// sections: one to four, for positive, negative, zero.
QString formatNumber(DigitString number, const std::vector<Mask> &sections);
QString formatDate(DateSerial date, const Mask &mask);
QString formatText(const QString &text, const Mask &mask);

} // namespace vardelin
