#include "win/menu_array.h"

#include <utility>

#include "win/errors.h"
#include "win/message_ban.h"
#include "win/modal_windows.h"
#include "win/text.h"

namespace win {
MenuArray::MenuArray(int firstCommand, std::vector<MenuItem> designTime)
    : firstCommand_(firstCommand),
      designCount_(static_cast<int>(designTime.size())),
      items_(std::move(designTime)) {}

void MenuArray::CheckIndex(int index) const {
    if (index < 0 || index >= Count()) throw SubscriptError("No menu element " + std::to_string(index));
}

MenuItem& MenuArray::operator[](int index) {
    CheckIndex(index);
    return items_[static_cast<size_t>(index)];
}

const MenuItem& MenuArray::operator[](int index) const {
    CheckIndex(index);
    return items_[static_cast<size_t>(index)];
}

MenuItem& MenuArray::Load(int index) {
    if (index != Count()) throw SubscriptError("Cannot load menu element " + std::to_string(index));
    MenuItem copy = items_.front();
    return items_.emplace_back(std::move(copy));
}

void MenuArray::Unload(int index) {
    CheckIndex(index);
    if (index != Count() - 1 || index < designCount_)
        throw SubscriptError("Cannot unload menu element " + std::to_string(index));
    items_.pop_back();
}

Menu MenuArray::Build() const {
    Menu menu(CreatePopupMenu());
    for (int index = 0; index < Count(); ++index) {
        const MenuItem& item = items_[static_cast<size_t>(index)];
        if (!item.visible) continue;
        if (item.caption == "-") {
            AppendMenuW(menu.Get(), MF_SEPARATOR, static_cast<UINT_PTR>(firstCommand_ + index), nullptr);
            continue;
        }
        const UINT state =
            (item.enabled ? MF_ENABLED : MF_GRAYED) | (item.checked ? MF_CHECKED : MF_UNCHECKED);
        const std::wstring text = WithPlainAmpersands(item.caption);
        if (item.submenu != nullptr) {
            // The parent menu owns its submenus and destroys them with itself.
            Menu submenu = item.submenu->Build();
            if (AppendMenuW(menu.Get(), MF_POPUP | state, reinterpret_cast<UINT_PTR>(submenu.Get()),
                            text.c_str()) != 0)
                submenu.Release();
        } else {
            AppendMenuW(menu.Get(), MF_STRING | state, static_cast<UINT_PTR>(firstCommand_ + index),
                        text.c_str());
        }
    }
    return menu;
}

std::optional<int> MenuArray::IndexOf(int command) const noexcept {
    const int index = command - firstCommand_;
    if (index < 0 || index >= Count()) return std::nullopt;
    return index;
}

int TrackMenu(const MenuArray& menu, POINT at, HWND owner) {
    if (IsEnding()) return 0;
    AssertMayPump("a menu");
    const Menu popup = menu.Build();
    // A menu opened while the right button is pressed must not take the end of that press for a choice.
    const UINT rightChooses = GetKeyState(VK_RBUTTON) < 0 ? 0 : TPM_RIGHTBUTTON;
    const int chosen =
        TrackPopupMenu(popup.Get(), TPM_RETURNCMD | rightChooses, at.x, at.y, 0, owner, nullptr);
    // A click elsewhere begins a switch to another task, which is complete only with one more message;
    // without it the next menu closes as soon as it opens.
    PostMessageW(owner, WM_NULL, 0, 0);
    return chosen;
}

}  // namespace win
