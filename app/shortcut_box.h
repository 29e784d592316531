#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "app/drop_target.h"
#include "app/edge_dock.h"
#include "app/panel_state.h"
#include "win/combo_box.h"

namespace app {

/// The drop-down of text shortcuts `cMain`: lists them, completes their names, opens them and takes drops.
class ShortcutBox {
  public:
    ShortcutBox(PanelState& state, EdgeDock& dock) noexcept : state_(state), dock_(dock) {}

    /// Creates the empty drop-down.
    void CreateOn(HWND parent);

    /// Gives the drop-down the window's present scale.
    void Rescale();

    /// Makes box and edit field drop targets; `window` gets WM_QUON_DROP after a drop.
    void Attach(HWND window);

    /// Takes the registrations back, before the windows go.
    void Detach() noexcept;

    /// Fills the list anew from the configuration file.
    void Refill();

    /// The Go button: docks when launching hides the window, then opens what is typed.
    void Go();

    /// Takes the focus with its text selected, so that typing replaces it.
    void TakeFocus();

    /// Takes Enter and Esc in the edit field and completes what is typed there; true when the message was
    /// used.
    bool PreTranslate(const MSG& message);

    /// A notification (CBN_) of the box; after a choice from the open list the parent gets WM_QUON_CHOSEN,
    /// when the box shows it.
    void OnNotification(int code);

    /// An item was chosen: the refresh item fills the list anew and collects applications, when those are to
    /// be shown.
    void OnChosen();

    /// Stores the drops that wait as text shortcuts.
    void ActOnDrops();

    /// Collects the associated applications and fills the list with them. Takes seconds.
    void CollectApplications();

    /// The drop-down itself.
    win::ComboBox& List() noexcept { return cMain_; }

  private:
    /// What a completion put into the box, and the item that it stands for.
    struct Completion {
        std::string shown;
        std::string item;
    };

    void Fire();
    [[nodiscard]] std::string NameToOpen() const;
    [[nodiscard]] bool ShowsRefreshItem() const;
    void Enter();
    void Escape();
    void NoteKeyDown(WPARAM key);
    void OnKeyUp(WPARAM key);
    void CompleteTyped();
    void Complete();
    void Store(const sys::DroppedData& data);

    PanelState& state_;
    EdgeDock& dock_;
    win::ComboBox cMain_;
    std::array<DropTarget, 2> targets_;
    std::vector<sys::DroppedData> waiting_;
    bool typing_ = false;    // the last key that went down types a character of a name
    std::string beforeKey_;  // the text that it found
    Completion completion_;  // the last one
    bool listOpen_ = false;  // between CBN_DROPDOWN and CBN_CLOSEUP
    bool chosen_ = false;    // an item was chosen in the open list
};

}  // namespace app
