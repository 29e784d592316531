#include "model/button_shortcut.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "config/file_state.h"
#include "config/ini.h"
#include "model/button_record.h"
#include "model/shortcut_store.h"
#include "model/target_icon.h"
#include "win/icons.h"
#include "win/text.h"

namespace model {
namespace {

// Layout pixels.
constexpr POINT kIconPlace{35, 8};
constexpr int kIconSize = 32;
constexpr int kCaptionTop = 56;
constexpr int kTwoLineCaptionTop = 44;
constexpr int kCaptionHeight = 30;
constexpr UINT kCentredWrapped = DT_CENTER | DT_WORDBREAK;

/// The buttons' records in the file, read all at once when one is first asked for: a tab of free buttons
/// costs one read.
class StoredRecords {
  public:
    /// False when the file holds nothing under this key; true also where that cannot be told.
    bool MayHold(const std::string& key) {
        if (!std::exchange(asked_, true)) {
            const auto text = config::TryReadIniSection(kButtonsSection);
            isWhole_ = text && !config::WasCut(*text);
            entries_ = config::SectionEntries(text.value_or(""));
        }
        const std::string nothing = key + "=";
        return !isWhole_ || std::any_of(entries_.begin(), entries_.end(), [&](const std::string& entry) {
            return entry.starts_with(nothing) && entry != nothing;
        });
    }

  private:
    bool asked_ = false;
    bool isWhole_ = false;
    std::vector<std::string> entries_;
};

}  // namespace

CButtonShortcut::CButtonShortcut(ButtonContext& context, std::function<void()> refillList)
    : context_(context), refillList_(std::move(refillList)) {}

void CButtonShortcut::SetParentButton(win::PictureBox* box) {
    box_ = box;
    DrawButton();
}

/// What a refresh has found out about a button.
struct CButtonShortcut::Reading {
    enum class Fate : std::uint8_t {
        kFree,      ///< it holds nothing
        kDangling,  ///< its shortcut is not stored
        kGone,      ///< its target is gone
        kShown,     ///< it is as its record says
        kUnread,    ///< the file could not be read
        kMoved      ///< its file was moved, which is not stored yet
    };

    ButtonPlace place;
    std::string record;
    ButtonRecord names;
    Fate fate = Fate::kFree;
    std::string target;
    bool group = false;
    std::string commandSwitch;
    sys::TargetState state;
    int refresh = 0;

    [[nodiscard]] bool Frees() const { return fate <= Fate::kGone; }
    /// The shortcut that goes together with a dangling record: the one named by the record's whole text. The
    /// record "Group" stands for a group under the button's own key, so the user's shortcut of that name
    /// stays.
    [[nodiscard]] std::string DanglingShortcut() const {
        return fate == Fate::kDangling && names.name != place.Key() ? record : std::string();
    }
};

void CButtonShortcut::RefreshButton(const std::string& key) { RefreshButtons({{this, key}}); }

void CButtonShortcut::RefreshButtons(const std::vector<Refresh>& refreshes) {
    if (refreshes.empty()) return;
    const win::Hourglass hourglass;
    sys::SilentPlaces silent;
    std::vector<Reading> readings;
    std::vector<ShortcutStore::Freeing> freed;
    StoredRecords stored;
    // Before anything is read: what another program has written only in part so far frees no button, also
    // when the rest of it comes in between.
    const auto state = config::StateOf(config::IniPath);
    for (const auto& [button, key] : refreshes) {
        Reading reading = button->Read(key, silent);
        const bool isFree = reading.fate == Reading::Fate::kFree && !stored.MayHold(key);
        if (reading.Frees() && !isFree && button->TakeForeignRecord(reading))
            reading = button->Read(key, silent);
        reading.refresh = ++button->refresh_;
        if (reading.Frees()) {
            // By the time a target is found to be gone, its switch has been read.
            const bool hasSwitch =
                !(reading.fate == Reading::Fate::kGone ? reading.commandSwitch : button->Switch).empty();
            freed.push_back(
                {reading.place, reading.fate == Reading::Fate::kFree, hasSwitch, reading.DanglingShortcut()});
        }
        readings.push_back(std::move(reading));
    }
    ButtonContext& context = refreshes.front().button->context_;
    const bool isStored = freed.empty() || (state && ShortcutStore(context.Records).Free(freed, state));
    const bool hasChanged = !isStored && config::StateOf(config::IniPath) != state;
    // From here on messages may run, and with them another refresh; the later one counts.
    for (size_t index = 0; index < readings.size(); ++index) {
        CButtonShortcut& button = *refreshes[index].button;
        if (button.refresh_ == readings[index].refresh) button.Take(readings[index], isStored);
    }
    if (hasChanged && context.onUnread) context.onUnread();
}

CButtonShortcut::Reading CButtonShortcut::Read(const std::string& key, sys::SilentPlaces& silent) const {
    using Fate = Reading::Fate;
    Reading reading;
    reading.place = ButtonPlace::Parse(key);
    reading.record = context_.Records.At(key);
    if (reading.record.empty()) return reading;
    reading.names = ButtonRecord::Parse(reading.place, reading.record);
    if (const MovedFile* moved = context_.MovedFileOf(reading.names.name)) {
        reading.fate = Fate::kMoved;
        reading.target = moved->path;
        return reading;
    }
    auto target = ShortcutStore::Target(reading.names.name);
    // The button is about to be freed for that.
    if (target && target->empty()) target = ShortcutStore::TargetForCertain(reading.names.name);
    reading.fate = target ? Fate::kDangling : Fate::kUnread;
    if (!target || target->empty() || reading.names.name.empty()) return reading;
    reading.target = *target;
    reading.group = target->find('|') != std::string::npos;
    reading.fate = Fate::kShown;
    // A member that is gone does not end a group, but the group's icon is that of its first member.
    reading.state = sys::LookAtTarget(win::Before(*target, '|'), silent);
    if (reading.group) return reading;
    const auto commandSwitch = ShortcutStore::Switch(reading.names.name);
    if (!commandSwitch)
        reading.fate = Fate::kUnread;
    else if (reading.state.kind == sys::TargetKind::kMissing)
        reading.fate = Fate::kGone;
    reading.commandSwitch = commandSwitch.value_or("");
    return reading;
}

/// Before a button is freed: whether another program has changed its record since it was read. Then the table
/// follows the file.
bool CButtonShortcut::TakeForeignRecord(Reading& reading) const {
    const std::string key = reading.place.Key();
    const auto stored = config::TryReadIni(kButtonsSection, key);
    if (!stored) {
        if (!reading.record.empty()) reading.fate = Reading::Fate::kUnread;
        return false;
    }
    if (*stored == reading.record) return false;
    context_.Records.Set(key, *stored);
    return true;
}

void CButtonShortcut::Take(const Reading& reading, bool stored) {
    using Fate = Reading::Fate;
    if (reading.fate == Fate::kFree || (reading.fate == Fate::kDangling && stored)) {
        BecomeFree(false);
        return;
    }
    if (reading.fate == Fate::kUnread || reading.fate == Fate::kDangling || reading.fate == Fate::kMoved) {
        TakeUnread(reading);
        if (reading.fate == Fate::kMoved) FilePath = reading.target;
        if (reading.fate == Fate::kUnread && context_.onUnread) context_.onUnread();
        return;
    }
    // After the button is freed, its face shows the shortcut that is gone once more; its record does not.
    if (reading.fate == Fate::kGone) BecomeFree(false);
    Group = reading.group;
    Switch = reading.commandSwitch;
    if (reading.fate == Fate::kShown && (Group || reading.state.kind != sys::TargetKind::kFolder)) {
        // A folder keeps what was shown before.
        FileSize = Group ? std::string() : reading.state.sizeText;
        FILETIME = Group ? std::string() : reading.state.timeText;
    }
    answers_ = reading.state.kind != sys::TargetKind::kUnknown;
    // A target that does not answer keeps the icon that it was last seen with.
    if (answers_ || FilePath != reading.target || FileIcon != reading.names.icon) icon_.Reset();
    FileIcon = reading.names.icon;
    FilePath = reading.target;
    Naziv = reading.names.name;
    AddFile();
}

/// Only the name is known. A button that has shown this shortcut goes on as it was.
void CButtonShortcut::TakeUnread(const Reading& reading) {
    if (Naziv != reading.names.name) {
        BecomeFree(true);
        Switch.clear();
        FILETIME.clear();
        answers_ = false;
    }
    Naziv = reading.names.name;
    FileIcon = reading.names.icon;
    AddFile();
}

void CButtonShortcut::SaveShortcut(const std::string& path, std::int32_t icon) {
    const ButtonPlace place = ButtonPlace::Parse(context_.CurrentButtonKey);
    if (ShortcutStore(context_.Records).PutShortcut(place, path, icon) && refillList_) refillList_();
}

void CButtonShortcut::SaveGroup(const std::string& members) {
    const ButtonPlace place = ButtonPlace::Parse(context_.CurrentButtonKey);
    if (!ShortcutStore(context_.Records).PutGroup(place, members)) return;
    Group = true;
    Switch.clear();
    if (refillList_) refillList_();
}

void CButtonShortcut::DeleteShortcut(const std::string& key, bool silent) {
    // By then the name is that of a free button, so the shortcut's own switch survives.
    const ShortcutStore::Freeing freeing{ButtonPlace::Parse(key), false, !Switch.empty(), ""};
    if (ShortcutStore(context_.Records).Free({freeing})) BecomeFree(silent);
}

void CButtonShortcut::BecomeFree(bool silent) {
    ++refresh_;
    FilePath.clear();
    FileSize.clear();
    FileIcon = 0;
    Group = false;
    Naziv = kFreeName;
    icon_.Reset();
    if (!silent) DrawFreeFace();
}

void CButtonShortcut::DrawFreeFace() {
    if (box_ == nullptr) return;
    box_->Clear();
    RECT text = box_->PictureScale()(RECT{2, 56, box_->ScaleWidth() - 4, 86});
    win::DrawPlainText(box_->Dc(), kFreeName, text, kCentredWrapped);
    box_->SetMeaning(kFreeName);
    DrawButton();
}

void CButtonShortcut::DrawFace() {
    if (IsFree())
        DrawFreeFace();
    else
        AddFile();
}

void CButtonShortcut::AddFile() {
    if (box_ == nullptr) return;
    box_->Clear();
    const win::Scale scale = box_->PictureScale();
    const int size = scale(kIconSize);
    const int refresh = refresh_;
    const std::string target = Group ? win::Before(FilePath, '|') : FilePath;
    win::Icon icon;
    if (answers_)
        icon = TargetIcon(target, FileIcon, size);
    else if (!icon_ || iconSize_ != size)
        icon = IconOfKind(target, size);
    // The shell lets messages run while it looks for an icon; another refresh has painted then.
    if (refresh != refresh_) return;
    if (icon) {
        icon_ = std::move(icon);
        iconSize_ = size;
    }
    win::DrawIconOfSize(box_->Dc(), scale(kIconPlace), icon_.Get(), size);
    DrawCaption(Naziv, Group ? "G" : Switch);
    box_->SetMeaning(Naziv);
    DrawButton();
    box_->Refresh();
}

void CButtonShortcut::DrawCaption(const std::string& caption, const std::string& mark) {
    const win::Scale& scale = box_->PictureScale();
    const int right = box_->ScaleWidth() - 3;
    const int top = win::TextWidth(box_->Dc(), caption) > scale(right) ? kTwoLineCaptionTop : kCaptionTop;
    RECT captionPlace = scale(RECT{3, top, right, top + kCaptionHeight});
    // A font does not grow evenly: two lines just fit at the plain scale, but not at every larger one.
    if (scale != win::Scale())
        captionPlace.bottom =
            std::max<LONG>(captionPlace.bottom, captionPlace.top + 2 * win::LineHeight(box_->Dc()));
    win::DrawPlainText(box_->Dc(), caption, captionPlace, kCentredWrapped);
    RECT markPlace = scale(RECT{4, 2, box_->ScaleWidth() - 4, kCaptionHeight});
    win::DrawPlainText(box_->Dc(), mark, markPlace, DT_WORDBREAK);
}

std::string CButtonShortcut::StripString(const std::string& text, const std::string& delimiter) {
    return text.substr(0, delimiter.empty() ? text.find('\0') : text.find(delimiter));
}

void CButtonShortcut::DrawButton() {
    if (box_ == nullptr) return;
    RECT edge = box_->ClientRect();
    DrawEdge(box_->Dc(), &edge, BDR_RAISEDOUTER | BDR_SUNKENINNER, BF_RECT);
    box_->Refresh();
}

}  // namespace model
