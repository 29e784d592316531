#include "win/modal_windows.h"

#include <commctrl.h>

#include <algorithm>
#include <cwchar>
#include <functional>
#include <initializer_list>
#include <iterator>

#include "win/dialog.h"
#include "win/foreground.h"
#include "win/step_back.h"
#include "win/window.h"

namespace win {
namespace {

bool g_ending = false;

bool HasClass(HWND window, const wchar_t* expected) {
    wchar_t name[32]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return _wcsicmp(name, expected) == 0;
}

bool IsDialogClass(HWND window) { return HasClass(window, L"#32770"); }

/// The system's dialogs, and the one that shows the progress of a shell operation.
bool IsSystemWindow(HWND window) {
    const bool dialog = IsDialogClass(window) || HasClass(window, L"OperationStatusWindow");
    return dialog && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0 && !IsOpenDialog(window);
}

bool IsOfThisThread(HWND window) { return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId(); }

struct Search {
    HWND found[16];  ///< frontmost first; there are never more, and the rest would have its turn later
    int count = 0;
};

BOOL CALLBACK CollectSystemWindow(HWND window, LPARAM search) noexcept {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    auto& into = *reinterpret_cast<Search*>(search);
    if (process == GetCurrentProcessId() && IsSystemWindow(window)) into.found[into.count++] = window;
    return into.count < static_cast<int>(std::size(into.found)) ? TRUE : FALSE;
}

/// The shell asks some of its questions in threads of its own.
Search SystemWindows() noexcept {
    Search search{};
    EnumWindows(&CollectSystemWindow, reinterpret_cast<LPARAM>(&search));
    return search;
}

struct ButtonSearch {
    int id;
    HWND found;
};

bool IsPressableButton(HWND window) {
    return HasClass(window, L"Button") && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0;
}

BOOL CALLBACK MatchButton(HWND child, LPARAM search) noexcept {
    auto& into = *reinterpret_cast<ButtonSearch*>(search);
    if (GetDlgCtrlID(child) != into.id || !IsPressableButton(child)) return TRUE;
    into.found = child;
    return FALSE;
}

/// The button with this identifier that can be pressed, however deep it lies: newer questions keep their
/// buttons in windows of their own.
HWND PressableButton(HWND window, int id) noexcept {
    ButtonSearch search{id, nullptr};
    EnumChildWindows(window, &MatchButton, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// Posted, so that the window's own loop handles it, whichever thread it runs in.
void Cancel(HWND window) {
    const HWND button = CancellingButton(window);
    if (button != nullptr) {
        PostMessageW(GetParent(button), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                     reinterpret_cast<LPARAM>(button));
        if (GetParent(button) == window) return;
    }
    // A task dialog may draw its buttons itself, and ignores its title bar's button unless one of them is
    // "Cancel". To other windows the number means something else.
    for (const int id : {IDCANCEL, IDNO})
        if (IsDialogClass(window)) PostMessageW(window, TDM_CLICK_BUTTON, static_cast<WPARAM>(id), 0);
    PostMessageW(window, WM_CLOSE, 0, 0);
}

GUITHREADINFO ThreadState() noexcept {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    GetGUIThreadInfo(GetCurrentThreadId(), &state);
    return state;
}

/// Esc puts back a window that is being moved by its caption or by the keys.
void CancelMove() {
    const GUITHREADINFO state = ThreadState();
    if ((state.flags & GUI_INMOVESIZE) != 0) PostMessageW(state.hwndMoveSize, WM_KEYDOWN, VK_ESCAPE, 0);
}

/// The frontmost of the system's windows for which a predicate holds; null without one.
template <class Predicate>
HWND FrontmostSystemWindow(Predicate wanted) noexcept {
    const Search search = SystemWindows();
    const auto* const end = search.found + search.count;
    const auto* const found = std::find_if(search.found, end, wanted);
    return found != end ? *found : nullptr;
}

/// What the shell asks on another thread of this program; null while it does not work for this program.
HWND QuestionOfAnotherThread() noexcept {
    return StepBack::Any() ? FrontmostSystemWindow(std::not_fn(&IsOfThisThread)) : nullptr;
}

}  // namespace

HWND CancellingButton(HWND window) noexcept {
    for (const int id : {IDCANCEL, IDNO, IDABORT}) {
        const HWND button = PressableButton(window, id);
        if (button != nullptr) return button;
    }
    return nullptr;
}

HWND OpenSystemWindow() noexcept { return FrontmostSystemWindow(&IsOfThisThread); }

HWND WaitingWindow() noexcept {
    for (HWND window : {OpenSystemWindow(), QuestionOfAnotherThread()})
        if (window != nullptr) return window;
    return ModalOwner();
}

HWND ShellQuestion() noexcept {
    const HWND asked = QuestionOfAnotherThread();
    if (asked != nullptr) return asked;
    const HWND front = GetForegroundWindow();
    return AsksForShell(front) ? front : nullptr;
}

bool SystemAsks() noexcept {
    return StepBack::Any() || OpenSystemWindow() != nullptr || ShellQuestion() != nullptr;
}

bool AnyMenuOpen() noexcept {
    constexpr DWORD kMenus = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
    return (ThreadState().flags & kMenus) != 0;
}

bool InModalLoop() noexcept {
    // The menu of an edit field opens outside any handler of ours.
    if (HandlerDepth() > 1 || AnyDialogOpen() || AnyMenuOpen()) return true;
    return (ThreadState().flags & GUI_INMOVESIZE) != 0;
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
    // A dialog whose own question is still open is closed once that has been answered.
    if (!ours) CancelOpenDialogs();
}

void SetEnding(bool ending) noexcept { g_ending = ending; }

bool IsEnding() noexcept { return g_ending; }

}  // namespace win
