#include "platform/base/LetterCase.h"

namespace vardelin {

QString upperCase(QString text)
{
    for (QChar &c : text)
        c = c.toUpper();
    return text;
}

QString lowerCase(QString text)
{
    for (QChar &c : text)
        c = c.toLower();
    return text;
}

} // namespace vardelin
