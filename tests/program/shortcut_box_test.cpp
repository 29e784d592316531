// The drop-down of text shortcuts under the user's hands: typing, opening, refreshing, drops, the Go button.

#include "tests/program/quon_test.h"
#include "tests/support/drag_source.h"

namespace testkit {
namespace {

using ::testing::Contains, ::testing::IsEmpty;

class ShortcutBoxProgramTest : public QuonTest {
  protected:
    /// Starts Quon with the panel in front and the focus in the edit field.
    void Start() {
        folder_.WriteIniText(ini_.Text() + rest_);
        quon_.emplace(folder_);
        quon_->WaitUntilPainted();
        FocusBox();
    }
    void FocusBox() {
        mouse::Click(Edit().ClientPoint(5, 5));
        WaitFor("the box has the focus", [&] { return Edit().IsFocused(); });
    }
    Window Edit() const { return quon_->Shortcuts().Descendants().front(); }
    /// The text with its selected part between "[" and "]"; "|" is the caret where nothing is selected.
    std::string Shown() const {
        std::wstring text = Wide(Edit().Text());
        const LRESULT selection = Edit().Selection();
        const std::size_t start = LOWORD(selection);
        const std::size_t end = HIWORD(selection);
        if (start > text.size() || end > text.size()) return "(in between)";
        if (start == end) return Utf8(text.insert(start, L"|"));
        return Utf8(text.insert(end, L"]").insert(start, L"["));
    }
    void ExpectShown(const std::string& shown) const {
        HappensWithin(kPatience, [&] { return Shown() == shown; });
        EXPECT_EQ(Shown(), shown);
    }
    void Type(const std::string& text, const std::string& shown) const {
        keyboard::Type(text);
        ExpectShown(shown);
    }
    void Press(WORD key, const std::string& shown) const {
        keyboard::Press(key);
        ExpectShown(shown);
    }
    void Clear() const { Press(VK_ESCAPE, "|"); }
    LRESULT Count() const { return quon_->Shortcuts().Send(CB_GETCOUNT); }
    bool IsListed(const std::string& name) const {
        return quon_->Shortcuts().Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(Wide(name).c_str())) >= 0;
    }
    void ExpectListed(const std::string& name, bool listed = true) const {
        HappensWithin(kPatience, [&] { return IsListed(name) == listed; });
        EXPECT_EQ(IsListed(name), listed) << name;
    }
    /// Opens the list with the mouse and clicks its last item.
    void ChooseRefresh() const {
        const RECT place = quon_->Shortcuts().Rect();
        mouse::Click(POINT{place.right - 8, place.top + 10});
        const Window list = WaitForTopWindow({.class_name = "ComboLBox", .process_id = quon_->Id()});
        mouse::Click(POINT{list.Rect().left + 20, list.Rect().bottom - 8});
    }

    void OpenList() const {
        keyboard::Chord({VK_MENU, VK_DOWN});
        WaitFor("the list opens", [&] { return quon_->Shortcuts().Send(CB_GETDROPPEDSTATE) != FALSE; });
    }

    QuonIni ini_;
    std::string rest_;
    std::optional<QuonPanel> quon_;
};

class TypingTest : public ShortcutBoxProgramTest {
  protected:
    struct KeyMove {
        WORD key;
        bool up;
    };
    static void SendKeys(const std::vector<KeyMove>& moves) {
        std::vector<INPUT> inputs;
        for (const auto& [key, up] : moves) {
            INPUT input = {};
            input.type = INPUT_KEYBOARD;
            input.ki.wVk = key;
            input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
            input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
            inputs.push_back(input);
        }
        ASSERT_EQ(SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)), inputs.size());
    }
    TypingTest() {
        for (const char* name : {"Calc", "Notepad", "Notes 2", "Заметки", "日本語の本"})
            ini_.cuts.emplace_back(name, "C:\\nothing");
    }
};

TEST_F(TypingTest, CompletesLetterByLetterAndAllAtOnce) {
    Start();
    Press('N', "N[otepad]");
    Press('O', "No[tepad]");
    keyboard::Press('T');
    keyboard::Press('E');
    Press('S', "Notes[ 2]");
    CaptureWindow(quon_->Main()).SaveAs("completion.bmp");
    Clear();
    Type("notepad", "Notepad|");
    Clear();
    Type("otep", "otep[ad]");
    Clear();
    Type("cal and more", "Cal and more|");
    Clear();
    // "[Refresh list]" is no name.
    Type("re", "re|");
}

TEST_F(TypingTest, AFastTypistsKeysOverlap) {
    Start();
    for (int round = 0; round < 3; ++round) {
        // Each key goes down before the one before it goes up.
        SendKeys({{'N', false}, {'O', false}, {'N', true}, {'O', true}});
        ExpectShown("No[tepad]");
        SendKeys({{'T', false}, {'E', false}, {'T', true}, {'S', false}, {'S', true}, {'E', true}});
        ExpectShown("Notes[ 2]");
        Clear();
    }
    keyboard::Chord({VK_SHIFT, 'N'});
    ExpectShown("N[otepad]");
}

TEST_F(TypingTest, CorrectionsAreLeftAsTheyAre) {
    Start();
    Type("nox", "Nox|");
    Press(VK_BACK, "No|");
    Type("t", "Not[epad]");
    Press(VK_BACK, "Not|");
    Press(VK_BACK, "No|");
    Type("tes", "Notes[ 2]");
    Press(VK_DELETE, "Notes|");
    // In the middle of a text.
    keyboard::Press(VK_HOME);
    Press(VK_DELETE, "|otes");
    Type("n", "n|otes");
}

TEST_F(TypingTest, TypingReplacesWhatIsSelected) {
    Start();
    Type("nothing at all", "Nothing at all|");
    keyboard::Chord({VK_SHIFT, VK_HOME});
    ExpectShown("[Nothing at all]");
    Type("c", "C[alc]");
    keyboard::Press(VK_END);
    keyboard::Chord({VK_CONTROL, VK_SHIFT, VK_LEFT});
    Type("n", "N[otepad]");
}

TEST_F(TypingTest, TakesEveryScript) {
    Start();
    Type("Заметки 日本", "Заметки 日本|");
    Clear();
    // These characters have no key that completes; the digit's key does.
    keyboard::Type("notes ");
    Press('2', "Notes 2|");
}

class OpeningTest : public ShortcutBoxProgramTest {
  protected:
    std::string MakeTarget(const std::string& name) const { return folder_.CopyIn(TestTargetExe(), name); }
    static TargetLaunch CloseAfterLaunch(const std::string& target, std::size_t count) {
        const TargetLaunch launch = WaitForTargetLaunches(target, count).back();
        RunningProgram::Attach(launch.process_id).CloseAndWait();
        return launch;
    }
};

TEST_F(OpeningTest, EnterOpensWhatIsCompletedAndLeavesItThere) {
    const std::string target = MakeTarget("алати\\уредник.exe");
    ini_.cuts.emplace_back("Editor č 文", target);
    Start();
    Type("ed", "Ed[itor č 文]");
    keyboard::Press(VK_RETURN);
    const TargetLaunch launch = CloseAfterLaunch(target, 1);
    EXPECT_EQ(launch.work_folder, folder_.FullPath("алати"));
    EXPECT_EQ(launch.show_state, SW_SHOWNORMAL);
    ExpectShown("Editor č 文|");
    EXPECT_TRUE(quon_->IsOut());
}

TEST_F(OpeningTest, EnterDocksThePanelAfterwardsWhenTheSettingSaysSo) {
    const std::string target = MakeTarget("target.exe");
    ini_.hide_after_launch = true;
    ini_.edge = static_cast<int>(Edge::kTop);
    ini_.cuts.emplace_back("Editor", target);
    Start();
    keyboard::Type("editor\n");
    CloseAfterLaunch(target, 1);
    WaitFor("the panel docks", [&] { return quon_->IsDockedAt(Edge::kTop); });
}

TEST_F(OpeningTest, EscEmptiesTheBoxAndDocksThePanelOnlyFromAnEmptyOne) {
    ini_.edge = static_cast<int>(Edge::kRight);
    Start();
    Type("text", "text|");
    Press(VK_ESCAPE, "|");
    EXPECT_TRUE(quon_->IsOut());
    keyboard::Press(VK_ESCAPE);
    WaitFor("the panel docks", [&] { return quon_->IsDockedAt(Edge::kRight); });
}

TEST_F(OpeningTest, TheGoButtonDocksThePanelAndOpens) {
    const std::string target = MakeTarget("target.exe");
    ini_.hide_after_launch = true;
    ini_.edge = static_cast<int>(Edge::kLeft);
    ini_.cuts.emplace_back("Editor", target);
    Start();
    Type("editor", "Editor|");
    mouse::Click(quon_->ImageButton(3));
    WaitFor("the panel docks", [&] { return quon_->IsDockedAt(Edge::kLeft); });
    CloseAfterLaunch(target, 1);
    EXPECT_EQ(Edit().Text(), "Editor");
}

TEST_F(OpeningTest, AChosenNameIsOpenedByEnterOnly) {
    const std::string first = MakeTarget("first.exe");
    const std::string second = MakeTarget("second.exe");
    ini_.cuts.emplace_back("First", first);
    ini_.cuts.emplace_back("Second", second);
    Start();
    Press(VK_DOWN, "[First]");
    Press(VK_DOWN, "[Second]");
    keyboard::Press(VK_RETURN);
    CloseAfterLaunch(second, 1);
    EXPECT_THAT(TargetLaunches(first), IsEmpty());
    ExpectShown("Second|");
}

TEST_F(OpeningTest, EnterInTheOpenListOpensTheMarkedNameAtOnce) {
    const std::string first = MakeTarget("first.exe");
    const std::string second = MakeTarget("second.exe");
    ini_.cuts.emplace_back("First", first);
    ini_.cuts.emplace_back("Second", second);
    Start();
    OpenList();
    keyboard::Press(VK_DOWN, 2);
    ExpectShown("[Second]");
    keyboard::Press(VK_RETURN);
    CloseAfterLaunch(second, 1);
    ExpectShown("Second|");
    EXPECT_EQ(quon_->Shortcuts().Send(CB_GETDROPPEDSTATE), FALSE);
    EXPECT_THAT(TargetLaunches(first), IsEmpty());
}

TEST_F(OpeningTest, EscInTheOpenListClosesThatAndNothingMore) {
    ini_.cuts.emplace_back("First", "C:\\nothing");
    Start();
    OpenList();
    Press(VK_DOWN, "[First]");
    keyboard::Press(VK_ESCAPE);
    WaitFor("the list closes", [&] { return quon_->Shortcuts().Send(CB_GETDROPPEDSTATE) == FALSE; });
    quon_->Program().WaitUntilIdle();
    EXPECT_EQ(Edit().Text(), "First");
    EXPECT_TRUE(quon_->IsOut());
}

TEST_F(OpeningTest, AMatchInsideANameOpensThatName) {
    const std::string target = MakeTarget("target.exe");
    ini_.cuts.emplace_back("Great editor", target);
    Start();
    Type("edit", "edit[or]");
    keyboard::Press(VK_RETURN);
    CloseAfterLaunch(target, 1);
    ExpectShown("editor|");
    mouse::Click(quon_->ImageButton(3));
    CloseAfterLaunch(target, 2);
}

TEST_F(OpeningTest, AQueryStartsTheSearchToolOrSaysThatItIsMissing) {
    Start();
    keyboard::Type("?budget 2 план\n");
    const MessageBoxWindow note = MessageBoxWindow::Wait(quon_->Id());
    EXPECT_EQ(note.Text(),
              "You need to have Quon Search Utility to execute this command.\n\nYou can download it from "
              "Quon's web site.");
    note.ClickButton(0);
    const std::string tool = MakeTarget("QSU.exe");
    FocusBox();
    keyboard::Press(VK_RETURN);
    const TargetLaunch launch = CloseAfterLaunch(tool, 1);
    EXPECT_EQ(launch.command_line, "\"" + tool + "\" \"budget 2 план\"");
    EXPECT_EQ(launch.show_state, SW_SHOWNORMAL);
}

class RefreshTest : public ShortcutBoxProgramTest {
  protected:
    bool HasProbes() const {
        WIN32_FIND_DATAW found = {};
        const HANDLE listing = FindFirstFileW(Wide(folder_.FullPath("tempfile*")).c_str(), &found);
        if (listing != INVALID_HANDLE_VALUE) FindClose(listing);
        return listing != INVALID_HANDLE_VALUE;
    }
};

TEST_F(RefreshTest, TheRefreshItemReadsTheFileAnew) {
    ini_.cuts.emplace_back("Old", "C:\\old");
    Start();
    EXPECT_TRUE(IsListed("Old"));
    ini_.cuts.front().first = "Новый";
    folder_.WriteIniText(ini_.Text());
    ChooseRefresh();
    ExpectListed("Новый");
    EXPECT_FALSE(IsListed("Old"));
    EXPECT_TRUE(IsListed("[Refresh list]"));
    ExpectShown("|");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
    EXPECT_FALSE(folder_.Ini().HasSection("Collected"));
}

TEST_F(RefreshTest, KeysAndWheelOverTheClosedListOnlyFillTheBox) {
    ini_.show_collected = true;
    Start();
    Press(VK_DOWN, "[[Refresh list]]");
    mouse::MoveTo(Edit().Centre());
    mouse::Wheel(-1);
    quon_->Program().WaitUntilIdle();
    EXPECT_FALSE(folder_.Ini().HasSection("Collected"));
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
    EXPECT_EQ(Edit().Text(), "[Refresh list]");
    // Enter is a choice.
    keyboard::Press(VK_RETURN);
    MessageBoxWindow::Wait(quon_->Id()).ClickButton(0);
    ExpectListed("notepad");
}

TEST_F(RefreshTest, CollectsTheProgramsThatAreRegistered) {
    ini_.show_collected = true;
    ini_.cuts.emplace_back("Mine", "C:\\mine");
    rest_ = "[Collected]\r\nGone=C:\\gone.exe\r\n";
    Start();
    EXPECT_TRUE(IsListed("Gone")) << "the list is filled again once the settings are known";
    ChooseRefresh();
    const MessageBoxWindow note = MessageBoxWindow::Wait(quon_->Id());
    EXPECT_EQ(note.Text(), "To start the application, just choose it from drop-down box.");
    EXPECT_EQ(note.BoxWindow().Owner(), quon_->Main());
    EXPECT_EQ(Edit().Text(), "");
    EXPECT_FALSE(HasProbes());
    CaptureScreen().SaveAs("collected.bmp");
    note.ClickButton(0);
    ExpectListed("notepad");
    EXPECT_TRUE(IsListed("Mine"));
    EXPECT_TRUE(IsListed("[Refresh list]"));
    std::vector<std::string> paths;
    for (const IniText::Entry& entry : folder_.Ini().Entries("Collected")) {
        ExpectListed(entry.key);
        EXPECT_THAT(paths, ::testing::Not(Contains(entry.value)));
        paths.push_back(entry.value);
    }
    EXPECT_GT(paths.size(), 2u);
}

class BoxDropProgramTest : public ShortcutBoxProgramTest {
  protected:
    DWORD DropOnEdit(const DragOffer& offer) { return source_.Drop(offer, Edit().Centre()); }
    /// Onto the arrow beside the edit field.
    DWORD DropOnBox(const DragOffer& offer) {
        const RECT place = quon_->Shortcuts().Rect();
        return source_.Drop(offer, {place.right - 8, place.top + 10});
    }
    std::optional<std::string> Cut(const std::string& name) const { return folder_.IniValue("Cuts", name); }

    ProgramFolder files_{"drop"};
    DragSource source_{files_};
    const std::string file_ = files_.MakeFile("План č.txt");
    const std::string other_ = files_.MakeFile("文書.txt");
};

TEST_F(BoxDropProgramTest, StoresFilesLinksAndTextFromAnotherProgram) {
    Start();
    keyboard::Type("zzz");
    EXPECT_EQ(DropOnEdit({.files = {file_, other_}}), static_cast<DWORD>(DROPEFFECT_COPY));
    ExpectListed("План č");
    EXPECT_EQ(Cut("План č"), file_);
    EXPECT_EQ(Cut("文書"), std::nullopt) << "only the first file counts";
    ExpectShown("zzz|");

    EXPECT_EQ(DropOnBox({.text = "https://example.org/page.html\r\nA page"}),
              static_cast<DWORD>(DROPEFFECT_COPY));
    ExpectListed("page");
    EXPECT_EQ(Cut("page"), "https://example.org/page.html");

    DropOnEdit({.files = {files_.MakeLink("link.lnk", {.target = other_, .arguments = "/a"})}});
    const MessageBoxWindow note = MessageBoxWindow::Wait(quon_->Id());
    EXPECT_EQ(note.Text(),
              "This shortcut has command switch. Quon will make this text shortcut, but you can use command "
              "switches only with button shortcuts.");
    note.ClickButton(0);
    ExpectListed("文書");
    EXPECT_EQ(Cut("文書"), other_);
    EXPECT_EQ(Count(), 4);
    EXPECT_EQ(DropOnEdit({}), static_cast<DWORD>(DROPEFFECT_NONE)) << "neither text nor files";
}

TEST_F(BoxDropProgramTest, TheListFollowsTheButtons) {
    ini_.AddShortcut("12", "Second", other_);
    Start();
    source_.Drop({.files = {file_}}, quon_->Button(1).Centre());
    ExpectListed("План č");
    // Renaming.
    quon_->Main().Activate();
    mouse::MoveTo(quon_->Button(1).Centre());
    quon_->Main().Send(WM_NULL);
    keyboard::Press(VK_F2);
    WaitFor("the rename box opens", [&] { return quon_->RenameBox().IsFocused(); });
    keyboard::Type("Переименовано\n");
    ExpectListed("Переименовано");
    EXPECT_FALSE(IsListed("План č"));
    // Freeing.
    quon_->OpenButton(2, {VK_CONTROL});
    quon_->ExpectName(2, "Empty");
    ExpectListed("Second", false);
    EXPECT_EQ(Count(), 2);
}

}  // namespace
}  // namespace testkit
