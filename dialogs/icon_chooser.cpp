#include "dialogs/icon_chooser.h"

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "res/resource.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/icons.h"
#include "win/scale.h"
#include "win/window.h"

namespace dialogs {
namespace {

// Layout pixels.
constexpr int kWidth = 238;  // of the window, and how far it slides
constexpr int kMargin = 5;
constexpr int kBoxStep = 45;
constexpr int kBoxSize = 36;
constexpr int kFirstBoxLeft = 4;
constexpr POINT kIconPlace{2, 2};
constexpr int kStripHeight = 44;
constexpr int kBarHeight = 17;

constexpr int kIconSize = 32;

// Pixels: Windows keeps the coordinates of a window in 16 bits.
constexpr int kLongestStrip = 30000;
constexpr int kStretch = kLongestStrip / 2;

constexpr int kSlideStep = 34;
constexpr DWORD kSlidePause = 12;  // milliseconds

void DrawCross(const win::PictureBox& box, HDC dc, RECT all) {
    const UINT state = box.Pressed() ? DFCS_PUSHED : 0U;
    DrawFrameControl(dc, &all, DFC_CAPTION, DFCS_CAPTIONCLOSE | DFCS_FLAT | state);
}

}  // namespace

void IcoChooser::ReadIcons(const std::string& file) {
    const win::Hourglass hourglass;
    icons_.clear();
    file_ = file;
    for (std::int32_t index = FirstIcon;; ++index) {
        HICON icon = ExtractIconA(win::ModuleInstance(), file.c_str(), static_cast<UINT>(index));
        // 1 means that the file can hold no icons.
        if (reinterpret_cast<UINT_PTR>(icon) <= 1) return;
        icons_.emplace_back(icon);
    }
}

void IcoChooser::Show(HWND owner) {
    owner_ = owner;
    closing_ = false;
    ShowModal(owner, IDD_ICON_CHOOSER);
    RemoveWindowSubclass(owner, &IcoChooser::WatchOwner, 0);
    boxes_.clear();
    icons_.clear();
}

bool IcoChooser::OnInit() {
    win::SetTopmost(true, Handle());
    SetWindowSubclass(owner_, &IcoChooser::WatchOwner, 0, reinterpret_cast<DWORD_PTR>(this));
    LayOut();
    MakeBoxes();
    // Opened by the keyboard: nothing changes with the Tab key then, so nothing is told.
    if ((SendMessageW(Handle(), WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) == 0) win::ShowFocusMarks();
    if (boxes_.empty())
        SetFocus(Image1_.Handle());
    else
        SetFocus(boxes_.front()->Handle());
    return false;
}

void IcoChooser::LayOut() {
    constexpr int kBarTop = kMargin + kStripHeight + 4;
    constexpr int kClientHeight = kBarTop + kBarHeight + kMargin;
    const win::Scale& scale = DialogScale();
    RECT frame{0, 0, 0, scale(kClientHeight)};
    win::AddFrame(frame, Handle());
    PlaceBeside(win::Height(frame));
    RECT client{};
    GetClientRect(Handle(), &client);
    const int margin = scale(kMargin);
    const int right = client.right - margin;
    const int barTop = scale(kBarTop);
    const int barHeight = scale(kBarHeight);
    const HWND view = Item(View);
    MoveWindow(view, margin, margin, right - margin, scale(kStripHeight), FALSE);
    MoveWindow(Item(HScr), margin, barTop, right - margin - barHeight - scale(4), barHeight, FALSE);
    Image1_.CreateBareOn(Handle(), Image1, {right - barHeight, barTop, right, barTop + barHeight}, true);
    Image1_.SetMeaning("Close");
    Image1_.onOverlay = [this](HDC dc, RECT all) { DrawCross(Image1_, dc, all); };
    Image1_.onClick = [this] { HideChooser(); };
    Image1_.onKeyDown = [this](WPARAM key) {
        if (key != VK_RETURN && key != VK_SPACE) return false;
        HideChooser();
        return true;
    };
    RECT inside{};
    GetClientRect(view, &inside);
    visibleWidth_ = inside.right;
    MakeStrip();
    scroll_.Attach(Item(HScr), {scale(kBoxStep), visibleWidth_, visibleWidth_});
}

void IcoChooser::MakeStrip() {
    strip_.SetBackColor(GetSysColor(COLOR_WINDOW));
    strip_.CreateBareOn(Item(View), p1, {0, 0, visibleWidth_, DialogScale()(kStripHeight)}, false);
    strip_.SetMeaning("Icons");
    strip_.SetAccessible(ROLE_SYSTEM_LIST);
    // The boxes are painted for themselves, and the Tab key finds them.
    SetWindowLongPtrW(strip_.Handle(), GWL_STYLE,
                      GetWindowLongPtrW(strip_.Handle(), GWL_STYLE) | WS_CLIPCHILDREN);
    SetWindowLongPtrW(strip_.Handle(), GWL_EXSTYLE, WS_EX_CONTROLPARENT);
}

void IcoChooser::PlaceBeside(int height) {
    RECT beside{};
    const RECT area = win::WorkAreaOf(owner_);
    const int width = DialogScale()(kWidth);
    GetWindowRect(owner_, &beside);
    rightOfOwner_ = beside.left - width < area.left;
    const int left = rightOfOwner_ ? beside.right : beside.left - width;
    const int lowest = std::max(area.top, area.bottom - height);
    SetWindowPos(Handle(), nullptr, left, std::clamp<int>(beside.top, area.top, lowest), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void IcoChooser::MakeBoxes() {
    boxes_.reserve(icons_.size());
    for (int index = 0; index < IconCount(); ++index)
        MakeBox(index);
    const int width = BoxLeft(IconCount());
    strip_.Rescale({0, 0, std::min(width, kLongestStrip), DialogScale()(kStripHeight)});
    scroll_.SetMaximum(width - visibleWidth_);
    stripStart_ = 0;
    PlaceBoxes();
}

int IcoChooser::BoxLeft(int index) const noexcept {
    return DialogScale()(kFirstBoxLeft) + index * DialogScale()(kBoxStep);
}

/// Puts the boxes onto the strip that it has room for; the others are not shown.
void IcoChooser::PlaceBoxes() {
    if (BoxLeft(IconCount()) <= kLongestStrip) return;
    const int step = DialogScale()(kBoxStep);
    const int top = DialogScale()(2);
    for (int index = 0; index < IconCount(); ++index) {
        const HWND box = boxes_[static_cast<size_t>(index)]->Handle();
        const int left = BoxLeft(index) - stripStart_;
        if (left <= -step || left >= kLongestStrip)
            ShowWindow(box, SW_HIDE);
        else
            SetWindowPos(box, nullptr, left, top, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
}

void IcoChooser::MakeBox(int index) {
    boxes_.push_back(std::make_unique<win::PictureBox>());
    win::PictureBox& box = *boxes_.back();
    box.SetBackColor(GetSysColor(COLOR_WINDOW));
    const win::Scale scale = DialogScale();
    const int left = BoxLeft(index);
    const int top = scale(2);
    // Only one of them is a stop of the Tab key; the arrows walk over the others.
    box.CreateBareOn(strip_.Handle(), p2 + FirstIcon + index,
                     {left, top, left + scale(kBoxSize), top + scale(kBoxSize)}, index == 0);
    box.SetMeaning("Icon " + std::to_string(FirstIcon + index));
    HICON icon = IconFor(index);
    box.onOverlay = [&box, icon, scale](HDC dc, RECT all) {
        win::DrawIconOfSize(dc, scale(kIconPlace), icon, scale(kIconSize));
        if (box.Hovered()) DrawEdge(dc, &all, box.Pressed() ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    };
    box.onClick = [this, index] { Pick(index); };
    box.onKeyDown = [this, index](WPARAM key) { return OnKey(index, key); };
}

/// The icons that were read have the size of the system's scale.
HICON IcoChooser::IconFor(int index) {
    win::Icon& icon = icons_[static_cast<size_t>(index)];
    const int size = DialogScale()(kIconSize);
    if (size == GetSystemMetrics(SM_CXICON)) return icon.Get();
    if (win::Icon made = win::FileIcon(file_, FirstIcon + index, size)) icon = std::move(made);
    return icon.Get();
}

bool IcoChooser::OnKey(int index, WPARAM key) {
    switch (key) {
        case VK_RETURN:
        case VK_SPACE: Pick(index); return true;
        case VK_LEFT: FocusOn(index - 1); return true;
        case VK_RIGHT: FocusOn(index + 1); return true;
        case VK_HOME: FocusOn(0); return true;
        case VK_END: FocusOn(IconCount() - 1); return true;
        default: return false;
    }
}

void IcoChooser::FocusOn(int index) {
    if (index < 0 || index >= IconCount()) return;
    const int left = BoxLeft(index);
    const int next = BoxLeft(index + 1);
    if (left < scroll_.Value() || index == 0)
        scroll_.SetValue(left - BoxLeft(0));
    else if (next > scroll_.Value() + visibleWidth_)
        scroll_.SetValue(next - visibleWidth_);
    PlaceStrip();
    win::ShowFocusMarks();
    SetFocus(boxes_[static_cast<size_t>(index)]->Handle());
}

bool IcoChooser::OnCommand(int id, int /*notification*/) {
    if (id != IDCANCEL) return false;
    HideChooser();
    return true;
}

INT_PTR IcoChooser::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CTLCOLORSTATIC:
            // What is seen beside a short strip.
            if (reinterpret_cast<HWND>(lParam) != Item(View)) return FALSE;
            return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
        case WM_HSCROLL: Scroll(LOWORD(wParam)); return TRUE;
        case WM_MOUSEWHEEL: OnWheel(GET_WHEEL_DELTA_WPARAM(wParam)); return TRUE;
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) HideChooser();
            return FALSE;
        default: return FALSE;
    }
}

void IcoChooser::OnColors() {
    strip_.SetBackColor(GetSysColor(COLOR_WINDOW));
    for (const auto& box : boxes_)
        box->SetBackColor(GetSysColor(COLOR_WINDOW));
}

void IcoChooser::Scroll(int code) {
    scroll_.Act(code);
    PlaceStrip();
}

void IcoChooser::OnWheel(int rotation) {
    const int notches = wheel_.Add(rotation, static_cast<std::uint32_t>(GetMessageTime()));
    for (int notch = 0; notch < std::abs(notches); ++notch)
        Scroll(notches < 0 ? SB_LINERIGHT : SB_LINELEFT);
}

void IcoChooser::PlaceStrip() {
    const int value = scroll_.Value();
    // A strip that slides no farther carries other boxes from there on.
    const int start = value + visibleWidth_ <= kLongestStrip ? 0 : value / kStretch * kStretch;
    if (std::exchange(stripStart_, start) != start) PlaceBoxes();
    SetWindowPos(strip_.Handle(), nullptr, start - value, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void IcoChooser::Pick(int index) {
    if (closing_) return;
    closing_ = true;
    SelectedIcon = static_cast<std::int16_t>(FirstIcon + index);
    // Whatever becomes of the pick, the chooser closes.
    win::Guarded(Handle(), false, [&] {
        if (IconSelected) IconSelected(SelectedIcon);
        return true;
    });
    End(1);
}

void IcoChooser::HideChooser() {
    if (closing_) return;
    closing_ = true;
    RECT place{};
    GetWindowRect(Handle(), &place);
    // It goes under the edge of the main window: the part that can still be seen keeps to that side.
    const int step = DialogScale()(kSlideStep);
    for (int position = -DialogScale()(kWidth); position < 0; position += step) {
        const int left = rightOfOwner_ ? static_cast<int>(place.left) : place.right + position;
        SetWindowPos(Handle(), nullptr, left, place.top, -position, win::Height(place),
                     SWP_NOZORDER | SWP_NOACTIVATE);
        UpdateWindow(Handle());
        Sleep(kSlidePause);
    }
    End(0);
}

LRESULT CALLBACK IcoChooser::WatchOwner(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR /*id*/, DWORD_PTR chooser) noexcept {
    // There is no other message for a press on a disabled window.
    const bool pressed = HIWORD(lParam) == WM_LBUTTONDOWN || HIWORD(lParam) == WM_RBUTTONDOWN ||
                         HIWORD(lParam) == WM_MBUTTONDOWN;
    if (message == WM_SETCURSOR && static_cast<short>(LOWORD(lParam)) == HTERROR && pressed) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the subclass's own value.
        auto* self = reinterpret_cast<IcoChooser*>(chooser);
        return win::Guarded(window, LRESULT{TRUE}, [&]() -> LRESULT {
            self->HideChooser();
            return TRUE;
        });
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace dialogs
