// The panel on a screen with another scale.
#include "win/scale.h"

#include "tests/program/quon_panel.h"
#include "tests/support/screen_scale.h"

namespace testkit {
namespace {

RECT PlaceOnPanel(Window panel, Window child) {
    RECT place = child.Rect();
    MapWindowPoints(nullptr, panel.Handle(), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

TEST(ScaleTest, ThePanelIsDrawnForItsScreensScaleAndNotStretched) {
    ONLY_UNDER_WINE(kOneScale);
    constexpr int kDpi = 144;
    constexpr win::Scale kScale(kDpi);
    const ScreenScale screen(kDpi);
    const ProgramFolder folder;
    folder.WriteIniText(QuonIni{.edge = static_cast<int>(Edge::kRight)}.Text());
    const QuonPanel quon(folder);
    RECT client{};
    GetClientRect(quon.Main().Handle(), &client);
    EXPECT_EQ(client.right, kScale(316));
    EXPECT_EQ(client.bottom, kScale(363));
    const RECT button = PlaceOnPanel(quon.Main(), quon.Button(5));
    EXPECT_EQ(button.left, kScale(5 + 102));
    EXPECT_EQ(button.bottom, kScale(88) + kScale(180));
    const RECT header = PlaceOnPanel(quon.Main(), quon.Header(6));
    EXPECT_EQ(header.right, kScale(5 + 6 * 51));

    quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
    WaitFor("the panel docks with a strip of the scale",
            [&] { return quon.Main().Rect().left == GetSystemMetrics(SM_CXSCREEN) - kScale(4); });
}

}  // namespace
}  // namespace testkit
