#include "model/tab.h"

#include "config/ini.h"
#include "config/settings.h"
#include "model/button_record.h"
#include "model/button_records.h"
#include "model/shortcut_store.h"
#include "win/colors.h"
#include "win/errors.h"
#include "win/text.h"

namespace model {

void clsTab::INIstring(const std::string& record) {
    if (record.empty()) return;
    if (record.find('|') == std::string::npos)
        throw win::InvalidArgumentError("The record of tab " + std::to_string(number_) + ", key \"" +
                                        ButtonPlace{number_, 0}.Key() + "\" in section \"" + kButtonsSection +
                                        "\" of " + config::IniPath + ", has no \"|\": " + record);
    Label = win::Before(record, '|');
    Description = win::After(record, '|');
    DrawTabText();
}

void clsTab::ShowTip(bool suppress) {
    std::string text;
    if (!config::Settings.TabDescriptions)
        text = Content();
    else
        text = Description.empty() ? "Right-click to define tab" : Description;
    tip_.SetTitle(Label);
    tip_.SetTipText(suppress ? std::string() : text);
    tip_.SetParentControl(header_ != nullptr ? header_->Handle() : nullptr);
    tip_.Create();
}

std::string clsTab::Content() const {
    std::string content;
    for (int slot = 1; slot <= kButtonCount; ++slot) {
        const ButtonPlace place{number_, slot};
        const std::string record = config::ReadIni(kButtonsSection, place.Key());
        if (record.empty()) continue;
        const std::string name = ButtonRecord::Parse(place, record).name;
        // Of a shortcut that cannot be read now, at least the name can be shown.
        const std::string value = ShortcutStore::Target(name).value_or(name);
        const bool group = value.find('|') != std::string::npos;
        content += std::to_string(slot) + (group ? ". Group: " + name : ". " + value) + "\n";
    }
    if (!content.empty()) content.pop_back();
    return content;
}

void clsTab::DrawTabText() {
    if (header_ == nullptr) return;
    header_->Clear();
    SetTextColor(header_->Dc(), win::ColorOf(win::Color::kLabel));
    RECT place = header_->PictureScale()(RECT{3, 5, header_->ScaleWidth() - 3, 22});
    win::DrawPlainText(header_->Dc(), Label, place, DT_CENTER);
    header_->SetMeaning(Label);
    header_->Refresh();
}

}  // namespace model
