#include "app/hot_key.h"

#include "config/settings.h"
#include "res/resource.h"
#include "tests/unit/app/panel_harness.h"
#include "tests/unit/app/shell_question.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

constexpr std::uint16_t Word(unsigned key, unsigned held) {
    return static_cast<std::uint16_t>(MAKEWORD(key, held));
}

TEST(KeyCombinationTest, TurnsTheControlsFlagsIntoThoseOfTheHotKey) {
    const struct {
        unsigned held;
        unsigned modifiers;
    } rows[] = {{HOTKEYF_CONTROL, MOD_CONTROL},
                {HOTKEYF_ALT, MOD_ALT},
                {HOTKEYF_CONTROL | HOTKEYF_SHIFT, MOD_CONTROL | MOD_SHIFT},
                {HOTKEYF_ALT | HOTKEYF_SHIFT, MOD_ALT | MOD_SHIFT},
                {HOTKEYF_CONTROL | HOTKEYF_ALT, MOD_CONTROL | MOD_ALT},
                {HOTKEYF_CONTROL | HOTKEYF_EXT, MOD_CONTROL}};
    for (const auto& [held, modifiers] : rows)
        EXPECT_EQ(CombinationOf(Word('Q', held)), (KeyCombination{modifiers, 'Q'})) << held;
}

TEST(KeyCombinationTest, AKeyAloneOrWithShiftAndModifiersAloneAreNone) {
    for (const std::uint16_t word : {Word('Q', 0), Word('Q', HOTKEYF_SHIFT), Word('Q', HOTKEYF_EXT),
                                     Word(0, HOTKEYF_CONTROL), Word(0, 0)})
        EXPECT_EQ(CombinationOf(word), std::nullopt) << word;
}

class HotKeyTest : public ::testing::Test {
  protected:
    HotKeyTest() {
        fakes_.push_back(
            FAKE_CALL(RegisterHotKey, [this](HWND window, int id, UINT modifiers, UINT key) -> BOOL {
                EXPECT_EQ(window, kWindow);
                log_.Add("register", id, modifiers, static_cast<int>(key));
                return taken_ ? FALSE : TRUE;
            }));
        fakes_.push_back(FAKE_CALL(UnregisterHotKey, [this](HWND window, int id) -> BOOL {
            EXPECT_EQ(window, kWindow);
            log_.Add("let go", id);
            return TRUE;
        }));
        hotKey_.Attach(kWindow);
    }

    inline static const HWND kWindow = reinterpret_cast<HWND>(0x1234);
    testkit::CallLog log_;
    testkit::RecordedCalls fakes_;
    bool taken_ = false;
    HotKey hotKey_;
};

TEST_F(HotKeyTest, IsRegisteredWithoutRepeats) {
    EXPECT_TRUE(hotKey_.Set(Word('Q', HOTKEYF_CONTROL | HOTKEYF_ALT)));
    EXPECT_THAT(log_.Lines(), ElementsAre("register 2 16387 81"));
    EXPECT_TRUE(hotKey_.IsMine(2));
    EXPECT_FALSE(hotKey_.IsMine(1));
}

TEST_F(HotKeyTest, ANewOneIsTakenBeforeTheFormerIsLetGo) {
    hotKey_.Set(Word('Q', HOTKEYF_CONTROL));
    log_.Clear();
    EXPECT_TRUE(hotKey_.Set(Word('W', HOTKEYF_CONTROL)));
    EXPECT_THAT(log_.Lines(), ElementsAre("register 1 16386 87", "let go 2"));
    EXPECT_TRUE(hotKey_.IsMine(1));
    log_.Clear();
    EXPECT_TRUE(hotKey_.Set(Word('W', HOTKEYF_CONTROL))) << "the same again";
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(HotKeyTest, ATakenOneLeavesTheFormer) {
    hotKey_.Set(Word('Q', HOTKEYF_CONTROL));
    log_.Clear();
    taken_ = true;
    EXPECT_FALSE(hotKey_.Set(Word('W', HOTKEYF_CONTROL)));
    EXPECT_THAT(log_.Lines(), ElementsAre("register 1 16386 87"));
    EXPECT_TRUE(hotKey_.IsMine(2));
    EXPECT_TRUE(hotKey_.Set(Word('Q', HOTKEYF_CONTROL)));
}

TEST_F(HotKeyTest, NoneLetsTheFormerGo) {
    EXPECT_TRUE(hotKey_.Set(0));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    hotKey_.Set(Word('Q', HOTKEYF_CONTROL));
    log_.Clear();
    EXPECT_TRUE(hotKey_.Set(0));
    EXPECT_THAT(log_.Lines(), ElementsAre("let go 2"));
    EXPECT_FALSE(hotKey_.IsMine(2));
}

/// A panel whose hot key is Ctrl+Alt+Q.
class PanelHotKeyTest : public ::testing::Test {
  protected:
    PanelHotKeyTest() {
        fakes_.push_back(FAKE_CALL(RegisterHotKey, [this](HWND, int id, UINT modifiers, UINT key) -> BOOL {
            log_.Add("register", id, modifiers, static_cast<int>(key));
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(UnregisterHotKey, [this](HWND, int id) -> BOOL {
            log_.Add("let go", id);
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(SetForegroundWindow, [this](HWND window) -> BOOL {
            foreground_ = window;
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return foreground_; }));
        panel_.Load();
    }
    void Press() { panel_.Window().Send(WM_HOTKEY, 2, MAKELPARAM(MOD_CONTROL | MOD_ALT, 'Q')); }

    testkit::CallLog log_;
    testkit::RecordedCalls fakes_;
    HWND foreground_ = nullptr;
    PanelHarness panel_{std::string(kPlainSettings) + "hotkey=1617\r\n"};
};

TEST_F(PanelHotKeyTest, IsReadAndRegisteredAtTheStart) {
    EXPECT_EQ(config::Settings.HotKey, 1617);
    EXPECT_THAT(log_.Lines(), ElementsAre("register 2 16387 81"));
}

TEST_F(PanelHotKeyTest, BringsThePanelOutWithTheFocusInTheDropDownAndDocksIt) {
    Press();
    EXPECT_EQ(foreground_, panel_.Window().Handle());
    EXPECT_EQ(testkit::Window(GetFocus()).Parent(), panel_.Window().Child(IDC_SHORTCUTS));
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(panel_.Log().Count("timer on 500"), 1u) << "docked";
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(panel_.Log().Count("place"), 1u) << "out again";
    EXPECT_EQ(panel_.Log().Count("timer on"), 0u);
}

TEST_F(PanelHotKeyTest, AShownPanelBehindAnotherProgramComesToTheFront) {
    Press();
    foreground_ = GetDesktopWindow();
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(foreground_, panel_.Window().Handle());
    EXPECT_EQ(panel_.Log().Count("timer on"), 0u);
}

TEST_F(PanelHotKeyTest, LeavesAPanelAloneThatTakesNoInput) {
    EnableWindow(panel_.Window().Handle(), FALSE);
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(panel_.Log().Count("place"), 0u);
    EXPECT_EQ(foreground_, panel_.Window().Handle()) << "nothing else waits for the user";
    EnableWindow(panel_.Window().Handle(), TRUE);
}

TEST_F(PanelHotKeyTest, BringsAPickerToTheFrontThatNoneOfOursOwns) {
    const HWND picker =
        CreateWindowExW(0, L"#32770", L"Open", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const auto visible = FAKE_CALL(IsWindowVisible, [&](HWND window) -> BOOL {
        return window == picker ? TRUE : ORIGINAL_CALL(IsWindowVisible)(window);
    });
    EnableWindow(panel_.Window().Handle(), FALSE);
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(foreground_, picker);
    EXPECT_EQ(panel_.Log().Count("place"), 0u);
    EnableWindow(panel_.Window().Handle(), TRUE);
    DestroyWindow(picker);
}

TEST_F(PanelHotKeyTest, BringsTheShellsQuestionAboutALaunchToTheFrontAsTheIconDoes) {
    ShellQuestion question;
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(foreground_, question.Handle());
    EXPECT_EQ(panel_.Log().Count("place"), 0u);
    question.Close();
    Press();
    EXPECT_EQ(foreground_, panel_.Window().Handle());
    EXPECT_EQ(panel_.Log().Count("place"), 1u);
}

TEST_F(PanelHotKeyTest, ClosesAnOpenMenuFirst) {
    int closed = 0;
    const auto end = FAKE_CALL(EndMenu, [&]() -> BOOL {
        EXPECT_EQ(panel_.Log().Count("place"), 0u) << "the menu would stay over the docked panel";
        ++closed;
        return TRUE;
    });
    panel_.Log().Clear();
    Press();
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(panel_.Log().Count("place"), 1u);
}

TEST_F(PanelHotKeyTest, AnotherProgramsNumberIsNotMeant) {
    panel_.Log().Clear();
    panel_.Window().Send(WM_HOTKEY, 7, 0);
    EXPECT_EQ(panel_.Log().Count("place"), 0u);
}

TEST_F(PanelHotKeyTest, IsLetGoWithTheWindow) {
    DestroyWindow(panel_.Window().Handle());
    EXPECT_EQ(log_.Count("let go 2"), 1u);
}

}  // namespace
}  // namespace app
