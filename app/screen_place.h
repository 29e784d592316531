#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "win/geometry.h"
#include "win/scale.h"

namespace app {

/// The screen edges by their stored numbers; any other number is no edge.
enum Edge : std::int32_t { kLeftEdge = 1, kTopEdge = 2, kRightEdge = 3, kBottomEdge = 4 };

/// How much of a docked window can be seen, in pixels of 96 dots per inch.
constexpr int kStripPixels = 4;

/// The place of a docked window in twips: all but a strip of `strip` pixels is off the screen. No value
/// for a number that is no edge. Sizes in twips.
std::optional<win::Twips> DockedPosition(std::int32_t edge, win::Twips window, win::Twips screen,
                                         win::TwipsPerPixel twips, int strip = kStripPixels);

/// The place of a window in the middle of the screen, in twips.
win::Twips CentredPosition(win::Twips window, win::Twips screen);

/// The strip of a docked window, in pixels from the window's own top left; all of it for a number that is no
/// edge.
RECT StripOf(std::int32_t edge, int width, int height, int strip = kStripPixels);

/// Whether an area of the screen shows enough of a window's caption to drag the window by it, which is as
/// wide at every scale. All in pixels of the screen; the caption is the window's uppermost `captionHeight`
/// pixels.
bool CaptionInReach(const RECT& window, int captionHeight, const RECT& area, const win::Scale& scale = {});

/// The place nearest to a window's own at which an area shows all of it, or its top left if it is larger than
/// the area. In pixels.
POINT PulledInto(const RECT& window, const RECT& area);

/// Whether any monitor shows enough of the caption of a window of ours at this place and scale
/// (MonitorFromRect).
bool IsInReach(const RECT& window, const win::Scale& scale = {});

/// The same, not counting what the taskbar covers.
bool IsInReachBesideTaskbar(const RECT& window, const win::Scale& scale = {});

/// The place at which all of a window of ours can be seen on the monitor nearest to it.
POINT PlaceInReach(const RECT& window);

}  // namespace app
