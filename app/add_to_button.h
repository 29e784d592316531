#pragma once

#include <string>

#include "app/button_drag.h"
#include "app/panel_state.h"
#include "sys/dropped_data.h"

namespace app {

/// True for a URL and for an existing path that can be stored whole.
bool CanBeOpened(const std::string& target);

/// Puts a target under a name on the current button; on a used one it asks whether to replace the shortcut
/// or to create a group, which may change target and name. Returns false when the question was cancelled.
bool AddToButton(PanelState& state, std::string& target, std::string& name, std::string& commandSwitch);

/// What a drop stands for.
struct DroppedShortcut {
    std::string target;
    std::string name;
    std::string commandSwitch;
};

/// The shortcut that dropped data makes: text is a target itself, a file may be a link to one. Target or name
/// is "" when nothing can be made of it.
DroppedShortcut ShortcutFromDrop(const sys::DroppedData& data);

/// A drop on button `index` of the shown tab: adds it, or says that it could not be made.
void DropOnButton(PanelState& state, int index, const sys::DroppedData& data);

/// A button was carried to button `index` of the shown tab: frees the source and fills the target.
void MoveToButton(PanelState& state, int index, const DragSource& source);

}  // namespace app
