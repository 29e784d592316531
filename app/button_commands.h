#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "app/edge_dock.h"
#include "app/panel_state.h"

namespace app {

/// The commands of the menu `mnuButton` by their index.
enum ButtonCommand {
    kAddFile = 0,
    kAddFolder = 1,
    kGroup = 2,
    kFree = 4,
    kProperties = 6,
    kFindTarget = 7,
    kAssignFromActive = 9,
    kFileOperations = 10,
    kPaste = 11,
    kChangeIcon = 12,
};

/// The commands of the menu `mnuButB` by their index.
enum FileCommand { kCopyTo = 0, kMoveTo = 1, kRename = 2, kRecycle = 4, kDelete = 5 };

/// Carries out the commands of a button's menu on the button at a place; nothing happens while its tab is not
/// shown. While a picker, a question or a dialog is open, the panel takes no input.
class ButtonCommands {
  public:
    ButtonCommands(PanelState& state, EdgeDock& dock) noexcept : state_(state), dock_(dock) {}

    /// Takes the main window.
    void Attach(HWND owner) noexcept { owner_ = owner; }

    /// Carries out a command of `mnuButton`; separators and the entries of submenus do nothing.
    void Run(int command, const model::ButtonPlace& place);

    /// Carries out a command of `mnuButB` and says how it went; nothing happens to a button without a target.
    void RunFileCommand(int command, const model::ButtonPlace& place);

    /// Adds a running program to the button by its path; "" does nothing.
    void Assign(const std::string& program, const model::ButtonPlace& place);

    /// Frees the button; its target and its switch go with it. A free button is left untouched.
    void Free(const model::ButtonPlace& place);

  private:
    using Place = model::ButtonPlace;

    void Add(const Place& place, const std::string& target, const std::string& name);
    void AddPicked(const Place& place, bool folder);
    void EditGroup(const Place& place);
    void Paste(const Place& place);
    void PasteFiles(const Place& place);
    void ChangeIcon(const Place& place);
    void iChos_IconSelected(const Place& place, const std::string& name, std::int16_t icon);

    /// The button's file, and which shortcut it belongs to.
    struct File {
        Place place;
        std::string path;
        std::string name;
        std::string record;
        std::int32_t icon = 0;
    };
    static void CopyFile(const File& file);
    void MoveFile(const File& file);
    void RenameFile(const File& file);
    void RemoveFile(const File& file, bool forGood);
    void PointTo(const File& file, const std::string& path, bool done);

    PanelState& state_;
    EdgeDock& dock_;
    HWND owner_ = nullptr;
};

}  // namespace app
