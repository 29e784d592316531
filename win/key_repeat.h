#pragma once

#include <windows.h>

#include "win/handles.h"

namespace win {

/// True for the message of a key that was down already: it is held, not pressed again (bit 30 of lParam).
constexpr bool IsKeyRepeat(LPARAM lParam) noexcept { return (static_cast<UINT>(lParam) & (1U << 30)) != 0; }

/// As long as it lives, a held Enter, F1 or Shift+F10 counts once in the dialogs, system questions and menus
/// of this thread: what the key has opened is not answered by the same press (WH_MSGFILTER).
class KeyRepeatFilter {
  public:
    KeyRepeatFilter() noexcept;

  private:
    MessageHook hook_;
};

}  // namespace win
