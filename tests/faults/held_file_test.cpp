// Everything that is done with the panel, while another program keeps Quon.ini to itself: for 20 ms up to two
// seconds, from the moment on in which it is done. What must hold each time: the window stands still for 300
// ms at most, no record is lost, nothing is said but that it could not be done, and once the file is free
// again the panel shows what is in it.
//
// Every other scenario is tried with one of the times; all of them with all times by QUON_FAULTS=all.

#include "config/settings.h"
#include "model/button_record.h"
#include "tests/faults/outcome.h"
#include "tests/faults/watchdog.h"

namespace faults {
namespace {

constexpr std::array kTimes{20u, 60u, 120u, 500u, 2000u};
constexpr DWORD kLongestFreeze = 300;  // milliseconds
// What waits longer at once waits for something else.
constexpr DWORD kLongestPause = 50;

/// Keeps the file to itself until the panel has waited for it so long; nobody really waits.
class Hold {
  public:
    Hold(Stage& stage, const std::string& path, DWORD time)
        : stage_(stage), time_(time), held_(std::in_place, path) {
        stage_.onTick = [this] { frozen_ = 0; };
    }
    ~Hold() { stage_.onTick = nullptr; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    void Release() { held_.reset(); }
    /// The longest time in which no message ran, in milliseconds.
    DWORD LongestFreeze() const { return longest_; }

  private:
    void Wait(DWORD time) {
        waited_ += time;
        frozen_ += time;
        longest_ = std::max(longest_, frozen_);
        if (waited_ >= time_) Release();
    }

    Stage& stage_;
    DWORD time_;
    std::optional<testkit::HeldFile> held_;
    DWORD waited_ = 0;
    DWORD frozen_ = 0;
    DWORD longest_ = 0;
    DWORD thread_ = GetCurrentThreadId();
    testkit::RecordedCall pause_ = FAKE_CALL(Sleep, [this](DWORD time) {
        if (GetCurrentThreadId() != thread_)
            ORIGINAL_CALL(Sleep)(time);
        else if (time <= kLongestPause)
            Wait(time);
    });
};

class HeldFileScenarios : public testing::Test {
  protected:
    HeldFileScenarios() { StartWatchdog(); }

    void Try(const std::vector<Scenario>& scenarios) {
        const bool all = testkit::EnvironmentValue("QUON_FAULTS") == "all";
        for (size_t index = 0; index < scenarios.size(); index += all ? 1 : 2) {
            const Scenario& scenario = scenarios[index];
            const Outcome usual = Play(scenario, std::nullopt);
            for (size_t time = 0; time < kTimes.size(); ++time)
                if (all || time == index / 2 % kTimes.size()) Try(scenario, usual, kTimes.at(time));
        }
    }

  private:
    static void Try(const Scenario& scenario, const Outcome& usual, DWORD time) {
        const std::string name = scenario.name + " with the file held for " + std::to_string(time) + " ms";
        NoteAttempt(name);
        UnregisterClasses();
        Outcome outcome;
        Stage stage;
        ASSERT_TRUE(stage.Load());
        outcome.before = ReadRecords(stage);
        {
            Hold hold(stage, stage.Harness().Folder().IniPath(), time);
            scenario.act(stage);
            EXPECT_LE(hold.LongestFreeze(), kLongestFreeze) << name;
            hold.Release();
            for (const std::string& said : stage.Said())
                EXPECT_TRUE(Contains(usual.said, said) || SaysThatItFailed(said)) << name << ": " << said;
            ExpectPanelShowsTheFile(stage, name);
        }
        outcome.after = ReadRecords(stage);
        ExpectKept(name, {}, usual, outcome);
        // The same panel goes on working.
        if (stage.IsAlive()) scenario.act(stage);
        stage.End();
        EXPECT_THAT(stage.Open(), testing::IsEmpty()) << name;
    }

    static bool SaysThatItFailed(const std::string& said) {
        return said.starts_with("Couldn't ") && said.ends_with(", sorry.");
    }

    static void ExpectPanelShowsTheFile(Stage& stage, const std::string& name) {
        if (!stage.IsAlive()) return;
        for (const int tab : {2, 1}) {
            Stage::Click(stage.Child(IDC_TAB_HEADER + tab));
            const testkit::IniText ini(stage.IniBytes());
            for (int slot = 1; slot <= model::kButtonCount; ++slot) {
                const std::string key = model::ButtonPlace{tab, slot}.Key();
                const std::string record = ini.Value("Buttons", key).value_or("");
                const std::string shown = record.empty() ? "Empty" : model::RecordName(key, record);
                EXPECT_EQ(stage.Button(slot).Text(), shown) << name << ": button " << key;
            }
        }
    }
};

TEST_F(HeldFileScenarios, Buttons) { Try(ButtonScenarios()); }
TEST_F(HeldFileScenarios, Commands) { Try(CommandScenarios()); }
TEST_F(HeldFileScenarios, Drops) { Try(DropScenarios()); }
TEST_F(HeldFileScenarios, ShortcutBox) { Try(ShortcutBoxScenarios()); }
TEST_F(HeldFileScenarios, Dialogs) { Try(DialogScenarios()); }

}  // namespace
}  // namespace faults
