// What the test program and its agent inside another program say to each other. The question is a registered
// message to a window of that program; the answer is written into a shared piece of memory, named after the
// asking process.
#pragma once

#include <windows.h>

namespace testkit::agent {

inline constexpr wchar_t kMessageName[] = L"quon-test-agent";
/// A printf format; the number is the asking process's.
inline constexpr wchar_t kMemoryNameFormat[] = L"Local\\quon-test-agent-%lu";

/// The message's wparam; its lparam is the asking process's number.
enum class Question : WPARAM {
    /// The items of the menu that the window, an open popup menu, shows.
    kMenu = 1,
    /// Title and text of the tip that the window, a tooltip, shows.
    kToolTip = 2,
    /// How many menus and icons the process has. Under Wine only.
    kMenusAndIcons = 3,
    /// Which kinds of messages wait for the window's thread: the QS_ flags, timers and sent messages left
    /// out.
    kWaitingMessages = 4,
    /// The error mode (SEM_ flags) of the window's thread and, in the high word, that of its process.
    kErrorModes = 5,
};

struct MenuItemAnswer {
    UINT id;
    UINT type;
    UINT state;
    BOOL has_submenu;
    RECT rect;
    wchar_t caption[512];
};

struct ToolTipAnswer {
    wchar_t title[512];
    wchar_t text[8192];
    UINT icon;
};

inline constexpr UINT kMostItems = 1024;

struct Answer {
    /// Set when everything else is written.
    BOOL done;
    UINT count;
    ToolTipAnswer tip;
    MenuItemAnswer items[kMostItems];
};

}  // namespace testkit::agent
