// A contrast theme that is switched on or off while a dialog is open.

#include "dialogs/define_tab.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/options.h"
#include "tests/unit/app/every_window.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "tests/unit/dialogs/options_fixture.h"
#include "tests/unit/dialogs/organize_shortcuts_fixture.h"
#include "tests/unit/dialogs/played_theme.h"
#include "win/window.h"

namespace dialogs {
namespace {

using ::testing::Contains, ::testing::Not;

/// The tips of a dialog's controls.
std::vector<HWND> TipsOf(Window dialog) {
    std::vector<HWND> tips;
    for (const HWND window : win::ThreadWindows())
        if (Window(window).Class() == "tooltips_class32" && GetWindow(window, GW_OWNER) == dialog.Handle())
            tips.push_back(window);
    return tips;
}

COLORREF GroundOf(HWND tip) { return static_cast<COLORREF>(SendMessageW(tip, TTM_GETTIPBKCOLOR, 0, 0)); }
COLORREF TextOf(HWND tip) { return static_cast<COLORREF>(SendMessageW(tip, TTM_GETTIPTEXTCOLOR, 0, 0)); }

/// The colour of the brush that a control is to be painted with.
COLORREF BrushFor(Window dialog, UINT message, int control) {
    const win::MemoryDc dc(CreateCompatibleDC(nullptr));
    const auto brush =
        static_cast<LRESULT>(dialog.Send(message, reinterpret_cast<WPARAM>(dc.Get()),
                                         reinterpret_cast<LPARAM>(dialog.Child(control).Handle())));
    LOGBRUSH record{};
    GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof record, &record);
    return record.lbColor;
}

/// The colours of the brushes that are made while something is done.
template <class Act>
std::vector<COLORREF> BrushesOf(Act act) {
    std::vector<COLORREF> colors;
    const auto make = FAKE_CALL(CreateSolidBrush, [&](COLORREF color) {
        colors.push_back(color);
        return ORIGINAL_CALL(CreateSolidBrush)(color);
    });
    act();
    return colors;
}

TEST(DialogColorsTest, TheTipsOfEveryDialogFollow) {
    PlayedTheme theme;
    std::map<std::string, size_t> tips;
    app::ForEveryWindow([&](const std::string& name, Window window) {
        if (window.Class() != "#32770") return;
        // Tips that are made when they are first wanted.
        for (const int id : {frmSettings::chSet + 3, int{frmTabPrep::Check1}})
            if (const HWND control = GetDlgItem(window.Handle(), id)) PointAt(window, Window(control));
        for (int time = 0; time < 2; ++time) {
            theme.Switch(true);
            window.Send(WM_SYSCOLORCHANGE);
            for (const HWND tip : TipsOf(window)) {
                EXPECT_EQ(GroundOf(tip), PlayedTheme::kGround) << name;
                EXPECT_EQ(TextOf(tip), PlayedTheme::kText) << name;
            }
            theme.Switch(false);
            // The setting may be told later than the colours.
            window.Send(time == 0 ? WM_SYSCOLORCHANGE : WM_SETTINGCHANGE);
            for (const HWND tip : TipsOf(window)) {
                EXPECT_EQ(GroundOf(tip), RGB(0xDD, 0xE1, 0xDD)) << name;
                EXPECT_EQ(TextOf(tip), GetSysColor(COLOR_INFOTEXT)) << name;
            }
        }
        tips[name] = TipsOf(window).size();
    });
    EXPECT_EQ(tips["the options"], 2U);
    for (const char* name :
         {"About", "the tab's definition", "the shortcut's editor", "the group's editor on Morning"})
        EXPECT_EQ(tips[name], 1U) << name;
}

using OptionsColorsTest = OptionsFixture;

TEST_F(OptionsColorsTest, TheWarningsFrameFollows) {
    PlayedTheme theme;
    Look([&](Window dialog) {
        const COLORREF plain = BrushFor(dialog, WM_CTLCOLORSTATIC, kWarningFrame);
        EXPECT_EQ(plain, win::PlainColor(win::Color::kWarning));
        theme.Switch(true);
        dialog.Send(WM_SYSCOLORCHANGE);
        EXPECT_EQ(BrushFor(dialog, WM_CTLCOLORSTATIC, kWarningFrame), PlayedTheme::kHighlight);
    });
}

using EditorColorsTest = OrganizeShortcutsTest;

TEST_F(EditorColorsTest, TheBoxesHaveTheRowsOrdinaryColourOnceTheThemeIsGone) {
    PlayedTheme theme;
    theme.Switch(true);
    win::ForgetColors();
    const auto edit = [](Window organiser) {
        Press(organiser, VK_END);
        organiser.PostPress(frmCuts::Command1 + frmCuts::kEdit);
    };
    const auto look = [&](Window editor) {
        theme.Switch(false);
        editor.Send(WM_SYSCOLORCHANGE);
        // The third row is an even one.
        for (const int box : {frmEdit::t1 + frmEdit::kName, frmEdit::t1 + frmEdit::kFile})
            EXPECT_EQ(BrushFor(editor, WM_CTLCOLOREDIT, box), win::PlainColor(win::Color::kEvenRow)) << box;
        editor.Owner().PostPress(frmCuts::Command1 + frmCuts::kQuit);
        editor.Press(frmEdit::c1 + frmEdit::kCancel);
    };
    Organize(kShortcuts, {edit, look});
}

TEST_F(EditorColorsTest, ThePictureIsDrawnAnewOnTheNewGround) {
    PlayedTheme theme;
    const auto look = [&](Window editor) {
        theme.Switch(true);
        EXPECT_THAT(BrushesOf([&] { editor.Send(WM_SYSCOLORCHANGE); }), Contains(PlayedTheme::kGround));
        editor.Press(frmEdit::c1 + frmEdit::kCancel);
    };
    const ModalAnswers user({look});
    frmEdit editor(context_);
    editor.PrepareWindow("Notes", "C:\\windows\\notepad.exe\n", RGB(255, 255, 255));
    editor.Show(owner_.Handle());
}

TEST_F(EditorColorsTest, TheChoosersBoxesAndItsStripFollow) {
    PlayedTheme theme;
    const auto ground = [](Window box) {
        return BrushesOf([&] {
            RedrawWindow(box.Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        });
    };
    const auto look = [&](Window chooser) {
        theme.Switch(true);
        chooser.Send(WM_SYSCOLORCHANGE);
        for (const int id : {int{IcoChooser::p1}, int{IcoChooser::p2}}) {
            EXPECT_THAT(ground(chooser.Child(id)), Contains(PlayedTheme::kGround)) << id;
            EXPECT_THAT(ground(chooser.Child(id)), Not(Contains(RGB(255, 255, 255)))) << id;
        }
        chooser.Post(WM_COMMAND, IDCANCEL);
    };
    const ModalAnswers user({look});
    IcoChooser chooser;
    chooser.ReadIcons("C:\\windows\\notepad.exe");
    ASSERT_GT(chooser.IconCount(), 0);
    chooser.Show(owner_.Handle());
}

}  // namespace
}  // namespace dialogs
