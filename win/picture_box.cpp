#include "win/picture_box.h"

#include <windowsx.h>

#include <utility>

#include "win/accessible.h"
#include "win/colors.h"
#include "win/key_repeat.h"
#include "win/text.h"

namespace win {
namespace {

constexpr int kMarkInset = 3;  // pixels
constexpr int kMarkWidth = 2;

bool g_focusMarks = false;

bool IsHeld(int key) noexcept { return GetKeyState(key) < 0; }

PictureBox::Mouse MouseOf(MouseButton button, LPARAM lParam) noexcept {
    return {button, HeldModifiers(), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}};
}

}  // namespace

ShiftState HeldModifiers() noexcept {
    return (IsHeld(VK_SHIFT) ? kShift : 0) + (IsHeld(VK_CONTROL) ? kControl : 0) +
           (IsHeld(VK_MENU) ? kAlt : 0);
}

void ShowFocusMarks() noexcept {
    if (g_focusMarks) return;
    g_focusMarks = true;
    InvalidateRect(GetFocus(), nullptr, FALSE);
}

PictureBox::~PictureBox() { ForgetScreenReader(); }

void PictureBox::CreateOn(HWND parent, int id, RECT place, bool tabStop) {
    CreateBareOn(parent, id, place, tabStop);
    MakePicture();
    Clear();
}

void PictureBox::CreateBareOn(HWND parent, int id, RECT place, bool tabStop) {
    size_ = {place.right - place.left, place.bottom - place.top};
    scale_ = Scale::Of(parent);
    takesFocus_ = tabStop;
    WindowOptions options;
    options.className = L"QuonPicture";
    options.style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | (tabStop ? WS_TABSTOP : 0U);
    options.place = place;
    options.parent = parent;
    options.id = id;
    options.classStyle = CS_DBLCLKS;
    Create(options);
}

void PictureBox::SetTabStop(bool stop) noexcept {
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(Handle(), GWL_STYLE));
    const DWORD wanted = stop ? style | WS_TABSTOP : style & ~DWORD{WS_TABSTOP};
    if (wanted != style) SetWindowLongPtrW(Handle(), GWL_STYLE, static_cast<LONG_PTR>(wanted));
}

void PictureBox::Rescale(RECT place) {
    size_ = {place.right - place.left, place.bottom - place.top};
    scale_ = Scale::Of(GetParent(Handle()));
    SetWindowPos(Handle(), nullptr, place.left, place.top, size_.cx, size_.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    if (dc_) {
        MakePicture();
        Clear();
    }
    Refresh();
}

void PictureBox::MakePicture() {
    const WindowDc screen(nullptr);
    dc_.Reset(CreateCompatibleDC(screen.Get()));
    bitmap_.Reset(CreateCompatibleBitmap(screen.Get(), size_.cx, size_.cy));
    SelectObject(dc_.Get(), bitmap_.Get());
    SelectObject(dc_.Get(), MessageFont(scale_));
    SetBkMode(dc_.Get(), TRANSPARENT);
    SetTextColor(dc_.Get(), GetSysColor(COLOR_BTNTEXT));
}

COLORREF PictureBox::BackColor() const noexcept {
    return backColor_ ? *backColor_ : GetSysColor(COLOR_BTNFACE);
}

void PictureBox::Clear() {
    const RECT all{0, 0, size_.cx, size_.cy};
    const Brush brush(CreateSolidBrush(BackColor()));
    FillRect(dc_.Get(), &all, brush.Get());
}

void PictureBox::Refresh() noexcept {
    // Given no window, Windows would repaint all windows.
    if (Handle() != nullptr) InvalidateRect(Handle(), nullptr, FALSE);
}

void PictureBox::SetFrame(int frame) {
    frame_ = frame;
    Refresh();
    if (!told_) return;
    TellScreenReader();
    if (frame == 1) NotifyWinEvent(EVENT_OBJECT_SELECTION, Handle(), OBJID_CLIENT, CHILDID_SELF);
}

void PictureBox::SetMeaning(const std::string& text) {
    if (WindowText(Handle()) == text) return;
    SetText(Handle(), text);
    if (told_) TellScreenReader();
}

void PictureBox::SetAccessible(long role, std::string nameWithoutMeaning) {
    role_ = role;
    nameWithoutMeaning_ = std::move(nameWithoutMeaning);
}

void PictureBox::TellScreenReader() {
    told_ = true;
    TellRole(Handle(), role_);
    if (role_ == ROLE_SYSTEM_PAGETAB) {
        const long focus = GetFocus() == Handle() ? STATE_SYSTEM_FOCUSED : 0;
        const long selection = frame_ == 1 ? STATE_SYSTEM_SELECTED : 0;
        TellState(Handle(), STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE | focus | selection);
    }
    const std::string meaning = WindowText(Handle());
    TellName(Handle(), meaning.empty() ? nameWithoutMeaning_ : meaning);
}

std::optional<LRESULT> PictureBox::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: OnPaint(); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_GETOBJECT:
            // Told only when somebody wants to know: it takes COM, which would slow down every start.
            if (static_cast<LONG>(lParam) == OBJID_CLIENT && !told_) TellScreenReader();
            return std::nullopt;
        case WM_DESTROY: ForgetScreenReader(); return std::nullopt;
        case WM_MOUSEMOVE: OnMouseMoved(MouseOf(MouseButton::kLeft, lParam)); return 0;
        case WM_MOUSELEAVE:
            hovered_ = false;
            Refresh();
            if (onMouseLeave) onMouseLeave();
            return 0;
        case WM_LBUTTONDOWN: OnLeftDown(MouseOf(MouseButton::kLeft, lParam)); return 0;
        case WM_LBUTTONUP: OnLeftUp(MouseOf(MouseButton::kLeft, lParam)); return 0;
        case WM_LBUTTONDBLCLK:
            if (onDoubleClick) onDoubleClick();
            return 0;
        case WM_RBUTTONDOWN:
            if (onMouseDown) onMouseDown(MouseOf(MouseButton::kRight, lParam));
            return 0;
        case WM_RBUTTONUP:
            if (onMouseUp) onMouseUp(MouseOf(MouseButton::kRight, lParam));
            return 0;
        case WM_CONTEXTMENU:
            // (-1, -1) stands for the key; a press of the mouse has been handled already.
            if (lParam == -1 && onContextKey) onContextKey();
            return 0;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
        case WM_SYSCHAR: return OnKey(message, wParam, lParam);
        case WM_GETDLGCODE:
            // Enter is ours; Tab stays the dialog manager's.
            return DLGC_WANTARROWS | (wParam == VK_RETURN ? DLGC_WANTMESSAGE : 0);
        case WM_SETFOCUS:
            Refresh();
            if (told_) TellScreenReader();
            if (onFocus) onFocus();
            return 0;
        case WM_KILLFOCUS:
            Refresh();
            if (told_) TellScreenReader();
            if (onFocusLost) onFocusLost();
            return 0;
        case WM_UPDATEUISTATE:
            // In a dialog the Tab key never comes here, but this comes with it.
            if (LOWORD(wParam) == UIS_CLEAR && (HIWORD(wParam) & UISF_HIDEFOCUS) != 0) ShowFocusMarks();
            return std::nullopt;
        case WM_CAPTURECHANGED: OnCaptureChanged(); return 0;
        default: return std::nullopt;
    }
}

void PictureBox::ForgetScreenReader() noexcept {
    if (std::exchange(told_, false)) ForgetTold(Handle());
}

std::optional<LRESULT> PictureBox::OnKey(UINT message, WPARAM key, LPARAM lParam) const {
    // With ALT only Enter is ours, which no menu wants; its character would only beep.
    if (message != WM_KEYDOWN && key != VK_RETURN) return std::nullopt;
    if (message == WM_SYSCHAR) return 0;
    if (IsKeyRepeat(lParam) && ActsOnce(key, KeyPlace::kButton)) return 0;
    return onKeyDown && onKeyDown(key) ? std::optional<LRESULT>(0) : std::nullopt;
}

void PictureBox::OnPaint() {
    const Paint paint(Handle());
    const RECT all{0, 0, size_.cx, size_.cy};
    if (dc_) {
        BitBlt(paint.Dc(), 0, 0, size_.cx, size_.cy, dc_.Get(), 0, 0, SRCCOPY);
    } else {
        const Brush brush(CreateSolidBrush(BackColor()));
        FillRect(paint.Dc(), &all, brush.Get());
    }
    if (onOverlay) onOverlay(paint.Dc(), all);
    if (g_focusMarks && GetFocus() == Handle()) {
        RECT mark = all;
        InflateRect(&mark, -scale_(kMarkInset), -scale_(kMarkInset));
        DrawSystemFrame(paint.Dc(), mark, scale_(kMarkWidth), COLOR_HIGHLIGHT);
    }
}

void PictureBox::OnMouseMoved(const Mouse& mouse) {
    if (!hovered_) {
        hovered_ = true;
        TRACKMOUSEEVENT tracking{sizeof tracking, TME_LEAVE, Handle(), 0};
        TrackMouseEvent(&tracking);
        Refresh();
    }
    if (onMouseMove) onMouseMove(mouse);
}

void PictureBox::OnLeftDown(const Mouse& mouse) {
    if (takesFocus_) SetFocus(Handle());
    SetCapture(Handle());
    pressed_ = true;
    Refresh();
    if (onMouseDown) onMouseDown(mouse);
}

void PictureBox::OnLeftUp(const Mouse& mouse) {
    const bool click = pressed_ && Contains(mouse.at);
    pressed_ = false;
    if (GetCapture() == Handle()) ReleaseCapture();
    Refresh();
    if (onMouseUp) onMouseUp(mouse);
    if (click && onClick) onClick();
}

void PictureBox::OnCaptureChanged() {
    // When we release the mouse ourselves, the mark has been cleared before.
    if (!pressed_) return;
    pressed_ = false;
    Refresh();
    if (onCaptureLost) onCaptureLost();
}

bool PictureBox::Contains(POINT point) const {
    const RECT all{0, 0, size_.cx, size_.cy};
    return PtInRect(&all, point) != 0;
}

}  // namespace win
