#pragma once

#include <windows.h>

#include <array>
#include <functional>

#include "app/edge_dock.h"
#include "sys/tooltip.h"
#include "win/menu_array.h"
#include "win/picture_box.h"

namespace app {

/// The image buttons `iBut` and the menus that the first three open.
class PanelMenus {
  public:
    explicit PanelMenus(EdgeDock& dock);

    /// Creates the four image buttons; the parent owns their menus.
    void CreateOn(HWND parent);

    /// Gives the image buttons and their pictures the window's present scale.
    void Rescale();

    /// Appends the other programs of the program folder to the predefined menu.
    void AddCompanionPrograms();

    /// Makes the check mark of "Extensive tooltips" follow the setting.
    void ShowTooltipSetting();

    /// Opens what is typed in the drop-down: the fourth image button.
    std::function<void()> onGo;

    /// Opens the organiser of shortcuts.
    std::function<void()> onOrganize;

    /// Opens the options dialog.
    std::function<void()> onOptions;

    win::MenuArray mnuShell;
    win::MenuArray mnuPreDef;
    win::MenuArray mnuSettings;

    // The entries that open them.
    win::MenuItem mnuShellParent = win::MenuParent("Shell", mnuShell);
    win::MenuItem mnuPreDefParent = win::MenuParent("Predefined", mnuPreDef);
    win::MenuItem mnuSettingsParent = win::MenuParent("Settings", mnuSettings);

  private:
    void CreateImageButton(HWND parent, int index, RECT place);
    void DrawImage(int index);
    bool OnKey(int button, WPARAM key);
    void FocusOn(int button);
    void PopUpByKey(int button);
    void PopUp(int button);
    void RunPredefined(int index);
    void RunSetting(int index);
    void Explore(int index);

    EdgeDock& dock_;
    HWND owner_ = nullptr;
    std::array<win::PictureBox, 4> iBut_;
    std::array<sys::clsToolTip, 4> tips_;
};

}  // namespace app
