#pragma once
// A face with the outlines of a few glyphs alone, as documents carry it.

#include <QByteArray>
#include <set>

class QRawFont;

namespace vardelin {

// A TrueType file in which glyphs keep their numbers, those that aren't used being empty; what a composed
// glyph is made of is kept with it. Empty for a face of another kind, or with a table that makes no sense.
QByteArray trueTypeSubset(const QRawFont &face, std::set<quint32> glyphs);

} // namespace vardelin
