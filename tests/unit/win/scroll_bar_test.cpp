#include "win/scroll_bar.h"

#include "tests/support/annotations.h"
#include "tests/support/unit_test.h"

namespace win {
namespace {

class ScrollBarTest : public ::testing::Test {
  protected:
    ScrollBarTest() { bar_.Attach(control_, {.small = 20, .large = 60, .page = 100}); }

    testkit::HiddenWindow host_;
    HWND control_ = CreateWindowExW(0, L"SCROLLBAR", L"", WS_CHILD | WS_VISIBLE | SBS_VERT, 0, 0, 17, 100,
                                    host_.Handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    ScrollBar bar_;
};

TEST_F(ScrollBarTest, TakesNoInputUntilThereIsAWayToGo) {
    EXPECT_FALSE(IsWindowEnabled(control_));
    bar_.SetMaximum(1);
    EXPECT_TRUE(IsWindowEnabled(control_));
    bar_.SetMaximum(0);
    EXPECT_FALSE(IsWindowEnabled(control_));
    bar_.SetMaximum(-7);
    EXPECT_EQ(bar_.Maximum(), 0);
}

TEST_F(ScrollBarTest, IsCalledByItsTextFromTheFirstQuestionUntilItGoes) {
    const testkit::Annotations told;
    SetWindowTextW(control_, L"Pages, up and down");
    SendMessageW(control_, WM_GETOBJECT, 0, OBJID_WINDOW);
    EXPECT_EQ(told.Count(), 0U) << "that was not about what is inside";
    SendMessageW(control_, WM_GETOBJECT, 0, OBJID_CLIENT);
    EXPECT_EQ(told.NameOf(control_), "Pages, up and down");
    ScrollBar().Attach(control_, {});
    DestroyWindow(control_);
    EXPECT_EQ(told.Count(), 0U);
}

TEST_F(ScrollBarTest, AsksForNoHelpUntilAScreenReaderDoes) {
    bool asked = false;
    const auto create = FAKE_CALL(CoCreateInstance, [&](REFCLSID, LPUNKNOWN, DWORD, REFIID, LPVOID* object) {
        asked = true;
        *object = nullptr;
        return E_FAIL;
    });
    DestroyWindow(control_);
    EXPECT_FALSE(asked);
}

TEST_F(ScrollBarTest, TheControlShowsRangeAndValue) {
    bar_.SetMaximum(100000);
    bar_.SetValue(70000);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    ASSERT_TRUE(GetScrollInfo(control_, SB_CTL, &info));
    EXPECT_EQ(info.nMin, 0);
    EXPECT_EQ(info.nMax - static_cast<int>(info.nPage) + 1, 100000);
    EXPECT_EQ(info.nPos, 70000);
}

TEST_F(ScrollBarTest, TheThumbTakesAsMuchOfTheShaftAsIsSeenOfTheWhole) {
    const auto record = [&] {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_ALL;
        GetScrollInfo(control_, SB_CTL, &info);
        return info;
    };
    // 400 of which 100 are seen.
    bar_.SetMaximum(300);
    EXPECT_EQ(record().nPage * 4, static_cast<UINT>(record().nMax - record().nMin + 1));
    // Windows lets the thumb come to the last value and no farther.
    bar_.SetValue(300);
    EXPECT_EQ(record().nPos, 300);
    SetScrollPos(control_, SB_CTL, 301, FALSE);
    EXPECT_EQ(record().nPos, 300);
    bar_.SetMaximum(0);
    EXPECT_EQ(record().nMax, 0);
    EXPECT_EQ(record().nPage, 0U);
}

TEST_F(ScrollBarTest, TheValueStaysBetweenTheEnds) {
    bar_.SetMaximum(100);
    bar_.SetValue(101);
    EXPECT_EQ(bar_.Value(), 100);
    bar_.SetValue(-1);
    EXPECT_EQ(bar_.Value(), 0);
    bar_.SetValue(90);
    bar_.SetMaximum(50);
    EXPECT_EQ(bar_.Value(), 50);
    EXPECT_EQ(GetScrollPos(control_, SB_CTL), 50);
}

TEST_F(ScrollBarTest, EachCodeMovesItByItsStep) {
    bar_.SetMaximum(1000);
    bar_.SetValue(500);
    const auto act = [&](int code) {
        bar_.Act(code);
        return bar_.Value();
    };
    EXPECT_EQ(act(SB_LINEDOWN), 520);
    EXPECT_EQ(act(SB_LINEUP), 500);
    EXPECT_EQ(act(SB_PAGEDOWN), 560);
    EXPECT_EQ(act(SB_PAGEUP), 500);
    EXPECT_EQ(act(SB_ENDSCROLL), 500);
    EXPECT_EQ(act(SB_BOTTOM), 1000);
    EXPECT_EQ(act(SB_LINEDOWN), 1000);
    EXPECT_EQ(act(SB_TOP), 0);
}

TEST_F(ScrollBarTest, TheThumbIsFollowedBeyondSixteenBits) {
    bar_.SetMaximum(200000);
    int place = 100000;
    const testkit::RecordedCall fake = FAKE_CALL(GetScrollInfo, [&](HWND, int, LPSCROLLINFO info) -> WINBOOL {
        EXPECT_EQ(info->fMask, UINT{SIF_TRACKPOS});
        info->nTrackPos = place;
        return TRUE;
    });
    bar_.Act(SB_THUMBTRACK);
    EXPECT_EQ(bar_.Value(), 100000);
    place = 150000;
    bar_.Act(SB_THUMBPOSITION);
    EXPECT_EQ(bar_.Value(), 150000);
}

}  // namespace
}  // namespace win
