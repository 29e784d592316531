#pragma once

#include <windows.h>

namespace win {

/// The properties that decide whether a window can become the foreground window in another's place.
struct WindowTraits {
    bool visible = false;
    bool enabled = false;
    bool minimized = false;
    bool tool = false;     ///< a tool window, or one that is never activated
    bool cloaked = false;  ///< on another desktop, or of a suspended program
    bool own = false;      ///< of this program
    bool desktop = false;  ///< the desktop or a taskbar
    bool empty = false;    ///< without any extent
};

/// True for a window that the user would expect in front once another goes.
constexpr bool CanTakeForeground(const WindowTraits& window) {
    return window.visible && window.enabled && !window.minimized && !window.tool && !window.cloaked &&
           !window.own && !window.desktop && !window.empty;
}

/// True for a window that is visible by its style alone: of a suspended Store program, or on another virtual
/// desktop (DwmGetWindowAttribute).
bool IsCloaked(HWND window) noexcept;

/// True for a window of the programs that the shell asks with: which program a file is to be opened with, or
/// whether one that came from elsewhere may be started.
bool AsksForShell(HWND window) noexcept;

/// The frontmost window on the screen that asks for the shell (AsksForShell), whatever lies in front of it;
/// null without one.
HWND ShownShellQuestion() noexcept;

/// Makes the next window behind this one that another program shows to the user the foreground window
/// (SetForegroundWindow). Without one, everything stays as it is.
void HandOnForeground(HWND window) noexcept;

/// True while a program that fills the screen is in front, a presentation or a game for instance
/// (SHQueryUserNotificationState). The user's presentation settings alone, which only keep notifications
/// away, do not count.
bool FullScreenProgramInFront() noexcept;

/// Puts a window right behind another one, without the focus (SetWindowPos). It is above all others only as
/// long as the other one is. False when Windows refuses.
bool PutBehind(HWND window, HWND front) noexcept;

/// Puts a window right behind the foreground window when that one is not this program's and covers `seen`,
/// the part of the window that the screen shows (PutBehind). False when it stays where it is.
bool PutBehindForeground(HWND window, const RECT& seen) noexcept;

}  // namespace win
