// The floor of starting: a window of the panel's size, at the panel's place, that only paints itself.

#include <windows.h>

#include "app/panel_layout.h"

namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kExtendedStyle = WS_EX_TOOLWINDOW | WS_EX_TOPMOST;

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
        case WM_PAINT: {
            PAINTSTRUCT paint{};
            const HDC dc = BeginPaint(window, &paint);
            FillRect(dc, &paint.rcPaint, GetSysColorBrush(COLOR_HIGHLIGHT));
            EndPaint(window, &paint);
            return 0;
        }
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*commandLine*/, int /*show*/) {
    WNDCLASSW record{};
    record.lpfnWndProc = OnMessage;
    record.hInstance = instance;
    record.hCursor = LoadCursor(nullptr, IDC_ARROW);
    record.lpszClassName = L"QuonBenchFloor";
    RegisterClassW(&record);
    RECT outer{0, 0, app::layout::kClientWidth, app::layout::kClientHeight};
    AdjustWindowRectEx(&outer, kStyle, FALSE, kExtendedStyle);
    const int width = outer.right - outer.left;
    const int height = outer.bottom - outer.top;
    const HWND window = CreateWindowExW(
        kExtendedStyle, record.lpszClassName, L"Floor", kStyle, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
        (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, SW_SHOW);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
