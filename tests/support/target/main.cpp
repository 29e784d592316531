// A program to be launched by what is under test, and to try the desktop driver on. It writes down how it was
// launched, shows a window titled with its arguments, and ends when that is closed. See
// tests/support/test_target.h.
#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>
#include <windowsx.h>

#include <cstring>
#include <string>

#include "tests/support/target/ids.h"

namespace testkit::target {
namespace {

HWND journal;
HWND tip;
POINT drag_start;

std::string Utf8(const std::wstring& wide) {
    const int units = static_cast<int>(wide.size());
    std::string utf8(4 * wide.size(), '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(),
                                           static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

std::wstring RecordPath() {
    wchar_t path[4 * MAX_PATH] = L"";
    if (GetEnvironmentVariableW(L"QUON_TARGET_RECORD", path, ARRAYSIZE(path)) > 0) return path;
    GetModuleFileNameW(nullptr, path, ARRAYSIZE(path));
    return std::wstring(path) + L".record";
}

/// Appends one line: process, show flag, show state, work folder, command line, divided by tabs.
void RecordLaunch() {
    STARTUPINFOW startup = {};
    GetStartupInfoW(&startup);
    wchar_t folder[4 * MAX_PATH] = L"";
    GetCurrentDirectoryW(ARRAYSIZE(folder), folder);
    const bool asked = (startup.dwFlags & STARTF_USESHOWWINDOW) != 0;
    const std::string line =
        Utf8(std::to_wstring(GetCurrentProcessId()) + L"\t" + (asked ? L"1" : L"0") + L"\t" +
             std::to_wstring(startup.wShowWindow) + L"\t" + folder + L"\t" + GetCommandLineW() + L"\n");
    HANDLE file = CreateFileW(RecordPath().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
}

/// The command line without the program's name.
std::wstring Arguments() {
    const wchar_t* text = GetCommandLineW();
    bool quoted = false;
    for (; *text && (quoted || (*text != L' ' && *text != L'\t')); ++text)
        quoted ^= *text == L'"';
    while (*text == L' ' || *text == L'\t')
        ++text;
    return text;
}

void Note(const std::wstring& text) { SetWindowTextW(journal, text.c_str()); }

void NoteMouse(const wchar_t* what, LPARAM place) {
    std::wstring text = std::wstring(what) + L" " + std::to_wstring(GET_X_LPARAM(place)) + L"," +
                        std::to_wstring(GET_Y_LPARAM(place));
    if (GetKeyState(VK_CONTROL) < 0) text += L" ctrl";
    if (GetKeyState(VK_SHIFT) < 0) text += L" shift";
    if (GetKeyState(VK_MENU) < 0) text += L" alt";
    Note(text);
}

void ShowMenu(HWND window, POINT place) {
    HMENU more = CreatePopupMenu();
    AppendMenuW(more, MF_STRING, kCommandInner, L"&Inner");
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, kCommandFirst, L"&First");
    AppendMenuW(menu, MF_STRING | MF_CHECKED, kCommandChecked, L"Проверено");
    AppendMenuW(menu, MF_STRING | MF_GRAYED, kCommandDisabled, L"Disabled");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING, kCommandAmpersand, L"Fish && chips");
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(more), L"More");
    TrackPopupMenu(menu, TPM_LEFTALIGN, place.x, place.y, 0, window, nullptr);
    DestroyMenu(menu);
}

HWND MakeChild(HWND parent, const wchar_t* name, const wchar_t* text, DWORD style, RECT place, int id) {
    return CreateWindowExW(0, name, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
}

LRESULT CALLBACK PaintRed(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
        FillRect(dc, &paint.rcPaint, red);
        DeleteObject(red);
        EndPaint(window, &paint);
        return 0;
    }
    if (message == WM_MOUSEMOVE) SendMessageW(tip, TTM_SETTITLEW, TTI_INFO, reinterpret_cast<LPARAM>(L"Red"));
    return DefWindowProcW(window, message, wparam, lparam);
}

void MakeTip(HWND window, HWND square) {
    tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0, 0,
                          window, nullptr, nullptr, nullptr);
    wchar_t text[] = L"A red square";
    TOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
    tool.hwnd = square;
    tool.uId = reinterpret_cast<UINT_PTR>(square);
    tool.lpszText = text;
    SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void Fill(HWND window) {
    MakeChild(window, L"EDIT", L"", WS_BORDER | ES_AUTOHSCROLL, {10, 10, 210, 34}, kEdit);
    MakeChild(window, L"BUTTON", L"Ask", BS_PUSHBUTTON, {10, 44, 90, 70}, kAskButton);
    HWND container = MakeChild(window, L"STATIC", L"", 0, {100, 44, 200, 94}, kContainer);
    MakeTip(window, MakeChild(container, L"QuonTestRed", L"", 0, {5, 5, 45, 45}, kRedSquare));
    journal = MakeChild(window, L"STATIC", L"", SS_NOPREFIX, {10, 100, 290, 120}, kJournal);
}

INT_PTR CALLBACK OnBoxMessage(HWND box, UINT message, WPARAM wparam, LPARAM) {
    if (message == WM_INITDIALOG) {
        SetWindowTextW(box, L"Message from Quon");
        MakeChild(box, L"STATIC", L"Delete it?", 0, {10, 10, 190, 30}, kBoxLabel);
        MakeChild(box, L"EDIT", L"old", WS_BORDER, {10, 35, 190, 55}, kBoxInput);
        MakeChild(box, L"BUTTON", L"Yes", BS_DEFPUSHBUTTON, {10, 60, 90, 85}, kBoxFirstButton);
        MakeChild(box, L"BUTTON", L"No", 0, {100, 60, 180, 85}, kBoxFirstButton + 1);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wparam);
    if (id != IDCANCEL && id != kBoxFirstButton && id != kBoxFirstButton + 1) return FALSE;
    wchar_t input[64] = L"";
    GetDlgItemTextW(box, kBoxInput, input, ARRAYSIZE(input));
    Note(L"box " + std::to_wstring(id) + L" " + input);
    EndDialog(box, id);
    return TRUE;
}

void ShowBox(HWND window) {
    struct {
        DLGTEMPLATE head;
        WORD menu, window_class, caption;
    } box = {};
    box.head.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE | DS_CENTER;
    box.head.cx = 130;
    box.head.cy = 60;
    DialogBoxIndirectParamW(nullptr, &box.head, window, OnBoxMessage, 0);
}

void OnCommand(HWND window, int id) {
    if (id == kAskButton) {
        const int answer = MessageBoxW(window, L"Really?", L"Question", MB_YESNOCANCEL);
        Note(answer == IDYES ? L"yes" : L"no");
    } else if (id == kCommandBox) {
        ShowBox(window);
    } else if (id == kCommandHang) {
        Sleep(INFINITE);
    } else if (id >= kCommandFirst) {
        Note(L"menu " + std::to_wstring(id));
    }
}

void OnRelease(HWND, LPARAM place) {
    const POINT end = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
    ReleaseCapture();
    if (end.x == drag_start.x && end.y == drag_start.y) return;
    NoteMouse(
        (L"dragged from " + std::to_wstring(drag_start.x) + L"," + std::to_wstring(drag_start.y) + L" to")
            .c_str(),
        place);
}

void OnMiddlePress(LPARAM place) {
    // Kept on purpose.
    for (BYTE shade = 0; shade < kBrushesKept; ++shade)
        CreateSolidBrush(RGB(shade, 1, 2));
    NoteMouse(L"middle", place);
}

/// Puts bytes on the clipboard.
bool Copy(HWND window, UINT format, const std::string& bytes) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(GlobalLock(memory), bytes.data(), bytes.size());
    GlobalUnlock(memory);
    if (!OpenClipboard(window)) return false;
    EmptyClipboard();
    const bool done = SetClipboardData(format, memory) != nullptr;
    CloseClipboard();
    return done;
}

bool OnOrder(HWND window, const COPYDATASTRUCT& order) {
    const std::string sent(static_cast<const char*>(order.lpData), order.cbData);
    std::string bytes;
    switch (order.dwData & 0xFF) {
        case kOrderCopyText:
            for (ULONG_PTR times = order.dwData >> 8; times > 0; --times)
                bytes += sent;
            return Copy(window, CF_UNICODETEXT, bytes + std::string(2, '\0'));
        case kOrderCopyFiles: {
            DROPFILES files = {};
            files.pFiles = sizeof files;
            files.fWide = TRUE;
            bytes.assign(reinterpret_cast<const char*>(&files), sizeof files);
            return Copy(window, CF_HDROP, bytes + sent);
        }
        case kOrderHoldClipboard: return OpenClipboard(window) != FALSE;
        case kOrderLetClipboardGo: return CloseClipboard() != FALSE;
        default: return false;
    }
}

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_CREATE: Fill(window); return 0;
        case WM_COMMAND: OnCommand(window, LOWORD(wparam)); return 0;
        case WM_COPYDATA: return OnOrder(window, *reinterpret_cast<const COPYDATASTRUCT*>(lparam)) ? 1 : 0;
        case WM_LBUTTONDOWN:
            drag_start = {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
            SetCapture(window);
            NoteMouse(L"left", lparam);
            return 0;
        case WM_LBUTTONUP: OnRelease(window, lparam); return 0;
        case WM_LBUTTONDBLCLK: NoteMouse(L"double", lparam); return 0;
        case WM_MBUTTONDOWN: OnMiddlePress(lparam); return 0;
        case WM_MOUSEWHEEL: Note(L"wheel " + std::to_wstring(GET_WHEEL_DELTA_WPARAM(wparam))); return 0;
        case WM_RBUTTONUP: {
            POINT place = {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
            ClientToScreen(window, &place);
            ShowMenu(window, place);
            return 0;
        }
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return DefWindowProcW(window, message, wparam, lparam);
    }
}

void RegisterClasses(HINSTANCE instance) {
    WNDCLASSW window_class = {};
    window_class.hInstance = instance;
    window_class.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    window_class.lpfnWndProc = PaintRed;
    window_class.lpszClassName = L"QuonTestRed";
    RegisterClassW(&window_class);
    window_class.style = CS_DBLCLKS;
    window_class.lpfnWndProc = OnMessage;
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    window_class.lpszClassName = kClass;
    RegisterClassW(&window_class);
}

int Run(HINSTANCE instance, int show_state) {
    RecordLaunch();
    InitCommonControls();
    RegisterClasses(instance);
    HWND window = CreateWindowExW(0, kClass, Arguments().c_str(), WS_OVERLAPPEDWINDOW, 200, 150, 320, 200,
                                  nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show_state);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace
}  // namespace testkit::target

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_state) {
    return testkit::target::Run(instance, show_state);
}
