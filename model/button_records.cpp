#include "model/button_records.h"

#include "config/ini.h"
#include "config/settings.h"
#include "model/storable_name.h"
#include "win/errors.h"
#include "win/text.h"

namespace model {

std::string ButtonKey(int tab, int button) { return std::to_string(tab) + std::to_string(button); }

size_t ButtonRecords::IndexOf(const std::string& key) {
    const int index = config::LeadingNumber(key, "a button key") - kFirstKey;
    if (index < 0 || index >= kRecordCount)
        throw win::SubscriptError("No button or tab has the key \"" + key + "\"");
    return static_cast<size_t>(index);
}

void ButtonRecords::LoadButtonRecords() {
    records_.fill({});
    for (int key = kFirstKey; key < kFirstKey + kRecordCount; ++key)
        records_.at(static_cast<size_t>(key - kFirstKey)) =
            config::ReadIni(kButtonsSection, std::to_string(key));
}

const std::string& ButtonRecords::At(const std::string& key) const { return records_.at(IndexOf(key)); }

void ButtonRecords::Set(const std::string& key, const std::string& record) {
    records_.at(IndexOf(key)) = record;
}

void ButtonContext::Select(int index) {
    CurrentButtonIndex = static_cast<std::int16_t>(index);
    CurrentButtonKey = ButtonKey(config::Settings.CurrentTab, index);
}

void ButtonContext::Write(const std::string& key, const std::string& record) {
    // The record of a tab begins and ends with what the user has typed.
    config::WriteIni(kButtonsSection, key, WithKeptQuotes(record));
    Records.Set(key, record);
}

std::string RecordName(const std::string& key, const std::string& record) {
    return record == "Group" ? key : win::Before(record, '|');
}

std::string FindButtonKey(const std::string& name) {
    const std::string keys = config::ListIniKeys(kButtonsSection);
    if (name.empty() || keys.empty()) return {};
    for (const std::string& key : win::Split(keys, '|')) {
        if (key.ends_with('0')) continue;  // a tab's own record
        const std::string record = config::ReadIni(kButtonsSection, key);
        if (!record.empty() && RecordName(key, record) == name) return key;
    }
    return {};
}

}  // namespace model
