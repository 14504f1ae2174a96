#pragma once
// A user's text on its way into SQL text.

#include <QString>

namespace vardelin {

// Doubles every apostrophe and removes every character of code 0, in place; returns the changed text. Not to
// be repeated: a text that was quoted before gets its apostrophes doubled again.
QString &QuoteForSQL(QString &Text);

} // namespace vardelin
