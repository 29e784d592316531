#include "tests/faults/outcome.h"

#include "tests/support/ini_text.h"
#include "win/text.h"

namespace faults {
namespace {

std::optional<std::string> ValueOf(const Records& records, const std::string& section,
                                   const std::string& key) {
    const auto found = records.find(section);
    if (found == records.end()) return std::nullopt;
    const auto entry = found->second.find(key);
    return entry == found->second.end() ? std::nullopt : std::optional(entry->second);
}

std::set<std::string> Values(const Records& records, const std::string& section) {
    std::set<std::string> values;
    if (const auto found = records.find(section); found != records.end())
        for (const auto& [key, value] : found->second)
            values.insert(value);
    return values;
}

/// What the panel does by design where it gets no answer: it writes down that a button it shows is free,
/// stores a drop that cannot be read as a line without a name, keeps in an editor what was chosen before, and
/// offers a running program of which it does not learn that it is its own.
bool IsByDesign(const Fault& fault, const std::string& section, const std::string& key,
                const std::optional<std::string>& old, const std::optional<std::string>& now) {
    static const std::set<std::string> pickers{"GetOpenFileNameW", "SHBrowseForFolderW",
                                               "SHGetPathFromIDListEx"};
    if (old.value_or("").empty() && fault.function == "GetWindowThreadProcessId") return true;
    // A target of which nothing is known for good is taken for one, and a file for where the shell says it
    // is.
    if (fault.lasting && fault.function == "PathFileExistsA") return true;
    // Of one look that failed for want of memory Windows says no more either; what was stored before stays.
    if (fault.function == "PathFileExistsA" && old.value_or("").empty()) return true;
    if (section == "Buttons") return now == "" && !old;
    return (key.empty() && now == "") || (!old && pickers.contains(fault.function));
}

/// A member that could not be chosen is missing from its group.
bool IsPartOf(const std::optional<std::string>& now, const std::optional<std::string>& expected) {
    if (!now || !expected) return false;
    const std::vector<std::string> whole = win::Split(*expected, '|');
    const std::vector<std::string> part = win::Split(*now, '|');
    return whole.size() > 1 && std::all_of(part.begin(), part.end(), [&](const std::string& member) {
               return Contains(whole, member);
           });
}

/// Another free button than usual has got a button's record: the pointer's place was not known.
bool HasMoved(const Outcome& outcome, const std::string& section, const std::optional<std::string>& old,
              const std::optional<std::string>& now) {
    return section == "Buttons" && old == "" && now && Values(outcome.before, section).contains(*now);
}

}  // namespace

Records ReadRecords(Stage& stage) {
    const testkit::IniText ini(stage.IniBytes());
    const std::string folder = stage.File("");
    Records records;
    for (const std::string& section : ini.Sections()) {
        for (auto [key, value] : ini.Entries(section)) {
            // A path can be a shortcut's name, too.
            for (std::string* text : {&key, &value})
                for (size_t at = text->find(folder); at != std::string::npos; at = text->find(folder, at))
                    text->replace(at, folder.size(), "%");
            records[section].emplace(key, value);
        }
    }
    return records;
}

unsigned CountWindows() {
    unsigned count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND, LPARAM number) -> BOOL {
            ++*reinterpret_cast<unsigned*>(number);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

void UnregisterClasses() {
    for (const wchar_t* name : {L"QuonMain", L"QuonPicture", L"QuonButtons", L"QuonRowList"})
        UnregisterClassW(name, GetModuleHandleW(nullptr));
}

Outcome Play(const Scenario& scenario, const std::optional<Fault>& fault) {
    UnregisterClasses();
    Outcome outcome;
    Stage stage;
    const bool ready = scenario.starts || stage.Load();
    EXPECT_TRUE(ready);
    outcome.before = ReadRecords(stage);
    if (fault)
        FaultPoints::Fail(fault->function, fault->call, fault->lasting);
    else
        FaultPoints::Count();
    scenario.act(stage);
    outcome.called = FaultPoints::Stop();
    outcome.failed = FaultPoints::HasFailed();
    outcome.after = ReadRecords(stage);
    outcome.said = stage.Said();
    // The same panel goes on working.
    if (fault && stage.IsAlive()) scenario.act(stage);
    stage.End();
    outcome.open = stage.Open();
    return outcome;
}

bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

void ExpectKept(const std::string& name, const Fault& fault, const Outcome& usual, const Outcome& outcome) {
    std::set<std::pair<std::string, std::string>> keys;
    for (const Records* records : {&usual.before, &usual.after, &outcome.after})
        for (const auto& [section, entries] : *records)
            for (const auto& [key, value] : entries)
                keys.emplace(section, key);
    for (const auto& [section, key] : keys) {
        const auto now = ValueOf(outcome.after, section, key);
        const auto old = ValueOf(outcome.before, section, key);
        const auto expected = ValueOf(usual.after, section, key);
        if (now == old || now == expected || IsByDesign(fault, section, key, old, now) ||
            IsPartOf(now, expected) || HasMoved(outcome, section, old, now))
            continue;
        ADD_FAILURE() << name << ": [" << section << "] " << key << "=" << now.value_or("(gone)");
    }
    for (const char* section : {"Cuts", "Switch", "Collected"}) {
        const std::set<std::string> kept = Values(usual.after, section);
        const std::set<std::string> now = Values(outcome.after, section);
        for (const std::string& value : Values(outcome.before, section))
            EXPECT_TRUE(!kept.contains(value) || now.contains(value))
                << name << ": [" << section << "] has lost " << value;
    }
}

}  // namespace faults
