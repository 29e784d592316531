#pragma once

#include <windows.h>

#include "win/handles.h"

namespace win {

/// True for the message of a key that was down already, so it is held and not pressed again (bit 30 of
/// lParam).
constexpr bool IsKeyRepeat(LPARAM lParam) noexcept { return (static_cast<UINT>(lParam) & (1U << 30)) != 0; }

/// While it lives, a held Enter, F1 or Shift+F10 counts once in the dialogs, system questions and menus of
/// this thread: a press does not also answer what it has opened (WH_MSGFILTER).
class KeyRepeatFilter {
  public:
    KeyRepeatFilter() noexcept;

  private:
    MessageHook hook_;
};

}  // namespace win
