#include "model/button_shortcut.h"

#include <shlwapi.h>

#include <utility>
#include <vector>

#include "config/ini.h"
#include "config/settings.h"
#include "model/storable_name.h"
#include "model/target_icon.h"
#include "model/text_shortcut.h"
#include "sys/utility.h"
#include "win/errors.h"
#include "win/text.h"

namespace model {
namespace {

constexpr POINT kIconPlace{35, 8};
constexpr int kCaptionTop = 56;
constexpr int kTwoLineCaptionTop = 44;
constexpr int kCaptionHeight = 30;
constexpr UINT kCentredWrapped = DT_CENTER | DT_WORDBREAK;

/// The number after the record's last "|"; 0 for one that is no index at all.
std::int32_t IconIndex(const std::string& record) {
    const size_t last = record.rfind('|');
    if (last == std::string::npos) return 0;
    try {
        return config::LeadingNumber(record.substr(last + 1), "an icon index");
    } catch (const win::OverflowError&) {
        return 0;
    }
}

}  // namespace

CButtonShortcut::CButtonShortcut(ButtonContext& context, std::function<void()> refillList)
    : context_(context), refillList_(std::move(refillList)) {}

void CButtonShortcut::SetParentButton(win::PictureBox* box) {
    box_ = box;
    DrawButton();
}

void CButtonShortcut::RefreshButton(const std::string& key) {
    const win::Hourglass hourglass;
    const std::string record = context_.Records.At(key);
    if (record.empty()) {
        DeleteShortcut(key, false);
        return;
    }
    const std::string name = RecordName(key, record);
    const std::string value = config::ReadIni(kCutsSection, name);
    if (name.empty() || value.empty()) {
        DeleteShortcut(key, false);
        // A group under the button's own key names no shortcut "Group": the user's one of that name stays.
        if (name != key) config::RemoveRecord(kCutsSection, record);
        return;
    }
    LoadTarget(key, name, value);
    // Also after the button has freed itself: the face then still shows what is gone, the record does not.
    FileIcon = IconIndex(record);
    FilePath = value;
    Naziv = name;
    AddFile();
}

void CButtonShortcut::LoadTarget(const std::string& key, const std::string& name, const std::string& value) {
    Group = value.find('|') != std::string::npos;
    if (Group) {
        Switch.clear();
        FileSize.clear();
        FILETIME.clear();
        return;
    }
    Switch = config::ReadIni(kSwitchSection, name);
    if (PathFileExistsA(value.c_str()) != 0) {
        // A folder keeps what was shown before.
        if (PathIsDirectoryA(value.c_str()) != 0) return;
        FileSize = sys::FileSizeText(value);
        FILETIME = sys::FileTimeText(value);
    } else if (sys::IsUrl(value)) {
        FileSize.clear();
        FILETIME.clear();
    } else {
        DeleteShortcut(key, false);
    }
}

void CButtonShortcut::SaveShortcut(const std::string& path, std::int32_t icon) {
    const std::string name = NameForTarget(path);
    config::WriteIni(kCutsSection, name, path);
    config::WriteIni(kButtonsSection, context_.CurrentButtonKey, name + "|" + std::to_string(icon));
    // The table gets the path where the file gets the name.
    context_.Records.Set(context_.CurrentButtonKey, path + "|" + std::to_string(icon));
    if (refillList_) refillList_();
}

void CButtonShortcut::SaveGroup(const std::string& members) {
    config::WriteIni(kCutsSection, context_.CurrentButtonKey, members);
    context_.Write(context_.CurrentButtonKey, "Group");
    Group = true;
    Switch.clear();
    if (refillList_) refillList_();
}

void CButtonShortcut::DeleteShortcut(const std::string& key, bool silent) {
    config::WriteIni(kButtonsSection, key, "");
    FilePath.clear();
    FileSize.clear();
    FileIcon = 0;
    Group = false;
    Naziv = kFreeName;
    // The name is "Empty" by now, so the shortcut's own switch survives.
    if (!Switch.empty()) config::RemoveRecord(kSwitchSection, Naziv);
    context_.Records.Set(key, "");
    if (silent || box_ == nullptr) return;
    box_->Clear();
    RECT text{2, 56, box_->ScaleWidth() - 4, 86};
    win::DrawPlainText(box_->Dc(), kFreeName, text, kCentredWrapped);
    box_->SetMeaning(kFreeName);
    DrawButton();
}

void CButtonShortcut::AddFile() {
    if (box_ == nullptr) return;
    box_->Clear();
    icon_ = TargetIcon(Group ? win::Before(FilePath, '|') : FilePath, FileIcon);
    DrawIcon(box_->Dc(), kIconPlace.x, kIconPlace.y, icon_.Get());
    DrawCaption(Naziv, Group ? "G" : Switch);
    box_->SetMeaning(Naziv);
    DrawButton();
    box_->Refresh();
}

void CButtonShortcut::DrawCaption(const std::string& caption, const std::string& mark) {
    const int right = box_->ScaleWidth() - 3;
    const int top = win::TextWidth(box_->Dc(), caption) > right ? kTwoLineCaptionTop : kCaptionTop;
    RECT captionPlace{3, top, right, top + kCaptionHeight};
    win::DrawPlainText(box_->Dc(), caption, captionPlace, kCentredWrapped);
    RECT markPlace{4, 2, box_->ScaleWidth() - 4, kCaptionHeight};
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
