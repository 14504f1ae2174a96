#include "platform/base/LetterCase.h"
#include "platform/base/Mask.h"

#include <algorithm>

namespace vardelin {

namespace {

bool isPlace(const MaskChar &mark)
{
    return mark.is(u'@') || mark.is(u'&');
}

bool has(const Mask &mask, QChar wanted)
{
    return std::ranges::any_of(mask, [wanted](const MaskChar &mark) { return mark.is(wanted); });
}

} // namespace

// Characters fill the places from the right, or from the left behind an exclamation mark; those that find
// none stand at the other end.
QString formatText(const QString &text, const Mask &mask)
{
    const QString cased = has(mask, u'<') ? lowerCase(text) : has(mask, u'>') ? upperCase(text) : text;
    const auto places = static_cast<qsizetype>(std::ranges::count_if(mask, isPlace));
    const bool fromLeft = has(mask, u'!');
    qsizetype missing = fromLeft ? 0 : std::max<qsizetype>(places - cased.size(), 0);
    qsizetype at = 0;
    QString result;
    const auto takeSurplus = [&] {
        const qsizetype surplus = std::max<qsizetype>(cased.size() - places, 0);
        result += QStringView(cased).sliced(at, surplus);
        at += surplus;
    };
    if (places == 0)
        takeSurplus();
    for (const MaskChar &mark : mask) {
        if (isPlace(mark)) {
            if (!fromLeft && at == 0 && missing == 0)
                takeSurplus();
            if (missing > 0 || at >= cased.size()) {
                missing -= missing > 0 ? 1 : 0;
                if (mark.is(u'@'))
                    result += u' ';
            } else {
                result += cased[at++];
            }
        } else if (!mark.is(u'<') && !mark.is(u'>') && !mark.is(u'!')) {
            result += mark.c;
        }
    }
    if (fromLeft)
        result += QStringView(cased).sliced(std::min(at, cased.size()));
    return result;
}

} // namespace vardelin
