#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/button_records.h"
#include "model/button_shortcut.h"
#include "model/shortcut_store.h"
#include "model/tab.h"

namespace app {

/// What the parts of the main window share: the records, the nine buttons of the shown tab, the six tabs.
struct PanelState {
    model::ButtonContext Context;
    /// Fills the text-shortcut drop-down anew.
    std::function<void()> RefillList;
    /// Calls StoreMoved in a while.
    std::function<void()> StoreAgainSoon;
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

    /// Where the current button is. A command takes this when it begins: whatever lets messages run may make
    /// another button the current one. Throws SubscriptError for an index outside 1 to 9.
    [[nodiscard]] model::ButtonPlace CurrentPlace() const;

    /// Where a button of the shown tab is. Throws SubscriptError for an index outside 1 to 9.
    [[nodiscard]] static model::ButtonPlace ShownPlace(int index);

    /// Makes the button at a place the current one, while its tab is shown.
    void Select(const model::ButtonPlace& place);

    /// The button at a place, while its tab is shown; null while it is not.
    model::CButtonShortcut* ShownAt(const model::ButtonPlace& place);

    /// The store through which everything is changed; the table of records follows it.
    model::ShortcutStore Store() noexcept { return model::ShortcutStore(Context.Records); }

    /// Makes a button follow its file (ShortcutStore::Follow). False where that could not be stored: it is
    /// tried again until it is, or until something else is on the button.
    bool Follow(model::MovedFile file);

    /// Tries to store what Follow could not.
    void StoreMoved();

    /// Reloads and repaints the shown buttons that carry one of these shortcuts, ignoring case, and the one
    /// at `place` whatever it carries.
    void RefreshNamed(const std::vector<std::string>& names,
                      const std::optional<model::ButtonPlace>& place = std::nullopt);

    /// The same when a shortcut was made, replaced, renamed or freed; fills the drop-down anew, too.
    void ShowChanged(const std::vector<std::string>& names,
                     const std::optional<model::ButtonPlace>& place = std::nullopt);

    /// The user is at work in the window.
    void NoteActivity() { PopCount = 10; }

  private:
    std::array<std::unique_ptr<model::CButtonShortcut>, model::kButtonCount> ButtonShortcuts;
    std::array<std::unique_ptr<model::clsTab>, model::kTabCount> tabs_;
};

}  // namespace app
