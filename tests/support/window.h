// Windows of other programs, seen from outside.
//
//     const Window panel = program.WaitForWindow({.class_name = "QuonMain"});
//     EXPECT_EQ(panel.Child(IDC_BUTTON + 1).Text(), "First button");     // by control id, also when nested
//     mouse::Click(panel.Child(IDC_BUTTON + 1));
//     EXPECT_TRUE(panel.Child(IDC_SHORTCUTS).IsFocused());
//
// A Window is just a window's handle with manners: copy it freely. Asking about a window that is gone throws,
// except Exists(), the bool test and the Is... questions, which answer false. Messages are sent with a time
// limit: a program that hangs fails the test and does not hang it.
// Text is UTF-8; rectangles and points are in screen pixels unless something else is said.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace testkit {

class Window {
  public:
    Window() = default;
    explicit Window(HWND handle) : handle_(handle) {}
    /// The frontmost window at this place of the screen, as the mouse would find it.
    static Window At(POINT place);
    static Window Foreground();

    HWND Handle() const { return handle_; }
    bool Exists() const { return handle_ && IsWindow(handle_); }
    explicit operator bool() const { return Exists(); }
    bool operator==(const Window&) const = default;

    std::string Class() const;
    /// The caption, or a control's text.
    std::string Text() const;
    int Id() const { return GetDlgCtrlID(handle_); }
    DWORD ProcessId() const;
    DWORD ThreadId() const;
    LONG_PTR Style() const { return GetWindowLongPtrW(handle_, GWL_STYLE); }
    LONG_PTR ExtendedStyle() const { return GetWindowLongPtrW(handle_, GWL_EXSTYLE); }

    bool IsVisible() const { return IsWindowVisible(handle_) != FALSE; }
    bool IsEnabled() const { return IsWindowEnabled(handle_) != FALSE; }
    bool IsMaximized() const { return IsZoomed(handle_) != FALSE; }
    bool IsMinimized() const { return IsIconic(handle_) != FALSE; }
    bool IsTopmost() const { return (ExtendedStyle() & WS_EX_TOPMOST) != 0; }
    /// Whether its thread's keyboard focus is on this very window.
    bool IsFocused() const;
    bool IsForeground() const { return handle_ && GetForegroundWindow() == handle_; }
    bool IsDescendantOf(Window other) const { return IsChild(other.handle_, handle_) != FALSE; }

    /// The window's outer rectangle.
    RECT Rect() const;
    /// The client area's rectangle.
    RECT ClientRect() const;
    POINT Centre() const;
    /// The screen's point for a point of the client area.
    POINT ClientPoint(LONG x, LONG y) const;

    Window Parent() const { return Window(GetAncestor(handle_, GA_PARENT)); }
    Window Owner() const { return Window(GetWindow(handle_, GW_OWNER)); }
    /// All descendants.
    std::vector<Window> Descendants() const;
    /// The first descendant with this control id; an empty Window when there is none.
    Window FindChild(int id) const;
    /// The same, but throws when there is none.
    Window Child(int id) const;

    /// Sends a message and waits for the answer, at most for the usual patience.
    LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
    void Post(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
    /// Presses the button with this control id without the mouse; returns when all that it does is done.
    void Press(int id) const { Child(id).Send(BM_CLICK); }
    /// The same, but returns at once.
    void PostPress(int id) const { Child(id).Post(BM_CLICK); }

    /// Presses and releases the left mouse button at a point of its client area, without the mouse.
    void SendClick(int x = 5, int y = 5) const {
        Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        Send(WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    }
    /// What is selected in an edit field: MAKELONG of the start and the end, in characters.
    LRESULT Selection() const { return Send(EM_GETSEL); }

    /// Makes it the foreground window and waits until it is.
    void Activate() const;
    /// Replaces a control's text as a whole, the way a program would; typing is keyboard::Type.
    void SetText(const std::string& text) const;

    /// "QuonMain \"Quon\" 0x10020", for messages.
    std::string Describe() const;

  private:
    /// Throws when the window is gone.
    HWND Checked() const;

    HWND handle_ = nullptr;
};

/// What to look for among the top-level windows. What is left empty does not matter.
struct WindowQuery {
    std::string class_name = {};
    std::string title = {};
    DWORD process_id = 0;
    bool visible_only = true;

    std::string Describe() const;
};

/// Top-level windows that answer the query, frontmost first.
std::vector<Window> FindTopWindows(const WindowQuery& query);
/// The frontmost of them; an empty Window when there is none.
Window FindTopWindow(const WindowQuery& query);
/// Waits for one.
Window WaitForTopWindow(const WindowQuery& query);

/// A line for each open window that has a title, with what stands in it if it is a dialog; for messages.
std::string DescribeOpenWindows();

}  // namespace testkit
