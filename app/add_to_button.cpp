#include "app/add_to_button.h"

#include <optional>

#include "config/ini.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "model/button_record.h"
#include "model/storable_name.h"
#include "sys/shell_link.h"
#include "sys/target_state.h"
#include "sys/utility.h"
#include "win/text.h"

namespace app {
namespace {

/// What a button holds, whichever tab it is on.
struct Held {
    std::string name;
    std::string target;  ///< "" where it could not be read
};

/// No value for a free button.
std::optional<Held> HeldAt(PanelState& state, const model::ButtonPlace& place) {
    if (const auto* button = state.ShownAt(place)) {
        if (button->IsFree()) return std::nullopt;
        return Held{button->Naziv, button->FilePath};
    }
    const std::string& record = state.Context.Records.At(place.Key());
    if (record.empty()) return std::nullopt;
    const std::string name = model::ButtonRecord::Parse(place, record).name;
    return Held{name, model::ShortcutStore::Target(name).value_or("")};
}

/// A shortcut on its way to a button; the user's answer may make it a group.
struct Addition {
    std::string& target;
    std::string& name;
    bool group = false;
};

/// Adds the target to what the button holds by now. False when that cannot be read, or becomes too long to be
/// read back.
bool JoinGroup(PanelState& state, const model::ButtonPlace& place, const std::string& typedName,
               Addition& addition) {
    const Held held = HeldAt(state, place).value_or(Held{});
    const auto members = model::ShortcutStore::WholeTarget(held.name, held.target);
    if (!members || members->empty()) return false;
    if (members->size() + 1 + addition.target.size() > config::kLongestValue) return false;
    addition.target = *members + "|" + addition.target;
    const std::string storable = model::StorableName(typedName);
    addition.name = storable.empty() ? held.name : storable;
    addition.group = true;
    return true;
}

/// Asks what to do with a used button. Returns false for "Cancel", for a closed question, and for a group
/// that cannot be made.
bool AskReplaceOrGroup(PanelState& state, const model::ButtonPlace& place, Addition& addition) {
    const auto held = HeldAt(state, place);
    if (!held) return true;
    const std::string answer =
        dialogs::ShowMessage("Do you want to replace the shortcut or create a group?\r\n(Enter group name)",
                             3, "Create group", "Replace", "Cancel", true, held->name);
    if (answer.empty() || answer == "Cancel") return false;
    if (answer == "Replace" || answer == "Create group") return true;
    if (JoinGroup(state, place, answer, addition)) return true;
    dialogs::ShowNote(dialogs::kCouldNotMake);
    return false;
}

/// Stores a shortcut on a button, and frees the button that it comes from.
bool StoreOnButton(PanelState& state, const model::ButtonPlace& place, const Addition& addition,
                   const std::string& commandSwitch, const std::optional<model::ButtonPlace>& source) {
    if (!state.Store().Assign(
            {place, addition.name, addition.target, addition.group ? "" : commandSwitch, source})) {
        dialogs::ShowNote(dialogs::kCouldNotMake);
        return false;
    }
    if (source && source != place)
        if (auto* freed = state.ShownAt(*source)) freed->BecomeFree(false);
    if (addition.group && !commandSwitch.empty())
        dialogs::ShowNote(
            "This shortcut has command switch. Quon will add it to the group, but you can use command "
            "switches only on non group buttons.");
    state.ShowChanged({addition.name}, place);
    return true;
}

}  // namespace

bool CanBeOpened(const std::string& target) {
    return sys::IsUrl(target) || sys::LookAtTarget(target).kind != sys::TargetKind::kMissing;
}

bool AddToButton(PanelState& state, const model::ButtonPlace& place, std::string& target, std::string& name,
                 std::string& commandSwitch) {
    Addition addition{target, name};
    return AskReplaceOrGroup(state, place, addition) &&
           StoreOnButton(state, place, addition, commandSwitch, std::nullopt);
}

DroppedShortcut ShortcutFromDrop(const sys::DroppedData& data) {
    DroppedShortcut shortcut;
    if (data.isText) {
        shortcut.target = sys::FirstLine(data.value);
    } else {
        const std::string resolved = sys::ReadLinkTarget(data.value);
        shortcut.target = win::Before(resolved, '|');
        shortcut.commandSwitch = win::After(resolved, '|');
        shortcut.switchTooLong = shortcut.commandSwitch.size() > config::kLongestValue;
        if (shortcut.switchTooLong) shortcut.commandSwitch.clear();
    }
    shortcut.name = model::NameForTarget(shortcut.target);
    shortcut.target = model::StorableTarget(shortcut.target);
    return shortcut;
}

void TellOfSwitch(const DroppedShortcut& shortcut) {
    if (shortcut.switchTooLong)
        dialogs::ShowNote("The command switch of this shortcut is too long. Quon has left it out.");
}

void DropOnButton(PanelState& state, const model::ButtonPlace& place, const sys::DroppedData& data) {
    state.Select(place);
    DroppedShortcut shortcut = ShortcutFromDrop(data);
    if (shortcut.name.empty() || !model::IsStorableTarget(shortcut.target) || !CanBeOpened(shortcut.target))
        dialogs::ShowNote(dialogs::kCouldNotMake);
    else if (AddToButton(state, place, shortcut.target, shortcut.name, shortcut.commandSwitch))
        TellOfSwitch(shortcut);
    state.NoteActivity();
}

void MoveToButton(PanelState& state, const model::ButtonPlace& place, const DragSource& source) {
    state.Select(place);
    const std::string from = source.Place.Key();
    const std::string record = state.Context.Records.At(from);
    const auto whole = model::ShortcutStore::WholeTarget(source.Naziv, source.FilePath);
    if (!whole || whole->empty()) return;
    std::string target = *whole;
    std::string name = source.Naziv;
    Addition addition{target, name};
    if (place != source.Place && !AskReplaceOrGroup(state, place, addition)) return;
    // While the question was open, something else may have been put onto the source.
    if (state.Context.Records.At(from) == record)
        StoreOnButton(state, place, addition, source.Switch, source.Place);
}

}  // namespace app
