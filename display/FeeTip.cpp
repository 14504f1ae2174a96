#include "display/FeeTip.h"

#include "platform/base/Value.h"

using namespace Qt::StringLiterals;

namespace vardelin {

std::optional<QString> feeTip(const QString &rate, const QString &duration)
{
    if (rate.isEmpty() || duration.isEmpty())
        return std::nullopt;
    const Decimal fee = toDecimal(Value(rate)) * toDecimal(Value(duration));
    return u"Fee for services is $"_s + currencyText(fee.toCurrency());
}

} // namespace vardelin
