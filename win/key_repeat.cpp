#include "win/key_repeat.h"

namespace win {
namespace {

bool ActsOnce(int code, WPARAM key) noexcept {
    // In a dialog Space also types; buttons react to it when it is let go.
    return key == VK_RETURN || key == VK_F1 || key == VK_F10 || (code == MSGF_MENU && key == VK_SPACE);
}

LRESULT CALLBACK DropRepeats(int code, WPARAM wParam, LPARAM lParam) noexcept {
    if (code == MSGF_DIALOGBOX || code == MSGF_MENU) {
        const MSG& message = *reinterpret_cast<const MSG*>(lParam);
        const bool key = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        if (key && IsKeyRepeat(message.lParam) && ActsOnce(code, message.wParam)) return TRUE;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

KeyRepeatFilter::KeyRepeatFilter() noexcept
    : hook_(SetWindowsHookExW(WH_MSGFILTER, &DropRepeats, nullptr, GetCurrentThreadId())) {}

}  // namespace win
