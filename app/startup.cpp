// The start and the end of the main window: loading, the request to close, unloading, and its keys.

#include <windows.h>

#include <string>

#include "app/glavni.h"
#include "config/ini.h"
#include "config/ini_unit.h"
#include "config/settings.h"
#include "model/launching.h"
#include "res/resource.h"
#include "sys/shell_folders.h"
#include "win/dialog.h"
#include "win/errors.h"
#include "win/modal_windows.h"
#include "win/process_start.h"
#include "win/shell_call.h"

namespace app {
namespace {

constexpr UINT kEndInterval = 50;       // milliseconds
constexpr UINT kTrayInterval = 3000;    // milliseconds
constexpr UINT kScreenInterval = 1000;  // milliseconds

std::string g_helpFile;

void OpenHelpFile() { win::OpenInShell(nullptr, g_helpFile.c_str(), nullptr, nullptr, SW_SHOWNORMAL); }

}  // namespace

void Glavni::Load() {
    // The order matters: each step uses what the ones before it have brought.
    g_helpFile = win::ProgramFolder() + "\\Manual.chm";
    win::SetHelpHandler(&OpenHelpFile);
    config::IniPath = win::ProgramFolder() + "\\Quon.ini";
    const config::IniStart start;
    config::RemoveInterruptedUnits();
    // What a tab's label would be read from a file that is just being saved, the next "Apply" would store.
    config::AwaitSettings();
    LoadTabs();
    LoadButtons();
    state_.Context.Records.LoadButtonRecords();
    shortcuts_.Refill();
    sys::clsShell::ListShellFolders(menus_.mnuShell);
    model::FindDefaultBrowser();
    config::LoadMainSettings();
    // Showing the tab frees buttons in the file, so whatever would stop the load has to stop it before.
    config::CheckPopUpSettings();
    ShowStoredTab();
    config::LoadPopUpSettings();
    menus_.ShowTooltipSetting();
    TakeCloseSetting();
    if (!tray_.AddTrayIcon(Handle(), smallIcon_ ? smallIcon_.Get() : icon_))
        SetTimer(Handle(), kTrayTimer, kTrayInterval, nullptr);
    menus_.AddCompanionPrograms();
    ShowFirst();
    // The panel is painted before the rest is done, which nobody sees and for which OLE takes its time.
    RedrawWindow(Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    drops_.Attach(Handle());
    shortcuts_.Attach(Handle());
    // The taskbar is only looked up; whether there is one makes no difference.
    FindWindowA("Shell_traywnd", nullptr);
    // The list was filled when it was not yet known whether collected applications belong to it.
    if (config::Settings.ShowCollected) shortcuts_.Refill();
    // If another program has the keys, the user is told where they are chosen.
    config::LoadHotKey();
    hotKey_.Set(config::Settings.HotKey);
}

void Glavni::LoadTabs() {
    for (int number = 1; number <= model::kTabCount; ++number) {
        model::clsTab& tab = state_.Tab(number);
        tab.SetParentTab(&tabs_.Header(number));
        tab.INIstring(config::ReadIni(model::kButtonsSection, model::ButtonPlace{number, 0}.Key()));
    }
}

void Glavni::LoadButtons() {
    for (int index = 1; index <= model::kButtonCount; ++index)
        state_.Button(index).SetParentButton(&buttons_.Picture(index));
}

void Glavni::ShowStoredTab() {
    const int tab = config::Settings.CurrentTab;
    if (tab < 1 || tab > model::kTabCount)
        throw win::SubscriptError("There is no tab " + std::to_string(tab) +
                                  ": field 0 (CurrentTab) of \"Main\" in section \"Settings\" of " +
                                  config::IniPath);
    tabs_.b1_MouseUp(tab, win::MouseButton::kLeft, 0, 0, 0);
}

void Glavni::ShowFirst() {
    if (config::Settings.StartGlued)
        dock_.ShowQuon(false, true);
    else
        dock_.ShowQuon(true, false);
    // The first call of ShowWindow would do what the program's starter asks for: show the window minimised,
    // maximised or not at all. A docked window must not take the focus from what the user is doing.
    const UINT quietly = dock_.Hidden() ? SWP_NOACTIVATE | SWP_NOZORDER : 0;
    SetWindowPos(Handle(), HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOMOVE | SWP_NOSIZE | quietly);
}

void Glavni::OnTimer(WPARAM timer) {
    switch (timer) {
        case Timer1: dock_.OnTimer(); return;
        case kFrontTimer: dock_.OnFrontTimer(); return;
        case kRaiseTimer: dock_.OnRaiseTimer(); return;
        case kEndTimer: Unload(); return;
        case kTrayTimer:
            if (tray_.AddAgain()) KillTimer(Handle(), kTrayTimer);
            return;
        case kScreenTimer:
            KillTimer(Handle(), kScreenTimer);
            FitSmallIcon();
            dock_.FollowScreen();
            return;
        default: return;
    }
}

void Glavni::OnScreenChange() {
    FitSmallIcon();
    dock_.FollowScreen();
    // Windows moves windows by itself after this message, and the taskbar takes its time.
    SetTimer(Handle(), kScreenTimer, kScreenInterval, nullptr);
}

void Glavni::CloseRequest(UnloadMode mode) {
    if (!closeButtonCloses_) {
        dock_.SavePosition();
        dock_.MoveAside();
        dock_.ShowQuon(false, false);
        if (mode != UnloadMode::kSession && mode != UnloadMode::kTaskManager) return;
    }
    const bool begins = !win::IsEnding();
    Unload();
    // If something cannot be cancelled, ending the process may be the only way left, so the settings are
    // saved now.
    if (begins && win::IsEnding() && mode != UnloadMode::kSession) config::SaveSettings();
}

void Glavni::EndSession() {
    CloseRequest(UnloadMode::kSession);
    // Nothing after this is certain to run, so nothing that is open is waited for.
    SaveAtEnd();
}

void Glavni::Unload() {
    if (!win::InModalLoop()) {
        UnloadNow();
        return;
    }
    // A menu, a dialog or a question is open, and its caller still works on the window; besides, ending the
    // message loop would answer the shell's questions with "Yes". So it is cancelled, and the window goes
    // once its caller has returned.
    win::SetEnding(true);
    dock_.AbandonHover();
    win::CancelModalWindows();
    SetTimer(Handle(), kEndTimer, kEndInterval, nullptr);
}

void Glavni::UnloadNow() {
    SaveAtEnd();
    win::SetMainWindow(nullptr);
    Destroy();
}

void Glavni::SaveAtEnd() {
    if (unloaded_) return;
    unloaded_ = true;
    tray_.RemoveTrayIcon();
    // Nobody uses the window any more, so it goes, and a held file is waited for longer: else the settings
    // would be lost.
    ShowWindow(Handle(), SW_HIDE);
    constexpr DWORD kEndPatience = 3000;  // milliseconds
    const config::LongPatience patience(kEndPatience);
    state_.StoreMoved();
    config::SaveSettings();
}

bool Glavni::KeyDown(WPARAM key, win::ShiftState shift) {
    switch (key) {
        case VK_TAB:
        case VK_HOME:
        case VK_END:
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN: win::ShowFocusMarks(); return false;
        case VK_F4:
            if (shift == win::kAlt) closeButtonCloses_ = true;
            return false;
        case VK_F2: rename_.Begin(); return true;
        case VK_ESCAPE:
            if (drag_.Ready()) {
                ReleaseCapture();
                return true;
            }
            if (!rename_.IsOpen()) return false;
            rename_.Abandon();
            return true;
        case VK_RETURN:
            if (GetFocus() != rename_.Box()) return false;
            rename_.Accept();
            return true;
        default: return false;
    }
}

}  // namespace app
