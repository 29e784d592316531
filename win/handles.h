#pragma once

#include <windows.h>

#include <utility>

namespace win {

/// Owns one Windows handle; moves, never copies. `Traits` says how the handle is given back.
template <class Traits>
class Handle {
  public:
    using Value = typename Traits::Value;

    Handle() = default;
    explicit Handle(Value value) noexcept : value_(value) {}
    Handle(Handle&& other) noexcept : value_(other.Release()) {}
    Handle& operator=(Handle&& other) noexcept {
        Reset(other.Release());
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Reset(); }

    /// The handle, still owned here; the type's "none" when there is none.
    [[nodiscard]] Value Get() const noexcept { return value_; }

    /// True when there is a handle.
    explicit operator bool() const noexcept { return value_ != Traits::Invalid(); }

    /// Gives the handle away; the caller must give it back to Windows.
    Value Release() noexcept { return std::exchange(value_, Traits::Invalid()); }

    /// Gives the present handle back and takes over another one.
    void Reset(Value value = Traits::Invalid()) noexcept {
        const Value old = std::exchange(value_, value);
        if (old != Traits::Invalid() && old != value) Traits::Close(old);
    }

  private:
    Value value_ = Traits::Invalid();
};

/// How a handle is given back: `Close` is the Windows function, null stands for "none".
template <class T, auto Close_>
struct NullHandleTraits {
    using Value = T;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { Close_(value); }
};

// The Windows functions are imported, so their addresses are no constants: each gets a small wrapper.
namespace close {
inline void Icon(HICON handle) noexcept { DestroyIcon(handle); }
inline void Menu(HMENU handle) noexcept { DestroyMenu(handle); }
inline void MemoryDc(HDC handle) noexcept { DeleteDC(handle); }
inline void GdiObject(HGDIOBJ handle) noexcept { DeleteObject(handle); }
inline void KernelObject(HANDLE handle) noexcept { CloseHandle(handle); }
inline void RegistryKey(HKEY handle) noexcept { RegCloseKey(handle); }
inline void MessageHook(HHOOK handle) noexcept { UnhookWindowsHookEx(handle); }
inline void EventHook(HWINEVENTHOOK handle) noexcept { UnhookWinEvent(handle); }
}  // namespace close

/// Owners of what Windows hands out to be given back: icons by DestroyIcon, menus by DestroyMenu (their
/// submenus with them), device contexts made by CreateCompatibleDC by DeleteDC.
using Icon = Handle<NullHandleTraits<HICON, close::Icon>>;
using Menu = Handle<NullHandleTraits<HMENU, close::Menu>>;
using MemoryDc = Handle<NullHandleTraits<HDC, close::MemoryDc>>;

/// Drawing objects, given back by DeleteObject; they may not be selected into a device context then.
using Bitmap = Handle<NullHandleTraits<HBITMAP, close::GdiObject>>;
using Brush = Handle<NullHandleTraits<HBRUSH, close::GdiObject>>;
using Font = Handle<NullHandleTraits<HFONT, close::GdiObject>>;
using Region = Handle<NullHandleTraits<HRGN, close::GdiObject>>;

/// Mutexes, processes and the like, given back by CloseHandle.
using KernelObject = Handle<NullHandleTraits<HANDLE, close::KernelObject>>;

/// An open registry key (RegCloseKey).
using RegistryKey = Handle<NullHandleTraits<HKEY, close::RegistryKey>>;

/// A hook into messages (UnhookWindowsHookEx).
using MessageHook = Handle<NullHandleTraits<HHOOK, close::MessageHook>>;

/// A hook into what happens to windows (UnhookWinEvent).
using EventHook = Handle<NullHandleTraits<HWINEVENTHOOK, close::EventHook>>;

/// How a file's handle is given back; INVALID_HANDLE_VALUE stands for "none".
struct FileTraits {
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { CloseHandle(value); }
};
/// A file opened with CreateFile, whose "none" is INVALID_HANDLE_VALUE.
using File = Handle<FileTraits>;

/// How a listing's handle is given back; INVALID_HANDLE_VALUE stands for "none".
struct FindTraits {
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { FindClose(value); }
};
/// A directory listing opened with FindFirstFile.
using FindFiles = Handle<FindTraits>;

/// Selects a GDI object for the life of this value and puts the former one back.
class Selection {
  public:
    Selection(HDC dc, HGDIOBJ object) noexcept : dc_(dc), former_(SelectObject(dc, object)) {}
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;
    Selection(Selection&&) = delete;
    Selection& operator=(Selection&&) = delete;
    ~Selection() { SelectObject(dc_, former_); }

  private:
    HDC dc_;
    HGDIOBJ former_;
};

/// BeginPaint and EndPaint as one value.
class Paint {
  public:
    explicit Paint(HWND window) noexcept : window_(window) { BeginPaint(window, &record_); }
    Paint(const Paint&) = delete;
    Paint& operator=(const Paint&) = delete;
    Paint(Paint&&) = delete;
    Paint& operator=(Paint&&) = delete;
    ~Paint() { EndPaint(window_, &record_); }

    [[nodiscard]] HDC Dc() const noexcept { return record_.hdc; }

  private:
    HWND window_;
    PAINTSTRUCT record_{};
};

/// GetDC and ReleaseDC as one value; null stands for the screen.
class WindowDc {
  public:
    explicit WindowDc(HWND window) noexcept : window_(window), dc_(GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    WindowDc(WindowDc&&) = delete;
    WindowDc& operator=(WindowDc&&) = delete;
    ~WindowDc() { ReleaseDC(window_, dc_); }

    [[nodiscard]] HDC Get() const noexcept { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

/// Shows the hourglass while it lives, over every window of ours, then the pointer that was there before.
class Hourglass {
  public:
    Hourglass() noexcept : former_(SetCursor(LoadCursor(nullptr, IDC_WAIT))) { ++shown_; }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
    Hourglass(Hourglass&&) = delete;
    Hourglass& operator=(Hourglass&&) = delete;
    ~Hourglass() {
        --shown_;
        SetCursor(former_);
    }

    /// True while there is one.
    static bool IsShown() noexcept { return shown_ > 0; }

  private:
    static inline int shown_ = 0;

    HCURSOR former_;
};

}  // namespace win
