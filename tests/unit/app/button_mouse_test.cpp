#include "app/button_mouse.h"

#include "config/ini.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/program_calls.h"
#include "tests/unit/app/panel_parts.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Window;

TEST(ButtonActionTest, FollowsTheModifierKeys) {
    struct Row {
        int shift;
        ButtonAction::Kind kind;
        int showCommand;
    };
    const std::vector<Row> rows{{0, ButtonAction::kLaunch, 1},     {1, ButtonAction::kLaunch, 3},
                                {2, ButtonAction::kFreeButton, 1}, {3, ButtonAction::kLaunch, 1},
                                {4, ButtonAction::kLaunch, 6},     {5, ButtonAction::kLaunch, 1},
                                {6, ButtonAction::kEditSwitch, 1}, {7, ButtonAction::kLaunch, 1}};
    for (const Row& row : rows) {
        EXPECT_EQ(ActionFor(row.shift).kind, row.kind) << row.shift;
        EXPECT_EQ(ActionFor(row.shift).showCommand, row.showCommand) << row.shift;
    }
}

class ButtonMouseTest : public PanelParts {
  protected:
    ButtonMouseTest() {
        fakes_.push_back(
            FAKE_CALL(ShellExecuteA, [this](HWND, LPCSTR, LPCSTR file, LPCSTR, LPCSTR, INT show) {
                log_.Add("open", testkit::NameOf(file), show);
                return reinterpret_cast<HINSTANCE>(33);
            }));
        fakes_.push_back(testkit::LogStarts(log_));
        fakes_.push_back(FAKE_CALL(Sleep, [this](DWORD time) { log_.Add("Sleep", time); }));
        target_ = folder_.MakeFile("Ђ文.txt", "text");
        Load("[Buttons]\r\n11=Име|0\r\n12=G|0\r\n[Cuts]\r\nИме=" + target_ + "\r\nG=" + target_ + "|" +
             target_ + "\r\n");
    }

    void StoreSwitch(const std::string& text) {
        config::WriteIni("Switch", "Име", text);
        state_.Button(1).RefreshButton("11");
        log_.Clear();
    }
    std::optional<std::string> StoredSwitch() const { return folder_.IniValue("Switch", "Име"); }
    /// Edits the switch of button 1 and answers the question.
    void EditSwitch(const ModalAnswers::Step& answer) {
        ModalAnswers user({answer});
        DoubleClick(Button(1), {VK_CONTROL, VK_MENU});
    }

    std::string target_;
};

TEST_F(ButtonMouseTest, OpensInTheStateThatTheModifierKeysChoose) {
    const std::vector<std::pair<std::initializer_list<int>, int>> cases{{{}, 1},
                                                                        {{VK_SHIFT}, 3},
                                                                        {{VK_MENU}, 6},
                                                                        {{VK_SHIFT, VK_MENU}, 1},
                                                                        {{VK_SHIFT, VK_CONTROL, VK_MENU}, 1}};
    for (const auto& [held, show] : cases) {
        log_.Clear();
        DoubleClick(Button(1), held);
        EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt " + std::to_string(show), "Sleep 500"));
    }
}

TEST_F(ButtonMouseTest, OpensEveryMemberOfAGroup) {
    DoubleClick(Button(2));
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 1", "open Ђ文.txt 1", "Sleep 500"));
}

TEST_F(ButtonMouseTest, ForgetsTheModifierKeysAfterALaunch) {
    DoubleClick(Button(1), {VK_SHIFT});
    log_.Clear();
    SendMessageW(Button(1), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(40, 40));
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 1", "Sleep 500"));
}

TEST_F(ButtonMouseTest, KeepsTheSwitchOutOfTheButtonsTarget) {
    StoreSwitch("/x \"a b\"");
    for (int time = 0; time < 2; ++time) {
        log_.Clear();
        DoubleClick(Button(1));
        EXPECT_THAT(log_.Lines(), ElementsAre("start " + target_ + " /x \"a b\" 1", "Sleep 500"));
    }
    EXPECT_EQ(state_.Button(1).FilePath, target_);
}

TEST_F(ButtonMouseTest, DocksAfterALaunchWhenTheSettingSaysSo) {
    DoubleClick(Button(1));
    EXPECT_FALSE(dock_.Hidden());
    config::Settings.HideAfterLaunch = true;
    const auto timer = FAKE_CALL(SetTimer, [this](HWND, UINT_PTR, UINT interval, TIMERPROC) -> UINT_PTR {
        log_.Add("timer", interval);
        return 1;
    });
    log_.Clear();
    DoubleClick(Button(1));
    EXPECT_TRUE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 1", "Sleep 500", "timer 500"));
}

TEST_F(ButtonMouseTest, OpensNothingOnAButtonNamedEmpty) {
    config::Settings.HideAfterLaunch = true;
    state_.Button(1).Naziv = "Empty";
    DoubleClick(Button(1));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(ButtonMouseTest, DoesNothingOnAFreeButton) {
    config::Settings.HideAfterLaunch = true;
    const std::string before = folder_.IniBytes();
    for (const std::initializer_list<int> held :
         {std::initializer_list<int>{}, {VK_CONTROL}, {VK_CONTROL, VK_MENU}})
        DoubleClick(Button(5), held);
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(state_.Context.CurrentButtonKey, "15");
}

TEST_F(ButtonMouseTest, FreesTheButtonForCtrlWithoutALaunch) {
    DoubleClick(Button(1), {VK_CONTROL});
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
    EXPECT_EQ(log_.Count("open"), 0u);
}

TEST_F(ButtonMouseTest, StaysOutWhereNothingIsLaunched) {
    config::Settings.HideAfterLaunch = true;
    EditSwitch(testkit::Press(dialogs::frmMsg::b1 + 0));
    DoubleClick(Button(2), {VK_CONTROL});
    EXPECT_TRUE(state_.Button(2).IsFree());
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_EQ(log_.Count("Sleep"), 0u);
}

TEST_F(ButtonMouseTest, FreesAndEditsOnASingleClickTooWhenOneIsEnough) {
    config::Settings.SingleClickOpen = true;
    ModalAnswers user({testkit::TypeAndPress("/single", dialogs::frmMsg::b1 + 2)});
    Press(Button(1), {VK_CONTROL, VK_MENU});
    Release(Button(1));
    EXPECT_EQ(StoredSwitch(), "/single");
    Press(Button(1), {VK_CONTROL});
    Release(Button(1));
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(log_.Count("start"), 0u);
}

TEST_F(ButtonMouseTest, MakesTheButtonTheCurrentOneAtEveryEvent) {
    config::Settings.CurrentTab = 4;
    const std::vector<std::function<void(HWND)>> events{
        [](HWND button) { SendMessageW(button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)); },
        [](HWND button) { Press(button); },
        [this](HWND button) {
            Press(button);
            state_.Context.Select(3);
            Release(button);
        },
        [](HWND button) { SendMessageW(button, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5)); },
        [](HWND button) { SetFocus(button); }};
    for (const auto& event : events) {
        state_.Context.Select(1);
        event(Button(7));
        EXPECT_EQ(state_.Context.CurrentButtonIndex, 7);
        EXPECT_EQ(state_.Context.CurrentButtonKey, "47");
        ReleaseCapture();
        SetFocus(nullptr);
    }
}

TEST_F(ButtonMouseTest, OpensOnASingleClickOnlyWhenTheSettingSaysSo) {
    Press(Button(1));
    Release(Button(1));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    config::Settings.SingleClickOpen = true;
    Press(Button(1), {VK_SHIFT});
    Release(Button(1));
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 3", "Sleep 500"));
}

TEST_F(ButtonMouseTest, OpensOnceForADoubleClickWhileASingleOneIsEnough) {
    config::Settings.SingleClickOpen = true;
    DoubleClick(Button(1));
    EXPECT_EQ(log_.Count("open"), 1u);
}

TEST_F(ButtonMouseTest, TheRightButtonIsNoClick) {
    config::Settings.SingleClickOpen = true;
    const auto track = ANSWER_CALL(TrackPopupMenu, 0);
    SendMessageW(Button(1), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    SendMessageW(Button(1), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ButtonMouseTest, OpensTheMenuOfThePressedButtonAtThePointerForTheRightButton) {
    const auto track = FAKE_CALL(
        TrackPopupMenu, [this](HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*) -> BOOL {
            EXPECT_EQ(flags, UINT{TPM_RETURNCMD | TPM_RIGHTBUTTON});
            EXPECT_EQ(owner, host_.Handle());
            char caption[64] = "";
            GetMenuStringA(menu, 2, caption, sizeof caption, MF_BYPOSITION);
            log_.Add("menu", state_.Context.CurrentButtonKey, x, y, caption);
            return 0;
        });
    menu_.Attach(host_.Handle());
    pointer_ = {412, -37};
    SendMessageW(Button(2), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    SendMessageW(Button(9), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    EXPECT_THAT(log_.Lines(),
                ElementsAre("menu 12 412 -37 Edit group", "menu 19 412 -37 Add group to button"));
}

TEST_F(ButtonMouseTest, OpensTheMenuOfTheFocusedButtonInItsMiddleForTheMenuKey) {
    const auto track =
        FAKE_CALL(TrackPopupMenu, [this](HMENU, UINT, int x, int y, int, HWND, const RECT*) -> BOOL {
            log_.Add("menu", state_.Context.CurrentButtonKey, x, y);
            return 0;
        });
    SetFocus(Button(2));
    SendMessageW(Button(9), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    SendMessageW(Button(2), WM_CONTEXTMENU, 0, -1);
    const POINT middle = Inside(Button(2));
    EXPECT_THAT(log_.Lines(),
                ElementsAre("menu 12 " + std::to_string(middle.x) + " " + std::to_string(middle.y)));
}

TEST_F(ButtonMouseTest, CarriesTheChosenCommandOutOnTheButtonTheMenuWasOpenedFor) {
    const auto track = FAKE_CALL(TrackPopupMenu, [this]() -> BOOL {
        // A drop that is acted on while the menu is open.
        state_.Context.Select(2);
        return 2504;
    });
    SendMessageW(Button(1), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_FALSE(state_.Button(2).IsFree());
}

TEST_F(ButtonMouseTest, AReleaseOutsideTheButtonIsNoClick) {
    config::Settings.SingleClickOpen = true;
    Press(Button(1));
    SendMessageW(Button(1), WM_LBUTTONUP, 0, MAKELPARAM(400, 40));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ButtonMouseTest, RefusesASwitchForAGroup) {
    ModalAnswers user({testkit::Note("Sorry, can not add switch to group button.")});
    DoubleClick(Button(2), {VK_CONTROL, VK_MENU});
    EXPECT_EQ(log_.Count("open"), 0u);
}

TEST_F(ButtonMouseTest, AsksForTheSwitchWithThePresentOne) {
    StoreSwitch("/прво 二");
    EditSwitch([](Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Please enter command switch for this file:");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 0).Text(), "Cancel");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 1).Text(), "Delete");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 2).Text(), "OK");
        EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), "/прво 二");
        EXPECT_TRUE(box.Child(dialogs::frmMsg::Text1).IsVisible());
        box.Press(dialogs::frmMsg::b1 + 0);
    });
    EXPECT_EQ(StoredSwitch(), "/прво 二");
    EXPECT_EQ(log_.Count("open"), 0u);
}

TEST_F(ButtonMouseTest, StoresTheTypedSwitchUnderTheShortcutsName) {
    for (const std::string text : {"-a=b", "/ново 新", "\"quoted\""}) {
        EditSwitch(testkit::TypeAndPress(text, dialogs::frmMsg::b1 + 2));
        EXPECT_EQ(state_.Button(1).Switch, text);
    }
    EXPECT_EQ(StoredSwitch(), "\"\"quoted\"\"");
}

TEST_F(ButtonMouseTest, TakesNoLongerSwitchThanCanBeReadBack) {
    EditSwitch([](Window box) {
        box.Child(dialogs::frmMsg::Text1).SetText(std::string(554, 's'));
        box.Child(dialogs::frmMsg::Text1).SetText(std::string(555, 't'));
        box.Press(dialogs::frmMsg::b1 + 2);
    });
    EXPECT_EQ(state_.Button(1).Switch, std::string(554, 's'));
}

TEST_F(ButtonMouseTest, CutsNoLongerSwitchThatIsOnlyConfirmed) {
    const std::string whole(700, 's');
    StoreSwitch(whole);
    EditSwitch([](Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), std::string(554, 's'));
        box.Child(dialogs::frmMsg::b1 + 2).Send(BM_CLICK);
    });
    EXPECT_EQ(StoredSwitch(), whole);
}

TEST_F(ButtonMouseTest, AsksAgainWithATypedSwitchThatCouldNotBeStored) {
    StoreSwitch("/old");
    auto held = std::make_unique<testkit::HeldFile>(folder_.IniPath());
    const ModalAnswers user({testkit::TypeAndPress("/typed", dialogs::frmMsg::b1 + 2),
                             testkit::Note("Couldn't perform the operation, sorry."), [&](Window box) {
                                 EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), "/typed");
                                 held.reset();
                                 box.Press(dialogs::frmMsg::b1 + 2);
                             }});
    DoubleClick(Button(1), {VK_CONTROL, VK_MENU});
    EXPECT_EQ(StoredSwitch(), "/typed");
    EXPECT_EQ(state_.Button(1).Switch, "/typed");
}

TEST_F(ButtonMouseTest, ShowsTheSwitchOnEveryButtonOfTheShortcut) {
    EXPECT_TRUE(state_.Store().PutRecord({1, 9}, "Име|0"));
    state_.Button(9).RefreshButton("19");
    EditSwitch(testkit::TypeAndPress("/x", dialogs::frmMsg::b1 + 2));
    EXPECT_EQ(state_.Button(9).Switch, "/x");
}

TEST_F(ButtonMouseTest, LeavesTheSwitchForCancelForAClosedAndForAnEmptyAnswer) {
    StoreSwitch("/old");
    const std::vector<ModalAnswers::Step> answers{
        testkit::Press(dialogs::frmMsg::b1 + 0), [](Window box) { box.Send(WM_CLOSE); },
        [](Window) { PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0); },
        testkit::TypeAndPress("", dialogs::frmMsg::b1 + 2)};
    for (const ModalAnswers::Step& answer : answers) {
        EditSwitch(answer);
        EXPECT_EQ(StoredSwitch(), "/old");
        EXPECT_EQ(state_.Button(1).Switch, "/old");
    }
}

TEST_F(ButtonMouseTest, DeletesTheSwitchAndNoOther) {
    StoreSwitch("/old");
    config::WriteIni("Switch", "Other", "a=b");
    EditSwitch(testkit::Press(dialogs::frmMsg::b1 + 1));
    EXPECT_FALSE(StoredSwitch());
    EXPECT_EQ(folder_.IniValue("Switch", "Other"), "a=b");
    EXPECT_EQ(state_.Button(1).Switch, "");
}

TEST_F(ButtonMouseTest, ReadsTheButtonAnewWhateverTheAnswer) {
    StoreSwitch("/old");
    EditSwitch([](Window box) {
        config::WriteIni("Switch", "Име", "/meanwhile");
        box.Press(dialogs::frmMsg::b1 + 0);
    });
    EXPECT_EQ(state_.Button(1).Switch, "/meanwhile");
}

TEST_F(ButtonMouseTest, TakesATypedCaptionForItsButton) {
    StoreSwitch("/old");
    const auto type = [](const char* text) {
        return [text](Window box) {
            box.Child(dialogs::frmMsg::Text1).SetText(text);
            box.Press(dialogs::frmMsg::b1 + 2);
        };
    };
    EditSwitch(type("Cancel"));
    EXPECT_EQ(StoredSwitch(), "/old");
    EditSwitch(type("Delete"));
    EXPECT_FALSE(StoredSwitch());
}

TEST_F(ButtonMouseTest, StaysWithItsButtonWhileTheQuestionIsOpen) {
    EditSwitch([this](Window box) {
        state_.Context.Select(2);
        box.Child(dialogs::frmMsg::Text1).SetText("/x");
        box.Press(dialogs::frmMsg::b1 + 2);
    });
    EXPECT_EQ(StoredSwitch(), "/x");
    EXPECT_EQ(state_.Button(1).Switch, "/x");
}

TEST_F(ButtonMouseTest, HasTheNextHoverBuildTheTipAnewAfterTheSwitchWasEdited) {
    state_.TipButton = 1;
    EditSwitch(testkit::Press(dialogs::frmMsg::b1 + 0));
    EXPECT_EQ(state_.TipButton, 0);
}

TEST_F(ButtonMouseTest, OpensByEnterAndSpaceWithTheKeysHeldNow) {
    SendMessageW(Button(1), WM_KEYDOWN, VK_RETURN, 0);
    const HeldModifierKeys shift({VK_SHIFT});
    SendMessageW(Button(1), WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 1", "Sleep 500", "open Ђ文.txt 3", "Sleep 500"));
}

TEST_F(ButtonMouseTest, PassesWhatIsDoneToTheHoverPictureToItsButton) {
    SendMessageW(Button(1), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    DoubleClick(buttons_.HoverPicture().Handle(), {VK_SHIFT});
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 3", "Sleep 500"));
}

TEST_F(ButtonMouseTest, PassesASingleClickOnTheHoverPictureOnWhenOneIsEnough) {
    const HWND hover = buttons_.HoverPicture().Handle();
    SendMessageW(Button(1), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    const auto click = [&] {
        SendMessageW(hover, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(hover, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    };
    click();
    EXPECT_THAT(log_.Lines(), IsEmpty());
    config::Settings.SingleClickOpen = true;
    click();
    EXPECT_THAT(log_.Lines(), ElementsAre("open Ђ文.txt 1", "Sleep 500"));
    log_.Clear();
    SendMessageW(hover, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ButtonMouseTest, OpensTheButtonsMenuForARightPressOnTheHoverPicture) {
    const auto track =
        FAKE_CALL(TrackPopupMenu, [this](HMENU, UINT, int x, int y, int, HWND, const RECT*) -> BOOL {
            log_.Add("menu", state_.Context.CurrentButtonKey, x, y);
            return 0;
        });
    SendMessageW(Button(2), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    state_.Context.Select(1);
    pointer_ = {20, 30};
    SendMessageW(buttons_.HoverPicture().Handle(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    EXPECT_THAT(log_.Lines(), ElementsAre("menu 12 20 30"));
}

TEST_F(ButtonMouseTest, MovesTheButtonThatTheHoverPictureStandsOn) {
    const HWND hover = buttons_.HoverPicture().Handle();
    drag_.onDrop = [this](const model::ButtonPlace& target, const DragSource& source) {
        log_.Add("drop", target.Key(), source.Place.Key());
    };
    SendMessageW(Button(1), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    Press(hover, {VK_CONTROL, VK_SHIFT});
    EXPECT_TRUE(drag_.Ready());
    pointer_ = Inside(tabs_.Header(3).Handle());
    SendMessageW(hover, WM_MOUSEMOVE, MK_LBUTTON, 0);
    EXPECT_TRUE(drag_.Active());
    EXPECT_EQ(config::Settings.CurrentTab, 3);
    EXPECT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0) << "it holds the mouse";
    pointer_ = Inside(Button(6));
    Release(hover);
    EXPECT_THAT(log_.Lines(), ElementsAre("drop 36 11"));
    tabs_.b1_MouseUp(1, win::MouseButton::kLeft, 0, 0, 0);
    Press(hover, {VK_CONTROL, VK_SHIFT});
    ASSERT_TRUE(drag_.Ready());
    ReleaseCapture();
    EXPECT_FALSE(drag_.Ready()) << "the mouse was taken away";
}

TEST_F(ButtonMouseTest, TheTabKeyStopsAtTheButtonThatHadTheFocusLast) {
    const auto stops = [&] {
        std::vector<int> found;
        for (int index = 1; index <= 9; ++index)
            if ((GetWindowLongPtrW(Button(index), GWL_STYLE) & WS_TABSTOP) != 0) found.push_back(index);
        return found;
    };
    EXPECT_THAT(stops(), ElementsAre(1));
    SendMessageW(Button(5), WM_SETFOCUS, 0, 0);
    SendMessageW(Button(5), WM_KILLFOCUS, 0, 0);
    EXPECT_THAT(stops(), ElementsAre(5));
}

TEST_F(ButtonMouseTest, APressTakesTheFocusWhereTabDoesNotStop) {
    HWND focused = nullptr;
    const auto focus = FAKE_CALL(SetFocus, [&](HWND window) { return focused = window; });
    Press(Button(7));
    Release(Button(7));
    EXPECT_EQ(focused, Button(7));
}

TEST_F(ButtonMouseTest, ArrowsHomeAndEndMoveTheFocusInsideTheField) {
    std::vector<int> focused;
    const auto focus = FAKE_CALL(SetFocus, [&](HWND window) -> HWND {
        focused.push_back(GetDlgCtrlID(window) - IDC_BUTTON);
        return nullptr;
    });
    for (const WPARAM key : {VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN, VK_HOME, VK_END})
        SendMessageW(Button(5), WM_KEYDOWN, key, 0);
    SendMessageW(Button(3), WM_KEYDOWN, VK_RIGHT, 0);
    SendMessageW(Button(7), WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_THAT(focused, ElementsAre(4, 2, 6, 8, 1, 9));
}

}  // namespace
}  // namespace app
