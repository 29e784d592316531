#include "app/button_panel.h"

#include <algorithm>
#include <string>
#include <vector>

#include "app/panel_layout.h"
#include "config/patience.h"
#include "config/settings.h"
#include "res/resource.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/handles.h"
#include "win/icons.h"

namespace app {
namespace {

// Where the hover picture stands, in twips from the button's place in its container; the container's own
// top is part of the second.
constexpr int kHoverRight = 45;
constexpr int kHoverBelow = 1365;
constexpr int kHoverSize = 14;  // layout pixels

constexpr UINT_PTR kPointerTimer = 1;
constexpr UINT kPointerCheck = 200;  // milliseconds

constexpr RECT kContainerPlace =
    layout::At(0, layout::kContainerTop, layout::kClientWidth, layout::kRows* layout::kButtonHeight);

}  // namespace

void ButtonContainer::CreateOn(HWND parent) {
    const win::Scale scale = win::Scale::Of(parent);
    win::WindowOptions options;
    options.className = L"QuonButtons";
    options.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    options.extendedStyle = WS_EX_CONTROLPARENT;
    options.place = scale(kContainerPlace);
    options.parent = parent;
    options.id = IDC_BUTTON_CONTAINER;
    Create(options);
    CutMargins(scale);
}

void ButtonContainer::Rescale() {
    const win::Scale scale = win::Scale::Of(GetParent(Handle()));
    const RECT place = scale(kContainerPlace);
    SetWindowPos(Handle(), nullptr, place.left, place.top, win::Width(place), win::Height(place),
                 SWP_NOZORDER | SWP_NOACTIVATE);
    CutMargins(scale);
}

void ButtonContainer::CutMargins(const win::Scale& scale) {
    // The margins stay the main window's, because the docked strip must belong to it.
    const RECT buttons = scale(layout::At(layout::kMargin, 0, layout::kColumns * layout::kButtonWidth,
                                          layout::kRows * layout::kButtonHeight));
    win::Region region(CreateRectRgn(buttons.left, buttons.top, buttons.right, buttons.bottom));
    // The window owns it from now on, unless it did not take it.
    if (SetWindowRgn(Handle(), region.Get(), FALSE) != 0) region.Release();
}

void ButtonContainer::WatchPointer() { SetTimer(Handle(), kPointerTimer, kPointerCheck, nullptr); }

void ButtonContainer::LeavePointer() { KillTimer(Handle(), kPointerTimer); }

void ButtonContainer::OnTimer(UINT_PTR timer) {
    if (timer == kPointerTimer && onPointerCheck) onPointerCheck();
    // Nobody waits for what is tried again by itself, and a command that comes next may need its patience.
    const config::NoPatience hurry;
    ReadAgain.OnTimer(Handle(), timer);
    StoreAgain.OnTimer(Handle(), timer);
}

std::optional<LRESULT> ButtonContainer::OnMessage(UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    switch (message) {
        // The buttons cover everything that the region leaves.
        case WM_ERASEBKGND: return 1;
        case WM_TIMER: OnTimer(wParam); return 0;
        default: return std::nullopt;
    }
}

RECT ButtonPanel::ButtonPlace(int index) {
    const int column = (index - 1) % layout::kColumns;
    const int row = (index - 1) / layout::kColumns;
    return layout::At(layout::kMargin + column * layout::kButtonWidth, row * layout::kButtonHeight,
                      layout::kButtonWidth, layout::kButtonHeight);
}

void ButtonPanel::CreateOn(HWND parent) {
    const win::Scale scale = win::Scale::Of(parent);
    container_.CreateOn(parent);
    container_.onPointerCheck = [this] { HideHoverOutside(); };
    container_.ReadAgain.onTry = [this] {
        RefreshShownTab();
        if (state_.RefillList) state_.RefillList();
    };
    container_.StoreAgain.onTry = [this] { state_.StoreMoved(); };
    state_.StoreAgainSoon = [this] { container_.StoreAgain.Again(container_.Handle()); };
    state_.Context.onUnread = [this] { container_.ReadAgain.Again(container_.Handle()); };
    for (int index = 1; index <= model::kButtonCount; ++index)
        Picture(index).CreateOn(container_.Handle(), IDC_BUTTON + index, scale(ButtonPlace(index)));
    StopAt(1);
    hover_.CreateOn(parent, IDC_HOVER_PICTURE, scale(layout::At(0, 0, kHoverSize, kHoverSize)), false);
    ShowWindow(hover_.Handle(), SW_HIDE);
    DrawHoverPicture();
    hover_.SetMeaning("Button information");
}

void ButtonPanel::Rescale() {
    HideHover();
    container_.Rescale();
    const win::Scale scale = win::Scale::Of(container_.Handle());
    for (int index = 1; index <= model::kButtonCount; ++index)
        Picture(index).Rescale(scale(ButtonPlace(index)));
    hover_.Rescale(scale(layout::At(0, 0, kHoverSize, kHoverSize)));
    DrawHoverPicture();
    // The tip's tool still has the former size.
    state_.TipButton = 0;
}

void ButtonPanel::DrawHoverPicture() {
    const int size = hover_.PictureScale()(kHoverSize);
    const win::Icon mark = win::ResourceIcon(IDI_INFO, size);
    DrawIconEx(hover_.Dc(), 0, 0, mark.Get(), size, size, 0, nullptr, DI_NORMAL);
}

win::PictureBox& ButtonPanel::Picture(int index) {
    if (index < 1 || index > model::kButtonCount)
        throw win::SubscriptError("There is no button " + std::to_string(index));
    return pb1_.at(static_cast<size_t>(index) - 1);
}

void ButtonPanel::StopAt(int index) {
    for (int button = 1; button <= model::kButtonCount; ++button)
        Picture(button).SetTabStop(button == index);
}

void ButtonPanel::RefreshShownTab() {
    state_.TipButton = 0;
    std::vector<model::CButtonShortcut::Refresh> refreshes;
    for (int slot = 1; slot <= model::kButtonCount; ++slot)
        refreshes.push_back(
            {&state_.Button(slot), model::ButtonPlace{config::Settings.CurrentTab, slot}.Key()});
    model::CButtonShortcut::RefreshButtons(refreshes);
}

void ButtonPanel::Hover(int index) {
    if (hovered_ == index && IsWindowVisible(hover_.Handle()) != 0) return;
    hovered_ = index;
    const win::Scale& scale = hover_.PictureScale();
    const RECT place = scale(ButtonPlace(index));
    SetWindowPos(hover_.Handle(), HWND_TOP, place.left + scale.FromTwips(kHoverRight),
                 place.top + scale.FromTwips(kHoverBelow), 0, 0,
                 SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    // A leaving is not always reported: not for a button that a menu covered, nor for one whose last move
    // came late.
    container_.WatchPointer();
}

void ButtonPanel::HideHover() {
    // A move that began on the mark would lose the mouse with it. Checked again when the mouse is free.
    if (GetCapture() == hover_.Handle()) return;
    container_.LeavePointer();
    ShowWindow(hover_.Handle(), SW_HIDE);
}

void ButtonPanel::HideHoverOutside() {
    // A drag that began on the mark goes on outside it.
    if (GetCapture() == hover_.Handle()) return;
    const HWND below = WindowFromPoint(win::PointerPlace());
    const auto isBelow = [below](const win::PictureBox& picture) { return picture.Handle() == below; };
    // The mark stays only while the pointer is over it or over a button.
    if (!isBelow(hover_) && std::none_of(pb1_.begin(), pb1_.end(), isBelow)) HideHover();
}

std::optional<int> ButtonPanel::ButtonAt(POINT screen) const {
    POINT point = screen;
    ScreenToClient(container_.Handle(), &point);
    for (int index = 1; index <= model::kButtonCount; ++index) {
        // The scale of the layout: a docked panel may lie on a screen of another.
        const RECT place = hover_.PictureScale()(ButtonPlace(index));
        if (PtInRect(&place, point) != 0) return index;
    }
    return std::nullopt;
}

RECT ButtonPanel::PlaceInWindow(int index) const {
    RECT place = hover_.PictureScale()(ButtonPlace(index));
    MapWindowPoints(container_.Handle(), GetParent(container_.Handle()), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace app
