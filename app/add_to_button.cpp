#include "app/add_to_button.h"

#include <windows.h>

#include <shlwapi.h>

#include "config/ini.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "sys/shell_link.h"
#include "sys/utility.h"
#include "win/text.h"

namespace app {
namespace {

/// Asks what to do with a used button. Returns false for "Cancel", for a closed question, and for a group
/// that would grow longer than can be read back.
bool AskReplaceOrGroup(model::CButtonShortcut& button, std::string& target, std::string& name) {
    const std::string answer =
        dialogs::ShowMessage("Do you want to replace the shortcut or create a group?\r\n(Enter group name)",
                             3, "Create group", "Replace", "Cancel", true, button.Naziv);
    if (answer.empty() || answer == "Cancel") return false;
    if (answer == "Replace" || answer == "Create group") {
        button.Group = false;
        return true;
    }
    if (button.FilePath.size() + 1 + target.size() > config::kLongestValue) {
        dialogs::ShowNote(dialogs::kCouldNotMake);
        return false;
    }
    target = button.FilePath + "|" + target;
    button.Group = true;
    const std::string storable = model::StorableName(answer);
    name = storable.empty() ? button.Naziv : storable;
    return true;
}

}  // namespace

bool CanBeOpened(const std::string& target) {
    return model::IsStorableTarget(target) && (sys::IsUrl(target) || PathFileExistsA(target.c_str()) != 0);
}

bool AddToButton(PanelState& state, std::string& target, std::string& name, std::string& commandSwitch) {
    const std::string key = state.Context.CurrentButtonKey;
    model::CButtonShortcut& button = state.Current();
    if (!button.IsFree() && !AskReplaceOrGroup(button, target, name)) return false;
    config::WriteIni(model::kCutsSection, name, target);
    state.Context.Write(key, name + "|0");
    if (!commandSwitch.empty()) {
        if (button.Group) {
            dialogs::ShowNote(
                "This shortcut has command switch. Quon will add it to the group, but you can use command "
                "switches only on non group buttons.");
        } else {
            config::WriteIni(model::kSwitchSection, name, model::StorableSwitch(commandSwitch));
        }
    }
    state.TipButton = 0;
    button.RefreshButton(key);
    if (state.RefillList) state.RefillList();
    return true;
}

DroppedShortcut ShortcutFromDrop(const sys::DroppedData& data) {
    DroppedShortcut shortcut;
    if (data.isText) {
        shortcut.target = sys::FirstLine(data.value);
    } else {
        const std::string resolved = sys::ReadLinkTarget(data.value);
        shortcut.target = win::Before(resolved, '|');
        shortcut.commandSwitch = win::After(resolved, '|');
    }
    shortcut.name = model::NameForTarget(shortcut.target);
    return shortcut;
}

void DropOnButton(PanelState& state, int index, const sys::DroppedData& data) {
    state.Context.Select(index);
    DroppedShortcut shortcut = ShortcutFromDrop(data);
    if (shortcut.target.empty() || shortcut.name.empty() || !CanBeOpened(shortcut.target))
        dialogs::ShowNote(dialogs::kCouldNotMake);
    else
        AddToButton(state, shortcut.target, shortcut.name, shortcut.commandSwitch);
    state.NoteActivity();
}

void MoveToButton(PanelState& state, int index, const DragSource& source) {
    const std::string record = state.Context.Records.At(source.Key);
    const int sourceIndex = source.Key.back() - '0';
    const bool shown = source.Key.front() - '0' == config::Settings.CurrentTab;
    // On the shown tab the source is freed through its own object, so that it knows it is free when it is
    // the target as well.
    model::CButtonShortcut spare(state.Context, state.RefillList);
    (shown ? state.Button(sourceIndex) : spare).DeleteShortcut(source.Key, !shown);
    state.Context.Select(index);
    std::string target = model::WholeTarget(source.Naziv, source.FilePath);
    std::string name = source.Naziv;
    std::string commandSwitch = source.Switch;
    if (AddToButton(state, target, name, commandSwitch)) return;
    // The question was cancelled: the source gets back what it held.
    state.Context.Write(source.Key, record);
    if (shown) state.Button(sourceIndex).RefreshButton(source.Key);
}

}  // namespace app
