#include "win/window.h"

#include <exception>

#include "win/errors.h"
#include "win/handles.h"
#include "win/message_ban.h"
#include "win/text.h"

namespace win {
namespace {

int g_handlerDepth = 0;

/// Counts one more handler as long as it lives.
class HandlerMark {
  public:
    HandlerMark() noexcept { ++g_handlerDepth; }
    HandlerMark(const HandlerMark&) = delete;
    HandlerMark& operator=(const HandlerMark&) = delete;
    HandlerMark(HandlerMark&&) = delete;
    HandlerMark& operator=(HandlerMark&&) = delete;
    ~HandlerMark() { --g_handlerDepth; }
};

void RegisterOnce(const WindowOptions& options, WNDPROC procedure) {
    WNDCLASSEXW record{};
    record.cbSize = sizeof record;
    if (GetClassInfoExW(ModuleInstance(), options.className, &record) != 0) return;
    record = {};
    record.cbSize = sizeof record;
    record.style = options.classStyle;
    record.lpfnWndProc = procedure;
    record.hInstance = ModuleInstance();
    record.hIcon = options.icon;
    record.hCursor = LoadCursor(nullptr, IDC_ARROW);
    record.lpszClassName = options.className;
    RegisterClassExW(&record);
}

BOOL CALLBACK CollectWindow(HWND window, LPARAM windows) noexcept {
    try {
        reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
        return TRUE;
    } catch (const std::exception&) {
        return FALSE;
    }
}

}  // namespace

HINSTANCE ModuleInstance() noexcept { return GetModuleHandleW(nullptr); }

Window::~Window() {
    // The derived class, which would handle the last messages, is gone by now.
    if (handle_ != nullptr) SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    Destroy();
}

RECT Window::ClientRect() const {
    RECT rect{};
    GetClientRect(handle_, &rect);
    return rect;
}

void Window::Destroy() noexcept {
    if (handle_ != nullptr) DestroyWindow(handle_);
    handle_ = nullptr;
}

void Window::Create(const WindowOptions& options) {
    RegisterOnce(options, &Window::Trampoline);
    const RECT& place = options.place;
    const HWND created = CreateWindowExW(
        options.extendedStyle, options.className, ToWide(options.text).c_str(), options.style, place.left,
        place.top, place.right - place.left, place.bottom - place.top, options.parent,
        // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes a child's identifier in the menu's place.
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(options.id)), ModuleInstance(), this);
    if (created == nullptr)
        throw RuntimeError("Could not create a window of class " + ToBytes(options.className));
}

LRESULT CALLBACK Window::Trampoline(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* self = static_cast<Window*>(creation->lpCreateParams);
        self->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    const HandlerMark mark;
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->handle_ = nullptr;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    // A child asks its parents for the pointer first, so this holds for everything on the window.
    if (message == WM_SETCURSOR && Hourglass::IsShown()) {
        SetCursor(LoadCursor(nullptr, IDC_WAIT));
        return TRUE;
    }
    // After an error the message counts as handled: the default must not run on top of a half-done handler.
    const std::optional<LRESULT> result =
        Guarded(window, std::optional<LRESULT>(0), [&] { return self->OnMessage(message, wParam, lParam); });
    return result ? *result : DefWindowProcW(window, message, wParam, lParam);
}

void SetTopmost(bool topmost, HWND window) noexcept {
    SetWindowPos(window, topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

std::vector<HWND> ThreadWindows() {
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), &CollectWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

void CutHole(HWND window, RECT hole) noexcept {
    RECT all{};
    GetClientRect(window, &all);
    Region region(CreateRectRgnIndirect(&all));
    const Region cut(CreateRectRgnIndirect(&hole));
    CombineRgn(region.Get(), region.Get(), cut.Get(), RGN_DIFF);
    // The window owns the region from now on, unless it did not take it.
    if (SetWindowRgn(window, region.Get(), FALSE) != 0) region.Release();
}

int HandlerDepth() noexcept { return g_handlerDepth; }

void HandleMessage(MSG& message, const MessageFilter& filter) {
    if (filter) {
        const HandlerMark mark;
        if (Guarded(message.hwnd, true, [&] { return filter(message); })) return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

POINT PointerPlace() noexcept {
    POINT pointer{};
    GetCursorPos(&pointer);
    return pointer;
}

bool ProcessPendingMessages(const MessageFilter& filter) {
    AssertMayPump("a wait that handles events");
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        HandleMessage(message, filter);
    }
    return true;
}

}  // namespace win
