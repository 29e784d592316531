// Buttons open real programs: which, with what, in which window state, and what the panel does around it.

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty, ::testing::SizeIs;

constexpr char kTargetClass[] = "QuonTestTarget";

Window TargetWindow(const TargetLaunch& launch) {
    return WaitForTopWindow({.class_name = kTargetClass, .process_id = launch.process_id});
}

class LaunchTest : public QuonTest {
  protected:
    std::string MakeTarget(const std::string& name) const { return folder_.CopyIn(TestTargetExe(), name); }
    /// Opens a button and gives the launch that comes of it.
    static TargetLaunch Open(const QuonPanel& quon, int button, const std::string& target,
                             const Keys& held = {}) {
        const std::size_t before = TargetLaunches(target).size();
        quon.OpenButton(button, held);
        return WaitForTargetLaunches(target, before + 1).back();
    }
    static void CloseTarget(const TargetLaunch& launch) {
        RunningProgram::Attach(launch.process_id).CloseAndWait();
    }
};

TEST_F(LaunchTest, TheHeldKeysChooseTheWindowState) {
    const std::string target = MakeTarget("tools\\target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("15", "Editor", target));
    struct Case {
        Keys held;
        int show_state;
    };
    const Case cases[] = {{{}, SW_SHOWNORMAL},
                          {{VK_SHIFT}, SW_SHOWMAXIMIZED},
                          {{VK_MENU}, SW_MINIMIZE},
                          {{VK_SHIFT, VK_MENU}, SW_SHOWNORMAL}};
    for (const auto& [held, show_state] : cases) {
        const TargetLaunch launch = Open(quon, 5, target, held);
        EXPECT_EQ(launch.show_state, show_state);
        EXPECT_EQ(launch.work_folder, folder_.FullPath("tools"));
        const Window window = TargetWindow(launch);
        EXPECT_EQ(window.IsMaximized(), show_state == SW_SHOWMAXIMIZED);
        EXPECT_EQ(window.IsMinimized(), show_state == SW_MINIMIZE);
        EXPECT_EQ(window.Text(), "");
        CloseTarget(launch);
    }
    // The keys of the last press count, not those of an earlier one.
    EXPECT_EQ(Open(quon, 5, target).show_state, SW_SHOWNORMAL);
    EXPECT_TRUE(quon.IsOut());
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_THAT(TargetLaunches(target), SizeIs(5));
    EXPECT_EQ(folder_.IniValue("Buttons", "15"), "Editor|0");
}

TEST_F(LaunchTest, ASwitchFollowsTheTargetAndNeverAccumulates) {
    const std::string target = MakeTarget("target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Editor", target, "-a \"two words\" /b"));
    const std::string expected = target + " -a \"two words\" /b";
    for (int round = 0; round < 2; ++round) {
        // With a switch, the target always starts in the normal state.
        const TargetLaunch launch = Open(quon, 1, target, {VK_SHIFT});
        EXPECT_EQ(launch.command_line, expected);
        EXPECT_EQ(launch.show_state, SW_SHOWNORMAL);
        EXPECT_EQ(TargetWindow(launch).Text(), "-a \"two words\" /b");
        CloseTarget(launch);
    }
    EXPECT_EQ(folder_.IniValue("Switch", "Editor"), "-a \"two words\" /b");
    EXPECT_EQ(folder_.IniValue("Cuts", "Editor"), target);
}

TEST_F(LaunchTest, AGroupOpensAllItsMembersInTheirOwnFolders) {
    const std::string first = MakeTarget("one\\first.exe");
    const std::string second = MakeTarget("два\\second.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("19", "Both", first + "|" + second));
    const TargetLaunch last = Open(quon, 9, second, {VK_SHIFT});
    const std::vector<TargetLaunch> firsts = WaitForTargetLaunches(first, 1);
    ASSERT_THAT(firsts, SizeIs(1));
    EXPECT_EQ(firsts[0].work_folder, folder_.FullPath("one"));
    EXPECT_EQ(firsts[0].show_state, SW_SHOWMAXIMIZED);
    EXPECT_EQ(last.work_folder, folder_.FullPath("два"));
    EXPECT_EQ(last.show_state, SW_SHOWMAXIMIZED);
    EXPECT_THAT(TargetLaunches(second), SizeIs(1));
}

TEST_F(LaunchTest, WithTheSingleClickSettingOneClickOpensOnceAndThePanelDocks) {
    const std::string target = MakeTarget("target.exe");
    QuonPanel quon = Start(QuonIni{.hide_after_launch = true,
                                   .edge = static_cast<int>(Edge::kRight),
                                   .single_click = true,
                                   .click_shows = true}
                               .AddShortcut("11", "Editor", target));
    mouse::Click(quon.Button(1));
    const TargetLaunch launch = WaitForTargetLaunches(target, 1).front();
    EXPECT_EQ(launch.show_state, SW_SHOWNORMAL);
    quon.WaitUntilDockedAt(Edge::kRight);
    mouse::Click(POINT{1022, 384});
    quon.WaitUntilOut();
    // The second half of a double click is not one more click.
    quon.OpenButton(1, {VK_SHIFT});
    quon.WaitUntilDockedAt(Edge::kRight);
    mouse::Click(POINT{1022, 384});
    quon.WaitUntilOut();
    quon.Settle();
    const std::vector<TargetLaunch> launches = WaitForTargetLaunches(target, 2);
    ASSERT_THAT(launches, SizeIs(2));
    EXPECT_EQ(launches[1].show_state, SW_SHOWMAXIMIZED);
}

TEST_F(LaunchTest, WithoutTheSingleClickSettingOneClickOpensNothing) {
    const std::string target = MakeTarget("target.exe");
    QuonPanel quon =
        Start(QuonIni{.hide_after_launch = true, .edge = static_cast<int>(Edge::kTop)}.AddShortcut(
            "11", "Editor", target));
    mouse::Click(quon.Button(1));
    quon.OpenButton(2);
    quon.Settle();
    EXPECT_THAT(TargetLaunches(target), IsEmpty());
    EXPECT_TRUE(quon.IsOut());
    Open(quon, 1, target);
    quon.WaitUntilDockedAt(Edge::kTop);
    EXPECT_TRUE(quon.Main().IsTopmost());
}

TEST_F(LaunchTest, CtrlFreesTheButtonAndDropsItsRecords) {
    const std::string target = MakeTarget("target.exe");
    QuonIni ini =
        QuonIni{}.AddShortcut("11", "Редактор", target, "/x").AddShortcut("12", "Other", target, "/y=z");
    ini.cuts.emplace_back("Link", "http://host.example/?a=b");
    QuonPanel quon = Start(ini);
    quon.ExpectName(1, "Редактор");
    quon.OpenButton(1, {VK_CONTROL});
    quon.ExpectName(1, "Empty");
    quon.Settle();
    const std::string bytes = folder_.IniBytes();
    const IniText after(bytes);
    EXPECT_EQ(after.Value("Buttons", "11"), "");
    EXPECT_EQ(after.Value("Buttons", "12"), "Other|0");
    EXPECT_THAT(after.Entries("Cuts"), ElementsAre(IniText::Entry{"Other", target},
                                                   IniText::Entry{"Link", "http://host.example/?a=b"}));
    EXPECT_THAT(after.Entries("Switch"), ElementsAre(IniText::Entry{"Other", "/y=z"}));
    // A free button has nothing to free.
    quon.OpenButton(1, {VK_CONTROL});
    quon.OpenButton(3, {VK_CONTROL});
    quon.Settle();
    EXPECT_EQ(folder_.IniBytes(), bytes);
    EXPECT_THAT(TargetLaunches(target), IsEmpty());
    EXPECT_EQ(quon.Button(2).Text(), "Other");
}

class SwitchQuestionTest : public LaunchTest {
  protected:
    MessageBoxWindow Ask(const QuonPanel& quon, int button) const {
        quon.OpenButton(button, {VK_MENU, VK_CONTROL});
        return MessageBoxWindow::Wait(quon.Id());
    }
    std::optional<std::string> Switch() const { return folder_.IniValue("Switch", "Editor"); }
};

TEST_F(SwitchQuestionTest, AltCtrlAsksForTheSwitchAndKeepsIt) {
    const std::string target = MakeTarget("target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Editor", target));
    // The face's corner inside the focus mark, with nothing hovering over it.
    const auto corner = [&] { return CaptureWindow(quon.Button(1)).Part({5, 5, 34, 17}); };
    quon.LeaveAlone();
    const Picture unmarked = corner();
    {
        const MessageBoxWindow box = Ask(quon, 1);
        EXPECT_EQ(box.Text(), "Please enter command switch for this file:");
        EXPECT_EQ(box.Input().Text(), "");
        EXPECT_TRUE(box.Input().IsVisible());
        EXPECT_EQ(box.Button(0).Text(), "Cancel");
        EXPECT_EQ(box.Button(1).Text(), "Delete");
        EXPECT_EQ(box.Button(2).Text(), "OK");
        EXPECT_EQ(box.BoxWindow().Owner(), quon.Main());
        EXPECT_FALSE(quon.Main().IsEnabled());
        CaptureScreen().SaveAs("switch-question.bmp");
        box.SetInput("/открой 文");
        box.ClickButton(2);
    }
    WaitFor("the switch is stored", [&] { return Switch() == "/открой 文"; });
    mouse::MoveTo({5, 5});
    WaitFor("the face shows the switch", [&] { return corner() != unmarked; });
    // A switch counts as soon as it is stored: this launch has it.
    const TargetLaunch launch = Open(quon, 1, target);
    EXPECT_EQ(launch.command_line, target + " /открой 文");
    CloseTarget(launch);
    {
        const MessageBoxWindow box = Ask(quon, 1);
        EXPECT_EQ(box.Input().Text(), "/открой 文");
        box.SetInput("/other");
        box.ClickButton(0);
    }
    {
        const MessageBoxWindow box = Ask(quon, 1);
        EXPECT_EQ(box.Input().Text(), "/открой 文");
        box.SetInput("");
        box.ClickButton(2);
    }
    Ask(quon, 1).AnswerByKey(VK_ESCAPE);
    quon.Settle();
    EXPECT_EQ(Switch(), "/открой 文");
    Ask(quon, 1).ClickButton(1);
    WaitFor("the switch is gone", [&] { return !Switch().has_value(); });
    mouse::MoveTo({5, 5});
    WaitFor("the face has lost its mark", [&] { return corner() == unmarked; });
    EXPECT_THAT(TargetLaunches(target), SizeIs(1));
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Editor|0");
}

TEST_F(SwitchQuestionTest, AGroupTakesNoSwitch) {
    const std::string target = MakeTarget("target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Both", target + "|" + folder_.Path()));
    const std::string before = folder_.IniBytes();
    const MessageBoxWindow box = Ask(quon, 1);
    EXPECT_EQ(box.Text(), "Sorry, can not add switch to group button.");
    EXPECT_EQ(box.Button(0).Text(), "OK");
    EXPECT_FALSE(box.Button(1).IsVisible());
    EXPECT_FALSE(box.Input().IsVisible());
    box.ClickButton(0);
    quon.Settle();
    EXPECT_EQ(folder_.IniBytes(), before);
    // There is nothing to ask about a free button.
    quon.OpenButton(2, {VK_MENU, VK_CONTROL});
    quon.Settle();
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon.Id()));
}

TEST_F(LaunchTest, NamesInEveryScriptGoFromTheFileToTheButtonAndToTheLaunch) {
    const std::string names[] = {"Наставления", "設定ファイル", "Čitač žurnala é", "中文 & co"};
    QuonIni ini;
    std::vector<std::string> targets;
    for (const std::string& name : names) {
        targets.push_back(MakeTarget(name + "\\" + name + ".exe"));
        ini.AddShortcut("2" + std::to_string(targets.size()), name, targets.back());
    }
    ini.current_tab = 2;
    QuonPanel quon = Start(ini);
    for (std::size_t at = 0; at < targets.size(); ++at) {
        const int button = static_cast<int>(at) + 1;
        quon.ExpectName(button, names[at]);
        const TargetLaunch launch = Open(quon, button, targets[at]);
        EXPECT_EQ(launch.work_folder, folder_.FullPath(names[at]));
        EXPECT_EQ(launch.command_line.find(targets[at]), 1u) << launch.command_line;
        CloseTarget(launch);
    }
    CaptureScreen().SaveAs("names-in-every-script.bmp");
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Buttons", "22"), "設定ファイル|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "Наставления"), targets[0]);
}

}  // namespace
}  // namespace testkit
