#include "sys/tooltip.h"

#include <uxtheme.h>

#include <algorithm>
#include <string_view>

#include "win/colors.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/text.h"
#include "win/window.h"

namespace sys {
namespace {

// Wide enough that only "\n" breaks a line.
constexpr LPARAM kUnlimitedWidth = 0x7FFF;

// A tooltip takes no longer title: given one, it shows none at all.
constexpr size_t kLongestTitle = 99;

constexpr int kGap = 2;  // layout pixels, between a control and the tip below it

/// The 8-bit messages read a text in the code page of the tip's font, which need not be the process's. Only a
/// text that has the same bytes in all code pages can go through them.
bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

/// As much of a title as a tooltip takes, in whole characters.
std::wstring ShownTitle(const std::string& title) {
    std::wstring shown = win::ToWide(title);
    if (shown.size() <= kLongestTitle) return shown;
    shown.resize(kLongestTitle);
    if (IS_HIGH_SURROGATE(shown.back())) shown.pop_back();
    return shown;
}

}  // namespace

clsToolTip::~clsToolTip() { DestroyTip(); }

void clsToolTip::DestroyTip() noexcept {
    // When the parent control goes first, it takes its tip along; the handle is then no more than a number.
    if (window_ != nullptr && IsWindow(window_) != 0) DestroyWindow(window_);
    window_ = nullptr;
}

template <class Record>
Record clsToolTip::ToolRecord() const noexcept {
    Record record{};
    // The record ends with the application value: older tooltips do not know the field behind it.
    record.cbSize = TTTOOLINFOA_V2_SIZE;
    record.uFlags = flags_;
    record.hwnd = parentControl_;
    record.uId = 0;
    GetClientRect(parentControl_, &record.rect);
    record.hinst = win::ModuleInstance();
    return record;
}

void clsToolTip::SendTool(UINT message, UINT wideMessage) {
    if (IsPlain(tipText_)) {
        auto record = ToolRecord<TTTOOLINFOA>();
        record.lpszText = tipText_.data();
        SendMessageA(window_, message, 0, reinterpret_cast<LPARAM>(&record));
        return;
    }
    std::wstring text = win::ToWide(tipText_);
    auto record = ToolRecord<TTTOOLINFOW>();
    record.lpszText = text.data();
    SendMessageA(window_, wideMessage, 0, reinterpret_cast<LPARAM>(&record));
}

void clsToolTip::SendTitle() {
    const std::wstring shown = ShownTitle(title_);
    const std::string plain = win::ToBytes(shown);
    if (IsPlain(plain))
        SendMessageA(window_, TTM_SETTITLEA, 0, reinterpret_cast<LPARAM>(plain.c_str()));
    else
        SendMessageA(window_, TTM_SETTITLEW, 0, reinterpret_cast<LPARAM>(shown.c_str()));
}

bool clsToolTip::Create() {
    Make(TTF_SUBCLASS);
    return false;
}

void clsToolTip::ShowBelow() {
    // It may cover other controls, which have to be clicked all the same.
    Make(TTF_TRACK | TTF_ABSOLUTE | TTF_TRANSPARENT);
    if (window_ == nullptr) return;
    RECT control{};
    GetWindowRect(parentControl_, &control);
    const LONG gap = win::Scale::Of(parentControl_)(kGap);
    Track({control.left, control.bottom + gap});
    const auto record = ToolRecord<TTTOOLINFOA>();
    SendMessageA(window_, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&record));
    // Only now it has its size.
    RECT tip{};
    GetWindowRect(window_, &tip);
    const RECT area = win::WorkAreaOf(parentControl_);
    const LONG left = std::max(area.left, std::min(tip.left, area.right - win::Width(tip)));
    const bool above = tip.bottom > area.bottom;
    Track({left, above ? control.top - gap - win::Height(tip) : tip.top});
}

void clsToolTip::Track(POINT place) const noexcept {
    SendMessageA(window_, TTM_TRACKPOSITION, 0, MAKELPARAM(place.x, place.y));
}

void clsToolTip::Make(UINT flags) {
    DestroyTip();
    flags_ = flags;
    if (parentControl_ == nullptr) return;
    window_ = CreateWindowExA(0, "tooltips_class32", nullptr, TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, parentControl_, nullptr,
                              win::ModuleInstance(), nullptr);
    SetWindowPos(window_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    // A themed tip ignores its background colour.
    SetWindowTheme(window_, L"", L"");
    SetFont();
    SendTool(TTM_ADDTOOLA, TTM_ADDTOOLW);
    SendTitle();
    SendMessageA(window_, TTM_SETMAXTIPWIDTH, 0, kUnlimitedWidth);
    SetColors();
}

/// A tooltip's own font is made for the system's scale, whatever screen it comes up on.
void clsToolTip::SetFont() const {
    const win::Scale scale = win::Scale::Of(parentControl_);
    if (scale == win::Scale::Of(nullptr)) return;
    SendMessageA(window_, WM_SETFONT, reinterpret_cast<WPARAM>(win::MessageFont(scale)), FALSE);
}

void clsToolTip::SetColors() const noexcept {
    SendMessageA(window_, TTM_SETTIPBKCOLOR, win::ColorOf(win::Color::kTipGround), 0);
    // The text has the system's colour for tips, which cannot always be read on the theme's ground.
    if (win::ContrastTheme()) SendMessageA(window_, TTM_SETTIPTEXTCOLOR, GetSysColor(COLOR_INFOTEXT), 0);
}

void clsToolTip::FollowColors() noexcept {
    if (window_ == nullptr) return;
    SetColors();
    // Once a tip has been given a colour for its text, it follows the system's no more.
    if (!win::ContrastTheme()) SendMessageA(window_, TTM_SETTIPTEXTCOLOR, GetSysColor(COLOR_INFOTEXT), 0);
    InvalidateRect(window_, nullptr, TRUE);
}

void clsToolTip::Activate(bool active) noexcept {
    if (window_ != nullptr) SendMessageA(window_, TTM_ACTIVATE, active ? TRUE : FALSE, 0);
}

void clsToolTip::SetTitle(const std::string& title) {
    title_ = title;
    if (window_ != nullptr && !title_.empty()) SendTitle();
}

void clsToolTip::SetTipText(const std::string& text) {
    tipText_ = text;
    if (window_ != nullptr) SendTool(TTM_UPDATETIPTEXTA, TTM_UPDATETIPTEXTW);
}

}  // namespace sys
