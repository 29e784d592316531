#include "sys/mouse_wheel.h"

#include <utility>

#include "win/errors.h"

namespace sys {
inline namespace m_Wheel {
namespace {

std::function<void(const WheelTurn&)> WheelForm;
HWND WheelHwnd = nullptr;
WNDPROC OldWndProc = nullptr;

/// The low 32 bits as a signed number, divided by 65536 and rounded to the nearest whole number.
std::int32_t HighPart(std::uint64_t parameter) noexcept {
    constexpr std::int64_t kHalf = 0x8000;
    const auto value = static_cast<std::int32_t>(static_cast<std::uint32_t>(parameter));
    return static_cast<std::int32_t>((value + kHalf) >> 16);
}

std::int32_t LowPart(std::uint64_t parameter) noexcept {
    return static_cast<std::int32_t>(parameter & 0xFFFF);
}

WNDPROC SetProcedure(HWND window, WNDPROC procedure) noexcept {
    // The wide form, because with the 8-bit one the window would get its characters in the code page.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the procedure that was set before.
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

}  // namespace

WheelTurn WheelTurnOf(WPARAM wParam, LPARAM lParam) noexcept {
    const auto keys = static_cast<std::uint64_t>(wParam);
    const auto place = static_cast<std::uint64_t>(lParam);
    return {LowPart(keys), HighPart(keys), LowPart(place), HighPart(place)};
}

int WheelNotches::Add(std::int32_t rotation, std::uint32_t time) noexcept {
    constexpr std::uint32_t kPause = 1000;  // milliseconds
    const bool turnedBack = (rest_ < 0) != (rotation < 0);
    // The clock starts again at 0 after 49.7 days: differences stay right.
    if (turnedBack || time - lastTime_ > kPause) rest_ = 0;
    lastTime_ = time;
    rest_ += rotation;
    const int notches = rest_ / WHEEL_DELTA;
    rest_ %= WHEEL_DELTA;
    return notches;
}

void HookWheel(HWND window, std::function<void(const WheelTurn&)> mouseWheel) {
    // If a window were hooked twice, its former procedure would be the hook itself.
    UnhookWheel();
    OldWndProc = SetProcedure(window, &WheelWndProc);
    if (OldWndProc == nullptr) return;
    WheelHwnd = window;
    WheelForm = std::move(mouseWheel);
}

void UnhookWheel() noexcept {
    if (WheelHwnd == nullptr) return;
    SetProcedure(std::exchange(WheelHwnd, nullptr), OldWndProc);
    WheelForm = nullptr;
}

LRESULT CALLBACK WheelWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    // Taken now, because the form may end its hook meanwhile.
    const WNDPROC old = OldWndProc;
    if (message == WM_MOUSEWHEEL) {
        win::Guarded(window, false, [&] {
            const std::function<void(const WheelTurn&)> tell = WheelForm;
            if (tell) tell(WheelTurnOf(wParam, lParam));
            return true;
        });
    }
    return CallWindowProcW(old, window, message, wParam, lParam);
}

}  // namespace m_Wheel
}  // namespace sys
