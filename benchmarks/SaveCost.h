#pragma once
// What a saved log costs, beside the least that its journal must cost.

#include <QString>

namespace vardelin::bench {

struct SaveCost
{
    double save = 0; // seconds from the call to a log that is safe on the disk: open, add, close
    double raw = 0;  // the same pages written and the same syncs done by plain system calls
};

// path: a generated file, to which logs are added; its folder takes a copy of it for the plain writes.
SaveCost measureSaves(const QString &path, int saves);

} // namespace vardelin::bench
