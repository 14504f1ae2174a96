#include "entry/LogRecord.h"

#include "platform/base/Format.h"
#include "shell/state/Trim.h"

namespace vardelin {

namespace {

constexpr qsizetype kDerivedSummaryLength = 100;

} // namespace

bool hasClientOrProject(const LogRecord &log)
{
    return !Trim(log.client).isEmpty() || !Trim(log.project).isEmpty();
}

QString logSummary(const QString &typed, const QString &notes)
{
    const QString trimmed = Trim(typed);
    if (!trimmed.isEmpty())
        return trimmed;
    QString derived = notes.left(kDerivedSummaryLength);
    if (notes.size() > derived.size() && derived.back().isHighSurrogate())
        derived.chop(1); // half a character is not one that another program could read
    return derived;
}

QString durationText(DateSerial begin, DateSerial end)
{
    const QString days = numberText(end.days - begin.days);
    const double hours = toDouble(Value(days)) * 24.0 + 0.05;
    return format(Value(hours), u"##.0");
}

Value feeOf(const QString &rate, const QString &duration)
{
    if (rate.isEmpty())
        return Value(QString());
    return toDecimal(Value(rate)) * toDecimal(Value(duration));
}

Value storedFee(const Value &fee)
{
    if (fee.isText())
        return Value(std::int16_t(0));
    return toCurrency(fee);
}

QString passToSummary(const QString &summary, const QString &selection)
{
    if (summary.isEmpty())
        return selection;
    // All but the first character being one blank is true of two characters alone, and is meant so.
    if (summary.sliced(1) == u" ")
        return summary + selection;
    return summary + u' ' + selection;
}

QString activitiesText(const QStringList &selected)
{
    QString text;
    for (const QString &item : selected)
        text += u' ' + item;
    return text;
}

} // namespace vardelin
