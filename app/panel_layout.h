#pragma once

#include <windows.h>

// The panel's frame, in pixels from the client area's top left. Children keep 4 pixels away from the edges,
// so that the docked strip always belongs to the main window itself.
namespace app::layout {

constexpr int kMargin = 5;
constexpr int kButtonWidth = 102;
constexpr int kButtonHeight = 90;
constexpr int kColumns = 3;
constexpr int kRows = 3;
constexpr int kContainerTop = 88;
constexpr int kClientWidth = kMargin + kColumns * kButtonWidth + kMargin;
constexpr int kClientHeight = kContainerTop + kRows * kButtonHeight + kMargin;

constexpr int kImageButtonTop = 4;
constexpr int kImageButtonSize = 28;
constexpr int kImageButtonStep = 30;

constexpr int kShortcutsTop = 36;
constexpr int kShortcutsHeight = 24;
constexpr int kGoWidth = 28;

constexpr int kHeaderTop = 63;
constexpr int kHeaderWidth = 51;
constexpr int kHeaderHeight = 24;

/// The rectangle of a place and a size.
constexpr RECT At(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

}  // namespace app::layout
