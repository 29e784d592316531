// The whole main window over files that nobody wrote by hand. A hundred of them at every test; more with
//
//     QUON_FUZZ_FILES=10000 QUON_FUZZ_SEED=7 scripts/test -R fuzz
//
// What must hold for each file: nothing crashes or hangs; a start that fails leaves the file as it was; and
// of all records only those go that a command was given for, or that lead nowhere.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "config/ini.h"
#include "model/text_shortcut.h"
#include "tests/fuzz/ini_generator.h"
#include "tests/support/paths.h"
#include "tests/support/program_folder.h"
#include "tests/support/screen.h"
#include "tests/support/text.h"
#include "tests/unit/app/panel_harness.h"
#include "win/errors.h"
#include "win/text.h"
#include "win/window.h"

namespace {

using testkit::Window;

unsigned Setting(const char* name, unsigned otherwise) {
    const std::string value = testkit::EnvironmentValue(name);
    return value.empty() ? otherwise : static_cast<unsigned>(std::stoul(value));
}

using Records = std::multimap<std::string, std::string>;

/// Keys of any case are one key.
std::string Folded(const std::string& key) { return testkit::Utf8(win::UpperCase(key).c_str()); }

/// Without blanks at the end: where a NUL follows them in the file, Windows reads them, and no more once it
/// has written the file anew.
std::string Trimmed(const std::string& value) { return value.substr(0, value.find_last_not_of(" \t") + 1); }

/// The records of a section as Windows reads them, by their keys in upper case.
Records Read(const char* section) {
    Records records;
    for (const std::string& entry : config::SectionEntries(config::ReadIniSection(section)))
        if (entry.find('=') != std::string::npos)
            records.emplace(Folded(win::Before(entry, '=')), Trimmed(entry.substr(entry.find('=') + 1)));
    return records;
}

/// A section that Windows gives only in part says nothing about what is behind the cut.
bool IsWhole(const char* section) { return config::ReadIniSection(section).size() < 19990; }

class FuzzTest : public testing::Test {
  protected:
    FuzzTest() {
        targets_ = {data_.MakeFile("a.txt", "text"), data_.MakeFile("програма.exe"),
                    data_.MakeFolder("folder"), data_.MakeFile("no extension")};
    }

    void Run(const std::string& ini) {
        app::PanelHarness panel;
        panel.Folder().WriteIniText(ini);
        MakeOld(panel.Folder().IniPath());
        const Content before;
        try {
            panel.Load();
        } catch (const win::RuntimeError& error) {
            EXPECT_STRNE(error.what(), "");
            EXPECT_EQ(panel.Folder().IniBytes(), ini) << "a start that failed has written";
            return;
        }
        ++loaded_;
        Use(panel);
        panel.Window().Send(WM_CLOSE);
        panel.Release();
        ExpectNothingLost(before);
        if (HasFailure())
            testkit::WriteBytes(testkit::ArtifactsFolder() + "\\fuzz-after.ini", panel.Folder().IniBytes());
    }

  private:
    struct Content {
        Records buttons = Read("Buttons");
        Records cuts = Read("Cuts");
        Records switches = Read("Switch");
        Records collected = Read("Collected");
        bool whole = IsWhole("Buttons") && IsWhole("Cuts") && IsWhole("Switch") && IsWhole("Collected");
    };

    /// Wine reads a profile file anew for each value as long as the file is only seconds old.
    static void MakeOld(const std::string& path) {
        constexpr FILETIME kLongAgo{0, 0x01D00000};
        const HANDLE file = CreateFileW(testkit::Wide(path).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                        nullptr, OPEN_EXISTING, 0, nullptr);
        SetFileTime(file, nullptr, nullptr, &kLongAgo);
        CloseHandle(file);
    }

    static void Click(Window picture) {
        picture.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        picture.Send(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    }

    static void Hover(Window picture) {
        picture.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        picture.Send(WM_MOUSEMOVE, 0, MAKELPARAM(6, 6));
    }

    /// Looks at everything and changes nothing.
    static void Use(app::PanelHarness& panel) {
        const Window window = panel.Window();
        for (int tab = 6; tab >= 1; --tab) {
            Hover(window.Child(100 + tab));
            Click(window.Child(100 + tab));
            for (int button = 1; button <= 9; ++button) {
                Hover(window.Child(200 + button));
                Hover(window.Child(210));
            }
        }
        win::ProcessPendingMessages();
    }

    static void ExpectKept(const char* section, const Records& before,
                           const std::set<std::string>& dangling) {
        const Records after = Read(section);
        for (const auto& [key, value] : before) {
            // Wine drops some lines without a name when it writes the file anew.
            if (key.empty() || dangling.contains(key)) continue;
            const auto [first, last] = after.equal_range(key);
            EXPECT_TRUE(std::any_of(first, last, [&](const auto& record) { return record.second == value; }))
                << section << " has lost " << key << "=" << value;
        }
    }

    /// A button whose record leads nowhere is freed; with it goes a shortcut of the record's very text.
    static void ExpectNothingLost(const Content& before) {
        if (!before.whole) return;
        std::set<std::string> records;
        for (const auto& [key, value] : before.buttons)
            records.insert(Folded(value));
        ExpectKept("Cuts", before.cuts, records);
        ExpectKept("Switch", before.switches, {"EMPTY"});
        ExpectKept("Collected", before.collected, {});
        const Records after = Read("Buttons");
        for (const auto& [key, value] : before.buttons) {
            const auto [first, last] = after.equal_range(key);
            EXPECT_TRUE(std::any_of(
                first, last,
                [&](const auto& record) { return record.second == value || record.second.empty(); }))
                << "Buttons has changed " << key << "=" << value;
        }
    }

    testkit::ProgramFolder data_{"fuzz"};

  protected:
    std::vector<std::string> targets_;
    unsigned loaded_ = 0;
};

TEST_F(FuzzTest, NoFileBreaksThePanel) {
    const unsigned count = Setting("QUON_FUZZ_FILES", 100);
    const unsigned first = Setting("QUON_FUZZ_SEED", 1);
    for (unsigned seed = first; seed < first + count; ++seed) {
        const std::string ini = testkit::IniGenerator(seed, targets_).Next();
        ASSERT_NO_FATAL_FAILURE(Run(ini));
        if (HasFailure()) {
            const std::string kept = testkit::ArtifactsFolder() + "\\fuzz-" + std::to_string(seed) + ".ini";
            testkit::WriteBytes(kept, ini);
            FAIL() << "Seed " << seed << "; the file: " << kept;
        }
    }
    // Most files get past the settings, or nothing would be tried behind them.
    EXPECT_GT(loaded_, count / 4);
}

}  // namespace
