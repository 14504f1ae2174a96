#include "shell/state/QuoteForSQL.h"

using namespace Qt::StringLiterals;

namespace vardelin {

QString &QuoteForSQL(QString &Text)
{
    return Text.replace(u'\'', u"''"_s).remove(QChar(u'\0'));
}

} // namespace vardelin
