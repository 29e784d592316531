#include "dialogs/organize_shortcuts.h"

#include "tests/support/scroll_end.h"
#include "tests/unit/dialogs/organize_shortcuts_fixture.h"
#include "win/geometry.h"

namespace dialogs {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::HasSubstr;

/// A file with so many shortcuts.
std::string Many(int count) {
    std::string ini = "[Cuts]\r\n";
    for (int index = 0; index < count; ++index)
        ini += "n" + std::to_string(index) + "=C:\\" + std::to_string(index) + "\r\n";
    return ini;
}

TEST_F(OrganizeShortcutsTest, ListsAllShortcutsInTheirOrder) {
    Look(kShortcuts, [this](Window organiser) {
        EXPECT_EQ(organiser.Text(), "Organize shortcuts - 3 shortcuts found");
        EXPECT_EQ(organiser.Owner().Handle(), owner_.Handle());
        EXPECT_TRUE(organiser.IsTopmost());
        EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work", "Ђорђе 文件"));
        EXPECT_TRUE(organiser.Child(frmCuts::pFrame).IsVisible());
        EXPECT_FALSE(organiser.Child(frmCuts::Label1).IsVisible());
        EXPECT_TRUE(List(organiser).IsFocused());
        EXPECT_EQ(List(organiser).Text(), "Notes");
        Press(organiser, VK_END);
        EXPECT_EQ(List(organiser).Text(), "Ђорђе 文件");
    });
}

TEST_F(OrganizeShortcutsTest, EveryControlHasItsCaptionAndNumber) {
    Organize(kShortcuts, {[](Window organiser) {
                 EXPECT_EQ(organiser.Child(frmCuts::Command1 + 0).Text(), "Edit shortcut");
                 EXPECT_EQ(organiser.Child(frmCuts::Command1 + 1).Text(), "Delete shortcut");
                 EXPECT_EQ(organiser.Child(frmCuts::Command1 + 2).Text(), "Quit");
                 EXPECT_EQ(organiser.Child(frmCuts::pBasket).Parent(), organiser.Child(frmCuts::pFrame));
                 EXPECT_EQ(organiser.Child(frmCuts::Scr).Class(), "ScrollBar");
                 EXPECT_EQ(organiser.Child(frmCuts::Label1).Class(), "Static");
                 EXPECT_EQ(organiser.Child(frmCuts::List1).Class(), "ListBox");
                 EXPECT_FALSE(organiser.Child(frmCuts::List1).IsVisible());
                 organiser.Post(WM_COMMAND, IDCANCEL);
             }});
}

TEST_F(OrganizeShortcutsTest, ARowShowsItsIconItsNameAndItsTargetInAFrame) {
    testkit::CallLog log;
    Look(kShortcuts, [&](Window organiser) {
        const Window list = List(organiser);
        const RECT inside = list.ClientRect();
        const std::string width = std::to_string(inside.right - inside.left);
        const win::WindowDc screen(nullptr);
        const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), 400, 200));
        const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
        SelectObject(dc.Get(), bitmap.Get());
        {
            const auto painting = testkit::LogPainting(log, list.Handle(), dc.Get());
            const auto image = FAKE_CALL(ImageList_Draw, [&]() -> WINBOOL {
                log.Add("Image");
                return TRUE;
            });
            list.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.Get()), PRF_CLIENT);
        }
        EXPECT_THAT(log.Lines(), Contains("Edge 0 4 " + width + " 51 type 9 flags 15"));
        EXPECT_THAT(log.Lines(), Contains("Edge 0 55 " + width + " 102 type 9 flags 15"));
    });
    EXPECT_EQ(log.Count("Image"), 3u);
    for (const char* text :
         {"Notes in ", "C:\\notes.txt in ", "Work in ", "C:\\a|C:\\b in ", "http://a.example/?x=y in "})
        EXPECT_THAT(log.Lines(), Contains(HasSubstr(text))) << text;
}

TEST_F(OrganizeShortcutsTest, ACommandOfNoControlDoesNothing) {
    Organize(kShortcuts, {[](Window organiser) {
                 organiser.Send(WM_COMMAND, IDOK);
                 EXPECT_TRUE(organiser.IsVisible());
                 EXPECT_EQ(Names(organiser).size(), 3U);
                 organiser.Press(frmCuts::Command1 + 2);
                 EXPECT_FALSE(organiser.IsVisible());
             }});
    EXPECT_EQ(Keys().size(), 3U);
}

TEST_F(OrganizeShortcutsTest, OneShortcutHasThePluralToo) {
    Organize("[Cuts]\r\na=C:\\a\r\n", {[](Window organiser) {
                 EXPECT_EQ(organiser.Text(), "Organize shortcuts - 1 shortcuts found");
                 EXPECT_FALSE(organiser.Child(frmCuts::Scr).IsEnabled());
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, WithoutShortcutsItSaysSoAndOffersOnlyToQuit) {
    for (const char* ini :
         {"[Settings]\r\nMain=1\r\n", "[Cuts]\r\n", "[Cuts]\r\n; none\r\nbroken\r\n", "; none\r\n"})
        Look(ini, [](Window organiser) {
            EXPECT_EQ(organiser.Text(), "Organize shortcuts - 0 shortcuts found");
            EXPECT_EQ(organiser.Child(frmCuts::Label1).Text(), "No shortcuts found");
            EXPECT_TRUE(organiser.Child(frmCuts::Label1).IsVisible());
            EXPECT_FALSE(organiser.Child(frmCuts::pFrame).IsVisible());
            EXPECT_FALSE(organiser.Child(frmCuts::Command1 + 0).IsEnabled());
            EXPECT_FALSE(organiser.Child(frmCuts::Command1 + 1).IsEnabled());
            EXPECT_TRUE(organiser.Child(frmCuts::Command1 + 2).IsFocused());
        });
}

TEST_F(OrganizeShortcutsTest, ItSaysThatItIsReadingWhileItReads) {
    std::string said;
    Look(kShortcuts, [&](Window organiser) {
        const testkit::RecordedCall fake = WATCH_CALL(GetPrivateProfileSectionA, [&] {
            const Window label = organiser.Child(frmCuts::Label1);
            if (label.IsVisible()) said = label.Text();
            EXPECT_FALSE(GetUpdateRect(label.Handle(), nullptr, FALSE)) << "it is painted";
        });
        organiser_.ReadShortcuts();
        EXPECT_TRUE(List(organiser).IsFocused());
    });
    EXPECT_EQ(said, "Refreshing list...");
}

TEST_F(OrganizeShortcutsTest, LinesWithoutATargetAreNoShortcutsAndQuotesNoPartOfOne) {
    Organize("[Cuts]\r\nbroken\r\na=\"C:\\a b\"\r\nempty=\r\n", {[](Window organiser) {
                 EXPECT_THAT(Names(organiser), ElementsAre("a", "empty"));
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, GoesByTheKeyboard) {
    Organize(kShortcuts, {[](Window organiser) {
                 EXPECT_THAT(TabOrder(organiser, frmCuts::pBasket),
                             ElementsAre(frmCuts::pBasket, frmCuts::Command1 + 0, frmCuts::Command1 + 1,
                                         frmCuts::Command1 + 2));
                 PressInFocus(VK_ESCAPE);
             }});
}

TEST_F(OrganizeShortcutsTest, ReadsItsListAgainSoonWhenItCannotBeRead) {
    std::optional<testkit::HeldFile> held;
    folder_.WriteIniText(kShortcuts);
    context_.Records.LoadButtonRecords();
    held.emplace(folder_.IniPath());
    const ModalAnswers user({[&](Window organiser) {
        EXPECT_NE(organiser.Child(frmCuts::Label1).Text(), "No shortcuts found");
        EXPECT_FALSE(organiser.Child(frmCuts::Command1 + 1).IsEnabled());
        held.reset();
        testkit::WaitFor("the list is read", [&] { return Names(organiser).size() == 3; });
        EXPECT_TRUE(organiser.Child(frmCuts::Command1 + 1).IsEnabled());
        Quit(organiser);
    }});
    organiser_.Show(owner_.Handle());
}

TEST_F(OrganizeShortcutsTest, TheWheelScrollsByItsNotchAndNeverPastTheEnds) {
    Look(Many(10), [this](Window organiser) {
        const HWND bar = organiser.Child(frmCuts::Scr).Handle();
        const int high = testkit::ScrollEnd(bar);
        ASSERT_GT(high, 102);
        ASSERT_LT(high, 3 * 102);
        const auto turn = [&](int rotation) {
            organiser_.MouseWheel(0, rotation, 0, 0);
            return GetScrollPos(bar, SB_CTL);
        };
        EXPECT_EQ(turn(120), 0);
        EXPECT_EQ(turn(-120), 102);
        EXPECT_EQ(turn(0), 102);
        EXPECT_EQ(turn(-1), std::min(204, high));
        EXPECT_EQ(turn(-120), high);
        EXPECT_EQ(turn(120), high - 102);
    });
}

TEST_F(OrganizeShortcutsTest, TheWheelIsHookedWhileItIsActive) {
    Look(Many(20), [](Window organiser) {
        const HWND bar = organiser.Child(frmCuts::Scr).Handle();
        organiser.Send(WM_ACTIVATE, WA_ACTIVE);
        List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
        organiser.Send(WM_ACTIVATE, WA_INACTIVE);
        List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
        organiser.Send(WM_ACTIVATE, WA_CLICKACTIVE);
        List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 0);
    });
}

TEST_F(OrganizeShortcutsTest, SmallStepsOfTheWheelAddUpToItsNotch) {
    Look(Many(20), [](Window organiser) {
        const HWND bar = organiser.Child(frmCuts::Scr).Handle();
        organiser.Send(WM_ACTIVATE, WA_ACTIVE);
        for (int step = 1; step <= 12; ++step) {
            EXPECT_EQ(GetScrollPos(bar, SB_CTL), 0) << step;
            List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-10)));
        }
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
    });
}

TEST_F(OrganizeShortcutsTest, TheBarMovesByItsSteps) {
    Look(Many(20), [](Window organiser) {
        const HWND bar = organiser.Child(frmCuts::Scr).Handle();
        organiser.Send(WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 51);
        organiser.Send(WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 153);
    });
}

TEST_F(OrganizeShortcutsTest, AThousandShortcutsAreListedAtOnceAndReachedToTheLast) {
    Look(Many(1000), [](Window organiser) {
        EXPECT_EQ(organiser.Text(), "Organize shortcuts - 1000 shortcuts found");
        Press(organiser, VK_END);
        EXPECT_EQ(List(organiser).Text(), "n999");
    });
}

TEST_F(OrganizeShortcutsTest, OnAFileThatIsEmptyForAMomentItWaitsForTheListAndKeepsTheRecords) {
    Look(kShortcuts, [&](Window organiser) {
        const std::string whole = folder_.IniBytes();
        folder_.WriteIniText("");
        organiser_.ReadShortcuts();
        EXPECT_EQ(organiser.Child(frmCuts::Label1).Text(), "Refreshing list...");
        EXPECT_FALSE(organiser.Child(frmCuts::Command1 + frmCuts::kDelete).IsEnabled());
        EXPECT_TRUE(organiser.Child(frmCuts::Command1 + frmCuts::kQuit).IsFocused());
        EXPECT_EQ(folder_.IniBytes(), "");
        {
            const testkit::HeldFile held(folder_.IniPath());
            const testkit::RecordedCall sleep =
                FAKE_CALL(Sleep, [](DWORD) { ADD_FAILURE() << "nobody waits for this"; });
            organiser.Send(WM_TIMER, 1);
        }
        folder_.WriteIniText(whole);
        organiser.Send(WM_TIMER, 1);
        EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work", "Ђорђе 文件"));
    });
}

TEST_F(OrganizeShortcutsTest, ItsRowsAreAsMuchSmallerAsTheDialogsText) {
    const auto font = FAKE_CALL(
        SystemParametersInfoForDpi, [](UINT what, UINT size, PVOID record, UINT flags, UINT dpi) -> WINBOOL {
            if (ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, record, flags, dpi) == FALSE)
                return FALSE;
            static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont.lfHeight = -12;
            return TRUE;
        });
    LONG height = 0;
    const auto measure = [&](Window organiser) {
        height = win::Height(List(organiser).Rect());
        Quit(organiser);
    };
    Organize(kShortcuts, {measure});
    EXPECT_EQ(height, 4 + 3 * 47 + 2 * 4 + 4);
    const auto screen = FAKE_CALL(GetMonitorInfoW, [](HMONITOR, LPMONITORINFO info) -> WINBOOL {
        info->rcMonitor = info->rcWork = {0, 0, 1024, 300};
        return TRUE;
    });
    Organize(kShortcuts, {measure});
    // Eight points in place of nine.
    EXPECT_EQ(height, 4 + 3 * 42 + 2 * 4 + 4);
}

}  // namespace
}  // namespace dialogs
