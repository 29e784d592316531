#include "win/dialog_template.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <string>
#include <vector>

#include "res/resource.h"
#include "tests/support/caption_room.h"
#include "tests/support/recorded_call.h"
#include "win/handles.h"
#include "win/scale.h"
#include "win/text.h"
#include "win/window.h"

namespace win {
namespace {

constexpr int kDialogType = 5;  // RT_DIALOG

std::vector<WORD> Stored(int id) {
    const HRSRC resource =
        FindResourceW(ModuleInstance(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(kDialogType));
    const auto* words = static_cast<const WORD*>(LockResource(LoadResource(ModuleInstance(), resource)));
    return {words, words + SizeofResource(ModuleInstance(), resource) / sizeof(WORD)};
}

INT_PTR CALLBACK Ignore(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

constexpr SIZE kMuchRoom{10000, 10000};

struct Made {
    SIZE client{};
    std::vector<int> controls;
    LONG width = 0;
    std::wstring face;
    LONG height = 0;
};

Made Make(const std::vector<WORD>& words) {
    const HWND dialog = CreateDialogIndirectParamW(
        ModuleInstance(), reinterpret_cast<const DLGTEMPLATE*>(words.data()), nullptr, &Ignore, 0);
    Made made;
    if (dialog == nullptr) return made;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        made.controls.push_back(GetDlgCtrlID(child));
    RECT client{};
    GetClientRect(dialog, &client);
    made.client = {client.right, client.bottom};
    made.width = client.right;
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)), sizeof font, &font);
    made.face = font.lfFaceName;
    made.height = font.lfHeight;
    DestroyWindow(dialog);
    return made;
}

TEST(DialogTemplateTest, KeepsEverythingButTheFont) {
    for (const int id : {IDD_MESSAGE, IDD_OPTIONS, IDD_ORGANIZE_SHORTCUTS, IDD_EDIT_SHORTCUT, IDD_EDIT_GROUP,
                         IDD_DEFINE_TAB, IDD_ICON_CHOOSER}) {
        const std::vector<WORD> stored = Stored(id);
        const Made before = Make(stored);
        ASSERT_FALSE(before.controls.empty()) << id;
        // A face with an odd and one with an even number of letters: what follows is aligned.
        for (const wchar_t* face : {L"Tahoma", L"Marlett"}) {
            const Made after = Make(WithFont(stored.data(), stored.size(), face, 18, FW_NORMAL));
            EXPECT_EQ(after.controls, before.controls) << id;
            EXPECT_EQ(after.face, face);
            EXPECT_EQ(after.height, -24);
        }
        const Made large = Make(WithFont(stored.data(), stored.size(), before.face, 18, FW_NORMAL));
        EXPECT_GT(large.width, before.width * 3 / 2) << id;
    }
}

TEST(DialogTemplateTest, LeavesAloneWhatIsNoSuchTemplate) {
    const std::vector<WORD> stored = Stored(IDD_OPTIONS);
    EXPECT_TRUE(WithFont(stored.data(), 5, L"Tahoma", 9, FW_NORMAL).empty());
    EXPECT_TRUE(WithFont(stored.data(), 20, L"Tahoma", 9, FW_NORMAL).empty());
    std::vector<WORD> plain = stored;
    plain[1] = 0;
    EXPECT_TRUE(WithFont(plain.data(), plain.size(), L"Tahoma", 9, FW_NORMAL).empty());
    std::vector<WORD> fontless = stored;
    fontless[6] = static_cast<WORD>(fontless[6] & ~DS_SETFONT);
    EXPECT_TRUE(WithFont(fontless.data(), fontless.size(), L"Tahoma", 9, FW_NORMAL).empty());
    EXPECT_TRUE(TemplateInMessageFont(4711, kMuchRoom, 96).words.empty());
}

TEST(DialogTemplateTest, TakesTheSystemsMessageFontInItsSize) {
    const testkit::RecordedCall ask =
        FAKE_CALL(SystemParametersInfoForDpi, [](UINT, UINT, PVOID record, UINT, UINT dpi) -> WINBOOL {
            EXPECT_EQ(dpi, 96U);
            auto& font = static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont;
            font.lfHeight = -24;
            std::memcpy(font.lfFaceName, L"Tahoma", sizeof L"Tahoma");
            return TRUE;
        });
    const Made made = Make(TemplateInMessageFont(IDD_DEFINE_TAB, kMuchRoom, 96).words);
    EXPECT_EQ(made.face, L"Tahoma");
    EXPECT_EQ(made.height, -24);
}

TEST(DialogTemplateTest, HasSmallerTextWhereTheDialogWouldNotFitOnItsScreen) {
    int height = -27;
    const testkit::RecordedCall ask =
        FAKE_CALL(SystemParametersInfoForDpi, [&](UINT, UINT, PVOID record, UINT, UINT) -> WINBOOL {
            auto& font = static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont;
            font.lfHeight = height;
            std::memcpy(font.lfFaceName, L"Tahoma", sizeof L"Tahoma");
            return TRUE;
        });
    for (const SIZE room : {SIZE{1300, 700}, {1000, 560}, {3000, 400}}) {
        const Made made = Make(TemplateInMessageFont(IDD_OPTIONS, room, 96).words);
        EXPECT_LE(made.client.cx, room.cx);
        EXPECT_LE(made.client.cy, room.cy);
        // As large as it can be: the next larger text would not fit any more.
        EXPECT_TRUE(made.client.cx > room.cx * 85 / 100 || made.client.cy > room.cy * 85 / 100);
    }
    EXPECT_EQ(Make(TemplateInMessageFont(IDD_OPTIONS, kMuchRoom, 96).words).height, -27);
    // A screen that is too small for any text leaves one that can be read.
    EXPECT_EQ(Make(TemplateInMessageFont(IDD_OPTIONS, {10, 10}, 96).words).height, -11);
    height = -12;
    EXPECT_EQ(Make(TemplateInMessageFont(IDD_OPTIONS, {1018, 568}, 96).words).height, -12);
}

TEST(DialogTemplateTest, FitsOnTheSmallestScreensInTextOfTheUsualSize) {
    struct Screen {
        int width;
        int height;
        int percent;
        // A dialog unit is a quarter of the mean width of a letter and an eighth of its height. These are
        // those of Windows' message font, Segoe UI of 9 points, which grow by steps of their own.
        SIZE letter;
    };
    // In words of a template: width and height in dialog units.
    constexpr size_t kWidth = 11;
    constexpr size_t kHeight = 12;
    // Pixels of 96 dots per inch.
    constexpr int kFrame = 3;
    constexpr int kCaption = 23;
    constexpr int kTaskbar = 48;
    constexpr int kTextHeight = 12;
    constexpr int kPoints = 9;
    SIZE letter{};
    int textHeight = 0;
    const testkit::RecordedCall ask =
        FAKE_CALL(SystemParametersInfoForDpi, [](UINT, UINT, PVOID record, UINT, UINT) -> WINBOOL {
            static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont.lfHeight = -kTextHeight;
            return TRUE;
        });
    const testkit::RecordedCall measure =
        FAKE_CALL(GetTextExtentPoint32W, [&](HDC dc, LPCWSTR, int length, LPSIZE size) -> WINBOOL {
            LOGFONTW font{};
            GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof font, &font);
            EXPECT_EQ(font.lfHeight, -textHeight) << "no other size has to be tried";
            *size = {letter.cx * length, letter.cy};
            return TRUE;
        });
    for (const Screen& screen : {Screen{1024, 600, 100, {7, 15}},
                                 {1366, 768, 125, {8, 20}},
                                 {1366, 768, 150, {10, 25}},
                                 {1920, 1080, 200, {13, 32}}}) {
        letter = screen.letter;
        textHeight = kTextHeight * screen.percent / 100;
        const auto scaled = [&](int length) { return (length * screen.percent + 99) / 100; };
        const SIZE room{screen.width - scaled(2 * kFrame),
                        screen.height - scaled(2 * kFrame + kCaption + kTaskbar)};
        for (const int id :
             {IDD_OPTIONS, IDD_ORGANIZE_SHORTCUTS, IDD_EDIT_SHORTCUT, IDD_EDIT_GROUP, IDD_DEFINE_TAB}) {
            const std::vector<WORD> stored = Stored(id);
            EXPECT_LE(MulDiv(stored[kWidth], letter.cx, 4), room.cx) << id << " at " << screen.percent;
            EXPECT_LE(MulDiv(stored[kHeight], letter.cy, 8), room.cy) << id << " at " << screen.percent;
            const int dpi = kPlainDpi * screen.percent / 100;
            EXPECT_EQ(TemplateInMessageFont(id, room, dpi).points, kPoints) << id << " at " << screen.percent;
        }
    }
}

TEST(DialogTemplateTest, HasRoomForEveryCaptionAtEverySizeOfTheText) {
    for (const int id :
         {IDD_OPTIONS, IDD_ORGANIZE_SHORTCUTS, IDD_EDIT_SHORTCUT, IDD_EDIT_GROUP, IDD_DEFINE_TAB}) {
        const std::vector<WORD> stored = Stored(id);
        for (const wchar_t* face : {L"Tahoma", L"Segoe UI"}) {
            // 9 points are 100 %, 20 are 225 %; twice as many are that on a screen with a scale of 200 %.
            for (const int points : {8, 9, 10, 11, 12, 14, 16, 18, 20, 27, 40}) {
                const std::vector<WORD> words =
                    WithFont(stored.data(), stored.size(), face, static_cast<WORD>(points), FW_NORMAL);
                const HWND dialog = CreateDialogIndirectParamW(
                    ModuleInstance(), reinterpret_cast<const DLGTEMPLATE*>(words.data()), nullptr, &Ignore,
                    0);
                ASSERT_NE(dialog, nullptr);
                for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
                     child = GetWindow(child, GW_HWNDNEXT))
                    EXPECT_EQ(testkit::MissingRoom(child), 0)
                        << id << ", " << points << " points: " << WindowText(child);
                DestroyWindow(dialog);
            }
        }
    }
}

}  // namespace
}  // namespace win
