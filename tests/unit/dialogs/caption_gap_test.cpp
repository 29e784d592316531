#include "dialogs/caption_gap.h"

#include "tests/support/unit_test.h"
#include "win/handles.h"

namespace dialogs {
namespace {

constexpr const wchar_t* kCaption = L"Before          after";

HWND Control(HWND parent, const wchar_t* className, const wchar_t* text, RECT place) {
    return CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

/// How wide the first characters of the caption are in the font of a control.
int WidthOf(HWND control, int characters) {
    const win::WindowDc dc(control);
    const win::Selection font(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(dc.Get(), kCaption, characters, &size);
    return size.cx;
}

TEST(CaptionGapTest, TheBoxStandsBetweenTheWordsAndInAHoleOfTheCaption) {
    for (const int mark : {0, 13}) {
        const testkit::HiddenWindow dialog;
        const HWND label = Control(dialog.Handle(), L"STATIC", kCaption, {20, 30, 320, 50});
        const HWND box = Control(dialog.Handle(), L"EDIT", L"", {1, 33, 9, 47});
        PlaceInCaptionGap(label, box, mark);
        RECT place = testkit::Window(box).Rect();
        MapWindowPoints(nullptr, label, reinterpret_cast<POINT*>(&place), 2);
        const int digits = mark == 0 ? 0 : 8;
        EXPECT_GT(place.left, mark + WidthOf(label, 6)) << mark;
        EXPECT_LT(place.left, mark + digits + WidthOf(label, 8)) << mark;
        EXPECT_GT(place.right, mark + WidthOf(label, 14)) << mark;
        EXPECT_LT(place.right, mark + digits + WidthOf(label, 16)) << mark;
        EXPECT_EQ(place.top, 3) << "its own height and place";
        EXPECT_EQ(place.bottom, 17);
        const HRGN region = CreateRectRgn(0, 0, 0, 0);
        EXPECT_EQ(GetWindowRgn(label, region), COMPLEXREGION);
        EXPECT_FALSE(PtInRegion(region, place.left, 10));
        EXPECT_TRUE(PtInRegion(region, place.left - 1, 10));
        DeleteObject(region);
    }
}

}  // namespace
}  // namespace dialogs
