// The program is asked to end while something of its own or of the system's waits for an answer: that is
// cancelled, and the program ends at once with everything saved.

#include "dialogs/options.h"
#include "tests/program/quon_test.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using std::chrono::milliseconds;

/// A way to ask for the end.
using Request = std::function<void(const QuonPanel&)>;

void PostClose(const QuonPanel& quon) { quon.Main().Post(WM_CLOSE); }

void SendClose(const QuonPanel& quon) { quon.Main().Send(WM_CLOSE); }

void EndSession(const QuonPanel& quon) {
    EXPECT_EQ(quon.Main().Send(WM_QUERYENDSESSION), TRUE);
    quon.Main().Send(WM_ENDSESSION, TRUE);
}

const std::vector<Request> kAllRequests{&PostClose, &SendClose, &EndSession};

class EndingTest : public QuonTest {
  protected:
    EndingTest() {
        ini_.AddShortcut("21", "target", folder_.MakeFile("target.txt", "text"));
        ini_.AddShortcut("22", "both", folder_.FullPath("target.txt") + "|" + folder_.Path());
    }

    /// Starts, goes to the second tab, lets `open` bring something up and asks for the end.
    void EndAfter(const Request& request, const std::function<void(QuonPanel&)>& open) {
        // An instance that stayed behind would stop this start.
        QuonIni ini = ini_;
        ini.current_tab = 1;
        QuonPanel quon = Start(ini);
        mouse::Click(quon.Header(2));
        quon.ExpectName(1, "target");
        open(quon);
        const auto asked = std::chrono::steady_clock::now();
        request(quon);
        EXPECT_TRUE(HappensWithin(kPatience, [&] { return !quon.Program().IsRunning(); }));
        took_ = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - asked);
        EXPECT_EQ(quon.Program().ExitCode(), 0u);
        ini.current_tab = 2;
        EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
        EXPECT_EQ(folder_.ReadFile("target.txt"), "text");
        EXPECT_EQ(folder_.IniValue("Cuts", "target"), folder_.FullPath("target.txt"));
    }
    static void Choose(const QuonPanel& quon, std::initializer_list<std::string_view> path) {
        quon.OpenButtonMenu(1).Choose(path);
    }
    /// Asks for the end while the shell asks whether the file may go.
    void EndAfterTheShellsQuestion(std::string_view command) {
        for (const Request& request : kAllRequests)
            EndAfter(request, [&](QuonPanel& quon) {
                Choose(quon, {"File operations", command});
                quon.WaitForSystemDialog();
            });
    }

    QuonIni ini_;
    /// How long the last end took.
    milliseconds took_{};
};

TEST_F(EndingTest, PassesTheMenuOfAButton) {
    for (const Request& request : kAllRequests)
        EndAfter(request, [](QuonPanel& quon) { quon.OpenButtonMenu(1); });
}

TEST_F(EndingTest, PassesAnOpenSubmenu) {
    EndAfter(&SendClose, [](QuonPanel& quon) { quon.OpenButtonMenu(1).Open("File operations"); });
}

TEST_F(EndingTest, PassesTheMenuOfTheDropDownsText) {
    EndAfter(&SendClose, [](QuonPanel& quon) {
        mouse::RightClick(quon.Shortcuts());
        PopupMenu::Wait(quon.Id());
    });
}

TEST_F(EndingTest, PassesTheMessageBoxOfTheSystem) {
    for (const Request& request : kAllRequests)
        EndAfter(request, [](QuonPanel& quon) {
            quon.OpenSettingsMenu().Choose("Options");
            const Window options = quon.Program().WaitForWindow({.title = "Quon settings"});
            options.Child(dialogs::frmSettings::Text1).SetText("soon");
            options.PostPress(dialogs::frmSettings::ltBut1 + 1);
            WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
        });
}

TEST_F(EndingTest, PassesAPicker) {
    for (const Request& request : kAllRequests)
        EndAfter(request, [](QuonPanel& quon) {
            Choose(quon, {"Add file to button"});
            quon.WaitForSystemDialog();
        });
    EndAfter(&PostClose, [](QuonPanel& quon) {
        Choose(quon, {"Add folder to button"});
        quon.WaitForSystemDialog();
    });
}

TEST_F(EndingTest, PassesAPickerWithItsOwnComplaint) {
    EndAfter(&PostClose, [](QuonPanel& quon) {
        Choose(quon, {"Add file to button"});
        const Window picker = quon.WaitForSystemDialog();
        WaitFor("the picker is in front", [&] { return picker.IsForeground(); });
        keyboard::Chord({VK_CONTROL, 'A'});
        keyboard::Type("no such file.txt\n");
        WaitFor("the complaint", [&] { return !picker.IsEnabled(); });
    });
}

TEST_F(EndingTest, DeletesNoFileWhoseDeletionIsBeingAsked) { EndAfterTheShellsQuestion("Delete file"); }

TEST_F(EndingTest, RecyclesNoFileWhileThatIsBeingAsked) {
    ONLY_UNDER_WINE("Windows asks before it recycles only where its user wants to be asked.");
    EndAfterTheShellsQuestion("Move to Recycle bin");
}

TEST_F(EndingTest, PassesANote) {
    for (const Request& request : kAllRequests)
        EndAfter(request, [](QuonPanel& quon) {
            quon.OpenButton(2, {VK_MENU, VK_CONTROL});
            EXPECT_EQ(MessageBoxWindow::Wait(quon.Id()).Text(), "Sorry, can not add switch to group button.");
        });
}

TEST_F(EndingTest, TakesNoNameThatIsStillBeingTyped) {
    for (const Request& request : kAllRequests) {
        EndAfter(request, [](QuonPanel& quon) {
            mouse::Click(quon.Button(1));
            keyboard::Press(VK_F2);
            WaitFor("the rename box", [&] { return quon.RenameBox().IsFocused(); });
            keyboard::Type("other");
            WaitFor("the name is typed", [&] { return quon.RenameBox().Text() == "other"; });
        });
        EXPECT_EQ(folder_.IniValue("Buttons", "21"), "target|0");
        EXPECT_FALSE(folder_.IniValue("Cuts", "other"));
    }
}

TEST_F(EndingTest, ComesWithinASecondOrTwo) {
    constexpr milliseconds kASecondOrTwo{2000};
    const std::function<void(QuonPanel&)> kOpened[] = {[](QuonPanel& quon) { quon.OpenButtonMenu(1); },
                                                       [](QuonPanel& quon) {
                                                           Choose(quon, {"File operations", "Delete file"});
                                                           quon.WaitForSystemDialog();
                                                       }};
    for (const auto& open : kOpened) {
        // A busy machine is too slow only now and then.
        EXPECT_TRUE(HappensWithin(kPatience,
                                  [&] {
                                      EndAfter(&PostClose, open);
                                      return took_ <= kASecondOrTwo;
                                  }))
            << took_.count() << " ms";
    }
}

TEST_F(EndingTest, ComesFromTheTrayMenuToo) {
    EndAfter(
        [](const QuonPanel& quon) {
            // What the shell sends for a right click on the icon, the pointer being there.
            const Window tray = FindTopWindow({.class_name = "Shell_TrayWnd"});
            mouse::MoveTo({tray.Rect().right - 1, tray.Rect().bottom - 1});
            quon.Main().Post(WM_MOUSEMOVE, 1, WM_RBUTTONUP);
            PopupMenu::Wait(quon.Id()).Choose("Close");
        },
        [](QuonPanel& quon) {
            Choose(quon, {"File operations", "Delete file"});
            quon.WaitForSystemDialog();
        });
}

TEST_F(EndingTest, PassesAPanelThatIsBeingMoved) {
    EndAfter(&PostClose, [](QuonPanel& quon) {
        const RECT place = quon.Main().Rect();
        mouse::MoveTo({place.left + 60, place.top + 8});
        mouse::Press();
        mouse::MoveTo({place.left + 90, place.top + 20});
        WaitFor("the panel moves", [&] { return quon.Main().Rect().left != place.left; });
    });
    mouse::Release();
}

}  // namespace
}  // namespace testkit
