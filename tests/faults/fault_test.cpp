// The panel with each call of Windows that it makes failing in turn: in start and end, tabs, tips, opening,
// commands, drops, the tray, docking, the drop-down and every dialog. Some fifty of them at every test,
// spread over all; all of them, some thousands, with
//
//     QUON_FAULTS=all scripts/test -R faults
//
// QUON_FAULTS=40 tries every 40th, QUON_FAULTS_SEED=3 begins with another one, and QUON_FAULTS_ONLY=text
// tries those whose name ("scenario: function call") contains the text.
// What must hold each time: the program survives, shows no message but its own, loses no record of Quon.ini,
// gives back what it took, and works as before when the same is done once more.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/faults/fault_points.h"
#include "tests/faults/scenarios.h"
#include "tests/faults/watchdog.h"
#include "tests/support/ini_text.h"
#include "tests/support/paths.h"
#include "win/text.h"

namespace faults {
namespace {

using testing::IsEmpty;

struct Fault {
    std::string function;
    unsigned call = 1;
};

using Section = std::map<std::string, std::string>;
using Records = std::map<std::string, Section>;

/// The records of Quon.ini, with "%" for the folder of the targets, which is another each time.
Records ReadRecords(Stage& stage) {
    const testkit::IniText ini(stage.IniBytes());
    const std::string folder = stage.File("");
    Records records;
    for (const std::string& section : ini.Sections()) {
        for (auto [key, value] : ini.Entries(section)) {
            for (size_t at = value.find(folder); at != std::string::npos; at = value.find(folder, at))
                value.replace(at, folder.size(), "%");
            records[section].emplace(key, value);
        }
    }
    return records;
}

/// What could be seen of a scenario.
struct Outcome {
    Records before;
    Records after;
    std::vector<std::string> said;
    std::vector<std::string> open;
    std::vector<CalledFunction> called;
    bool failed = false;
};

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

/// So that each start registers them anew.
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
        FaultPoints::Fail(fault->function, fault->call);
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

bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

class FaultsTest : public testing::Test {
  protected:
    FaultsTest() {
        StartWatchdog();
        // Made once a process and kept.
        win::MessageFont();
        const std::string part = testkit::EnvironmentValue("QUON_FAULTS");
        stride_ = part == "all" ? 1 : part.empty() ? kUsualStride : static_cast<unsigned>(std::stoul(part));
        const std::string seed = testkit::EnvironmentValue("QUON_FAULTS_SEED");
        if (!seed.empty()) next_ = static_cast<unsigned>(std::stoul(seed));
        only_ = testkit::EnvironmentValue("QUON_FAULTS_ONLY");
    }
    ~FaultsTest() override { std::printf("%u of %u faults tried\n", tried_, known_); }

    void Try(const std::vector<Scenario>& scenarios) {
        for (const Scenario& scenario : scenarios)
            Try(scenario);
    }

  private:
    static constexpr unsigned kUsualStride = 80;

    void Try(const Scenario& scenario) {
        NoteAttempt(scenario.name);
        const Outcome usual = Play(scenario, std::nullopt);
        ExpectClean(scenario.name, usual);
        bool any = false;
        for (const Fault& fault : FaultsOf(usual)) {
            const std::string name = scenario.name + ": " + fault.function + " " + std::to_string(fault.call);
            ++known_;
            if (name.find(only_) == std::string::npos || next_++ % stride_ != 0) continue;
            NoteAttempt(name);
            ++tried_;
            any = true;
            const Outcome outcome = Play(scenario, fault);
            EXPECT_TRUE(outcome.failed) << name << " was not called";
            ExpectClean(name, outcome);
            ExpectKept(name, fault, usual, outcome);
            for (const std::string& said : outcome.said)
                if (!Contains(usual.said, said)) std::printf("    says: %s\n", said.c_str());
        }
        if (!any) return;
        NoteAttempt(scenario.name + ", once more");
        const Outcome again = Play(scenario, std::nullopt);
        EXPECT_EQ(again.said, usual.said) << scenario.name;
        ExpectClean(scenario.name, again);
    }

    /// The first, the second and the last call of each function; of those of the file all.
    static std::vector<Fault> FaultsOf(const Outcome& usual) {
        std::vector<Fault> faults;
        for (const CalledFunction& called : usual.called) {
            if (FailureOf(called.name) == nullptr) continue;
            const bool all = called.name.find("PrivateProfile") != std::string::npos;
            for (unsigned call = 1; call <= called.calls; ++call)
                if (all || call <= 2 || call == called.calls) faults.push_back({called.name, call});
        }
        return faults;
    }

    static void ExpectClean(const std::string& name, const Outcome& outcome) {
        EXPECT_THAT(outcome.open, IsEmpty()) << name << " gives back not everything";
        EXPECT_THAT(Stage::ForeignErrors(), IsEmpty()) << name;
        Stage::ForeignErrors().clear();
        EXPECT_EQ(CountWindows(), windows_) << name << " leaves a window";
    }

    /// Each record is as it was or as it was meant to become, and no target is lost under both names.
    static void ExpectKept(const std::string& name, const Fault& fault, const Outcome& usual,
                           const Outcome& outcome) {
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

    /// What the panel does by design when it gets no answer: it frees the button of a target that Windows
    /// calls missing, believes the shell about where a renamed file is, writes down that a button it shows is
    /// free, stores a drop that cannot be read as a line without a name, keeps in an editor what was chosen
    /// before, and offers its own program among the running ones when it cannot tell that it is its own.
    static bool IsByDesign(const Fault& fault, const std::string& section, const std::string& key,
                           const std::optional<std::string>& old, const std::optional<std::string>& now) {
        static const std::set<std::string> pickers{"GetOpenFileNameW", "SHBrowseForFolderW",
                                                   "SHGetPathFromIDListEx"};
        if (old.value_or("").empty() && fault.function == "GetWindowThreadProcessId") return true;
        const bool unseen = fault.function == "GetFileAttributesExW";
        if (section == "Buttons") return now == "" && (!old || unseen || fault.function == "PathFileExistsA");
        return unseen || (key.empty() && now == "") || (!old && pickers.contains(fault.function));
    }

    /// A member that could not be chosen is missing from its group.
    static bool IsPartOf(const std::optional<std::string>& now, const std::optional<std::string>& expected) {
        if (!now || !expected) return false;
        const std::vector<std::string> whole = win::Split(*expected, '|');
        const std::vector<std::string> part = win::Split(*now, '|');
        return whole.size() > 1 && std::all_of(part.begin(), part.end(), [&](const std::string& member) {
                   return Contains(whole, member);
               });
    }

    /// A free button other than usual has got the record, because the pointer's place was not known.
    static bool HasMoved(const Outcome& outcome, const std::string& section,
                         const std::optional<std::string>& old, const std::optional<std::string>& now) {
        return section == "Buttons" && old == "" && now && Values(outcome.before, section).contains(*now);
    }

    static inline const unsigned windows_ = CountWindows();

    unsigned stride_ = 1;
    unsigned next_ = 0;
    std::string only_;
    unsigned tried_ = 0;
    unsigned known_ = 0;
};

TEST_F(FaultsTest, TheTablesKnowOnlyFunctionsOfTheProduct) { EXPECT_THAT(UnknownNames(), IsEmpty()); }

TEST_F(FaultsTest, StartAndEnd) { Try(StartAndEndScenarios()); }
TEST_F(FaultsTest, Buttons) { Try(ButtonScenarios()); }
TEST_F(FaultsTest, Commands) { Try(CommandScenarios()); }
TEST_F(FaultsTest, Drops) { Try(DropScenarios()); }
TEST_F(FaultsTest, Window) { Try(WindowScenarios()); }
TEST_F(FaultsTest, ShortcutBox) { Try(ShortcutBoxScenarios()); }
TEST_F(FaultsTest, Dialogs) { Try(DialogScenarios()); }

}  // namespace
}  // namespace faults
