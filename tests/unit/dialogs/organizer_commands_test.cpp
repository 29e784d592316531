// The commands of the organiser: deleting and editing.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/dialogs/organize_shortcuts_fixture.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Step = ModalAnswers::Step;

class OrganizerCommandsTest : public OrganizeShortcutsTest {};

TEST_F(OrganizerCommandsTest, DeletesAShortcutThatIsOnNoButtonWithoutAQuestion) {
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

TEST_F(OrganizerCommandsTest, FreesTheButtonBeforeItDeletesTheShortcut) {
    testkit::CallLog log;
    const testkit::RecordedCall section = WATCH_CALL(
        WritePrivateProfileSectionA, [&](LPCSTR name, LPCSTR, LPCSTR) { log.Add("section", name); });
    const testkit::RecordedCall write = WATCH_CALL(
        WritePrivateProfileStringA,
        [&](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR) { log.Add("write", name, key, value); });
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

TEST_F(OrganizerCommandsTest, AsksBeforeItDeletesWhatIsOnAButton) {
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

TEST_F(OrganizerCommandsTest, CancelAndAClosedQuestionKeepTheShortcut) {
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

TEST_F(OrganizerCommandsTest, TellsWhichShortcutsHaveChanged) {
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

TEST_F(OrganizerCommandsTest, DeletesAndEditsNothingThatCannotBeRead) {
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

TEST_F(OrganizerCommandsTest, DeletingTheLastShortcutShowsThatThereAreNone) {
    Organize("[Cuts]\r\na=C:\\a\r\n", {[](Window organiser) {
                 Press(organiser, VK_DELETE);
                 EXPECT_EQ(organiser.Child(dialogs::frmCuts::Label1).Text(), "No shortcuts found");
                 EXPECT_TRUE(organiser.Child(dialogs::frmCuts::Command1 + 2).IsFocused());
                 Quit(organiser);
             }});
    EXPECT_THAT(Keys(), IsEmpty());
}

TEST_F(OrganizerCommandsTest, AGroupIsEditedInTheGroupEditor) {
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

TEST_F(OrganizerCommandsTest, ASingleShortcutIsEditedInItsOwnEditorAndTheListReadAgain) {
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

TEST_F(OrganizerCommandsTest, TheListIsReadAgainAfterAnEditor) {
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

TEST_F(OrganizerCommandsTest, TheEditorsBoxesHaveTheColourOfTheRow) {
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

TEST_F(OrganizerCommandsTest, ATargetThatIsReadCutShortIsEditedWhole) {
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

TEST_F(OrganizerCommandsTest, ADoubleClickEditsARow) {
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

TEST_F(OrganizerCommandsTest, ASecondRecordOfANameIsLeftAloneAndSaysWhy) {
    const std::string ini = "[Cuts]\r\nNotes=C:\\a\r\nOther=C:\\o\r\nnotes=C:\\b\r\n[Switch]\r\nNotes=/a\r\n";
    Window organiser;
    const auto told = [&](Window box) {
        EXPECT_THAT(box.Child(frmMsg::l1).Text(), HasSubstr("Another shortcut of this name"));
        Click(box, frmMsg::b1);
    };
    Organize(ini, {[&](Window shown) {
                       organiser = shown;
                       Press(shown, VK_END);
                       shown.Child(frmCuts::Command1 + frmCuts::kDelete).Post(BM_CLICK);
                       shown.Child(frmCuts::Command1 + frmCuts::kEdit).Post(BM_CLICK);
                   },
                   told,
                   [&](Window box) {
                       told(box);
                       Quit(organiser);
                   }});
    EXPECT_EQ(folder_.IniBytes(), ini);
}

TEST_F(OrganizerCommandsTest, TheFirstOfTwoRecordsOfANameIsChangedAndTheSecondStays) {
    const std::string ini = "[Cuts]\r\nNotes=C:\\a\r\nOther=C:\\o\r\nnotes=C:\\b\r\n";
    Window organiser;
    Organize(ini, {[&](Window shown) {
                       organiser = shown;
                       shown.Child(frmCuts::Command1 + frmCuts::kEdit).Post(BM_CLICK);
                   },
                   [&](Window editor) {
                       editor.Child(frmEdit::t1 + frmEdit::kFile).SetText("C:\\changed");
                       Click(editor, frmEdit::c1 + frmEdit::kApply);
                       Quit(organiser);
                   }});
    EXPECT_THAT(folder_.Ini().Entries("Cuts"), ElementsAre(testkit::IniText::Entry{"Notes", "C:\\changed"},
                                                           testkit::IniText::Entry{"Other", "C:\\o"},
                                                           testkit::IniText::Entry{"notes", "C:\\b"}));
    // Once the first is gone, the second is the one that is used.
    Organize(ini, {[&](Window shown) {
                 Press(shown, VK_DELETE);
                 EXPECT_THAT(Names(shown), ElementsAre("Other", "notes"));
                 Press(shown, VK_END);
                 Press(shown, VK_DELETE);
                 EXPECT_THAT(Names(shown), ElementsAre("Other"));
                 Quit(shown);
             }});
}

}  // namespace
}  // namespace dialogs
