#include "dialogs/organize_shortcuts.h"

#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/held_file.h"
#include "tests/support/hidden_window.h"
#include "tests/support/modal_answers.h"
#include "tests/support/paint_log.h"
#include "tests/support/program_folder.h"
#include "tests/support/recorded_call.h"
#include "tests/support/scoped_ini_path.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"
#include "tests/support/window.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testkit::ModalAnswers;
using testkit::Window;
using Step = ModalAnswers::Step;

constexpr const char* kShortcuts =
    "[Buttons]\r\n23=Notes|4\r\n[Cuts]\r\nNotes=C:\\notes.txt\r\nWork=C:\\a|C:\\b\r\nЂорђе "
    "文件=http://a.example/?x=y\r\n";

void Click(Window dialog, int id) { dialog.Child(id).Send(BM_CLICK); }
Window List(Window organiser) { return organiser.Child(dialogs::frmCuts::pBasket); }
void Press(Window organiser, WPARAM key) { List(organiser).Send(WM_KEYDOWN, key); }
void Quit(Window organiser) { organiser.Child(dialogs::frmCuts::Command1 + 2).Post(BM_CLICK); }

/// The names that the organiser has listed.
std::vector<std::string> Names(Window organiser) {
    const HWND box = organiser.Child(dialogs::frmCuts::List1).Handle();
    std::vector<std::string> names;
    for (LRESULT index = 0; index < SendMessageW(box, LB_GETCOUNT, 0, 0); ++index) {
        std::wstring name(
            static_cast<size_t>(SendMessageW(box, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0)) + 1, L'\0');
        SendMessageW(box, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(name.data()));
        name.pop_back();
        names.push_back(testkit::Utf8(name));
    }
    return names;
}

class OrganizeShortcutsTest : public ::testing::Test {
  protected:
    OrganizeShortcutsTest() { win::SetMainWindow(owner_.Handle()); }
    ~OrganizeShortcutsTest() override { win::SetMainWindow(nullptr); }

    void Organize(std::string_view ini, std::vector<Step> steps) {
        folder_.WriteIniText(ini);
        context_.Records.LoadButtonRecords();
        const ModalAnswers user(std::move(steps));
        organiser_.Show(owner_.Handle());
    }
    std::vector<std::string> Keys() const { return folder_.Ini().Keys("Cuts"); }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    model::ButtonContext context_;
    frmCuts organiser_{context_};
};

TEST_F(OrganizeShortcutsTest, ListsAllShortcutsInTheirOrder) {
    Organize(kShortcuts, {[this](Window organiser) {
                 EXPECT_EQ(organiser.Text(), "Organize shortcuts - 3 shortcuts found");
                 EXPECT_EQ(organiser.Owner().Handle(), owner_.Handle());
                 EXPECT_TRUE(organiser.IsTopmost());
                 EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work", "Ђорђе 文件"));
                 EXPECT_TRUE(organiser.Child(dialogs::frmCuts::pFrame).IsVisible());
                 EXPECT_FALSE(organiser.Child(dialogs::frmCuts::Label1).IsVisible());
                 EXPECT_TRUE(List(organiser).IsFocused());
                 EXPECT_EQ(List(organiser).Text(), "Notes");
                 Press(organiser, VK_END);
                 EXPECT_EQ(List(organiser).Text(), "Ђорђе 文件");
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, EveryControlHasItsCaptionAndNumber) {
    Organize(kShortcuts, {[](Window organiser) {
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Command1 + 0).Text(), "Edit shortcut");
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Command1 + 1).Text(), "Delete shortcut");
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Command1 + 2).Text(), "Quit");
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::pBasket).Parent(),
                           organiser.Child(dialogs::frmCuts::pFrame));
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Scr).Class(), "ScrollBar");
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Label1).Class(), "Static");
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::List1).Class(), "ListBox");
                 EXPECT_FALSE(organiser.Child(dialogs::frmCuts::List1).IsVisible());
                 organiser.Post(WM_COMMAND, IDCANCEL);
             }});
}

TEST_F(OrganizeShortcutsTest, ARowShowsItsIconItsNameAndItsTargetInAFrame) {
    testkit::CallLog log;
    Organize(kShortcuts, {[&](Window organiser) {
                 const Window list = List(organiser);
                 const RECT inside = list.ClientRect();
                 const std::string width = std::to_string(inside.right - inside.left);
                 const win::WindowDc screen(nullptr);
                 const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), 400, 200));
                 const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
                 SelectObject(dc.Get(), bitmap.Get());
                 {
                     const auto painting = testkit::LogPainting(log, list.Handle(), dc.Get());
                     const auto image =
                         FAKE_CALL(ImageList_Draw, [&](HIMAGELIST, int, HDC, int, int, UINT) -> WINBOOL {
                             log.Add("Image");
                             return TRUE;
                         });
                     list.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.Get()), PRF_CLIENT);
                 }
                 EXPECT_THAT(log.Lines(), Contains("Edge 0 0 " + width + " 47 type 9 flags 15"));
                 EXPECT_THAT(log.Lines(), Contains("Edge 0 51 " + width + " 98 type 9 flags 15"));
                 Quit(organiser);
             }});
    EXPECT_EQ(log.Count("Image"), 3u);
    for (const char* text :
         {"Notes in ", "C:\\notes.txt in ", "Work in ", "C:\\a|C:\\b in ", "http://a.example/?x=y in "})
        EXPECT_THAT(log.Lines(), Contains(HasSubstr(text))) << text;
}

TEST_F(OrganizeShortcutsTest, ACommandOfNoControlDoesNothing) {
    Organize(kShortcuts, {[](Window organiser) {
                 organiser.Send(WM_COMMAND, IDOK);
                 EXPECT_TRUE(organiser.IsVisible());
                 EXPECT_EQ(Names(organiser).size(), 3U);
                 Click(organiser, dialogs::frmCuts::Command1 + 2);
                 EXPECT_FALSE(organiser.IsVisible());
             }});
    EXPECT_EQ(Keys().size(), 3U);
}

TEST_F(OrganizeShortcutsTest, OneShortcutHasThePluralToo) {
    Organize("[Cuts]\r\na=C:\\a\r\n", {[](Window organiser) {
                 EXPECT_EQ(organiser.Text(), "Organize shortcuts - 1 shortcuts found");
                 EXPECT_FALSE(organiser.Child(dialogs::frmCuts::Scr).IsEnabled());
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, WithoutShortcutsItSaysSoAndOffersOnlyToQuit) {
    for (const char* ini :
         {"[Settings]\r\nMain=1\r\n", "[Cuts]\r\n", "[Cuts]\r\n; none\r\nbroken\r\n", "; none\r\n"})
        Organize(ini, {[](Window organiser) {
                     EXPECT_EQ(organiser.Text(), "Organize shortcuts - 0 shortcuts found");
                     EXPECT_EQ(organiser.Child(dialogs::frmCuts::Label1).Text(), "No shortcuts found");
                     EXPECT_TRUE(organiser.Child(dialogs::frmCuts::Label1).IsVisible());
                     EXPECT_FALSE(organiser.Child(dialogs::frmCuts::pFrame).IsVisible());
                     EXPECT_FALSE(organiser.Child(dialogs::frmCuts::Command1 + 0).IsEnabled());
                     EXPECT_FALSE(organiser.Child(dialogs::frmCuts::Command1 + 1).IsEnabled());
                     EXPECT_TRUE(organiser.Child(dialogs::frmCuts::Command1 + 2).IsFocused());
                     Quit(organiser);
                 }});
}

TEST_F(OrganizeShortcutsTest, ItSaysThatItIsReadingWhileItReads) {
    std::string said;
    Organize(kShortcuts, {[&](Window organiser) {
                 const testkit::RecordedCall fake = FAKE_CALL(
                     GetPrivateProfileSectionA,
                     [&](LPCSTR section, LPSTR buffer, DWORD size, LPCSTR file) -> DWORD {
                         const Window label = organiser.Child(dialogs::frmCuts::Label1);
                         if (label.IsVisible()) said = label.Text();
                         EXPECT_FALSE(GetUpdateRect(label.Handle(), nullptr, FALSE)) << "it is painted";
                         return ORIGINAL_CALL(GetPrivateProfileSectionA)(section, buffer, size, file);
                     });
                 organiser_.ReadShortcuts();
                 EXPECT_TRUE(List(organiser).IsFocused());
                 Quit(organiser);
             }});
    EXPECT_EQ(said, "Refreshing list...");
}

TEST_F(OrganizeShortcutsTest, LinesWithoutATargetAreNoShortcutsAndQuotesNoPartOfOne) {
    Organize("[Cuts]\r\nbroken\r\na=\"C:\\a b\"\r\nempty=\r\n", {[](Window organiser) {
                 EXPECT_THAT(Names(organiser), ElementsAre("a", "empty"));
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, DeletesAShortcutThatIsOnNoButtonWithoutAQuestion) {
    Organize(kShortcuts, {[](Window organiser) {
                 Press(organiser, VK_DOWN);
                 Click(organiser, dialogs::frmCuts::Command1 + 1);
                 EXPECT_EQ(organiser.Text(), "Organize shortcuts - 2 shortcuts found");
                 EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Ђорђе 文件"));
                 Quit(organiser);
             }});
    EXPECT_THAT(Keys(), ElementsAre("Notes", "Ђорђе 文件"));
    EXPECT_EQ(folder_.IniValue("Cuts", "Ђорђе 文件"), "http://a.example/?x=y");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Notes|4");
}

TEST_F(OrganizeShortcutsTest, GoesByTheKeyboard) {
    Organize(kShortcuts, {[](Window organiser) {
                 EXPECT_THAT(TabOrder(organiser, frmCuts::pBasket),
                             ElementsAre(frmCuts::pBasket, frmCuts::Command1 + 0, frmCuts::Command1 + 1,
                                         frmCuts::Command1 + 2));
                 PressInFocus(VK_ESCAPE);
             }});
}

TEST_F(OrganizeShortcutsTest, FreesTheButtonBeforeItDeletesTheShortcut) {
    testkit::CallLog log;
    const testkit::RecordedCall section =
        FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR name, LPCSTR text, LPCSTR file) {
            log.Add("section", name);
            return ORIGINAL_CALL(WritePrivateProfileSectionA)(name, text, file);
        });
    const testkit::RecordedCall write =
        FAKE_CALL(WritePrivateProfileStringA, [&](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
            log.Add("write", name, key, value);
            return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
        });
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              shown.Child(dialogs::frmCuts::Command1 + 1).Post(BM_CLICK);
                          },
                          [&](Window box) {
                              EXPECT_THAT(log.Lines(), IsEmpty()) << "not before the answer";
                              Click(box, dialogs::frmMsg::b1);
                              Quit(organiser);
                          }});
    EXPECT_TRUE(InOrder(log, {"write Buttons 23 ", "section Cuts"}));
}

TEST_F(OrganizeShortcutsTest, AsksBeforeItDeletesWhatIsOnAButton) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              shown.Child(dialogs::frmCuts::Command1 + 1).Post(BM_CLICK);
                          },
                          [&](Window box) {
                              EXPECT_EQ(box.Owner(), organiser);
                              EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(),
                                        "You have this shortcut on the button too (Tab 2, button 3).\n"
                                        "Please confirm deletion.");
                              EXPECT_EQ(box.Child(dialogs::frmMsg::b1).Text(), "Delete");
                              EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 1).Text(), "Cancel");
                              EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 2).IsVisible());
                              Click(box, dialogs::frmMsg::b1);
                              Quit(organiser);
                          }});
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "");
    EXPECT_EQ(context_.Records.At("23"), "");
    EXPECT_THAT(Keys(), ElementsAre("Work", "Ђорђе 文件"));
}

TEST_F(OrganizeShortcutsTest, CancelAndAClosedQuestionKeepTheShortcut) {
    for (const bool closed : {false, true}) {
        Window organiser;
        Organize(kShortcuts, {[&](Window shown) {
                                  organiser = shown;
                                  List(shown).Post(WM_KEYDOWN, VK_DELETE);
                              },
                              [&](Window box) {
                                  if (closed)
                                      box.Send(WM_SYSCOMMAND, SC_CLOSE);
                                  else
                                      Click(box, dialogs::frmMsg::b1 + 1);
                                  Quit(organiser);
                              }});
        EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Notes|4");
        EXPECT_EQ(context_.Records.At("23"), "Notes|4");
        EXPECT_EQ(Keys().size(), 3U);
    }
}

TEST_F(OrganizeShortcutsTest, TellsWhichShortcutsHaveChanged) {
    std::vector<std::string> changed;
    context_.onChanged = [&](const std::vector<std::string>& names) {
        changed.insert(changed.end(), names.begin(), names.end());
    };
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              shown.Child(dialogs::frmCuts::Command1 + 0).Post(BM_CLICK);
                          },
                          [&](Window editor) {
                              editor.Child(dialogs::frmEdit::t1 + 0).SetText("Other");
                              Click(editor, dialogs::frmEdit::c1 + 2);
                              Press(organiser, VK_HOME);
                              organiser.Child(dialogs::frmCuts::Command1 + 0).Post(BM_CLICK);
                          },
                          [&](Window editor) {
                              editor.Child(dialogs::frmEditB::t1 + 0).SetText("Play");
                              Click(editor, dialogs::frmEditB::c1 + 2);
                              Press(organiser, VK_HOME);
                              organiser.Child(dialogs::frmCuts::Command1 + 1).Post(BM_CLICK);
                              Quit(organiser);
                          }});
    EXPECT_THAT(changed, ElementsAre("Notes", "Other", "Work", "Play", "Ђорђе 文件"));
}

TEST_F(OrganizeShortcutsTest, ReadsItsListAgainSoonWhenItCannotBeRead) {
    std::optional<testkit::HeldFile> held;
    folder_.WriteIniText(kShortcuts);
    context_.Records.LoadButtonRecords();
    held.emplace(folder_.IniPath());
    const ModalAnswers user({[&](Window organiser) {
        EXPECT_NE(organiser.Child(dialogs::frmCuts::Label1).Text(), "No shortcuts found");
        EXPECT_FALSE(organiser.Child(dialogs::frmCuts::Command1 + 1).IsEnabled());
        held.reset();
        testkit::WaitFor("the list is read", [&] { return Names(organiser).size() == 3; });
        EXPECT_TRUE(organiser.Child(dialogs::frmCuts::Command1 + 1).IsEnabled());
        Quit(organiser);
    }});
    organiser_.Show(owner_.Handle());
}

TEST_F(OrganizeShortcutsTest, DeletesAndEditsNothingThatCannotBeRead) {
    Organize(kShortcuts, {[&](Window organiser) {
                 {
                     const testkit::HeldFile held(folder_.IniPath());
                     Click(organiser, dialogs::frmCuts::Command1 + 1);
                 }
                 Quit(organiser);
             }});
    EXPECT_EQ(Keys().size(), 3U);
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Notes|4");
    EXPECT_EQ(context_.Records.At("23"), "Notes|4");
}

TEST_F(OrganizeShortcutsTest, DeletingTheLastShortcutShowsThatThereAreNone) {
    Organize("[Cuts]\r\na=C:\\a\r\n", {[](Window organiser) {
                 Press(organiser, VK_DELETE);
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Label1).Text(), "No shortcuts found");
                 EXPECT_TRUE(organiser.Child(dialogs::frmCuts::Command1 + 2).IsFocused());
                 Quit(organiser);
             }});
    EXPECT_THAT(Keys(), IsEmpty());
}

TEST_F(OrganizeShortcutsTest, AGroupIsEditedInTheGroupEditor) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              Press(shown, VK_DOWN);
                              shown.Child(dialogs::frmCuts::Command1 + 0).Post(BM_CLICK);
                          },
                          [&](Window editor) {
                              EXPECT_EQ(editor.Text(), "Edit group");
                              EXPECT_EQ(editor.Owner(), organiser);
                              EXPECT_EQ(editor.Child(dialogs::frmEditB::t1 + 0).Text(), "Work");
                              editor.Child(dialogs::frmEditB::t1 + 0).SetText("Play");
                              Click(editor, dialogs::frmEditB::c1 + 2);
                              Quit(organiser);
                          }});
    EXPECT_THAT(Keys(), ElementsAre("Notes", "Ђорђе 文件", "Play"));
}

TEST_F(OrganizeShortcutsTest, ASingleShortcutIsEditedInItsOwnEditorAndTheListReadAgain) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              Press(shown, VK_END);
                              PostMessageW(List(shown).Handle(), WM_KEYDOWN, VK_RETURN, 0);
                          },
                          [&](Window editor) {
                              EXPECT_EQ(editor.Text(), "Edit shortcut");
                              EXPECT_EQ(editor.Owner(), organiser);
                              EXPECT_EQ(editor.Child(dialogs::frmEdit::t1 + 0).Text(), "Ђорђе 文件");
                              EXPECT_EQ(editor.Child(dialogs::frmEdit::t1 + 1).Text(),
                                        "http://a.example/?x=y");
                              editor.Child(dialogs::frmEdit::t1 + 0).SetText("Page");
                              Click(editor, dialogs::frmEdit::c1 + 2);
                              organiser.Post(WM_NULL);
                              Quit(organiser);
                          }});
    EXPECT_THAT(Keys(), ElementsAre("Notes", "Work", "Page"));
}

TEST_F(OrganizeShortcutsTest, TheListIsReadAgainAfterAnEditor) {
    const auto name = [](const char* text) {
        return [text](Window editor) {
            editor.Child(dialogs::frmEdit::t1 + 0).SetText(text);
            Click(editor, dialogs::frmEdit::c1 + 2);
        };
    };
    Organize(kShortcuts, {[](Window organiser) {
                              Press(organiser, VK_END);
                              Click(organiser, dialogs::frmCuts::Command1 + 0);
                              EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work", "Page"));
                              EXPECT_EQ(List(organiser).Text(), "Page");
                              // It gets the name of another one: there is one shortcut less.
                              Click(organiser, dialogs::frmCuts::Command1 + 0);
                              EXPECT_EQ(organiser.Text(), "Organize shortcuts - 2 shortcuts found");
                              EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work"));
                              Quit(organiser);
                          },
                          name("Page"), name("NOTES")});
}

TEST_F(OrganizeShortcutsTest, TheEditorsBoxesHaveTheColourOfTheRow) {
    std::vector<COLORREF> colors;
    const Step look = [&](Window editor) {
        const win::MemoryDc dc(CreateCompatibleDC(nullptr));
        const HWND box = editor.Child(dialogs::frmEdit::t1 + 1).Handle();
        editor.Send(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.Get()), reinterpret_cast<LPARAM>(box));
        colors.push_back(GetBkColor(dc.Get()));
        Click(editor, dialogs::frmEdit::c1 + 3);
    };
    Organize("[Cuts]\r\na=C:\\a\r\nb=C:\\b\r\n", {[](Window organiser) {
                                                      Click(organiser, dialogs::frmCuts::Command1 + 0);
                                                      Press(organiser, VK_DOWN);
                                                      Click(organiser, dialogs::frmCuts::Command1 + 0);
                                                      Quit(organiser);
                                                  },
                                                  look, look});
    EXPECT_THAT(colors, ElementsAre(RGB(0xFF, 0xFF, 0xFF), RGB(0xF1, 0xF5, 0xF1)));
}

TEST_F(OrganizeShortcutsTest, ATargetThatIsReadCutShortIsEditedWhole) {
    const std::string longTarget = "C:\\" + std::string(300, 'x');
    const std::string ini =
        "[Cuts]\r\nfirst=C:\\" + std::string(19800, 'f') + "\r\nlast=" + longTarget + "\r\n";
    Organize(ini, {[](Window organiser) {
                       Press(organiser, VK_END);
                       EXPECT_EQ(List(organiser).Text(), "last");
                       Click(organiser, dialogs::frmCuts::Command1 + 0);
                       Quit(organiser);
                   },
                   [&](Window editor) {
                       EXPECT_EQ(editor.Child(dialogs::frmEdit::t1 + 1).Text(), longTarget);
                       Click(editor, dialogs::frmEdit::c1 + 2);
                   }});
    EXPECT_EQ(folder_.IniValue("Cuts", "last"), longTarget);
}

TEST_F(OrganizeShortcutsTest, ADoubleClickEditsARow) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              List(shown).Post(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(50, 60));
                          },
                          [&](Window editor) {
                              EXPECT_EQ(editor.Child(dialogs::frmEditB::t1 + 0).Text(), "Work");
                              Click(editor, dialogs::frmEditB::c1 + 3);
                              Quit(organiser);
                          }});
}

/// A file with so many shortcuts.
std::string Many(int count) {
    std::string ini = "[Cuts]\r\n";
    for (int index = 0; index < count; ++index)
        ini += "n" + std::to_string(index) + "=C:\\" + std::to_string(index) + "\r\n";
    return ini;
}

TEST_F(OrganizeShortcutsTest, TheWheelScrollsByItsNotchAndNeverPastTheEnds) {
    Organize(Many(10), {[this](Window organiser) {
                 const HWND bar = organiser.Child(dialogs::frmCuts::Scr).Handle();
                 int low = 0;
                 int high = 0;
                 GetScrollRange(bar, SB_CTL, &low, &high);
                 ASSERT_GT(high, 102);
                 ASSERT_LT(high, 3 * 102);
                 const auto turn = [&](int rotation) {
                     organiser_.MouseWheel(0, rotation, 0, 0);
                     return GetScrollPos(bar, SB_CTL);
                 };
                 EXPECT_EQ(turn(120), 0);
                 EXPECT_EQ(turn(-120), 102);
                 EXPECT_EQ(turn(0), 102);
                 EXPECT_EQ(turn(-1), std::min(204, high));
                 EXPECT_EQ(turn(-120), high);
                 EXPECT_EQ(turn(120), high - 102);
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, TheWheelIsHookedWhileItIsActive) {
    Organize(Many(20), {[](Window organiser) {
                 const HWND bar = organiser.Child(dialogs::frmCuts::Scr).Handle();
                 organiser.Send(WM_ACTIVATE, WA_ACTIVE);
                 List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
                 organiser.Send(WM_ACTIVATE, WA_INACTIVE);
                 List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
                 organiser.Send(WM_ACTIVATE, WA_CLICKACTIVE);
                 List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120));
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 0);
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, SmallStepsOfTheWheelAddUpToItsNotch) {
    Organize(Many(20), {[](Window organiser) {
                 const HWND bar = organiser.Child(dialogs::frmCuts::Scr).Handle();
                 organiser.Send(WM_ACTIVATE, WA_ACTIVE);
                 for (int step = 1; step <= 12; ++step) {
                     EXPECT_EQ(GetScrollPos(bar, SB_CTL), 0) << step;
                     List(organiser).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-10)));
                 }
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 102);
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, TheBarMovesByItsSteps) {
    Organize(Many(20), {[](Window organiser) {
                 const HWND bar = organiser.Child(dialogs::frmCuts::Scr).Handle();
                 organiser.Send(WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 51);
                 organiser.Send(WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(bar));
                 EXPECT_EQ(GetScrollPos(bar, SB_CTL), 153);
                 Quit(organiser);
             }});
}

TEST_F(OrganizeShortcutsTest, AThousandShortcutsAreListedAtOnceAndReachedToTheLast) {
    Organize(Many(1000), {[](Window organiser) {
                 EXPECT_EQ(organiser.Text(), "Organize shortcuts - 1000 shortcuts found");
                 Press(organiser, VK_END);
                 EXPECT_EQ(List(organiser).Text(), "n999");
                 Quit(organiser);
             }});
}

}  // namespace
}  // namespace dialogs
