#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "win/geometry.h"

namespace app {

/// The screen edges by their stored numbers; any other number is no edge.
enum Edge : std::int32_t { kLeftEdge = 1, kTopEdge = 2, kRightEdge = 3, kBottomEdge = 4 };

/// How much of a docked window is to be seen, in pixels.
constexpr int kStripPixels = 4;

/// Where the docked window stands, in twips: all but a strip of 4 pixels is off the screen.
/// No value for a number that is no edge. Sizes in twips.
std::optional<win::Twips> DockedPosition(std::int32_t edge, win::Twips window, win::Twips screen,
                                         win::TwipsPerPixel twips);

/// Where the window stands in the middle of the screen, in twips.
win::Twips CentredPosition(win::Twips window, win::Twips screen);

/// The strip of a docked window, in pixels from the window's own top left; all of it for a number that is no
/// edge.
RECT StripOf(std::int32_t edge, int width, int height);

/// Whether an area of the screen shows enough of a window's caption to drag the window by it. All in pixels
/// of the screen; the caption is the window's uppermost `captionHeight` pixels.
bool CaptionInReach(const RECT& window, int captionHeight, const RECT& area);

/// The place nearest to a window's own where an area shows all of it; where it is larger than the area, its
/// top left is shown. In pixels.
POINT PulledInto(const RECT& window, const RECT& area);

/// Whether any monitor shows enough of the caption of a window of ours at this place (MonitorFromRect).
bool IsInReach(const RECT& window);

/// The same, what the taskbar covers being left out.
bool IsInReachBesideTaskbar(const RECT& window);

/// Where all of a window of ours can be seen on the monitor nearest to it.
POINT PlaceInReach(const RECT& window);

}  // namespace app
