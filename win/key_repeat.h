#pragma once

#include <windows.h>

#include <cstdint>

#include "win/handles.h"

namespace win {

/// True for the message of a key that was down already, so it is held and not pressed again (bit 30 of
/// lParam).
constexpr bool IsKeyRepeat(LPARAM lParam) noexcept { return (static_cast<UINT>(lParam) & (1U << 30)) != 0; }

/// What a key is pressed in.
enum class KeyPlace : std::uint8_t {
    kPanel,   ///< the main window, whatever has the focus there
    kButton,  ///< a picture box
    kDialog,
    kMenu,
};

/// True for a key that opens, stores or closes something there: held, it has done so, and what has come up
/// since is not answered by the same press. Keys that type or move something go on doing so.
bool ActsOnce(WPARAM key, KeyPlace place) noexcept;

/// True for the message (WM_KEYDOWN, WM_SYSKEYDOWN) of a held key that acts once.
bool IsSpentRepeat(const MSG& message, KeyPlace place) noexcept;

/// As long as it lives, a held Enter, F1 or Shift+F10 counts once in the dialogs, system questions and menus
/// of this thread (WH_MSGFILTER).
class KeyRepeatFilter {
  public:
    KeyRepeatFilter() noexcept;

  private:
    MessageHook hook_;
};

}  // namespace win
