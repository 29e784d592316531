#include "tests/support/window.h"

#include <cstdio>
#include <stdexcept>

#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

constexpr UINT kSendPatienceMs = static_cast<UINT>(kPatience.count());

BOOL CALLBACK AppendWindow(HWND handle, LPARAM list) {
    reinterpret_cast<std::vector<Window>*>(list)->emplace_back(handle);
    return TRUE;
}

/// The text as the system keeps it. Unlike Text() it never waits for the program, which may hang.
std::string KeptText(Window window) {
    wchar_t text[512] = L"";
    InternalGetWindowText(window.Handle(), text, ARRAYSIZE(text));
    return Utf8(text);
}

bool Answers(const WindowQuery& query, Window window) {
    if (query.visible_only && !window.IsVisible()) return false;
    if (query.process_id != 0 && window.ProcessId() != query.process_id) return false;
    if (!query.class_name.empty() && window.Class() != query.class_name) return false;
    // Not Text(): the program may be about to close the window, and would not answer any more.
    return query.title.empty() || KeptText(window) == query.title;
}

}  // namespace

Window Window::At(POINT place) { return Window(WindowFromPoint(place)); }

Window Window::Foreground() { return Window(GetForegroundWindow()); }

HWND Window::Checked() const {
    if (!Exists()) throw std::runtime_error("the window is gone: " + Describe());
    return handle_;
}

std::string Window::Class() const {
    wchar_t name[256] = L"";
    GetClassNameW(handle_, name, ARRAYSIZE(name));
    return Utf8(name);
}

std::string Window::Text() const {
    const auto length = static_cast<std::size_t>(Send(WM_GETTEXTLENGTH));
    std::wstring text(length + 1, L'\0');
    const LRESULT copied = Send(WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return Utf8(text);
}

DWORD Window::ProcessId() const {
    DWORD id = 0;
    GetWindowThreadProcessId(handle_, &id);
    return id;
}

DWORD Window::ThreadId() const { return GetWindowThreadProcessId(handle_, nullptr); }

bool Window::IsFocused() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return handle_ && GetGUIThreadInfo(ThreadId(), &info) && info.hwndFocus == handle_;
}

RECT Window::Rect() const {
    RECT rect = {};
    if (!GetWindowRect(Checked(), &rect)) ThrowWindowsError("GetWindowRect");
    return rect;
}

RECT Window::ClientRect() const {
    RECT rect = {};
    if (!GetClientRect(Checked(), &rect)) ThrowWindowsError("GetClientRect");
    MapWindowPoints(handle_, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

POINT Window::Centre() const {
    const RECT rect = Rect();
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

POINT Window::ClientPoint(LONG x, LONG y) const {
    POINT point = {x, y};
    if (!ClientToScreen(Checked(), &point)) ThrowWindowsError("ClientToScreen");
    return point;
}

std::vector<Window> Window::Descendants() const {
    std::vector<Window> windows;
    EnumChildWindows(Checked(), AppendWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

Window Window::FindChild(int id) const {
    for (const Window window : Descendants()) {
        if (window.Id() == id) return window;
    }
    return {};
}

Window Window::Child(int id) const {
    const Window child = FindChild(id);
    if (!child) throw std::runtime_error(Describe() + " has no child " + std::to_string(id));
    return child;
}

LRESULT Window::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(Checked(), message, wparam, lparam, SMTO_NORMAL, kSendPatienceMs, &answer)) {
        ThrowWindowsError("Sending message " + std::to_string(message) + " to " + Describe());
    }
    return static_cast<LRESULT>(answer);
}

void Window::Post(UINT message, WPARAM wparam, LPARAM lparam) const {
    if (!PostMessageW(Checked(), message, wparam, lparam)) ThrowWindowsError("PostMessageW");
}

void Window::Activate() const {
    // Asked for again, because what has just been opened may still take the foreground.
    WaitFor(Describe() + " comes to the foreground", [this] {
        if (!IsForeground()) SetForegroundWindow(Checked());
        return IsForeground();
    });
}

void Window::SetText(const std::string& text) const {
    Send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(text).c_str()));
}

std::string Window::Describe() const {
    char number[32];
    std::snprintf(number, sizeof number, "0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle_)));
    if (!Exists()) return std::string("window ") + number;
    return Class() + " \"" + KeptText(*this) + "\" " + number;
}

std::string WindowQuery::Describe() const {
    std::string text = visible_only ? "a visible window" : "a window";
    if (!class_name.empty()) text += " of class " + class_name;
    if (!title.empty()) text += " titled \"" + title + "\"";
    if (process_id != 0) text += " of process " + std::to_string(process_id);
    return text;
}

std::vector<Window> FindTopWindows(const WindowQuery& query) {
    std::vector<Window> windows;
    EnumWindows(AppendWindow, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [&](Window window) { return !Answers(query, window); });
    return windows;
}

Window FindTopWindow(const WindowQuery& query) {
    const std::vector<Window> windows = FindTopWindows(query);
    return windows.empty() ? Window() : windows.front();
}

Window WaitForTopWindow(const WindowQuery& query) {
    return WaitFor(query.Describe(), [&] { return FindTopWindow(query); });
}

std::string DescribeOpenWindows() {
    std::string lines;
    for (const Window window : FindTopWindows({})) {
        if (KeptText(window).empty()) continue;
        lines += "\n  open: " + window.Describe();
        if (window.Class() != "#32770") continue;
        for (const Window child : window.Descendants()) {
            if (const std::string text = KeptText(child); !text.empty()) lines += " | " + text;
        }
    }
    return lines;
}

}  // namespace testkit
