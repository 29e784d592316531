#include "app/button_tip.h"

#include <shlwapi.h>
#include <uxtheme.h>

#include "tests/unit/app/panel_parts.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class ButtonTipTest : public PanelParts {
  protected:
    ButtonTipTest() {
        file_ = folder_.MakeFile("Ђ文.txt", std::string(3000, 'x'));
        Load("[Buttons]\r\n11=Датотека|0\r\n12=Стр|0\r\n13=Фасц|0\r\n14=Група|0\r\n[Cuts]\r\nДатотека=" +
             file_ + "\r\nСтр=http://a/?q=文\r\nФасц=" + folder_.Path() + "\r\nГрупа=" + file_ +
             "|http://b/|C:\\c\r\n");
    }

    TipText Tip(int button, int shift = 0) { return ButtonTipText(state_.Button(button), shift); }

    /// Moves over the hover picture on a button and gives what tips were built meanwhile: titles and texts.
    std::vector<std::string> Hover(int button) {
        std::vector<std::string> built;
        const auto send = WATCH_CALL(SendMessageA, [&](HWND, UINT message, WPARAM, LPARAM lParam) {
            if (message == TTM_ADDTOOLA)
                built.emplace_back(reinterpret_cast<const TTTOOLINFOA*>(lParam)->lpszText);
            if (message == TTM_SETTITLEA) built.emplace_back(reinterpret_cast<const char*>(lParam));
            if (message == TTM_ADDTOOLW)
                built.push_back(testkit::Utf8(reinterpret_cast<const TTTOOLINFOW*>(lParam)->lpszText));
            if (message == TTM_SETTITLEW)
                built.push_back(testkit::Utf8(reinterpret_cast<const wchar_t*>(lParam)));
        });
        tip_.OnHoverPictureMove(buttons_.HoverPicture().Handle(), button);
        return built;
    }

    std::string file_;
};

TEST_F(ButtonTipTest, TellsWhatAFreeButtonCanDoWhateverIsHeld) {
    for (const int shift : {0, 1, 6}) {
        EXPECT_EQ(Tip(9, shift).title, "You can...");
        EXPECT_EQ(
            Tip(9, shift).text,
            "1. Drop file, link or URL to create shortcut,\n2. Right-click the button and choose file for "
            "it,\n3. Right-click the button to chose a file from active processes, or\n4. Right-click the "
            "button and paste copied file or URL from clipboard.");
    }
}

TEST_F(ButtonTipTest, TellsTheCommandsWhileAModifierKeyIsHeld) {
    for (const int button : {1, 4}) {
        for (const int shift : {1, 2, 4, 7}) {
            EXPECT_EQ(Tip(button, shift).title, "Special button commands:");
            EXPECT_EQ(
                Tip(button, shift).text,
                "CTRL + click frees the button.\nSHIFT + click opens file in maximized window.\nALT + click "
                "opens file minimized.\nALT + CTRL + click lets you enter switch for the assigned "
                "file,\nCTRL + SHIFT + drag lets you change button's place, even to different tab.");
        }
    }
}

TEST_F(ButtonTipTest, NumbersTheMembersOfAGroup) {
    EXPECT_EQ(Tip(4).title, "Група");
    EXPECT_EQ(Tip(4).text, "Group consists of:\r\n1. " + file_ + "\r\n2. http://b/\r\n3. C:\\c");
}

TEST_F(ButtonTipTest, TellsPathSizeAndDateOfAFile) {
    model::CButtonShortcut& button = state_.Button(1);
    ASSERT_EQ(button.FileSize, "2 KB");
    button.FILETIME = "1/2/2003 4:05:06 AM";
    EXPECT_EQ(Tip(1).title, "Датотека");
    EXPECT_EQ(Tip(1).text, "Path: " + file_ + "\nFile size: 2 KB\nLast modified: 1/2/2003 4:05:06 AM");
}

TEST_F(ButtonTipTest, TellsTheAddressOfAPage) {
    EXPECT_EQ(Tip(2).title, "Стр");
    EXPECT_EQ(Tip(2).text, "URL: http://a/?q=文");
}

TEST_F(ButtonTipTest, AsksNothingOfAServerThatDidNotAnswer) {
    Load("[Buttons]\r\n11=Сервер|0\r\n[Cuts]\r\nСервер=\\\\no-such-server.invalid\\share\\a.txt\r\n");
    const auto exists = FAKE_CALL(PathFileExistsA, [](LPCSTR path) -> WINBOOL {
        ADD_FAILURE() << "asked for " << path;
        return FALSE;
    });
    const auto folder = FAKE_CALL(PathIsDirectoryA, [](LPCSTR path) -> WINBOOL {
        ADD_FAILURE() << "asked for " << path;
        return FALSE;
    });
    EXPECT_EQ(Tip(1).title, "Сервер");
    EXPECT_EQ(Tip(1).text, "Path: \\\\no-such-server.invalid\\share\\a.txt\nFile size: \nLast modified: ");
}

TEST_F(ButtonTipTest, TellsTheFoldersPath) {
    EXPECT_EQ(Tip(3).title, "Фасц");
    EXPECT_EQ(Tip(3).text, "Folder\n" + folder_.Path());
}

TEST_F(ButtonTipTest, BuildsATipOnlyWhileExtensiveTooltipsAreOn) {
    EXPECT_THAT(Hover(2), IsEmpty());
    config::Settings.ExtensiveTooltips = true;
    EXPECT_THAT(Hover(2), ElementsAre("URL: http://a/?q=文", "Стр"));
    EXPECT_EQ(state_.Button(2).Ttip, "URL: http://a/?q=文");
}

TEST_F(ButtonTipTest, TakesTheTipAwayOnceExtensiveTooltipsAreOff) {
    config::Settings.ExtensiveTooltips = true;
    HWND tip = nullptr;
    const auto created = WATCH_CALL(SetWindowTheme, [&](HWND window, LPCWSTR, LPCWSTR) { tip = window; });
    Hover(2);
    ASSERT_NE(IsWindow(tip), 0);
    config::Settings.ExtensiveTooltips = false;
    EXPECT_THAT(Hover(3), IsEmpty());
    EXPECT_EQ(IsWindow(tip), 0);
    config::Settings.ExtensiveTooltips = true;
    EXPECT_EQ(Hover(2).size(), 2u);
}

TEST_F(ButtonTipTest, BuildsATipOnlyForAnotherButton) {
    config::Settings.ExtensiveTooltips = true;
    EXPECT_THAT(Hover(0), IsEmpty());
    Hover(2);
    EXPECT_THAT(Hover(2), IsEmpty());
    EXPECT_EQ(Hover(3).size(), 2u);
    EXPECT_EQ(Hover(2).size(), 2u);
}

TEST_F(ButtonTipTest, BuildsTheTipAnewAfterARefresh) {
    config::Settings.ExtensiveTooltips = true;
    Hover(2);
    state_.Context.Select(2);
    state_.RefreshNamed({}, state_.CurrentPlace());
    EXPECT_EQ(Hover(2).size(), 2u);
    buttons_.RefreshShownTab();
    EXPECT_EQ(Hover(2).size(), 2u);
}

}  // namespace
}  // namespace app
