// The menus of the image buttons, as the user sees and works them.

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::MatchesRegex, ::testing::SizeIs;

class ImageButtonMenuTest : public QuonTest {};

TEST_F(ImageButtonMenuTest, TheFirstListsDrivesAndPlacesBelowItsButton) {
    QuonPanel quon = Start({});
    const PopupMenu menu = quon.OpenImageMenu(0);
    const std::vector<std::string> captions = menu.Captions();
    EXPECT_EQ(captions.front(), "My Computer");
    EXPECT_THAT(captions, Contains(MatchesRegex(".* .C:.")));
    for (const char* place : {"My Documents", "Recycle bin", "Desktop", "Root", "My computer", "Network",
                              "Control panel", "Printers"})
        EXPECT_TRUE(menu.Has(place)) << place;
    const RECT button = quon.ImageButton(0).Rect();
    EXPECT_NEAR(menu.PopupWindow().Rect().left, button.left, 3);
    EXPECT_NEAR(menu.PopupWindow().Rect().top, button.bottom, 3);
    CaptureScreen().SaveAs("shell-menu.bmp");
    menu.Dismiss();
    // The second opening makes the list anew and no longer.
    const PopupMenu again = quon.OpenImageMenu(0);
    EXPECT_EQ(again.Captions(), captions);
    again.Dismiss();
}

TEST_F(ImageButtonMenuTest, TheSecondStartsTheOtherProgramsOfTheFolderAndDocks) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "Алат 文 & co.exe");
    QuonPanel quon = Start({.hide_after_launch = true});
    const PopupMenu menu = quon.OpenImageMenu(1);
    EXPECT_THAT(menu.Captions(),
                ElementsAre("Launch default browser", "Launch default mail client", "Write new mail", "-",
                            "Launch Control Panel", "Shows Windows uptime", "Алат 文 & co"));
    menu.Choose("Алат 文 & co");
    const TargetLaunch launch = WaitForTargetLaunches(target, 1).front();
    EXPECT_EQ(launch.work_folder, folder_.Path());
    EXPECT_EQ(launch.show_state, SW_SHOWNORMAL);
    quon.WaitUntilDockedAt(Edge::kBottom);
    EXPECT_THAT(TargetLaunches(target), SizeIs(1));
    RunningProgram::Attach(launch.process_id).CloseAndWait();
}

TEST_F(ImageButtonMenuTest, TheUptimeIsShownAndThePanelStaysOut) {
    QuonPanel quon = Start({.hide_after_launch = true});
    quon.OpenImageMenu(1).Choose("Shows Windows uptime");
    const MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
    EXPECT_TRUE(box.Text().starts_with("Windows is running for: \r\n")) << box.Text();
    EXPECT_EQ(box.Button(0).Text(), "OK");
    EXPECT_FALSE(box.Button(1).IsVisible());
    CaptureScreen().SaveAs("uptime.bmp");
    box.ClickButton(0);
    quon.Settle();
    EXPECT_TRUE(quon.IsOut());
}

TEST_F(ImageButtonMenuTest, EachOpensByTheKeyboard) {
    QuonPanel quon = Start({});
    quon.Main().Activate();
    WaitFor("the first button has the focus", [&] { return quon.Button(1).IsFocused(); });
    keyboard::Press(VK_TAB);
    for (const int button : {0, 1, 2}) {
        WaitFor("the image button has the focus", [&] { return quon.ImageButton(button).IsFocused(); });
        keyboard::Press(button == 1 ? VK_SPACE : VK_RETURN);
        const PopupMenu menu = PopupMenu::Wait(quon.Id());
        EXPECT_TRUE(menu.Has(
            std::vector{"My Computer", "Write new mail", "Options"}.at(static_cast<std::size_t>(button))));
        menu.Dismiss();
        keyboard::Press(VK_RIGHT);
    }
}

}  // namespace
}  // namespace testkit
