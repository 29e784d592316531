#include "win/key_repeat.h"

namespace win {
namespace {

LRESULT CALLBACK DropRepeats(int code, WPARAM wParam, LPARAM lParam) noexcept {
    if (code == MSGF_DIALOGBOX || code == MSGF_MENU) {
        const KeyPlace place = code == MSGF_MENU ? KeyPlace::kMenu : KeyPlace::kDialog;
        if (IsSpentRepeat(*reinterpret_cast<const MSG*>(lParam), place)) return TRUE;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

bool ActsOnce(WPARAM key, KeyPlace place) noexcept {
    switch (key) {
        case VK_RETURN:
        case VK_F1:
        case VK_F10: return true;
        // Elsewhere it types as well; the buttons of a dialog take it when it is let go.
        case VK_SPACE: return place == KeyPlace::kButton || place == KeyPlace::kMenu;
        case VK_ESCAPE:
        case VK_F2: return place == KeyPlace::kPanel;
        default: return false;
    }
}

bool IsSpentRepeat(const MSG& message, KeyPlace place) noexcept {
    const bool pressed = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    return pressed && IsKeyRepeat(message.lParam) && ActsOnce(message.wParam, place);
}

KeyRepeatFilter::KeyRepeatFilter() noexcept
    : hook_(SetWindowsHookExW(WH_MSGFILTER, &DropRepeats, nullptr, GetCurrentThreadId())) {}

}  // namespace win
