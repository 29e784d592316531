// The panel worked by keys, and what is dragged and renamed on it.

#include "tests/program/other_window.h"
#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::ElementsAreArray, ::testing::SizeIs;

// The controls of the panel, each the base of its index.
constexpr int b1 = IDC_TAB_HEADER;
constexpr int pb1 = IDC_BUTTON;
constexpr int iBut = IDC_IMAGE_BUTTON;
constexpr int cMain = IDC_SHORTCUTS;

class PanelKeyboardTest : public QuonTest {
  protected:
    QuonPanel Start(const QuonIni& ini) const {
        QuonPanel quon = QuonTest::Start(ini);
        quon.Main().Activate();
        WaitFor("the first button has the focus", [&] { return quon.Button(1).IsFocused(); });
        return quon;
    }
    static void PressAndExpectFocus(const QuonPanel& quon, const Keys& keys, int id) {
        keyboard::Chord(keys);
        HappensWithin(kPatience, [&] { return FocusId(quon) == id; });
        EXPECT_EQ(FocusId(quon), id);
    }
    /// The id of the focused child; the drop-down's edit field counts as the drop-down.
    static int FocusId(const QuonPanel& quon) {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(quon.Main().ThreadId(), &info);
        const Window focus(info.hwndFocus);
        return focus.IsDescendantOf(quon.Shortcuts()) ? quon.Shortcuts().Id() : focus.Id();
    }
    std::string Record(const std::string& section, const std::string& key) const {
        return folder_.IniValue(section, key).value_or("(no such key)");
    }
};

TEST_F(PanelKeyboardTest, TabGoesFromKindToKindAndArrowsThroughEach) {
    QuonPanel quon = Start({});
    for (const int id : {iBut + 0, iBut + 1, iBut + 2, iBut + 3, cMain, b1 + 1, pb1 + 1})
        PressAndExpectFocus(quon, {VK_TAB}, id);
    // The image buttons and the headers each make a circle, the buttons a field with borders.
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, b1 + 1);
    PressAndExpectFocus(quon, {VK_LEFT}, b1 + 6);
    PressAndExpectFocus(quon, {VK_RIGHT}, b1 + 1);
    PressAndExpectFocus(quon, {VK_END}, b1 + 6);
    PressAndExpectFocus(quon, {VK_HOME}, b1 + 1);
    PressAndExpectFocus(quon, {VK_RIGHT}, b1 + 2);
    PressAndExpectFocus(quon, {VK_TAB}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_LEFT}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_UP}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 2);
    PressAndExpectFocus(quon, {VK_DOWN}, pb1 + 5);
    PressAndExpectFocus(quon, {VK_DOWN}, pb1 + 8);
    PressAndExpectFocus(quon, {VK_DOWN}, pb1 + 8);
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 9);
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 9);
    PressAndExpectFocus(quon, {VK_HOME}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_END}, pb1 + 9);
    PressAndExpectFocus(quon, {VK_UP}, pb1 + 6);
    PressAndExpectFocus(quon, {VK_TAB}, iBut + 0);
    for (const int id : {iBut + 1, iBut + 2, iBut + 3, iBut + 0, iBut + 1})
        PressAndExpectFocus(quon, {VK_RIGHT}, id);
    for (const int id : {iBut + 0, iBut + 3, iBut + 2})
        PressAndExpectFocus(quon, {VK_LEFT}, id);
    // Tab comes back to the button that was left.
    for (const int id : {iBut + 1, iBut + 0, pb1 + 6})
        PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, id);
    PressAndExpectFocus(quon, {VK_LEFT}, pb1 + 5);
}

TEST_F(PanelKeyboardTest, TabComesBackToTheTabThatIsShownAndToTheButtonThatWasPressed) {
    QuonPanel quon = Start({});
    mouse::Click(quon.Header(4));
    WaitFor("the header has the focus", [&] { return FocusId(quon) == b1 + 4; });
    PressAndExpectFocus(quon, {VK_RIGHT}, b1 + 5);
    PressAndExpectFocus(quon, {VK_TAB}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, b1 + 4);
    mouse::Click(quon.Button(8));
    WaitFor("the button has the focus", [&] { return FocusId(quon) == pb1 + 8; });
    PressAndExpectFocus(quon, {VK_TAB}, iBut + 0);
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, pb1 + 8);
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, b1 + 4);
}

TEST_F(PanelKeyboardTest, EnterAndSpaceOpenButtonsAndShowTabs) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon =
        Start(QuonIni{}.AddShortcut("12", "Editor", target).AddShortcut("61", "Sixth", folder_.Path()));
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 2);
    keyboard::Press(VK_RETURN);
    RunningProgram::Attach(WaitForTargetLaunches(target, 1).back().process_id).CloseAndWait();
    quon.Main().Activate();
    keyboard::Chord({VK_SHIFT, VK_SPACE});
    const TargetLaunch launch = WaitForTargetLaunches(target, 2).back();
    EXPECT_EQ(launch.show_state, SW_SHOWMAXIMIZED);
    RunningProgram::Attach(launch.process_id).CloseAndWait();
    quon.Main().Activate();
    keyboard::Chord({VK_MENU, VK_RETURN});
    const TargetLaunch minimized = WaitForTargetLaunches(target, 3).back();
    EXPECT_EQ(minimized.show_state, SW_MINIMIZE);
    RunningProgram::Attach(minimized.process_id).CloseAndWait();
    quon.Main().Activate();
    PressAndExpectFocus(quon, {VK_LEFT}, pb1 + 1);
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, b1 + 1);
    PressAndExpectFocus(quon, {VK_LEFT}, b1 + 6);
    keyboard::Press(VK_SPACE);
    quon.ExpectName(1, "Sixth");
    PressAndExpectFocus(quon, {VK_RIGHT}, b1 + 1);
    keyboard::Press(VK_RETURN);
    quon.ExpectName(1, "Empty");
    EXPECT_THAT(TargetLaunches(target), SizeIs(3));
}

/// The panel handles nothing as long as this lives.
class StoppedPanel {
  public:
    explicit StoppedPanel(const QuonPanel& quon)
        : thread_(OpenThread(THREAD_SUSPEND_RESUME, FALSE, quon.Main().ThreadId())) {
        EXPECT_NE(SuspendThread(thread_.Get()), static_cast<DWORD>(-1));
    }
    ~StoppedPanel() { ResumeThread(thread_.Get()); }
    StoppedPanel(const StoppedPanel&) = delete;
    StoppedPanel& operator=(const StoppedPanel&) = delete;

  private:
    win::KernelObject thread_;
};

/// Holds a key for two seconds. Wine forgets held keys when a program's window comes up, and would take the
/// next repeat for a press; so the panel gets all of them before it opens anything.
void HoldForTwoSeconds(const QuonPanel& quon, WORD key) {
    constexpr int kTwoSeconds = 60;
    const StoppedPanel stopped(quon);
    keyboard::Hold(key, kTwoSeconds);
}

TEST_F(PanelKeyboardTest, AHeldKeyOpensOneProgramAndStoresOnce) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Editor", target));
    std::size_t launches = 0;
    const auto expect_one_more = [&](const char* what) {
        const TargetLaunch launch = WaitForTargetLaunches(target, ++launches).back();
        quon.Program().WaitUntilIdle();
        EXPECT_THAT(TargetLaunches(target), SizeIs(launches)) << what;
        RunningProgram::Attach(launch.process_id).CloseAndWait();
        quon.Main().Activate();
    };
    {
        // Started minimised, the program leaves the keyboard to the panel.
        const HeldKeys alt({VK_MENU});
        HoldForTwoSeconds(quon, VK_RETURN);
    }
    expect_one_more("the button, minimised");
    for (const WORD key : {WORD{VK_RETURN}, WORD{VK_SPACE}}) {
        HoldForTwoSeconds(quon, key);
        expect_one_more("the button");
    }
    const Window edit = quon.Shortcuts().Descendants().front();
    mouse::Click(edit.ClientPoint(5, 5));
    WaitFor("the drop-down has the focus", [&] { return edit.IsFocused(); });
    keyboard::Type("editor");
    HoldForTwoSeconds(quon, VK_RETURN);
    expect_one_more("the drop-down");
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, iBut + 3);
    HoldForTwoSeconds(quon, VK_RETURN);
    expect_one_more("the Go button");
}

TEST_F(PanelKeyboardTest, AHeldEnterDoesNotAnswerTheMenuThatItHasOpened) {
    QuonPanel quon = Start({});
    const Window edit = quon.Shortcuts().Descendants().front();
    mouse::Click(edit.ClientPoint(5, 5));
    WaitFor("the drop-down has the focus", [&] { return edit.IsFocused(); });
    PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, iBut + 3);
    PressAndExpectFocus(quon, {VK_LEFT}, iBut + 2);
    for (const WORD key : {WORD{VK_SPACE}, WORD{VK_RETURN}}) {
        EXPECT_EQ(PopupMenu::OpenCount(quon.Id()), 0u);
        keyboard::Hold(key, 20);
        const PopupMenu menu = PopupMenu::Wait(quon.Id());
        quon.Main().Send(WM_NULL);
        EXPECT_TRUE(menu.PopupWindow().IsVisible()) << key;
        if (key != VK_RETURN) menu.Dismiss();
    }
    // Enter on "Options", held: the dialog that it opens is not accepted by the same press.
    keyboard::Press(VK_DOWN, 2);
    keyboard::Hold(VK_RETURN, 40);
    const Window dialog = quon.Program().WaitForWindow({.title = "Quon settings"});
    quon.Program().WaitUntilIdle();
    EXPECT_TRUE(dialog.Exists());
    keyboard::Press(VK_ESCAPE);
    WaitUntilClosed(dialog);
}

TEST_F(PanelKeyboardTest, HeldF10WithShiftOpensAMenuThatStays) {
    QuonPanel quon = Start({});
    {
        const HeldKeys shift({VK_SHIFT});
        keyboard::Hold(VK_F10, 20);
    }
    const PopupMenu menu = PopupMenu::Wait(quon.Id());
    quon.Main().Send(WM_NULL);
    EXPECT_TRUE(menu.PopupWindow().IsVisible());
    EXPECT_TRUE(menu.Has("Add file to button"));
    menu.Dismiss();
}

TEST_F(PanelKeyboardTest, TheFocusIsMarkedOnceAKeyIsUsed) {
    QuonPanel quon = Start({});
    quon.LeaveAlone();
    const auto face = [&](int button) { return CaptureWindow(quon.Button(button)); };
    const Picture plain = face(9);
    EXPECT_EQ(face(1), plain) << "marked before a key was used";
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 2);
    WaitFor("the mark", [&] { return face(2) != plain; });
    const Picture marked = face(2);
    // A line of two pixels, three pixels inside the face, and nothing else.
    for (const RECT untouched : {RECT{0, 0, 102, 3}, RECT{0, 87, 102, 90}, RECT{0, 0, 3, 90},
                                 RECT{99, 0, 102, 90}, RECT{5, 5, 97, 85}})
        EXPECT_EQ(marked.Part(untouched), plain.Part(untouched));
    for (const RECT line : {RECT{3, 3, 99, 5}, RECT{3, 85, 99, 87}, RECT{3, 3, 5, 87}, RECT{97, 3, 99, 87}}) {
        const Picture part = marked.Part(line);
        const auto length = static_cast<std::size_t>(part.Width()) * static_cast<std::size_t>(part.Height());
        EXPECT_EQ(part.PixelCount(GetSysColor(COLOR_HIGHLIGHT)), length);
    }
    EXPECT_EQ(face(1), plain);
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 3);
    WaitFor("the mark goes on", [&] { return face(2) == plain && face(3) == marked; });
}

/// While it lives, the test's target opens the files of one type.
class OpenedByTarget {
  public:
    OpenedByTarget(const std::string& extension, const std::string& target) : extension_(Wide(extension)) {
        Write(extension_, kType);
        Write(std::wstring(kType) + L"\\shell\\open\\command", L"\"" + Wide(target) + L"\" \"%1\"");
    }
    ~OpenedByTarget() {
        Write(extension_, former_);
        RegDeleteTreeW(HKEY_CLASSES_ROOT, kType);
    }
    OpenedByTarget(const OpenedByTarget&) = delete;
    OpenedByTarget& operator=(const OpenedByTarget&) = delete;

  private:
    static constexpr wchar_t kType[] = L"QuonTestType";

    static std::wstring Read(const std::wstring& key) {
        wchar_t value[256] = L"";
        DWORD size = sizeof value;
        RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value, &size);
        return value;
    }
    static void Write(const std::wstring& key, const std::wstring& value) {
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, value.c_str(),
                        static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    }

    std::wstring extension_;
    std::wstring former_ = Read(extension_);
};

TEST_F(PanelKeyboardTest, F1OpensTheManualWhereverTheFocusIs) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    const std::string manual = folder_.MakeFile("Manual.chm", "pages");
    const OpenedByTarget type(".chm", target);
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Editor", target));
    std::size_t launches = 0;
    const auto press = [&] {
        keyboard::Press(VK_F1);
        const TargetLaunch launch = WaitForTargetLaunches(target, ++launches).back();
        EXPECT_EQ(launch.command_line, "\"" + target + "\" \"" + manual + "\"");
        RunningProgram::Attach(launch.process_id).CloseAndWait();
    };
    press();
    for (const int id : {b1 + 1, cMain, iBut + 3}) {
        quon.Main().Activate();
        PressAndExpectFocus(quon, {VK_SHIFT, VK_TAB}, id);
        press();
    }
    // Docked, too, and out again.
    quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
    quon.WaitUntilDockedAt(Edge::kBottom);
    quon.Program().WaitUntilIdle();
    quon.Main().Activate();
    press();
    quon.Main().Post(WM_MOUSEMOVE, 1, WM_LBUTTONUP);
    quon.WaitUntilOut();
    // In a dialog too.
    quon.OpenButton(1, {VK_MENU, VK_CONTROL});
    const MessageBoxWindow question = MessageBoxWindow::Wait(quon.Id());
    WaitFor("the input line has the focus", [&] { return question.Input().IsFocused(); });
    press();
    question.AnswerByKey(VK_ESCAPE);
    EXPECT_THAT(TargetLaunches(target), SizeIs(launches));
}

TEST_F(PanelKeyboardTest, TheMenuKeysOpenTheButtonMenu) {
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("11", "Folder", folder_.Path())
                               .AddShortcut("12", "Group", folder_.Path() + "|C:\\"));
    std::vector<std::string> captions = {"Add file to button",
                                         "Add folder to button",
                                         "Add group to button",
                                         "-",
                                         "Free button",
                                         "-",
                                         "Show file properties",
                                         "Find target",
                                         "-",
                                         "Assign from active",
                                         "File operations",
                                         "Paste from clipboard",
                                         "Change icon"};
    keyboard::Chord({VK_SHIFT, VK_F10});
    {
        const PopupMenu menu = PopupMenu::Wait(quon.Id());
        EXPECT_THAT(menu.Captions(), ElementsAreArray(captions));
        CaptureScreen().SaveAs("button-menu.bmp");
        menu.Dismiss();
    }
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 2);
    keyboard::Press(VK_APPS);
    captions[2] = "Edit group";
    const PopupMenu menu = PopupMenu::Wait(quon.Id());
    EXPECT_THAT(menu.Captions(), ElementsAreArray(captions));
    for (const char* single : {"Show file properties", "Find target", "File operations", "Change icon"})
        EXPECT_FALSE(menu.Item(single).enabled) << single;
    constexpr std::chrono::milliseconds kOneStep{300};
    const auto reached = [&] { return menu.Item("Free button").highlighted; };
    for (std::size_t step = 0; step < captions.size() && !reached(); ++step) {
        keyboard::Press(VK_DOWN);
        HappensWithin(kOneStep, reached);
    }
    keyboard::Press(VK_RETURN);
    quon.ExpectName(2, "Empty");
    EXPECT_EQ(Record("Buttons", "12"), "");
    EXPECT_EQ(Record("Cuts", "Group"), "(no such key)");
}

TEST_F(PanelKeyboardTest, F2RenamesInPlace) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon =
        Start(QuonIni{}.AddShortcut("11", "Editor", target, "/x").AddShortcut("12", "Other", target));
    keyboard::Press(VK_F2);
    WaitFor("the rename box has the focus", [&] { return quon.RenameBox().IsFocused(); });
    EXPECT_EQ(quon.RenameBox().Text(), "Editor");
    EXPECT_GE(static_cast<short>(LOWORD(quon.RenameBox().Send(EM_POSFROMCHAR, 0))), 0)
        << "the name's start is out of sight";
    // The box lies over its button, and belongs to it wherever the pointer goes.
    EXPECT_GT(quon.RenameBox().Rect().top, quon.Button(1).Rect().top);
    EXPECT_LT(quon.RenameBox().Rect().bottom, quon.Button(1).Rect().bottom);
    quon.Settle();
    CaptureScreen().SaveAs("rename.bmp");
    keyboard::Type("Нове име 文字\n");
    quon.ExpectName(1, "Нове име 文字");
    WaitFor("the box hides", [&] { return !quon.RenameBox().IsVisible(); });
    EXPECT_EQ(Record("Buttons", "11"), "Нове име 文字|0");
    EXPECT_EQ(Record("Cuts", "Нове име 文字"), target);
    EXPECT_EQ(Record("Cuts", "Editor"), "(no such key)");
    EXPECT_EQ(Record("Switch", "Нове име 文字"), "/x");
    EXPECT_EQ(Record("Switch", "Editor"), "(no such key)");
    EXPECT_EQ(quon.Button(2).Text(), "Other");
}

TEST_F(PanelKeyboardTest, EscapeAndALostFocusAbandonARename) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Editor", folder_.Path()));
    const std::string before = folder_.IniBytes();
    const auto begin = [&] {
        keyboard::Press(VK_F2);
        WaitFor("the rename box has the focus", [&] { return quon.RenameBox().IsFocused(); });
        EXPECT_EQ(quon.RenameBox().Text(), "Editor");
    };
    const auto hidden = [&] { return !quon.RenameBox().IsVisible(); };
    begin();
    keyboard::Type("abc");
    keyboard::Press(VK_ESCAPE);
    WaitFor("the box hides on Esc", hidden);
    WaitFor("the button has the focus again", [&] { return quon.Button(1).IsFocused(); });
    begin();
    // An empty name is no name: Enter leaves the box as it is.
    keyboard::Press(VK_DELETE);
    keyboard::Press(VK_RETURN);
    keyboard::Type("x");
    WaitFor("the box takes more", [&] { return quon.RenameBox().Text() == "x"; });
    EXPECT_TRUE(quon.RenameBox().IsVisible());
    mouse::Click(quon.Button(5));
    WaitFor("the box hides when the focus goes", hidden);
    // The free button is the current one now and has no name to change.
    keyboard::Press(VK_F2);
    quon.Settle();
    EXPECT_FALSE(quon.RenameBox().IsVisible());
    EXPECT_EQ(quon.Button(1).Text(), "Editor");
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PanelKeyboardTest, LeavingForAnotherProgramAbandonsARename) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("15", "Editor", folder_.Path()));
    const std::string before = folder_.IniBytes();
    PressAndExpectFocus(quon, {VK_RIGHT}, pb1 + 2);
    PressAndExpectFocus(quon, {VK_DOWN}, pb1 + 5);
    keyboard::Press(VK_F2);
    WaitFor("the rename box has the focus", [&] { return quon.RenameBox().IsFocused(); });
    keyboard::Type("abc");
    WaitFor("the name is typed", [&] { return quon.RenameBox().Text() == "abc"; });
    const OtherWindow other({20, 20, 120, 120});
    other.AsWindow().Activate();
    WaitFor("the box hides", [&] { return !quon.RenameBox().IsVisible(); });
    quon.Main().Activate();
    WaitFor("the button has the focus again", [&] { return quon.Button(5).IsFocused(); });
    EXPECT_EQ(quon.Button(5).Text(), "Editor");
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PanelKeyboardTest, ADragOverAHeaderShowsItsTabAndADropElsewhereChangesNothing) {
    QuonPanel quon = Start(
        QuonIni{}.AddShortcut("11", "First", folder_.Path()).AddShortcut("31", "Third", folder_.Path()));
    const auto record = [&] { return Record("Buttons", "11") + " " + Record("Buttons", "31"); };
    const std::string before = record();
    const Keys moving = {VK_CONTROL, VK_SHIFT};
    mouse::Drag(quon.Button(1).Centre(), quon.Header(3).Centre(), moving);
    quon.ExpectName(1, "Third");
    // A press without the keys, or with the right button, moves nothing.
    mouse::Drag(quon.Button(1).Centre(), quon.Header(1).Centre());
    quon.Settle();
    EXPECT_EQ(quon.Button(1).Text(), "Third");
    // Esc ends the move where it is.
    mouse::MoveTo(quon.Button(1).Centre());
    {
        const HeldKeys keys(moving);
        mouse::Press();
        mouse::Glide(quon.Button(5).Centre());
        keyboard::Press(VK_ESCAPE);
        mouse::Release();
    }
    quon.Settle();
    EXPECT_EQ(quon.Button(1).Text(), "Third");
    EXPECT_EQ(quon.Button(5).Text(), "Empty");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon.Id()));
    // There is nothing to move on a free button: the header under the pointer does not show its tab.
    mouse::Drag(quon.Button(6).Centre(), quon.Header(1).Centre(), moving);
    quon.Settle();
    EXPECT_EQ(quon.Button(1).Text(), "Third");
    EXPECT_EQ(record(), before);
}

TEST_F(PanelKeyboardTest, ADragMovesAShortcutToAButtonOfAnotherTab) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Премештен 文", target, "/x"));
    mouse::MoveTo(quon.Button(1).Centre());
    {
        const HeldKeys keys({VK_CONTROL, VK_SHIFT});
        mouse::Press();
        mouse::Glide(quon.Header(2).Centre());
        mouse::Glide(quon.Button(6).Centre());
        mouse::Release();
    }
    quon.ExpectName(6, "Премештен 文");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon.Id())) << "a free button asks nothing";
    EXPECT_EQ(Record("Buttons", "11"), "");
    EXPECT_EQ(Record("Buttons", "26"), "Премештен 文|0");
    EXPECT_EQ(Record("Cuts", "Премештен 文"), target);
    EXPECT_EQ(Record("Switch", "Премештен 文"), "/x");
    mouse::Click(quon.Header(1));
    quon.Settle();
    EXPECT_EQ(quon.Button(1).Text(), "Empty");
}

}  // namespace
}  // namespace testkit
