#pragma once

#include <windows.h>

namespace win {

/// How many twips (1/1440 inch) one pixel takes on each axis of the screen; 15 at 96 dots per inch, 7.5 at
/// 192.
struct TwipsPerPixel {
    double x = 15;
    double y = 15;
};

/// Reads the values of the screen (GetDeviceCaps); never 0.
TwipsPerPixel ScreenTwipsPerPixel();

/// A point or a size in twips.
struct Twips {
    int x = 0;
    int y = 0;
};

/// Whole pixels for a length in twips, rounded to the nearest; `perPixel` is positive.
constexpr int ToPixels(int twips, double perPixel) {
    const double pixels = twips / perPixel;
    return static_cast<int>(pixels >= 0 ? pixels + 0.5 : pixels - 0.5);
}

/// The length in twips of a number of pixels, rounded to the nearest.
constexpr int ToTwips(int pixels, double perPixel) {
    const double twips = pixels * perPixel;
    return static_cast<int>(twips >= 0 ? twips + 0.5 : twips - 0.5);
}

/// The extents of a rectangle, in its own unit.
constexpr int Width(const RECT& rect) { return rect.right - rect.left; }
constexpr int Height(const RECT& rect) { return rect.bottom - rect.top; }

}  // namespace win
