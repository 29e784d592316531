#include "dialogs/shortcut_name.h"

#include <algorithm>
#include <vector>

#include "config/ini.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "win/text.h"

namespace dialogs {
namespace {

constexpr COLORREF kTakenColor = 255;      // red
constexpr COLORREF kFreeColor = 0xFF0000;  // blue

}  // namespace

bool ShortcutExists(const std::string& name) {
    const std::string storable = model::StorableName(name);
    const std::vector<std::string> entries =
        config::SectionEntries(config::ReadIniSection(model::kCutsSection));
    return std::any_of(entries.begin(), entries.end(), [&](const std::string& entry) {
        // A line without "=" is no record.
        if (entry.find('=') == std::string::npos) return false;
        const std::string key = win::Before(entry, '=');
        return win::EqualIgnoringCase(key, name) || win::EqualIgnoringCase(key, storable);
    });
}

void ShortcutNameBox::Attach(HWND dialog, int box, int firstLabel, int warning) {
    dialog_ = dialog;
    box_ = box;
    firstLabel_ = firstLabel;
    warning_ = warning;
    tip_.SetTipText("Click to select all text");
    tip_.SetParentControl(GetDlgItem(dialog, firstLabel));
    tip_.Create();
}

std::string ShortcutNameBox::Name() const { return win::WindowText(GetDlgItem(dialog_, box_)); }

void ShortcutNameBox::SetName(const std::string& name) {
    win::SetText(GetDlgItem(dialog_, box_), name);
    Test();
}

void ShortcutNameBox::SelectAll() const {
    const HWND box = GetDlgItem(dialog_, box_);
    SetFocus(box);
    SendMessageW(box, EM_SETSEL, 0, -1);
}

bool ShortcutNameBox::OnCommand(int id, int notification) {
    if (id == box_ && notification == EN_CHANGE) {
        Test();
        return true;
    }
    if (id < firstLabel_ || id > warning_ || notification != STN_CLICKED) return false;
    SelectAll();
    return true;
}

void ShortcutNameBox::Test() {
    taken_ = ShortcutExists(Name());
    ShowWindow(GetDlgItem(dialog_, warning_), taken_ ? SW_SHOW : SW_HIDE);
    InvalidateRect(GetDlgItem(dialog_, box_), nullptr, TRUE);
}

void ShortcutNameBox::ColorText(HWND control, HDC dc) const noexcept {
    if (GetDlgCtrlID(control) == box_) SetTextColor(dc, taken_ ? kTakenColor : kFreeColor);
}

}  // namespace dialogs
