#include "app/button_menu.h"

#include "config/ini.h"
#include "tests/support/ini_writes.h"
#include "tests/unit/app/panel_parts.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

std::vector<std::string> Captions(const win::MenuArray& menu) {
    std::vector<std::string> captions;
    for (int index = 0; index < menu.Count(); ++index)
        captions.push_back(menu[index].caption);
    return captions;
}

class ButtonMenuTest : public PanelParts {};

TEST_F(ButtonMenuTest, HasItsCommandsInOrder) {
    EXPECT_THAT(Captions(menu_.mnuButton),
                ElementsAre("Add file to button", "Add folder to button", "Add group to button", "-",
                            "Free button", "-", "Show file properties", "Find target", "-",
                            "Assign from active", "File operations", "Paste from clipboard", "Change icon"));
    EXPECT_THAT(Captions(menu_.mnuButB), ElementsAre("Copy file to...", "Move file to...", "Rename file", "-",
                                                     "Move to Recycle bin", "Delete file"));
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre("Item1"));
}

TEST_F(ButtonMenuTest, OpensItsTwoSubmenus) {
    EXPECT_EQ(menu_.mnuButton[9].submenu, &menu_.mnuButAct);
    EXPECT_EQ(menu_.mnuButton[10].submenu, &menu_.mnuButB);
}

TEST_F(ButtonMenuTest, NumbersItsCommandsFromTheirBases) {
    EXPECT_EQ(menu_.mnuButton.IndexOf(2504), 4);
    EXPECT_EQ(menu_.mnuButB.IndexOf(2551), 1);
    EXPECT_EQ(menu_.mnuButAct.IndexOf(2700), 0);
}

/// The indexes of the commands that cannot be chosen.
std::vector<int> Disabled(const win::MenuArray& menu) {
    std::vector<int> disabled;
    for (int index = 0; index < menu.Count(); ++index)
        if (!menu[index].enabled) disabled.push_back(index);
    return disabled;
}

/// A desktop with nothing on it, or with one window of a program whose path cannot be found.
class ButtonMenuPreparedTest : public ButtonMenuTest {
  protected:
    bool running_ = false;
    testkit::RecordedCall top_ =
        FAKE_CALL(GetTopWindow, [this](HWND) { return running_ ? titled_ : nullptr; });
    testkit::RecordedCall next_ = FAKE_CALL(GetWindow, [] { return HWND{}; });
    testkit::RecordedCall process_ = FAKE_CALL(GetWindowThreadProcessId, [this](HWND, LPDWORD process) {
        *process = owner_;
        return DWORD{1};
    });
    testkit::RecordedCall version_ = ANSWER_CALL(GetVersionExA, FALSE);
    DWORD owner_ = 4711;
    HWND titled_ = CreateWindowExW(0, L"STATIC", L"title", WS_OVERLAPPEDWINDOW, 0, 0, 50, 50, nullptr,
                                   nullptr, nullptr, nullptr);
    ~ButtonMenuPreparedTest() override { DestroyWindow(titled_); }
};

TEST_F(ButtonMenuPreparedTest, SuitsFreeSingleAndGroupButtons) {
    Load("[Buttons]\r\n11=G|0\r\n12=S|0\r\n[Cuts]\r\nG=http://a/|http://b/\r\nS=http://a/\r\n");
    running_ = true;
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_EQ(menu_.mnuButton[2].caption, "Edit group");
    EXPECT_THAT(Disabled(menu_.mnuButton), ElementsAre(6, 7, 10, 12));
    for (const int button : {2, 3}) {
        state_.Context.Select(button);
        menu_.Prepare(state_.CurrentPlace());
        EXPECT_EQ(menu_.mnuButton[2].caption, "Add group to button") << button;
        EXPECT_THAT(Disabled(menu_.mnuButton), IsEmpty()) << button;
        state_.Context.Select(1);
        menu_.Prepare(state_.CurrentPlace());
    }
    EXPECT_THAT(Disabled(menu_.mnuButB), IsEmpty());
}

TEST_F(ButtonMenuPreparedTest, OffersRunningProgramsOnlyWhenThereAreSome) {
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Disabled(menu_.mnuButton), ElementsAre(9));
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre("Item1"));
    running_ = true;
    menu_.mnuButAct.Load(1).caption = "of the time before";
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Disabled(menu_.mnuButton), IsEmpty());
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre(""));
    running_ = false;
    menu_.mnuButAct[0].tag = "C:\\old.exe";
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre("Item1"));
    EXPECT_EQ(menu_.mnuButAct[0].tag, "");
}

TEST_F(ButtonMenuPreparedTest, AsksForHiddenWindowsAsTheSettingSays) {
    running_ = true;
    config::Settings.TaskbarProcessesOnly = true;
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre("Item1"));
    config::Settings.TaskbarProcessesOnly = false;
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre(""));
}

TEST_F(ButtonMenuPreparedTest, OffersNoneOfItsOwnWindows) {
    running_ = true;
    owner_ = GetCurrentProcessId();
    menu_.Prepare(state_.CurrentPlace());
    EXPECT_THAT(Captions(menu_.mnuButAct), ElementsAre("Item1"));
}

TEST_F(ButtonMenuPreparedTest, RunsWhatIsChosenOnTheButtonItWasOpenedFor) {
    Load("[Buttons]\r\n11=S|0\r\n12=T|0\r\n[Cuts]\r\nS=http://s/\r\nT=http://t/\r\n");
    menu_.Attach(host_.Handle());
    int command = 0;
    const auto track =
        FAKE_CALL(TrackPopupMenu, [&](HMENU, UINT flags, int x, int y, int, HWND owner, const RECT*) -> BOOL {
            log_.Add("menu", x, y);
            EXPECT_EQ(owner, host_.Handle());
            EXPECT_NE(flags & TPM_RETURNCMD, 0u);
            menu_.mnuButAct[0].tag = folder_.MakeFile("p.exe");
            state_.Context.Select(2);
            return command;
        });
    const auto properties = FAKE_CALL(ShellExecuteExA, [&](SHELLEXECUTEINFOA* record) -> BOOL {
        log_.Add("properties", record->lpFile);
        return TRUE;
    });
    menu_.PopUp(state_.CurrentPlace(), {30, 40});
    command = 2506;
    state_.Context.Select(1);
    menu_.PopUp(state_.CurrentPlace(), {30, 40});
    EXPECT_THAT(log_.Lines(), ElementsAre("menu 30 40", "menu 30 40", "properties http://s/"));
    command = 2700;
    state_.Context.Select(3);
    menu_.PopUp(state_.CurrentPlace(), {0, 0});
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "p|0");
}

TEST_F(ButtonMenuTest, FreesAButtonWithItsTargetAndItsSwitch) {
    Load(
        "[Buttons]\r\n11=Име|0\r\n12=B|0\r\n[Cuts]\r\nИме=http://a/\r\nB=http://b/?x=1\r\n"
        "[Switch]\r\nИме=/x\r\nB=/y=z\r\n");
    state_.TipButton = 1;
    menu_.FreeButton(state_.CurrentPlace());
    EXPECT_EQ(state_.TipButton, 0) << "the next hover has to build the tip anew";
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
    EXPECT_EQ(folder_.Ini().Keys("Cuts"), std::vector<std::string>{"B"});
    EXPECT_EQ(folder_.Ini().Keys("Switch"), std::vector<std::string>{"B"});
    EXPECT_EQ(folder_.IniValue("Cuts", "B"), "http://b/?x=1");
    EXPECT_EQ(folder_.IniValue("Switch", "B"), "/y=z");
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(state_.Context.Records.At("11"), "");
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "Empty");
    EXPECT_THAT(log_.Lines(), ElementsAre("refill"));
}

TEST_F(ButtonMenuTest, LeavesASwitchUnderTheNameOfAGroup) {
    Load("[Buttons]\r\n11=G|0\r\n[Cuts]\r\nG=http://a/|http://b/\r\n[Switch]\r\nG=/x\r\n");
    menu_.FreeButton(state_.CurrentPlace());
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(folder_.IniValue("Cuts", "G"), std::nullopt);
    EXPECT_EQ(folder_.IniValue("Switch", "G"), "/x") << "a group has no switch of its own";
}

TEST_F(ButtonMenuTest, DeletesSwitchThenTargetThenTheButtonsRecord) {
    Load("[Buttons]\r\n11=A|0\r\n[Cuts]\r\nA=http://a/\r\n[Switch]\r\nA=/x\r\n");
    const testkit::RecordedCalls writes = testkit::LogWrites(log_);
    menu_.FreeButton(state_.CurrentPlace());
    EXPECT_TRUE(InOrder(log_, {"empty Switch", "empty Cuts", "write Buttons 11 ", "refill"}));
}

TEST_F(ButtonMenuTest, LeavesAFreeButtonUntouched) {
    Load("[Buttons]\r\n11=A|0\r\n[Cuts]\r\nA=http://a/\r\nEmpty=http://e/\r\n[Switch]\r\nEmpty=/e\r\n");
    state_.Context.Select(3);
    const std::string before = folder_.IniBytes();
    menu_.FreeButton(state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

}  // namespace
}  // namespace app
