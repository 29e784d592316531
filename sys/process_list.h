#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "win/menu_array.h"

namespace sys {

/// The programs that are running on the desktop, as the elements of a menu: one element for each executable,
/// its caption the bare file name, its tag the full path. Made for one filling of the menu.
class clsProcesi {
  public:
    /// A window of a program, with its title.
    struct WindowEntry {
        HWND handle;
        std::string title;
    };

    /// `menu` has only its element 0, which stays as it is when nothing is found. `taskbarOnly` leaves out
    /// hidden windows and those that are cloaked (DwmGetWindowAttribute). The windows of the process
    /// `leftOut` get no element; 0 stands for none.
    clsProcesi(win::MenuArray& menu, bool taskbarOnly, DWORD leftOut);

    /// Walks all top-level windows, topmost first, and fills the menu. A window that does not answer costs
    /// up to twice half a second and is passed over.
    void Refresh();

    /// The platform of the system (GetVersionEx): 1 Windows 95, 98 and Me, 2 Windows NT and its successors.
    static DWORD GetVersion();

    /// True for a window that a taskbar shows: no child, not owned unless by a tool window, no tool window.
    static bool IsTaskbarWindow(HWND window);

    /// True for a window with the extended style WS_EX_TOOLWINDOW.
    static bool IsToolWindow(HWND window);

    /// Records a window that has a title and adds its program to the menu, unless it is there.
    void AddWindow(HWND window);

    /// The full path of the executable whose process owns a window; "" when it cannot be found out.
    std::string GetExePath(HWND window);

    /// The same by the process, from a snapshot of the processes (Toolhelp).
    std::string ExePathToolhelp(DWORD process);

    /// The same by the process, from the list of processes and their modules (PSAPI).
    std::string ExePathPsapi(DWORD process);

    /// A text without its last character.
    static std::string DropLastChar(const std::string& text);

    /// The windows recorded so far; there may be more of them than elements.
    [[nodiscard]] const std::vector<WindowEntry>& Windows() const noexcept { return windows_; }

    /// The number of windows recorded so far.
    [[nodiscard]] std::int32_t WindowCount() const noexcept {
        return static_cast<std::int32_t>(windows_.size());
    }

    /// How many elements were filled.
    [[nodiscard]] std::int16_t MenuCount() const noexcept { return menuCount_; }

    /// The process whose executable was found last; 0 before the first.
    [[nodiscard]] DWORD LastProcessId() const noexcept { return lastProcessId_; }

  private:
    static constexpr UINT Timeout = 500;  ///< for each question to a window, in milliseconds

    [[nodiscard]] bool ReadTitle(HWND window, std::string& title) const;
    void Record(HWND window, const std::string& title);
    [[nodiscard]] bool IsLeftOut(HWND window, const std::string& title) const;
    void AddProgram(const std::string& path);

    win::MenuArray& menu_;
    bool taskbarOnly_;
    DWORD leftOut_;
    std::vector<WindowEntry> windows_;
    std::int16_t menuCount_ = 0;
    DWORD lastProcessId_ = 0;
};

}  // namespace sys
