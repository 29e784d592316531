#include "dialogs/message_box.h"

#include "dialogs/message_layout.h"
#include "res/resource.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/dialog.h"
#include "win/geometry.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre;
using testkit::ModalAnswers, testkit::Window;

ModalAnswers::Step PressButton(int index) {
    return [index](Window box) { box.Press(frmMsg::b1 + index); };
}

ModalAnswers::Step PressKey(WORD key) {
    return [key](Window) { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0); };
}

void CloseByTitleBar(Window box) { box.Send(WM_SYSCOMMAND, SC_CLOSE); }

/// What the box looked like before it was closed.
struct Seen {
    std::string caption;
    std::string text;
    std::vector<std::string> buttons;
    bool inputShown = false;
    std::string input;
    HWND owner = nullptr;
};

ModalAnswers::Step Look(Seen& seen) {
    return [&seen](Window box) {
        seen.caption = box.Text();
        seen.text = box.Child(frmMsg::l1).Text();
        for (const int id : {310, 311, 312})
            if (box.Child(id).IsVisible()) seen.buttons.push_back(box.Child(id).Text());
        seen.inputShown = box.Child(frmMsg::Text1).IsVisible();
        seen.input = box.Child(frmMsg::Text1).Text();
        seen.owner = box.Owner().Handle();
        CloseByTitleBar(box);
    };
}

TEST(MessageBoxTest, ShowsTextAndButtonsUnderItsCaption) {
    Seen seen;
    ModalAnswers user({Look(seen)});
    ShowMessage("Which one?", 3, "Accept", "Replace", "Cancel");
    EXPECT_EQ(seen.caption, "Message from Quon");
    EXPECT_EQ(seen.text, "Which one?");
    EXPECT_THAT(seen.buttons, ElementsAre("Accept", "Replace", "Cancel"));
    EXPECT_FALSE(seen.inputShown);
}

TEST(MessageBoxTest, ShowsEveryCaptionThatItIsGivenAndTheFirstButtonWithoutOneToo) {
    const struct {
        int count;
        std::array<std::string, 3> captions;
        std::vector<std::string> shown;
    } cases[] = {{0, {"Accept", "Replace", ""}, {}},
                 {3, {"Accept", "", "Cancel"}, {"Accept", "Cancel"}},
                 {1, {"", "", ""}, {""}},
                 {1, {"Accept", "", "Cancel"}, {"Accept", "Cancel"}}};
    for (const auto& [count, captions, shown] : cases) {
        Seen seen;
        ModalAnswers user({Look(seen)});
        EXPECT_EQ(ShowMessage("Text", count, captions[0], captions[1], captions[2]), "");
        EXPECT_EQ(seen.buttons, shown);
    }
}

TEST(MessageBoxTest, AnswersWithTheCaptionOfTheButtonPressed) {
    const std::vector<std::string> captions{"Create group now", "Replace", "Cancel"};
    for (int index = 0; index < 3; ++index) {
        ModalAnswers user({PressButton(index)});
        EXPECT_EQ(ShowMessage("Text", 3, captions[0], captions[1], captions[2]),
                  captions[static_cast<size_t>(index)]);
    }
}

TEST(MessageBoxTest, AnswersNothingWhenClosedByItsTitleBar) {
    ModalAnswers user({CloseByTitleBar, CloseByTitleBar});
    EXPECT_EQ(ShowMessage("Text", 1, "Accept"), "");
    EXPECT_EQ(ShowMessage("Text", 2, "OK", "Cancel", "", true, "typed"), "");
}

TEST(MessageBoxTest, AnswersTheTypedTextForOkBesideAnInputLine) {
    const auto type = [](const std::string& text) {
        return [text](Window box) {
            box.Child(frmMsg::Text1).SetText(text);
            box.Press(frmMsg::b1);
        };
    };
    for (const std::string text : {"/a \"b c\"", "", "Cancel", "Ђорђе Ćirić 文件 🗂"}) {
        ModalAnswers user({type(text)});
        EXPECT_EQ(ShowMessage("Text", 2, "OK", "Cancel", "", true, "preset"), text);
    }
}

TEST(MessageBoxTest, AnswersOkItselfWithoutAnInputLine) {
    ModalAnswers user({PressButton(0)});
    EXPECT_EQ(ShowMessage("Text", 1, "OK", "", "", false, "preset"), "OK");
}

TEST(MessageBoxTest, AnswersCancelAndOtherCaptionsBesideAnInputLine) {
    ModalAnswers user({PressButton(1), PressButton(0)});
    EXPECT_EQ(ShowMessage("Text", 2, "OK", "Cancel", "", true, "typed"), "Cancel");
    EXPECT_EQ(ShowMessage("Text", 3, "Delete", "Cancel", "OK", true, "typed"), "Delete");
}

TEST(MessageBoxTest, AnswersTheInputTextForCreateGroupEvenWhenItIsHidden) {
    const auto typeHidden = [](Window box) {
        EXPECT_FALSE(box.Child(frmMsg::Text1).IsVisible());
        box.Child(frmMsg::Text1).SetText("hidden");
        box.Press(frmMsg::b1);
    };
    ModalAnswers user({PressButton(0), typeHidden, PressButton(0)});
    EXPECT_EQ(ShowMessage("Text", 3, "Create group", "Replace", "Cancel", true, "Work"), "Work");
    EXPECT_EQ(ShowMessage("Text", 3, "Create group", "Replace", "Cancel"), "hidden");
    EXPECT_EQ(ShowMessage("Text", 3, "Create group", "Replace", "Cancel"), "");
}

TEST(MessageBoxTest, ComparesTheCaptionsCaseSensitively) {
    ModalAnswers user({PressButton(0), PressButton(0)});
    EXPECT_EQ(ShowMessage("Text", 1, "Ok", "", "", true, "typed"), "Ok");
    EXPECT_EQ(ShowMessage("Text", 1, "create group", "", "", true, "typed"), "create group");
}

TEST(MessageBoxTest, DoesNotLetAMessageSeeTheAnswerBefore) {
    ModalAnswers user({PressButton(0), CloseByTitleBar});
    EXPECT_EQ(ShowMessage("First", 1, "Accept"), "Accept");
    EXPECT_EQ(MessageAnswer, "");
    EXPECT_EQ(ShowMessage("Second", 1, "Accept"), "");
}

TEST(MessageBoxTest, LeavesTheAnswerToTheCallerOfTheWindowItself) {
    ModalAnswers user({PressButton(1)});
    frmMsg().RetMessage("Text", 2, "OK", "Cancel", "", false, "");
    EXPECT_EQ(MessageAnswer, "Cancel");
    MessageAnswer.clear();
}

TEST(MessageBoxTest, PressesCancelOnEsc) {
    ModalAnswers user({PressKey(VK_ESCAPE), PressKey(VK_ESCAPE)});
    EXPECT_EQ(ShowMessage("Text", 3, "Create group", "Replace", "Cancel", true, "typed"), "Cancel");
    EXPECT_EQ(ShowMessage("Text", 3, "Cancel", "Delete", "OK", true, "typed"), "Cancel");
}

TEST(MessageBoxTest, ClosesWithoutAnAnswerOnEscWhereThereIsNoCancel) {
    ModalAnswers user({PressKey(VK_ESCAPE), PressKey(VK_ESCAPE)});
    EXPECT_EQ(ShowMessage("Text", 1, "OK"), "");
    EXPECT_EQ(ShowMessage("Text", 0, ""), "");
}

TEST(MessageBoxTest, PressesOkOnEnterWhereverItStands) {
    ModalAnswers user({PressKey(VK_RETURN), PressKey(VK_RETURN), PressKey(VK_RETURN)});
    EXPECT_EQ(ShowMessage("Text", 1, "OK"), "OK");
    EXPECT_EQ(ShowMessage("Text", 3, "Cancel", "Delete", "OK"), "OK");
    EXPECT_EQ(ShowMessage("Text", 3, "Cancel", "Delete", "OK", true, "typed"), "typed");
}

TEST(MessageBoxTest, PressesTheFirstButtonOnEnterWhereThereIsNoOk) {
    ModalAnswers user({PressKey(VK_RETURN), PressKey(VK_RETURN)});
    EXPECT_EQ(ShowMessage("Text", 2, "Accept", "Cancel"), "Accept");
    EXPECT_EQ(ShowMessage("Text", 3, "Create group", "Replace", "Cancel", true, "Work"), "Work");
}

TEST(MessageBoxTest, PresetsSelectsAndFocusesTheInput) {
    const auto look = [](Window box) {
        const Window input = box.Child(frmMsg::Text1);
        EXPECT_TRUE(input.IsVisible());
        EXPECT_EQ(input.Text(), "Ime Име 名");
        EXPECT_EQ(GetFocus(), input.Handle());
        EXPECT_EQ(input.Selection(), MAKELONG(0, 9));
        box.Press(frmMsg::b1);
    };
    ModalAnswers user({look});
    EXPECT_EQ(ShowMessage("Text", 2, "OK", "Cancel", "", true, "Ime Име 名"), "Ime Име 名");
}

TEST(MessageBoxTest, FocusesTheDefaultButtonWithoutAnInput) {
    const auto look = [](Window box) {
        EXPECT_EQ(GetFocus(), box.Child(frmMsg::b1 + 2).Handle());
        CloseByTitleBar(box);
    };
    ModalAnswers user({look});
    ShowMessage("Text", 3, "Cancel", "Delete", "OK");
}

TEST(MessageBoxTest, ShowsANoteWithTheSingleButtonOk) {
    Seen seen;
    ModalAnswers user({Look(seen)});
    ShowNote("Operation completed.");
    EXPECT_EQ(seen.text, "Operation completed.");
    EXPECT_THAT(seen.buttons, ElementsAre("OK"));
}

TEST(MessageBoxTest, CountsItselfAmongTheOpenDialogs) {
    ASSERT_EQ(OpenDialogCount, 0);
    const auto openAnother = [](Window box) {
        EXPECT_EQ(OpenDialogCount, 1);
        ShowNote("inner");
        EXPECT_EQ(OpenDialogCount, 1);
        CloseByTitleBar(box);
    };
    const auto inner = [](Window box) {
        EXPECT_EQ(OpenDialogCount, 2);
        CloseByTitleBar(box);
    };
    ModalAnswers user({openAnother, inner});
    ShowNote("outer");
    EXPECT_EQ(OpenDialogCount, 0);
}

TEST(MessageBoxTest, IsTopmostFromItsLoadAndAgainAtEveryRepaint) {
    std::vector<UINT> flags;
    const auto log = WATCH_CALL(SetWindowPos, [&](HWND window, HWND after, int, int, int, int, UINT how) {
        if (after == HWND_TOPMOST && GetParent(window) == nullptr) flags.push_back(how);
    });
    const auto repaint = [&](Window box) {
        EXPECT_TRUE(box.IsTopmost());
        // At load and at the first painting.
        EXPECT_GE(flags.size(), 2u);
        for (int time = 0; time < 2; ++time) {
            flags.clear();
            SetWindowPos(box.Handle(), HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            InvalidateRect(box.Handle(), nullptr, TRUE);
            UpdateWindow(box.Handle());
            EXPECT_THAT(flags, ElementsAre(UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE}));
            EXPECT_TRUE(box.IsTopmost());
        }
        CloseByTitleBar(box);
    };
    ModalAnswers user({repaint});
    ShowNote("Text");
}

TEST(MessageBoxTest, IsOwnedByTheMainWindow) {
    const HWND main =
        CreateWindowExW(0, L"STATIC", L"main", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    win::SetMainWindow(main);
    Seen seen;
    {
        ModalAnswers user({Look(seen)});
        ShowNote("Text");
    }
    win::SetMainWindow(nullptr);
    EXPECT_EQ(seen.owner, main);
    DestroyWindow(main);
}

TEST(MessageBoxTest, IsOwnedByTheInnermostOpenDialog) {
    Seen seen;
    HWND outer = nullptr;
    const auto openAnother = [&](Window box) {
        outer = box.Handle();
        ShowNote("inner");
        CloseByTitleBar(box);
    };
    ModalAnswers user({openAnother, Look(seen)});
    ShowNote("outer");
    EXPECT_EQ(seen.owner, outer);
}

TEST(MessageBoxTest, ShowsTextsOfAnyScriptAndEverySignAsItself) {
    for (const std::string text : {"Želite li & zamenu?\r\nДа & не", "要替换吗？ && 🗂", "&Mnemonic", ""}) {
        Seen seen;
        ModalAnswers user({Look(seen)});
        ShowMessage(text, 1, "OK");
        EXPECT_EQ(seen.text, text);
    }
}

TEST(MessageBoxTest, DrawsNoUnderlineForAnAmpersand) {
    ModalAnswers user({[](Window box) {
        EXPECT_NE(box.Child(frmMsg::l1).Style() & SS_NOPREFIX, 0);
        CloseByTitleBar(box);
    }});
    ShowMessage("A & B", 1, "OK");
}

TEST(MessageBoxTest, FollowsTheTextWithItsHeight) {
    std::vector<LONG> heights;
    const auto measure = [&](Window box) {
        heights.push_back(win::Height(box.Child(frmMsg::l1).Rect()));
        CloseByTitleBar(box);
    };
    ModalAnswers user({measure, measure, measure});
    ShowMessage("one", 1, "OK");
    ShowMessage("one\ntwo\nthree", 1, "OK");
    ShowMessage(std::string(300, 'w'), 1, "OK");
    EXPECT_EQ(heights[1], 3 * heights[0]);
    EXPECT_GT(heights[2], 3 * heights[0]) << "a long word is broken";
}

TEST(MessageBoxTest, KeepsItsButtonsOnTheScreenWithAVeryLongText) {
    std::string text;
    for (int line = 0; line < 500; ++line)
        text += "Line " + std::to_string(line) + " Ред\r\n";
    ModalAnswers user({[&](Window box) {
        EXPECT_EQ(box.Child(frmMsg::l1).Text(), text);
        const RECT button = box.Child(frmMsg::b1).Rect();
        EXPECT_GE(button.top, 0);
        EXPECT_LE(button.bottom, GetSystemMetrics(SM_CYSCREEN));
        box.Press(frmMsg::b1);
    }});
    EXPECT_EQ(ShowMessage(text, 1, "OK"), "OK");
}

TEST(MessageBoxTest, StandsAsItsLayoutSaysInTheMiddleOfTheScreen) {
    ModalAnswers user({[](Window box) {
        const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
        const RECT client = box.ClientRect();
        const RECT text = box.Child(frmMsg::l1).Rect();
        const MessageLayout layout = LayOutMessage(win::ToTwips(win::Height(text), twips.y), 2, true);
        EXPECT_EQ(win::Width(client), win::ToPixels(layout.clientWidth, twips.x));
        EXPECT_EQ(win::Height(client), win::ToPixels(layout.clientHeight, twips.y));
        for (const int index : {0, 1}) {
            const RECT button = box.Child(frmMsg::b1 + index).Rect();
            const TwipsRect& place = layout.buttons[static_cast<size_t>(index)];
            EXPECT_EQ(button.left - client.left, win::ToPixels(place.left, twips.x));
            EXPECT_EQ(button.top - client.top, win::ToPixels(place.top, twips.y));
        }
        const RECT input = box.Child(frmMsg::Text1).Rect();
        EXPECT_EQ(input.top - client.top, win::ToPixels(layout.input.top, twips.y));
        EXPECT_EQ(win::Width(input), win::ToPixels(layout.input.width, twips.x));
        const RECT all = box.Rect();
        EXPECT_EQ(all.left, (GetSystemMetrics(SM_CXSCREEN) - win::Width(all)) / 2);
        EXPECT_EQ(all.top, (GetSystemMetrics(SM_CYSCREEN) - win::Height(all)) / 2);
        CloseByTitleBar(box);
    }});
    ShowMessage("Text", 2, "OK", "Cancel", "", true);
}

TEST(MessageBoxTest, HasNothingOfTheAboutBox) {
    ModalAnswers user({[](Window box) {
        for (const int id : {330, 340, 341, 342, 343, 344})
            EXPECT_FALSE(box.Child(id).IsVisible()) << id;
        CloseByTitleBar(box);
    }});
    ShowNote("Text");
}

TEST(MessageBoxTest, TheInputLineTakesNoMoreBytesThanItIsAllowed) {
    const testkit::ModalAnswers user({[](testkit::Window box) {
        const testkit::Window input = box.Child(frmMsg::Text1);
        EXPECT_EQ(input.Text(), "文");
        input.SetText("文文");
        input.SetText("文文x");
        EXPECT_EQ(input.Text(), "文文");
        box.Press(frmMsg::b1);
    }});
    EXPECT_EQ(ShowMessage("Switch:", 2, "OK", "Cancel", "", true, "文", 6), "文文");
}

TEST(MessageBoxTest, DoesNotOpenWhereItCannotShowWhatIsToBeChanged) {
    std::string answer = "none";
    const auto ask = [&] { answer = ShowMessage("Which?", 2, "OK", "Cancel", "", true, "/x"); };
    EXPECT_EQ(ReportsWithoutText(frmMsg::Text1, ask), 1);
    EXPECT_EQ(answer, "");
}

}  // namespace
}  // namespace dialogs
