#include "win/dialog.h"

#include <algorithm>
#include <vector>

#include "win/colors.h"
#include "win/dialog_template.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/message_ban.h"
#include "win/modal_windows.h"
#include "win/seen_screen.h"
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

void CentreIn(const RECT& area, HWND dialog) noexcept {
    RECT place{};
    GetWindowRect(dialog, &place);
    SetWindowPos(dialog, nullptr, area.left + (Width(area) - Width(place)) / 2,
                 area.top + (Height(area) - Height(place)) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Puts a dialog that came up on another screen into the middle of this one.
void MoveToScreen(HMONITOR screen, HWND dialog) noexcept {
    if (screen == nullptr || MonitorFromWindow(dialog, MONITOR_DEFAULTTONEAREST) == screen) return;
    const RECT area = WorkAreaOf(screen);
    CentreIn(area, dialog);
    // On a screen of another scale Windows has given it another size, from its corner.
    CentreIn(area, dialog);
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

/// The room that the client area of a dialog has on a screen.
SIZE RoomOn(const RECT& area, int dpi) noexcept {
    RECT frame{};
    AddFrame(frame, WS_POPUP | WS_CAPTION | DS_MODALFRAME, WS_EX_DLGMODALFRAME, dpi);
    return {Width(area) - Width(frame), Height(area) - Height(frame)};
}

}  // namespace

INT_PTR Dialog::ShowModal(HWND owner, int templateId) {
    if (IsEnding()) return kNotMade;
    AssertMayPump("a dialog");
    screen_ = ScreenOfSeenPart(owner);
    const int ownersDpi = Scale::Of(owner).Dpi();
    const int dpi = screen_ == nullptr ? ownersDpi : DpiOf(screen_, ownersDpi);
    const RECT area = screen_ == nullptr ? WorkAreaOf(owner) : WorkAreaOf(screen_);
    const SizedTemplate copy = TemplateInMessageFont(templateId, RoomOn(area, dpi), dpi);
    points_ = copy.points;
    wholePoints_ = copy.wholePoints;
    const auto self = reinterpret_cast<LPARAM>(this);
    // Better in the template's own font than not at all.
    const INT_PTR answer =
        copy.words.empty()
            ? DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(templateId), owner, &Dialog::Procedure, self)
            : DialogBoxIndirectParamW(ModuleInstance(),
                                      reinterpret_cast<const DLGTEMPLATE*>(copy.words.data()), owner,
                                      &Dialog::Procedure, self);
    handle_ = nullptr;
    return answer;
}

void Dialog::End(INT_PTR answer) noexcept { EndDialog(handle_, answer); }

INT_PTR Dialog::Begin(HWND window) {
    // As long as the dialog has no object, it takes over the scale of the screen that it is moved to.
    MoveToScreen(screen_, window);
    handle_ = window;
    scale_ = Scale::Of(window);
    // The template's text is fitted to this dialog alone.
    if (wholePoints_ > 0) scale_ = Scale(scale_.Dpi(), MulDiv(TextPercent(), points_, wholePoints_));
    KeepScale(window);
    contrastTheme_ = ContrastTheme();
    client_ = {};
    SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
    bool ready = false;
    const INT_PTR focus = Guarded(window, INT_PTR{TRUE}, [&] {
        OpenDialogs().push_back(window);
        const INT_PTR answer{OnInit()};
        KeepOnScreen(window);
        RECT client{};
        GetClientRect(window, &client);
        client_ = {client.right, client.bottom};
        ready = true;
        return answer;
    });
    // A dialog that is only half filled could store the missing half as empty.
    if (!ready) EndDialog(window, kNotMade);
    return focus;
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the value that ShowModal has given.
    if (message == WM_INITDIALOG) return reinterpret_cast<Dialog*>(lParam)->Begin(window);
    auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) return FALSE;
    return Guarded(window, INT_PTR{TRUE}, [&] { return self->Dispatch(message, wParam, lParam); });
}

INT_PTR Dialog::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NCDESTROY:
            std::erase(OpenDialogs(), handle_);
            SetWindowLongPtrW(handle_, DWLP_USER, 0);
            return FALSE;
        case WM_SYSCOLORCHANGE: FollowLook(true); break;
        case WM_SETTINGCHANGE: FollowLook(false); break;
        case WM_GETDPISCALEDSIZE:
            // Windows places the dialog by this size: one by another could fall back to the former screen.
            if (client_.cx == 0) break;
            *reinterpret_cast<SIZE*>(lParam) = OuterSize(static_cast<int>(wParam));
            SetWindowLongPtrW(handle_, DWLP_MSGRESULT, TRUE);
            return TRUE;
        case WM_DPICHANGED: {
            const auto& place = *reinterpret_cast<const RECT*>(lParam);
            MoveToScale(LOWORD(wParam), {place.left, place.top});
            return TRUE;
        }
        case WM_HELP: ShowHelp(); return TRUE;
        case WM_COMMAND: return OnCommand(LOWORD(wParam), HIWORD(wParam));
        default: break;
    }
    return OnMessage(message, wParam, lParam);
}

/// Of the changed settings only a contrast theme that has come or gone concerns the look.
void Dialog::FollowLook(bool colors) {
    ForgetColors();
    if (!colors && contrastTheme_ == ContrastTheme()) return;
    contrastTheme_ = ContrastTheme();
    // Windows tells top-level windows alone, and some controls have to be told.
    if (colors)
        for (HWND child = GetWindow(handle_, GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT))
            SendMessageW(child, WM_SYSCOLORCHANGE, 0, 0);
    OnColors();
    RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE Dialog::OuterSize(int dpi) const noexcept {
    RECT place{0, 0, client_.cx, client_.cy};
    AddFrame(place, static_cast<DWORD>(GetWindowLongPtrW(handle_, GWL_STYLE)),
             static_cast<DWORD>(GetWindowLongPtrW(handle_, GWL_EXSTYLE)), dpi);
    return {Width(place), Height(place)};
}

/// The frame gets the size of the new scale; without a larger window it would take its room from the client
/// area.
void Dialog::MoveToScale(int dpi, POINT corner) {
    if (client_.cx == 0) return;
    const SIZE size = OuterSize(dpi);
    SetWindowPos(handle_, nullptr, corner.x, corner.y, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    OnOtherScreen();
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
