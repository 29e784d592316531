#include "app/tab_strip.h"

#include <string>

#include "app/panel_layout.h"
#include "config/settings.h"
#include "res/resource.h"
#include "win/colors.h"
#include "win/errors.h"

namespace app {
namespace {

constexpr int kAccentHeight = 3;

void FillPart(HDC dc, RECT part, COLORREF color) {
    const win::Brush brush(CreateSolidBrush(color));
    FillRect(dc, &part, brush.Get());
}

/// The header of the shown tab is a raised card with a coloured top; the others lie flat on a line.
void DrawFrame(const win::PictureBox& header, HDC dc, RECT all) {
    const COLORREF line = GetSysColor(COLOR_BTNSHADOW);
    const COLORREF accent = win::ColorOf(win::Color::kAccent);
    const win::Scale& scale = header.PictureScale();
    const int thin = scale(1);
    if (header.Frame() != 1) {
        FillPart(dc, {all.left, all.bottom - thin, all.right, all.bottom}, line);
        if (header.Hovered())
            FillPart(dc,
                     {all.left + scale(6), all.bottom - scale(3), all.right - scale(6), all.bottom - thin},
                     accent);
        return;
    }
    FillPart(dc, {all.left, all.top, all.left + thin, all.bottom}, line);
    FillPart(dc, {all.right - thin, all.top, all.right, all.bottom}, line);
    FillPart(dc, {all.left, all.top, all.right, all.top + scale(kAccentHeight)}, accent);
}

/// The place of a header, 1 to 6, in layout pixels.
RECT HeaderPlace(int index) {
    return layout::At(layout::kMargin + (index - 1) * layout::kHeaderWidth, layout::kHeaderTop,
                      layout::kHeaderWidth, layout::kHeaderHeight);
}

}  // namespace

void TabStrip::CreateOn(HWND parent) {
    const win::Scale scale = win::Scale::Of(parent);
    for (int index = 1; index <= model::kTabCount; ++index) {
        win::PictureBox& header = Header(index);
        header.CreateOn(parent, IDC_TAB_HEADER + index, scale(HeaderPlace(index)));
        header.SetAccessible(ROLE_SYSTEM_PAGETAB, "Tab " + std::to_string(index));
        header.onMouseUp = [this, index](const win::PictureBox::Mouse& mouse) {
            b1_MouseUp(index, mouse.button, mouse.shift, static_cast<float>(mouse.at.x),
                       static_cast<float>(mouse.at.y));
        };
        header.onMouseMove = [this, index](const win::PictureBox::Mouse&) { OnHover(index); };
        header.onKeyDown = [this, index](WPARAM key) { return OnKey(index, key); };
        header.onFocus = [this, index] { StopAt(index); };
        // Tab comes back to the tab that is shown, wherever the arrows have been.
        header.onFocusLost = [this] { StopAt(config::Settings.CurrentTab); };
        header.onContextKey = [this, index] { b1_MouseUp(index, win::MouseButton::kRight, 0, 0, 0); };
        header.onOverlay = [&header](HDC dc, RECT all) { DrawFrame(header, dc, all); };
    }
    StopAt(1);
}

void TabStrip::Rescale() {
    const win::Scale scale = win::Scale::Of(GetParent(Header(1).Handle()));
    for (int index = 1; index <= model::kTabCount; ++index)
        Header(index).Rescale(scale(HeaderPlace(index)));
    // A tip's tool has the size that its header had.
    hovered_ = 0;
}

win::PictureBox& TabStrip::Header(int index) {
    if (index < 1 || index > model::kTabCount)
        throw win::SubscriptError("There is no tab " + std::to_string(index));
    return b1_.at(static_cast<size_t>(index) - 1);
}

void TabStrip::b1_MouseUp(int index, win::MouseButton button, win::ShiftState /*shift*/, float /*x*/,
                          float /*y*/) {
    state_.NoteActivity();
    if (button == win::MouseButton::kLeft) {
        ShowTab(index);
    } else if (onDefineTab) {
        onDefineTab(index);
        // The next move makes a tip with the new texts.
        hovered_ = 0;
    }
}

void TabStrip::ShowTab(int index) {
    win::PictureBox& header = Header(index);
    Header(config::Settings.CurrentTab).SetFrame(0);
    config::Settings.CurrentTab = static_cast<std::int16_t>(index);
    header.SetFrame(1);
    StopAt(index);
    buttons_.HideHover();
    buttons_.RefreshShownTab();
}

void TabStrip::OnHover(int index) {
    if (hovered_ == index) return;
    hovered_ = index;
    state_.Tab(index).ShowTip(!config::Settings.ExtensiveTooltips);
    state_.NoteActivity();
}

bool TabStrip::OnKey(int index, WPARAM key) {
    switch (key) {
        case VK_LEFT: FocusOn(index == 1 ? model::kTabCount : index - 1); return true;
        case VK_RIGHT: FocusOn(index == model::kTabCount ? 1 : index + 1); return true;
        case VK_HOME: FocusOn(1); return true;
        case VK_END: FocusOn(model::kTabCount); return true;
        case VK_RETURN:
        case VK_SPACE: b1_MouseUp(index, win::MouseButton::kLeft, 0, 0, 0); return true;
        default: return false;
    }
}

void TabStrip::FocusOn(int index) { SetFocus(Header(index).Handle()); }

void TabStrip::StopAt(int index) {
    for (int header = 1; header <= model::kTabCount; ++header)
        Header(header).SetTabStop(header == index);
}

std::optional<int> TabStrip::HeaderAt(POINT screen) const {
    for (int index = 1; index <= model::kTabCount; ++index) {
        RECT place{};
        GetWindowRect(b1_.at(static_cast<size_t>(index) - 1).Handle(), &place);
        if (PtInRect(&place, screen) != 0) return index;
    }
    return std::nullopt;
}

}  // namespace app
