// Popup menus of another program: what is in them and choosing from them with the mouse.
//
//     mouse::RightClick(button);
//     PopupMenu menu = PopupMenu::Wait(quon.Id());
//     EXPECT_THAT(menu.Captions(), ElementsAre("Open", "-", "Free button"));
//     EXPECT_TRUE(menu.Item("Open").enabled);
//     menu.Choose("Free button");
//     PopupMenu::Wait(quon.Id()).Choose({"More", "Sub-item"});       // through a submenu
//
// Captions are as shown: "&&" is "&" and a single "&", which marks the key, is left out; a separator is "-".
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/window.h"

namespace testkit {

struct MenuItem {
    std::string caption;
    UINT id = 0;
    bool separator = false;
    bool enabled = true;
    bool checked = false;
    bool highlighted = false;
    bool has_submenu = false;
    /// On the screen.
    RECT rect = {};
};

class PopupMenu {
  public:
    /// Waits for an open popup menu of the process. Of several, this is the one opened last.
    static PopupMenu Wait(DWORD process_id);
    /// How many popup menus of the process are open, submenus included.
    static std::size_t OpenCount(DWORD process_id);

    Window PopupWindow() const { return window_; }
    /// The items as they are now.
    std::vector<MenuItem> Items() const;
    std::vector<std::string> Captions() const;
    /// The first item with this caption; throws, naming what there is.
    MenuItem Item(std::string_view caption) const;
    bool Has(std::string_view caption) const;

    /// Moves onto the item and clicks it; for an item with a submenu, waits for that and gives it.
    PopupMenu Open(std::string_view caption) const;
    void Choose(std::string_view caption) const;
    /// Through submenus: all but the last are opened.
    void Choose(std::initializer_list<std::string_view> path) const;
    /// Closes the menu by Esc and waits until it is gone.
    void Dismiss() const;

  private:
    explicit PopupMenu(Window window) : window_(window), process_id_(window.ProcessId()) {}
    void Click(std::string_view caption) const;

    Window window_;
    DWORD process_id_ = 0;
};

}  // namespace testkit
