#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace vardelin {

// The tips of a plain text file, one a line; empty lines count. A line that isn't UTF-8 is Windows-1252, as
// offices had it. nullopt if the file isn't there.
std::optional<QStringList> loadTips(const QString &path);

// The number of the next tip, from 1: the whole part of random (0 up to 1) times the number of tips, plus 1.
// No memory of what was shown; 0 without tips.
int nextTip(double random, int tips);

} // namespace vardelin
