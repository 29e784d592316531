// A user who works with the panel for a long time and does anything with it, by mouse, keys, menus, dialogs
// and drops, and who starts it anew now and then. Some two hundred actions at every test; more with
//
//     QUON_USER_ACTIONS=5000 QUON_FUZZ_SEED=7 scripts/test -R fuzz.RandomUser
//
// What must hold after each action: of all records only those have changed that the action named, or that
// lead nowhere (fuzz_oracle.h); no error is shown; and what was stored comes back with the next start.

#include <iostream>

#include "tests/fuzz/desktop_around.h"
#include "tests/fuzz/dice.h"
#include "tests/fuzz/fuzz_guard.h"
#include "tests/fuzz/fuzz_oracle.h"
#include "tests/fuzz/fuzz_user.h"
#include "tests/fuzz/ini_generator.h"
#include "tests/support/screen.h"
#include "tests/unit/app/panel_harness.h"

namespace {

unsigned Setting(const char* name, unsigned otherwise) {
    const std::string value = testkit::EnvironmentValue(name);
    return value.empty() ? otherwise : static_cast<unsigned>(std::stoul(value));
}

class RandomUserTest : public testing::Test {
  protected:
    RandomUserTest() {
        for (const char* name : kFiles)
            targets_.push_back(data_.FullPath(name));
        targets_.push_back(data_.MakeLink("link.lnk", {.target = targets_.front(), .arguments = "/link"}));
        targets_.push_back(data_.MakeFolder("циљ"));
        MakeFiles();
    }

    /// What somebody has on six tabs and in the list after some years.
    std::string Records() const {
        std::string buttons = "[Buttons]\r\n";
        std::string cuts = "[Cuts]\r\n";
        std::string switches = "[Switch]\r\n";
        for (int tab = 1; tab <= 6; ++tab) {
            buttons += std::to_string(tab) + "0=Tab " + std::to_string(tab) + "|What is on it\r\n";
            for (int slot = 1; slot <= 6; ++slot) {
                const std::string key = std::to_string(10 * tab + slot);
                const std::string name = "Пречица " + key;
                const std::string& file = targets_.at(static_cast<size_t>(tab * slot) % targets_.size());
                buttons.append(key).append("=").append(name).append("|0\r\n");
                cuts.append(name).append("=");
                if (slot == 1) cuts += "http://a.example/?tab=" + key;
                if (slot == 2) cuts.append(file).append("|http://b.example/").append(key);
                if (slot > 2) cuts += file;
                cuts += "\r\n";
                if (slot % 2 != 0) switches.append(name).append("=/s=").append(key).append("\r\n");
            }
        }
        for (int number = 1; number <= 40; ++number)
            cuts += "List " + std::to_string(number) + "=http://c.example/" + std::to_string(number) + "\r\n";
        return buttons + cuts + switches + "[Collected]\r\nEditor=C:\\editor.exe\r\n";
    }

    void MakeFiles() {
        for (const char* name : kFiles)
            if (!testkit::FileExists(data_.FullPath(name))) data_.MakeFile(name, "text");
    }

    static void ExpectNothingLost(const testkit::Content& before, const testkit::Named& named,
                                  const std::string& after) {
        SCOPED_TRACE("after " + after);
        testkit::ExpectKept(before, testkit::ReadContent(), named);
    }

    /// Ends the program and starts it again.
    void StartAnew(app::PanelHarness& panel) {
        guard_.Doing("start anew");
        const testkit::Content before = testkit::ReadContent();
        panel.Window().Send(WM_CLOSE);
        panel.Renew();
        panel.Load();
        ExpectNothingLost(before, {}, "a new start");
    }

    static constexpr std::array kFiles{"a.txt", "програма.exe", "no extension", "b.htm", "文件.txt"};

    testkit::FuzzGuard guard_;
    testkit::ProgramFolder data_{"user"};
    std::vector<std::string> targets_;
};

TEST_F(RandomUserTest, LosesNothingThatNoActionNamed) {
    const unsigned actions = Setting("QUON_USER_ACTIONS", 200);
    const unsigned seed = Setting("QUON_FUZZ_SEED", 1);
    guard_.Begin(seed);
    testkit::Dice dice(seed);
    testkit::IniGenerator generator(dice, targets_);
    testkit::DesktopAround desktop;
    app::PanelHarness panel(app::kPlainSettings, Records());
    panel.Load();
    testkit::FuzzUser user(panel, desktop, dice, generator, targets_);
    std::string last;
    unsigned done = 0;
    for (; done < actions && !HasFailure(); ++done) {
        if (dice.Once(40)) StartAnew(panel);
        if (dice.Once(10)) MakeFiles();
        guard_.Doing("an action");
        last = panel.Folder().IniBytes();
        const testkit::Content before = testkit::ReadContent();
        const std::string action = user.Act();
        ExpectNothingLost(before, user.Names(), action);
        EXPECT_TRUE(user.MayFail() || user.Errors().empty()) << action << ": " << user.Errors().front();
        if (HasFailure()) ADD_FAILURE() << "seed " << seed << ", action " << done << ": " << action;
    }
    if (!HasFailure()) StartAnew(panel);
    std::cout << done << " actions\n";
    if (!HasFailure()) return;
    testkit::WriteBytes(testkit::ArtifactsFolder() + "\\user-before.ini", last);
    testkit::WriteBytes(testkit::ArtifactsFolder() + "\\user-after.ini", panel.Folder().IniBytes());
}

}  // namespace
