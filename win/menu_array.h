#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "win/handles.h"

namespace win {

class MenuArray;

/// One element of an indexed menu. A caption of "-" makes a separator line.
struct MenuItem {
    std::string caption;   ///< shown as it is, even an "&"
    std::string tag;       ///< what the caption stands for; not shown
    bool enabled = true;   ///< false: shown grey, and cannot be chosen
    bool visible = true;   ///< false: not shown; the others keep their commands
    bool checked = false;  ///< shown with a check mark
    /// The menu that this element opens; it must outlive the element.
    const MenuArray* submenu = nullptr;
};

/// An indexed menu as plain data: the elements from design time, and those loaded and unloaded behind them.
/// It becomes a Windows menu only when it is shown.
class MenuArray {
  public:
    /// `firstCommand` is the command identifier of element 0; element i has firstCommand + i.
    MenuArray(int firstCommand, std::vector<MenuItem> designTime);

    /// How many elements there are, hidden ones and separators included.
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(items_.size()); }

    /// The element; throws SubscriptError outside 0 to Count() - 1.
    MenuItem& operator[](int index);

    /// The same for an array that may not be changed.
    const MenuItem& operator[](int index) const;

    /// Adds the element with the next index, as a copy of element 0; throws SubscriptError for another index.
    MenuItem& Load(int index);

    /// Takes the last element away; throws SubscriptError for another one or one from design time.
    void Unload(int index);

    /// The Windows menu with its submenus (CreatePopupMenu).
    [[nodiscard]] Menu Build() const;

    /// The index of the element with this command identifier; no value when it is not one of this array.
    [[nodiscard]] std::optional<int> IndexOf(int command) const noexcept;

  private:
    void CheckIndex(int index) const;

    int firstCommand_;
    int designCount_;
    std::vector<MenuItem> items_;
};

/// The entry that opens a menu, as it would stand in a menu bar; the array must outlive it.
inline MenuItem MenuParent(const char* caption, const MenuArray& menu) {
    return {.caption = caption, .tag = {}, .submenu = &menu};
}

/// Shows the menu at a point of the screen and waits for the choice (TrackPopupMenu). The right mouse button
/// chooses too, unless the menu is opened while it is pressed.
/// Returns the chosen command's identifier, 0 when the menu was left without one or the program is
/// ending.
int TrackMenu(const MenuArray& menu, POINT at, HWND owner);

}  // namespace win
