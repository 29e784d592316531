// All windows at a scale that the system itself has, and windows of two scales side by side. Nothing is
// played here: this program is started again for each scale, because a process keeps the one it finds.

#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/caption_room.h"
#include "tests/support/running_program.h"
#include "tests/support/screen_scale.h"
#include "tests/unit/app/every_window.h"
#include "tests/unit/app/panel_harness.h"
#include "win/scale.h"

namespace app {
namespace {

using testkit::ModalAnswers, testkit::Window;

/// What the system takes windows for that this thread makes meanwhile.
class ThreadAwareness {
  public:
    explicit ThreadAwareness(DPI_AWARENESS_CONTEXT context) : before_(SetThreadDpiAwarenessContext(context)) {
        EXPECT_NE(before_, nullptr);
    }
    ~ThreadAwareness() { SetThreadDpiAwarenessContext(before_); }
    ThreadAwareness(const ThreadAwareness&) = delete;
    ThreadAwareness& operator=(const ThreadAwareness&) = delete;

  private:
    DPI_AWARENESS_CONTEXT before_;
};

/// What a question looks like, in the pixels of its own scale.
struct Look {
    int dpi = 0;
    LONG width = 0;
    LONG button_height = 0;
    LONG text_height = 0;
};

Look LookOfQuestion() {
    Look look;
    const ModalAnswers user({[&](Window box) {
        const Window button = box.Child(dialogs::frmMsg::b1 + 0);
        look.dpi = win::Scale::Of(box.Handle()).Dpi();
        look.width = box.Rect().right - box.Rect().left;
        look.button_height = button.Rect().bottom - button.Rect().top;
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(button.Send(WM_GETFONT)), sizeof font, &font);
        look.text_height = -font.lfHeight;
        button.Send(BM_CLICK);
    }});
    dialogs::ShowMessage("Go on?", 1, "OK");
    return look;
}

/// The scale that AllOfThisHoldsAtEveryScale started this program for.
constexpr const char* kExpectedDpi = "QUON_EXPECTED_DPI";

class RealScaleTest : public ::testing::Test {
  protected:
    RealScaleTest() {
        const std::string expected = testkit::EnvironmentValue(kExpectedDpi);
        if (!expected.empty()) {
            EXPECT_EQ(std::to_string(GetDpiForSystem()), expected);
        }
    }
};

TEST_F(RealScaleTest, HereEveryCaptionHasRoom) {
    ForEveryWindow([](const std::string& name, Window window) {
        for (const Window control : window.Descendants()) {
            if ((control.Style() & WS_VISIBLE) == 0) continue;
            EXPECT_EQ(testkit::MissingRoom(control.Handle()), 0)
                << name << " at " << GetDpiForSystem() << " dpi: " << control.Describe();
        }
    });
}

TEST_F(RealScaleTest, HereEachWindowHasTheScaleOfItsOwn) {
    const int system = static_cast<int>(GetDpiForSystem());
    const auto expect = [](const Look& look, int dpi) {
        const win::Scale scale(dpi, win::TextPercent());
        EXPECT_EQ(look.dpi, dpi);
        EXPECT_EQ(look.button_height, scale.FromTwips(390));
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0,
                                   static_cast<UINT>(dpi));
        EXPECT_EQ(look.text_height, -metrics.lfMessageFont.lfHeight) << dpi;
    };
    PanelHarness panel;
    panel.Load();
    const RECT before = panel.Window().Rect();
    expect(LookOfQuestion(), system);
    const Look usual = LookOfQuestion();
    {
        // As on a second screen that has the plain scale.
        const ThreadAwareness unaware(DPI_AWARENESS_CONTEXT_UNAWARE);
        expect(LookOfQuestion(), win::kPlainDpi);
        EXPECT_EQ(win::Scale::Of(panel.Window().Handle()).Dpi(), system) << "the panel's is another";
    }
    const Look again = LookOfQuestion();
    expect(again, system);
    EXPECT_EQ(again.width, usual.width);
    const RECT after = panel.Window().Rect();
    EXPECT_TRUE(EqualRect(&before, &after)) << "the panel stays as it is";
}

TEST_F(RealScaleTest, AllOfThisHoldsAtEveryScale) {
    ONLY_UNDER_WINE(testkit::kOneScale);
    char self[MAX_PATH] = {};
    ASSERT_NE(GetModuleFileNameA(nullptr, self, MAX_PATH), 0u);
    for (const DWORD dpi : {120u, 144u, 192u}) {
        const testkit::ScreenScale screen(dpi);
        testkit::RunningProgram again(self, {.arguments = "--gtest_filter=RealScaleTest.Here*",
                                             .environment = {{kExpectedDpi, std::to_string(dpi)}}});
        EXPECT_EQ(again.WaitForExit(), 0u) << dpi;
    }
}

}  // namespace
}  // namespace app
