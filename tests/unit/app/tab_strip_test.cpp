#include "app/tab_strip.h"

#include "tests/unit/app/panel_parts.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class TabStripTest : public PanelParts {
  protected:
    TabStripTest() {
        Load(
            "[Buttons]\r\n10=Посао|опис\r\n11=A|0\r\n21=B|0\r\n29=A|0\r\n[Cuts]\r\nA=http://a/\r\nB=http://b/"
            "\r\n");
        state_.Tab(1).INIstring("Посао|опис");
    }

    HWND Header(int index) { return tabs_.Header(index).Handle(); }
    std::vector<int> Frames() {
        std::vector<int> frames;
        for (int index = 1; index <= 6; ++index)
            frames.push_back(tabs_.Header(index).Frame());
        return frames;
    }
    /// Moves over a header and gives the texts of the tips that were built.
    std::vector<std::string> Hover(int index) {
        std::vector<std::string> built;
        const auto send = WATCH_CALL(SendMessageA, [&](HWND, UINT message, WPARAM, LPARAM lParam) {
            if (message == TTM_ADDTOOLA) {
                const auto* record = reinterpret_cast<const TTTOOLINFOA*>(lParam);
                EXPECT_EQ(record->hwnd, Header(index));
                built.emplace_back(record->lpszText);
            }
            if (message == TTM_ADDTOOLW)
                built.push_back(testkit::Utf8(reinterpret_cast<const TTTOOLINFOW*>(lParam)->lpszText));
        });
        SendMessageW(Header(index), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        return built;
    }
};

TEST_F(TabStripTest, HasSixHeadersWithTheirIdentifiers) {
    for (int index = 1; index <= 6; ++index)
        EXPECT_EQ(testkit::Window(Header(index)).Id(), 100 + index);
    EXPECT_THROW(tabs_.Header(0), win::SubscriptError);
    EXPECT_THROW(tabs_.Header(7), win::SubscriptError);
}

TEST_F(TabStripTest, ShowsATabWhenTheLeftButtonIsReleasedOnItsHeader) {
    EXPECT_THAT(Frames(), ElementsAre(1, 0, 0, 0, 0, 0));
    Press(Header(2));
    EXPECT_EQ(config::Settings.CurrentTab, 1);
    Release(Header(2));
    EXPECT_EQ(config::Settings.CurrentTab, 2);
    EXPECT_THAT(Frames(), ElementsAre(0, 1, 0, 0, 0, 0));
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "B");
    EXPECT_EQ(testkit::Window(Button(2)).Text(), "Empty");
    EXPECT_EQ(testkit::Window(Button(9)).Text(), "A");
    EXPECT_EQ(state_.PopCount, 10);
}

TEST_F(TabStripTest, ReadsNoRecordsAgainWhenTheTabChanges) {
    std::vector<std::string> sections;
    const auto read = WATCH_CALL(GetPrivateProfileStringA, [&](LPCSTR section, LPCSTR, LPCSTR, LPSTR, DWORD,
                                                               LPCSTR) { sections.emplace_back(section); });
    tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_THAT(sections, ElementsAre("Cuts", "Switch", "Cuts", "Switch"));
}

TEST_F(TabStripTest, MarksTheHeaderAndHidesTheHoverPictureBeforeItPaintsTheButtonsInOrder) {
    buttons_.Hover(3);
    std::vector<int> painted;
    const auto edge = WATCH_CALL(DrawEdge, [&](HDC dc, LPRECT, UINT, UINT) {
        for (int index = 1; index <= 9; ++index) {
            if (buttons_.Picture(index).Dc() != dc) continue;
            if (painted.empty() || painted.back() != index) painted.push_back(index);
            EXPECT_EQ(config::Settings.CurrentTab, 2);
            EXPECT_THAT(Frames(), ElementsAre(0, 1, 0, 0, 0, 0));
            EXPECT_FALSE(testkit::Window(buttons_.HoverPicture().Handle()).Style() & WS_VISIBLE);
        }
    });
    tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_THAT(painted, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(TabStripTest, PaintsTheShownTabAgainWhenItIsChosenAgain) {
    state_.Context.Records.Set("13", "B|0");
    tabs_.b1_MouseUp(1, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_EQ(testkit::Window(Button(3)).Text(), "B");
    EXPECT_THAT(Frames(), ElementsAre(1, 0, 0, 0, 0, 0));
}

TEST_F(TabStripTest, HidesTheHoverPicture) {
    buttons_.Hover(3);
    const HWND hover = buttons_.HoverPicture().Handle();
    ASSERT_NE(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
    tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_EQ(GetWindowLongPtrW(hover, GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(TabStripTest, DefinesTheTabOfTheHeaderForTheRightButton) {
    std::vector<int> defined;
    SendMessageW(Header(4), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    tabs_.onDefineTab = [&](int tab) { defined.push_back(tab); };
    SendMessageW(Header(4), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    SendMessageW(Header(5), WM_CONTEXTMENU, 0, -1);
    EXPECT_THAT(defined, ElementsAre(4, 5));
    EXPECT_EQ(config::Settings.CurrentTab, 1);
}

TEST_F(TabStripTest, BuildsTheTipAnewAfterATabWasDefined) {
    EXPECT_EQ(Hover(1).size(), 1u);
    tabs_.onDefineTab = [](int) {};
    SendMessageW(Header(1), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(Hover(1).size(), 1u) << "though the pointer never left the header";
}

TEST_F(TabStripTest, BuildsTheTipAnewAfterTheScaleHasChanged) {
    EXPECT_EQ(Hover(1).size(), 1u);
    const auto dpi = FAKE_CALL(GetDpiForWindow, [](HWND) -> UINT { return 192; });
    tabs_.Rescale();
    EXPECT_EQ(Hover(1).size(), 1u) << "the former one's tool has the header's former size";
}

TEST_F(TabStripTest, BuildsATipOnlyWhenThePointerEntersAnotherHeader) {
    EXPECT_EQ(Hover(1).size(), 1u);
    EXPECT_EQ(state_.PopCount, 10);
    state_.PopCount = 0;
    EXPECT_THAT(Hover(1), IsEmpty());
    EXPECT_EQ(state_.PopCount, 0);
    EXPECT_EQ(Hover(2).size(), 1u);
    EXPECT_EQ(Hover(1).size(), 1u);
}

TEST_F(TabStripTest, SuppressesTheTipsTextUnlessExtensiveTooltipsAreOn) {
    EXPECT_THAT(Hover(2), ElementsAre(""));
    config::Settings.ExtensiveTooltips = true;
    EXPECT_THAT(Hover(1), ElementsAre("1. http://a/"));
    config::Settings.TabDescriptions = true;
    EXPECT_THAT(Hover(2), ElementsAre("Right-click to define tab"));
    EXPECT_THAT(Hover(1), ElementsAre("опис"));
}

TEST_F(TabStripTest, FindsTheHeaderAtAPointOfTheScreen) {
    for (int index = 1; index <= 6; ++index)
        EXPECT_EQ(tabs_.HeaderAt(Inside(Header(index))), index);
    EXPECT_FALSE(tabs_.HeaderAt({-20000, -20000}));
    EXPECT_FALSE(tabs_.HeaderAt(Inside(Button(1))));
}

TEST_F(TabStripTest, IsReachedByTheKeyboard) {
    SetFocus(Header(1));
    SendMessageW(Header(1), WM_KEYDOWN, VK_LEFT, 0);
    EXPECT_EQ(GetFocus(), Header(6));
    SendMessageW(Header(6), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(GetFocus(), Header(1));
    SendMessageW(Header(2), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_EQ(config::Settings.CurrentTab, 2);
    SendMessageW(Header(3), WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(config::Settings.CurrentTab, 3);
}

TEST_F(TabStripTest, TheTabKeyStopsAtOneHeaderWhichIsThatOfTheShownTabUnlessAnotherHasTheFocus) {
    const auto stops = [&] {
        std::vector<int> found;
        for (int index = 1; index <= 6; ++index)
            if ((GetWindowLongPtrW(Header(index), GWL_STYLE) & WS_TABSTOP) != 0) found.push_back(index);
        return found;
    };
    EXPECT_THAT(stops(), ElementsAre(1));
    tabs_.b1_MouseUp(3, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_THAT(stops(), ElementsAre(3));
    SendMessageW(Header(5), WM_SETFOCUS, 0, 0);
    EXPECT_THAT(stops(), ElementsAre(5));
    SendMessageW(Header(5), WM_KILLFOCUS, 0, 0);
    EXPECT_THAT(stops(), ElementsAre(3));
}

TEST_F(TabStripTest, ArrowsHomeAndEndMoveTheFocusOnly) {
    std::vector<HWND> focused;
    const auto focus = FAKE_CALL(SetFocus, [&](HWND window) -> HWND {
        focused.push_back(window);
        return nullptr;
    });
    for (const WPARAM key : {VK_LEFT, VK_RIGHT, VK_HOME, VK_END})
        SendMessageW(Header(1), WM_KEYDOWN, key, 0);
    SendMessageW(Header(6), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_THAT(focused, ElementsAre(Header(6), Header(2), Header(1), Header(6), Header(1)));
    EXPECT_EQ(config::Settings.CurrentTab, 1);
}

}  // namespace
}  // namespace app
