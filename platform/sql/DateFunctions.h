#pragma once
// DateAdd, DateDiff and DatePart. Intervals: yyyy, q, m (month), y and d (day), w (DateDiff: seven days;
// DatePart: weekday), ww (week from Sunday), h, n (minute), s. Null in, Null out; RunTimeError 5 for another
// interval or a date out of range.

#include "platform/sql/Functions.h"

namespace vardelin::sql {

Value dateAdd(Arguments a, const Clock &);    // interval, number, date: 31 January and a month is the end of
                                              // February
Value dateDiff(Arguments a, const Clock &);   // interval, from, to: how often a new one begins in between
Value datePartOf(Arguments a, const Clock &); // interval, date

} // namespace vardelin::sql
