#include "dialogs/icon_chooser.h"

#include "res/resource.h"
#include "tests/support/scroll_end.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/handles.h"
#include "win/process_start.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Window;

void Dismiss(Window chooser) { chooser.Post(WM_COMMAND, IDCANCEL); }
/// Where a child stands in its parent.
RECT PlaceIn(Window child) {
    RECT place = child.Rect();
    MapWindowPoints(nullptr, GetParent(child.Handle()), reinterpret_cast<POINT*>(&place), 2);
    return place;
}
Window Strip(Window chooser) { return chooser.Child(IcoChooser::p1); }

/// Windows' answers for a file with some icons; each is a copy, and it is noted when it is given back.
class IconChooserTest : public ::testing::Test {
  protected:
    IconChooserTest() {
        fakes_.push_back(FAKE_CALL(ExtractIconA, [this](HINSTANCE module, LPCSTR file, UINT index) {
            EXPECT_EQ(module, GetModuleHandleW(nullptr));
            asked_.push_back(std::string(file) + " " + std::to_string(index));
            if (index >= first_ + static_cast<UINT>(count_)) return none_;
            HICON icon = CopyIcon(LoadIcon(nullptr, IDI_APPLICATION));
            open_.insert(icon);
            return icon;
        }));
        fakes_.push_back(WATCH_CALL(DestroyIcon, [this](HICON icon) { open_.erase(icon); }));
        fakes_.push_back(FAKE_CALL(Sleep, [this](DWORD) { ++pauses_; }));
        chooser_.IconSelected = [this](std::int16_t index) { picked_.push_back(index); };
    }

    /// Reads a file with so many icons and shows the chooser to a user.
    void Choose(int count, const ModalAnswers::Step& step) {
        count_ = count;
        const ModalAnswers user({step});
        chooser_.ReadIcons("C:\\програм.exe");
        chooser_.Show(owner_.Handle());
    }

    std::vector<std::string> asked_;
    UINT first_ = 0;
    int count_ = 0;
    HICON none_ = nullptr;
    std::set<HICON> open_;
    int pauses_ = 0;
    testkit::RecordedCalls fakes_;
    testkit::HiddenWindow owner_;
    std::vector<int> picked_;
    IcoChooser chooser_;
};

TEST_F(IconChooserTest, ReadsUpToTheFirstIndexWithoutAnIcon) {
    count_ = 3;
    chooser_.ReadIcons("C:\\文.dll");
    EXPECT_THAT(asked_, ElementsAre("C:\\文.dll 0", "C:\\文.dll 1", "C:\\文.dll 2", "C:\\文.dll 3"));
    EXPECT_EQ(chooser_.IconCount(), 3);
}

TEST_F(IconChooserTest, TheAnswerForAFileThatHoldsNoIconsIsNoIcon) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what Windows answers.
    none_ = reinterpret_cast<HICON>(INT_PTR{1});
    chooser_.ReadIcons("C:\\a.txt");
    EXPECT_EQ(chooser_.IconCount(), 0);
    EXPECT_EQ(asked_.size(), 1U);
}

TEST_F(IconChooserTest, ReadingBeginsAtTheFirstIcon) {
    chooser_.FirstIcon = 7;
    first_ = 7;
    Choose(2, [](Window chooser) { chooser.Child(IcoChooser::p2 + 8).SendClick(); });
    EXPECT_EQ(asked_.front(), "C:\\програм.exe 7");
    EXPECT_THAT(picked_, ElementsAre(8));
}

TEST_F(IconChooserTest, TheHourglassIsShownWhileReading) {
    std::vector<HCURSOR> cursors;
    const testkit::RecordedCall fake = WATCH_CALL(SetCursor, [&](HCURSOR cursor) {
        cursors.push_back(cursor);
        EXPECT_EQ(asked_.size(), cursors.size() == 1 ? 0U : 2U);
    });
    count_ = 1;
    chooser_.ReadIcons("C:\\a.exe");
    ASSERT_EQ(cursors.size(), 2U);
    EXPECT_EQ(cursors.front(), LoadCursor(nullptr, IDC_WAIT));
}

TEST_F(IconChooserTest, ThePickIsReportedBeforeTheChooserCloses) {
    bool open = false;
    chooser_.IconSelected = [&](std::int16_t index) {
        picked_.push_back(index);
        EXPECT_EQ(chooser_.SelectedIcon, 3);
        open = IsWindow(chooser_.Handle()) != 0;
    };
    Choose(5, [](Window chooser) { chooser.Child(IcoChooser::p2 + 0 + 3).SendClick(); });
    EXPECT_THAT(picked_, ElementsAre(3));
    EXPECT_TRUE(open);
    EXPECT_EQ(chooser_.SelectedIcon, 3);
    EXPECT_EQ(chooser_.Handle(), nullptr);
    EXPECT_EQ(pauses_, 0);
}

TEST_F(IconChooserTest, APickThatFailsClosesTheChooserToo) {
    static int reports;
    reports = 0;
    win::SetErrorReporter([](HWND, const char* message) noexcept {
        EXPECT_STREQ(message, "no");
        ++reports;
    });
    chooser_.IconSelected = [](std::int16_t) { throw win::OverflowError("no"); };
    Choose(1, [](Window chooser) { chooser.Child(IcoChooser::p2 + 0).SendClick(); });
    EXPECT_EQ(chooser_.Handle(), nullptr);
    EXPECT_EQ(reports, 1);
}

TEST_F(IconChooserTest, OneIconIsOneBox) {
    Choose(1, [](Window chooser) {
        EXPECT_EQ(chooser.Text(), "Icon Chooser");
        EXPECT_TRUE(chooser.IsTopmost());
        EXPECT_EQ(Strip(chooser).Descendants().size(), 1U);
        EXPECT_FALSE(chooser.Child(IcoChooser::HScr).IsEnabled());
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 0).IsFocused());
        chooser.Child(IcoChooser::p2 + 0).SendClick();
    });
    EXPECT_THAT(picked_, ElementsAre(0));
}

TEST_F(IconChooserTest, AFileWithoutIconsOrNoneAtAllIsAnEmptyStrip) {
    Choose(0, [](Window chooser) {
        EXPECT_THAT(Strip(chooser).Descendants(), IsEmpty());
        EXPECT_FALSE(chooser.Child(IcoChooser::HScr).IsEnabled());
        EXPECT_TRUE(chooser.Child(IcoChooser::Image1).IsFocused());
        Dismiss(chooser);
    });
    EXPECT_THAT(picked_, IsEmpty());
}

TEST_F(IconChooserTest, BoxesStandFortyFiveApartInAStripThatHoldsThem) {
    Choose(10, [](Window chooser) {
        const Window strip = Strip(chooser);
        for (int index = 1; index < 10; ++index)
            EXPECT_EQ(PlaceIn(chooser.Child(IcoChooser::p2 + 0 + index)).left -
                          PlaceIn(chooser.Child(IcoChooser::p2 + index - 1)).left,
                      45);
        EXPECT_GE(PlaceIn(strip).right, PlaceIn(chooser.Child(IcoChooser::p2 + 9)).right);
        RECT visible{};
        GetClientRect(strip.Parent().Handle(), &visible);
        RECT content{};
        GetClientRect(strip.Handle(), &content);
        EXPECT_EQ(testkit::ScrollEnd(chooser.Child(IcoChooser::HScr).Handle()),
                  content.right - visible.right);
        Dismiss(chooser);
    });
}

TEST_F(IconChooserTest, TheIconIsDrawnTwoPixelsFromTheCorner) {
    testkit::CallLog log;
    const testkit::RecordedCall fake = FAKE_CALL(DrawIcon, [&](HDC, int x, int y, HICON icon) -> WINBOOL {
        EXPECT_TRUE(open_.contains(icon));
        log.Add("icon", x, y);
        return TRUE;
    });
    Choose(1, [&](Window chooser) {
        RedrawWindow(chooser.Child(IcoChooser::p2 + 0).Handle(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_UPDATENOW);
        Dismiss(chooser);
    });
    EXPECT_EQ(log.Lines().back(), "icon 2 2");
}

TEST_F(IconChooserTest, ScrollingMovesTheStripByTheBarsValue) {
    Choose(300, [](Window chooser) {
        const HWND bar = chooser.Child(IcoChooser::HScr).Handle();
        const auto scroll = [&](int code) {
            chooser.Send(WM_HSCROLL, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(bar));
            EXPECT_EQ(PlaceIn(Strip(chooser)).left, -GetScrollPos(bar, SB_CTL));
            return GetScrollPos(bar, SB_CTL);
        };
        EXPECT_EQ(scroll(SB_LINERIGHT), 45);
        EXPECT_GT(scroll(SB_PAGERIGHT), 200);
        EXPECT_GT(scroll(SB_RIGHT), 13000);
        EXPECT_LE(PlaceIn(Strip(chooser)).right, 238);
        EXPECT_EQ(scroll(SB_LEFT), 0);
        const auto turn = [&](int rotation) {
            chooser.Child(IcoChooser::p2 + 1).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(rotation)));
            return GetScrollPos(bar, SB_CTL);
        };
        EXPECT_EQ(turn(-120), 45);
        EXPECT_EQ(turn(-240), 3 * 45);
        EXPECT_EQ(turn(120), 2 * 45);
        // What a touchpad tells of one notch.
        for (int step = 1; step < 12; ++step)
            EXPECT_EQ(turn(-10), 2 * 45) << step;
        EXPECT_EQ(turn(-10), 3 * 45);
        chooser.Child(IcoChooser::p2 + 299).SendClick();
    });
    EXPECT_THAT(picked_, ElementsAre(299));
}

TEST_F(IconChooserTest, KeysWalkOverTheIconsAndPick) {
    Choose(30, [](Window chooser) {
        const auto press = [](WPARAM key) { SendMessageW(GetFocus(), WM_KEYDOWN, key, 0); };
        press(VK_LEFT);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 0).IsFocused());
        press(VK_RIGHT);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 1).IsFocused());
        press(VK_DOWN);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 1).IsFocused());
        press(VK_END);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 29).IsFocused());
        RECT visible{};
        GetClientRect(Strip(chooser).Parent().Handle(), &visible);
        RECT last = chooser.Child(IcoChooser::p2 + 29).Rect();
        MapWindowPoints(nullptr, Strip(chooser).Parent().Handle(), reinterpret_cast<POINT*>(&last), 2);
        EXPECT_LE(last.right, visible.right);
        press(VK_RIGHT);
        press(VK_HOME);
        EXPECT_EQ(PlaceIn(Strip(chooser)).left, 0);
        press(VK_RIGHT);
        press(VK_SPACE);
    });
    EXPECT_THAT(picked_, ElementsAre(1));
}

TEST_F(IconChooserTest, ReachesMoreIconsThanAStripHasRoomFor) {
    constexpr int kCount = 900;
    Choose(kCount, [](Window chooser) {
        const Window view(GetParent(Strip(chooser).Handle()));
        const auto isSeen = [&](int index) {
            RECT place = chooser.Child(IcoChooser::p2 + index).Rect();
            MapWindowPoints(nullptr, view.Handle(), reinterpret_cast<POINT*>(&place), 2);
            RECT inside{};
            GetClientRect(view.Handle(), &inside);
            return place.left >= 0 && place.right <= inside.right &&
                   (chooser.Child(IcoChooser::p2 + index).Style() & WS_VISIBLE) != 0;
        };
        chooser.Child(IcoChooser::p2).Send(WM_KEYDOWN, VK_END);
        EXPECT_TRUE(isSeen(kCount - 1));
        for (const int index : {850, 700, 400}) {
            for (int from = index + 4; from >= index; --from)
                chooser.Child(IcoChooser::p2 + from + 1).Send(WM_KEYDOWN, VK_LEFT);
            EXPECT_TRUE(isSeen(index)) << index;
        }
        chooser.Child(IcoChooser::p2 + 400).Send(WM_KEYDOWN, VK_HOME);
        EXPECT_TRUE(isSeen(0));
        chooser.Child(IcoChooser::p2).Send(WM_KEYDOWN, VK_END);
        chooser.Child(IcoChooser::p2 + kCount - 1).SendClick();
    });
    EXPECT_THAT(picked_, ElementsAre(kCount - 1));
}

TEST_F(IconChooserTest, OnlyOneBoxIsAStopOfTheTabKey) {
    Choose(5, [](Window chooser) {
        const HWND first = chooser.Child(IcoChooser::p2 + 0).Handle();
        EXPECT_EQ(GetNextDlgTabItem(chooser.Handle(), first, FALSE),
                  chooser.Child(IcoChooser::Image1).Handle());
        EXPECT_EQ(GetNextDlgTabItem(chooser.Handle(), first, TRUE),
                  chooser.Child(IcoChooser::Image1).Handle());
        Dismiss(chooser);
    });
}

TEST_F(IconChooserTest, DismissingItInAnyWayReportsNoPick) {
    const std::vector<ModalAnswers::Step> ways{
        [](Window chooser) { chooser.Child(IcoChooser::Image1).SendClick(); },
        [](Window chooser) { chooser.Child(IcoChooser::Image1).Send(WM_KEYDOWN, VK_RETURN); },
        [](Window chooser) {
            PostMessageW(chooser.Child(IcoChooser::p2 + 0).Handle(), WM_KEYDOWN, VK_ESCAPE, 0);
        },
        [](Window chooser) { chooser.Post(WM_SYSCOMMAND, SC_CLOSE); },
        [](Window chooser) { chooser.Post(WM_ACTIVATE, WA_INACTIVE); },
        [](Window chooser) {
            const WORD hit = static_cast<WORD>(HTERROR);
            chooser.Owner().Post(WM_SETCURSOR, 0, MAKELPARAM(hit, WM_LBUTTONDOWN));
        }};
    for (size_t way = 0; way < ways.size(); ++way) {
        pauses_ = 0;
        Choose(2, ways[way]);
        EXPECT_EQ(chooser_.Handle(), nullptr) << way;
        EXPECT_GT(pauses_, 3) << way;
        EXPECT_THAT(open_, IsEmpty()) << way;
    }
    EXPECT_THAT(picked_, IsEmpty());
}

TEST_F(IconChooserTest, ThePointerOverTheOwnerDoesNotDismissIt) {
    Choose(2, [](Window chooser) {
        const WORD hit = static_cast<WORD>(HTERROR);
        chooser.Owner().Send(WM_SETCURSOR, 0, MAKELPARAM(hit, WM_MOUSEMOVE));
        chooser.Owner().Send(WM_SETCURSOR, 0, MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
        chooser.Child(IcoChooser::p2 + 1).SendClick();
    });
    EXPECT_THAT(picked_, ElementsAre(1));
}

TEST_F(IconChooserTest, ItSlidesUnderTheOwnersEdgeFromItsFullWidth) {
    SetWindowPos(owner_.Handle(), nullptr, 500, 120, 300, 300, SWP_NOZORDER | SWP_NOACTIVATE);
    std::vector<int> widths;
    Window shown;
    fakes_.push_back(FAKE_CALL(Sleep, [&](DWORD) {
        const RECT place = shown.Rect();
        widths.push_back(place.right - place.left);
        EXPECT_EQ(place.right, 500);
    }));
    Choose(2, [&](Window chooser) {
        shown = chooser;
        const RECT place = chooser.Rect();
        EXPECT_EQ(place.left, 500 - 238);
        EXPECT_EQ(place.right, 500);
        EXPECT_EQ(place.top, 120);
        Dismiss(chooser);
    });
    EXPECT_EQ(widths.front(), 238);
    EXPECT_TRUE(std::is_sorted(widths.rbegin(), widths.rend()));
    EXPECT_LT(widths.back(), 60);
}

TEST_F(IconChooserTest, WithoutRoomAtTheLeftItStandsAtTheRight) {
    SetWindowPos(owner_.Handle(), nullptr, 100, 700, 300, 300, SWP_NOZORDER | SWP_NOACTIVATE);
    Choose(2, [](Window chooser) {
        EXPECT_EQ(chooser.Rect().left, 400);
        RECT area{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        EXPECT_LE(chooser.Rect().bottom, area.bottom);
        Dismiss(chooser);
    });
}

TEST_F(IconChooserTest, AllIconsAreGivenBackWhenItIsGone) {
    Choose(300, [this](Window chooser) {
        EXPECT_EQ(open_.size(), 300U);
        Dismiss(chooser);
    });
    EXPECT_THAT(open_, IsEmpty());
    count_ = 4;
    {
        IcoChooser unused;
        unused.ReadIcons("C:\\a.exe");
        EXPECT_EQ(open_.size(), 4U);
    }
    EXPECT_THAT(open_, IsEmpty());
}

TEST_F(IconChooserTest, TheBoxesOfOneUseAreGoneInTheNext) {
    Choose(2, Dismiss);
    Choose(3, [](Window chooser) {
        EXPECT_EQ(Strip(chooser).Descendants().size(), 3U);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 0).IsFocused());
        chooser.Child(IcoChooser::p2 + 0).Send(WM_KEYDOWN, VK_RIGHT);
        EXPECT_TRUE(chooser.Child(IcoChooser::p2 + 1).IsFocused());
        chooser.Child(IcoChooser::p2 + 2).SendClick();
    });
    EXPECT_THAT(picked_, ElementsAre(2));
}

TEST(IconFileTest, TheIconsOfARealFileAreRead) {
    IcoChooser chooser;
    chooser.ReadIcons(win::ProgramPath());
    EXPECT_EQ(chooser.IconCount(), 6);
    chooser.ReadIcons("C:\\gone\\nothing.exe");
    EXPECT_EQ(chooser.IconCount(), 0);
    const testkit::ProgramFolder folder;
    chooser.ReadIcons(folder.MakeFile("текст.txt", "no icons here"));
    EXPECT_EQ(chooser.IconCount(), 0);
    const std::string copy = folder.CopyIn(win::ProgramPath(), "文件 Ђ.dll");
    chooser.ReadIcons(copy);
    EXPECT_EQ(chooser.IconCount(), 6);
}

TEST_F(IconChooserTest, TheStripHasTheSystemsGround) {
    constexpr COLORREF kGround = RGB(10, 20, 30);
    const testkit::RecordedCall system = FAKE_CALL(GetSysColor, [](int color) -> DWORD {
        return color == COLOR_WINDOW ? kGround : ORIGINAL_CALL(GetSysColor)(color);
    });
    std::set<COLORREF> filled;
    Choose(1, [&](Window chooser) {
        const testkit::RecordedCall fill = WATCH_CALL(FillRect, [&](HDC, const RECT*, HBRUSH brush) {
            LOGBRUSH record{};
            GetObjectW(brush, sizeof record, &record);
            filled.insert(record.lbColor);
        });
        RedrawWindow(Strip(chooser).Handle(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        const Window view = Strip(chooser).Parent();
        const win::WindowDc dc(view.Handle());
        EXPECT_EQ(chooser.Send(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc.Get()),
                               reinterpret_cast<LPARAM>(view.Handle())),
                  reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW)));
        Dismiss(chooser);
    });
    EXPECT_THAT(filled, ElementsAre(kGround));
}

}  // namespace
}  // namespace dialogs
