#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "model/button_records.h"
#include "model/button_shortcut.h"
#include "model/tab.h"

namespace app {

/// What the parts of the main window share: the records, the nine buttons of the shown tab, the six tabs.
struct PanelState {
    model::ButtonContext Context;
    /// Fills the text-shortcut drop-down anew.
    std::function<void()> RefillList;
    /// Set to 10 whenever the user works in the window.
    std::int16_t PopCount = 0;
    /// The button whose tip was built last; 0 makes the next hover build it anew.
    int TipButton = 0;

    /// The button object 1 to 9, made on first use; throws SubscriptError for another index.
    model::CButtonShortcut& Button(int index);

    /// The tab object 1 to 6, made on first use; throws SubscriptError for another number.
    model::clsTab& Tab(int number);

    /// The object of the current button.
    model::CButtonShortcut& Current() { return Button(Context.CurrentButtonIndex); }

    /// Reloads and repaints the current button.
    void RefreshCurrent() {
        TipButton = 0;
        Current().RefreshButton(Context.CurrentButtonKey);
    }

    /// The user is at work in the window.
    void NoteActivity() { PopCount = 10; }

  private:
    std::array<std::unique_ptr<model::CButtonShortcut>, model::kButtonCount> buttons_;
    std::array<std::unique_ptr<model::clsTab>, model::kTabCount> tabs_;
};

}  // namespace app
