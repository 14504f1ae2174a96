#pragma once
// Alt keys that two commands of one menu bar share.

class QMenuBar;

namespace vardelin {

// Lets an Alt key shared by several commands of `bar` only step through them: each press highlights the next,
// Enter carries it out, Esc goes back to where the focus was. Left alone, the bar carries out one of them at
// once, now this, now that: no way to treat a Delete beside a Done.
void stepThroughSharedKeys(QMenuBar *bar);

// An Alt key shared by several entries of `bar` always carries out the first of them, if it is a command. The
// others are reached by Alt alone and then the letter, which steps through them. Left alone, every second
// press would do something else.
void firstTakesSharedKeys(QMenuBar *bar);

} // namespace vardelin
