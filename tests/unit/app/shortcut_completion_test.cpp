// Names are completed while they are typed.

#include "tests/unit/app/shortcut_box_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class ShortcutCompletionTest : public ShortcutBoxFixture {
  protected:
    ShortcutCompletionTest() {
        folder_.WriteIniText(
            "[Cuts]\r\nCalc=1\r\nNotepad=2\r\nNotes 2=3\r\nČitač č=4\r\nЖаба=5\r\n日本語の本=6\r\n");
        box_.Refill();
    }

    /// A key goes down and types a character, if any.
    void Down(WPARAM key, wchar_t character = 0) {
        Key(WM_KEYDOWN, key);
        if (character != 0) SendMessageW(Edit(), WM_CHAR, character, 0);
    }
    void Up(WPARAM key) { Key(WM_KEYUP, key); }
    /// A letter or digit key, pressed and let go.
    void Tap(char character) {
        const WPARAM key = static_cast<WPARAM>(character >= 'a' ? character - 'a' + 'A' : character);
        Down(key, static_cast<wchar_t>(character));
        Up(key);
    }
    void Type(const std::string& text) {
        for (const char character : text)
            Tap(character);
    }
    /// What is shown once this is typed.
    std::string Typed(const std::string& text) {
        Type(text);
        return Shown();
    }
    void Select(int start, int end) { SendMessageW(Edit(), EM_SETSEL, static_cast<WPARAM>(start), end); }
};

TEST_F(ShortcutCompletionTest, ShowsTheItemAsItIsSpeltWithTheRestSelected) {
    EXPECT_EQ(Typed("no"), "No[tepad]");
}

TEST_F(ShortcutCompletionTest, FurtherTypingReplacesTheRest) {
    EXPECT_EQ(Typed("n"), "N[otepad]");
    EXPECT_EQ(Typed("o"), "No[tepad]");
    EXPECT_EQ(Typed("tes"), "Notes[ 2]");
    // No other item goes on like this.
    EXPECT_EQ(Typed("x"), "Notesx|");
}

TEST_F(ShortcutCompletionTest, TypingTheNameToItsEndLeavesNothingSelected) {
    EXPECT_EQ(Typed("notepad"), "Notepad|");
}

TEST_F(ShortcutCompletionTest, AMatchInsideAnItemShowsWhatIsTypedAndTheRestAfterIt) {
    EXPECT_EQ(Typed("otep"), "otep[ad]");
    EXPECT_EQ(Typed("x"), "otepx|");
    box_.List().SetText("");
    EXPECT_EQ(Typed("pad"), "pad|");
}

TEST_F(ShortcutCompletionTest, TheFirstItemOfTheListCounts) {
    // "c" is in "Calc" twice and in later items too.
    EXPECT_EQ(Typed("c"), "C[alc]");
    box_.List().SetText("");
    EXPECT_EQ(Typed("2"), "2|");
    box_.List().SetText("");
    EXPECT_EQ(Typed("re"), "re|") << "the refresh item is no name";
}

TEST_F(ShortcutCompletionTest, AMatchInsideAnItemOpensThatItem) {
    ASSERT_EQ(Typed("otep"), "otep[ad]");
    Key(WM_KEYDOWN, VK_RETURN);
    box_.Go();
    EXPECT_THAT(log_.Lines(), ElementsAre("open 2", "open 2"));
    log_.Clear();
    // Accepted by the cursor keys it is still what was composed.
    Select(6, 6);
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("open 2"));
    log_.Clear();
    Down(VK_BACK, 8);
    ASSERT_EQ(Text(), "otepa");
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("start rundll32.exe url.dll,FileProtocolHandler otepa 1"))
        << "changed, it is the user's own text";
}

TEST_F(ShortcutCompletionTest, AShortcutOfTheComposedNameGoesFirst) {
    folder_.WriteIniText("[Cuts]\r\nNotepad=2\r\nOTEPAD=7\r\n");
    box_.Refill();
    ASSERT_EQ(Typed("otep"), "otep[ad]");
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("open 7"));
}

TEST_F(ShortcutCompletionTest, AnItemThatIsGoneIsNotOpened) {
    Type("otep");
    folder_.WriteIniText("[Cuts]\r\nCalc=1\r\n");
    box_.Refill();
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("start rundll32.exe url.dll,FileProtocolHandler otepad 1"));
}

TEST_F(ShortcutCompletionTest, MatchesInEveryScriptIgnoringCase) {
    const struct {
        const wchar_t* typed;
        const char* shown;
    } cases[] = {{L"жА", "Жа[ба]"}, {L"ČITA", "Čita[č č]"}, {L"本語", "本語[の本]"}, {L"日", "日[本語の本]"}};
    for (const auto& [typed, shown] : cases) {
        box_.List().SetText("");
        Select(0, 0);
        // On such a layout the keys are the Latin ones all the same.
        for (const wchar_t* character = typed; *character != 0; ++character) {
            Down('K', *character);
            Up('K');
        }
        EXPECT_EQ(Shown(), shown);
    }
}

TEST_F(ShortcutCompletionTest, AFastTypistLetsGoOfAKeyAfterTheNextOneWentDown) {
    Down('N', 'n');
    Down('O', 'o');
    Up('N');
    EXPECT_EQ(Shown(), "No[tepad]");
    Up('O');
    EXPECT_EQ(Shown(), "No[tepad]") << "what is shown is not taken for what was typed";
    Down('T', 't');
    Down('E', 'e');
    Down('S', 's');
    Up('E');
    Up('T');
    Up('S');
    EXPECT_EQ(Shown(), "Notes[ 2]");
}

TEST_F(ShortcutCompletionTest, AHeldKeyCompletesOnceItIsLetGo) {
    Down('N', 'n');
    EXPECT_EQ(Shown(), "n|");
    Down('N', 'n');
    Up('N');
    EXPECT_EQ(Shown(), "nn|");
}

TEST_F(ShortcutCompletionTest, EnterOpensTheCompletedNameBeforeTheLastKeyIsLetGoToo) {
    Down('N', 'n');
    Down('O', 'o');
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(Shown(), "Notepad|");
    EXPECT_THAT(log_.Lines(), ElementsAre("open 2"));
    Up('N');
    Up('O');
    EXPECT_EQ(Shown(), "Notepad|");
    // A text that was corrected meanwhile is opened as it stands.
    Select(2, -1);
    Down('T', 't');
    Down(VK_BACK, 8);
    Key(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(Shown(), "No|");
}

TEST_F(ShortcutCompletionTest, CorrectionsStay) {
    Type("no");
    Down(VK_BACK, 8);
    Up(VK_BACK);
    EXPECT_EQ(Shown(), "No|") << "the rest goes and does not come back";
    Down(VK_BACK, 8);
    Up(VK_BACK);
    EXPECT_EQ(Shown(), "N|");
    EXPECT_EQ(Typed("otes"), "Notes[ 2]");
    Down(VK_DELETE);
    Up(VK_DELETE);
    EXPECT_EQ(Shown(), "Notes|");
    // A letter that goes up after the correction does not undo it.
    Down('X', 'x');
    Down(VK_BACK, 8);
    Up('X');
    Up(VK_BACK);
    EXPECT_EQ(Shown(), "Notes|");
}

TEST_F(ShortcutCompletionTest, ASelectionIsReplacedByWhatIsTyped) {
    box_.List().SetText("something");
    Select(0, -1);
    EXPECT_EQ(Typed("c"), "C[alc]");
    box_.List().SetText("nxxxtes");
    Select(1, 4);
    EXPECT_EQ(Typed("o"), "no|tes") << "in the midst of a text the caret stays with the user";
    box_.List().SetText("noxxx");
    Select(2, 5);
    EXPECT_EQ(Typed("t"), "Not[epad]");
}

TEST_F(ShortcutCompletionTest, OnlyLettersAndDigitsComplete) {
    for (const WPARAM key :
         {WPARAM{VK_SPACE}, WPARAM{VK_OEM_MINUS}, WPARAM{VK_NUMPAD1}, WPARAM{VK_PACKET},
          WPARAM{VK_PROCESSKEY}, WPARAM{'0' - 1}, WPARAM{'9' + 1}, WPARAM{'A' - 1}, WPARAM{'Z' + 1}}) {
        box_.List().SetText("");
        Down(key, L'n');
        Up(key);
        EXPECT_EQ(Shown(), "n|") << key;
    }
    for (const WPARAM key : {WPARAM{'0'}, WPARAM{'9'}, WPARAM{'A'}, WPARAM{'Z'}}) {
        box_.List().SetText("");
        Down(key, L'n');
        Up(key);
        EXPECT_EQ(Shown(), "N[otepad]") << key;
    }
}

TEST_F(ShortcutCompletionTest, CommandKeysDoNotComplete) {
    {
        const HeldModifierKeys control({VK_CONTROL});
        Key(WM_KEYDOWN, 'V');
        box_.List().SetText("no");
        Select(2, 2);
    }
    Up('V');
    EXPECT_EQ(Shown(), "no|") << "pasted, and CTRL let go of first";
    {
        const HeldModifierKeys alt({VK_MENU});
        Key(WM_KEYDOWN, 'N');
        SendMessageW(Edit(), WM_CHAR, 't', 0);
    }
    Up('N');
    EXPECT_EQ(Shown(), "not|");
    box_.List().SetText("");
    {
        const HeldModifierKeys altGr({VK_CONTROL, VK_MENU});
        Key(WM_KEYDOWN, 'C');
        SendMessageW(Edit(), WM_CHAR, L'č', 0);
    }
    Up('C');
    EXPECT_EQ(Shown(), "Č[itač č]") << "AltGr types";
    box_.List().SetText("");
    {
        const HeldModifierKeys shift({VK_SHIFT});
        Key(WM_KEYDOWN, 'N');
        SendMessageW(Edit(), WM_CHAR, 'N', 0);
        Down(VK_SHIFT);
    }
    Up('N');
    EXPECT_EQ(Shown(), "N[otepad]") << "a capital letter";
}

TEST_F(ShortcutCompletionTest, AKeyThatChangedNothingCompletesNothing) {
    box_.List().SetText("no");
    Select(2, 2);
    Down('T');
    Up('T');
    EXPECT_EQ(Shown(), "no|");
    // A key goes up that did not go down here.
    Up('N');
    EXPECT_EQ(Shown(), "no|");
    // Somewhere else.
    MSG other{};
    other.hwnd = host_.Handle();
    other.message = WM_KEYDOWN;
    other.wParam = 'T';
    EXPECT_FALSE(box_.PreTranslate(other));
}

TEST_F(ShortcutCompletionTest, NothingIsDrawnMeanwhileAndTheTextAfterwards) {
    Down('N', 'n');
    fakes_.push_back(
        WATCH_CALL(SendMessageA, [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
            EXPECT_EQ(window, box_.List().Handle());
            log_.Add("message", message, static_cast<INT_PTR>(wParam), lParam, Text());
        }));
    fakes_.push_back(WATCH_CALL(InvalidateRect, [this](HWND window, const RECT* rect, BOOL erase) {
        if (window == box_.List().Edit()) log_.Add("redraw", rect == nullptr, erase != FALSE);
    }));
    Up('N');
    EXPECT_THAT(log_.Lines(), ElementsAre("message 11 0 0 n", "message 11 -1 0 Notepad", "redraw true true"));
    log_.Clear();
    Up('N');
    EXPECT_THAT(log_.Lines(), IsEmpty());
    // The same goes when nothing is found.
    Down('X', 'x');
    Up('X');
    EXPECT_THAT(log_.Lines(), ElementsAre("message 11 0 0 Nx", "message 11 -1 0 Nx", "redraw true true"));
    EXPECT_NE(GetWindowLongPtrW(box_.List().Handle(), GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(ShortcutCompletionTest, AnEmptyItemOrListIsNoHindrance) {
    folder_.WriteIniText("[Cuts]\r\n=C:\\nameless\r\n");
    box_.Refill();
    EXPECT_THAT(box_.List().Items(), ElementsAre("", "[Refresh list]"));
    EXPECT_EQ(Typed("no"), "no|");
}

}  // namespace
}  // namespace app
