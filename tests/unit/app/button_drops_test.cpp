#include "app/button_drops.h"

#include "config/settings.h"
#include "tests/support/data_object.h"
#include "tests/unit/app/panel_parts.h"
#include "win/com.h"

namespace app {
namespace {

class ButtonDropsPlaceTest : public PanelParts {
  protected:
    ButtonDropsPlaceTest() {
        fakes_.push_back(FAKE_CALL(RegisterDragDrop, [this](HWND window, LPDROPTARGET target) -> HRESULT {
            targets_[window] = target;
            return S_OK;
        }));
        fakes_.push_back(ANSWER_CALL(RevokeDragDrop, S_OK));
        drops_.Attach(host_.Handle());
    }
    ~ButtonDropsPlaceTest() override { drops_.Detach(); }

    void Drop(HWND window, std::string_view url) {
        testkit::DataObject data;
        data.OfferText(url);
        DWORD effect = DROPEFFECT_COPY;
        targets_.at(window)->DragEnter(&data, 0, {}, &effect);
        targets_.at(window)->Drop(&data, 0, {}, &effect);
    }

    const win::OleThread ole_;
    std::map<HWND, IDropTarget*> targets_;
    ButtonDrops drops_{state_, buttons_};
};

TEST_F(ButtonDropsPlaceTest, LandOnTheButtonTheyWereDroppedOnWhateverTabIsShownByThen) {
    Load("[Settings]\r\nMain=1\r\n");
    Drop(Button(3), "http://a/one.htm");
    SendMessageW(Button(5), WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
    Drop(buttons_.HoverPicture().Handle(), "http://a/five.htm");
    tabs_.b1_MouseUp(2, win::MouseButton::kLeft, 0, 0, 0);
    drops_.Act();
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "one|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "15"), "five|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "23").value_or(""), "");
    EXPECT_TRUE(state_.Button(3).IsFree()) << "the shown button of that number";
    tabs_.b1_MouseUp(1, win::MouseButton::kLeft, 0, 0, 0);
    EXPECT_EQ(state_.Button(3).Naziv, "one");
}

TEST_F(ButtonDropsPlaceTest, ActOnEachOnce) {
    Load("[Settings]\r\nMain=1\r\n");
    Drop(Button(3), "http://a/one.htm");
    drops_.Act();
    Drop(Button(4), "http://a/two.htm");
    drops_.Act();
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "one|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "14"), "two|0");
}

}  // namespace
}  // namespace app
