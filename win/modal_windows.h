#pragma once

#include <windows.h>

namespace win {

/// The button by which the user would cancel a window of the system: "Cancel", "No" or "Abort", in this
/// order, however deep it lies (EnumChildWindows). Null when it has none of them that can be pressed; it is
/// to be closed by its title bar then.
HWND CancellingButton(HWND window) noexcept;

/// The frontmost window of the system on this thread that waits for an answer: a picker, a question, a
/// message box. Null when there is none. A properties sheet, which has a thread of its own, waits for nobody.
HWND OpenSystemWindow() noexcept;

/// The window that waits for the user: one of the system, else the innermost open dialog, else the main
/// window; null without one. A window of another thread counts only while the system works for this program
/// (StepBack): the shell asks some of its questions there, but also shows sheets that wait for nobody.
HWND WaitingWindow() noexcept;

/// The window that the shell asks with elsewhere than on this thread: on another one while it works for this
/// program (StepBack), or in a program of its own as long as that is in front (AsksForShell). Null without
/// one.
HWND ShellQuestion() noexcept;

/// True while the system works for this program or waits for an answer: no window of ours is to be brought
/// above others then.
bool SystemAsks() noexcept;

/// True while a menu of this thread is open (GetGUIThreadInfo).
bool AnyMenuOpen() noexcept;

/// True while something on this thread waits for the user: a handler of ours from within which this one was
/// called (HandlerDepth), a dialog, a menu, a window being moved (GetGUIThreadInfo).
bool InModalLoop() noexcept;

/// Cancels what waits for the user, as the user would: the open menu (EndMenu), a window being moved, the
/// frontmost windows of the system, and once none of those is open the dialogs. To be repeated until
/// InModalLoop answers false.
void CancelModalWindows();

/// While the program ends, no dialog and no menu opens any more: each answers as if it had been cancelled. It
/// is the end of the main window that was named (SetMainWindow).
void SetEnding(bool ending) noexcept;
[[nodiscard]] bool IsEnding() noexcept;

}  // namespace win
