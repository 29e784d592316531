#pragma once

#include <windows.h>

#include <string_view>

namespace win {

/// Adds a label that nobody sees. An edit field or a list that is created next on `parent`, or put directly
/// behind the label, is called by its text: that is where screen readers look for the name of a control whose
/// own text is its content. Null when Windows refuses.
HWND AddHiddenLabel(HWND parent, std::string_view text);

/// Tells screen readers what a window is (ROLE_SYSTEM_), whatever its class is (IAccPropServices). Where
/// Windows refuses, it stays what its class is.
void TellRole(HWND window, long role) noexcept;

/// Tells screen readers what a window is called, in place of its text.
void TellName(HWND window, std::string_view name);

/// Tells screen readers what state a window is in (STATE_SYSTEM_, all of it), in place of the one that they
/// would find out.
void TellState(HWND window, long state) noexcept;

/// Lets screen readers call a control by its text where they would not look for it, because nobody sees it
/// there, as that of a scroll bar. They are told when one asks for the first time (WM_GETOBJECT), and it is
/// taken back when the window goes.
void NameByText(HWND control) noexcept;

/// Takes all of it back, as has to be done before the window goes.
void ForgetTold(HWND window) noexcept;

}  // namespace win
