// The commands of the organiser: deleting and editing.

#include "dialogs/message_box.h"
#include "tests/support/ini_writes.h"
#include "tests/unit/dialogs/organize_shortcuts_fixture.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty;
using Step = ModalAnswers::Step;

class OrganizerCommandsTest : public OrganizeShortcutsTest {};

TEST_F(OrganizerCommandsTest, DeletesAShortcutThatIsOnNoButtonWithoutAQuestion) {
    Look(kShortcuts, [](Window organiser) {
        Press(organiser, VK_DOWN);
        organiser.Press(frmCuts::Command1 + 1);
        EXPECT_EQ(organiser.Text(), "Organize shortcuts - 2 shortcuts found");
        EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Ђорђе 文件"));
    });
    EXPECT_THAT(Keys(), ElementsAre("Notes", "Ђорђе 文件"));
    EXPECT_EQ(folder_.IniValue("Cuts", "Ђорђе 文件"), "http://a.example/?x=y");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Notes|4");
}

TEST_F(OrganizerCommandsTest, FreesTheButtonBeforeItDeletesTheShortcut) {
    testkit::CallLog log;
    const testkit::RecordedCalls writes = testkit::LogWrites(log);
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              shown.PostPress(frmCuts::Command1 + 1);
                          },
                          [&](Window box) {
                              EXPECT_THAT(log.Lines(), IsEmpty()) << "not before the answer";
                              box.Press(frmMsg::b1);
                              Quit(organiser);
                          }});
    EXPECT_TRUE(InOrder(log, {"write Buttons 23 ", "empty Cuts"}));
}

TEST_F(OrganizerCommandsTest, AsksBeforeItDeletesWhatIsOnAButton) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              shown.PostPress(frmCuts::Command1 + 1);
                          },
                          [&](Window box) {
                              EXPECT_EQ(box.Owner(), organiser);
                              EXPECT_EQ(box.Child(frmMsg::l1).Text(),
                                        "You have this shortcut on the button too (Tab 2, button 3).\n"
                                        "Please confirm deletion.");
                              EXPECT_EQ(box.Child(frmMsg::b1).Text(), "Delete");
                              EXPECT_EQ(box.Child(frmMsg::b1 + 1).Text(), "Cancel");
                              EXPECT_FALSE(box.Child(frmMsg::b1 + 2).IsVisible());
                              box.Press(frmMsg::b1);
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
                                      box.Press(frmMsg::b1 + 1);
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
                              shown.PostPress(frmCuts::Command1 + 0);
                          },
                          [&](Window editor) {
                              editor.Child(frmEdit::t1 + 0).SetText("Other");
                              editor.Press(frmEdit::c1 + 2);
                              Press(organiser, VK_HOME);
                              organiser.PostPress(frmCuts::Command1 + 0);
                          },
                          [&](Window editor) {
                              editor.Child(frmEditB::t1 + 0).SetText("Play");
                              editor.Press(frmEditB::c1 + 2);
                              Press(organiser, VK_HOME);
                              organiser.PostPress(frmCuts::Command1 + 1);
                              Quit(organiser);
                          }});
    EXPECT_THAT(changed, ElementsAre("Notes", "Other", "Work", "Play", "Ђорђе 文件"));
}

TEST_F(OrganizerCommandsTest, DeletesAndEditsNothingThatCannotBeRead) {
    Look(kShortcuts, [&](Window organiser) {
        {
            const testkit::HeldFile held(folder_.IniPath());
            organiser.Press(frmCuts::Command1 + 1);
        }
    });
    EXPECT_EQ(Keys().size(), 3U);
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Notes|4");
    EXPECT_EQ(context_.Records.At("23"), "Notes|4");
}

TEST_F(OrganizerCommandsTest, DeletingTheLastShortcutShowsThatThereAreNone) {
    Organize("[Cuts]\r\na=C:\\a\r\n", {[](Window organiser) {
                 Press(organiser, VK_DELETE);
                 EXPECT_EQ(organiser.Child(frmCuts::Label1).Text(), "No shortcuts found");
                 EXPECT_TRUE(organiser.Child(frmCuts::Command1 + 2).IsFocused());
                 Quit(organiser);
             }});
    EXPECT_THAT(Keys(), IsEmpty());
}

TEST_F(OrganizerCommandsTest, AGroupIsEditedInTheGroupEditor) {
    Window organiser;
    Organize(kShortcuts, {[&](Window shown) {
                              organiser = shown;
                              Press(shown, VK_DOWN);
                              shown.PostPress(frmCuts::Command1 + 0);
                          },
                          [&](Window editor) {
                              EXPECT_EQ(editor.Text(), "Edit group");
                              EXPECT_EQ(editor.Owner(), organiser);
                              EXPECT_EQ(editor.Child(frmEditB::t1 + 0).Text(), "Work");
                              editor.Child(frmEditB::t1 + 0).SetText("Play");
                              editor.Press(frmEditB::c1 + 2);
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
                              EXPECT_EQ(editor.Child(frmEdit::t1 + 0).Text(), "Ђорђе 文件");
                              EXPECT_EQ(editor.Child(frmEdit::t1 + 1).Text(), "http://a.example/?x=y");
                              editor.Child(frmEdit::t1 + 0).SetText("Page");
                              editor.Press(frmEdit::c1 + 2);
                              organiser.Post(WM_NULL);
                              Quit(organiser);
                          }});
    EXPECT_THAT(Keys(), ElementsAre("Notes", "Work", "Page"));
}

TEST_F(OrganizerCommandsTest, TheListIsReadAgainAfterAnEditor) {
    const auto name = [](const char* text) {
        return [text](Window editor) {
            editor.Child(frmEdit::t1 + 0).SetText(text);
            editor.Press(frmEdit::c1 + 2);
        };
    };
    Organize(kShortcuts, {[](Window organiser) {
                              Press(organiser, VK_END);
                              organiser.Press(frmCuts::Command1 + 0);
                              EXPECT_THAT(Names(organiser), ElementsAre("Notes", "Work", "Page"));
                              EXPECT_EQ(List(organiser).Text(), "Page");
                              // It gets the name of another one: there is one shortcut less.
                              organiser.Press(frmCuts::Command1 + 0);
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
        const HWND box = editor.Child(frmEdit::t1 + 1).Handle();
        editor.Send(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.Get()), reinterpret_cast<LPARAM>(box));
        colors.push_back(GetBkColor(dc.Get()));
        editor.Press(frmEdit::c1 + 3);
    };
    Organize("[Cuts]\r\na=C:\\a\r\nb=C:\\b\r\n", {[](Window organiser) {
                                                      organiser.Press(frmCuts::Command1 + 0);
                                                      Press(organiser, VK_DOWN);
                                                      organiser.Press(frmCuts::Command1 + 0);
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
                       organiser.Press(frmCuts::Command1 + 0);
                       Quit(organiser);
                   },
                   [&](Window editor) {
                       EXPECT_EQ(editor.Child(frmEdit::t1 + 1).Text(), longTarget);
                       editor.Press(frmEdit::c1 + 2);
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
                              EXPECT_EQ(editor.Child(frmEditB::t1 + 0).Text(), "Work");
                              editor.Press(frmEditB::c1 + 3);
                              Quit(organiser);
                          }});
}

TEST_F(OrganizerCommandsTest, ASecondRecordOfANameIsLeftAloneAndSaysWhy) {
    const std::string ini = "[Cuts]\r\nNotes=C:\\a\r\nOther=C:\\o\r\nnotes=C:\\b\r\n[Switch]\r\nNotes=/a\r\n";
    Window organiser;
    const auto told = [&](Window box) {
        EXPECT_THAT(box.Child(frmMsg::l1).Text(), HasSubstr("Another shortcut of this name"));
        box.Press(frmMsg::b1);
    };
    Organize(ini, {[&](Window shown) {
                       organiser = shown;
                       Press(shown, VK_END);
                       shown.PostPress(frmCuts::Command1 + frmCuts::kDelete);
                       shown.PostPress(frmCuts::Command1 + frmCuts::kEdit);
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
                       shown.PostPress(frmCuts::Command1 + frmCuts::kEdit);
                   },
                   [&](Window editor) {
                       editor.Child(frmEdit::t1 + frmEdit::kFile).SetText("C:\\changed");
                       editor.Press(frmEdit::c1 + frmEdit::kApply);
                       Quit(organiser);
                   }});
    EXPECT_THAT(folder_.IniLines("Cuts"), ElementsAre("Notes=C:\\changed", "Other=C:\\o", "notes=C:\\b"));
    // Once the first is gone, the second is the one that is used.
    Look(ini, [&](Window shown) {
        Press(shown, VK_DELETE);
        EXPECT_THAT(Names(shown), ElementsAre("Other", "notes"));
        Press(shown, VK_END);
        Press(shown, VK_DELETE);
        EXPECT_THAT(Names(shown), ElementsAre("Other"));
    });
}

}  // namespace
}  // namespace dialogs
