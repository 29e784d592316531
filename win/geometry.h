#pragma once

#include <windows.h>

namespace win {

/// How many twips (1/1440 inch) one pixel takes on each axis of the screen; 15 at 96 dots per inch.
struct TwipsPerPixel {
    int x = 15;
    int y = 15;
};

/// Reads the values of the screen (GetDeviceCaps); never 0.
TwipsPerPixel ScreenTwipsPerPixel();

/// A point or a size in twips.
struct Twips {
    int x = 0;
    int y = 0;
};

/// Whole pixels for a length in twips, rounded to the nearest; `perPixel` is positive.
constexpr int ToPixels(int twips, int perPixel) {
    const int half = perPixel / 2;
    return twips >= 0 ? (twips + half) / perPixel : -((-twips + half) / perPixel);
}

/// The length in twips of a number of pixels.
constexpr int ToTwips(int pixels, int perPixel) { return pixels * perPixel; }

/// The extents of a rectangle, in its own unit.
constexpr int Width(const RECT& rect) { return rect.right - rect.left; }
constexpr int Height(const RECT& rect) { return rect.bottom - rect.top; }

}  // namespace win
