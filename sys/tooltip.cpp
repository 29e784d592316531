#include "sys/tooltip.h"

#include <uxtheme.h>

#include "win/window.h"

namespace sys {
namespace {

constexpr COLORREF kBackColor = 0xDDE1DD;
// Wide enough that only "\n" breaks a line.
constexpr LPARAM kUnlimitedWidth = 0x7FFF;

LPARAM TextParam(const std::string& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

}  // namespace

clsToolTip::~clsToolTip() { DestroyTip(); }

void clsToolTip::DestroyTip() noexcept {
    // The parent control takes its tip along when it goes first; the handle is then only a number.
    if (window_ != nullptr && IsWindow(window_) != 0) DestroyWindow(window_);
    window_ = nullptr;
}

TTTOOLINFOA clsToolTip::ToolRecord() noexcept {
    TTTOOLINFOA record{};
    // Up to the application value: older tooltips do not know the field behind it.
    record.cbSize = TTTOOLINFOA_V2_SIZE;
    record.uFlags = TTF_SUBCLASS;
    record.hwnd = parentControl_;
    record.uId = 0;
    GetClientRect(parentControl_, &record.rect);
    record.hinst = win::ModuleInstance();
    record.lpszText = tipText_.data();
    return record;
}

bool clsToolTip::Create() {
    DestroyTip();
    if (parentControl_ == nullptr) return false;
    window_ = CreateWindowExA(0, "tooltips_class32", nullptr, TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, parentControl_, nullptr,
                              win::ModuleInstance(), nullptr);
    SetWindowPos(window_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    // A themed tip ignores its background colour.
    SetWindowTheme(window_, L"", L"");
    TTTOOLINFOA record = ToolRecord();
    SendMessageA(window_, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&record));
    SendMessageA(window_, TTM_SETTITLEA, 0, TextParam(title_));
    SendMessageA(window_, TTM_SETMAXTIPWIDTH, 0, kUnlimitedWidth);
    SendMessageA(window_, TTM_SETTIPBKCOLOR, kBackColor, 0);
    return false;
}

void clsToolTip::Activate(bool active) noexcept {
    if (window_ != nullptr) SendMessageA(window_, TTM_ACTIVATE, active ? TRUE : FALSE, 0);
}

void clsToolTip::SetTitle(const std::string& title) {
    title_ = title;
    if (window_ != nullptr && !title_.empty()) SendMessageA(window_, TTM_SETTITLEA, 0, TextParam(title_));
}

void clsToolTip::SetTipText(const std::string& text) {
    tipText_ = text;
    if (window_ == nullptr) return;
    TTTOOLINFOA record = ToolRecord();
    SendMessageA(window_, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&record));
}

}  // namespace sys
