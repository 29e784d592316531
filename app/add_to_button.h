#pragma once

#include <string>

#include "app/button_drag.h"
#include "app/panel_state.h"
#include "sys/dropped_data.h"

namespace app {

/// True for a URL and for an existing path, even if it cannot be stored.
bool CanBeOpened(const std::string& target);

/// Puts a target under a name on a button. On a used one it asks whether to replace the shortcut or to create
/// a group, which may change target and name. Returns false when the question was cancelled, or when it could
/// not be stored, which the user is told.
bool AddToButton(PanelState& state, const model::ButtonPlace& place, std::string& target, std::string& name,
                 std::string& commandSwitch);

/// The shortcut that a drop stands for.
struct DroppedShortcut {
    std::string target;
    std::string name;
    std::string commandSwitch;
    bool switchTooLong = false;  ///< there was a switch too long to be read back; it is left out
};

/// The shortcut that dropped data makes: text is a target itself, a file may be a link to one. Target or name
/// is "" when the data make no shortcut.
DroppedShortcut ShortcutFromDrop(const sys::DroppedData& data);

/// Tells the user if a switch was left out because it is too long.
void TellOfSwitch(const DroppedShortcut& shortcut);

/// A drop on a button, which may be on a tab that is no longer shown: adds it, or says that it could not be
/// made.
void DropOnButton(PanelState& state, const model::ButtonPlace& place, const sys::DroppedData& data);

/// A button was carried to another place: frees the source and fills the target, both or
/// neither.
void MoveToButton(PanelState& state, const model::ButtonPlace& place, const DragSource& source);

}  // namespace app
