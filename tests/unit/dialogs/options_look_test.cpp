#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "res/resource.h"
#include "tests/unit/dialogs/options_fixture.h"

namespace dialogs {
namespace {

using config::Settings;
using ::testing::ElementsAre, ::testing::IsSupersetOf;
using testkit::ModalAnswers, testkit::Window;

using OptionsLookTest = OptionsFixture;

/// A line of the log: the control's number, and what is told of it.
std::string Tip(int control, const std::string& told) { return std::to_string(control) + " " + told; }

TEST_F(OptionsLookTest, ShowsItsCaptions) {
    const std::vector<std::pair<int, std::string>> captions{
        {frmSettings::chSet + 0, "Start on Windows startup"},
        {frmSettings::chSet + 1, "Start glued to the edge of the screen (choose edge below)"},
        {frmSettings::chSet + 2, "Hide to the edge of the screen when execute a shortcut"},
        {frmSettings::chSet + 3,
         "When making shortcut of active processes, choose only ones that appear in taskbar"},
        {frmSettings::chSet + 4, "Clicking the close button of the main window closes Quon"},
        {frmSettings::chSet + 5, "Show extensive tooltips for buttons"},
        {frmSettings::chSet + 6, "Open files with single click on buttons"},
        {frmSettings::chSet + 7, "Show collected shortcuts in shortcut list"},
        {frmSettings::chSet + 8, "Hover                 ms before showing Quon"},
        {frmSettings::chSet + 9, "Clicking the window shows Quon"},
        {frmSettings::Text1, "500"},
        {frmSettings::o1 + 1, "Left"},
        {frmSettings::o1 + 2, "Top"},
        {frmSettings::o1 + 3, "Right"},
        {frmSettings::o1 + 4, "Bottom"},
        {kCancelButton, "Cancel"},
        {kAcceptButton, "Accept"}};
    Look([&](Window dialog) {
        EXPECT_EQ(dialog.Text(), "Quon settings");
        for (const auto& [id, caption] : captions) {
            EXPECT_EQ(dialog.Child(id).Text(), caption) << id;
            EXPECT_TRUE(dialog.Child(id).IsVisible()) << id;
        }
        std::vector<std::string> texts;
        for (const Window child : dialog.Descendants())
            texts.push_back(child.Text());
        EXPECT_THAT(
            texts,
            IsSupersetOf(
                {"General", "Position", "Window related", "Other",
                 "Choose edge where you want Quon to reside:", "When glued to the edge of the screen:",
                 "Move mouse over settings to see explanation.", "Press F1 to see more detailed help"}));
    });
}

TEST_F(OptionsLookTest, GroupsItsBoxesInTheirFrames) {
    const std::vector<std::pair<std::string, std::vector<int>>> frames{
        {"General",
         {frmSettings::chSet + 0, frmSettings::chSet + 1, frmSettings::chSet + 3, frmSettings::chSet + 5,
          frmSettings::chSet + 6}},
        {"Position",
         {frmSettings::o1 + 1, frmSettings::o1 + 2, frmSettings::o1 + 3, frmSettings::o1 + 4,
          frmSettings::chSet + 2}},
        {"Window related",
         {frmSettings::chSet + 8, frmSettings::Text1, frmSettings::chSet + 9, frmSettings::chSet + 4,
          frmSettings::HotKey}},
        {"Other", {frmSettings::chSet + 7}}};
    Look([&](Window dialog) {
        const std::vector<Window> children = dialog.Descendants();
        for (const auto& [title, members] : frames) {
            const auto frame = std::find_if(children.begin(), children.end(),
                                            [&](Window child) { return child.Text() == title; });
            ASSERT_NE(frame, children.end()) << title;
            for (const int id : members) {
                RECT shared{};
                const RECT outer = frame->Rect();
                const RECT inner = dialog.Child(id).Rect();
                IntersectRect(&shared, &outer, &inner);
                EXPECT_NE(EqualRect(&shared, &inner), 0) << title << " " << id;
            }
        }
    });
}

/// Hides the focus marks, as for who uses the mouse, or shows them.
testkit::RecordedCall MarksHidden(const bool& hidden) {
    return FAKE_CALL(SendMessageW, [&hidden](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_QUERYUISTATE) return ORIGINAL_CALL(SendMessageW)(window, message, wParam, lParam);
        return hidden ? LRESULT{UISF_HIDEFOCUS} : LRESULT{0};
    });
}

constexpr bool kHidden = true;
constexpr bool kShown = false;

TEST_F(OptionsLookTest, ExplainsEachBoxByItsTip) {
    const testkit::RecordedCall marks = MarksHidden(kHidden);
    const std::vector<std::string> tips{
        Tip(frmSettings::chSet + 0,
            "Default: unchecked|If checked, Quon will start when you turn on your computer."),
        Tip(frmSettings::chSet + 1,
            "Default: unchecked|If checked, Quon will start on the edge of your screen."),
        Tip(frmSettings::chSet + 2,
            "Default: checked|If checked, Quon will move to the edge of your screen\n"
            "after you open a file with it."),
        Tip(frmSettings::chSet + 3,
            "Default: checked|If checked, Quon will show only processes that appear in taskbar.\n"
            "Otherwise, it will show all processes (even ones that have no window attached to it \n"
            "- usefull if program is in tray."),
        Tip(frmSettings::chSet + 4,
            "Default: unchecked|Means that Quon will move to the edge of the screen, and not close down."),
        Tip(frmSettings::chSet + 5,
            "Default: checked|If checked, buttons in menu will show titles of menu buttons\n"
            "with all the files associated to buttons in appropriate group."),
        Tip(frmSettings::chSet + 6,
            "Default: unchecked|If checked, you will need only one click to open the files\n"
            "assigned to buttons."),
        Tip(frmSettings::chSet + 7,
            "Default: checked|If checked, Quon will include applications with file associations\n"
            "in the list of shortcuts."),
        Tip(frmSettings::chSet + 8,
            "Default: checked|Show how much time Quon will wait before poping-up.\n"
            "If unchecked, Quon won't pop-up while you hover mouse over its window."),
        Tip(frmSettings::chSet + 9,
            "Default: checked|If checked, Quon will pop-up even if 'Hover XXX ms before poping-up' is "
            "disabled.")};
    TipLog log;
    Look([&](Window dialog) {
        EXPECT_THAT(log.Tips(), ElementsAre(Tip(frmSettings::Text1, "|One second = 1000 ms")));
        log.Clear();
        for (int index = 0; index < 10; ++index)
            PointAt(dialog, dialog.Child(frmSettings::chSet + index));
        EXPECT_EQ(log.Tips(), tips);
        PointAt(dialog, dialog.Child(frmSettings::HotKey));
        EXPECT_EQ(
            log.Tips().back(),
            Tip(frmSettings::HotKey,
                "Default: none|Press the keys that bring Quon out, ready for typing a name, wherever you "
                "are.\nPressed again, they send it back to the edge. Backspace clears them."));
        EXPECT_EQ(TipLog::WindowCount(), 2) << "the box's own and one for all options";
    });
    EXPECT_EQ(TipLog::WindowCount(), 0);
}

TEST_F(OptionsLookTest, MakesATipAnewOnlyForAnotherBoxOrAfterTheBackground) {
    const testkit::RecordedCall marks = MarksHidden(kHidden);
    TipLog log;
    Look([&](Window dialog) {
        log.Clear();
        for (int time = 0; time < 3; ++time)
            PointAt(dialog, dialog.Child(frmSettings::chSet + 3));
        EXPECT_EQ(log.Tips().size(), 1u);
        PointAt(dialog, dialog.Child(kAcceptButton));
        PointAt(dialog, dialog.Child(frmSettings::chSet + 3));
        EXPECT_EQ(log.Tips().size(), 1u);
        PointAt(dialog, dialog);
        EXPECT_EQ(TipLog::WindowCount(), 1) << "released";
        PointAt(dialog, dialog.Child(frmSettings::chSet + 3));
        EXPECT_EQ(log.Tips().size(), 2u);
    });
}

/// The tip that stands there now; an empty Window when none does.
Window ShownTip() {
    const auto tips =
        testkit::FindTopWindows({.class_name = "tooltips_class32", .process_id = GetCurrentProcessId()});
    return tips.empty() ? Window() : tips.front();
}

/// Moves the focus as the Tab key does.
void GoTo(Window dialog, int id) {
    dialog.Send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Child(id).Handle()), TRUE);
}

TEST_F(OptionsLookTest, ExplainsTheControlThatTheKeyboardComesTo) {
    const testkit::RecordedCall marks = MarksHidden(kShown);
    TipLog log;
    Look([&](Window dialog) {
        ASSERT_TRUE(ShownTip()) << "the keyboard is at the first control from the beginning";
        EXPECT_EQ(std::stoi(log.Tips().back()), frmSettings::chSet + 0);
        for (const int id : {frmSettings::chSet + 6, int{frmSettings::HotKey}, int{frmSettings::Text1}}) {
            GoTo(dialog, id);
            ASSERT_TRUE(ShownTip()) << id;
            EXPECT_EQ(std::stoi(log.Tips().back()), id);
            EXPECT_GE(ShownTip().Rect().top, dialog.Child(id).Rect().bottom) << "the control stays in sight";
        }
        EXPECT_EQ(log.Tips().back(), Tip(frmSettings::Text1, "|One second = 1000 ms"));
        GoTo(dialog, frmSettings::o1 + 1);
        EXPECT_FALSE(ShownTip()) << "there is nothing to explain";
        GoTo(dialog, frmSettings::chSet + 0);
        EXPECT_EQ(log.Tips().back(),
                  Tip(frmSettings::chSet + 0,
                      "Default: unchecked|If checked, Quon will start when you turn on your computer."));
        dialog.Send(WM_TIMER, 1);
        EXPECT_FALSE(ShownTip()) << "it has stood long enough";
    });
    EXPECT_EQ(TipLog::WindowCount(), 0);
}

TEST_F(OptionsLookTest, TheExplanationOfTheFocusMakesWayForThePointerButNotForOneThatRests) {
    POINT pointer{500, 500};
    const auto place = FAKE_CALL(GetCursorPos, [&](LPPOINT point) -> WINBOOL {
        *point = pointer;
        return TRUE;
    });
    const testkit::RecordedCall marks = MarksHidden(kShown);
    Look([&](Window dialog) {
        GoTo(dialog, frmSettings::chSet + 6);
        PointAt(dialog, dialog);
        EXPECT_TRUE(ShownTip());
        ++pointer.x;
        PointAt(dialog, dialog);
        EXPECT_FALSE(ShownTip());
    });
}

TEST_F(OptionsLookTest, ExplainsNothingByTheFocusToWhoUsesTheMouse) {
    bool hidden = true;
    SHORT button = 0;
    const testkit::RecordedCall marks = MarksHidden(hidden);
    const auto key = FAKE_CALL(GetKeyState, [&](int which) -> SHORT {
        return which == VK_LBUTTON ? button : ORIGINAL_CALL(GetKeyState)(which);
    });
    Look([&](Window dialog) {
        EXPECT_FALSE(ShownTip()) << "opened by the mouse";
        GoTo(dialog, frmSettings::chSet + 6);
        EXPECT_FALSE(ShownTip()) << "no marks are shown";
        hidden = false;
        button = -1;
        GoTo(dialog, frmSettings::chSet + 5);
        EXPECT_FALSE(ShownTip()) << "the focus came by a press";
    });
}

constexpr char kNote[] =
    "Please note:\n\nSince you cleared both settings for poping-up Quon, (framed in red), the only way to "
    "call it is clicking on the tray icon.";

TEST_F(OptionsLookTest, WarnsWithTheRedFrameWhenBothTriggersAreCleared) {
    HWND dialog = nullptr;
    const auto frame = [&] { return Window(dialog).Child(kWarningFrame); };
    const auto clear = [&](Window window) {
        dialog = window.Handle();
        EXPECT_FALSE(frame().IsVisible());
        window.Press(frmSettings::chSet + 9);
        EXPECT_FALSE(frame().IsVisible()) << "the note is closed";
        EXPECT_FALSE(IsChecked(window, frmSettings::chSet + 8));
        EXPECT_FALSE(IsChecked(window, frmSettings::chSet + 9)) << "the boxes stay cleared";
        // Any box asks again.
        window.Press(frmSettings::chSet + 7);
        window.Press(kCancelButton);
    };
    const auto note = [&](Window box) {
        EXPECT_EQ(box.Text(), "Message from Quon");
        EXPECT_EQ(box.Child(frmMsg::l1).Text(), kNote);
        EXPECT_EQ(box.Child(frmMsg::b1 + 0).Text(), "Accept");
        EXPECT_FALSE(box.Child(frmMsg::b1 + 1).IsVisible());
        EXPECT_EQ(box.Owner().Handle(), dialog);
        EXPECT_TRUE(frame().IsVisible());
        box.Press(frmMsg::b1 + 0);
    };
    ModalAnswers user({clear, note, note});
    Open();
}

TEST_F(OptionsLookTest, WarnsWhicheverTriggerIsClearedLast) {
    for (const int last : {frmSettings::chSet + 8, frmSettings::chSet + 9}) {
        Settings.PopOnHover = Settings.ClickShows = true;
        const auto clear = [&](Window dialog) {
            dialog.Press(2 * frmSettings::chSet + 17 - last);
            dialog.Press(last);
            dialog.Press(kCancelButton);
        };
        const auto note = Press(frmMsg::b1 + 0);
        ModalAnswers user({clear, note});
        Open();
        EXPECT_EQ(user.Used(), 2u) << last;
    }
}

TEST_F(OptionsLookTest, FramesBothTriggersAndNothingElse) {
    Look([](Window dialog) {
        const RECT frame = dialog.Child(kWarningFrame).Rect();
        for (const int id : {408, 420, 409}) {
            RECT shared{};
            const RECT inner = dialog.Child(id).Rect();
            IntersectRect(&shared, &frame, &inner);
            EXPECT_NE(EqualRect(&shared, &inner), 0) << id;
        }
        for (int id = 400; id < 408; ++id) {
            RECT shared{};
            const RECT other = dialog.Child(id).Rect();
            EXPECT_EQ(IntersectRect(&shared, &frame, &other), 0) << id;
        }
    });
}

TEST_F(OptionsLookTest, DoesNotWarnWhileOneTriggerIsLeftOrTheBoxesAreFilled) {
    Settings.ClickShows = false;
    // Both are cleared from the beginning: only a click warns.
    Open(Press(kCancelButton));
    Settings.PopOnHover = true;
    Look([](Window dialog) {
        for (const int id : {400, 409, 408, 408, 409})
            dialog.Press(id);
        EXPECT_FALSE(dialog.Child(kWarningFrame).IsVisible());
    });
}

TEST_F(OptionsLookTest, GoesByTheKeyboard) {
    Open([](Window dialog) {
        EXPECT_EQ(GetFocus(), dialog.Child(frmSettings::chSet + 0).Handle());
        EXPECT_THAT(TabOrder(dialog, frmSettings::chSet + 0),
                    ElementsAre(frmSettings::chSet + 0, frmSettings::chSet + 1, frmSettings::chSet + 3,
                                frmSettings::chSet + 5, frmSettings::chSet + 6, frmSettings::o1 + 1,
                                frmSettings::chSet + 2, frmSettings::HotKey, frmSettings::chSet + 8,
                                frmSettings::Text1, frmSettings::chSet + 9, frmSettings::chSet + 4,
                                frmSettings::chSet + 7, frmSettings::ltBut1 + 1, frmSettings::ltBut1 + 0));
        PressInFocus(VK_RETURN);
    });
    EXPECT_EQ(host_.log.Count("close setting"), 1u) << "Enter accepts";
}

TEST_F(OptionsLookTest, PutsTheDelayIntoTheGapOfItsCaption) {
    Look([](Window dialog) {
        const RECT option = dialog.Child(frmSettings::chSet + 8).Rect();
        const RECT box = dialog.Child(kDelayBox).Rect();
        EXPECT_GT(box.left, option.left + 13);
        EXPECT_GT(box.right - box.left, 30);
        const HRGN region = CreateRectRgn(0, 0, 0, 0);
        EXPECT_EQ(GetWindowRgn(dialog.Child(frmSettings::chSet + 8).Handle(), region), COMPLEXREGION);
        const int middle = (box.top + box.bottom) / 2 - option.top;
        EXPECT_FALSE(PtInRegion(region, box.left - option.left, middle)) << "the box lies in a hole";
        EXPECT_FALSE(PtInRegion(region, box.right - 1 - option.left, middle));
        EXPECT_TRUE(PtInRegion(region, box.left - 2 - option.left, middle));
        EXPECT_TRUE(PtInRegion(region, box.right + 2 - option.left, middle));
        DeleteObject(region);
    });
}

TEST_F(OptionsLookTest, TheDelayStaysInItsGapOnAScreenOfAnotherScale) {
    UINT dpi = 96;
    const auto scale = FAKE_CALL(GetDpiForWindow, [&](HWND) { return dpi; });
    Look([&](Window dialog) {
        const RECT before = dialog.Child(kDelayBox).Rect();
        const LONG corner = dialog.Child(frmSettings::chSet + 8).Rect().left;
        dpi = 192;
        const RECT suggested = dialog.Rect();
        dialog.Send(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
        const RECT after = dialog.Child(kDelayBox).Rect();
        const LONG moved = dialog.Child(frmSettings::chSet + 8).Rect().left - corner;
        // The mark before the caption is twice as wide; the font is the same.
        EXPECT_EQ(after.left - moved, before.left + 13);
        EXPECT_EQ(after.right - moved, before.right + 13);
    });
}

}  // namespace
}  // namespace dialogs
