#include "tests/fuzz/fuzz_oracle.h"

#include <shlwapi.h>

#include <cctype>

#include "config/ini.h"
#include "model/button_record.h"
#include "win/text.h"

namespace testkit {
namespace {

constexpr DWORD kWholeSection = 1 << 20;

std::vector<std::string> Lines(const char* section) {
    std::string text(kWholeSection, '\0');
    text.resize(GetPrivateProfileSectionA(section, text.data(), kWholeSection, config::IniPath.c_str()));
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return config::SectionEntries(text);
}

/// What Wine takes for blanks around a key or a value: the old end-of-file mark too.
constexpr const char* kBlanks = "\t\n\v\f\r\x1A ";

/// Without blanks at the end: Windows reads them when a NUL follows them in the file, but no longer once it
/// has rewritten the file.
std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(kBlanks) + 1); }

std::string WithoutOuterBlanks(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? std::string() : Trimmed(text.substr(first));
}

/// A line without "=" counts as a key that holds nothing: that is what Wine reads under it.
Records ReadRecords(const char* section) {
    Records records;
    for (const std::string& line : Lines(section)) {
        const bool hasValue = line.find('=') != std::string::npos;
        records.emplace(Folded(win::Before(line, '=')),
                        hasValue ? Trimmed(win::After(line, '=')) : std::string());
    }
    return records;
}

/// What a read of one value makes of it.
std::string AsRead(std::string value) {
    const bool quoted =
        value.size() > 1 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    if (quoted) value = value.substr(1, value.size() - 2);
    if (value.size() <= config::kLongestValue) return value;
    // Where a character of several bytes does not fit, nothing of it is given.
    std::size_t end = config::kLongestValue;
    while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0) == 0x80)
        --end;
    return value.substr(0, end);
}

/// What becomes of it when it is stored under another key: no control character gets into the file again, and
/// the blank in the place of one at either end is not read back.
std::string AsStored(std::string value) {
    std::replace_if(
        value.begin(), value.end(),
        [](char character) { return std::iscntrl(static_cast<unsigned char>(character)) != 0; }, ' ');
    return WithoutOuterBlanks(value);
}

std::string First(const Records& records, const std::string& key) {
    const auto found = records.lower_bound(key);
    return found != records.end() && found->first == key ? AsRead(found->second) : std::string();
}

bool HoldsNothing(const std::string& key, const std::string& record, const Content& content) {
    const std::string name = model::RecordName(key, AsRead(record));
    return name.empty() || First(content.cuts, Folded(name)).empty();
}

bool LeadsNowhere(const std::string& key, const std::string& record, const Content& content) {
    if (HoldsNothing(key, record, content)) return true;
    const std::string target = First(content.cuts, Folded(model::RecordName(key, AsRead(record))));
    return target.find('|') == std::string::npos && PathFileExistsA(target.c_str()) == FALSE &&
           PathIsURLA(target.c_str()) == FALSE;
}

bool Holds(const Records& records, const std::string& key, const std::string& value) {
    const auto [first, last] = records.equal_range(key);
    return std::any_of(first, last, [&](const auto& record) { return record.second == value; });
}

void ExpectRecordsKept(const char* section, const Records& before, const Records& after,
                       const std::set<std::string>& named) {
    for (const auto& [key, value] : before) {
        // Wine drops some lines without a name when it writes the file anew.
        if (key.empty() || named.contains(key)) continue;
        // Nor does it read the last line of a UTF-16 file with an odd number of bytes twice in the same way.
        if (value.empty()) continue;
        EXPECT_TRUE(Holds(after, key, value))
            << section << " has lost " << key << "=" << value.substr(0, 600);
    }
}

/// Fails the test unless what stands under one of these keys is there afterwards, under whatever key, alone
/// or as a part of something.
void ExpectValuesKept(const char* section, const Records& before, const Records& after,
                      const std::set<std::string>& keys) {
    for (const std::string& key : keys) {
        // A pair of quotes around a target is not read back, so that a quoted path can be given.
        const std::string value = AsRead(AsStored(First(before, key)));
        EXPECT_TRUE(std::any_of(after.begin(), after.end(),
                                [&](const auto& record) {
                                    return AsStored(AsRead(record.second)).find(value) != std::string::npos;
                                }) ||
                    value.empty())
            << section << " has lost the value of " << key << ": " << value.substr(0, 600);
    }
}

/// The shortcuts that go with a button whose record leads nowhere.
std::set<std::string> GoneWithButtons(const Content& before, const Content& after) {
    std::set<std::string> gone;
    for (const auto& [key, record] : before.buttons)
        if (HoldsNothing(key, record, before) || HoldsNothing(key, record, after))
            gone.insert(Folded(AsRead(record)));
    return gone;
}

bool MayChange(const std::string& key, const std::string& record, const Content& before, const Content& after,
               const Named& named) {
    if (named.buttons.contains(key)) return true;
    if (named.with_button && named.shortcuts.contains(Folded(model::RecordName(key, AsRead(record)))))
        return true;
    return Holds(after.buttons, key, "") &&
           (LeadsNowhere(key, record, before) || LeadsNowhere(key, record, after));
}

}  // namespace

std::string Folded(const std::string& key) { return WithoutOuterBlanks(Utf8(win::UpperCase(key))); }

void Named::AddShortcut(const std::string& name) { shortcuts.insert(Folded(name)); }

Content ReadContent() {
    return {ReadRecords("Buttons"), ReadRecords("Cuts"), ReadRecords("Switch"), ReadRecords("Collected")};
}

void ExpectKept(const Content& before, const Content& after, const Named& named) {
    std::set<std::string> cuts = GoneWithButtons(before, after);
    cuts.insert(named.shortcuts.begin(), named.shortcuts.end());
    ExpectRecordsKept("Cuts", before.cuts, after.cuts, cuts);
    ExpectValuesKept("Cuts", before.cuts, after.cuts, named.kept);
    ExpectValuesKept("Switch", before.switches, after.switches, named.kept);
    std::set<std::string> switches = named.shortcuts;
    // Freeing a button removes the switch stored under the name of a free button.
    switches.insert("EMPTY");
    ExpectRecordsKept("Switch", before.switches, after.switches, switches);
    ExpectRecordsKept("Collected", before.collected, after.collected, named.collected);
    for (const auto& [key, record] : before.buttons) {
        if (key.empty() || Holds(after.buttons, key, record)) continue;
        EXPECT_TRUE(MayChange(key, record, before, after, named))
            << "Buttons has changed " << key << "=" << record.substr(0, 600);
    }
}

bool HasImpossibleButton() {
    const std::vector<std::string> lines = Lines("Buttons");
    return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        const std::string key = win::Before(line, '=');
        const bool possible =
            key.size() == 2 && key[0] >= '1' && key[0] <= '6' && key[1] >= '0' && key[1] <= '9';
        return line.find('=') == std::string::npos || !possible;
    });
}

}  // namespace testkit
