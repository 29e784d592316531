#include "model/button_records.h"

#include <algorithm>

#include "config/ini.h"
#include "config/settings.h"
#include "model/button_record.h"
#include "win/errors.h"
#include "win/text.h"

namespace model {
namespace {

using KeyAndRecord = std::pair<std::string, std::string>;

/// Goes through the used buttons in the file's order, leaving out the tabs' own records. `visit` answers
/// whether to go on. False when the file could not be read.
template <class Visit>
bool ForEachButton(Visit visit) {
    const auto section = config::TryReadIniSection(kButtonsSection);
    const std::string keys = section ? config::ListIniKeys(kButtonsSection) : std::string();
    // Another program may have taken the file in between.
    if (!section || (keys.empty() && !section->empty())) return false;
    if (keys.empty()) return true;
    for (const std::string& key : win::Split(keys, '|')) {
        if (key.ends_with('0')) continue;
        const auto record = config::TryReadIni(kButtonsSection, key);
        if (!record) return false;
        if (!record->empty() && !visit(key, *record)) return true;
    }
    return true;
}

bool IsButtonKey(const std::string& key) {
    return key.size() == 2 && key[0] >= '1' && key[0] <= '0' + kTabCount && key[1] >= '1' &&
           key[1] <= '0' + kButtonCount;
}

}  // namespace

size_t ButtonRecords::IndexOf(const std::string& key) {
    const ButtonPlace place = ButtonPlace::Parse(key);
    return static_cast<size_t>((place.tab - 1) * (kButtonCount + 1) + place.slot);
}

void ButtonRecords::LoadButtonRecords() {
    std::array<std::string, kRecordCount> read;
    for (int tab = 1; tab <= kTabCount; ++tab) {
        for (int slot = 0; slot <= kButtonCount; ++slot) {
            const std::string key = ButtonPlace{tab, slot}.Key();
            const auto record = config::TryReadIni(kButtonsSection, key);
            if (!record) throw win::RuntimeError(config::IniPath + " could not be read");
            read.at(IndexOf(key)) = *record;
        }
    }
    records_ = read;
}

const std::string& ButtonRecords::At(const std::string& key) const { return records_.at(IndexOf(key)); }

void ButtonRecords::Set(const std::string& key, const std::string& record) {
    records_.at(IndexOf(key)) = record;
}

const MovedFile* ButtonContext::MovedFileOf(const std::string& name) const {
    const auto found = std::find_if(Moved.begin(), Moved.end(), [&](const MovedFile& file) {
        return win::EqualIgnoringCase(file.name, name);
    });
    return found == Moved.end() ? nullptr : &*found;
}

void ButtonContext::Select(int index) {
    CurrentButtonIndex = static_cast<std::int16_t>(index);
    CurrentButtonKey = ButtonPlace{config::Settings.CurrentTab, index}.Key();
}

std::optional<std::string> FindButtonKey(const std::string& name) {
    std::string found;
    if (name.empty()) return found;
    const bool read = ForEachButton([&](const std::string& key, const std::string& record) {
        if (RecordName(key, record) == name) found = key;
        return found.empty();
    });
    if (!read) return std::nullopt;
    return found;
}

std::optional<std::vector<KeyAndRecord>> ButtonsNamed(const std::string& name) {
    std::vector<KeyAndRecord> found;
    if (name.empty()) return found;
    const auto section = config::TryReadIniSection(kButtonsSection);
    if (!section) return std::nullopt;
    for (const std::string& entry : config::SectionEntries(*section)) {
        const std::string key = win::Before(entry, '=');
        if (key.size() == entry.size() || !IsButtonKey(key)) continue;
        const auto record = config::TryReadIni(kButtonsSection, key);
        if (!record) return std::nullopt;
        if (!record->empty() && win::EqualIgnoringCase(RecordName(key, *record), name))
            found.emplace_back(key, *record);
    }
    return found;
}

}  // namespace model
