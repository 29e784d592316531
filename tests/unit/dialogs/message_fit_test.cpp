// Messages, About and the icon chooser on small screens with large text.

#include <cstdlib>

#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "tests/support/unit_test.h"
#include "win/geometry.h"
#include "win/scale.h"

namespace dialogs {
namespace {

using testkit::ModalAnswers, testkit::Window;

struct Screen {
    LONG width;
    LONG height;
    int dpi;
};

constexpr Screen kScreens[]{{1024, 600, 96}, {1366, 768, 144}, {1920, 1080, 192}};

/// The height of the message font at 100 %; some systems have a smaller one than 12.
constexpr int kUsualHeight = 11;

/// A screen with a taskbar, and a size of the text.
class PlayedScreen {
  public:
    PlayedScreen(const Screen& screen, int textPercent)
        : area_{0, 0, screen.width, screen.height - MulDiv(40, screen.dpi, win::kPlainDpi)} {
        const auto dpi = static_cast<UINT>(screen.dpi);
        fakes_.push_back(FAKE_CALL(GetDpiForWindow, [dpi](HWND) { return dpi; }));
        fakes_.push_back(FAKE_CALL(GetMonitorInfoW, [this, screen](HMONITOR, LPMONITORINFO info) -> WINBOOL {
            info->rcMonitor = {0, 0, screen.width, screen.height};
            info->rcWork = area_;
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(
            SystemParametersInfoForDpi,
            [textPercent](UINT what, UINT size, PVOID record, UINT flags, UINT asked) -> WINBOOL {
                if (ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, record, flags, asked) == FALSE)
                    return FALSE;
                auto& font = static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont;
                font.lfHeight = -MulDiv(12 * static_cast<int>(asked), textPercent, 100 * win::kPlainDpi);
                return TRUE;
            }));
        win::ForgetTextSize();
    }
    ~PlayedScreen() {
        fakes_.clear();
        win::ForgetTextSize();
    }
    PlayedScreen(const PlayedScreen&) = delete;
    PlayedScreen& operator=(const PlayedScreen&) = delete;

    bool Holds(const RECT& place) const {
        return place.left >= area_.left && place.top >= area_.top && place.right <= area_.right &&
               place.bottom <= area_.bottom;
    }
    LONG Height() const { return area_.bottom; }

  private:
    RECT area_;
    testkit::RecordedCalls fakes_;
};

int TextHeightIn(Window control) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(control.Send(WM_GETFONT)), sizeof font, &font);
    return std::abs(static_cast<int>(font.lfHeight));
}

std::string Lines(int count) {
    std::string text = "Line";
    for (int line = 1; line < count; ++line)
        text += "\r\nline";
    return text;
}

TEST(MessageFitTest, AboutLiesOnEveryScreenInEveryTextSize) {
    for (const Screen& screen : kScreens)
        for (const int percent : {100, 150, 225}) {
            const PlayedScreen played(screen, percent);
            ModalAnswers user({[&](Window box) {
                EXPECT_TRUE(played.Holds(box.Rect())) << screen.width << " " << percent;
                EXPECT_TRUE(played.Holds(box.Child(frmMsg::b2).Rect())) << screen.width << " " << percent;
                EXPECT_GE(TextHeightIn(box.Child(frmMsg::b2)), kUsualHeight * screen.dpi / 96);
                box.Press(frmMsg::b2);
            }});
            frmMsg().AboutQuon();
        }
}

TEST(MessageFitTest, AboutHasTheLargestTextThatFits) {
    const PlayedScreen played(kScreens[1], 225);
    ModalAnswers user({[&](Window box) {
        // Five percent more would not fit any more.
        EXPECT_GT(win::Height(box.Rect()), played.Height() * 9 / 10);
        EXPECT_GT(TextHeightIn(box.Child(frmMsg::b2)), 18 * 3 / 2);
        EXPECT_GT(TextHeightIn(box.Child(frmMsg::VersionLabel)), 18 * 3 / 2);
        box.Press(frmMsg::b2);
    }});
    frmMsg().AboutQuon();
}

TEST(MessageFitTest, AMessageLiesOnEveryScreenInEveryTextSizeHoweverLong) {
    for (const Screen& screen : kScreens)
        for (const int percent : {100, 225})
            for (const int lines : {1, 15, 200}) {
                const PlayedScreen played(screen, percent);
                ModalAnswers user({[&](Window box) {
                    EXPECT_TRUE(played.Holds(box.Rect()))
                        << screen.width << " " << percent << " " << lines << " lines";
                    for (const int id : {frmMsg::b1 + 0, frmMsg::b1 + 2, int{frmMsg::Text1}})
                        EXPECT_TRUE(played.Holds(box.Child(id).Rect())) << id;
                    EXPECT_GE(TextHeightIn(box.Child(frmMsg::b1)), kUsualHeight * screen.dpi / 96);
                    box.Press(frmMsg::b1 + 2);
                }});
                ShowMessage(Lines(lines), 3, "Create group", "Replace", "Cancel", true);
            }
}

TEST(MessageFitTest, ALongMessageHasSmallerTextRatherThanAnEndThatNobodySees) {
    const PlayedScreen played(kScreens[1], 225);
    ModalAnswers user({[](Window box) {
                           EXPECT_NEAR(TextHeightIn(box.Child(frmMsg::l1)), 18 * 225 / 100, 1);
                           box.Press(frmMsg::b1);
                       },
                       [](Window box) {
                           const Window text = box.Child(frmMsg::l1);
                           const int height = TextHeightIn(text);
                           EXPECT_LT(height, 18 * 225 / 100);
                           EXPECT_GT(height, 18);
                           EXPECT_GE(win::Height(text.Rect()), 12 * height);
                           box.Press(frmMsg::b1);
                       }});
    ShowNote(Lines(1));
    ShowNote(Lines(12));
}

TEST(MessageFitTest, TheChooserLiesOnEveryScreenInEveryTextSize) {
    for (const Screen& screen : kScreens)
        for (const int percent : {100, 150, 225}) {
            const PlayedScreen played(screen, percent);
            const testkit::HiddenWindow owner;
            ModalAnswers user({[&](Window chooser) {
                EXPECT_TRUE(played.Holds(chooser.Rect())) << screen.width << " " << percent;
                chooser.Post(WM_COMMAND, IDCANCEL);
            }});
            IcoChooser chooser;
            chooser.ReadIcons("C:\\windows\\notepad.exe");
            chooser.Show(owner.Handle());
        }
}

}  // namespace
}  // namespace dialogs
