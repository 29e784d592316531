#include "app/button_commands.h"

#include <algorithm>
#include <vector>

#include "app/add_to_button.h"
#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "model/button_record.h"
#include "model/launching.h"
#include "model/storable_name.h"
#include "sys/clipboard.h"
#include "sys/dropped_data.h"
#include "sys/file_operations.h"
#include "sys/target_state.h"
#include "sys/utility.h"
#include "win/input_pause.h"
#include "win/process_start.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

/// A shortcut's name from a piece of its target, or from another piece if that one makes no name.
std::string NameFrom(const std::string& target, sys::PathPartCode part) {
    const std::string name = model::StorableName(sys::PathPart(target, part));
    return name.empty() ? model::NameForTarget(target) : name;
}

std::string Inside(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + "\\" + name;
}

/// The extension of a file's own name; a "." in its folder's name does not count.
std::string FileExtension(const std::string& path) {
    return sys::PathPart(sys::PathPart(path, sys::kFileName), sys::kExtension);
}

/// The name that a file can get from a typed text: Windows drops the dots and blanks at a name's end.
std::string FileNameFrom(const std::string& typed) {
    const size_t last = typed.find_last_not_of(". ");
    return last == std::string::npos ? std::string() : typed.substr(0, last + 1);
}

/// False for a text that would lead into another folder, or that no file can be called.
bool CanBeFileName(const std::string& name) {
    return !name.empty() && std::none_of(name.begin(), name.end(), [](char character) {
        return static_cast<unsigned char>(character) < ' ' ||
               std::string_view("\\/:*?\"<>|").find(character) != std::string_view::npos;
    });
}

/// Asks by a window of the system; the panel keeps out of its way.
template <class Question>
auto Ask(Question question) {
    const win::InputPause pause;
    return question();
}

int Operate(std::int16_t operation, const std::string& source, const std::string& destination,
            bool* aborted = nullptr) {
    return Ask([&] { return sys::clsBmenu::FileOperation(operation, source, destination, aborted); });
}

bool IsFound(sys::TargetKind kind) {
    return kind == sys::TargetKind::kFile || kind == sys::TargetKind::kFolder;
}

/// Whether a file has got from one path to another, as far as can be seen. `done` is what the shell says; it
/// reports success also when the user did not let a file be overwritten, and then both files are there.
bool HasMoved(const std::string& from, const std::string& to, bool done) {
    using sys::TargetKind;
    const TargetKind there = sys::LookAtTarget(to).kind;
    if (there == TargetKind::kMissing) return false;
    if (win::EqualIgnoringCase(from, to)) return done;
    const TargetKind left = sys::LookAtTarget(from).kind;
    if (IsFound(left)) return false;
    // About a place that does not answer, the shell knows more. If the file is gone from its old place,
    // nothing more can be known.
    return done || (IsFound(there) && left == TargetKind::kMissing);
}

constexpr int kNotTried = -1;  ///< instead of the shell's result

void TellResult(int result) {
    dialogs::ShowNote(result == 0 ? "Operation completed." : "Couldn't perform the operation, sorry.");
}

}  // namespace

void ButtonCommands::Run(int command, const Place& place) {
    const model::CButtonShortcut* button = state_.ShownAt(place);
    if (button == nullptr) return;
    // A copy: what a command opens lets messages run.
    const std::string path = button->FilePath;
    switch (command) {
        case kAddFile: AddPicked(place, false); break;
        case kAddFolder: AddPicked(place, true); break;
        case kGroup: EditGroup(place); break;
        case kFree: Free(place); break;
        case kProperties:
            if (!path.empty()) sys::clsBmenu::ShowProperties(path);
            break;
        case kFindTarget:
            if (!path.empty()) win::StartProcess("explorer /select," + path, SW_SHOWNORMAL);
            break;
        case kPaste: Paste(place); break;
        case kChangeIcon: ChangeIcon(place); break;
        default: break;
    }
}

void ButtonCommands::Add(const Place& place, const std::string& target, const std::string& name) {
    if (name.empty() || !model::IsStorableTarget(target)) {
        dialogs::ShowNote(dialogs::kCouldNotMake);
        return;
    }
    std::string added = target;
    std::string under = name;
    std::string noSwitch;
    AddToButton(state_, place, added, under, noSwitch);
}

void ButtonCommands::AddPicked(const Place& place, bool folder) {
    const std::string path = Ask(folder ? &sys::clsBmenu::GetFolder : &sys::clsBmenu::GetFile);
    if (!path.empty()) Add(place, path, NameFrom(path, folder ? sys::kFileName : sys::kBareName));
}

void ButtonCommands::EditGroup(const Place& place) {
    const std::string name = state_.Button(place.slot).Naziv;
    dock_.ShowQuon(true, true);
    dialogs::frmEditB editor(state_.Context);
    if (!editor.PrepareWindow(name)) return;
    editor.Show(owner_);
    dock_.ShowQuon(true, true);
    // The editor knows the group, not the button: a free one is bound here.
    const std::string& stored = editor.StoredName();
    const std::string record = state_.Context.Records.At(place.Key());
    if (!stored.empty() && model::ButtonRecord::Parse(place, record).name != stored &&
        !state_.Store().PutRecord(place, model::ButtonRecord{stored, 0}.Text()))
        dialogs::ShowNote(dialogs::kCouldNotMake);
    if (stored.empty())
        state_.RefreshNamed({}, place);
    else
        state_.ShowChanged({name, stored}, place);
    state_.NoteActivity();
}

void ButtonCommands::Free(const Place& place) {
    model::CButtonShortcut* button = state_.ShownAt(place);
    if (button == nullptr || button->IsFree()) return;
    const std::string name = button->Naziv;
    // Whether a button that could not be read has a switch is not known.
    const bool hasSwitch = !button->Switch.empty() || button->IsUnread();
    if (!state_.Store().RemoveWithButton(place, name, hasSwitch)) return;
    button->BecomeFree(false);
    state_.ShowChanged({name});
}

void ButtonCommands::Paste(const Place& place) {
    const std::string text = sys::clsClipboard::GetText();
    if (text.empty()) {
        PasteFiles(place);
        return;
    }
    const std::string target = sys::FirstLine(text);
    if (CanBeOpened(target)) Add(place, model::StorableTarget(target), NameFrom(target, sys::kBareName));
}

void ButtonCommands::PasteFiles(const Place& place) {
    std::vector<std::string> files = sys::clsClipboard::GetFiles();
    // A broken link has no target.
    std::erase(files, "");
    if (files.empty()) {
        dialogs::ShowNote("Couldn't read file path or URL from Clipboard.");
        return;
    }
    // A link may lead to a URL.
    std::transform(files.begin(), files.end(), files.begin(), &model::StorableTarget);
    Add(place, win::Join(files, '|'), NameFrom(files.front(), sys::kBareName));
}

void ButtonCommands::Assign(const std::string& program, const Place& place) {
    if (!program.empty()) Add(place, program, NameFrom(program, sys::kBareName));
}

void ButtonCommands::ChangeIcon(const Place& place) {
    const std::string path = state_.Button(place.slot).FilePath;
    const std::string name = state_.Button(place.slot).Naziv;
    if (path.empty()) return;
    dialogs::IcoChooser iChos;
    iChos.IconSelected = [&](std::int16_t icon) { iChos_IconSelected(place, name, icon); };
    iChos.ReadIcons(model::FindAssociatedExe(path));
    iChos.Show(owner_);
}

void ButtonCommands::iChos_IconSelected(const Place& place, const std::string& name, std::int16_t icon) {
    model::CButtonShortcut* button = state_.ShownAt(place);
    // Something else may have been put onto the button meanwhile.
    if (button == nullptr || button->Naziv != name) return;
    if (!state_.Store().PutRecord(place, model::ButtonRecord{name, icon}.Text())) return;
    button->FileIcon = icon;
    state_.RefreshNamed({}, place);
}

void ButtonCommands::RunFileCommand(int command, const Place& place) {
    const model::CButtonShortcut* button = state_.ShownAt(place);
    if (button == nullptr || button->FilePath.empty()) return;
    const File file{place, button->FilePath, button->Naziv, state_.Context.Records.At(place.Key()),
                    button->FileIcon};
    switch (command) {
        case kCopyTo: CopyFile(file); break;
        case kMoveTo: MoveFile(file); break;
        case kRename: RenameFile(file); break;
        case kRecycle: RemoveFile(file, false); break;
        case kDelete: RemoveFile(file, true); break;
        default: break;
    }
}

void ButtonCommands::CopyFile(const File& file) {
    const std::string folder = Ask(&sys::clsBmenu::GetFolder);
    if (!folder.empty()) TellResult(Operate(sys::kCopyFile, file.path, folder));
}

void ButtonCommands::MoveFile(const File& file) {
    const std::string folder = Ask(&sys::clsBmenu::GetFolder);
    if (folder.empty()) return;
    const std::string moved = Inside(folder, sys::PathPart(file.path, sys::kFileName));
    if (!model::IsStorableTarget(moved)) {
        // The button could not follow its file there.
        TellResult(kNotTried);
        return;
    }
    bool aborted = false;
    const int result = Operate(sys::kMoveFile, file.path, folder, &aborted);
    PointTo(file, moved, result == 0 && !aborted);
    TellResult(result);
}

void ButtonCommands::RenameFile(const File& file) {
    const std::string extension = FileExtension(file.path);
    const std::string answer = dialogs::ShowMessage(
        "Enter new name for the file. If you don't specify the extension, old extension (" + extension +
            ") will be kept.)",
        2, "OK", "Cancel", "", true, "");
    if (answer.empty() || answer == "Cancel") return;
    std::string name = FileNameFrom(answer);
    const bool canBeName = CanBeFileName(name);
    if (sys::PathPart(name, sys::kExtension).empty() && !extension.empty()) name += "." + extension;
    const std::string renamed = sys::PathPart(file.path, sys::kFolder) + "\\" + name;
    if (!canBeName || !model::IsStorableTarget(renamed)) {
        TellResult(kNotTried);
        return;
    }
    bool aborted = false;
    const int result = Operate(sys::kRenameFile, file.path, renamed, &aborted);
    PointTo(file, renamed, result == 0 && !aborted);
    TellResult(result);
}

/// The button follows its file whatever the shell says; the shortcut follows if the file has arrived.
void ButtonCommands::PointTo(const File& file, const std::string& path, bool done) {
    // Something else may have been put onto the button meanwhile.
    if (state_.Context.Records.At(file.place.Key()) != file.record) return;
    const bool isThere = HasMoved(file.path, path, done);
    const bool stored =
        state_.Follow({file.place, file.icon, file.name, path, isThere, file.path, file.record});
    state_.TipButton = 0;
    auto* button = state_.ShownAt(file.place);
    if (button != nullptr && (stored || isThere)) button->FilePath = path;
    // A button whose file stayed where it was must not be renamed or carried on with a path where nothing is.
    if (stored && (isThere || sys::LookAtTarget(file.path).kind != sys::TargetKind::kMissing))
        state_.ShowChanged({file.name, path}, file.place);
}

void ButtonCommands::RemoveFile(const File& file, bool forGood) {
    // The shell's question must not come up behind the panel. The panel is topmost again once it is shown
    // anew.
    if (forGood) win::SetTopmost(false, owner_);
    const int result = Operate(forGood ? sys::kDeleteFile : sys::kRecycleFile, file.path, "");
    // Something else may have been put onto the button meanwhile.
    if (state_.Context.Records.At(file.place.Key()) == file.record) {
        state_.TipButton = 0;
        model::CButtonShortcut hidden(state_.Context, nullptr);
        auto* shown = state_.ShownAt(file.place);
        (shown != nullptr ? *shown : hidden).DeleteShortcut(file.place.Key(), shown == nullptr);
        state_.RefreshNamed({file.name});
    }
    TellResult(result);
}

}  // namespace app
