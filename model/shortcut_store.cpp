#include "model/shortcut_store.h"

#include <algorithm>
#include <utility>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "model/button_record.h"
#include "model/button_shortcut.h"
#include "model/storable_name.h"
#include "win/text.h"

namespace model {
namespace {

constexpr const char* kCuts = "Cuts";
constexpr const char* kSwitches = "Switch";

/// The target as it must be written to be read back as it is. Quotes around a whole path may get lost, for it
/// is the same without them; those around the first and the last of several may not.
std::string WithOwnQuotes(const std::string& target) {
    const bool several = !target.empty() && target.find(target.front(), 1) < target.size() - 1;
    return several ? WithKeptQuotes(target) : target;
}

/// One unit of changes. The table of records changes at its end, when all of it is stored.
class Unit {
  public:
    explicit Unit(ButtonRecords& records) noexcept : records_(records) { unit_.emplace(); }
    Unit(ButtonRecords& records, const std::optional<config::FileState>& onlyFor) noexcept
        : records_(records) {
        if (onlyFor)
            unit_.emplace(onlyFor);
        else
            unit_.emplace();
    }

    static void PutTarget(const std::string& name, const std::string& target) {
        config::WriteIni(kCuts, name, WithOwnQuotes(target));
    }
    static void RemoveTarget(const std::string& name) { config::RemoveRecord(kCuts, name); }
    static void PutSwitch(const std::string& name, const std::string& commandSwitch) {
        config::WriteIni(kSwitches, name, StorableSwitch(commandSwitch));
    }
    static void RemoveSwitch(const std::string& name) { config::RemoveRecord(kSwitches, name); }
    void PutRecord(const std::string& key, const std::string& record) { PutRecord(key, record, record); }
    void PutRecord(const std::string& key, const std::string& record, std::string inTable) {
        // Done before anything is written: an impossible place stops the unit.
        static_cast<void>(ButtonPlace::Parse(key));
        // A tab's record may begin and end with quotes that the user has typed.
        config::WriteIni(kButtonsSection, key, WithKeptQuotes(record));
        changed_.emplace_back(key, std::move(inTable));
    }

    bool Finish() {
        if (!unit_->Finish()) return false;
        for (const auto& [key, record] : changed_)
            records_.Set(key, record);
        return true;
    }

  private:
    ButtonRecords& records_;
    std::optional<config::IniUnit> unit_;
    std::vector<std::pair<std::string, std::string>> changed_;
};

/// The value as a single read gives it: without the pair of quotes around it.
std::string Unquoted(const std::string& value) {
    const bool quoted =
        value.size() > 1 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The value of a key in full. `read` is what a single read gives; a value that is too long for that is
/// looked for among its section's entries.
std::optional<std::string> WholeValue(const char* section, const std::string& key, const std::string& read) {
    // A character of several bytes that did not fit makes what was read a little shorter.
    constexpr size_t kLongestCharacter = 4;
    if (read.size() + kLongestCharacter <= config::kLongestValue) return read;
    const auto text = config::TryReadIniSection(section);
    if (!text) return std::nullopt;
    std::vector<std::string> entries = config::SectionEntries(*text);
    const bool cut = config::WasCut(*text);
    // How the last one goes on cannot be known.
    if (cut) entries.pop_back();
    for (const std::string& entry : entries) {
        if (!win::EqualIgnoringCase(win::Before(entry, '='), key)) continue;
        const std::string whole = Unquoted(win::After(entry, '='));
        return whole.size() > config::kLongestValue && whole.starts_with(read) ? whole : read;
    }
    if (cut) return std::nullopt;
    return read;
}

/// Whether another record of this name, in whatever case, stands behind the first one.
std::optional<bool> HasTwin(const std::string& name) {
    const auto shortcuts = ShortcutStore::Shortcuts();
    if (!shortcuts) return std::nullopt;
    return std::count_if(shortcuts->begin(), shortcuts->end(), [&](const StoredShortcut& shortcut) {
               return win::EqualIgnoringCase(shortcut.name, name);
           }) > 1;
}

std::optional<std::string> WholeSwitch(const std::string& name) {
    const auto read = ShortcutStore::Switch(name);
    return read ? WholeValue(kSwitches, name, *read) : std::nullopt;
}

}  // namespace

std::optional<std::string> ShortcutStore::Target(const std::string& name) {
    return config::TryReadIni(kCuts, name);
}

std::optional<std::string> ShortcutStore::TargetForCertain(const std::string& name) {
    return config::ReadIniForCertain(kCuts, name);
}

std::optional<std::string> ShortcutStore::WholeTarget(const std::string& name, const std::string& read) {
    return WholeValue(kCuts, name, read);
}

std::optional<std::string> ShortcutStore::Switch(const std::string& name) {
    return config::TryReadIni(kSwitches, name);
}

std::optional<std::vector<StoredShortcut>> ShortcutStore::Shortcuts() {
    const auto text = Entries();
    if (!text) return std::nullopt;
    std::vector<StoredShortcut> shortcuts;
    for (const std::string& entry : config::SectionEntries(*text))
        if (entry.find('=') != std::string::npos)
            shortcuts.push_back({win::Before(entry, '='), Unquoted(win::After(entry, '='))});
    return shortcuts;
}

std::optional<std::string> ShortcutStore::Entries() { return config::TryReadIniSection(kCuts); }

bool ShortcutStore::Put(const std::string& name, const std::string& target) {
    Unit unit(records_);
    Unit::PutTarget(name, target);
    return unit.Finish();
}

bool ShortcutStore::PutSwitch(const std::string& name, const std::string& commandSwitch) {
    Unit unit(records_);
    Unit::PutSwitch(name, commandSwitch);
    return unit.Finish();
}

bool ShortcutStore::RemoveSwitch(const std::string& name) {
    Unit unit(records_);
    Unit::RemoveSwitch(name);
    return unit.Finish();
}

bool ShortcutStore::PutRecord(const ButtonPlace& place, const std::string& record) {
    Unit unit(records_);
    unit.PutRecord(place.Key(), record);
    return unit.Finish();
}

bool ShortcutStore::Assign(const Assignment& assignment) {
    const auto commandSwitch = WholeValue(kSwitches, assignment.name, assignment.commandSwitch);
    if (!commandSwitch) return false;
    Unit unit(records_);
    if (assignment.source) unit.PutRecord(assignment.source->Key(), "");
    Unit::PutTarget(assignment.name, assignment.target);
    unit.PutRecord(assignment.place.Key(), ButtonRecord{assignment.name, 0}.Text());
    if (!commandSwitch->empty()) Unit::PutSwitch(assignment.name, *commandSwitch);
    return unit.Finish();
}

bool ShortcutStore::PutShortcut(const ButtonPlace& place, const std::string& path, std::int32_t icon) {
    const std::string name = NameForTarget(path);
    Unit unit(records_);
    Unit::PutTarget(name, path);
    unit.PutRecord(place.Key(), ButtonRecord{name, icon}.Text(), ButtonRecord{path, icon}.Text());
    return unit.Finish();
}

bool ShortcutStore::PutGroup(const ButtonPlace& place, const std::string& members) {
    Unit unit(records_);
    Unit::PutTarget(place.Key(), members);
    unit.PutRecord(place.Key(), "Group");
    return unit.Finish();
}

bool ShortcutStore::Rename(const Renaming& renaming) {
    using Records = Renaming::Records;
    const auto commandSwitch = WholeSwitch(renaming.former);
    const auto buttons = ButtonsNamed(renaming.former);
    const auto hasTwin = HasTwin(renaming.former);
    if (!commandSwitch || !buttons || !hasTwin) return false;
    Unit unit(records_);
    const auto writeRecords = [&] {
        const std::string own = renaming.button ? renaming.button->Key() : std::string();
        if (renaming.button) unit.PutRecord(own, ButtonRecord{renaming.name, renaming.icon}.Text());
        for (const auto& [key, record] : *buttons) {
            if (key == own) continue;
            if (renaming.records == Records::kAsGroup) unit.PutRecord(key, "");
            unit.PutRecord(key, renaming.records == Records::kAsGroup ? ButtonRecord{renaming.name, 0}.Text()
                                                                      : WithName(record, renaming.name));
        }
    };
    const bool before = renaming.records == Records::kBeforeTarget || renaming.records == Records::kAsGroup;
    if (before) writeRecords();
    // With the first one gone, its twin would be written over.
    if (!*hasTwin || !win::EqualIgnoringCase(renaming.former, renaming.name))
        Unit::RemoveTarget(renaming.former);
    Unit::PutTarget(renaming.name, renaming.target);
    if (renaming.records == Records::kAfterTarget) writeRecords();
    Unit::RemoveSwitch(renaming.former);
    Unit::RemoveSwitch(renaming.name);
    if (!commandSwitch->empty()) Unit::PutSwitch(renaming.name, *commandSwitch);
    return unit.Finish();
}

bool ShortcutStore::Remove(const std::string& name, const std::optional<ButtonPlace>& button) {
    Unit unit(records_);
    if (button) unit.PutRecord(button->Key(), "");
    Unit::RemoveTarget(name);
    return unit.Finish();
}

bool ShortcutStore::RemoveWithButton(const ButtonPlace& place, const std::string& name, bool hasSwitch) {
    Unit unit(records_);
    if (hasSwitch) Unit::RemoveSwitch(name);
    Unit::RemoveTarget(name);
    unit.PutRecord(place.Key(), "");
    if (hasSwitch) Unit::RemoveSwitch(kFreeName);
    return unit.Finish();
}

bool ShortcutStore::Free(const std::vector<Freeing>& buttons,
                         const std::optional<config::FileState>& onlyFor) {
    // Most of them are free in the file as well, and a tab is shown again and again.
    const auto text = config::TryReadIniSection(kButtonsSection);
    // Nor is anything added to a file that another program is writing.
    if (!text || !config::IsWhole()) return false;
    const std::vector<std::string> stored = config::SectionEntries(*text);
    Unit unit(records_, onlyFor);
    for (const Freeing& button : buttons) {
        const std::string key = button.place.Key();
        if (!button.isFree || std::find(stored.begin(), stored.end(), key + "=") == stored.end())
            unit.PutRecord(key, "");
        if (button.hadSwitch) Unit::RemoveSwitch(kFreeName);
        if (!button.danglingShortcut.empty()) Unit::RemoveTarget(button.danglingShortcut);
    }
    return unit.Finish();
}

bool ShortcutStore::Follow(const MovedFile& file) {
    if (!IsStorableTarget(file.path)) return false;
    const auto commandSwitch = WholeSwitch(file.name);
    const auto known = Target(file.path);
    if (!commandSwitch || !known) return false;
    const bool canBeName = StorableName(file.path) == file.path;
    // A shortcut that already has the path for its name is left alone until the file is there.
    const bool becomesShortcut = canBeName && (file.isThere || known->empty());
    Unit unit(records_);
    if (canBeName) unit.PutRecord(file.place.Key(), ButtonRecord{file.path, file.icon}.Text());
    if (becomesShortcut) Unit::PutTarget(file.path, file.isThere ? file.path : file.from);
    if (file.isThere) Unit::PutTarget(file.name, file.path);
    if (becomesShortcut && !commandSwitch->empty()) Unit::PutSwitch(file.path, *commandSwitch);
    return unit.Finish();
}

}  // namespace model
