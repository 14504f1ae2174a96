#pragma once
// Alt keys that two commands of one menu bar share.

class QMenuBar;

namespace vardelin {

// Lets an Alt key shared by several commands of `bar` only step through them: each press highlights the next,
// Enter carries it out, Esc goes back to where the focus was. Left alone, the bar carries out one of them at
// once, now this, now that: no way to treat a Delete beside a Done.
void stepThroughSharedKeys(QMenuBar *bar);

} // namespace vardelin
