#include "tests/support/quiet_desktop.h"

#include <array>
#include <cstdint>

#include "tests/support/wine.h"

namespace testkit {
namespace {

/// Windows lets any program take the foreground once Alt has been pressed. The other key, which does nothing,
/// keeps the window in front from opening a menu for it.
void PressAlt() {
    constexpr WORD kUnassigned = 0xE8;
    std::array<INPUT, 4> inputs{};
    const std::array<WORD, 4> keys{VK_MENU, kUnassigned, kUnassigned, VK_MENU};
    for (std::size_t at = 0; at < inputs.size(); ++at) {
        inputs.at(at).type = INPUT_KEYBOARD;
        inputs.at(at).ki.wVk = keys.at(at);
        inputs.at(at).ki.dwFlags = at < 2 ? 0 : KEYEVENTF_KEYUP;
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

bool SetLockTime(DWORD milliseconds) {
    // The number itself stands where other settings have a pointer.
    return SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0,
                                 reinterpret_cast<void*>(std::uintptr_t{milliseconds}), 0) != FALSE;
}

}  // namespace

QuietDesktop::QuietDesktop() {
    if (RunsUnderWine()) return;
    PressAlt();
    DWORD time = 0;
    if (SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &time, 0) && SetLockTime(0)) lock_time_ = time;
    STICKYKEYS keys{.cbSize = sizeof keys, .dwFlags = 0};
    if (!SystemParametersInfoW(SPI_GETSTICKYKEYS, sizeof keys, &keys, 0)) return;
    sticky_keys_ = keys;
    keys.dwFlags &= ~DWORD{SKF_HOTKEYACTIVE};
    SystemParametersInfoW(SPI_SETSTICKYKEYS, sizeof keys, &keys, 0);
}

QuietDesktop::~QuietDesktop() {
    if (lock_time_) SetLockTime(*lock_time_);
    if (sticky_keys_) SystemParametersInfoW(SPI_SETSTICKYKEYS, sizeof *sticky_keys_, &*sticky_keys_, 0);
}

}  // namespace testkit
