#include "dialogs/row_list.h"

#include <shlwapi.h>

#include "model/launching.h"
#include "tests/support/paint_log.h"
#include "tests/support/scroll_end.h"
#include "tests/support/unit_test.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty, ::testing::Not;

constexpr int kFrameWidth = 200;
constexpr int kFrameHeight = 100;
constexpr RowLook kPlain{.firstTop = 4,
                         .height = 20,
                         .gap = 6,
                         .bottom = 5,
                         .icon = {4, 2},
                         .name = {26, 1},
                         .highlightLeft = 22,
                         .smallStep = 20,
                         .largeStep = 60};
constexpr RowLook kFramed{.firstTop = 0,
                          .height = 51,
                          .icon = {8, 9},
                          .name = {40, 5},
                          .targetTop = 25,
                          .framed = true,
                          .smallStep = 51,
                          .largeStep = 102};

/// A list in a frame of 200 x 100 pixels, on a window that is never shown. The shell's icons are fakes: the
/// n-th path asked for has the icon n.
class RowListTest : public ::testing::Test {
  protected:
    RowListTest() : frame_(Control(L"STATIC", 730)), bar_(Control(L"SCROLLBAR", 732)) {
        SetWindowLongW(bar_, GWL_STYLE, WS_CHILD | WS_VISIBLE | SBS_VERT);
        list_.CreateOn(frame_, bar_, 731, win::Scale::Of(frame_));
    }
    ~RowListTest() override { model::DefaultBrowserPath.clear(); }

    HWND Control(const wchar_t* className, int id) {
        return CreateWindowExW(
            0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, kFrameWidth, kFrameHeight, host_.Handle(),
            // NOLINTNEXTLINE(performance-no-int-to-ptr): a child's identifier.
            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    }
    static std::vector<Row> Numbered(int count) {
        std::vector<Row> rows;
        for (int index = 0; index < count; ++index)
            rows.push_back({"row " + std::to_string(index), "C:\\" + std::to_string(index), ""});
        return rows;
    }
    void UseLook(const RowLook& look) {
        list_.Destroy();
        other_ = std::make_unique<RowList>(look);
        other_->CreateOn(frame_, bar_, 731, win::Scale::Of(frame_));
    }
    RowList& Other() { return *other_; }
    /// The top of the list's window in its frame.
    static int TopOf(const RowList& list) {
        RECT place{};
        GetWindowRect(list.Handle(), &place);
        MapWindowPoints(nullptr, GetParent(list.Handle()), reinterpret_cast<POINT*>(&place), 2);
        return place.top;
    }
    static void Press(const RowList& list, WPARAM key) { SendMessageW(list.Handle(), WM_KEYDOWN, key, 0); }
    static void Click(const RowList& list, int y, UINT message = WM_LBUTTONDOWN) {
        SendMessageW(list.Handle(), message, MK_LBUTTON, MAKELPARAM(50, y));
    }
    int BarMaximum() const { return testkit::ScrollEnd(bar_); }
    /// Paints a part of the list; what is drawn is written to the log.
    void Paint(const RowList& list, RECT part) {
        const win::WindowDc screen(nullptr);
        const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), kFrameWidth, part.bottom));
        const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
        SelectObject(dc.Get(), bitmap.Get());
        IntersectClipRect(dc.Get(), part.left, part.top, part.right, part.bottom);
        log_.Clear();
        const testkit::RecordedCalls painting = testkit::LogPainting(log_, list.Handle(), dc.Get());
        const testkit::RecordedCall image = FAKE_CALL(
            ImageList_Draw, [&](HIMAGELIST images, int index, HDC on, int x, int y, UINT style) -> WINBOOL {
                EXPECT_EQ(images, kImages);
                EXPECT_EQ(style, UINT{ILD_NORMAL});
                POINT place{x, y};
                LPtoDP(on, &place, 1);
                log_.Add("Image", index, place.x, place.y);
                return TRUE;
            });
        SendMessageW(list.Handle(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.Get()), PRF_CLIENT);
    }
    std::vector<std::string> Drawn(const std::string& kind) const {
        std::vector<std::string> lines;
        for (const std::string& line : log_.Lines())
            if (line.starts_with(kind)) lines.push_back(line);
        return lines;
    }

    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle to recognise.
    const HIMAGELIST kImages = reinterpret_cast<HIMAGELIST>(INT_PTR{0x1234});
    std::vector<std::string> asked_;
    bool iconsExist_ = true;
    testkit::RecordedCall icons_ = FAKE_CALL(
        SHGetFileInfoA,
        [this](LPCSTR path, DWORD attributes, SHFILEINFOA* info, UINT, UINT flags) -> DWORD_PTR {
            const bool byKind = (flags & SHGFI_USEFILEATTRIBUTES) != 0;
            EXPECT_EQ(flags & ~UINT{SHGFI_USEFILEATTRIBUTES}, UINT{SHGFI_SYSICONINDEX | SHGFI_SMALLICON});
            EXPECT_EQ(attributes, byKind ? DWORD{FILE_ATTRIBUTE_NORMAL} : 0U);
            asked_.push_back((byKind ? "kind of " : "") + std::string(path));
            info->iIcon = static_cast<int>(asked_.size());
            return iconsExist_ || byKind ? reinterpret_cast<DWORD_PTR>(kImages) : 0;
        });
    testkit::CallLog log_;
    testkit::HiddenWindow host_;
    HWND frame_;
    HWND bar_;
    RowList list_{kPlain};
    std::unique_ptr<RowList> other_;
};

TEST_F(RowListTest, EachRowStandsAGapBelowTheOneBefore) {
    list_.Assign(Numbered(3));
    EXPECT_EQ(testkit::RectText(list_.RowPlace(0)), "0 4 200 24");
    EXPECT_EQ(testkit::RectText(list_.RowPlace(1)), "0 30 200 50");
    EXPECT_EQ(testkit::RectText(list_.RowPlace(2)), "0 56 200 76");
    // The last row's bottom and what the look adds below.
    EXPECT_EQ(list_.ClientRect().bottom, 81);
}

TEST_F(RowListTest, TheBarIsUsableOnlyWhenTheContentIsHigherThanTheFrame) {
    EXPECT_FALSE(IsWindowEnabled(bar_));
    list_.Assign(Numbered(3));
    EXPECT_EQ(list_.ScrollMaximum(), 0);
    EXPECT_FALSE(IsWindowEnabled(bar_));
    list_.Assign(Numbered(4));
    EXPECT_EQ(list_.ScrollMaximum(), 107 - kFrameHeight);
    EXPECT_EQ(BarMaximum(), 107 - kFrameHeight);
    EXPECT_TRUE(IsWindowEnabled(bar_));
    list_.Assign(Numbered(1));
    EXPECT_EQ(BarMaximum(), 0);
    EXPECT_FALSE(IsWindowEnabled(bar_));
    list_.Assign({});
    EXPECT_FALSE(IsWindowEnabled(bar_));
}

TEST_F(RowListTest, TheContentsTopIsTheNegativeOfTheBarsValue) {
    list_.Assign(Numbered(40));
    for (const int value : {7, 200, 0, 331}) {
        list_.ScrollTo(value);
        EXPECT_EQ(list_.ScrollValue(), value);
        EXPECT_EQ(GetScrollPos(bar_, SB_CTL), value);
        EXPECT_EQ(TopOf(list_), -value);
    }
}

TEST_F(RowListTest, TheBarMovesTheContentByTheStepsOfTheLook) {
    list_.Assign(Numbered(40));
    list_.OnScroll(SB_LINEDOWN);
    EXPECT_EQ(TopOf(list_), -20);
    list_.OnScroll(SB_PAGEDOWN);
    EXPECT_EQ(TopOf(list_), -80);
}

TEST_F(RowListTest, AListHigherThanAnyWindowCanBeIsShownToItsEnd) {
    list_.Assign(Numbered(5000));
    list_.ScrollTo(list_.ScrollMaximum());
    const int height = list_.ClientRect().bottom;
    EXPECT_LE(height, 32767);
    EXPECT_EQ(TopOf(list_), kFrameHeight - height);
    Paint(list_, {0, height - kFrameHeight, kFrameWidth, height});
    EXPECT_THAT(Drawn("Text"), Contains(HasSubstr("row 4999")));
    EXPECT_THAT(Drawn("Text"), Not(Contains(HasSubstr("row 4990 "))));
    EXPECT_THAT(Drawn("Image").back(), HasSubstr(" 4 " + std::to_string(height - 5 - 20 + 2)));
    Click(list_, height - 10);
    EXPECT_EQ(list_.Selected(), 4999);
}

TEST_F(RowListTest, APressSelectsTheRowUnderIt) {
    list_.Assign(Numbered(3));
    Click(list_, 35);
    EXPECT_EQ(list_.Selected(), 1);
    Click(list_, 79);
    EXPECT_EQ(list_.Selected(), 2);
    Click(list_, 1, WM_RBUTTONDOWN);
    EXPECT_EQ(list_.Selected(), 0);
}

TEST_F(RowListTest, APressInAnEmptyListSelectsNothing) {
    Click(list_, 35);
    EXPECT_EQ(list_.Selected(), 0);
    EXPECT_EQ(list_.SelectedRow(), nullptr);
}

TEST_F(RowListTest, KeysMoveTheSelectionAndKeepItInSight) {
    list_.Assign(Numbered(40));
    const auto expect = [&](WPARAM key, int index) {
        Press(list_, key);
        EXPECT_EQ(list_.Selected(), index) << key;
        const RECT place = list_.RowPlace(index);
        EXPECT_GE(place.top, list_.ScrollValue());
        EXPECT_LE(place.bottom, list_.ScrollValue() + kFrameHeight);
    };
    expect(VK_UP, 0);
    expect(VK_DOWN, 1);
    expect(VK_DOWN, 2);
    expect(VK_NEXT, 5);
    expect(VK_UP, 4);
    expect(VK_PRIOR, 1);
    expect(VK_END, 39);
    expect(VK_DOWN, 39);
    EXPECT_EQ(list_.ScrollValue(), list_.ScrollMaximum());
    expect(VK_NEXT, 39);
    expect(VK_HOME, 0);
    EXPECT_EQ(list_.ScrollValue(), 0);
    expect(VK_PRIOR, 0);
    expect(VK_RIGHT, 0);
}

TEST_F(RowListTest, ItWantsTheArrowsAndLeavesTabAndEnterToTheDialog) {
    EXPECT_EQ(SendMessageW(list_.Handle(), WM_GETDLGCODE, VK_RETURN, 0), DLGC_WANTARROWS);
    EXPECT_NE(GetWindowLongPtrW(list_.Handle(), GWL_STYLE) & WS_TABSTOP, 0);
}

TEST_F(RowListTest, ItsNameIsThatOfTheSelectedRow) {
    EXPECT_EQ(win::WindowText(list_.Handle()), "");
    list_.Assign({{"Ђорђе", "C:\\a", ""}, {"文件", "C:\\b", "g"}});
    EXPECT_EQ(win::WindowText(list_.Handle()), "Ђорђе");
    Press(list_, VK_DOWN);
    EXPECT_EQ(win::WindowText(list_.Handle()), "文件");
    EXPECT_EQ(list_.SelectedRow()->tag, "g");
    list_.Assign({});
    EXPECT_EQ(win::WindowText(list_.Handle()), "");
}

TEST_F(RowListTest, ItTellsOfANameThatChangesAndOfNoOther) {
    list_.Assign(Numbered(3));
    const testkit::RecordedCall notify =
        FAKE_CALL(NotifyWinEvent, [&](DWORD event, HWND window, LONG object, LONG child) {
            EXPECT_EQ(event, DWORD{EVENT_OBJECT_NAMECHANGE});
            EXPECT_EQ(window, list_.Handle());
            EXPECT_EQ(object, LONG{OBJID_CLIENT});
            EXPECT_EQ(child, LONG{CHILDID_SELF});
            log_.Add("told", win::WindowText(window));
        });
    Press(list_, VK_DOWN);
    Press(list_, VK_END);
    Press(list_, VK_END);
    EXPECT_THAT(log_.Lines(), ElementsAre("told row 1", "told row 2"));
}

TEST_F(RowListTest, NewRowsKeepSelectionAndScrollingAsFarAsTheyReach) {
    list_.Assign(Numbered(40));
    list_.Select(20);
    list_.ScrollTo(500);
    list_.Assign(Numbered(39));
    EXPECT_EQ(list_.Selected(), 20);
    EXPECT_EQ(list_.ScrollValue(), 500);
    list_.Assign(Numbered(5));
    EXPECT_EQ(list_.Selected(), 4);
    EXPECT_EQ(list_.ScrollValue(), list_.ScrollMaximum());
    list_.Assign({});
    EXPECT_EQ(list_.Selected(), 0);
    EXPECT_EQ(list_.ScrollValue(), 0);
}

TEST_F(RowListTest, AnAddedRowIsScrolledToAndTheSelectionStays) {
    list_.Assign(Numbered(10));
    list_.Select(3);
    list_.Add({"new", "C:\\new", ""});
    EXPECT_EQ(list_.Rows().size(), 11U);
    // The content and the range of the bar have grown with it.
    EXPECT_EQ(list_.ClientRect().bottom, 4 + 11 * 20 + 10 * 6 + 5);
    EXPECT_EQ(list_.ScrollMaximum(), 4 + 11 * 20 + 10 * 6 + 5 - kFrameHeight);
    EXPECT_EQ(BarMaximum(), list_.ScrollMaximum());
    EXPECT_EQ(list_.Selected(), 3);
    EXPECT_EQ(list_.ScrollValue(), list_.ScrollMaximum());
}

TEST_F(RowListTest, ADoubleClickOpensTheRowUnderIt) {
    int opened = 0;
    Click(list_, 10, WM_LBUTTONDBLCLK);
    list_.onOpen = [&] { ++opened; };
    Click(list_, 10, WM_LBUTTONDBLCLK);
    EXPECT_EQ(opened, 0);
    list_.Assign(Numbered(2));
    Click(list_, 35, WM_LBUTTONDBLCLK);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(list_.Selected(), 1);
    Click(list_, 90, WM_LBUTTONDBLCLK);
    EXPECT_EQ(opened, 1);
}

TEST_F(RowListTest, TheDeleteKeyAsksToDeleteTheSelectedRow) {
    int asked = 0;
    list_.Assign(Numbered(1));
    Press(list_, VK_DELETE);
    list_.onDelete = [&] { ++asked; };
    Press(list_, VK_DELETE);
    EXPECT_EQ(asked, 1);
    list_.Assign({});
    Press(list_, VK_DELETE);
    EXPECT_EQ(asked, 1);
}

TEST_F(RowListTest, AHeldDeleteKeyAsksOnceAndAHeldArrowGoesOn) {
    constexpr LPARAM kRepeated = 0x40000001;
    int asked = 0;
    list_.onDelete = [&] { ++asked; };
    list_.Assign(Numbered(3));
    Press(list_, VK_DELETE);
    EXPECT_EQ(SendMessageW(list_.Handle(), WM_KEYDOWN, VK_DELETE, kRepeated), 0);
    EXPECT_EQ(asked, 1);
    SendMessageW(list_.Handle(), WM_KEYDOWN, VK_DOWN, kRepeated);
    EXPECT_EQ(list_.Selected(), 1);
}

TEST_F(RowListTest, ARowsIconIsFetchedWhenItIsFirstSeen) {
    list_.Assign(Numbered(1000));
    EXPECT_THAT(asked_, IsEmpty());
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_THAT(asked_, ElementsAre("C:\\0", "C:\\1", "C:\\2", "C:\\3"));
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_EQ(asked_.size(), 4U);
    Paint(list_, {0, 10400, kFrameWidth, 10410});
    EXPECT_THAT(asked_, ElementsAre("C:\\0", "C:\\1", "C:\\2", "C:\\3", "C:\\399", "C:\\400"));
}

TEST_F(RowListTest, AUrlHasTheBrowsersIconAndAGroupThatOfItsFirstMember) {
    model::DefaultBrowserPath = "C:\\прегледач.exe";
    list_.Assign({{"", "http://a.example/", ""}, {"", "C:\\文|C:\\b", ""}});
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_THAT(asked_, ElementsAre("C:\\прегледач.exe", "C:\\文"));
}

TEST_F(RowListTest, WithoutABrowserAUrlHasTheIconOfAPage) {
    iconsExist_ = false;
    list_.Assign({{"", "http://a.example/", ""}});
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_EQ(asked_.back(), "kind of .htm");
}

TEST_F(RowListTest, AMissingFileHasTheIconOfItsKind) {
    iconsExist_ = false;
    list_.Assign({{"", "C:\\gone.txt", ""}});
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_THAT(asked_, ElementsAre("C:\\gone.txt", "kind of C:\\gone.txt"));
    EXPECT_THAT(Drawn("Image"), ElementsAre("Image 2 4 6"));
}

TEST_F(RowListTest, AServerThatDoesNotAnswerIsAskedOnceForAllRows) {
    int waits = 0;
    const auto look = FAKE_CALL(PathFileExistsA, [&](LPCSTR path) -> BOOL {
        if (std::string_view(path).starts_with("\\\\silent\\")) {
            ++waits;
            SetLastError(ERROR_BAD_NETPATH);
            return FALSE;
        }
        return TRUE;
    });
    const std::vector<Row> rows{
        {"", "\\\\silent\\a\\1.txt", ""}, {"", "\\\\silent\\b\\2.txt", ""}, {"", "C:\\c", ""}};
    list_.Assign(rows);
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_EQ(waits, 1);
    EXPECT_THAT(asked_, ElementsAre("kind of \\\\silent\\a\\1.txt", "kind of \\\\silent\\b\\2.txt", "C:\\c"));
    list_.Assign(rows);
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_EQ(waits, 2) << "rows that are read anew ask again";
}

TEST_F(RowListTest, ARowShowsItsIconAndItsNameAndTheSelectedOneItsBar) {
    list_.Assign({{"Ђорђе & 文件", "C:\\a", ""}, {"C:\\b", "C:\\b", ""}});
    list_.Select(1);
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    EXPECT_THAT(Drawn("Image"), ElementsAre("Image 1 4 6", "Image 2 4 32"));
    EXPECT_THAT(Drawn("Text"),
                ElementsAre(HasSubstr("Ђорђе & 文件 in 26 5 196 25"), HasSubstr("C:\\b in 26 31 196 51")));
    EXPECT_THAT(Drawn("Fill"), Contains("Fill 22 30 200 50"));
    EXPECT_THAT(Drawn("Fill"), Not(Contains("Fill 22 4 200 24")));
    EXPECT_THAT(Drawn("Edge"), IsEmpty());
}

/// What a list with the focus looks like; `show` gives Windows' answer to whether marks are to be hidden.
class FocusMarkTest : public RowListTest {
  protected:
    FocusMarkTest() {
        SelectObject(dc_.Get(), bitmap_.Get());
        fakes_.push_back(FAKE_CALL(GetFocus, [this]() -> HWND { return focus_; }));
        fakes_.push_back(
            FAKE_CALL(SendMessageW, [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
                if (message == WM_QUERYUISTATE) return marks_ ? LRESULT{0} : LRESULT{UISF_HIDEFOCUS};
                return ORIGINAL_CALL(SendMessageW)(window, message, wParam, lParam);
            }));
    }
    /// The colours from a point of the left edge inwards, of which `count` are told.
    std::vector<COLORREF> Inwards(const RowList& list, POINT edge, int count) {
        focus_ = list.Handle();
        SendMessageA(list.Handle(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc_.Get()), PRF_CLIENT);
        std::vector<COLORREF> colors;
        for (int step = 0; step < count; ++step)
            colors.push_back(GetPixel(dc_.Get(), edge.x + step, edge.y));
        return colors;
    }

    const COLORREF kMark = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF kInner = GetSysColor(COLOR_HIGHLIGHTTEXT);
    bool marks_ = true;
    HWND focus_ = nullptr;
    const win::WindowDc screen_{nullptr};
    const win::Bitmap bitmap_{CreateCompatibleBitmap(screen_.Get(), kFrameWidth, kFrameHeight)};
    const win::MemoryDc dc_{CreateCompatibleDC(screen_.Get())};
    testkit::RecordedCalls fakes_;
};

TEST_F(FocusMarkTest, IsASolidFrameThatALineSetsOffFromTheBar) {
    list_.Assign(Numbered(3));
    list_.Select(1);
    EXPECT_THAT(Inwards(list_, {22, 40}, 4), ElementsAre(kMark, kMark, kInner, kMark));
    marks_ = false;
    EXPECT_THAT(Inwards(list_, {22, 40}, 4), ElementsAre(kMark, kMark, kMark, kMark));
}

TEST_F(FocusMarkTest, LeavesTheRowsEdge) {
    UseLook(kFramed);
    Other().Assign(Numbered(1));
    EXPECT_THAT(Inwards(Other(), {2, 25}, 4), ElementsAre(kMark, kMark, kInner, kMark));
}

TEST_F(FocusMarkTest, IsSeenInAnEmptyListToo) {
    list_.Assign({});
    const COLORREF ground = GetSysColor(COLOR_WINDOW);
    EXPECT_THAT(Inwards(list_, {21, 15}, 3), ElementsAre(ground, kMark, kMark));
}

TEST_F(RowListTest, AFramedRowShowsItsTargetBelowTheNameInAnEdge) {
    UseLook(kFramed);
    Other().Assign({{"One", "C:\\a", ""}, {"Two", "C:\\b", ""}});
    Paint(Other(), {0, 0, kFrameWidth, 102});
    EXPECT_THAT(Drawn("Text"), ElementsAre(HasSubstr("One in 40 5"), HasSubstr("C:\\a in 40 25"),
                                           HasSubstr("Two in 40 56"), HasSubstr("C:\\b in 40 76")));
    EXPECT_THAT(Drawn("Edge"),
                ElementsAre("Edge 0 0 200 51 type 9 flags 15", "Edge 0 51 200 102 type 9 flags 15"));
    EXPECT_THAT(Drawn("Fill"), Contains("Fill 0 51 200 102")) << "each row on its own colour";
    EXPECT_NE(Other().RowColor(0), Other().RowColor(1));
}

TEST_F(RowListTest, ALongPathLosesItsMiddleAndOtherTextItsEnd) {
    list_.Assign({{"C:\\" + std::string(300, 'a') + "\\b.txt", "", ""}, {std::string(300, 'a'), "", ""}});
    Paint(list_, {0, 0, kFrameWidth, kFrameHeight});
    const auto format = [](UINT cut) {
        return "format " + std::to_string(DT_SINGLELINE | DT_NOPREFIX | cut);
    };
    EXPECT_THAT(Drawn("Text"),
                ElementsAre(HasSubstr(format(DT_PATH_ELLIPSIS)), HasSubstr(format(DT_END_ELLIPSIS))));
}

TEST_F(RowListTest, OnlyWhatIsAskedForIsPaintedAndNothingIsErasedBefore) {
    list_.Assign(Numbered(10));
    Paint(list_, {0, 30, kFrameWidth, 40});
    EXPECT_THAT(Drawn("Text"), ElementsAre(HasSubstr("row 1 ")));
    EXPECT_EQ(SendMessageW(list_.Handle(), WM_ERASEBKGND, 0, 0), 1);
}

TEST(RowLookTest, ScalesEveryLength) {
    const RowLook look = Scaled(kPlain, win::Scale(192));
    EXPECT_EQ(look.firstTop, 8);
    EXPECT_EQ(look.height, 40);
    EXPECT_EQ(look.gap, 12);
    EXPECT_EQ(look.bottom, 10);
    EXPECT_EQ(look.icon.x, 8);
    EXPECT_EQ(look.icon.y, 4);
    EXPECT_EQ(look.name.x, 52);
    EXPECT_EQ(look.name.y, 2);
    EXPECT_EQ(look.targetTop, 0);
    EXPECT_EQ(look.highlightLeft, 44);
    EXPECT_FALSE(look.framed);
    EXPECT_EQ(look.smallStep, 40);
    EXPECT_EQ(look.largeStep, 120);
    EXPECT_EQ(Scaled(kFramed, win::Scale(144)).targetTop, 38);
    EXPECT_TRUE(Scaled(kFramed, win::Scale(144)).framed);
}

}  // namespace
}  // namespace dialogs
