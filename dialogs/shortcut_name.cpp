#include "dialogs/shortcut_name.h"

#include <algorithm>

#include "model/shortcut_store.h"
#include "model/storable_name.h"
#include "win/colors.h"
#include "win/text.h"

namespace dialogs {

std::optional<bool> ShortcutExists(const std::string& name) {
    const auto shortcuts = model::ShortcutStore::Shortcuts();
    if (!shortcuts) return std::nullopt;
    const std::string storable = model::StorableName(name);
    return std::any_of(shortcuts->begin(), shortcuts->end(), [&](const model::StoredShortcut& shortcut) {
        return win::EqualIgnoringCase(shortcut.name, name) || win::EqualIgnoringCase(shortcut.name, storable);
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
    win::FillBox(GetDlgItem(dialog_, box_), name);
    limit_.Attach(GetDlgItem(dialog_, box_), model::kLongestName);
    Test();
}

void ShortcutNameBox::SelectAll() const {
    const HWND box = GetDlgItem(dialog_, box_);
    SetFocus(box);
    SendMessageW(box, EM_SETSEL, 0, -1);
}

bool ShortcutNameBox::OnCommand(int id, int notification) {
    if (id == box_ && notification == EN_CHANGE) {
        limit_.OnChange();
        Test();
        return true;
    }
    if (id < firstLabel_ || id > warning_ || notification != STN_CLICKED) return false;
    SelectAll();
    return true;
}

void ShortcutNameBox::Test() {
    taken_ = ShortcutExists(Name()).value_or(taken_);
    ShowWindow(GetDlgItem(dialog_, warning_), taken_ ? SW_SHOW : SW_HIDE);
    InvalidateRect(GetDlgItem(dialog_, box_), nullptr, TRUE);
}

void ShortcutNameBox::ColorText(HWND control, HDC dc) const noexcept {
    if (GetDlgCtrlID(control) == box_)
        SetTextColor(dc, win::ColorOf(taken_ ? win::Color::kTaken : win::Color::kFree));
}

}  // namespace dialogs
