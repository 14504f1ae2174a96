#pragma once
// The text of a log as it is printed from the text view.

#include "platform/base/Value.h"

#include <QString>

namespace vardelin {

// A log's columns; project is what the window shows for it.
struct PrintedLog
{
    Value client, project, employee, rate, summary, notes, begin, end, duration;
    QString shownProject;
};

// Labelled fields and the notes, lines ending with CR LF. Labels of empty fields are left out, but for an
// employee that is empty and not Null. RunTimeError 6 where it is longer than a 16-bit count goes.
QString printedText(const PrintedLog &log);

} // namespace vardelin
