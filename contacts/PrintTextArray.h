#pragma once
// The page layout of printed lists: blocks of text, wrapped word by word between the margins, on numbered
// pages.

#include "platform/base/Value.h"

#include <QString>
#include <vector>

namespace vardelin {

struct Global;

struct PrintBlock
{
    QString Text; // its lines end with a carriage return and one character more
    // Where the last printed part of each line goes: ":>" and a code of two digits. "01" is centred, "02"
    // begins at the middle of the page, "03" is centred at half an inch from the top; else the left margin.
    QString Tag = {};
    Value Spacing = {}; // inches that a wrapped line leaves free above the bottom line; Empty is 0
    QString FontName = {};
    QString FontSize = {}; // as text
};

// Takes the next word, with the blank behind it, off PrintWordRest into PrintWord: empty when none is left.
void NextPrintWord(Global &global);

// Prints the blocks on the program's printer. A margin that is 0 becomes an inch. Pages have a number at the
// foot, but for a document of one page. Whatever fails is told in a message, one for a printed line at most,
// and the rest is printed.
void PrintTextArray(Global &global, const std::vector<PrintBlock> &blocks);

} // namespace vardelin
