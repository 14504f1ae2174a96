#pragma once
// Where the child windows go when they are tiled.

#include <QRect>
#include <vector>

namespace vardelin {

enum class Tile { Horizontally, Vertically };

// Rectangles for `count` windows that fill an area without gaps. Horizontally: wide windows, one below the
// other; Vertically: high ones, side by side. From four windows on they stand in a grid that keeps that
// grain.
std::vector<QRect> tileRects(int count, QSize area, Tile direction);

} // namespace vardelin
