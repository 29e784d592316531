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

#include "tests/faults/outcome.h"
#include "tests/faults/watchdog.h"
#include "win/text.h"

namespace faults {
namespace {

using testing::IsEmpty;

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
            const std::string name = scenario.name + ": " + fault.function + " " +
                                     (fault.lasting ? "for good" : std::to_string(fault.call));
            ++known_;
            if (name.find(only_) == std::string::npos || next_++ % stride_ != 0) continue;
            NoteAttempt(name);
            ++tried_;
            any = true;
            const Outcome outcome = Play(scenario, fault);
            if (!outcome.failed) {
                EXPECT_FALSE(Comes(scenario, fault)) << name << " was not called";
                --tried_;
            }
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

    /// Whether the call comes when the scenario is played once more: how often some functions are called
    /// hangs on the windows of others and on time.
    static bool Comes(const Scenario& scenario, const Fault& fault) {
        const Outcome usual = Play(scenario, std::nullopt);
        return std::any_of(usual.called.begin(), usual.called.end(), [&](const CalledFunction& called) {
            return called.name == fault.function && called.calls >= fault.call;
        });
    }

    /// The first, the second and the last call of each function, of those of the file all; and the first with
    /// all that come after it.
    static std::vector<Fault> FaultsOf(const Outcome& usual) {
        std::vector<Fault> faults;
        for (const CalledFunction& called : usual.called) {
            if (FailureOf(called.name) == nullptr) continue;
            if (MayFailForGood(called.name)) faults.push_back({called.name, 1, true});
            const bool all = called.name.find("PrivateProfile") != std::string::npos;
            for (unsigned call = 1; call <= called.calls; ++call)
                if (all || call <= 2 || call == called.calls) faults.push_back({called.name, call, false});
        }
        return faults;
    }

    static void ExpectClean(const std::string& name, const Outcome& outcome) {
        EXPECT_THAT(outcome.open, IsEmpty()) << name << " gives back not everything";
        EXPECT_THAT(Stage::ForeignErrors(), IsEmpty()) << name;
        Stage::ForeignErrors().clear();
        EXPECT_EQ(CountWindows(), windows_) << name << " leaves a window";
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
