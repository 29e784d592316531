#include "app/glavni.h"

#include <string>
#include <utility>
#include <vector>

#include "app/add_to_button.h"
#include "app/panel_layout.h"
#include "dialogs/define_tab.h"
#include "dialogs/options.h"
#include "dialogs/organize_shortcuts.h"
#include "res/resource.h"
#include "win/colors.h"
#include "win/dialog.h"
#include "win/geometry.h"
#include "win/icons.h"
#include "win/key_repeat.h"
#include "win/modal_windows.h"
#include "win/seen_screen.h"
#include "win/shell_call.h"
#include "win/text.h"

namespace app {
namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_CONTROLPARENT;
enum TrayCommand { kShowQuon = 0, kClose = 2 };
constexpr int kMostLayouts = 3;

/// Holds a flag true while it lives.
class RaisedFlag {
  public:
    explicit RaisedFlag(bool& flag) noexcept : flag_(flag), before_(std::exchange(flag, true)) {}
    ~RaisedFlag() { flag_ = before_; }
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;
    RaisedFlag(RaisedFlag&&) = delete;
    RaisedFlag& operator=(RaisedFlag&&) = delete;

  private:
    bool& flag_;
    bool before_;
};

RECT OuterRect(const win::Scale& scale) {
    RECT rect = scale(layout::At(0, 0, layout::kClientWidth, layout::kClientHeight));
    win::AddFrame(rect, kStyle, kExtendedStyle, scale.Dpi());
    return layout::At(0, 0, win::Width(rect), win::Height(rect));
}

/// The screen of this scale that a window comes to: the one that most of it lies on, or, as long as it has
/// not been moved there, the pointer's, which drags it.
HMONITOR ScreenToCome(HWND window, int dpi) {
    HMONITOR screen = MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST);
    if (win::DpiOf(screen, dpi) != dpi)
        screen = MonitorFromPoint(win::PointerPlace(), MONITOR_DEFAULTTONEAREST);
    return screen;
}

bool IsKey(const MSG& message) { return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST; }

/// Whether a key has a meaning even while nobody sees the panel: F1 and Alt+F4.
bool WorksDocked(const MSG& message) {
    if (message.message == WM_KEYDOWN || message.message == WM_KEYUP) return message.wParam == VK_F1;
    const bool system = message.message == WM_SYSKEYDOWN || message.message == WM_SYSKEYUP;
    return system && message.wParam == VK_F4 && win::HeldModifiers() == win::kAlt;
}

/// The window that the user is to answer first, were it in another program; the main window without one.
HWND WhatWaits() {
    const HWND asked = win::LaunchQuestion();
    return asked != nullptr ? asked : win::WaitingWindow();
}

}  // namespace

Glavni::Glavni() : mnuTray(IDM_TRAY, {{"Show Quon", {}}, {"-", {}}, {"Close", {}}}) {}

void Glavni::CreateParts() {
    icon_ = LoadIconW(win::ModuleInstance(), MAKEINTRESOURCEW(IDI_QUON));
    win::WindowOptions options;
    options.className = L"QuonMain";
    options.text = "Quon";
    options.style = kStyle;
    options.extendedStyle = kExtendedStyle;
    win::FitTextTo(layout::kClientHeight);
    options.place = OuterRect(win::Scale::Of(nullptr));
    options.icon = icon_;
    Create(options);
    FitToScale();
    FitSmallIcon();
    win::SetMainWindow(Handle());
    menus_.CreateOn(Handle());
    shortcuts_.CreateOn(Handle());
    tabs_.CreateOn(Handle());
    buttons_.CreateOn(Handle());
    rename_.CreateOn(Handle());
    JoinParts();
}

void Glavni::FitSmallIcon() {
    // The notification area is on the primary screen. Left to itself it would shrink or stretch another size.
    const int size = GetSystemMetricsForDpi(SM_CXSMICON, static_cast<UINT>(win::PrimaryDpi()));
    if (size == smallIconSize_) return;
    win::Icon icon = win::ResourceIcon(IDI_QUON, size);
    if (!icon) return;
    // The one before goes only when nobody shows it any more.
    std::swap(icon, smallIcon_);
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.Get()));
    smallIconSize_ = size;
    // What a busy taskbar did not take is tried again when the next change is told.
    if (!tray_.ChangeIcon(smallIcon_.Get())) smallIconSize_ = 0;
}

bool Glavni::FitToScale() {
    scale_ = win::Scale::Of(Handle());
    contrastTheme_ = win::ContrastTheme();
    const RECT size = OuterRect(scale_);
    RECT place{};
    GetWindowRect(Handle(), &place);
    if (win::Width(place) == size.right && win::Height(place) == size.bottom) return false;
    SetWindowPos(Handle(), nullptr, 0, 0, size.right, size.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return true;
}

bool Glavni::FitToScreen() { return !rescaling_ && scale_ != win::Scale::Of(Handle()) && RescaleParts(); }

/// The size that FitToScale will give the window on the screen of this scale that it comes to.
SIZE Glavni::SizeToCome(int dpi) const {
    const RECT outer = OuterRect(win::Scale::On(ScreenToCome(Handle(), dpi), dpi));
    return {outer.right, outer.bottom};
}

void Glavni::OnDpiChanged(const RECT& place) {
    FitSmallIcon();
    // What is moved or made larger by us may come to lie on another screen for a moment only. Whatever the
    // window is for in the end, it is made to fit there.
    if (dock_.Moving() || rescaling_) return;
    {
        // Corner and size at once: with only one of them the window could lie on the former screen again.
        const RaisedFlag rescaling(rescaling_);
        SetWindowPos(Handle(), nullptr, place.left, place.top, win::Width(place), win::Height(place),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    RescaleParts();
}

void Glavni::OnLookChanged(bool colors) {
    FitSmallIcon();
    const HFONT font = win::MessageFont(scale_);
    win::ForgetTextSize();
    win::ForgetColors();
    win::ForgetFonts();
    // Most changed settings have nothing to do with the panel's look.
    if (colors || contrastTheme_ != win::ContrastTheme() || scale_ != win::Scale::Of(Handle()) ||
        font != win::MessageFont(scale_)) {
        if (RescaleParts()) dock_.ShowWhole();
    }
}

/// Everything that depends on the scale, the text's size or the colours is made anew. True when the window
/// has another size by now.
bool Glavni::RescaleParts() {
    bool resized = LayOutParts();
    // Another scale that came meanwhile has only been noticed. Not for ever: where two screens meet, each
    // size may lie on the screen of the other.
    for (int layouts = 1; layouts < kMostLayouts && scale_ != win::Scale::Of(Handle()); ++layouts)
        resized = LayOutParts() || resized;
    return resized;
}

bool Glavni::LayOutParts() {
    const RaisedFlag rescaling(rescaling_);
    const bool resized = FitToScale();
    shortcuts_.Rescale();
    menus_.Rescale();
    tabs_.Rescale();
    buttons_.Rescale();
    rename_.Rescale();
    for (int number = 1; number <= model::kTabCount; ++number)
        state_.Tab(number).DrawTabText();
    for (int index = 1; index <= model::kButtonCount; ++index)
        state_.Button(index).DrawFace();
    dock_.FollowScreen();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
    return resized;
}

void Glavni::JoinParts() {
    dock_.Attach(Handle(), [this](MSG& message) { return PreTranslate(message); });
    dock_.OnFit([this] { return FitToScreen(); });
    dock_.EnableTimer(true);
    hotKey_.Attach(Handle());
    buttonMenu_.Attach(Handle());
    mouse_.Attach();
    drag_.onDrop = [this](const model::ButtonPlace& target, const DragSource& source) {
        MoveToButton(state_, target, source);
    };
    tabs_.onDefineTab = [this](int tab) { dialogs::frmTabPrep(*this, tab).Open(); };
    menus_.onGo = [this] { shortcuts_.Go(); };
    menus_.onOrganize = [this] { Organize(); };
    menus_.onOptions = [this] { dialogs::frmSettings(*this).Open(); };
    state_.RefillList = [this] { shortcuts_.Refill(); };
    state_.Context.onChanged = [this](const std::vector<std::string>& names) { state_.ShowChanged(names); };
}

void Glavni::Organize() {
    dialogs::frmCuts(state_.Context).Show(Handle());
    // What was edited or deleted may be on a button.
    buttons_.RefreshShownTab();
    shortcuts_.Refill();
}

bool Glavni::PreTranslate(MSG& message) {
    if (message.hwnd != Handle() && IsChild(Handle(), message.hwnd) == 0) return false;
    if (dock_.OutOfSight() && IsKey(message) && !WorksDocked(message)) return true;
    const bool pressed = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (win::IsSpentRepeat(message, win::KeyPlace::kPanel)) return true;
    if (pressed && KeyDown(message.wParam, win::HeldModifiers())) return true;
    if (shortcuts_.PreTranslate(message)) return true;
    // It would also dispatch every other message, one handler deeper than the message loop does.
    return IsKey(message) && IsDialogMessageW(Handle(), &message) != 0;
}

std::optional<LRESULT> Glavni::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: OnPaint(); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_NCHITTEST:
            // The docked strip is frame or caption, but its moves and presses are the window's own all the
            // same.
            return dock_.Hidden() ? std::optional<LRESULT>(HTCLIENT) : std::nullopt;
        case WM_MOUSEMOVE: OnMouseMove(wParam, lParam); return 0;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN: dock_.OnPress(); return 0;
        case WM_ACTIVATE: OnActivate(LOWORD(wParam) != WA_INACTIVE); return 0;
        case WM_HOTKEY:
            if (hotKey_.IsMine(wParam)) OnHotKey();
            return 0;
        case WM_TIMER: OnTimer(wParam); return 0;
        case WM_DISPLAYCHANGE: OnScreenChange(); return std::nullopt;
        case WM_SETTINGCHANGE:
            // The taskbar has moved or changed its size.
            if (wParam == SPI_SETWORKAREA) dock_.FollowScreen();
            OnLookChanged(false);
            return std::nullopt;
        case WM_HELP: win::ShowHelp(); return 0;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDC_RENAME && HIWORD(wParam) == EN_KILLFOCUS) rename_.Abandon();
            if (LOWORD(wParam) == IDC_SHORTCUTS) shortcuts_.OnNotification(HIWORD(wParam));
            return 0;
        case WM_SYSCOMMAND: return OnSystemCommand(wParam & 0xFFF0, lParam);
        case WM_CLOSE: CloseRequest(UnloadMode::kTaskManager); return 0;
        case WM_QUERYENDSESSION: return TRUE;
        case WM_ENDSESSION:
            if (wParam != 0) EndSession();
            return 0;
        case WM_QUON_HAND_ON: dock_.HandOn(); return 0;
        case WM_GETDPISCALEDSIZE:
            // Windows would scale the frame otherwise than it draws it, and on the border between two screens
            // a window of another size than foretold could go back and forth.
            *reinterpret_cast<SIZE*>(lParam) = SizeToCome(static_cast<int>(wParam));
            return TRUE;
        case WM_DPICHANGED: OnDpiChanged(*reinterpret_cast<const RECT*>(lParam)); return 0;
        case WM_EXITSIZEMOVE:
            // Of a screen that has the same scale but less height for large text Windows tells nothing.
            if (FitToScreen()) dock_.ShowWhole();
            return 0;
        case WM_SYSCOLORCHANGE: OnLookChanged(true); return std::nullopt;
        case WM_QUON_CHOSEN: shortcuts_.OnChosen(); return 0;
        case WM_QUON_DROP:
            drops_.Act();
            shortcuts_.ActOnDrops();
            return 0;
        case WM_DESTROY:
            drops_.Detach();
            shortcuts_.Detach();
            hotKey_.Set(0);
            PostQuitMessage(0);
            return 0;
        default: return std::nullopt;
    }
}

std::optional<LRESULT> Glavni::OnSystemCommand(WPARAM command, LPARAM lParam) {
    if (command == SC_CLOSE) {
        CloseRequest(UnloadMode::kUser);
        return 0;
    }
    // ALT that is let go after an ALT+click would lead to a menu bar, which is not there.
    if (command == SC_KEYMENU && lParam == 0) return 0;
    return std::nullopt;
}

void Glavni::OnActivate(bool active) {
    // The focus goes back to the child that had it, not to the window itself.
    if (!active) {
        // The rename box closes when it loses the focus; its button gets the focus back.
        lastFocus_ = rename_.IsOpen() ? rename_.Button() : GetFocus();
        dock_.OnDeactivated();
        return;
    }
    const bool usable = IsChild(Handle(), lastFocus_) != 0 && IsWindowVisible(lastFocus_) != 0;
    SetFocus(usable ? lastFocus_ : buttons_.Picture(1).Handle());
}

void Glavni::OnPaint() {
    const win::Paint paint(Handle());
    const RECT all = ClientRect();
    FillRect(paint.Dc(), &all, GetSysColorBrush(COLOR_BTNFACE));
    const win::Selection font(paint.Dc(), win::MessageFont(scale_));
    SetBkMode(paint.Dc(), TRANSPARENT);
    SetTextColor(paint.Dc(), win::ColorOf(win::Color::kLabel));
    RECT name = scale_(layout::At(0, layout::kImageButtonTop, layout::kClientWidth - layout::kMargin - 3,
                                  layout::kImageButtonSize));
    win::DrawPlainText(paint.Dc(), "Quon", name, DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
}

void Glavni::OnMouseMove(WPARAM wParam, LPARAM lParam) {
    const bool real = TrayIcon::IsRealMove(Handle(), lParam);
    switch (real ? 0 : TrayIcon::CallbackEvent(wParam, lParam)) {
        case WM_LBUTTONUP:
            dock_.ShowQuon(true, true);
            BringForward();
            return;
        case WM_RBUTTONUP: OnTrayRightClick(); return;
        default: dock_.OnHover(); return;
    }
}

void Glavni::BringForward() {
    // Not this window while a dialog or a question is open: it takes no input then, and would cover the
    // dialog.
    SetForegroundWindow(WhatWaits());
}

void Glavni::OnHotKey() {
    EndMenu();
    // A dialog, a picker or a question comes to the front instead.
    if (IsWindowEnabled(Handle()) == 0 || WhatWaits() != Handle()) {
        BringForward();
        return;
    }
    if (!dock_.Hidden() && GetForegroundWindow() == Handle()) {
        // A carried button is put back, because the panel goes away below the pointer.
        ReleaseCapture();
        dock_.ShowQuon(false, false);
        return;
    }
    dock_.ShowQuon(true, false);
    lastFocus_ = shortcuts_.List().Edit();
    SetForegroundWindow(Handle());
    shortcuts_.TakeFocus();
}

void Glavni::OnTrayRightClick() {
    // A request by keyboard arrives as the same message, wherever the pointer is.
    const bool byMouse = PointerOverNotificationArea();
    if (!byMouse && !NotificationAreaHasKeyboard()) return;
    const POINT place = byMouse ? win::PointerPlace() : tray_.Place();
    dock_.ShowQuon(true, true);
    // Without the foreground the menu would stay open when the user clicks elsewhere. A window of another
    // program cannot give it that.
    SetForegroundWindow(win::WaitingWindow());
    const int command = win::TrackMenu(*mnuTrayParent.submenu, place, win::ModalOwner());
    if (mnuTray.IndexOf(command) == kShowQuon) dock_.ShowQuon(true, false);
    if (mnuTray.IndexOf(command) == kClose) {
        closeButtonCloses_ = true;
        CloseRequest(UnloadMode::kCode);
    } else if (win::LaunchQuestion() != nullptr) {
        BringForward();
    }
}

}  // namespace app
