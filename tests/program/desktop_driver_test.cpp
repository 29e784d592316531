// The desktop driver tried on a program whose behaviour is known.

#include "tests/support/desktop.h"
#include "tests/support/gdi_table.h"
#include "tests/support/target/ids.h"
#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty, ::testing::SizeIs,
    ::testing::StartsWith;

class DesktopDriverTest : public ::testing::Test {
  protected:
    std::string Journal() const { return window_.Child(target::kJournal).Text(); }
    void ExpectJournal(const std::string& text) const {
        HappensWithin(kPatience, [&] { return Journal() == text; });
        EXPECT_EQ(Journal(), text);
    }
    static std::string PlaceText(LONG x, LONG y) { return std::to_string(x) + "," + std::to_string(y); }
    Window Edit() const { return window_.Child(target::kEdit); }

    ProgramFolder folder_;
    std::string path_ = folder_.CopyIn(TestTargetExe(), "target.exe");
    RunningProgram program_{path_, {.arguments = "Тест \"two words\""}};
    Window window_ = program_.WaitForWindow({.class_name = Utf8(target::kClass)});
};

TEST_F(DesktopDriverTest, FindsTheWindowAndItsNestedChildren) {
    EXPECT_EQ(window_.Text(), "Тест \"two words\"");
    EXPECT_EQ(window_.ProcessId(), program_.Id());
    EXPECT_EQ(program_.MainWindow(), window_);
    const Window square = window_.Child(target::kRedSquare);
    EXPECT_EQ(square.Parent(), window_.Child(target::kContainer));
    EXPECT_EQ(square.Id(), target::kRedSquare);
    EXPECT_TRUE(square.IsDescendantOf(window_));
    EXPECT_FALSE(window_.FindChild(999));
    EXPECT_THROW(window_.Child(999), std::runtime_error);
    EXPECT_EQ(window_.Rect().left, 200);
    EXPECT_EQ(window_.Rect().right, 520);
}

TEST_F(DesktopDriverTest, RecordsHowAProgramWasLaunched) {
    const std::vector<TargetLaunch> launches = WaitForTargetLaunches(path_, 1);
    ASSERT_THAT(launches, SizeIs(1));
    EXPECT_EQ(launches[0].process_id, program_.Id());
    EXPECT_EQ(launches[0].command_line, "\"" + path_ + "\" Тест \"two words\"");
    EXPECT_EQ(launches[0].work_folder, folder_.Path());
    EXPECT_EQ(launches[0].show_state, -1);
}

TEST_F(DesktopDriverTest, ClicksWithEachButtonAndWithHeldKeys) {
    mouse::Click(window_.ClientPoint(250, 60));
    ExpectJournal("left 250,60");
    mouse::Click(window_.ClientPoint(250, 60), {VK_CONTROL, VK_SHIFT});
    ExpectJournal("left 250,60 ctrl shift");
    mouse::Click(window_.ClientPoint(251, 61));
    ExpectJournal("left 251,61");
    mouse::DoubleClick(window_.ClientPoint(252, 62));
    ExpectJournal("double 252,62");
    mouse::Click(window_.ClientPoint(253, 63), {}, mouse::Button::kMiddle);
    ExpectJournal("middle 253,63");
    mouse::Wheel(-2);
    ExpectJournal("wheel -240");
}

TEST_F(DesktopDriverTest, MovesThePointerToEveryKindOfPixel) {
    for (const LONG x : {0L, 1L, 2L, 333L, 511L, 512L, 1022L, 1023L}) {
        for (const LONG y : {0L, 1L, 255L, 500L, 766L, 767L}) {
            mouse::MoveTo({x, y});
            EXPECT_EQ(mouse::Place().x, x);
            EXPECT_EQ(mouse::Place().y, y);
        }
    }
}

TEST_F(DesktopDriverTest, DragsFromPlaceToPlace) {
    mouse::Drag(window_.ClientPoint(220, 40), window_.ClientPoint(290, 80), {VK_CONTROL});
    ExpectJournal("dragged from 220,40 to 290,80 ctrl");
    // Whatever was done between two presses on one place, Windows takes them for a double click. The press
    // that brought the window to the front did not count.
    mouse::Drag(window_.ClientPoint(220, 40), window_.ClientPoint(230, 40));
    ExpectJournal("dragged from 220,40 to 230,40");
    mouse::Click(window_.ClientPoint(220, 40));
    ExpectJournal("left 220,40");
}

TEST_F(DesktopDriverTest, TypesTextAndPressesKeys) {
    mouse::Click(Edit());
    WaitFor("the edit field has the focus", [&] { return Edit().IsFocused(); });
    keyboard::Type("Abc 12=x; Зима 文字");
    WaitFor("the text is there", [&] { return Edit().Text() == "Abc 12=x; Зима 文字"; });
    keyboard::Press(VK_BACK, 2);
    keyboard::Press(VK_HOME);
    keyboard::Press(VK_DELETE);
    WaitFor("the text is cut", [&] { return Edit().Text() == "bc 12=x; Зима "; });
    keyboard::Chord({VK_SHIFT, VK_END});
    keyboard::Chord({VK_CONTROL, 'X'});
    WaitFor("the text is cut out", [&] { return Edit().Text().empty(); });
    keyboard::Type("new ");
    keyboard::Chord({VK_CONTROL, 'V'});
    WaitFor("the text is put back", [&] { return Edit().Text() == "new bc 12=x; Зима "; });
}

TEST_F(DesktopDriverTest, RefusesToClickAWindowThatIsCovered) {
    mouse::Click(window_.Child(target::kAskButton));
    const Window box = WaitForSystemMessageBox(program_.Id(), "Question");
    EXPECT_FALSE(window_.IsEnabled());
    SetWindowPos(box.Handle(), nullptr, 200, 150, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the box covers the edit field", [&] { return Window::At(Edit().Centre()) != Edit(); });
    EXPECT_THROW(mouse::Click(Edit()), std::runtime_error);
}

TEST_F(DesktopDriverTest, AnswersASystemMessageBox) {
    mouse::Click(window_.Child(target::kAskButton));
    const Window box = WaitForSystemMessageBox(program_.Id(), "Question");
    EXPECT_EQ(box.Child(0xFFFF).Text(), "Really?");
    EXPECT_EQ(box.Owner(), window_);
    mouse::Click(box.Child(IDYES));
    ExpectJournal("yes");
    EXPECT_FALSE(box.Exists());
}

TEST_F(DesktopDriverTest, AnswersTheProductsMessageBox) {
    EXPECT_FALSE(MessageBoxWindow::IsShown(program_.Id()));
    window_.Post(WM_COMMAND, target::kCommandBox);
    const MessageBoxWindow box = MessageBoxWindow::Wait(program_.Id());
    EXPECT_TRUE(MessageBoxWindow::IsShown(program_.Id()));
    EXPECT_EQ(box.Text(), "Delete it?");
    EXPECT_EQ(box.Button(0).Text(), "Yes");
    EXPECT_EQ(box.Input().Text(), "old");
    box.SetInput("ново");
    box.ClickButton(1);
    ExpectJournal("box 311 ново");
    window_.Post(WM_COMMAND, target::kCommandBox);
    MessageBoxWindow::Wait(program_.Id()).AnswerByKey(VK_ESCAPE);
    ExpectJournal("box 2 old");
}

TEST_F(DesktopDriverTest, ReadsAPopupMenuWhileTipsAreWatched) {
    const ToolTipWatch tips(window_);
    mouse::RightClick(window_.ClientPoint(250, 60));
    const PopupMenu menu = PopupMenu::Wait(program_.Id());
    EXPECT_THAT(menu.Captions(), SizeIs(6));
    menu.Dismiss();
}

TEST_F(DesktopDriverTest, ReadsAPopupMenu) {
    mouse::RightClick(window_.ClientPoint(250, 60));
    const PopupMenu menu = PopupMenu::Wait(program_.Id());
    EXPECT_THAT(menu.Captions(), ElementsAre("First", "Проверено", "Disabled", "-", "Fish & chips", "More"));
    EXPECT_TRUE(menu.Item("First").enabled);
    EXPECT_FALSE(menu.Item("First").checked);
    EXPECT_EQ(menu.Item("First").id, static_cast<UINT>(target::kCommandFirst));
    EXPECT_TRUE(menu.Item("Проверено").checked);
    EXPECT_FALSE(menu.Item("Disabled").enabled);
    EXPECT_TRUE(menu.Item("More").has_submenu);
    EXPECT_THROW(menu.Item("Nothing"), std::runtime_error);
    EXPECT_FALSE(menu.Has("Nothing"));
    EXPECT_EQ(PopupMenu::OpenCount(program_.Id()), 1u);
    menu.Dismiss();
    EXPECT_EQ(PopupMenu::OpenCount(program_.Id()), 0u);
}

TEST_F(DesktopDriverTest, ChoosesFromAMenuAndFromASubmenu) {
    mouse::RightClick(window_.ClientPoint(250, 60));
    PopupMenu::Wait(program_.Id()).Choose("Fish & chips");
    ExpectJournal("menu 44");
    mouse::RightClick(window_.ClientPoint(250, 60));
    PopupMenu::Wait(program_.Id()).Choose({"More", "Inner"});
    ExpectJournal("menu 45");
    mouse::RightClick(window_.ClientPoint(250, 60));
    const PopupMenu menu = PopupMenu::Wait(program_.Id());
    EXPECT_THROW(menu.Choose("Disabled"), std::runtime_error);
    menu.Dismiss();
}

TEST_F(DesktopDriverTest, ReadsATip) {
    const ToolTipWatch tips(window_);
    EXPECT_FALSE(tips.Shown());
    mouse::MoveTo(window_.Child(target::kContainer).ClientPoint(90, 40));
    mouse::Glide(window_.Child(target::kRedSquare).Centre());
    const ToolTipText tip = tips.Wait();
    EXPECT_EQ(tip.title, "Red");
    EXPECT_EQ(tip.text, "A red square");
    EXPECT_EQ(tip.icon, static_cast<UINT>(TTI_INFO));
}

TEST_F(DesktopDriverTest, SeesThePixelsOfTheScreen) {
    mouse::MoveTo({1000, 700});
    const Window square = window_.Child(target::kRedSquare);
    const Picture picture =
        WaitFor("the square is red", [&] {
            const Picture now = CaptureWindow(square);
            return now.PixelCount(RGB(255, 0, 0)) == 1600 ? std::optional(now) : std::nullopt;
        }).value();
    EXPECT_EQ(picture.At(0, 0), RGB(255, 0, 0));
    EXPECT_EQ(picture.ColourCount(), 1u);
    EXPECT_EQ(picture.Width(), 40);
    EXPECT_THROW(picture.At(40, 0), std::out_of_range);
    const Picture whole = CaptureWindow(window_);
    EXPECT_GT(whole.ColourCount(), 3u);
    // The square's place in its parent, the parent's in the window.
    const POINT inside = window_.ClientPoint(105, 49);
    EXPECT_EQ(whole.At(inside.x - window_.Rect().left, inside.y - window_.Rect().top), RGB(255, 0, 0));
}

TEST_F(DesktopDriverTest, EndsAProgramGentlyOrAtOnce) {
    EXPECT_TRUE(program_.IsRunning());
    EXPECT_EQ(program_.ExitCode(), std::nullopt);
    EXPECT_EQ(program_.CloseAndWait(), 0u);
    RunningProgram other(path_);
    other.Terminate();
    EXPECT_FALSE(other.IsRunning());
    EXPECT_EQ(other.ExitCode(), 1u);
}

TEST_F(DesktopDriverTest, ClosesAProgramThatShowsADialog) {
    mouse::Click(window_.Child(target::kAskButton));
    WaitForSystemMessageBox(program_.Id(), "Question");
    EXPECT_EQ(program_.CloseAndWait(), 0u);
}

TEST_F(DesktopDriverTest, ClosesAProgramThatHasHiddenItsWindow) {
    ShowWindowAsync(window_.Handle(), SW_HIDE);
    WaitFor("the window is hidden", [&] { return !window_.IsVisible(); });
    EXPECT_THAT(program_.Windows(), IsEmpty());
    EXPECT_EQ(program_.CloseAndWait(), 0u);
}

TEST_F(DesktopDriverTest, EndsWhatAProgramHasStartedTogetherWithIt) {
    program_.Terminate();
    const ProcessQuery child{.name = "target.exe"};
    {
        RunningProgram shell("C:\\windows\\system32\\cmd.exe", {.arguments = "/c start /wait " + path_});
        WaitForTopWindow({.class_name = Utf8(target::kClass)});
        shell.Terminate();
        EXPECT_THAT(FindProcesses(child), SizeIs(1));
    }
    WaitFor("the child is ended", [&] { return FindProcesses(child).empty(); });
}

TEST_F(DesktopDriverTest, FindsProcessesByNameAndParent) {
    EXPECT_THAT(FindProcesses({.name = "TARGET.exe", .parent_id = GetCurrentProcessId()}), SizeIs(1));
    EXPECT_THAT(FindProcesses({.name = "target.exe", .parent_id = program_.Id()}), IsEmpty());
    EXPECT_THAT(FindProcesses({.name = "arget.exe"}), IsEmpty());
}

TEST_F(DesktopDriverTest, StartsAProgramInAGivenStateFolderAndEnvironment) {
    const std::string record = folder_.FullPath("elsewhere.txt");
    const std::string work_folder = folder_.MakeFolder("радна");
    RunningProgram maximized(path_, {.work_folder = work_folder,
                                     .show_state = SW_SHOWMAXIMIZED,
                                     .environment = {{"QUON_TARGET_RECORD", record}}});
    EXPECT_TRUE(maximized.MainWindow().IsMaximized());
    const std::vector<TargetLaunch> launches = LaunchesFromRecord(record);
    ASSERT_THAT(launches, SizeIs(1));
    EXPECT_EQ(launches[0].show_state, SW_SHOWMAXIMIZED);
    EXPECT_EQ(launches[0].work_folder, work_folder);
    RunningProgram minimized(path_, {.show_state = SW_SHOWMINNOACTIVE});
    EXPECT_TRUE(minimized.MainWindow().IsMinimized());
}

TEST_F(DesktopDriverTest, TakesChargeOfARunningProcess) {
    {
        const RunningProgram attached =
            WaitForProcess({.name = "TARGET.exe", .parent_id = GetCurrentProcessId()});
        EXPECT_EQ(attached.Id(), program_.Id());
        EXPECT_TRUE(attached.IsRunning());
    }
    EXPECT_FALSE(program_.IsRunning());
    EXPECT_THAT(FindProcesses({.name = "target.exe"}), IsEmpty());
}

TEST_F(DesktopDriverTest, CountsTheWindowsAndMenusThatAProgramHolds) {
    ONLY_UNDER_WINE("Windows counts more than windows and menus.");
    program_.WaitUntilIdle();
    const std::size_t before = program_.UserObjectCount();
    // The window itself, its five descendants and the tip.
    EXPECT_GE(before, 7u);
    mouse::RightClick(window_.ClientPoint(250, 60));
    const PopupMenu menu = PopupMenu::Wait(program_.Id());
    // The menu, its submenu and the window that shows it.
    EXPECT_EQ(program_.UserObjectCount(), before + 3);
    menu.Dismiss();
    program_.WaitUntilIdle();
    EXPECT_EQ(program_.UserObjectCount(), before);
}

TEST_F(DesktopDriverTest, CountsTheDrawingObjectsThatAProgramKeeps) {
    if (!CanCountDrawingObjects()) GTEST_SKIP() << "Wine keeps them from 32-bit programs.";
    const POINT place = window_.ClientPoint(250, 60);
    mouse::Click(place, {}, mouse::Button::kMiddle);
    ExpectJournal("middle 250,60");
    program_.WaitUntilIdle();
    const std::size_t before = program_.GdiObjectCount();
    mouse::Click(window_.ClientPoint(251, 60), {}, mouse::Button::kMiddle);
    ExpectJournal("middle 251,60");
    program_.WaitUntilIdle();
    EXPECT_EQ(program_.GdiObjectCount(), before + target::kBrushesKept);
    EXPECT_GT(program_.WorkingSet(), 1000000u);
}

TEST_F(DesktopDriverTest, SavesPicturesForPeople) {
    const std::string path = CaptureWindow(window_).SaveAs("driver-self-test.bmp");
    EXPECT_TRUE(path.starts_with(ArtifactsFolder()));
    const std::string bytes = FileBytes(path);
    EXPECT_TRUE(bytes.starts_with("BM"));
    EXPECT_EQ(bytes.size(), 54u + 320u * 200u * 4u);
}

TEST_F(DesktopDriverTest, TellsWhatIsOpenWhenItHasWaitedInVain) {
    mouse::Click(window_.Child(target::kAskButton));
    WaitForSystemMessageBox(program_.Id(), "Question");
    try {
        WaitFor("rain", [] { return false; }, std::chrono::milliseconds(30));
        FAIL() << "no exception";
    } catch (const TimeoutError& error) {
        EXPECT_THAT(error.what(), StartsWith("waited 30 ms in vain for: rain"));
        EXPECT_THAT(error.what(), HasSubstr("Really?"));
        EXPECT_THAT(error.what(), HasSubstr("QuonTestTarget \"Тест"));
    }
    EXPECT_TRUE(
        FileExists(ArtifactsFolder() + "\\DesktopDriverTest.TellsWhatIsOpenWhenItHasWaitedInVain.bmp"));
}

TEST(WaitTest, GivesWhatItWaitedFor) {
    int rounds = 0;
    EXPECT_EQ(WaitFor("the third round", [&] { return ++rounds == 3 ? rounds : 0; }), 3);
    EXPECT_FALSE(HappensWithin(std::chrono::milliseconds(30), [] { return false; }));
    EXPECT_TRUE(HoldsThroughout(std::chrono::milliseconds(30), [] { return true; }));
    EXPECT_FALSE(HoldsThroughout(kPatience, [&] { return ++rounds < 6; }));
}

}  // namespace
}  // namespace testkit
