#include "app/button_commands.h"

#include <algorithm>
#include <vector>

#include "app/add_to_button.h"
#include "config/ini.h"
#include "config/settings.h"
#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "model/launching.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "sys/clipboard.h"
#include "sys/dropped_data.h"
#include "sys/file_operations.h"
#include "sys/utility.h"
#include "win/input_pause.h"
#include "win/process_start.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

/// A shortcut's name from a piece of its target; another piece where that one makes no name.
std::string NameFrom(const std::string& target, sys::PathPartCode part) {
    std::string name = model::StorableName(sys::PathPart(target, part));
    return name.empty() ? model::NameForTarget(target) : name;
}

std::string Inside(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + "\\" + name;
}

/// The extension of a file's own name: that of its folder's name does not count.
std::string FileExtension(const std::string& path) {
    return sys::PathPart(sys::PathPart(path, sys::kFileName), sys::kExtension);
}

/// False for a text that would lead into another folder, or that no file can be called.
bool CanBeFileName(const std::string& name) {
    return std::none_of(name.begin(), name.end(), [](char character) {
        return static_cast<unsigned char>(character) < ' ' ||
               std::string_view("\\/:*?\"<>|").find(character) != std::string_view::npos;
    });
}

void TellResult(int result) {
    dialogs::ShowNote(result == 0 ? "Operation completed." : "Couldn't perform the operation, sorry.");
}

}  // namespace

ButtonCommands::Place ButtonCommands::Here() const {
    return {state_.Context.CurrentButtonIndex, state_.Context.CurrentButtonKey};
}

void ButtonCommands::GoBackTo(const Place& place) {
    state_.Context.CurrentButtonIndex = place.index;
    state_.Context.CurrentButtonKey = place.key;
}

/// Asks by a window of the system, which lets events run: a drop makes another button the current one.
template <class Question>
auto ButtonCommands::Ask(Question question) {
    const Place place = Here();
    auto answer = [&] {
        const win::InputPause pause;
        return question();
    }();
    GoBackTo(place);
    return answer;
}

void ButtonCommands::Run(int command) {
    switch (command) {
        case kAddFile: AddPicked(false); break;
        case kAddFolder: AddPicked(true); break;
        case kGroup: EditGroup(); break;
        case kFree: Free(); break;
        case kProperties:
            if (const std::string path = state_.Current().FilePath; !path.empty())
                sys::clsBmenu::ShowProperties(path);
            break;
        case kFindTarget: FindTarget(); break;
        case kPaste: Paste(); break;
        case kChangeIcon: ChangeIcon(); break;
        default: break;
    }
}

void ButtonCommands::Add(const std::string& target, const std::string& name) {
    if (name.empty() || target.size() > config::kLongestValue) {
        dialogs::ShowNote(dialogs::kCouldNotMake);
        return;
    }
    std::string added = target;
    std::string under = name;
    std::string noSwitch;
    AddToButton(state_, added, under, noSwitch);
}

void ButtonCommands::AddPicked(bool folder) {
    const std::string path = Ask(folder ? &sys::clsBmenu::GetFolder : &sys::clsBmenu::GetFile);
    if (!path.empty()) Add(path, NameFrom(path, folder ? sys::kFileName : sys::kBareName));
}

void ButtonCommands::EditGroup() {
    const Place place = Here();
    const std::string name = state_.Current().Naziv;
    dock_.ShowQuon(true, true);
    dialogs::frmEditB editor(state_.Context);
    editor.PrepareWindow(name);
    editor.Show(owner_);
    GoBackTo(place);
    dock_.ShowQuon(true, true);
    // The editor knows the group, not the button: a free one, or one of two under the same name, is bound
    // here.
    const std::string& stored = editor.StoredName();
    if (!stored.empty() && model::RecordName(place.key, state_.Context.Records.At(place.key)) != stored)
        state_.Context.Write(place.key, stored + "|0");
    state_.RefreshCurrent();
    state_.NoteActivity();
    if (stored.empty()) return;
    RefreshNamesakes(name, stored);
    if (state_.RefillList) state_.RefillList();
}

void ButtonCommands::RefreshNamesakes(const std::string& before, const std::string& after) {
    for (int index = 1; index <= model::kButtonCount; ++index) {
        model::CButtonShortcut& button = state_.Button(index);
        if (index == state_.Context.CurrentButtonIndex || button.IsFree()) continue;
        if (win::EqualIgnoringCase(button.Naziv, before) || win::EqualIgnoringCase(button.Naziv, after))
            button.RefreshButton(model::ButtonKey(config::Settings.CurrentTab, index));
    }
}

void ButtonCommands::Free() {
    model::CButtonShortcut& button = state_.Current();
    if (button.IsFree()) return;
    const std::string name = button.Naziv;
    if (!button.Switch.empty()) config::RemoveRecord(model::kSwitchSection, name);
    config::RemoveRecord(model::kCutsSection, name);
    state_.TipButton = 0;
    button.DeleteShortcut(state_.Context.CurrentButtonKey, false);
    if (state_.RefillList) state_.RefillList();
}

void ButtonCommands::FindTarget() {
    const std::string& path = state_.Current().FilePath;
    if (!path.empty()) win::StartProcess("explorer /select," + path, SW_SHOWNORMAL);
}

void ButtonCommands::Paste() {
    const std::string text = sys::clsClipboard::GetText();
    if (text.empty()) {
        PasteFiles();
        return;
    }
    const std::string target = sys::FirstLine(text);
    if (CanBeOpened(target)) Add(target, NameFrom(target, sys::kBareName));
}

void ButtonCommands::PasteFiles() {
    std::vector<std::string> files = sys::clsClipboard::GetFiles();
    // A broken link has no target.
    std::erase(files, "");
    if (files.empty())
        dialogs::ShowNote("Couldn't read file path or URL from Clipboard.");
    else
        Add(win::Join(files, '|'), NameFrom(files.front(), sys::kBareName));
}

void ButtonCommands::Assign(const std::string& program) {
    if (!program.empty()) Add(program, NameFrom(program, sys::kBareName));
}

void ButtonCommands::ChangeIcon() {
    const std::string path = state_.Current().FilePath;
    if (path.empty()) return;
    const Place place = Here();
    dialogs::IcoChooser iChos;
    iChos.IconSelected = [&](std::int16_t icon) { ApplyIcon(place, icon); };
    iChos.ReadIcons(model::FindAssociatedExe(path));
    iChos.Show(owner_);
    GoBackTo(place);
}

void ButtonCommands::ApplyIcon(const Place& place, std::int16_t icon) {
    model::CButtonShortcut& button = state_.Button(place.index);
    button.FileIcon = icon;
    state_.TipButton = 0;
    state_.Context.Write(place.key, button.Naziv + "|" + std::to_string(icon));
    button.RefreshButton(place.key);
}

void ButtonCommands::RunFileCommand(int command) {
    if (state_.Current().FilePath.empty()) return;
    switch (command) {
        case kCopyTo: CopyFile(); break;
        case kMoveTo: MoveFile(); break;
        case kRename: RenameFile(); break;
        case kRecycle: RemoveFile(false); break;
        case kDelete: RemoveFile(true); break;
        default: break;
    }
}

int ButtonCommands::Operate(std::int16_t operation, const std::string& destination) {
    // A copy: whatever runs meanwhile may change the button.
    const std::string source = state_.Current().FilePath;
    return Ask([&] { return sys::clsBmenu::FileOperation(operation, source, destination); });
}

void ButtonCommands::CopyFile() {
    const std::string folder = Ask(&sys::clsBmenu::GetFolder);
    if (!folder.empty()) TellResult(Operate(sys::kCopyFile, folder));
}

void ButtonCommands::MoveFile() {
    const std::string folder = Ask(&sys::clsBmenu::GetFolder);
    if (folder.empty()) return;
    const std::string name = sys::PathPart(state_.Current().FilePath, sys::kFileName);
    const int result = Operate(sys::kMoveFile, folder);
    PointTo(Inside(folder, name));
    TellResult(result);
}

void ButtonCommands::RenameFile() {
    const std::string path = state_.Current().FilePath;
    const std::string extension = FileExtension(path);
    const Place place = Here();
    std::string name = dialogs::ShowMessage(
        "Enter new name for the file. If you don't specify the extension, old extension (" + extension +
            ") will be kept.)",
        2, "OK", "Cancel", "", true, "");
    GoBackTo(place);
    if (name.empty() || name == "Cancel") return;
    if (!CanBeFileName(name)) {
        TellResult(-1);
        return;
    }
    if (sys::PathPart(name, sys::kExtension).empty() && !extension.empty()) name += "." + extension;
    const std::string renamed = sys::PathPart(path, sys::kFolder) + "\\" + name;
    const int result = Operate(sys::kRenameFile, renamed);
    PointTo(renamed);
    TellResult(result);
}

/// The button follows its file, whatever the shell says. The record gets the path where others have a name.
void ButtonCommands::PointTo(const std::string& path) {
    model::CButtonShortcut& button = state_.Current();
    button.FilePath = path;
    state_.TipButton = 0;
    state_.Context.Write(state_.Context.CurrentButtonKey, path + "|" + std::to_string(button.FileIcon));
}

void ButtonCommands::RemoveFile(bool forGood) {
    // The shell's question must not come up behind the panel. The panel is topmost again once it is shown
    // anew.
    if (forGood) win::SetTopmost(false, owner_);
    const int result = Operate(forGood ? sys::kDeleteFile : sys::kRecycleFile, "");
    state_.TipButton = 0;
    state_.Current().DeleteShortcut(state_.Context.CurrentButtonKey, false);
    TellResult(result);
}

}  // namespace app
