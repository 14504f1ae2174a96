#include "display/PrintedLog.h"

#include "platform/base/RunTimeError.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const auto kGap = u"     "_s;
const auto kLineBreak = u"\r\n"_s;

// Empty where the column has nothing to say.
QString piece(const QString &label, const Value &column, const QString &text, const QString &end)
{
    return joinText(column).isEmpty() ? QString() : label + text + end;
}

} // namespace

QString printedText(const PrintedLog &log)
{
    const QString employee =
        log.employee.isNull() ? QString() : u"Employee (or user): "_s + joinText(log.employee) + kGap;
    const QString text = piece(u"Client: "_s, log.client, joinText(log.client), kGap) +
                         piece(u"Project: "_s, log.project, log.shownProject, kGap) + kLineBreak + employee +
                         piece(u"Rate: "_s, log.rate, joinText(log.rate), kGap) + kLineBreak +
                         piece(u"Summary of Vardelin: "_s, log.summary, joinText(log.summary), kLineBreak) +
                         u"Beginning: "_s + joinText(log.begin) + kGap + u"Ending: "_s + joinText(log.end) +
                         kGap + u"Duration: "_s + joinText(log.duration) + kLineBreak +
                         u"Vardelin Notes: "_s + kLineBreak + joinText(log.notes);
    if (text.size() > std::numeric_limits<std::int16_t>::max())
        throw RunTimeError(RunTime::Overflow);
    return text;
}

} // namespace vardelin
