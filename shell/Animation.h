#pragma once
// The small animation of the splash and about windows: a clock whose hand goes round in six steps.

#include <QPixmap>

namespace vardelin {

inline constexpr int kAnimationFrames = 6;

// The frame that follows: after the sixth comes the first.
constexpr int nextFrame(int frame)
{
    return frame % kAnimationFrames + 1;
}

// Frame 1 to 6, drawn for a square of `size` device-independent pixels.
QPixmap animationFrame(int frame, int size, qreal pixelRatio);

} // namespace vardelin
