#include "dialogs/edit_group.h"

#include <windows.h>

#include <commdlg.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "config/ini.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/held_file.h"
#include "tests/support/hidden_window.h"
#include "tests/support/modal_answers.h"
#include "tests/support/program_folder.h"
#include "tests/support/recorded_call.h"
#include "tests/support/scoped_ini_path.h"
#include "tests/support/text.h"
#include "tests/support/window.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testkit::ModalAnswers;
using testkit::Window;
using Step = ModalAnswers::Step;

void Click(Window dialog, int id) { dialog.Child(id).Send(BM_CLICK); }
Window List(Window dialog) { return dialog.Child(dialogs::frmEditB::pBasket); }
void SelectRow(Window dialog, int row) {
    List(dialog).Send(WM_KEYDOWN, VK_HOME);
    for (int index = 0; index < row; ++index)
        List(dialog).Send(WM_KEYDOWN, VK_DOWN);
}

class EditGroupTest : public ::testing::Test {
  protected:
    EditGroupTest() {
        win::SetMainWindow(owner_.Handle());
        fakes_.push_back(FAKE_CALL(GetOpenFileNameW, [this](LPOPENFILENAMEW record) -> WINBOOL {
            enabledMeanwhile_ = IsWindowEnabled(win::ModalOwner()) != 0;
            std::wcscpy(record->lpstrFile, testkit::Wide(picked_).c_str());
            return picked_.empty() ? FALSE : TRUE;
        }));
        fakes_.push_back(FAKE_CALL(SHBrowseForFolderW, [this](LPBROWSEINFOW) -> LPITEMIDLIST {
            return picked_.empty() ? nullptr : reinterpret_cast<LPITEMIDLIST>(CoTaskMemAlloc(2));
        }));
        fakes_.push_back(FAKE_CALL(SHGetPathFromIDListEx,
                                   [this](LPCITEMIDLIST, LPWSTR path, DWORD, GPFIDL_FLAGS) -> WINBOOL {
                                       std::wcscpy(path, testkit::Wide(picked_).c_str());
                                       return TRUE;
                                   }));
    }
    ~EditGroupTest() override { win::SetMainWindow(nullptr); }

    /// Replaces the configuration file and reads the record table from it.
    void Load(std::string_view ini) {
        folder_.WriteIniText(ini);
        context_.Records.LoadButtonRecords();
    }
    /// Opens the editor on a group; the steps answer it and what it opens.
    void Edit(const std::string& name, std::vector<Step> steps) {
        const ModalAnswers user(std::move(steps));
        editor_.PrepareWindow(name);
        editor_.Show(owner_.Handle());
    }
    /// Edits and applies.
    void EditAndApply(const std::string& name, const std::function<void(Window)>& act) {
        Edit(name, {[&](Window dialog) {
                 act(dialog);
                 Click(dialog, dialogs::frmEditB::c1 + 2);
             }});
    }
    /// Answers the note that says so, and cancels the editor, which is still open.
    static void CannotBeMade(Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
        EXPECT_EQ(box.Owner().Text(), "Edit group");
        box.Owner().Child(dialogs::frmEditB::c1 + 3).Post(BM_CLICK);
        Click(box, dialogs::frmMsg::b1);
    }
    std::string Stored(const std::string& name) const {
        return folder_.IniValue("Cuts", name).value_or("none");
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    std::string picked_;
    bool enabledMeanwhile_ = true;
    testkit::RecordedCalls fakes_;
    model::ButtonContext context_;
    frmEditB editor_{context_};
};

TEST_F(EditGroupTest, ShowsTheGroupsNameSelectedAndInItsField) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Edit("Work", {[&](Window dialog) {
             EXPECT_EQ(dialog.Text(), "Edit group");
             EXPECT_EQ(dialog.Owner().Handle(), owner_.Handle());
             EXPECT_TRUE(dialog.IsTopmost());
             EXPECT_EQ(dialog.Child(dialogs::frmEditB::t1 + 0).Text(), "Work");
             EXPECT_TRUE(dialog.Child(dialogs::frmEditB::t1 + 0).IsFocused());
             DWORD start = 9;
             DWORD end = 9;
             SendMessageW(dialog.Child(dialogs::frmEditB::t1 + 0).Handle(), EM_GETSEL,
                          reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
             EXPECT_EQ(start, 0U);
             EXPECT_EQ(end, 4U);
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
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
                          dialog.Child(dialogs::frmEditB::t1 + 0).SetText("New");
                          dialog.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                      },
                      CannotBeMade});
        EXPECT_TRUE(refused) << record;
        EXPECT_EQ(editor_.StoredName(), "");
        EXPECT_EQ(context_.Records.At("12"), "Work|0") << record;
        EXPECT_EQ(folder_.IniBytes(), before) << record;
    }
}

TEST_F(EditGroupTest, EveryControlHasItsCaptionAndNumber) {
    Edit("Work", {[](Window dialog) {
             const std::vector<std::pair<int, std::string>> captions{
                 {710, "Shortcut name:"}, {713, "Shortcut exists!"}, {720, "Add file"}, {721, "Add folder"},
                 {722, "Apply"},          {723, "Cancel"},           {724, "Add URL"},  {725, "Delete item"}};
             for (const auto& [id, caption] : captions)
                 EXPECT_EQ(dialog.Child(id).Text(), caption);
             EXPECT_EQ(dialog.Child(dialogs::frmEditB::t1 + 0).Class(), "Edit");
             EXPECT_EQ(dialog.Child(dialogs::frmEditB::pBasket).Parent(),
                       dialog.Child(dialogs::frmEditB::pFrame));
             EXPECT_EQ(dialog.Child(dialogs::frmEditB::Scr).Class(), "ScrollBar");
             dialog.Post(WM_COMMAND, IDCANCEL);
         }});
}

TEST_F(EditGroupTest, ItsOwnOldNameCountsAsTaken) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Edit("Work", {[](Window dialog) {
             EXPECT_TRUE(dialog.Child(dialogs::frmEditB::l1 + 3).IsVisible());
             dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Other");
             EXPECT_FALSE(dialog.Child(dialogs::frmEditB::l1 + 3).IsVisible());
             dialog.Child(dialogs::frmEditB::t1 + 0).SetText("WORK");
             EXPECT_TRUE(dialog.Child(dialogs::frmEditB::l1 + 3).IsVisible());
             const win::MemoryDc dc(CreateCompatibleDC(nullptr));
             const LRESULT brush =
                 dialog.Send(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.Get()),
                             reinterpret_cast<LPARAM>(dialog.Child(dialogs::frmEditB::t1 + 0).Handle()));
             EXPECT_EQ(brush, reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW)));
             EXPECT_EQ(GetTextColor(dc.Get()), 255U);
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
}

TEST_F(EditGroupTest, ACommandOfNoControlDoesNothing) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    Edit("Work", {[](Window dialog) {
             dialog.Send(WM_COMMAND, IDOK);
             EXPECT_TRUE(dialog.IsVisible());
             Click(dialog, dialogs::frmEditB::c1 + 3);
             EXPECT_FALSE(dialog.IsVisible());
         }});
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\b");
}

TEST_F(EditGroupTest, AClickOnALabelSelectsTheName) {
    Edit("Work", {[](Window dialog) {
             for (const int label : {dialogs::frmEditB::l1 + 0, dialogs::frmEditB::l1 + 3}) {
                 SetFocus(dialog.Child(dialogs::frmEditB::c1 + 2).Handle());
                 dialog.Child(dialogs::frmEditB::t1 + 0).Send(EM_SETSEL, 1, 1);
                 dialog.Child(label).Send(WM_LBUTTONDOWN, MK_LBUTTON);
                 dialog.Child(label).Send(WM_LBUTTONUP);
                 EXPECT_TRUE(dialog.Child(dialogs::frmEditB::t1 + 0).IsFocused()) << label;
                 EXPECT_EQ(dialog.Child(dialogs::frmEditB::t1 + 0).Send(EM_GETSEL), MAKELONG(0, 4)) << label;
             }
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
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
    const testkit::RecordedCall writing = FAKE_CALL(
        WritePrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR file) -> WINBOOL {
            log.Add(section, key, value);
            return ORIGINAL_CALL(WritePrivateProfileStringA)(section, key, value, file);
        });
    const testkit::RecordedCall emptying =
        FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR section, LPCSTR data, LPCSTR file) -> WINBOOL {
            log.Add("empty", section);
            return ORIGINAL_CALL(WritePrivateProfileSectionA)(section, data, file);
        });
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Play"); });
    EXPECT_THAT(log.Lines(),
                ElementsAre("Buttons 23 ", "Buttons 23 Play|0", "empty Cuts", "Cuts Play C:\\a|C:\\b"));
}

TEST_F(EditGroupTest, RenamingAGroupRewritesTheRecordOfItsButton) {
    Load("[Buttons]\r\n23=Work|7\r\n24=Work2|3\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Посао 文"); });
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Посао 文|0");
    EXPECT_EQ(context_.Records.At("23"), "Посао 文|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "24"), "Work2|3");
    EXPECT_EQ(Stored("Work"), "none");
    EXPECT_EQ(Stored("Посао 文"), "C:\\a|C:\\b");
    EXPECT_EQ(editor_.StoredName(), "Посао 文");
}

TEST_F(EditGroupTest, RenamingMovesTheSwitchAndDropsTheOneThatTheNewNameHad) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b\r\nA=C:\\a\r\nB=C:\\b\r\n[Switch]\r\nWork=/w\r\nB=/b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Play"); });
    EXPECT_EQ(folder_.IniValue("Switch", "Play"), "/w");
    EXPECT_EQ(folder_.IniValue("Switch", "Work"), std::nullopt);
    EditAndApply("A", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("B"); });
    EXPECT_EQ(folder_.IniValue("Switch", "B"), std::nullopt);
}

TEST_F(EditGroupTest, ARenamedGroupKeepsAllItsButtons) {
    Load("[Buttons]\r\n23=Work|7\r\n45=work|3\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Play"); });
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

TEST_F(EditGroupTest, AddsNothingThatCouldNotBeReadBack) {
    const std::string item = "C:\\" + std::string(300, 'x');
    Load("[Cuts]\r\nWork=" + item + "\r\n");
    const auto refuse = [](Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
        Click(box, dialogs::frmMsg::b1);
    };
    // 303 + 1 + 251 bytes are one too many.
    picked_ = "C:\\" + std::string(248, 'y');
    Edit("Work", {[](Window dialog) { Click(dialog, dialogs::frmEditB::c1 + 0); },
                  [&](Window box) {
                      refuse(box);
                      box.Owner().Child(dialogs::frmEditB::c1 + 1).Post(BM_CLICK);
                  },
                  [&](Window box) {
                      refuse(box);
                      box.Owner().Child(dialogs::frmEditB::c1 + 4).Post(BM_CLICK);
                  },
                  [](Window box) {
                      box.Child(dialogs::frmMsg::Text1).SetText("http://" + std::string(244, 'z'));
                      Click(box, dialogs::frmMsg::b1);
                  },
                  [&](Window box) {
                      refuse(box);
                      EXPECT_EQ(editor_.ItemCount(), 1);
                      picked_.pop_back();
                      Click(box.Owner(), dialogs::frmEditB::c1 + 0);
                      EXPECT_EQ(editor_.ItemCount(), 2);
                      box.Owner().Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                  }});
    EXPECT_EQ(Stored("Work"), item + "|" + picked_);
    EXPECT_EQ(config::ReadIni("Cuts", "Work").size(), 554u);
}

TEST_F(EditGroupTest, AddsNothingToAGroupThatIsTooLongAlready) {
    const std::string item = "C:\\" + std::string(397, 'x');
    Load("[Cuts]\r\nWork=" + item + "|" + item + "\r\n");
    picked_ = "C:\\" + std::string(180, 'y');
    Edit("Work", {[](Window dialog) {
                      Click(dialog, dialogs::frmEditB::c1 + dialogs::frmEditB::kDeleteItem);
                      Click(dialog, dialogs::frmEditB::c1 + dialogs::frmEditB::kAddFile);
                  },
                  [&](Window box) {
                      EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
                      Click(box, dialogs::frmMsg::b1);
                      EXPECT_EQ(editor_.ItemCount(), 1);
                      box.Owner().Child(dialogs::frmEditB::c1 + dialogs::frmEditB::kCancel).Post(BM_CLICK);
                  }});
    EXPECT_EQ(Stored("Work"), item + "|" + item);
}

TEST_F(EditGroupTest, AUrlWithABarStaysOneItem) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Edit("Work", {[](Window dialog) { Click(dialog, dialogs::frmEditB::c1 + 4); },
                  [](Window box) {
                      box.Child(dialogs::frmMsg::Text1).SetText("http://a/b|c");
                      box.Owner().Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                      Click(box, dialogs::frmMsg::b1);
                  }});
    EXPECT_EQ(Stored("Work"), "C:\\a|http://a/b%7Cc");
}

TEST_F(EditGroupTest, ANameThatDiffersInItsCaseOnlyIsAnotherName) {
    Load("[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("WORK"); });
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "WORK|0");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("WORK"));
    EXPECT_EQ(Stored("WORK"), "C:\\a|C:\\b");
}

TEST_F(EditGroupTest, ATakenNameIsWrittenOver) {
    Load("[Cuts]\r\nOther=C:\\o\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Other"); });
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("Other"));
    EXPECT_EQ(Stored("Other"), "C:\\a|C:\\b");
}

TEST_F(EditGroupTest, AnUnchangedNameLeavesTheButtonsRecordAlone) {
    Load("[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n");
    EditAndApply("Work", [](Window) {});
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Work|7");
    EXPECT_EQ(context_.Records.At("23"), "Work|7");
}

TEST_F(EditGroupTest, ANameThatCannotBeStoredIsMadeStorable) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText(" [a=b|c "); });
    EXPECT_EQ(editor_.StoredName(), "a-b-c");
    EXPECT_EQ(Stored("a-b-c"), "C:\\a");
    EXPECT_EQ(Stored("Work"), "none");
}

TEST_F(EditGroupTest, AnEmptyNameKeepsTheOldOne) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [](Window dialog) { dialog.Child(dialogs::frmEditB::t1 + 0).SetText("  "); });
    EXPECT_EQ(editor_.StoredName(), "Work");
    EXPECT_EQ(Stored("Work"), "C:\\a");
}

TEST_F(EditGroupTest, WithoutAnyNameNothingIsStoredAndTheEditorStaysOpen) {
    Window editor;
    Edit("", {[&](Window dialog) {
                  editor = dialog;
                  dialog.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
              },
              [&](Window box) {
                  EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
                  EXPECT_EQ(box.Owner(), editor);
                  Click(box, dialogs::frmMsg::b1);
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
        Click(dialog, dialogs::frmEditB::c1 + 0);
    });
    EXPECT_EQ(editor_.StoredName(), "Empty_");
    EXPECT_EQ(Stored("Empty_"), "C:\\a.txt");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "");
}

TEST_F(EditGroupTest, CancelAndEscWriteNothing) {
    const std::string ini = "[Buttons]\r\n23=Work|7\r\n[Cuts]\r\nWork=C:\\a|C:\\b\r\n";
    Load(ini);
    for (const int id : {dialogs::frmEditB::c1 + 3, IDCANCEL})
        Edit("Work", {[&](Window dialog) {
                 dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Other");
                 Click(dialog, dialogs::frmEditB::c1 + 5);
                 dialog.Post(WM_COMMAND, static_cast<WPARAM>(id));
             }});
    EXPECT_EQ(folder_.IniBytes(), ini);
    EXPECT_EQ(context_.Records.At("23"), "Work|7");
    EXPECT_EQ(editor_.StoredName(), "");
}

TEST_F(EditGroupTest, EnterApplies) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Edit("Work", {[](Window dialog) {
             PostMessageW(dialog.Child(dialogs::frmEditB::t1 + 0).Handle(), WM_KEYDOWN, VK_RETURN, 0);
         }});
    EXPECT_EQ(editor_.StoredName(), "Work");
}

TEST_F(EditGroupTest, PickedFilesAndFoldersBecomeRowsAtTheEnd) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [&](Window dialog) {
        picked_ = "C:\\Докуме́нти\\文.txt";
        Click(dialog, dialogs::frmEditB::c1 + 0);
        picked_ = "C:\\фасцикла";
        Click(dialog, dialogs::frmEditB::c1 + 1);
        picked_ = "";
        Click(dialog, dialogs::frmEditB::c1 + 0);
        Click(dialog, dialogs::frmEditB::c1 + 1);
        EXPECT_FALSE(enabledMeanwhile_);
        EXPECT_TRUE(dialog.IsEnabled());
        EXPECT_TRUE(dialog.IsTopmost());
    });
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\Докуме́нти\\文.txt|C:\\фасцикла");
}

TEST_F(EditGroupTest, AUrlIsAskedForWithItsBeginning) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Window editor;
    Edit("Work", {[&](Window dialog) {
                      editor = dialog;
                      dialog.Child(dialogs::frmEditB::c1 + 4).Post(BM_CLICK);
                  },
                  [&](Window box) {
                      EXPECT_EQ(box.Owner(), editor);
                      EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(),
                                "Enter complete URL (please include 'http://' or similar if exists): ");
                      EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), "http://");
                      EXPECT_EQ(box.Child(dialogs::frmMsg::b1).Text(), "OK");
                      EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 1).Text(), "Cancel");
                      EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 2).IsVisible());
                      box.Child(dialogs::frmMsg::Text1).SetText("https://пример.example/文?a=b");
                      Click(box, dialogs::frmMsg::b1);
                      editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                  }});
    EXPECT_EQ(Stored("Work"), "C:\\a|https://пример.example/文?a=b");
}

TEST_F(EditGroupTest, CancelInTheUrlPromptAddsNothingAndSaysNothing) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Window editor;
    Edit("Work", {[&](Window dialog) {
                      editor = dialog;
                      dialog.Child(dialogs::frmEditB::c1 + 4).Post(BM_CLICK);
                  },
                  [&](Window box) {
                      Click(box, dialogs::frmMsg::b1 + 1);
                      editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                  }});
    EXPECT_EQ(Stored("Work"), "C:\\a");
}

TEST_F(EditGroupTest, WhatIsNoUrlIsRefused) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    for (const std::string text : {"not a url", "", "C:\\b"}) {
        Window editor;
        Edit("Work", {[&](Window dialog) {
                          editor = dialog;
                          dialog.Child(dialogs::frmEditB::c1 + 4).Post(BM_CLICK);
                      },
                      [&](Window box) {
                          box.Child(dialogs::frmMsg::Text1).SetText(text);
                          Click(box, dialogs::frmMsg::b1);
                      },
                      [&](Window box) {
                          EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(),
                                    "Sorry, couldn't recognize this as valid URL.\n"
                                    "Quon will not be able to open it, and so can not add it to the group.");
                          EXPECT_EQ(box.Child(dialogs::frmMsg::b1).Text(), "OK");
                          EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 1).IsVisible());
                          Click(box, dialogs::frmMsg::b1);
                          editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                      }});
        EXPECT_EQ(Stored("Work"), "C:\\a");
    }
}

TEST_F(EditGroupTest, DeleteItemRemovesTheSelectedRowOrTheFirstWhenNoneWasChosen) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b|C:\\c|C:\\d\r\n");
    EditAndApply("Work", [](Window dialog) {
        SelectRow(dialog, 2);
        Click(dialog, dialogs::frmEditB::c1 + 5);
    });
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\b|C:\\d");
    EditAndApply("Work", [](Window dialog) { Click(dialog, dialogs::frmEditB::c1 + 5); });
    EXPECT_EQ(Stored("Work"), "C:\\b|C:\\d");
    EditAndApply("Work", [](Window dialog) {
        SelectRow(dialog, 1);
        List(dialog).Send(WM_KEYDOWN, VK_DELETE);
    });
    EXPECT_EQ(Stored("Work"), "C:\\b");
}

TEST_F(EditGroupTest, DeletingTheOnlyItemStoresAnEmptyValue) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [](Window dialog) {
        Click(dialog, dialogs::frmEditB::c1 + 5);
        Click(dialog, dialogs::frmEditB::c1 + 5);
        EXPECT_EQ(List(dialog).Text(), "");
    });
    EXPECT_EQ(Stored("Work"), "");
    EXPECT_EQ(editor_.StoredName(), "Work");
}

TEST_F(EditGroupTest, AMemberWithASeparatorIsTwoMembersTheNextTime) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [&](Window dialog) {
        picked_ = "C:\\b|c";
        Click(dialog, dialogs::frmEditB::c1 + 0);
        SelectRow(dialog, 1);
        EXPECT_EQ(List(dialog).Text(), "C:\\b|c");
    });
    Edit("Work", {[](Window dialog) {
             SelectRow(dialog, 2);
             EXPECT_EQ(List(dialog).Text(), "c");
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
}

TEST_F(EditGroupTest, AGroupOfTwoHundredLongPathsIsKeptWhole) {
    std::vector<std::string> members;
    for (int index = 0; index < 200; ++index)
        members.push_back("C:\\Программы\\" + std::string(60, 'x') + std::to_string(index) + ".exe");
    const std::string value = win::Join(members, '|');
    ASSERT_LT(value.size(), 19900U);
    Load("[Cuts]\r\nWork=" + value + "\r\n");
    EditAndApply("Work", [&](Window dialog) {
        EXPECT_TRUE(dialog.Child(dialogs::frmEditB::Scr).IsEnabled());
        SelectRow(dialog, 199);
        EXPECT_EQ(List(dialog).Text(), members.back());
    });
    EXPECT_EQ(Stored("Work"), value);
}

TEST_F(EditGroupTest, TheBarScrollsFiftyRowsByItsSteps) {
    Load("[Cuts]\r\nWork=" + win::Join(std::vector<std::string>(50, "C:\\a"), '|') + "\r\n");
    Edit("Work", {[](Window dialog) {
             RECT frame{};
             GetClientRect(dialog.Child(dialogs::frmEditB::pFrame).Handle(), &frame);
             RECT content{};
             GetClientRect(List(dialog).Handle(), &content);
             // Fifty rows with their gaps, and what is above and below.
             EXPECT_EQ(content.bottom, 4 + 50 * 18 + 49 * 6 + 5);
             int low = 0;
             int high = 0;
             const HWND bar = dialog.Child(dialogs::frmEditB::Scr).Handle();
             GetScrollRange(bar, SB_CTL, &low, &high);
             EXPECT_EQ(high, content.bottom - frame.bottom);
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
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
}

TEST_F(EditGroupTest, TabWalksFromTheNameOverTheListToTheButtons) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Edit("Work", {[](Window dialog) {
             std::vector<int> ids;
             HWND at = dialog.Child(dialogs::frmEditB::t1 + 0).Handle();
             do {
                 ids.push_back(GetDlgCtrlID(at));
                 at = GetNextDlgTabItem(dialog.Handle(), at, FALSE);
             } while (GetDlgCtrlID(at) != dialogs::frmEditB::t1 + 0 && ids.size() < 20);
             EXPECT_THAT(ids, ElementsAre(dialogs::frmEditB::t1 + 0, dialogs::frmEditB::pBasket,
                                          dialogs::frmEditB::c1 + 0, dialogs::frmEditB::c1 + 1,
                                          dialogs::frmEditB::c1 + 4, dialogs::frmEditB::c1 + 5,
                                          dialogs::frmEditB::c1 + 2, dialogs::frmEditB::c1 + 3));
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
}

TEST_F(EditGroupTest, ASecondUseStartsAnew) {
    Load("[Cuts]\r\nWork=C:\\a\r\nPlay=C:\\b|C:\\c\r\n");
    EditAndApply("Work", [](Window) {});
    Edit("Play", {[](Window dialog) {
             EXPECT_EQ(List(dialog).Text(), "C:\\b");
             Click(dialog, dialogs::frmEditB::c1 + 3);
         }});
    EXPECT_EQ(editor_.StoredName(), "");
}

}  // namespace
}  // namespace dialogs
