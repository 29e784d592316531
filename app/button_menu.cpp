#include "app/button_menu.h"

#include "config/settings.h"
#include "res/resource.h"
#include "sys/process_list.h"

namespace app {
namespace {

constexpr const char* kNoProcess = "Item1";

win::MenuItem Caption(const char* caption) { return {caption, {}}; }

}  // namespace

ButtonMenu::ButtonMenu(PanelState& state, EdgeDock& dock)
    : mnuButton(IDM_BUTTON, {Caption("Add file to button"), Caption("Add folder to button"),
                             Caption("Add group to button"), Caption("-"), Caption("Free button"),
                             Caption("-"), Caption("Show file properties"), Caption("Find target"),
                             Caption("-"), Caption("Assign from active"), Caption("File operations"),
                             Caption("Paste from clipboard"), Caption("Change icon")}),
      mnuButAct(IDM_ACTIVE, {Caption(kNoProcess)}),
      mnuButB(IDM_FILE_OPERATIONS,
              {Caption("Copy file to..."), Caption("Move file to..."), Caption("Rename file"), Caption("-"),
               Caption("Move to Recycle bin"), Caption("Delete file")}),
      state_(state),
      commands_(state, dock) {
    mnuButton[kAssignFromActive].submenu = &mnuButAct;
    mnuButton[kFileOperations].submenu = &mnuButB;
}

void ButtonMenu::Prepare(const model::ButtonPlace& place) {
    const bool group = state_.Button(place.slot).Group;
    mnuButton[kGroup].caption = group ? "Edit group" : "Add group to button";
    for (const int command : {kProperties, kFindTarget, kFileOperations, kChangeIcon})
        mnuButton[command].enabled = !group;
    ListActivePrograms();
}

void ButtonMenu::ListActivePrograms() {
    while (mnuButAct.Count() > 1)
        mnuButAct.Unload(mnuButAct.Count() - 1);
    mnuButAct[0].caption = kNoProcess;
    mnuButAct[0].tag.clear();
    sys::clsProcesi programs(mnuButAct, config::Settings.TaskbarProcessesOnly, GetCurrentProcessId());
    programs.Refresh();
    mnuButton[kAssignFromActive].enabled = programs.MenuCount() > 0;
}

void ButtonMenu::PopUp(const model::ButtonPlace& place, POINT at) {
    Prepare(place);
    Run(win::TrackMenu(*mnuButtonParent.submenu, at, owner_), place);
}

void ButtonMenu::Run(int command, const model::ButtonPlace& place) {
    if (const auto index = mnuButton.IndexOf(command)) commands_.Run(*index, place);
    if (const auto index = mnuButB.IndexOf(command)) commands_.RunFileCommand(*index, place);
    if (const auto index = mnuButAct.IndexOf(command)) commands_.Assign(mnuButAct[*index].tag, place);
}

}  // namespace app
