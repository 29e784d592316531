// Another program, such as a backup or a virus scanner, keeps Quon.ini to itself for a while: whatever is
// done meanwhile, no record is lost, nothing wrong is said, and the panel answers.

#include <atomic>
#include <iostream>
#include <thread>

#include "tests/program/quon_panel.h"

namespace testkit {
namespace {

using ::testing::HasSubstr, ::testing::SizeIs;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// Has a file open for a time, without sharing it or as it is told, from the constructor's end on.
class Hold {
  public:
    Hold(const std::string& path, Milliseconds time, DWORD share = 0) {
        HANDLE file = INVALID_HANDLE_VALUE;
        WaitFor("the file can be held", [&] {
            file = CreateFileW(Wide(path).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
            return file != INVALID_HANDLE_VALUE;
        });
        thread_ = std::thread([this, file, time] {
            std::this_thread::sleep_for(time);
            over_ = true;
            CloseHandle(file);
        });
    }
    ~Hold() { thread_.join(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    bool IsOver() const { return over_; }

  private:
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

class HoldTest : public ::testing::TestWithParam<int> {
  protected:
    static constexpr int kLongHold = 2000;

    HoldTest() {
        QuonIni ini;
        for (const char* key : {"11", "12", "19", "21", "22", "29"})
            ini.AddShortcut(key, Name(key), std::string("http://example.test/?a=") + key, "/x");
        ini.cuts.emplace_back("Without a button", "http://example.test/");
        ini.current_tab = 1;
        folder_.WriteIniText(ini.Text());
    }

    static std::string Name(const std::string& key) { return "Пречица " + key; }
    Milliseconds Time() const { return Milliseconds(GetParam()); }

    /// All that stands in Quon.ini except the records of free buttons, which may be added at any time.
    std::string Records() const {
        std::string text;
        for (const char* section : {"Buttons", "Cuts", "Switch"})
            for (const auto& [key, value] : folder_.Ini().Entries(section))
                if (!value.empty()) text.append(section).append(" ").append(key + "=" + value + "\n");
        return text;
    }
    /// The panel answers while the file is held: asked every tenth of a second of a long hold, it stands
    /// still for 300 ms at most and so answers most times. What a busy machine adds to that is not known, but
    /// it is far less than the hold. A short hold may well be over by the first answer.
    static void ExpectAnswers(QuonPanel& quon, const Hold& hold) {
        constexpr Milliseconds kEvery{100};
        constexpr int kAnswers = 5;
        constexpr Milliseconds kLongest{1000};
        int answers = 0;
        Milliseconds longest{0};
        auto next = Clock::now();
        do {
            const auto asked = Clock::now();
            quon.Main().Send(WM_NULL);
            longest = std::max(longest, std::chrono::duration_cast<Milliseconds>(Clock::now() - asked));
            if (!hold.IsOver()) ++answers;
            std::this_thread::sleep_until(next += kEvery);
        } while (!hold.IsOver());
        if (GetParam() < kLongHold) return;
        std::cout << answers << " answers, the longest after " << longest.count() << " ms\n";
        EXPECT_GE(answers, kAnswers);
        EXPECT_LT(longest, kLongest) << "it waited for the file all the time";
    }
    static void ShowTab(QuonPanel& quon, int tab) {
        quon.Header(tab).Post(WM_LBUTTONDOWN, 0, MAKELPARAM(4, 4));
        quon.Header(tab).Post(WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    }
    void ExpectWhole(QuonPanel& quon) const {
        for (const int tab : {1, 2}) {
            ShowTab(quon, tab);
            for (const int button : {1, 2, 9})
                quon.ExpectName(button, Name(std::to_string(10 * tab + button)));
        }
        EXPECT_THAT(quon.Program().Windows(), SizeIs(1)) << "a message";
    }

    ProgramFolder folder_;
};

TEST_P(HoldTest, AtTheStart) {
    const std::string before = Records();
    const Hold hold(folder_.IniPath(), Time());
    QuonPanel quon(folder_);
    EXPECT_TRUE(hold.IsOver());
    ExpectWhole(quon);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(Records(), before);
}

TEST_P(HoldTest, AtATabSwitch) {
    const std::string before = Records();
    QuonPanel quon(folder_);
    {
        const Hold hold(folder_.IniPath(), Time());
        for (const int tab : {2, 1, 2})
            ShowTab(quon, tab);
        ExpectAnswers(quon, hold);
    }
    // The clicks were posted: until all have been acted on, a tab comes and goes.
    quon.Program().WaitUntilIdle();
    ExpectWhole(quon);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(Records(), before);
}

TEST_P(HoldTest, AtARename) {
    const std::string before = Records();
    QuonPanel quon(folder_);
    quon.Button(1).Post(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
    quon.Button(1).Post(WM_KEYDOWN, VK_F2);
    WaitFor("the rename box", [&] { return quon.RenameBox().IsVisible(); });
    quon.RenameBox().SetText("new");
    {
        const Hold hold(folder_.IniPath(), Time());
        quon.RenameBox().Post(WM_KEYDOWN, VK_RETURN);
        ExpectAnswers(quon, hold);
    }
    // Until the key has been acted on, the box is there as well.
    quon.Program().WaitUntilIdle();
    // What could not be stored is still in the box, and nothing of it in the file.
    if (quon.RenameBox().IsVisible()) {
        EXPECT_EQ(Records(), before);
        EXPECT_EQ(quon.RenameBox().Text(), "new");
        quon.RenameBox().Post(WM_KEYDOWN, VK_RETURN);
    }
    WaitFor("the box closes", [&] { return !quon.RenameBox().IsVisible(); });
    quon.ExpectName(1, "new");
    EXPECT_THAT(quon.Program().Windows(), SizeIs(1)) << "a message";
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "new|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "new"), "http://example.test/?a=11");
    EXPECT_EQ(folder_.IniValue("Switch", "new"), "/x");
    for (const char* section : {"Cuts", "Switch"})
        EXPECT_EQ(folder_.IniValue(section, Name("11")), std::nullopt) << section;
}

TEST_P(HoldTest, WhenTheOrganiserCloses) {
    const std::string before = Records();
    QuonPanel quon(folder_);
    mouse::Click(quon.ImageButton(2));
    PopupMenu::Wait(quon.Id()).Choose("Organize shortcuts");
    const Window organiser =
        quon.Program().WaitForWindow({.title = "Organize shortcuts - 7 shortcuts found"});
    {
        const Hold hold(folder_.IniPath(), Time());
        organiser.Post(WM_COMMAND, IDCANCEL);
        WaitFor("the organiser closes", [&] { return !organiser.Exists(); });
        ExpectAnswers(quon, hold);
    }
    ExpectWhole(quon);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(Records(), before);
}

TEST_P(HoldTest, AtTheEnd) {
    const std::string before = Records();
    {
        QuonPanel quon(folder_);
        ShowTab(quon, 2);
        quon.ExpectName(1, Name("21"));
        const Hold hold(folder_.IniPath(), Time());
        EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    }
    EXPECT_EQ(Records(), before);
    EXPECT_EQ(folder_.IniValue("Settings", "Main")->substr(0, 2), "2,") << "the settings are saved";
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, HoldTest, ::testing::Values(20, 60, 120, 500, 2000));

/// As programs do that read a file while others may write it, but not put another one into its place.
class SharedHoldTest : public HoldTest {};

TEST_P(SharedHoldTest, AtARename) {
    QuonPanel quon(folder_);
    quon.Button(1).Post(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
    quon.Button(1).Post(WM_KEYDOWN, VK_F2);
    WaitFor("the rename box", [&] { return quon.RenameBox().IsVisible(); });
    quon.RenameBox().SetText("new");
    const std::string before = Records();
    {
        const Hold hold(folder_.IniPath(), Time(), FILE_SHARE_READ | FILE_SHARE_WRITE);
        quon.RenameBox().Post(WM_KEYDOWN, VK_RETURN);
        ExpectAnswers(quon, hold);
        if (quon.RenameBox().IsVisible()) {
            EXPECT_EQ(Records(), before);
        }
    }
    if (quon.RenameBox().IsVisible()) quon.RenameBox().Post(WM_KEYDOWN, VK_RETURN);
    quon.ExpectName(1, "new");
    EXPECT_THAT(quon.Program().Windows(), SizeIs(1)) << "a message";
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Cuts", "new"), "http://example.test/?a=11");
    EXPECT_EQ(folder_.IniValue("Cuts", Name("12")), "http://example.test/?a=12");
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, SharedHoldTest, ::testing::Values(500));

TEST(HoldAtStartTest, AFileThatIsJustBeingSavedIsWaitedFor) {
    for (const bool missing : {true, false}) {
        ProgramFolder folder;
        const QuonIni ini =
            QuonIni{.buttons = {{"10", "Work|mine"}}}.AddShortcut("11", "a", "http://example.test/");
        if (!missing) folder.WriteIniText("");
        // Not sooner than the program can have looked, and well before it gives up.
        const std::jthread saving([&] {
            std::this_thread::sleep_for(Milliseconds(300));
            folder.WriteIniText(ini.Text());
        });
        QuonPanel quon(folder);
        quon.ExpectName(1, "a");
        EXPECT_EQ(quon.Header(1).Text(), "Work");
        EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    }
}

TEST(HoldAtStartTest, ALastingHoldIsNamedInTheMessage) {
    ProgramFolder folder;
    folder.WriteIniText(QuonIni{}.AddShortcut("11", "a", "http://example.test/").Text());
    const OwnedHandle held(
        CreateFileW(Wide(folder.IniPath()).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    RunningProgram quon = StartQuon(folder);
    const Window box = WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
    EXPECT_THAT(box.Child(0xFFFF).Text(), HasSubstr("Another program holds " + folder.IniPath()));
    box.Post(WM_COMMAND, IDOK);
    EXPECT_EQ(quon.WaitForExit(), 1u);
}

}  // namespace
}  // namespace testkit
