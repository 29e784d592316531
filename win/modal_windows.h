#pragma once

#include <windows.h>

namespace win {

/// What a window of the system is answered with as its user would cancel it: its button "Cancel", "No" or
/// "Abort", in this order, however deep it lies (EnumChildWindows); null when it has none of them that can be
/// pressed, and is to be closed by its title bar.
HWND CancellingButton(HWND window) noexcept;

/// The frontmost window of the system's on this thread that waits for an answer: a picker, a question, a
/// message box. Null when there is none. A sheet of properties, which has a thread of its own, waits for
/// nobody.
HWND OpenSystemWindow() noexcept;

/// The window that waits for the user: one of the system's, else the innermost open dialog, else the main
/// window; null without one. One of another thread's counts only while the system works for this program
/// (InputPause): the shell asks some of its questions there, but shows sheets that wait for nobody as well.
HWND WaitingWindow() noexcept;

/// True while a menu of this thread is open (GetGUIThreadInfo).
bool AnyMenuOpen() noexcept;

/// True while something that waits for the user is under way on this thread: a handler of ours within which
/// this one was called (HandlerDepth), a dialog, a menu, a window being moved (GetGUIThreadInfo).
bool InModalLoop() noexcept;

/// Cancels what waits for the user, as he would: the open menu (EndMenu), a window being moved, the frontmost
/// windows of the system's, and once none of those is open the dialogs. It is done when InModalLoop
/// says so; until then again.
void CancelModalWindows();

/// While the program ends no dialog opens any more and no menu: each answers as if it had been cancelled.
void SetEnding(bool ending) noexcept;
[[nodiscard]] bool IsEnding() noexcept;

}  // namespace win
