#include "dialogs/options.h"

#include <limits>

#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/unit/dialogs/options_fixture.h"
#include "win/process_start.h"

namespace dialogs {
namespace {

using config::Settings;
using config::SettingsRecord;
using ::testing::AllOf, ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Window;

using OptionsTest = OptionsFixture;

/// The setting of each check box by its index.
constexpr bool SettingsRecord::* kSettings[]{
    &SettingsRecord::StartWithWindows,  &SettingsRecord::StartGlued,
    &SettingsRecord::HideAfterLaunch,   &SettingsRecord::TaskbarProcessesOnly,
    &SettingsRecord::CloseButtonCloses, &SettingsRecord::ExtensiveTooltips,
    &SettingsRecord::SingleClickOpen,   &SettingsRecord::ShowCollected,
    &SettingsRecord::PopOnHover,        &SettingsRecord::ClickShows};

const char kRun[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

TEST_F(OptionsTest, DocksThePanelAndStopsItsTimerBeforeItIsShown) {
    ASSERT_EQ(OpenDialogCount, 0);
    Look([&](Window dialog) {
        EXPECT_THAT(host_.log.Lines(), ElementsAre("ShowQuon false false", "timer false"));
        EXPECT_EQ(OpenDialogCount, 1);
        EXPECT_TRUE(dialog.IsTopmost());
    });
}

TEST_F(OptionsTest, BringsThePanelOutWhicheverWayItIsClosed) {
    const std::vector<ModalAnswers::Step> ways{Press(kCancelButton), CloseByTitleBar,
                                               [](Window) { PressInFocus(VK_ESCAPE); }};
    for (size_t way = 0; way < ways.size(); ++way) {
        host_.log.Clear();
        Open(ways[way]);
        EXPECT_THAT(host_.log.Lines(),
                    ElementsAre("ShowQuon false false", "timer false", "timer true", "ShowQuon true false"))
            << way;
        EXPECT_EQ(OpenDialogCount, 0);
    }
    host_.log.Clear();
    Open(Press(kAcceptButton));
    EXPECT_THAT(host_.log.Lines(),
                ElementsAre("ShowQuon false false", "timer false", "hot key 0", "tooltip mark",
                            "close setting", "timer true", "ShowQuon true false"));
}

TEST_F(OptionsTest, ShowsEachSettingInItsOwnBox) {
    for (int on = 0; on < 10; ++on) {
        Settings = {};
        Settings.*kSettings[on] = true;
        Look([&](Window dialog) {
            for (int index = 0; index < 10; ++index)
                EXPECT_EQ(IsChecked(dialog, frmSettings::chSet + 0 + index), index == on)
                    << on << " " << index;
        });
    }
}

TEST_F(OptionsTest, ShowsTheDelayAndTheEdge) {
    for (const int edge : {1, 2, 3, 4}) {
        Settings.Edge = edge;
        Settings.PopDelay = 1000 * edge;
        Look([&](Window dialog) {
            for (int option = 1; option <= 4; ++option)
                EXPECT_EQ(IsChecked(dialog, frmSettings::o1 + 0 + option), option == edge);
            EXPECT_EQ(dialog.Child(kDelayBox).Text(), std::to_string(1000 * edge));
        });
    }
}

TEST_F(OptionsTest, CopiesEachBoxToItsOwnSetting) {
    for (int on = 0; on < 10; ++on) {
        Settings = {};
        Accept([&](Window dialog) { CheckDlgButton(dialog.Handle(), frmSettings::chSet + on, BST_CHECKED); });
        for (int index = 0; index < 10; ++index)
            EXPECT_EQ(Settings.*kSettings[index], index == on) << on << " " << index;
    }
    // And off again.
    for (int off = 0; off < 10; ++off) {
        Settings = {};
        Settings.ClickShows = Settings.PopOnHover = true;
        Settings.*kSettings[off] = true;
        Accept([&](Window dialog) { dialog.Press(frmSettings::chSet + 0 + off); });
        EXPECT_FALSE(Settings.*kSettings[off]) << off;
    }
}

TEST_F(OptionsTest, CopiesTheEdgeThatWasClicked) {
    for (const int edge : {4, 3, 2, 1}) {
        Accept([&](Window dialog) { dialog.Press(frmSettings::o1 + 0 + edge); });
        EXPECT_EQ(Settings.Edge, edge);
    }
}

TEST_F(OptionsTest, KeepsAStoredNumberThatIsNoEdgeUntilAnEdgeIsChosen) {
    Settings.Edge = 9;
    Accept([](Window dialog) {
        for (int option = 1; option <= 4; ++option)
            EXPECT_FALSE(IsChecked(dialog, frmSettings::o1 + 0 + option));
        // The focus alone chooses nothing, though the option tells of it as of a click.
        const Window left = dialog.Child(frmSettings::o1 + 1);
        dialog.Send(WM_COMMAND, MAKEWPARAM(frmSettings::o1 + 1, BN_CLICKED),
                    reinterpret_cast<LPARAM>(left.Handle()));
    });
    EXPECT_EQ(Settings.Edge, 9);
    Accept([](Window dialog) { dialog.Press(frmSettings::o1 + 2); });
    EXPECT_EQ(Settings.Edge, 2);
}

TEST_F(OptionsTest, AStoredNumberThatIsNoEdgeMarksNoOtherControl) {
    // Added to the first identifier of the edges, these numbers would name the check boxes, the delay and the
    // buttons.
    for (const int edge : {-30, -25, -21, -10, 0, 5, 10, 11, 20, std::numeric_limits<int>::max(),
                           std::numeric_limits<int>::min()}) {
        Settings = {};
        Settings.Edge = edge;
        Accept([](Window dialog) {
            for (const Window child : dialog.Descendants())
                EXPECT_EQ(child.Send(BM_GETCHECK), BST_UNCHECKED) << child.Describe();
        });
        EXPECT_EQ(Settings.Edge, edge);
    }
}

TEST_F(OptionsTest, CopiesNothingWhenItIsCancelled) {
    const std::vector<ModalAnswers::Step> ways{Press(kCancelButton), CloseByTitleBar,
                                               [](Window) { PressInFocus(VK_ESCAPE); }};
    for (const ModalAnswers::Step& close : ways) {
        Open([&](Window dialog) {
            for (int index = 0; index < 9; ++index)
                dialog.Press(frmSettings::chSet + 0 + index);
            dialog.Press(frmSettings::o1 + 4);
            dialog.Child(kDelayBox).SetText("77");
            close(dialog);
        });
        for (int index = 0; index < 9; ++index)
            EXPECT_FALSE(Settings.*kSettings[index]) << index;
        EXPECT_TRUE(Settings.ClickShows);
        EXPECT_EQ(Settings.Edge, 1);
        EXPECT_EQ(Settings.PopDelay, 500);
    }
    EXPECT_THAT(registry_.Lines(), IsEmpty());
}

TEST_F(OptionsTest, TakesAnyWholeNumberForTheDelay) {
    const std::vector<std::pair<std::string, std::int32_t>> delays{
        {"250", 250}, {"0", 0},   {"-1", -1}, {" 40 ", 40},
        {"1.5", 2},   {"2.5", 2}, {"+7", 7},  {"2147483647", std::numeric_limits<std::int32_t>::max()}};
    for (const auto& [typed, delay] : delays) {
        Accept([&](Window dialog) { dialog.Child(kDelayBox).SetText(typed); });
        EXPECT_EQ(Settings.PopDelay, delay) << typed;
    }
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(OptionsTest, StopsAtADelayThatIsNoNumber) {
    for (const std::string typed :
         {"abc", "", " ", "12 ms", "5OO", "99999999999", "2147483648", "пет", "五"}) {
        Settings = {};
        Settings.Edge = 1;
        Settings.ClickShows = true;
        Reports().clear();
        host_.log.Clear();
        Look([&](Window dialog) {
            for (int index = 0; index < 9; ++index)
                dialog.Press(frmSettings::chSet + 0 + index);
            dialog.Press(frmSettings::chSet + 9);
            dialog.Press(frmSettings::o1 + 4);
            dialog.Child(kDelayBox).SetText(typed);
            SetFocus(dialog.Child(kAcceptButton).Handle());
            dialog.Press(kAcceptButton);
            EXPECT_TRUE(dialog.IsVisible()) << "it stays open";
            EXPECT_EQ(GetFocus(), dialog.Child(kDelayBox).Handle());
            EXPECT_EQ(dialog.Child(kDelayBox).Selection(), MAKELONG(0, testkit::Wide(typed).size()));
            ASSERT_EQ(Reports().size(), 1u) << typed;
            EXPECT_EQ(Reports()[0].first, dialog.Handle());
            EXPECT_THAT(Reports()[0].second, AllOf(HasSubstr("\"" + typed + "\""), HasSubstr("delay")));
        });
        // What comes before the delay is copied and stays, what comes after it is not.
        for (const int index : {0, 1, 2, 3, 4, 5, 7, 8})
            EXPECT_TRUE(Settings.*kSettings[index]) << typed << " " << index;
        EXPECT_FALSE(Settings.ClickShows);
        EXPECT_EQ(Settings.Edge, 4);
        EXPECT_EQ(Settings.PopDelay, 500);
        EXPECT_FALSE(Settings.SingleClickOpen);
        EXPECT_EQ(host_.log.Count("tooltip mark"), 0u);
        EXPECT_EQ(host_.log.Count("close setting"), 0u);
    }
    EXPECT_THAT(registry_.Lines(), IsEmpty());
}

TEST_F(OptionsTest, SetsTheTooltipMarkBetweenTheDelayAndTheSingleClick) {
    host_.onTooltipMark = [] {
        EXPECT_TRUE(Settings.ExtensiveTooltips);
        EXPECT_EQ(Settings.PopDelay, 77);
        EXPECT_FALSE(Settings.SingleClickOpen);
    };
    host_.onCloseSetting = [] { EXPECT_TRUE(Settings.CloseButtonCloses); };
    Accept([](Window dialog) {
        for (const int id : {frmSettings::chSet + 4, frmSettings::chSet + 5, frmSettings::chSet + 6})
            dialog.Press(id);
        dialog.Child(kDelayBox).SetText("77");
    });
    EXPECT_TRUE(InOrder(host_.log, {"tooltip mark", "close setting", "timer true"}));
    EXPECT_TRUE(Settings.SingleClickOpen);
}

TEST_F(OptionsTest, WritesTheStartEntry) {
    Settings.StartWithWindows = true;
    Open(Press(kAcceptButton));
    const std::string program = win::ProgramFolder() + "\\Quon.exe";
    EXPECT_THAT(registry_.Lines(),
                ElementsAre(std::string("open ") + kRun + " 0 set",
                            "set Quon 0 1 " + program + " " + std::to_string(program.size() + 1), "close"));
}

TEST_F(OptionsTest, SaysNothingWhenTheStartEntryCannotBeWritten) {
    Settings.StartWithWindows = true;
    openAnswer_ = ERROR_ACCESS_DENIED;
    Open(Press(kAcceptButton));
    EXPECT_THAT(registry_.Lines(), ElementsAre(std::string("open ") + kRun + " 0 set"));
    openAnswer_ = ERROR_SUCCESS;
    writeAnswer_ = ERROR_ACCESS_DENIED;
    Open(Press(kAcceptButton));
    EXPECT_EQ(registry_.Count("close"), 1u);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(OptionsTest, DeletesTheStartEntryWhetherItIsThereOrNot) {
    for (const LSTATUS answer : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND}) {
        writeAnswer_ = answer;
        registry_.Clear();
        Open(Press(kAcceptButton));
        EXPECT_THAT(registry_.Lines(),
                    ElementsAre(std::string("open ") + kRun + " 0 all", "delete Quon", "close"));
    }
}

TEST_F(OptionsTest, StaysOpenWhenTheStartEntryCannotBeReachedForFullAccess) {
    openAnswer_ = ERROR_ACCESS_DENIED;
    testkit::CallLog boxes;
    HWND owner = nullptr;
    const auto box = FAKE_CALL(MessageBoxW, [&](HWND window, LPCWSTR text, LPCWSTR title, UINT type) -> int {
        owner = window;
        boxes.Add(text, "|", title, type);
        return IDOK;
    });
    Look([&](Window dialog) {
        dialog.Press(frmSettings::chSet + 6);
        dialog.Press(kAcceptButton);
        EXPECT_THAT(boxes.Lines(), ElementsAre("Couldn't make startup entry. | Quon: Error report 0"));
        EXPECT_EQ(owner, dialog.Handle());
        EXPECT_TRUE(dialog.IsVisible());
        EXPECT_TRUE(Settings.SingleClickOpen) << "what was copied stays in effect";
        EXPECT_EQ(host_.log.Count("ShowQuon true"), 0u);
    });
    EXPECT_TRUE(Settings.SingleClickOpen);
    EXPECT_EQ(registry_.Count("delete"), 0u);
}

TEST_F(OptionsTest, RefillsTheListWhenItShowsOtherShortcuts) {
    Accept([](Window dialog) { dialog.Press(frmSettings::chSet + 7); });
    EXPECT_EQ(host_.log.Lines().back(), "refill");
    host_.log.Clear();
    Open(Press(kAcceptButton));
    EXPECT_EQ(host_.log.Count("refill"), 0u);
    // Also when it was only copied before Accept stopped.
    Look([](Window dialog) {
        dialog.Press(frmSettings::chSet + 7);
        dialog.Child(kDelayBox).SetText("abc");
        dialog.Press(kAcceptButton);
    });
    EXPECT_EQ(host_.log.Count("refill"), 1u);
}
constexpr std::uint16_t kCtrlAltQ = MAKEWORD('Q', HOTKEYF_CONTROL | HOTKEYF_ALT);
constexpr std::uint16_t kAltW = MAKEWORD('W', HOTKEYF_ALT);

TEST_F(OptionsTest, ShowsTheHotKeyAndTakesAnother) {
    Settings.HotKey = kCtrlAltQ;
    Accept([](Window dialog) {
        const Window box = dialog.Child(frmSettings::HotKey);
        EXPECT_EQ(box.Class(), "msctls_hotkey32");
        EXPECT_EQ(box.Send(HKM_GETHOTKEY), kCtrlAltQ);
        box.Send(HKM_SETHOTKEY, kAltW);
    });
    EXPECT_EQ(host_.log.Count("hot key " + std::to_string(kAltW)), 1u);
    EXPECT_EQ(Settings.HotKey, kAltW);
}

TEST_F(OptionsTest, GivesAKeyAloneItsModifiers) {
    std::vector<std::string> rules;
    const auto send = WATCH_CALL(SendMessageW, [&](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == HKM_SETRULES) rules.push_back(std::to_string(wParam) + " " + std::to_string(lParam));
    });
    Open(Press(kCancelButton));
    // Neither alone (1) nor with SHIFT (2): CTRL (2) and ALT (4) come in their place.
    EXPECT_THAT(rules, ElementsAre("3 6"));
}

TEST_F(OptionsTest, ReportsATakenHotKeyAndStaysOpenWithTheFormerOne) {
    Settings.HotKey = kCtrlAltQ;
    host_.hotKeyAnswer = false;
    HWND owner = nullptr;
    ModalAnswers user({[&](Window dialog) {
                           owner = dialog.Handle();
                           dialog.Child(frmSettings::HotKey).Send(HKM_SETHOTKEY, kAltW);
                           dialog.Press(frmSettings::chSet + 6);
                           dialog.Press(kAcceptButton);
                           EXPECT_TRUE(dialog.Child(frmSettings::HotKey).IsFocused());
                           dialog.Press(kCancelButton);
                       },
                       [&](Window note) {
                           EXPECT_EQ(
                               note.Child(frmMsg::l1).Text(),
                               "Another program uses these keys already.\nPlease press others, or none.");
                           EXPECT_EQ(note.Owner().Handle(), owner);
                           note.Press(frmMsg::b1);
                       }});
    Open();
    EXPECT_EQ(user.Used(), 2u);
    EXPECT_EQ(Settings.HotKey, kCtrlAltQ);
    EXPECT_FALSE(Settings.SingleClickOpen) << "nothing is copied";
    EXPECT_EQ(host_.log.Count("close setting"), 0u);
}

TEST_F(OptionsTest, DoesNotOpenWhereItCannotShowTheDelay) {
    EXPECT_EQ(ReportsWithoutText(kDelayBox, [this] { Open(); }), 1);
}

}  // namespace
}  // namespace dialogs
