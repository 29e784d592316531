#include "win/dialog.h"

#include <algorithm>
#include <vector>

#include "win/errors.h"
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

/// What ShowModal answers without a dialog, as DialogBoxParamW does.
constexpr INT_PTR kNotMade = -1;

}  // namespace

INT_PTR Dialog::ShowModal(HWND owner, int templateId) {
    if (IsEnding()) return kNotMade;
    AssertMayPump("a dialog");
    const INT_PTR answer = DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(templateId), owner,
                                           &Dialog::Procedure, reinterpret_cast<LPARAM>(this));
    handle_ = nullptr;
    return answer;
}

void Dialog::End(INT_PTR answer) noexcept { EndDialog(handle_, answer); }

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        auto* self = reinterpret_cast<Dialog*>(lParam);
        self->handle_ = window;
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        bool ready = false;
        const INT_PTR focus = Guarded(window, INT_PTR{TRUE}, [&] {
            OpenDialogs().push_back(window);
            const INT_PTR answer{self->OnInit()};
            ready = true;
            return answer;
        });
        // Half a dialog could store what it has not been filled with.
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

void SetMainWindow(HWND window) noexcept { g_mainWindow = window; }

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
