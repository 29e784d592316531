// The icon in the notification area: what its clicks do, its menu, and how long it is there.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/program/other_window.h"
#include "tests/program/quon_test.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

/// Where the first icon stands: at the right end of the taskbar. Empty while there is no taskbar, which comes
/// with the first icon or task.
RECT IconPlace() {
    const Window tray = FindTopWindow({.class_name = "Shell_TrayWnd"});
    if (!tray) return {};
    const RECT bar = tray.Rect();
    return {bar.right - (bar.bottom - bar.top), bar.top, bar.right, bar.bottom};
}

/// Whether an icon can be seen there; the bare taskbar has its colour and that of its frame.
bool IconIsShown() {
    const RECT place = IconPlace();
    return place.right > place.left && CaptureScreen(place).ColourCount() > 6;
}

class TrayMessageTest : public DockedTest {
  protected:
    bool StaysDocked(const QuonPanel& quon) const {
        return HoldsThroughout(milliseconds(600), [&] {
            return quon.IsDockedAt(ItsEdge()) && PopupMenu::OpenCount(quon.Id()) == 0;
        });
    }
    /// What the shell sends for a mouse message over the icon.
    static void PostCallback(const QuonPanel& quon, UINT message) {
        quon.Main().Post(WM_MOUSEMOVE, 1, static_cast<LPARAM>(message));
    }
};

/// With the icon itself.
class TrayTest : public TrayMessageTest {
  protected:
    void SetUp() override {
        ONLY_UNDER_WINE("Windows keeps icons where their user has put them, mostly out of sight.");
    }

    static POINT Icon() {
        WaitFor("the tray icon", &IconIsShown);
        const RECT place = IconPlace();
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    static void ExpectNoIcon() {
        EXPECT_TRUE(HappensWithin(kPatience, [] { return !IconIsShown(); })) << "the icon is still there";
    }
    static PopupMenu OpenMenu(const QuonPanel& quon) {
        mouse::RightClick(Icon());
        return PopupMenu::Wait(quon.Id());
    }
};

TEST_F(TrayTest, TheIconIsThereFromTheStartToTheEnd) {
    ExpectNoIcon();
    QuonPanel quon = Start();
    WaitFor("the tray icon", &IconIsShown);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    ExpectNoIcon();
}

TEST_F(TrayTest, ALeftClickBringsThePanelOutAndGivesItTheFocus) {
    QuonPanel quon = Start();
    mouse::Click(Icon());
    quon.WaitUntilOut();
    WaitFor("the panel has the focus", [&] { return quon.Main().IsForeground(); });
    EXPECT_EQ(PopupMenu::OpenCount(quon.Id()), 0u);
}

TEST_F(TrayTest, ARightClickBringsThePanelOutAndOpensTheMenu) {
    QuonPanel quon = Start();
    const PopupMenu menu = OpenMenu(quon);
    EXPECT_TRUE(quon.IsOut());
    EXPECT_THAT(menu.Captions(), ElementsAre("Show Quon", "-", "Close"));
    EXPECT_EQ(menu.Item("Show Quon").id, 2600u);
    EXPECT_EQ(menu.Item("Close").id, 2602u);
    EXPECT_TRUE(menu.Item("Show Quon").enabled);
    EXPECT_TRUE(menu.Item("Close").enabled);
    menu.Choose("Show Quon");
    EXPECT_TRUE(quon.IsOut());
    EXPECT_TRUE(quon.Program().IsRunning());
}

TEST_F(TrayTest, TheMenuClosesWhenTheUserClicksElsewhere) {
    QuonPanel quon = Start();
    // Another program is in front: the panel learns of clicks beside its menu only once it is in front
    // itself.
    const OtherWindow elsewhere({kAway.x - 30, kAway.y - 30, kAway.x + 30, kAway.y + 30});
    elsewhere.AsWindow().Activate();
    OpenMenu(quon);
    EXPECT_TRUE(quon.Main().IsForeground());
    mouse::Click(kAway);
    WaitFor("the menu closes", [&] { return PopupMenu::OpenCount(quon.Id()) == 0; });
    EXPECT_TRUE(quon.Program().IsRunning());
}

TEST_F(TrayTest, OtherMouseMessagesOverTheIconDoNothing) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 50;
    ini_.click_shows = true;
    QuonPanel quon = Start();
    mouse::MoveTo(Icon());
    for (const UINT message : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN,
                               WM_RBUTTONDBLCLK, WM_MBUTTONDOWN, WM_MBUTTONUP})
        PostCallback(quon, static_cast<UINT>(message));
    EXPECT_TRUE(StaysDocked(quon));
}

TEST_F(TrayMessageTest, ARightClickThatCameFromElsewhereDoesNothing) {
    QuonPanel quon = Start();
    // A taskbar in the foreground would be taken for one that the user works in by the keyboard.
    const OtherWindow other({0, 0, 100, 100});
    SetForegroundWindow(other.AsWindow().Handle());
    WaitFor("the other window in front", [&] { return other.AsWindow().IsForeground(); });
    PostCallback(quon, WM_RBUTTONUP);
    EXPECT_TRUE(StaysDocked(quon));
}

TEST_F(TrayMessageTest, TheMenuOpensOverAnyWindowCaptionedLikeANotificationArea) {
    QuonPanel quon = Start();
    constexpr RECT kBelowThePointer{kAway.x - 30, kAway.y - 30, kAway.x + 30, kAway.y + 30};
    for (const wchar_t* caption : {L"Notificatio", L"User Promoted Notification Area"}) {
        const OtherWindow other(kBelowThePointer, caption);
        mouse::MoveTo(kAway);
        ASSERT_EQ(Window::At(mouse::Place()), other.AsWindow());
        PostCallback(quon, WM_RBUTTONUP);
        EXPECT_TRUE(StaysDocked(quon)) << caption;
    }
    const OtherWindow area(kBelowThePointer, L"Notification Überlauf");
    mouse::MoveTo(kAway);
    ASSERT_EQ(Window::At(mouse::Place()), area.AsWindow());
    PostCallback(quon, WM_RBUTTONUP);
    PopupMenu::Wait(quon.Id()).Dismiss();
    EXPECT_TRUE(quon.IsOut());
}

TEST_F(TrayTest, CloseEndsTheProgramAndSavesTheSettingAsItWas) {
    ini_.close_button_closes = false;
    QuonPanel quon = Start();
    OpenMenu(quon).Choose("Close");
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini_.Main());
    ExpectNoIcon();
}

TEST_F(TrayTest, CloseCancelsTheOpenQuestionAndEnds) {
    ini_.start_glued = false;
    ini_.AddShortcut("11", "Target", folder_.MakeFile("a.txt"), "/old");
    QuonPanel quon = Start();
    quon.OpenButton(1, {VK_MENU, VK_CONTROL});
    const MessageBoxWindow question = MessageBoxWindow::Wait(quon.Id());
    question.SetInput("/new");
    OpenMenu(quon).Choose("Close");
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Switch", "Target"), "/old");
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini_.Main());
    ExpectNoIcon();
}

TEST_F(TrayTest, TheIconBringsThePanelOutWhileAQuestionIsOpen) {
    ini_.start_glued = false;
    ini_.AddShortcut("11", "Target", folder_.MakeFile("a.txt"));
    QuonPanel quon = Start();
    quon.OpenButton(1, {VK_MENU, VK_CONTROL});
    const MessageBoxWindow question = MessageBoxWindow::Wait(quon.Id());
    const Window box = question.BoxWindow();
    quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
    quon.WaitUntilDockedAt(ItsEdge());
    const OtherWindow elsewhere({kAway.x - 30, kAway.y - 30, kAway.x + 30, kAway.y + 30});
    elsewhere.AsWindow().Activate();
    mouse::Click(Icon());
    quon.WaitUntilOut();
    // Not the panel, which takes no input and would cover the question.
    WaitFor("the question is in front", [&] { return box.IsForeground(); });
    quon.Program().WaitUntilIdle();
    EXPECT_EQ(Window(GetAncestor(Window::At(box.Centre()).Handle(), GA_ROOT)), box);
    EXPECT_FALSE(quon.Main().IsEnabled());
    question.ClickButton(0);
    EXPECT_TRUE(quon.Main().IsEnabled());
}

TEST_F(TrayTest, AFailedLoadLeavesNoIconBehind) {
    folder_.WriteIniText("[Settings]\r\nMain=1,False\r\n");
    RunningProgram quon = StartQuon(folder_);
    const Window box = WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
    EXPECT_FALSE(IconIsShown());
    box.Activate();
    keyboard::Press(VK_RETURN);
    EXPECT_EQ(quon.WaitForExit(), 1u);
    ExpectNoIcon();
}

}  // namespace
}  // namespace testkit
