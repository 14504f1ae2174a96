#pragma once
// A piece of work as its fields hold it, and the rules that make a stored log of it.

#include "platform/base/Value.h"

#include <QStringList>

namespace vardelin {

// The fields as typed, nothing trimmed.
struct LogRecord
{
    QString client = {}, employee = {}, project = {}, rate = {};
    QString summary = {};  // as typed; may be empty
    QString notes = {};    // plain text, line ends CR LF
    QString notesRtf = {}; // the same notes with their formats and pictures
    DateSerial begin = {}, end = {};
};

// The one condition of a save: a client or a project, blanks not counted.
bool hasClientOrProject(const LogRecord &log);

// What stands in the column Log Summary: the trimmed summary at whatever length it has; where that is empty,
// the first 100 characters of the notes as they stand.
QString logSummary(const QString &typed, const QString &notes);

// Duration of a piece of work, as the text for the column Duration.
//   returns  hours, mask "##.0": one decimal, no zero ahead of the point (".4"), halves away from zero. An
//            end before the beginning gives a negative text.
// The 0.05 added ahead of rounding is the billing rule: no time at all still gives ".1". The difference in
// days passes through its 15-digit text on the way, and that loss belongs to the result.
QString durationText(DateSerial begin, DateSerial end);

// The fee: the exact product of rate and duration as a Decimal, or the empty text for an empty rate. Both are
// texts; RunTimeError 13 for a rate that is no number, 6 for one beyond all bounds.
Value feeOf(const QString &rate, const QString &duration);

// What goes into the column Fee: the product as money, four decimals with halves to the even digit; the whole
// number 0 for the empty text.
Value storedFee(const Value &fee);

// The summary line after notes were passed to it.
QString passToSummary(const QString &summary, const QString &selection);

// What the Activities list inserts: each item with a blank ahead of it.
QString activitiesText(const QStringList &selected);

} // namespace vardelin
