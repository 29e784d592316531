#include "tests/support/popup_menu.h"

#include <algorithm>
#include <stdexcept>

#include "tests/support/agent.h"
#include "tests/support/input.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

constexpr char kPopupClass[] = "#32768";

std::vector<Window> OpenPopups(DWORD process_id) {
    return FindTopWindows({.class_name = kPopupClass, .process_id = process_id});
}

/// The caption as it is drawn, without key marks.
std::string Shown(std::wstring_view caption) {
    std::wstring shown;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == L'&' && ++i == caption.size()) break;
        shown += caption[i];
    }
    return Utf8(shown);
}

MenuItem FromAnswer(const agent::MenuItemAnswer& answer) {
    MenuItem item;
    item.separator = (answer.type & MFT_SEPARATOR) != 0;
    item.caption = item.separator ? "-" : Shown(answer.caption);
    item.id = answer.id;
    item.enabled = (answer.state & (MFS_DISABLED | MF_DISABLED | MF_GRAYED)) == 0;
    item.checked = (answer.state & MFS_CHECKED) != 0;
    item.highlighted = (answer.state & MFS_HILITE) != 0;
    item.has_submenu = answer.has_submenu != FALSE;
    item.rect = answer.rect;
    return item;
}

POINT MiddleOf(const RECT& rect) { return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}; }

}  // namespace

PopupMenu PopupMenu::Wait(DWORD process_id) {
    return PopupMenu(WaitFor("a popup menu of process " + std::to_string(process_id), [&] {
        const std::vector<Window> popups = OpenPopups(process_id);
        return popups.empty() ? Window() : popups.front();
    }));
}

std::size_t PopupMenu::OpenCount(DWORD process_id) { return OpenPopups(process_id).size(); }

std::vector<MenuItem> PopupMenu::Items() const {
    const std::unique_ptr<agent::Answer> answer = agent::Ask(window_, agent::Question::kMenu);
    std::vector<MenuItem> items;
    for (UINT i = 0; i < answer->count; ++i)
        items.push_back(FromAnswer(answer->items[i]));
    return items;
}

std::vector<std::string> PopupMenu::Captions() const {
    std::vector<std::string> captions;
    for (const MenuItem& item : Items())
        captions.push_back(item.caption);
    return captions;
}

MenuItem PopupMenu::Item(std::string_view caption) const {
    std::string all;
    for (const MenuItem& item : Items()) {
        if (item.caption == caption) return item;
        all += "\n  " + item.caption;
    }
    throw std::runtime_error("the menu has no item \"" + std::string(caption) + "\", but:" + all);
}

bool PopupMenu::Has(std::string_view caption) const {
    const std::vector<std::string> captions = Captions();
    return std::find(captions.begin(), captions.end(), caption) != captions.end();
}

void PopupMenu::Click(std::string_view caption) const {
    const MenuItem item = Item(caption);
    if (!item.enabled) throw std::runtime_error("the menu item \"" + std::string(caption) + "\" is disabled");
    POINT place = MiddleOf(item.rect);
    mouse::MoveTo(place);
    WaitFor("the menu item \"" + std::string(caption) + "\" lights up", [&] {
        // A menu ignores a pointer that is there already when it opens.
        return HappensWithin(std::chrono::milliseconds(500), [&] { return Item(caption).highlighted; }) ||
               (mouse::MoveTo({place.x ^= 1, place.y}), false);
    });
    mouse::Press();
    mouse::Release();
}

PopupMenu PopupMenu::Open(std::string_view caption) const {
    const std::vector<Window> before = OpenPopups(process_id_);
    Click(caption);
    return PopupMenu(WaitFor("the submenu of \"" + std::string(caption) + "\"", [&] {
        for (const Window popup : OpenPopups(process_id_)) {
            if (std::find(before.begin(), before.end(), popup) == before.end()) return popup;
        }
        return Window();
    }));
}

void PopupMenu::Choose(std::string_view caption) const {
    Click(caption);
    const Window window = window_;
    WaitFor("the menu closes", [&] { return !window.IsVisible(); });
}

void PopupMenu::Choose(std::initializer_list<std::string_view> path) const {
    PopupMenu menu = *this;
    for (const std::string_view* step = path.begin(); step + 1 < path.end(); ++step)
        menu = menu.Open(*step);
    menu.Choose(*(path.end() - 1));
}

void PopupMenu::Dismiss() const {
    const Window window = window_;
    WaitFor("the menu closes on Esc", [&] {
        if (window.IsVisible()) keyboard::Press(VK_ESCAPE);
        return HappensWithin(std::chrono::milliseconds(500), [&] { return !window.IsVisible(); });
    });
}

}  // namespace testkit
