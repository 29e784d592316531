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

/// Carries out the commands of a button's menu on the current button. While a picker, a question or a dialog
/// is open, the panel takes no input, and the command keeps its button.
class ButtonCommands {
  public:
    ButtonCommands(PanelState& state, EdgeDock& dock) noexcept : state_(state), dock_(dock) {}

    /// Takes the main window.
    void Attach(HWND owner) noexcept { owner_ = owner; }

    /// A command of `mnuButton`; separators and the entries of submenus do nothing.
    void Run(int command);

    /// A command of `mnuButB`, with a note on how it went; nothing happens to a button without a target.
    void RunFileCommand(int command);

    /// Adds a running program to the button by its path; "" does nothing.
    void Assign(const std::string& program);

    /// Frees the button; its target and its switch go with it. A free button is left untouched.
    void Free();

  private:
    /// Which button a command was given for.
    struct Place {
        std::int16_t index;
        std::string key;
    };

    [[nodiscard]] Place Here() const;
    void GoBackTo(const Place& place);
    template <class Question>
    auto Ask(Question question);

    void Add(const std::string& target, const std::string& name);
    void AddPicked(bool folder);
    void EditGroup();
    /// Other buttons of the shown tab may hold what was edited, or what was stored over.
    void RefreshNamesakes(const std::string& before, const std::string& after);
    void FindTarget();
    void Paste();
    void PasteFiles();
    void ChangeIcon();
    void ApplyIcon(const Place& place, std::int16_t icon);

    void CopyFile();
    void MoveFile();
    void RenameFile();
    void RemoveFile(bool forGood);
    [[nodiscard]] int Operate(std::int16_t operation, const std::string& destination);
    void PointTo(const std::string& path);

    PanelState& state_;
    EdgeDock& dock_;
    HWND owner_ = nullptr;
};

}  // namespace app
