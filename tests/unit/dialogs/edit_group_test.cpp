#include "dialogs/edit_group.h"

#include "config/ini.h"
#include "tests/support/ini_writes.h"
#include "tests/support/scroll_end.h"
#include "tests/unit/dialogs/edit_group_fixture.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre;

TEST_F(EditGroupTest, ShowsTheGroupsNameSelectedAndInItsField) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Look("Work", [&](Window dialog) {
        EXPECT_EQ(dialog.Text(), "Edit group");
        EXPECT_EQ(dialog.Owner().Handle(), owner_.Handle());
        EXPECT_TRUE(dialog.IsTopmost());
        EXPECT_EQ(dialog.Child(frmEditB::t1 + 0).Text(), "Work");
        EXPECT_TRUE(dialog.Child(frmEditB::t1 + 0).IsFocused());
        EXPECT_EQ(dialog.Child(frmEditB::t1 + 0).Selection(), MAKELONG(0, 4));
    });
    EXPECT_EQ(editor_.StoredName(), "");
}

TEST_F(EditGroupTest, KeepsTheFormerGroupWhenAnyOfItsWritesFails) {
    const std::string before = "[Buttons]\r\n12=Work|0\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\nLast=C:\\c\r\n";
    for (const std::string record : {"Buttons 12", "Cuts New"}) {
        Load(before);
        bool refused = false;
        const auto write =
            FAKE_CALL(WritePrivateProfileStringA, [&](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                if (std::string(name) + " " + key != record)
                    return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                refused = true;
                return FALSE;
            });
        Edit("Work", {[](Window dialog) {
                          dialog.Child(frmEditB::t1 + 0).SetText("New");
                          dialog.PostPress(frmEditB::c1 + 2);
                      },
                      CannotBeMade});
        EXPECT_TRUE(refused) << record;
        EXPECT_EQ(editor_.StoredName(), "");
        EXPECT_EQ(context_.Records.At("12"), "Work|0") << record;
        EXPECT_EQ(folder_.IniBytes(), before) << record;
    }
}

TEST_F(EditGroupTest, EveryControlHasItsCaptionAndNumber) {
    Look("Work", [](Window dialog) {
        const std::vector<std::pair<int, std::string>> captions{
            {710, "Shortcut name:"}, {713, "Shortcut exists!"}, {720, "Add file"}, {721, "Add folder"},
            {722, "Apply"},          {723, "Cancel"},           {724, "Add URL"},  {725, "Delete item"}};
        for (const auto& [id, caption] : captions)
            EXPECT_EQ(dialog.Child(id).Text(), caption);
        EXPECT_EQ(dialog.Child(frmEditB::t1 + 0).Class(), "Edit");
        EXPECT_EQ(dialog.Child(frmEditB::pBasket).Parent(), dialog.Child(frmEditB::pFrame));
        EXPECT_EQ(dialog.Child(frmEditB::Scr).Class(), "ScrollBar");
    });
}

TEST_F(EditGroupTest, ItsOwnOldNameCountsAsTaken) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Look("Work", [](Window dialog) {
        EXPECT_TRUE(dialog.Child(frmEditB::l1 + 3).IsVisible());
        dialog.Child(frmEditB::t1 + 0).SetText("Other");
        EXPECT_FALSE(dialog.Child(frmEditB::l1 + 3).IsVisible());
        dialog.Child(frmEditB::t1 + 0).SetText("WORK");
        EXPECT_TRUE(dialog.Child(frmEditB::l1 + 3).IsVisible());
        const win::MemoryDc dc(CreateCompatibleDC(nullptr));
        const LRESULT brush = dialog.Send(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.Get()),
                                          reinterpret_cast<LPARAM>(dialog.Child(frmEditB::t1 + 0).Handle()));
        EXPECT_EQ(brush, reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW)));
        EXPECT_EQ(GetTextColor(dc.Get()), 255U);
    });
}

TEST_F(EditGroupTest, ACommandOfNoControlDoesNothing) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Edit("Work", {[](Window dialog) {
             dialog.Send(WM_COMMAND, IDOK);
             EXPECT_TRUE(dialog.IsVisible());
             dialog.Press(frmEditB::c1 + 3);
             EXPECT_FALSE(dialog.IsVisible());
         }});
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\b");
}

TEST_F(EditGroupTest, AClickOnALabelSelectsTheName) {
    Look("Work", [](Window dialog) {
        for (const int label : {frmEditB::l1 + 0, frmEditB::l1 + 3}) {
            SetFocus(dialog.Child(frmEditB::c1 + 2).Handle());
            dialog.Child(frmEditB::t1 + 0).Send(EM_SETSEL, 1, 1);
            dialog.Child(label).Send(WM_LBUTTONDOWN, MK_LBUTTON);
            dialog.Child(label).Send(WM_LBUTTONUP);
            EXPECT_TRUE(dialog.Child(frmEditB::t1 + 0).IsFocused()) << label;
            EXPECT_EQ(dialog.Child(frmEditB::t1 + 0).Selection(), MAKELONG(0, 4)) << label;
        }
    });
}

TEST_F(EditGroupTest, ApplyStoresTheMembersInTheOrderOfTheirRows) {
    Load("[Cuts]\r\nfirst=C:\\1\r\nWork=C:\\a|C:\\b|http://c.example/\r\nlast=C:\\x=y\r\n");
    EditAndApply("Work", [](Window) {});
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("first", "last", "Work"));
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\b|http://c.example/");
    EXPECT_EQ(Stored("last"), "C:\\x=y");
    EXPECT_EQ(editor_.StoredName(), "Work");
}

TEST_F(EditGroupTest, TheOldRecordIsDeletedBeforeTheNewOneIsWritten) {
    Load("[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    testkit::CallLog log;
    const testkit::RecordedCalls writes = testkit::LogWrites(log);
    EditAndApply("Work", [](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText("Play"); });
    EXPECT_THAT(log.Lines(), ElementsAre("write Buttons 23 ", "write Buttons 23 Play|0", "empty Cuts",
                                         "write Cuts Play C:\\a|C:\\b"));
}

TEST_F(EditGroupTest, RenamingAGroupRewritesTheRecordOfItsButton) {
    Load("[Buttons]\r\n23=Work|7\r\n24=Work2|3\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText("Посао 文"); });
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Посао 文|0");
    EXPECT_EQ(context_.Records.At("23"), "Посао 文|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "24"), "Work2|3");
    EXPECT_EQ(Stored("Work"), "none");
    EXPECT_EQ(Stored("Посао 文"), "C:\\a|C:\\b");
    EXPECT_EQ(editor_.StoredName(), "Посао 文");
}

TEST_F(EditGroupTest, RenamingMovesTheSwitchAndDropsTheOneThatTheNewNameHad) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\nA=C:\\a\r\nB=C:\\b\r\n[Switch]\r\nWork=/w\r\nB=/b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText("Play"); });
    EXPECT_EQ(folder_.IniValue("Switch", "Play"), "/w");
    EXPECT_EQ(folder_.IniValue("Switch", "Work"), std::nullopt);
    EditAndApply("A", [](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText("B"); });
    EXPECT_EQ(folder_.IniValue("Switch", "B"), std::nullopt);
}

TEST_F(EditGroupTest, ARenamedGroupKeepsAllItsButtons) {
    Load("[Buttons]\r\n23=Work|7\r\n45=work|3\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText("Play"); });
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Play|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "45"), "Play|0");
    EXPECT_EQ(context_.Records.At("45"), "Play|0");
}

TEST_F(EditGroupTest, AGroupThatCannotBeReadIsNotEdited) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    {
        const testkit::HeldFile held(folder_.IniPath());
        EXPECT_FALSE(editor_.PrepareWindow("Work"));
    }
    EXPECT_TRUE(editor_.PrepareWindow("Work"));
}

TEST_F(EditGroupTest, ATypedNameIsMadeStorableAndWritesOverATakenOne) {
    const struct {
        const char* typed;
        std::string name;
        std::vector<std::string> keys;
    } cases[] = {{"WORK", "WORK", {"Other", "WORK"}},  // in another case it is another name
                 {"Other", "Other", {"Other"}},
                 {" [a=b|c ", "a-b-c", {"Other", "a-b-c"}},
                 {"  ", "Work", {"Other", "Work"}}};
    for (const auto& [typed, name, keys] : cases) {
        SCOPED_TRACE(typed);
        Load("[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nOther=C:\\o\r\nWork=C:\\a|C:\\b\r\n");
        EditAndApply("Work", [text = typed](Window dialog) { dialog.Child(frmEditB::t1 + 0).SetText(text); });
        EXPECT_EQ(editor_.StoredName(), name);
        EXPECT_EQ(folder_.Ini().Keys("Cuts"), keys);
        EXPECT_EQ(Stored(name), "C:\\a|C:\\b");
        EXPECT_EQ(folder_.IniValue("Buttons", "23"), name == "Work" ? "Work|7" : name + "|0");
    }
}

TEST_F(EditGroupTest, AnUnchangedNameLeavesTheButtonsRecordAlone) {
    Load("[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window) {});
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Work|7");
    EXPECT_EQ(context_.Records.At("23"), "Work|7");
}

TEST_F(EditGroupTest, WithoutAnyNameNothingIsStoredAndTheEditorStaysOpen) {
    Window editor;
    Edit("", {[&](Window dialog) {
                  editor = dialog;
                  dialog.PostPress(frmEditB::c1 + 2);
              },
              [&](Window box) {
                  EXPECT_EQ(box.Child(frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
                  EXPECT_EQ(box.Owner(), editor);
                  box.Press(frmMsg::b1);
                  editor.Post(WM_COMMAND, IDCANCEL);
              }});
    EXPECT_EQ(folder_.IniBytes(), "");
    EXPECT_EQ(editor_.StoredName(), "");
}

TEST_F(EditGroupTest, AFreeButtonsGroupGetsANameOfItsOwn) {
    Load("[Buttons]\r\n23=\r\n");
    EditAndApply("Empty", [&](Window dialog) {
        EXPECT_EQ(List(dialog).Text(), "");
        picked_ = "C:\\a.txt";
        dialog.Press(frmEditB::c1 + 0);
    });
    EXPECT_EQ(editor_.StoredName(), "Empty_");
    EXPECT_EQ(Stored("Empty_"), "C:\\a.txt");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "");
}

TEST_F(EditGroupTest, CancelAndEscWriteNothing) {
    const std::string ini = "[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n";
    Load(ini);
    for (const int id : {frmEditB::c1 + 3, IDCANCEL})
        Edit("Work", {[&](Window dialog) {
                 dialog.Child(frmEditB::t1 + 0).SetText("Other");
                 dialog.Press(frmEditB::c1 + 5);
                 dialog.Post(WM_COMMAND, static_cast<WPARAM>(id));
             }});
    EXPECT_EQ(folder_.IniBytes(), ini);
    EXPECT_EQ(context_.Records.At("23"), "Work|7");
    EXPECT_EQ(editor_.StoredName(), "");
}

TEST_F(EditGroupTest, EnterApplies) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Edit("Work", {[](Window dialog) {
             PostMessageW(dialog.Child(frmEditB::t1 + 0).Handle(), WM_KEYDOWN, VK_RETURN, 0);
         }});
    EXPECT_EQ(editor_.StoredName(), "Work");
}

TEST_F(EditGroupTest, TheBarScrollsFiftyRowsByItsSteps) {
    Load("[Cuts]\r\nWork=" + win::Join(std::vector<std::string>(50, "C:\\a"), '|') + "\r\n");
    Look("Work", [](Window dialog) {
        RECT frame{};
        GetClientRect(dialog.Child(frmEditB::pFrame).Handle(), &frame);
        RECT content{};
        GetClientRect(List(dialog).Handle(), &content);
        // Fifty rows with their gaps, and what is above and below.
        EXPECT_EQ(content.bottom, 4 + 50 * 18 + 49 * 6 + 5);
        const HWND bar = dialog.Child(frmEditB::Scr).Handle();
        EXPECT_EQ(testkit::ScrollEnd(bar), content.bottom - frame.bottom);
        dialog.Send(WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 20);
        dialog.Send(WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 80);
        // The wheel reaches the dialog from any of its controls.
        List(dialog).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 140);
        List(dialog).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120));
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 80);
        for (int step = 1; step <= 12; ++step) {
            EXPECT_EQ(GetScrollPos(bar, SB_CTL), 80) << "small steps add up";
            List(dialog).Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-10)));
        }
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 140);
    });
}

TEST_F(EditGroupTest, TabWalksFromTheNameOverTheListToTheButtons) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Look("Work", [](Window dialog) {
        EXPECT_THAT(TabOrder(dialog, frmEditB::t1 + 0),
                    ElementsAre(frmEditB::t1 + 0, frmEditB::pBasket, frmEditB::c1 + 0, frmEditB::c1 + 1,
                                frmEditB::c1 + 4, frmEditB::c1 + 5, frmEditB::c1 + 2, frmEditB::c1 + 3));
    });
}

TEST_F(EditGroupTest, ASecondUseStartsAnew) {
    Load("[Cuts]\r\nWork=C:\\a\r\nPlay=C:\\b|C:\\c\r\n");
    EditAndApply("Work", [](Window) {});
    Look("Play", [](Window dialog) { EXPECT_EQ(List(dialog).Text(), "C:\\b"); });
    EXPECT_EQ(editor_.StoredName(), "");
}

}  // namespace
}  // namespace dialogs
