#include "dialogs/shortcut_name.h"

#include "tests/support/unit_test.h"
#include "win/handles.h"

namespace dialogs {
namespace {

constexpr int kBox = 700;
constexpr int kOtherBox = 701;
constexpr int kFirstLabel = 710;
constexpr int kWarning = 713;
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kUntouched = RGB(1, 2, 3);

/// The controls of an editor on a window that is never shown.
class ShortcutNameTest : public ::testing::Test {
  protected:
    ShortcutNameTest() {
        Control(L"EDIT", kBox);
        Control(L"EDIT", kOtherBox);
        for (int id = kFirstLabel; id <= kWarning; ++id)
            Control(L"STATIC", id);
        box_.Attach(host_.Handle(), kBox, kFirstLabel, kWarning);
    }

    void Control(const wchar_t* className, int id) {
        CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 80, 20, host_.Handle(),
                        // NOLINTNEXTLINE(performance-no-int-to-ptr): a child's identifier.
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                        nullptr);
    }
    HWND Item(int id) const { return GetDlgItem(host_.Handle(), id); }
    bool WarningShown() const { return (GetWindowLongPtrW(Item(kWarning), GWL_STYLE) & WS_VISIBLE) != 0; }
    /// The text colour that a control would be painted with.
    COLORREF ColorOf(int id) const {
        const win::MemoryDc dc(CreateCompatibleDC(nullptr));
        SetTextColor(dc.Get(), kUntouched);
        box_.ColorText(Item(id), dc.Get());
        return GetTextColor(dc.Get());
    }
    /// What the box holds after a user has typed this.
    void Type(const std::string& name) {
        testkit::Window(Item(kBox)).SetText(name);
        EXPECT_TRUE(box_.OnCommand(kBox, EN_CHANGE));
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow host_;
    ShortcutNameBox box_;
};

TEST_F(ShortcutNameTest, ATakenNameIsRedBesideTheWarningAndAFreeOneBlue) {
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\n");
    for (const std::string name : {"Notes", "Note", "NOTES", "Notes2", "notes"}) {
        Type(name);
        const bool taken = name.size() == 5;
        EXPECT_EQ(WarningShown(), taken) << name;
        EXPECT_EQ(ColorOf(kBox), taken ? kRed : kBlue) << name;
    }
}

TEST_F(ShortcutNameTest, CaseIsIgnoredInEveryScript) {
    folder_.WriteIniText("[Cuts]\r\nЂорђе=C:\\a\r\nÉté=C:\\b\r\n文件=C:\\c\r\n");
    EXPECT_EQ(ShortcutExists("ЂОРЂЕ"), true);
    EXPECT_EQ(ShortcutExists("ÉTÉ"), true);
    EXPECT_EQ(ShortcutExists("文件"), true);
    EXPECT_EQ(ShortcutExists("Ete"), false);
    EXPECT_EQ(ShortcutExists("文"), false);
}

TEST_F(ShortcutNameTest, ANameIsTakenTooWhenItsStoredFormIs) {
    folder_.WriteIniText("[Cuts]\r\na-b=C:\\a\r\nEmpty=C:\\b\r\n");
    EXPECT_EQ(ShortcutExists("a|b"), true);
    EXPECT_EQ(ShortcutExists("  A=B "), true);
    EXPECT_EQ(ShortcutExists("Empty"), true);
    EXPECT_EQ(ShortcutExists("ab"), false);
}

TEST_F(ShortcutNameTest, OtherSectionsEmptyOnesAndLinesWithoutATargetTakeNoName) {
    folder_.WriteIniText("[Settings]\r\n");
    EXPECT_EQ(ShortcutExists("Notes"), false);
    folder_.WriteIniText("[Switch]\r\nNotes=/x\r\n[Cuts]\r\nNotes\r\n");
    EXPECT_EQ(ShortcutExists("Notes"), false);
    EXPECT_EQ(ShortcutExists(""), false);
}

TEST_F(ShortcutNameTest, AFileThatCannotBeReadSaysNothingOfAName) {
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\n");
    Type("Notes");
    const testkit::HeldFile held(folder_.IniPath());
    EXPECT_EQ(ShortcutExists("Notes"), std::nullopt);
    Type("Notes2");
    EXPECT_TRUE(WarningShown()) << "it stays as it was";
}

TEST_F(ShortcutNameTest, TakesNoLongerNameThanCanBeStored) {
    box_.SetName("Notes");
    Type(std::string(540, 'x'));
    Type(std::string(541, 'x'));
    EXPECT_EQ(box_.Name(), std::string(540, 'x'));
}

TEST_F(ShortcutNameTest, EachChangeIsTestedAgainstTheFileAsItIsThen) {
    Type("Notes");
    EXPECT_FALSE(WarningShown());
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\n");
    Type("Notes");
    EXPECT_TRUE(WarningShown());
    box_.SetName("Free");
    EXPECT_FALSE(WarningShown());
    EXPECT_EQ(box_.Name(), "Free");
    box_.SetName("notes");
    EXPECT_TRUE(WarningShown());
}

TEST_F(ShortcutNameTest, TheBoxIsRepaintedInItsNewColour) {
    std::vector<HWND> painted;
    const testkit::RecordedCall fake =
        WATCH_CALL(InvalidateRect, [&](HWND window, const RECT*, WINBOOL) { painted.push_back(window); });
    Type("x");
    EXPECT_EQ(painted, std::vector<HWND>{Item(kBox)});
}

TEST_F(ShortcutNameTest, OnlyTheNameBoxIsColoured) {
    Type("Notes");
    EXPECT_EQ(ColorOf(kBox), kBlue);
    EXPECT_EQ(ColorOf(kOtherBox), kUntouched);
}

TEST_F(ShortcutNameTest, AClickOnAnyLabelSelectsTheWholeNameAndFocusesIt) {
    for (int id = kFirstLabel; id <= kWarning; ++id) {
        box_.SetName("Ђорђе 文");
        SendMessageW(Item(kBox), EM_SETSEL, 2, 2);
        HWND focus = nullptr;
        const testkit::RecordedCall fake = WATCH_CALL(SetFocus, [&](HWND window) { focus = window; });
        EXPECT_TRUE(box_.OnCommand(id, STN_CLICKED));
        EXPECT_EQ(testkit::Window(Item(kBox)).Selection(), MAKELONG(0, 7));
        EXPECT_EQ(focus, Item(kBox));
    }
}

TEST_F(ShortcutNameTest, OtherNotificationsAreLeftToTheDialog) {
    EXPECT_FALSE(box_.OnCommand(kBox, EN_SETFOCUS));
    EXPECT_FALSE(box_.OnCommand(kFirstLabel, STN_DBLCLK));
    EXPECT_FALSE(box_.OnCommand(kFirstLabel - 1, 0));
    EXPECT_FALSE(box_.OnCommand(kWarning + 1, 0));
    EXPECT_FALSE(box_.OnCommand(kOtherBox, EN_CHANGE));
}

TEST_F(ShortcutNameTest, TheFirstLabelCarriesTheTip) {
    HWND tip = nullptr;
    std::string text;
    const testkit::RecordedCall fake =
        WATCH_CALL(SendMessageA, [&](HWND, UINT message, WPARAM, LPARAM lParam) {
            if (message == TTM_ADDTOOLA) {
                const auto* record = reinterpret_cast<const TTTOOLINFOA*>(lParam);
                tip = record->hwnd;
                text = record->lpszText;
            }
        });
    ShortcutNameBox other;
    other.Attach(host_.Handle(), kBox, kFirstLabel, kWarning);
    EXPECT_EQ(tip, Item(kFirstLabel));
    EXPECT_EQ(text, "Click to select all text");
}

}  // namespace
}  // namespace dialogs
