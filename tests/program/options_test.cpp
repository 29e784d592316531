// The options dialog on the whole program: opened from the settings menu, accepted and cancelled, and what
// Quon.ini, the registry and the panel show afterwards.
#include "dialogs/options.h"

#include "tests/program/other_window.h"
#include "tests/program/quon_test.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using ::testing::HasSubstr;

constexpr int kDelay = frmSettings_Text1;
constexpr int kCancelOptions = frmSettings_ltBut1 + 0;
constexpr int kAccept = frmSettings_ltBut1 + 1;
constexpr int kFrame = frmSettings_Picture2;
constexpr COLORREF kRed = RGB(0xE0, 0x10, 0x10);
constexpr char kRunKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

/// What Windows starts under the name "Quon" when it starts itself.
std::optional<std::string> StartEntry() {
    char data[4 * MAX_PATH] = {};
    DWORD size = sizeof data;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, kRunKey, "Quon", RRF_RT_REG_SZ, nullptr, data, &size) != 0)
        return std::nullopt;
    // The stored length counts one NUL.
    EXPECT_EQ(size, std::string(data).size() + 1);
    return data;
}

void RemoveStartEntry() { RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kRunKey, "Quon"); }

constexpr char kRunKeyIsTheUsers[] =
    "A test that is killed meanwhile would have taken what starts with Windows.";

/// Takes away the whole key of what Windows starts, and puts it back at the end.
class RunKeyGone {
  public:
    RunKeyGone() {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kRunKey, 0, KEY_READ, &key), ERROR_SUCCESS);
        for (DWORD index = 0;; ++index) {
            char name[256] = {};
            DWORD length = sizeof name;
            Entry entry;
            entry.data.resize(4096);
            auto size = static_cast<DWORD>(entry.data.size());
            if (RegEnumValueA(key, index, name, &length, nullptr, &entry.type, entry.data.data(), &size) != 0)
                break;
            entry.name = name;
            entry.data.resize(size);
            entries_.push_back(entry);
        }
        RegCloseKey(key);
        EXPECT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRunKey), ERROR_SUCCESS);
    }
    ~RunKeyGone() {
        HKEY key = nullptr;
        RegCreateKeyA(HKEY_LOCAL_MACHINE, kRunKey, &key);
        for (const Entry& entry : entries_)
            RegSetValueExA(key, entry.name.c_str(), 0, entry.type, entry.data.data(),
                           static_cast<DWORD>(entry.data.size()));
        RegCloseKey(key);
    }
    RunKeyGone(const RunKeyGone&) = delete;
    RunKeyGone& operator=(const RunKeyGone&) = delete;

  private:
    struct Entry {
        std::string name;
        DWORD type = 0;
        std::vector<BYTE> data;
    };
    std::vector<Entry> entries_;
};

class OptionsDialogTest : public QuonTest {
  protected:
    OptionsDialogTest() { RemoveStartEntry(); }
    ~OptionsDialogTest() override {
        RemoveStartEntry();
        if (former_)
            RegSetKeyValueA(HKEY_LOCAL_MACHINE, kRunKey, "Quon", REG_SZ, former_->c_str(),
                            static_cast<DWORD>(former_->size() + 1));
    }

    static Window OpenOptions(QuonPanel& quon) {
        quon.OpenSettingsMenu().Choose("Options");
        const Window dialog = quon.Program().WaitForWindow({.title = "Quon settings"});
        WaitFor("the first option has the focus",
                [&] { return dialog.Child(dialogs::frmSettings::chSet + 0).IsFocused(); });
        return dialog;
    }
    static bool IsChecked(Window dialog, int id) { return dialog.Child(id).Send(BM_GETCHECK) == BST_CHECKED; }
    /// Clicked by its place: seen from outside, the transparent frame around a control lies in front of it.
    static void Click(Window dialog, int id) { mouse::Click(dialog.Child(id).Centre()); }
    static void Toggle(Window dialog, int id) {
        const bool before = IsChecked(dialog, id);
        Click(dialog, id);
        WaitFor("the box changes", [&] { return IsChecked(dialog, id) != before; });
    }
    /// Closes the dialog with one of its buttons.
    static void Leave(Window dialog, int button) {
        Click(dialog, button);
        WaitUntilClosed(dialog);
    }

    /// That of a Quon which somebody uses.
    const std::optional<std::string> former_ = StartEntry();
};

TEST_F(OptionsDialogTest, AppliesEverySettingAndQuonIniKeepsIt) {
    QuonPanel quon = Start({});
    const Window dialog = OpenOptions(quon);
    EXPECT_EQ(dialog.Owner(), quon.Main());
    EXPECT_TRUE(dialog.IsTopmost());
    for (const int id : {408, 409, 400, 401, 402, 403, 404, 405, 406, 407})
        Toggle(dialog, id);
    Click(dialog, dialogs::frmSettings::o1 + 2);
    WaitFor("the top edge is chosen", [&] { return IsChecked(dialog, dialogs::frmSettings::o1 + 2); });
    Click(dialog, kDelay);
    WaitFor("the delay has the focus", [&] { return dialog.Child(kDelay).IsFocused(); });
    dialog.Child(kDelay).Send(EM_SETSEL, 0, -1);
    keyboard::Type("1250");
    WaitFor("the delay is typed", [&] { return dialog.Child(kDelay).Text() == "1250"; });
    CaptureScreen().SaveAs("options.bmp");
    Leave(dialog, kAccept);
    EXPECT_EQ(StartEntry(), folder_.FullPath("Quon.exe"));
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), QuonIni().Main()) << "saved before the program ends";
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    const QuonIni expected{.start_with_windows = true,
                           .start_glued = true,
                           .hide_after_launch = true,
                           .taskbar_processes_only = false,
                           .close_button_closes = true,
                           .extensive_tooltips = true,
                           .edge = 2,
                           .single_click = true,
                           .show_collected = true};
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), expected.Main());
    EXPECT_EQ(folder_.IniValue("Settings", "poptf"), "True");
    EXPECT_EQ(folder_.IniValue("Settings", "popdelay"), "1250");
    EXPECT_EQ(folder_.IniValue("Settings", "clickshow"), "True");
}

TEST_F(OptionsDialogTest, AChangeIsLostWithAProgramThatIsKilled) {
    const QuonIni ini{.click_shows = true};
    QuonPanel quon = Start(ini);
    {
        const Window dialog = OpenOptions(quon);
        Toggle(dialog, frmSettings_chSet + 1);
        Leave(dialog, kAccept);
    }
    quon.Settle();
    quon.Program().Terminate();
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
    QuonPanel again(folder_);
    const Window dialog = OpenOptions(again);
    EXPECT_FALSE(IsChecked(dialog, dialogs::frmSettings::chSet + 1));
    Leave(dialog, kCancelOptions);
}

TEST_F(OptionsDialogTest, CancelLeavesEverySettingAndBringsThePanelOut) {
    const QuonIni ini{.start_glued = true, .edge = 3, .pop_delay = 350, .click_shows = true};
    QuonPanel quon = Start(ini);
    quon.WaitUntilDockedAt(Edge::kRight);
    const RECT strip = quon.Main().Rect();
    mouse::Click({strip.left + 1, (strip.top + strip.bottom) / 2});
    quon.WaitUntilOut();
    const Window dialog = OpenOptions(quon);
    quon.WaitUntilDockedAt(Edge::kRight);
    for (const int id : {400, 402, 403, 404, 405, 406, 407, 408})
        Toggle(dialog, id);
    Click(dialog, dialogs::frmSettings::o1 + 1);
    Leave(dialog, kCancelOptions);
    quon.WaitUntilOut();
    EXPECT_FALSE(StartEntry());
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
    EXPECT_EQ(folder_.IniValue("Settings", "popdelay"), "350");
    EXPECT_EQ(folder_.IniValue("Settings", "poptf"), "False");
}

TEST_F(OptionsDialogTest, RemovesTheStartEntryAgain) {
    QuonPanel quon = Start({.start_with_windows = true, .click_shows = true});
    Leave(OpenOptions(quon), kAccept);
    EXPECT_EQ(StartEntry(), folder_.FullPath("Quon.exe"));
    const Window dialog = OpenOptions(quon);
    Toggle(dialog, frmSettings_chSet + 0);
    Leave(dialog, kAccept);
    EXPECT_FALSE(StartEntry());
    // There is nothing left to remove: no error.
    Leave(OpenOptions(quon), kAccept);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
}

TEST_F(OptionsDialogTest, ReportsThatTheStartEntrysKeyCannotBeOpenedAndStaysOpen) {
    ONLY_UNDER_WINE(kRunKeyIsTheUsers);
    QuonPanel quon = Start({.click_shows = true});
    {
        const RunKeyGone gone;
        const Window dialog = OpenOptions(quon);
        Toggle(dialog, frmSettings_chSet + 6);
        Click(dialog, kAccept);
        const Window box = WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
        EXPECT_EQ(box.Child(65535).Text(), "Couldn't make startup entry.");
        EXPECT_EQ(box.Owner(), dialog);
        CaptureScreen().SaveAs("options-entry.bmp");
        keyboard::Press(VK_RETURN);
        WaitUntilClosed(box);
        EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom)) << "the dialog is still open";
        // Adding the entry fails as well, but silently.
        Toggle(dialog, frmSettings_chSet + 0);
        Leave(dialog, kAccept);
        EXPECT_FALSE(StartEntry());
    }
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    const QuonIni expected{.start_with_windows = true, .single_click = true};
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), expected.Main());
}

TEST_F(OptionsDialogTest, TheProgramEndsInSpiteOfTheMessageAboutTheStartEntrysKey) {
    ONLY_UNDER_WINE(kRunKeyIsTheUsers);
    const QuonIni ini{.click_shows = true};
    QuonPanel quon = Start(ini);
    const RunKeyGone gone;
    Click(OpenOptions(quon), kAccept);
    WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
    quon.Main().Post(WM_CLOSE);
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
}

TEST_F(OptionsDialogTest, ReportsADelayThatIsNoNumberAndStaysOpen) {
    QuonPanel quon = Start({.click_shows = true});
    const Window dialog = OpenOptions(quon);
    Toggle(dialog, frmSettings_chSet + 1);
    Toggle(dialog, frmSettings_chSet + 6);
    for (const std::string typed : {"abc", "", "99999999999"}) {
        dialog.Child(kDelay).SetText(typed);
        Click(dialog, kAccept);
        const Window box = WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
        EXPECT_THAT(box.Child(65535).Text(), HasSubstr("\"" + typed + "\""));
        EXPECT_EQ(box.Owner(), dialog);
        CaptureScreen().SaveAs("options-delay.bmp");
        keyboard::Press(VK_RETURN);
        WaitUntilClosed(box);
        WaitFor("the delay has the focus", [&] { return dialog.Child(kDelay).IsFocused(); });
    }
    EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom)) << "the dialog is still open";
    Leave(dialog, kCancelOptions);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    // What was copied before the delay stays, what comes after it is not copied.
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), QuonIni{.start_glued = true}.Main());
    EXPECT_EQ(folder_.IniValue("Settings", "popdelay"), "500");
}

TEST_F(OptionsDialogTest, FramesBothTriggersInRedWhileItWarns) {
    QuonPanel quon = Start({.pop_on_hover = true, .click_shows = true});
    const Window dialog = OpenOptions(quon);
    const RECT place = dialog.Child(kFrame).Rect();
    Toggle(dialog, frmSettings_chSet + 8);
    EXPECT_EQ(CaptureScreen(place).PixelCount(kRed), 0u);
    Click(dialog, dialogs::frmSettings::chSet + 9);
    const MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
    WaitFor("the red frame", [&] { return CaptureScreen(place).PixelCount(kRed) > 100; });
    CaptureScreen().SaveAs("options-warning.bmp");
    // It is a frame, not a cover: what it frames can still be seen.
    EXPECT_GT(CaptureScreen(dialog.Child(dialogs::frmSettings::chSet + 9).Rect()).ColourCount(), 2u);
    EXPECT_EQ(CaptureScreen(dialog.Child(dialogs::frmSettings::chSet + 9).Rect()).PixelCount(kRed), 0u);
    box.ClickButton(0);
    WaitFor("the frame goes", [&] { return CaptureScreen(place).PixelCount(kRed) == 0; });
    EXPECT_FALSE(IsChecked(dialog, dialogs::frmSettings::chSet + 8));
    EXPECT_FALSE(IsChecked(dialog, dialogs::frmSettings::chSet + 9));
    Leave(dialog, kCancelOptions);
}

TEST_F(OptionsDialogTest, ExplainsTheBoxUnderThePointer) {
    QuonPanel quon = Start({.click_shows = true});
    const Window dialog = OpenOptions(quon);
    const ToolTipWatch tips(dialog);
    const auto hover = [&](int id) { Hover(dialog.Child(id)); };
    hover(frmSettings_chSet + 2);
    // Until then the first box may be explained, which has the focus.
    WaitFor("the box's tip", [&] {
        return tips.Wait().text ==
               "If checked, Quon will move to the edge of your screen\nafter you open a file with it.";
    });
    EXPECT_EQ(tips.Wait().title, "Default: checked");
    CaptureScreen().SaveAs("options-tip.bmp");
    hover(frmSettings_chSet + 9);
    WaitFor("the next box's tip",
            [&] { return tips.Wait().text.find("'Hover XXX ms") != std::string::npos; });
    // Between the frames there is only the dialog.
    mouse::MoveTo({dialog.ClientRect().left + 3, dialog.ClientRect().top + 3});
    WaitFor("the tip goes", [&] { return !tips.Shown(); });
    hover(kDelay);
    EXPECT_EQ(tips.Wait().text, "One second = 1000 ms");
    Leave(dialog, kCancelOptions);
}

TEST_F(OptionsDialogTest, TheMenuTheListAndTheCloseButtonFollow) {
    folder_.WriteIniText(QuonIni{.click_shows = true}.Text() + "[Collected]\r\nПрограм=C:\\a.exe\r\n");
    QuonPanel quon(folder_);
    EXPECT_EQ(quon.Shortcuts().Send(CB_GETCOUNT), 1);
    const Window dialog = OpenOptions(quon);
    for (const int id : {404, 405, 407})
        Toggle(dialog, id);
    Leave(dialog, kAccept);
    WaitFor("the list is filled anew", [&] { return quon.Shortcuts().Send(CB_GETCOUNT) == 2; });
    quon.WaitUntilOut();
    {
        const PopupMenu menu = quon.OpenSettingsMenu();
        EXPECT_TRUE(menu.Item("Extensive tooltips").checked);
        menu.Dismiss();
    }
    mouse::Click(quon.CloseButtonPlace());
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
}

TEST_F(OptionsDialogTest, GoesByTheKeyboardAlone) {
    QuonPanel quon = Start({.edge = 9, .click_shows = true});
    {
        const Window dialog = OpenOptions(quon);
        keyboard::Press(VK_SPACE);
        WaitFor("the first box is checked",
                [&] { return IsChecked(dialog, dialogs::frmSettings::chSet + 0); });
        keyboard::Press(VK_ESCAPE);
        WaitUntilClosed(dialog);
    }
    {
        const Window dialog = OpenOptions(quon);
        EXPECT_FALSE(IsChecked(dialog, dialogs::frmSettings::chSet + 0));
        // A move of the mouse over the dialog takes the explanation away.
        mouse::MoveTo(POINT{980, 650});
        dialog.Send(WM_NULL);
        for (int id = 431; id <= 434; ++id)
            EXPECT_FALSE(IsChecked(dialog, id)) << "a number that is no edge marks none";
        // Past the edges: having had the focus is no choice.
        for (const int id : {401, 403, 405, 406, 431, 402}) {
            keyboard::Press(VK_TAB);
            WaitFor("control " + std::to_string(id) + " has the focus",
                    [&] { return dialog.Child(id).IsFocused(); });
            const auto isExplained = [&] {
                const Window tip = FindTopWindow({.class_name = "tooltips_class32", .process_id = quon.Id()});
                return tip.Exists() && tip.Rect().top >= dialog.Child(id).Rect().bottom;
            };
            if (id == 431) continue;
            WaitFor("it is explained", [&] {
                if (HappensWithin(std::chrono::milliseconds(2000), isExplained)) return true;
                // A move of the mouse that Wine tells late has taken the explanation away.
                keyboard::Chord({VK_SHIFT, VK_TAB});
                keyboard::Press(VK_TAB);
                return false;
            });
        }
        keyboard::Press(VK_SPACE);
        WaitFor("that box is checked", [&] { return IsChecked(dialog, dialogs::frmSettings::chSet + 2); });
        keyboard::Press(VK_RETURN);
        WaitUntilClosed(dialog);
    }
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    const QuonIni expected{.hide_after_launch = true, .edge = 9};
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), expected.Main());
}

TEST_F(OptionsDialogTest, ClosesWithTheProgram) {
    const QuonIni ini{.click_shows = true};
    QuonPanel quon = Start(ini);
    Toggle(OpenOptions(quon), frmSettings_chSet + 1);
    quon.Main().Post(WM_CLOSE);
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
}

TEST_F(OptionsDialogTest, AHotKeyBringsThePanelOutAndDocksItFromEverywhere) {
    folder_.WriteIniText(QuonIni{.start_glued = true, .click_shows = true}.Text() + "[Collected]\r\n");
    {
        QuonPanel quon(folder_);
        quon.ClickTrayIcon();
        quon.WaitUntilOut();
        const Window dialog = OpenOptions(quon);
        Click(dialog, dialogs::frmSettings::HotKey);
        WaitFor("the hot key has the focus",
                [&] { return dialog.Child(dialogs::frmSettings::HotKey).IsFocused(); });
        keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
        WaitFor("the keys are taken", [&] {
            return LOBYTE(dialog.Child(dialogs::frmSettings::HotKey).Send(HKM_GETHOTKEY)) == 'J';
        });
        CaptureScreen().SaveAs("options-hot-key.bmp");
        Leave(dialog, kAccept);
        quon.WaitUntilOut();
        EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    }
    EXPECT_EQ(folder_.IniValue("Settings", "hotkey"), "1610");
    QuonPanel quon(folder_);
    EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom));
    const OtherWindow typing({100, 100, 300, 200});
    typing.AsWindow().Activate();
    for (int round = 0; round < 2; ++round) {
        keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
        quon.WaitUntilOut();
        const Window edit = quon.Shortcuts().Descendants().front();
        WaitFor("the drop-down has the focus",
                [&] { return edit.IsFocused() && quon.Main().IsForeground(); });
        keyboard::Type(round == 0 ? "a" : "b");
        WaitFor("typing replaces the text", [&] { return edit.Text() == (round == 0 ? "a" : "b"); });
        keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
        quon.WaitUntilDockedAt(Edge::kBottom);
    }
    keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
    WaitFor("the panel comes out", [&] { return quon.IsOut() && quon.Main().IsForeground(); });
    quon.OpenButtonMenu(1);
    keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
    WaitFor("the menu closes", [&] { return PopupMenu::OpenCount(quon.Id()) == 0; });
    quon.WaitUntilDockedAt(Edge::kBottom);

    keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
    WaitFor("the panel comes out", [&] { return quon.IsOut() && quon.Main().IsForeground(); });
    quon.OpenButtonMenu(1).Choose("Add file to button");
    const Window picker = quon.Program().WaitForWindow({.title = "Select file"});
    WaitFor("the picker comes up in front", [&] { return picker.IsForeground(); });
    typing.AsWindow().Activate();
    keyboard::Chord({VK_CONTROL, VK_MENU, 'J'});
    WaitFor("the picker is in front", [&] { return picker.IsForeground(); });
    EXPECT_FALSE(quon.Main().IsTopmost());
    EXPECT_FALSE(quon.Main().IsEnabled());
    picker.Post(WM_COMMAND, IDCANCEL);
    WaitFor("the panel is topmost again", [&] { return quon.Main().IsTopmost() && quon.Main().IsEnabled(); });
}

TEST_F(OptionsDialogTest, SaysThatAHotKeyIsTaken) {
    ASSERT_TRUE(RegisterHotKey(nullptr, 1, MOD_CONTROL | MOD_ALT, 'K'));
    QuonPanel quon = Start({.click_shows = true});
    const Window dialog = OpenOptions(quon);
    dialog.Child(dialogs::frmSettings::HotKey)
        .Send(HKM_SETHOTKEY, MAKEWORD('K', HOTKEYF_CONTROL | HOTKEYF_ALT));
    Click(dialog, kAccept);
    const MessageBoxWindow note = MessageBoxWindow::Wait(quon.Id());
    EXPECT_EQ(note.Text(), "Another program uses these keys already.\nPlease press others, or none.");
    note.ClickButton(0);
    WaitFor("the hot key has the focus",
            [&] { return dialog.Child(dialogs::frmSettings::HotKey).IsFocused(); });
    keyboard::Press(VK_BACK);
    WaitFor("none is chosen",
            [&] { return dialog.Child(dialogs::frmSettings::HotKey).Send(HKM_GETHOTKEY) == 0; });
    Leave(dialog, kAccept);
    EXPECT_TRUE(UnregisterHotKey(nullptr, 1));
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_FALSE(folder_.IniValue("Settings", "hotkey").has_value());
}

}  // namespace
}  // namespace testkit
