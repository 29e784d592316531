#include "win/dialog.h"

#include <algorithm>
#include <vector>

#include "win/dialog_template.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/message_ban.h"
#include "win/modal_windows.h"
#include "win/window.h"

namespace win {
namespace {

HWND g_mainWindow = nullptr;
void (*g_helpHandler)() = nullptr;

/// The open dialogs, outermost first; each entry is only a name for a window that its dialog owns.
std::vector<HWND>& OpenDialogs() {
    static std::vector<HWND> dialogs;
    return dialogs;
}

/// The answer of ShowModal when there is no dialog, as DialogBoxParamW gives it.
constexpr INT_PTR kNotMade = -1;

/// A dialog that is moved to a screen with another scale keeps its own scale: what it has laid out and drawn
/// itself would not follow when Windows scales the rest.
void KeepScale(HWND dialog) noexcept {
    using Function = BOOL(WINAPI*)(HWND, int, int);
    constexpr int kDisableAll = 1;  // DDC_DISABLE_ALL
    // Not every system that runs Windows programs has the function.
    const auto set = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32"), "SetDialogDpiChangeBehavior")));
    if (set != nullptr) set(dialog, kDisableAll, kDisableAll);
}

/// Moves a dialog to where all of it is on its screen, if it has room there.
void KeepOnScreen(HWND dialog) noexcept {
    RECT place{};
    GetWindowRect(dialog, &place);
    const RECT area = WorkAreaOf(dialog);
    const LONG left = std::max(area.left, std::min(place.left, area.right - Width(place)));
    const LONG top = std::max(area.top, std::min(place.top, area.bottom - Height(place)));
    if (left == place.left && top == place.top) return;
    SetWindowPos(dialog, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The room that the client area of a dialog has on its owner's screen.
SIZE RoomBeside(HWND owner) noexcept {
    const RECT area = WorkAreaOf(owner);
    RECT frame{};
    AddFrame(frame, WS_POPUP | WS_CAPTION | DS_MODALFRAME, WS_EX_DLGMODALFRAME, Scale::Of(owner).Dpi());
    return {Width(area) - Width(frame), Height(area) - Height(frame)};
}

}  // namespace

INT_PTR Dialog::ShowModal(HWND owner, int templateId) {
    if (IsEnding()) return kNotMade;
    AssertMayPump("a dialog");
    const std::vector<WORD> copy =
        TemplateInMessageFont(templateId, RoomBeside(owner), Scale::Of(owner).Dpi());
    const auto self = reinterpret_cast<LPARAM>(this);
    // Better in the template's own font than not at all.
    const INT_PTR answer =
        copy.empty()
            ? DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(templateId), owner, &Dialog::Procedure, self)
            : DialogBoxIndirectParamW(ModuleInstance(), reinterpret_cast<const DLGTEMPLATE*>(copy.data()),
                                      owner, &Dialog::Procedure, self);
    handle_ = nullptr;
    return answer;
}

void Dialog::End(INT_PTR answer) noexcept { EndDialog(handle_, answer); }

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        auto* self = reinterpret_cast<Dialog*>(lParam);
        self->handle_ = window;
        self->scale_ = Scale::Of(window);
        KeepScale(window);
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        bool ready = false;
        const INT_PTR focus = Guarded(window, INT_PTR{TRUE}, [&] {
            OpenDialogs().push_back(window);
            const INT_PTR answer{self->OnInit()};
            KeepOnScreen(window);
            ready = true;
            return answer;
        });
        // A dialog that is only half filled could store the missing half as empty.
        if (!ready) EndDialog(window, kNotMade);
        return focus;
    }
    auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) return FALSE;
    return Guarded(window, INT_PTR{TRUE}, [&]() -> INT_PTR {
        if (message == WM_NCDESTROY) {
            std::erase(OpenDialogs(), window);
            SetWindowLongPtrW(window, DWLP_USER, 0);
            return FALSE;
        }
        // Repaints what the controls draw in the system's colours, and what the dialog draws in the controls.
        if (message == WM_SYSCOLORCHANGE)
            RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        if (message == WM_HELP) {
            ShowHelp();
            return TRUE;
        }
        if (message == WM_COMMAND) return self->OnCommand(LOWORD(wParam), HIWORD(wParam));
        return self->OnMessage(message, wParam, lParam);
    });
}

HWND ModalOwner() noexcept { return OpenDialogs().empty() ? g_mainWindow : OpenDialogs().back(); }

bool AnyDialogOpen() noexcept { return !OpenDialogs().empty(); }

bool IsOpenDialog(HWND window) noexcept {
    return std::find(OpenDialogs().begin(), OpenDialogs().end(), window) != OpenDialogs().end();
}

void SetMainWindow(HWND window) noexcept {
    g_mainWindow = window;
    SetEnding(false);
}

void CancelOpenDialogs() {
    const std::vector<HWND> dialogs(OpenDialogs().rbegin(), OpenDialogs().rend());
    for (const HWND dialog : dialogs)
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

void SetHelpHandler(void (*handler)()) noexcept { g_helpHandler = handler; }

void ShowHelp() {
    if (g_helpHandler != nullptr) g_helpHandler();
}

}  // namespace win
