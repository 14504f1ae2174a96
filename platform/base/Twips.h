#pragma once
// Lengths in twips, 1440 to the inch, 15 to the pixel at 96 dots an inch.

namespace vardelin {

inline constexpr int kTwipsPerInch = 1440;
inline constexpr int kTwipsPerPixel = 15; // of a device-independent pixel, which is a 96th of an inch

constexpr int toTwips(int pixels)
{
    return pixels * kTwipsPerPixel;
}
constexpr int toPixels(int twips)
{
    return (twips >= 0 ? twips + kTwipsPerPixel / 2 : twips - kTwipsPerPixel / 2) / kTwipsPerPixel;
}

} // namespace vardelin
