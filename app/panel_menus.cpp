#include "app/panel_menus.h"

#include <string>
#include <vector>

#include "app/panel_layout.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "model/launching.h"
#include "model/text_shortcut.h"
#include "res/resource.h"
#include "sys/shell_folders.h"
#include "sys/utility.h"
#include "win/colors.h"
#include "win/handles.h"
#include "win/icons.h"
#include "win/process_start.h"
#include "win/shell_call.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

enum Predefined { kBrowser = 0, kMail = 1, kNewMail = 2, kControlPanel = 4, kUptime = 5 };
enum Setting { kOrganize = 0, kOptions = 1, kExtensiveTooltips = 3, kAbout = 5 };
constexpr int kGoButton = 3;
constexpr DWORD kHidePause = 200;  // milliseconds
constexpr int kPictureSize = 20;   // layout pixels

struct ImageButton {
    int icon;
    const char* meaning;
    const char* tip;
};

constexpr std::array<ImageButton, 4> kImageButtons{
    {{IDI_SHELL, "Folders and drives", "Opens a folder or a drive."},
     {IDI_PREDEFINED, "Predefined commands", "Starts the browser, mail and more."},
     {IDI_SETTINGS, "Settings", "Shortcuts, options and tooltips."},
     {IDI_GO, "Open shortcut", "Opens what is chosen or typed beside it."}}};

win::MenuItem Caption(const char* caption) { return {caption, {}}; }

bool IsArchivedFile(DWORD attributes) {
    return (attributes & (FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_DIRECTORY)) == FILE_ATTRIBUTE_ARCHIVE;
}

/// The pattern "*.exe" finds short names too, such as the one of "Tool.exe-old".
bool IsProgram(const std::string& name) {
    constexpr std::string_view kEnding = ".exe";
    return name.size() >= kEnding.size() &&
           win::EqualIgnoringCase(std::string_view(name).substr(name.size() - kEnding.size()), kEnding);
}

/// The bare name, or the whole one where the bare name would be no caption or mean a separator.
std::string ProgramCaption(const std::string& name) {
    const std::string bare = sys::PathPart(name, sys::kBareName);
    return bare.empty() || bare == "-" ? name : bare;
}

/// In layout pixels.
RECT ImageButtonPlace(int index) {
    if (index == kGoButton)
        return layout::At(layout::kClientWidth - layout::kMargin - layout::kGoWidth, layout::kShortcutsTop,
                          layout::kGoWidth, layout::kShortcutsHeight);
    return layout::At(layout::kMargin + index * layout::kImageButtonStep, layout::kImageButtonTop,
                      layout::kImageButtonSize, layout::kImageButtonSize);
}

/// Flat at rest, raised under the pointer, sunken while pressed.
void DrawButtonEdge(const win::PictureBox& button, HDC dc, RECT all) {
    if (button.Pressed())
        DrawEdge(dc, &all, BDR_SUNKENOUTER, BF_RECT);
    else if (button.Hovered())
        DrawEdge(dc, &all, BDR_RAISEDINNER, BF_RECT);
}

}  // namespace

PanelMenus::PanelMenus(EdgeDock& dock)
    : mnuShell(IDM_SHELL, {Caption("My Computer")}),
      mnuPreDef(IDM_PREDEFINED, {Caption("Launch default browser"), Caption("Launch default mail client"),
                                 Caption("Write new mail"), Caption("-"), Caption("Launch Control Panel"),
                                 Caption("Shows Windows uptime")}),
      mnuSettings(IDM_SETTINGS, {Caption("Organize shortcuts"), Caption("Options"), Caption("-"),
                                 Caption("Extensive tooltips"), Caption("-"), Caption("About")}),
      dock_(dock) {}

void PanelMenus::CreateOn(HWND parent) {
    owner_ = parent;
    const win::Scale scale = win::Scale::Of(parent);
    for (int index = 0; index < static_cast<int>(iBut_.size()); ++index)
        CreateImageButton(parent, index, scale(ImageButtonPlace(index)));
}

void PanelMenus::Rescale() {
    const win::Scale scale = win::Scale::Of(owner_);
    for (int index = 0; index < static_cast<int>(iBut_.size()); ++index) {
        const auto slot = static_cast<size_t>(index);
        iBut_.at(slot).Rescale(scale(ImageButtonPlace(index)));
        DrawImage(index);
        // The tool of a tip has the size that its button had.
        if (tips_.at(slot).Handle() != nullptr) tips_.at(slot).Create();
    }
}

void PanelMenus::DrawImage(int index) {
    const auto slot = static_cast<size_t>(index);
    const win::PictureBox& button = iBut_.at(slot);
    const win::Scale& scale = button.PictureScale();
    const int size = scale(kPictureSize);
    const int icon = kImageButtons.at(slot).icon;
    const win::Icon picture = win::IsDark(GetSysColor(COLOR_BTNFACE)) ? win::DataIcon(icon + IDI_LIGHT, size)
                                                                      : win::ResourceIcon(icon, size);
    const RECT all = button.ClientRect();
    DrawIconEx(button.Dc(), (all.right - size) / 2, (all.bottom - size) / 2, picture.Get(), size, size, 0,
               nullptr, DI_NORMAL);
}

void PanelMenus::CreateImageButton(HWND parent, int index, RECT place) {
    const auto slot = static_cast<size_t>(index);
    win::PictureBox& button = iBut_.at(slot);
    const ImageButton& what = kImageButtons.at(slot);
    button.CreateOn(parent, IDC_IMAGE_BUTTON + index, place);
    button.SetMeaning(what.meaning);
    DrawImage(index);
    button.onOverlay = [&button](HDC dc, RECT all) { DrawButtonEdge(button, dc, all); };
    button.onClick = [this, index] { PopUp(index); };
    button.onKeyDown = [this, index](WPARAM key) { return OnKey(index, key); };
    sys::clsToolTip& tip = tips_.at(slot);
    tip.SetTitle(what.meaning);
    tip.SetTipText(what.tip);
    tip.SetParentControl(button.Handle());
    // Four tooltip windows would take a good part of the start, so each is made when the pointer first comes.
    button.onMouseMove = [&tip](const win::PictureBox::Mouse&) {
        if (tip.Handle() == nullptr) tip.Create();
    };
}

bool PanelMenus::OnKey(int button, WPARAM key) {
    const int count = static_cast<int>(iBut_.size());
    switch (key) {
        case VK_RETURN:
        case VK_SPACE: PopUpByKey(button); return true;
        case VK_LEFT: FocusOn((button + count - 1) % count); return true;
        case VK_RIGHT: FocusOn((button + 1) % count); return true;
        default: return false;
    }
}

void PanelMenus::PopUpByKey(int button) {
    // The key's character is already in the queue; the menu would take it for a choice and close.
    MSG character{};
    PeekMessageW(&character, iBut_.at(static_cast<size_t>(button)).Handle(), WM_CHAR, WM_CHAR, PM_REMOVE);
    PopUp(button);
}

void PanelMenus::FocusOn(int button) { SetFocus(iBut_.at(static_cast<size_t>(button)).Handle()); }

void PanelMenus::AddCompanionPrograms() {
    const std::string folder = win::ProgramFolder();
    WIN32_FIND_DATAA found{};
    std::vector<std::string> names;
    const win::FindFiles listing(FindFirstFileA((folder + "\\*.exe").c_str(), &found));
    for (BOOL more = listing ? TRUE : FALSE; more != FALSE; more = FindNextFileA(listing.Get(), &found))
        if (IsArchivedFile(found.dwFileAttributes) && IsProgram(found.cFileName))
            names.emplace_back(found.cFileName);
    for (const std::string& name : names) {
        if (name == "Quon.exe") continue;
        win::MenuItem& item = mnuPreDef.Load(mnuPreDef.Count());
        item.caption = ProgramCaption(name);
        item.tag = folder;
        item.tag.append("\\").append(name);
    }
}

void PanelMenus::ShowTooltipSetting() {
    mnuSettings[kExtensiveTooltips].checked = config::Settings.ExtensiveTooltips;
}

void PanelMenus::PopUp(int button) {
    if (button == kGoButton) {
        if (onGo) onGo();
        return;
    }
    RECT place{};
    GetWindowRect(iBut_.at(static_cast<size_t>(button)).Handle(), &place);
    const std::array parents{&mnuShellParent, &mnuPreDefParent, &mnuSettingsParent};
    const win::MenuArray& menu = *parents.at(static_cast<size_t>(button))->submenu;
    // Drives come and go, so the list is made anew at each opening.
    if (&menu == &mnuShell) sys::clsShell::ListShellFolders(mnuShell);
    for (sys::clsToolTip& tip : tips_)
        tip.Activate(false);
    const int command = win::TrackMenu(menu, {place.left, place.bottom}, owner_);
    for (sys::clsToolTip& tip : tips_)
        tip.Activate(true);
    // Decided by the menu that was shown: with many companion programs the menus' numbers overlap.
    const auto index = menu.IndexOf(command);
    if (!index) return;
    if (&menu == &mnuShell)
        Explore(*index);
    else if (&menu == &mnuPreDef)
        RunPredefined(*index);
    else
        RunSetting(*index);
}

void PanelMenus::RunPredefined(int index) {
    int showCommand = SW_SHOWNORMAL;
    std::string target = model::DefaultBrowserPath;
    switch (index) {
        case kBrowser: model::LaunchTarget(target, false, showCommand, ""); break;
        case kMail: model::CTextShortcut::LauchMail(); break;
        case kControlPanel:
            win::StartProcess("rundll32.exe url.dll,FileProtocolHandler control", SW_SHOWNORMAL);
            break;
        case kUptime:
            dialogs::ShowNote("Windows is running for: \r\n" + model::CTextShortcut::HowLong());
            return;
        case kNewMail:
            win::OpenInShell(nullptr, "mailto:user@server", nullptr, win::ProgramRoot().c_str(),
                             SW_SHOWNORMAL);
            break;
        default:
            target = mnuPreDef[index].tag;
            showCommand = 0;
            model::LaunchTarget(target, false, showCommand, "");
            break;
    }
    if (!config::Settings.HideAfterLaunch) return;
    Sleep(kHidePause);
    dock_.ShowQuon(false, false);
}

void PanelMenus::Explore(int index) {
    win::OpenInShell("explore", mnuShell[index].tag.c_str(), nullptr, win::ProgramRoot().c_str(),
                     SW_SHOWNORMAL);
}

void PanelMenus::RunSetting(int index) {
    win::MenuItem& tooltips = mnuSettings[kExtensiveTooltips];
    switch (index) {
        case kOrganize:
            dock_.ShowQuon(false, false);
            if (onOrganize) onOrganize();
            break;
        case kOptions:
            if (onOptions) onOptions();
            break;
        case kExtensiveTooltips:
            tooltips.checked = !tooltips.checked;
            config::Settings.ExtensiveTooltips = tooltips.checked;
            break;
        case kAbout: dialogs::frmMsg().AboutQuon(); break;
        default: break;
    }
}

}  // namespace app
