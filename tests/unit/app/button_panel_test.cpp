#include "app/button_panel.h"

#include <shlwapi.h>

#include "app/panel_layout.h"
#include "tests/unit/app/panel_parts.h"
#include "win/errors.h"
#include "win/geometry.h"

namespace app {
namespace {

/// A child's place in its parent's client pixels.
RECT PlaceIn(HWND parent, HWND child) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

class ButtonPanelTest : public PanelParts {};

TEST(PanelLayoutTest, IsNarrowerThanTheTrayIconsMessages) {
    EXPECT_LT(layout::kClientWidth, 512);
    EXPECT_GE(layout::kMargin, 4);
}

TEST(PanelLayoutTest, HasTheContainer1320TwipsBelowTheTop) { EXPECT_EQ(layout::kContainerTop * 15, 1320); }

TEST_F(ButtonPanelTest, PlacesNineButtonsThreeByThree) {
    for (int index = 1; index <= 9; ++index) {
        const RECT place = PlaceIn(GetParent(Button(index)), Button(index));
        EXPECT_EQ(win::Width(place), 102);
        EXPECT_EQ(win::Height(place), 90);
        EXPECT_EQ(place.top, (index - 1) / 3 * 90);
        EXPECT_EQ(place.left - layout::kMargin, (index - 1) % 3 * 102);
        EXPECT_EQ(testkit::Window(Button(index)).Id(), 200 + index);
    }
    EXPECT_THROW(buttons_.Picture(0), win::SubscriptError);
    EXPECT_THROW(buttons_.Picture(10), win::SubscriptError);
}

TEST_F(ButtonPanelTest, WritesTheFreeButtonsOfATabOnce) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    int writes = 0;
    const auto write = WATCH_CALL(WritePrivateProfileStringA, [&] { ++writes; });
    buttons_.RefreshShownTab();
    EXPECT_EQ(writes, 9);
    EXPECT_EQ(folder_.Ini().Keys("Buttons").size(), 9u);
    buttons_.RefreshShownTab();
    EXPECT_EQ(writes, 9) << "they are free in the file by now";
}

TEST_F(ButtonPanelTest, StoresWhatIsFreedBeforeItPaintsAnything) {
    folder_.WriteIniText(
        "[Buttons]\r\n11=Gone|0\r\n12=A|0\r\n19=Lost|0\r\n[Cuts]\r\nA=http://a/\r\nGone=C:\\no\\such\r\n");
    state_.Context.Records.LoadButtonRecords();
    const auto icon = FAKE_CALL(ExtractIconA, [&]() -> HICON {
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
        EXPECT_EQ(folder_.IniValue("Buttons", "19"), "");
        EXPECT_EQ(state_.Context.Records.At("19"), "");
        log_.Add("icon");
        return nullptr;
    });
    buttons_.RefreshShownTab();
    EXPECT_GE(log_.Count("icon"), 1u);
}

TEST_F(ButtonPanelTest, ARefreshDuringAnotherOneWins) {
    Load(
        "[Buttons]\r\n11=A|0\r\n12=B|0\r\n21=C|0\r\n[Cuts]\r\nA=http://a/\r\nB=http://b/\r\nC=http://c/\r\n");
    bool once = false;
    const auto icon = FAKE_CALL(ExtractIconA, [&]() -> HICON {
        // The shell lets messages run, and the user shows another tab.
        if (!std::exchange(once, true)) tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
        return nullptr;
    });
    buttons_.RefreshShownTab();
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "C");
    EXPECT_EQ(testkit::Window(Button(2)).Text(), "Empty");
    EXPECT_TRUE(state_.Button(2).IsFree());
}

TEST_F(ButtonPanelTest, KeepsEveryButtonThatCannotBeReadAndReadsItAgainSoon) {
    Load(
        "[Buttons]\r\n11=A|3\r\n12=B|0\r\n21=C|5\r\n[Cuts]\r\nA=http://a/\r\nB=http://b/\r\nC=http://c/\r\n");
    const std::string before = folder_.IniBytes();
    {
        const testkit::HeldFile held(folder_.IniPath());
        tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
        EXPECT_EQ(state_.Button(1).Naziv, "C") << "its record is known";
        EXPECT_EQ(testkit::Window(Button(1)).Text(), "C");
        EXPECT_TRUE(state_.Button(1).IsUnread());
        EXPECT_FALSE(state_.Button(1).Group);
        EXPECT_EQ(state_.Button(1).FilePath, "") << "nothing of the former tab can be opened here";
        tabs_.b1_MouseUp(1, win::MouseButton::kLeft, 0, 0, 0);
        EXPECT_EQ(state_.Context.Records.At("11"), "A|3");
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    testkit::WaitFor("the buttons are read without the user's doing", [this] {
        return state_.Button(1).FilePath == "http://a/" && state_.Button(2).FilePath == "http://b/";
    });
    EXPECT_GE(log_.Count("refill"), 1u);
    EXPECT_EQ(folder_.IniValue("Buttons", "21"), "C|5");
}

TEST_F(ButtonPanelTest, KeepsTheButtonsOfAServerThatDoesNotAnswerAndWaitsForItOnce) {
    std::string buttons = "[Buttons]\r\n";
    std::string cuts = "[Cuts]\r\n";
    for (int slot = 1; slot <= 9; ++slot) {
        const std::string name = "n" + std::to_string(slot);
        buttons += "1" + std::to_string(slot) + "=" + name + "|2\r\n";
        cuts += name +
                (slot == 9 ? "=\\\\dead\\share\\a.txt|http://a/" : "=\\\\dead\\share\\" + name + ".txt") +
                "\r\n";
    }
    folder_.WriteIniText(buttons + cuts);
    state_.Context.Records.LoadButtonRecords();
    const std::string before = folder_.IniBytes();
    int waited = 0;
    const auto exists = FAKE_CALL(PathFileExistsA, [&](LPCSTR) -> BOOL {
        ++waited;
        SetLastError(ERROR_BAD_NETPATH);
        return FALSE;
    });
    const auto extract = FAKE_CALL(ExtractIconA, [&]() -> HICON {
        ADD_FAILURE() << "an icon must not be looked for on the server";
        return nullptr;
    });
    buttons_.RefreshShownTab();
    EXPECT_EQ(waited, 1);
    EXPECT_EQ(folder_.IniBytes(), before);
    for (int slot = 1; slot <= 9; ++slot) {
        const std::string name = "n" + std::to_string(slot);
        EXPECT_EQ(state_.Context.Records.At("1" + std::to_string(slot)), name + "|2");
        EXPECT_EQ(testkit::Window(Button(slot)).Text(), name);
        EXPECT_FALSE(state_.Button(slot).IsUnread());
    }
    EXPECT_TRUE(state_.Button(9).Group);
    buttons_.RefreshShownTab();
    EXPECT_EQ(waited, 2) << "the next refresh asks again";
}

TEST_F(ButtonPanelTest, AButtonStaysAsItIsWhileItCannotBeReadAgain) {
    Load("[Buttons]\r\n11=A|3\r\n[Cuts]\r\nA=http://a/\r\n[Switch]\r\nA=/x\r\n");
    const testkit::HeldFile held(folder_.IniPath());
    buttons_.RefreshShownTab();
    EXPECT_EQ(state_.Button(1).FilePath, "http://a/");
    EXPECT_EQ(state_.Button(1).Switch, "/x");
    EXPECT_EQ(state_.Button(1).FileIcon, 3);
}

TEST_F(ButtonPanelTest, WhatIsReadAgainByItselfWaitsForNoFileAndEverMoreRarely) {
    Load("[Buttons]\r\n11=A|3\r\n[Cuts]\r\nA=http://a/\r\n");
    const HWND container = GetParent(Button(1));
    std::vector<UINT> pauses;
    const testkit::RecordedCall set = FAKE_CALL(SetTimer, [&](HWND, UINT_PTR id, UINT pause, TIMERPROC) {
        pauses.push_back(pause);
        return id;
    });
    const testkit::HeldFile held(folder_.IniPath());
    buttons_.RefreshShownTab();
    const testkit::RecordedCall sleep =
        FAKE_CALL(Sleep, [](DWORD) { ADD_FAILURE() << "nobody waits for this"; });
    const testkit::RecordedCall clock =
        FAKE_CALL(GetTickCount64, [] { return ORIGINAL_CALL(GetTickCount64)() + 100'000; });
    for (int time = 0; time < 3; ++time)
        SendMessageW(container, WM_TIMER, 2, 0);
    EXPECT_THAT(pauses, testing::ElementsAre(200, 400, 800, 1600));
}

TEST_F(ButtonPanelTest, AFileThatIsOnlyWrittenInPartFreesNoButton) {
    const std::string settings = std::string("[Settings]\r\n") + kPlainSettings;
    const std::string part = settings + "[Buttons]\r\n11=A|3\r\n12=B|0\r\n";
    const std::string rest = "[Cuts]\r\nA=http://a/\r\nB=http://b/\r\n";
    Load(part + rest);
    config::LoadMainSettings();
    for (const std::string& written :
         {std::string("[Buttons]\r\n11=A|3\r\n"), std::string("; mine\r\n"), std::string("[Settings]\r\n")}) {
        folder_.WriteIniText(written);
        buttons_.RefreshShownTab();
        EXPECT_EQ(folder_.IniBytes(), written);
        EXPECT_EQ(state_.Button(1).Naziv, "A");
        EXPECT_EQ(state_.Context.Records.At("12"), "B|0");
    }
    folder_.WriteIniText(part + rest);
    buttons_.RefreshShownTab();
    EXPECT_EQ(state_.Button(2).FilePath, "http://b/");
}

TEST_F(ButtonPanelTest, HasTheirContainerAtTheLeftEdge) {
    const HWND container = GetParent(Button(1));
    EXPECT_EQ(testkit::Window(container).Id(), 200);
    const RECT place = PlaceIn(host_.Handle(), container);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.top, 88);
}

TEST_F(ButtonPanelTest, PutsTheHoverPictureThreePixelsInsideTheButton) {
    const HWND hover = buttons_.HoverPicture().Handle();
    EXPECT_EQ(testkit::Window(hover).Id(), 210);
    EXPECT_EQ(GetParent(hover), host_.Handle());
    for (const int index : {1, 5, 9}) {
        SendMessageW(Button(index), WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
        const RECT picture = PlaceIn(host_.Handle(), hover);
        const RECT button = PlaceIn(host_.Handle(), Button(index));
        EXPECT_EQ(picture.left - button.left, 3);
        EXPECT_EQ(picture.top - button.top, 3);
        EXPECT_EQ(buttons_.HoveredButton(), index);
        EXPECT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
    }
}

TEST_F(ButtonPanelTest, HasNoHoveredButtonBeforeTheFirstMove) {
    EXPECT_EQ(buttons_.HoveredButton(), 0);
    EXPECT_EQ(GetWindowLongPtrW(buttons_.HoverPicture().Handle(), GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(ButtonPanelTest, KeepsTheHoverPictureOnlyWhileThePointerIsOnItOrAButton) {
    const HWND hover = buttons_.HoverPicture().Handle();
    const HWND container = GetParent(Button(1));
    HWND below = nullptr;
    const auto from_point = FAKE_CALL(WindowFromPoint, [&](POINT at) {
        EXPECT_EQ(at.x, pointer_.x);
        EXPECT_EQ(at.y, pointer_.y);
        return below;
    });
    const std::function<void()> occasions[] = {
        [&] { SendMessageW(Button(2), WM_MOUSELEAVE, 0, 0); },
        [&] { SendMessageW(hover, WM_MOUSELEAVE, 0, 0); },
        [&] { SendMessageW(container, WM_TIMER, 1, 0); },
    };
    pointer_ = Inside(Button(7));
    for (const auto& look : occasions) {
        buttons_.Hover(2);
        for (const HWND stays : {Button(7), Button(1), Button(9), hover}) {
            below = stays;
            look();
            EXPECT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
        }
        // The main window, the container, another window over the button, nothing at all.
        for (const HWND elsewhere : {host_.Handle(), container, GetDesktopWindow(), HWND{}}) {
            buttons_.Hover(2);
            below = elsewhere;
            SetCapture(hover);
            look();
            EXPECT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0) << "it is being dragged from";
            ReleaseCapture();
            look();
            EXPECT_EQ(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
        }
    }
}

TEST_F(ButtonPanelTest, KeepsTheHoverPictureThatHoldsTheMouseWhenTheTabChanges) {
    const HWND hover = buttons_.HoverPicture().Handle();
    buttons_.Hover(2);
    SetCapture(hover);
    buttons_.HideHover();
    EXPECT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
    EXPECT_EQ(GetCapture(), hover);
    ReleaseCapture();
    buttons_.HideHover();
    EXPECT_EQ(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(ButtonPanelTest, LooksWhereThePointerIsFiveTimesASecondWhileTheHoverPictureIsOut) {
    const HWND container = GetParent(Button(1));
    std::vector<std::string> calls;
    const auto set = FAKE_CALL(SetTimer, [&](HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
        EXPECT_EQ(window, container);
        EXPECT_EQ(procedure, nullptr);
        calls.push_back("set " + std::to_string(id) + " " + std::to_string(period));
        return id;
    });
    const auto kill = FAKE_CALL(KillTimer, [&](HWND window, UINT_PTR id) -> WINBOOL {
        EXPECT_EQ(window, container);
        calls.push_back("kill " + std::to_string(id));
        return TRUE;
    });
    buttons_.Hover(2);
    buttons_.HideHover();
    EXPECT_THAT(calls, testing::ElementsAre("set 1 200", "kill 1"));
}

TEST_F(ButtonPanelTest, FindsTheButtonAtAPointOfTheScreen) {
    for (int index = 1; index <= 9; ++index)
        EXPECT_EQ(buttons_.ButtonAt(Inside(Button(index))), index);
    EXPECT_FALSE(buttons_.ButtonAt({-20000, -20000}));
}

TEST_F(ButtonPanelTest, FindsTheButtonsOnAnotherScaleToo) {
    const auto dpi = ANSWER_CALL(GetDpiForWindow, 192);
    buttons_.Rescale();
    for (int index = 1; index <= 9; ++index) {
        const RECT place = PlaceIn(GetParent(Button(index)), Button(index));
        EXPECT_EQ(win::Width(place), 204);
        EXPECT_EQ(win::Height(place), 180);
        EXPECT_EQ(buttons_.ButtonAt(Inside(Button(index))), index);
    }
}

TEST_F(ButtonPanelTest, MakesTheHoverPictureAndTheTipAnewForAnotherScale) {
    buttons_.Hover(3);
    state_.TipButton = 3;
    const HWND hover = buttons_.HoverPicture().Handle();
    const auto dpi = FAKE_CALL(GetDpiForWindow, [](HWND) -> UINT { return 192; });
    std::vector<std::pair<HDC, int>> drawn;
    const auto icon = FAKE_CALL(DrawIconEx, [&](HDC dc, int x, int y, HICON mark, int width, int height,
                                                UINT step, HBRUSH brush, UINT flags) {
        drawn.emplace_back(dc, width);
        return ORIGINAL_CALL(DrawIconEx)(dc, x, y, mark, width, height, step, brush, flags);
    });
    buttons_.Rescale();
    const RECT place = testkit::Window(hover).Rect();
    EXPECT_EQ(win::Width(place), 28);
    EXPECT_EQ(win::Height(place), 28);
    EXPECT_THAT(drawn, testing::ElementsAre(std::pair(buttons_.HoverPicture().Dc(), 28)));
    EXPECT_EQ(state_.TipButton, 0) << "the next hover makes a tip of the new size";
    EXPECT_EQ(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(ButtonPanelTest, GivesAButtonsPlaceInTheWindow) {
    const RECT place = buttons_.PlaceInWindow(6);
    const RECT real = PlaceIn(host_.Handle(), Button(6));
    EXPECT_NE(EqualRect(&place, &real), 0);
}

TEST_F(ButtonPanelTest, MovesTheFocusByTheArrowKeysInsideTheRows) {
    const std::vector<std::tuple<int, WPARAM, int>> cases{{1, VK_RIGHT, 2}, {2, VK_DOWN, 5}, {5, VK_LEFT, 4},
                                                          {4, VK_UP, 1},    {1, VK_LEFT, 1}, {3, VK_RIGHT, 3},
                                                          {9, VK_DOWN, 9},  {2, VK_UP, 2}};
    for (const auto& [from, key, to] : cases) {
        SetFocus(Button(from));
        SendMessageW(Button(from), WM_KEYDOWN, key, 0);
        EXPECT_EQ(GetFocus(), Button(to)) << from;
    }
}

TEST(PanelStateTest, NumbersItsPartsFromOne) {
    PanelState state;
    EXPECT_THROW(state.Button(0), win::SubscriptError);
    EXPECT_THROW(state.Button(10), win::SubscriptError);
    EXPECT_THROW(state.Tab(0), win::SubscriptError);
    EXPECT_THROW(state.Tab(7), win::SubscriptError);
    EXPECT_EQ(&state.Button(9), &state.Button(9));
    EXPECT_NE(&state.Button(1), &state.Button(2));
    EXPECT_EQ(&state.Tab(6), &state.Tab(6));
    state.Context.Select(9);
    EXPECT_EQ(&state.Current(), &state.Button(9));
    state.NoteActivity();
    EXPECT_EQ(state.PopCount, 10);
}

}  // namespace
}  // namespace app
