// The whole main window over files that nobody wrote by hand, and a user who does anything with it. Some
// hundred files at every test; more with
//
//     QUON_FUZZ_FILES=10000 QUON_FUZZ_SEED=7 scripts/test -R fuzz
//
// What must hold for each file: nothing crashes or hangs; a start that fails leaves the file as it was; only
// records change that a command named or that lead nowhere (fuzz_oracle.h); and the next session starts with
// what this one stored.

#include "tests/fuzz/dice.h"
#include "tests/fuzz/fuzz_guard.h"
#include "tests/fuzz/fuzz_oracle.h"
#include "tests/fuzz/fuzz_user.h"
#include "tests/fuzz/ini_generator.h"
#include "tests/support/screen.h"
#include "tests/support/wine.h"
#include "tests/unit/app/panel_harness.h"
#include "win/errors.h"

namespace {

unsigned Setting(const char* name, unsigned otherwise) {
    const std::string value = testkit::EnvironmentValue(name);
    return value.empty() ? otherwise : static_cast<unsigned>(std::stoul(value));
}

/// Wine reads a profile file anew for each value as long as the file is only seconds old.
void MakeOld(const std::string& path) {
    constexpr FILETIME kLongAgo{0, 0x01D00000};
    const HANDLE file = CreateFileW(testkit::Wide(path).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    SetFileTime(file, nullptr, nullptr, &kLongAgo);
    CloseHandle(file);
}

class FuzzTest : public testing::Test {
  protected:
    FuzzTest() {
        targets_ = {data_.FullPath("a.txt"), data_.FullPath("програма.exe"), data_.FullPath("no extension"),
                    data_.MakeFolder("folder")};
    }

    void Run(unsigned seed) {
        guard_.Begin(seed);
        // A user before this one may have moved or deleted them.
        for (const char* name : {"a.txt", "програма.exe", "no extension"})
            data_.MakeFile(name, "text");
        testkit::Dice dice(seed);
        testkit::IniGenerator generator(dice, targets_);
        const std::string ini = generator.Next();
        testkit::DesktopAround desktop;
        app::PanelHarness panel;
        panel.Folder().WriteIniText(ini);
        MakeOld(panel.Folder().IniPath());
        Use(panel, desktop, dice, generator);
        if (!HasFailure()) return;
        Keep(seed, ".ini", ini);
        Keep(seed, "-after.ini", panel.Folder().IniBytes());
        ADD_FAILURE() << "Seed " << seed;
    }

    /// How many files have been loaded.
    unsigned loaded_ = 0;

  private:
    void Use(app::PanelHarness& panel, testkit::DesktopAround& desktop, testkit::Dice& dice,
             testkit::IniGenerator& generator) {
        const std::string ini = panel.Folder().IniBytes();
        const testkit::Content before = testkit::ReadContent();
        try {
            panel.Load();
        } catch (const win::RuntimeError& error) {
            EXPECT_STRNE(error.what(), "");
            // The mark of UTF-8 may go, in case it was what hid the settings.
            const std::string after = panel.Folder().IniBytes();
            EXPECT_TRUE(after == ini || "\xEF\xBB\xBF" + after == ini)
                << "a start that failed has written: " << after;
            return;
        }
        ++loaded_;
        testkit::FuzzUser user(panel, desktop, dice, generator, targets_);
        user.LookAround();
        ExpectNothingLost(before, {}, "looking around");
        for (std::size_t commands = dice.Below(3); commands > 0 && !HasFailure(); --commands)
            Act(user);
        Close(panel, dice.Once(6));
    }

    void Act(testkit::FuzzUser& user) {
        guard_.Doing("a command");
        const testkit::Content before = testkit::ReadContent();
        const std::string command = user.Act();
        ExpectNothingLost(before, user.Names(), command);
        EXPECT_TRUE(user.MayFail() || user.Errors().empty()) << command << ": " << user.Errors().front();
    }

    /// Ends the session, and perhaps begins another one.
    void Close(app::PanelHarness& panel, bool again) {
        guard_.Doing("close");
        const testkit::Content before = testkit::ReadContent();
        panel.Window().Send(WM_CLOSE);
        if (again) {
            guard_.Doing("load again");
            panel.Renew();
            EXPECT_NO_THROW(panel.Load());
            panel.Window().Send(WM_CLOSE);
        }
        panel.Release();
        ExpectNothingLost(before, {}, "closing");
    }

    static void ExpectNothingLost(const testkit::Content& before, const testkit::Named& named,
                                  const std::string& after) {
        SCOPED_TRACE("after " + after);
        testkit::ExpectKept(before, testkit::ReadContent(), named);
    }

    static void Keep(unsigned seed, const char* ending, const std::string& bytes) {
        testkit::WriteBytes(testkit::ArtifactsFolder() + "\\fuzz-" + std::to_string(seed) + ending, bytes);
    }

    testkit::FuzzGuard guard_;
    testkit::ProgramFolder data_{"fuzz"};
    std::vector<std::string> targets_;
};

TEST_F(FuzzTest, NoFileBreaksThePanel) {
    ONLY_UNDER_WINE("What the file holds is known by the way in which Wine reads it.");
    const unsigned count = Setting("QUON_FUZZ_FILES", 200);
    const unsigned first = Setting("QUON_FUZZ_SEED", 1);
    for (unsigned seed = first; seed < first + count && !HasFailure(); ++seed)
        Run(seed);
    // Most files get past the settings, or nothing would be tried behind them.
    EXPECT_TRUE(HasFailure() || loaded_ > count / 2) << loaded_;
}

}  // namespace
