#include "win/modal_windows.h"

#include <algorithm>
#include <cwchar>
#include <initializer_list>
#include <iterator>

#include "win/dialog.h"
#include "win/window.h"

namespace win {
namespace {

bool g_ending = false;

/// Dialogs of the system's, and the one that shows how far an operation of the shell's has come.
bool IsSystemWindow(HWND window) {
    wchar_t name[32]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    const bool dialog = std::wcscmp(name, L"#32770") == 0 || std::wcscmp(name, L"OperationStatusWindow") == 0;
    return dialog && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0 && !IsOpenDialog(window);
}

bool IsOfThisThread(HWND window) { return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId(); }

struct Search {
    HWND found[16];  ///< frontmost first; more are never open, and the rest has its turn later
    int count = 0;
};

/// The shell asks some of its questions in threads of its own.
Search SystemWindows() noexcept {
    Search search{};
    const auto collect = [](HWND window, LPARAM result) -> BOOL {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        auto& into = *reinterpret_cast<Search*>(result);
        if (process == GetCurrentProcessId() && IsSystemWindow(window)) into.found[into.count++] = window;
        return into.count < static_cast<int>(std::size(into.found)) ? TRUE : FALSE;
    };
    EnumWindows(collect, reinterpret_cast<LPARAM>(&search));
    return search;
}

/// Posted, so that it is the window's own loop that handles it, whichever thread that runs in.
void Cancel(HWND window) {
    const int id = CancellingButton(window);
    if (id == 0)
        PostMessageW(window, WM_CLOSE, 0, 0);
    else
        PostMessageW(window, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(window, id)));
}

GUITHREADINFO ThreadState() noexcept {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    GetGUIThreadInfo(GetCurrentThreadId(), &state);
    return state;
}

/// Esc puts a window back that is being moved by its caption or by the keys.
void CancelMove() {
    const GUITHREADINFO state = ThreadState();
    if ((state.flags & GUI_INMOVESIZE) != 0) PostMessageW(state.hwndMoveSize, WM_KEYDOWN, VK_ESCAPE, 0);
}

}  // namespace

int CancellingButton(HWND window) noexcept {
    for (const int id : {IDCANCEL, IDNO, IDABORT}) {
        const HWND button = GetDlgItem(window, id);
        if (button != nullptr && IsWindowVisible(button) != 0 && IsWindowEnabled(button) != 0) return id;
    }
    return 0;
}

HWND OpenSystemWindow() noexcept {
    const Search search = SystemWindows();
    const auto* const end = search.found + search.count;
    const auto* const found = std::find_if(search.found, end, &IsOfThisThread);
    return found != end ? *found : nullptr;
}

HWND WaitingWindow() noexcept {
    const HWND window = OpenSystemWindow();
    return window != nullptr ? window : ModalOwner();
}

bool InModalLoop() noexcept {
    // The menu of an edit field opens without any handler of ours.
    constexpr DWORD kLoops = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
    return HandlerDepth() > 1 || AnyDialogOpen() || (ThreadState().flags & kLoops) != 0;
}

void CancelModalWindows() {
    EndMenu();
    CancelMove();
    const Search search = SystemWindows();
    bool ours = false;
    for (int index = 0; index < search.count; ++index) {
        Cancel(search.found[index]);
        ours = ours || IsOfThisThread(search.found[index]);
    }
    // A dialog whose own question is still open goes once that has been answered.
    if (!ours) CancelOpenDialogs();
}

void SetEnding(bool ending) noexcept { g_ending = ending; }

bool IsEnding() noexcept { return g_ending; }

}  // namespace win
