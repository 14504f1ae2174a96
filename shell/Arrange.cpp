#include "shell/Arrange.h"

#include <cmath>

namespace vardelin {

namespace {

// Cuts a length into `parts` pieces that differ by a pixel at most; piece i begins at cut(i).
int cut(int length, int parts, int i)
{
    return static_cast<int>(static_cast<qint64>(length) * i / parts);
}

// How many windows stand side by side against the grain.
int linesAcross(int count)
{
    return count < 4 ? 1 : static_cast<int>(std::sqrt(count));
}

} // namespace

std::vector<QRect> tileRects(int count, QSize area, Tile direction)
{
    std::vector<QRect> rects;
    const int lines = linesAcross(count);
    const bool rows = direction == Tile::Horizontally;
    const QSize span = rows ? area : area.transposed();
    for (int line = 0, placed = 0; line < lines; ++line) {
        const int here = (count - placed) / (lines - line);
        for (int i = 0; i < here; ++i, ++placed) {
            const int left = cut(span.width(), lines, line);
            const int top = cut(span.height(), here, i);
            const QRect rect(left, top, cut(span.width(), lines, line + 1) - left,
                             cut(span.height(), here, i + 1) - top);
            rects.push_back(rows ? rect : QRect(rect.topLeft().transposed(), rect.size().transposed()));
        }
    }
    return rects;
}

} // namespace vardelin
