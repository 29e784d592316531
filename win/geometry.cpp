#include "win/geometry.h"

#include <algorithm>

#include "win/handles.h"

namespace win {

TwipsPerPixel ScreenTwipsPerPixel() {
    constexpr double kTwipsPerInch = 1440;
    const WindowDc screen(nullptr);
    const int x = GetDeviceCaps(screen.Get(), LOGPIXELSX);
    const int y = GetDeviceCaps(screen.Get(), LOGPIXELSY);
    return {kTwipsPerInch / std::max(1, x), kTwipsPerInch / std::max(1, y)};
}

}  // namespace win
