#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace win {

/// The options a window is created with; positions and sizes in pixels.
struct WindowOptions {
    const wchar_t* className = L"";  ///< registered on first use, with the class style and the icon
    std::string text;                ///< the window text: a caption where there is one
    DWORD style = 0;                 ///< WS_ flags
    DWORD extendedStyle = 0;         ///< WS_EX_ flags
    RECT place{};                    ///< in the parent's client area; of a window without one on the screen
    HWND parent = nullptr;           ///< the parent of a child, the owner of any other; null for none
    int id = 0;                      ///< a child's identifier
    UINT classStyle = 0;             ///< CS_ flags
    HICON icon = nullptr;            ///< the class's icon; null for none
};

/// A window of ours: one object a window, one message procedure for all of them.
/// The object is bound to its handle from WM_NCCREATE to WM_NCDESTROY, and destroys the window with itself.
class Window {
  public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    Window(Window&&) = delete;
    Window& operator=(Window&&) = delete;
    virtual ~Window();

    /// The handle, or null before creation and after destruction.
    [[nodiscard]] HWND Handle() const noexcept { return handle_; }

    /// The client area's size in pixels, as a rectangle from (0, 0).
    [[nodiscard]] RECT ClientRect() const;

    /// Destroys the window now; harmless when there is none.
    void Destroy() noexcept;

  protected:
    /// Registers the class on first use and creates the window (CreateWindowExW).
    /// Throws RuntimeError when Windows refuses.
    void Create(const WindowOptions& options);

    /// Handles one message; no value means that Windows' default handling is wanted.
    virtual std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;

  private:
    static LRESULT CALLBACK Trampoline(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    HWND handle_ = nullptr;
};

/// The instance of this program's module.
HINSTANCE ModuleInstance() noexcept;

/// Puts a window above all others, or back among them, without moving it or giving it the focus
/// (SetWindowPos). Its owner is left alone, so a dialog may outrank the panel.
void SetTopmost(bool topmost, HWND window) noexcept;

/// The top-level windows of this thread, hidden ones too, frontmost first (EnumThreadWindows). When memory is
/// short, the hindmost are missing.
std::vector<HWND> ThreadWindows();

/// Makes a hole in a window without a frame, in its client pixels: what lies behind shows there and can be
/// clicked (SetWindowRgn).
void CutHole(HWND window, RECT hole) noexcept;

/// How many handlers of this program are at work inside one another: 1 in one that the outermost message loop
/// has called, more in one that was called meanwhile, from the loop of a menu or of a modal window for
/// instance; 0 outside of any.
int HandlerDepth() noexcept;

/// Sees a message before it is dispatched; true when the message has been used.
using MessageFilter = std::function<bool(MSG&)>;

/// Translates and dispatches one message, unless the filter uses it; an error of the filter is reported.
void HandleMessage(MSG& message, const MessageFilter& filter);

/// Lets the waiting window messages run; false when the program is to end (WM_QUIT is posted again).
bool ProcessPendingMessages(const MessageFilter& filter = {});

/// Where the mouse pointer is on the screen (GetCursorPos).
POINT PointerPlace() noexcept;

}  // namespace win
