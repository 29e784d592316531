#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "app/button_drag.h"
#include "app/button_drops.h"
#include "app/button_menu.h"
#include "app/button_mouse.h"
#include "app/button_panel.h"
#include "app/button_rename.h"
#include "app/button_tip.h"
#include "app/edge_dock.h"
#include "app/hot_key.h"
#include "app/panel_menus.h"
#include "app/panel_state.h"
#include "app/shortcut_box.h"
#include "app/tab_strip.h"
#include "app/tray_icon.h"
#include "config/settings.h"
#include "dialogs/panel_host.h"
#include "win/handles.h"
#include "win/window.h"

namespace app {

/// Who asks the main window to close.
enum class UnloadMode : std::uint8_t {
    kUser = 0,         ///< the close button, the system menu, Alt+F4
    kCode = 1,         ///< the program itself
    kSession = 2,      ///< Windows ends the session
    kTaskManager = 3,  ///< another program
};

/// Timers of the main window beside those of the docking.
enum PanelTimer : UINT_PTR { kEndTimer = kFrontTimer + 1, kTrayTimer, kScreenTimer };

/// The main window: the panel, made of its parts, which it creates and joins.
class Glavni : public win::Window, public dialogs::PanelHost {
  public:
    Glavni();

    /// Creates the window with all its parts, hidden.
    void CreateParts();

    /// Runs the steps of the start and shows the window. An error is thrown on and ends the program.
    void Load();

    /// Gives a waiting message to the keyboard handling; true when it was used.
    bool PreTranslate(MSG& message);

    // What the dialogs ask for.
    void ShowQuon(bool bShow, bool bUnTimer) override { dock_.ShowQuon(bShow, bUnTimer); }
    void EnableTimer(bool enabled) override { dock_.EnableTimer(enabled); }
    void ShowTooltipSetting() override { menus_.ShowTooltipSetting(); }
    void TakeCloseSetting() override { closeButtonCloses_ = config::Settings.CloseButtonCloses; }
    bool TakeHotKey(std::uint16_t word) override { return hotKey_.Set(word); }
    void RefillList() override { shortcuts_.Refill(); }
    model::ButtonContext& Context() override { return state_.Context; }
    model::clsTab& Tab(int number) override { return state_.Tab(number); }

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // Start and end: startup.cpp.
    void LoadTabs();
    void LoadButtons();
    void ShowStoredTab();
    void ShowFirst();
    void CloseRequest(UnloadMode mode);
    void EndSession();
    void Unload();
    void UnloadNow();
    void SaveAtEnd();
    void OnTimer(WPARAM timer);
    void OnScreenChange();
    bool KeyDown(WPARAM key, win::ShiftState shift);

    void FitSmallIcon();
    bool FitToScale();
    bool FitToScreen();
    [[nodiscard]] SIZE SizeToCome(int dpi) const;
    void OnDpiChanged(const RECT& place);
    void OnLookChanged(bool colors);
    bool RescaleParts();
    bool LayOutParts();
    void JoinParts();
    void Organize();
    void OnPaint();
    std::optional<LRESULT> OnSystemCommand(WPARAM command, LPARAM lParam);
    void OnActivate(bool active);
    void OnMouseMove(WPARAM wParam, LPARAM lParam);
    void OnTrayRightClick();
    static void BringForward();
    void OnHotKey();

    // The window's small icon, which the notification area shows; it outlives the icon there.
    win::Icon smallIcon_;
    int smallIconSize_ = 0;  // pixels; 0 while it is not the one that is shown
    PanelState state_;
    EdgeDock dock_;
    TrayIcon tray_;
    ButtonPanel buttons_{state_};
    TabStrip tabs_{state_, buttons_};
    ButtonDrag drag_{state_, buttons_, tabs_};
    ButtonDrops drops_{state_, buttons_};
    ButtonMenu buttonMenu_{state_, dock_};
    ButtonTip tip_{state_};
    ButtonMouse mouse_{state_, buttons_, drag_, buttonMenu_, tip_, dock_};
    ButtonRename rename_{state_, buttons_};
    ShortcutBox shortcuts_{state_, dock_};
    PanelMenus menus_{dock_};
    HotKey hotKey_;
    win::MenuArray mnuTray;
    /// The entry that opens the menu of the tray icon.
    win::MenuItem mnuTrayParent = win::MenuParent("Tray", mnuTray);

    // The look that the parts were last laid out in.
    win::Scale scale_;
    bool rescaling_ = false;
    bool contrastTheme_ = false;
    HICON icon_ = nullptr;
    HWND lastFocus_ = nullptr;
    bool closeButtonCloses_ = false;
    bool unloaded_ = false;
};

}  // namespace app
