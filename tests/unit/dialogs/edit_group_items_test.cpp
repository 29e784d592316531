// The items of the group editor: added, refused, deleted.

#include "config/ini.h"
#include "tests/unit/dialogs/edit_group_fixture.h"

namespace dialogs {
namespace {

class EditGroupItemsTest : public EditGroupTest {
  protected:
    /// Has the group "Work" ask for an address, answers, and applies.
    void AskForAUrl(const std::function<void(Window editor, Window box)>& answer) {
        Window editor;
        Edit("Work", {[&](Window dialog) {
                          editor = dialog;
                          dialog.PostPress(frmEditB::c1 + 4);
                      },
                      [&](Window box) {
                          answer(editor, box);
                          editor.PostPress(frmEditB::c1 + 2);
                      }});
    }
};

TEST_F(EditGroupItemsTest, AddsNothingThatCouldNotBeReadBack) {
    const std::string item = "C:\\" + std::string(300, 'x');
    Load("[Cuts]\r\nWork=" + item + "\r\n");
    const auto refuse = testkit::Note("Couldn't make this shortcut, sorry.");
    // 303 + 1 + 251 bytes are one too many.
    picked_ = "C:\\" + std::string(248, 'y');
    Edit("Work", {testkit::Press(frmEditB::c1 + 0),
                  [&](Window box) {
                      refuse(box);
                      box.Owner().PostPress(frmEditB::c1 + 1);
                  },
                  [&](Window box) {
                      refuse(box);
                      box.Owner().PostPress(frmEditB::c1 + 4);
                  },
                  testkit::TypeAndPress("http://" + std::string(244, 'z'), frmMsg::b1),
                  [&](Window box) {
                      refuse(box);
                      EXPECT_EQ(editor_.ItemCount(), 1);
                      picked_.pop_back();
                      box.Owner().Press(frmEditB::c1 + 0);
                      EXPECT_EQ(editor_.ItemCount(), 2);
                      box.Owner().PostPress(frmEditB::c1 + 2);
                  }});
    EXPECT_EQ(Stored("Work"), item + "|" + picked_);
    EXPECT_EQ(config::ReadIni("Cuts", "Work").size(), 554u);
}

TEST_F(EditGroupItemsTest, AddsNothingToAGroupThatIsTooLongAlready) {
    const std::string item = "C:\\" + std::string(397, 'x');
    Load("[Cuts]\r\nWork=" + item + "|" + item + "\r\n");
    picked_ = "C:\\" + std::string(180, 'y');
    Edit("Work", {[](Window dialog) {
                      dialog.Press(frmEditB::c1 + frmEditB::kDeleteItem);
                      dialog.Press(frmEditB::c1 + frmEditB::kAddFile);
                  },
                  [&](Window box) {
                      EXPECT_EQ(box.Child(frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
                      box.Press(frmMsg::b1);
                      EXPECT_EQ(editor_.ItemCount(), 1);
                      box.Owner().PostPress(frmEditB::c1 + frmEditB::kCancel);
                  }});
    EXPECT_EQ(Stored("Work"), item + "|" + item);
}

TEST_F(EditGroupItemsTest, AUrlWithABarStaysOneItem) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    Edit("Work", {testkit::Press(frmEditB::c1 + 4), [](Window box) {
                      box.Child(frmMsg::Text1).SetText("http://a/b|c");
                      box.Owner().PostPress(frmEditB::c1 + 2);
                      box.Press(frmMsg::b1);
                  }});
    EXPECT_EQ(Stored("Work"), "C:\\a|http://a/b%7Cc");
}

TEST_F(EditGroupItemsTest, PickedFilesAndFoldersBecomeRowsAtTheEnd) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [&](Window dialog) {
        picked_ = "C:\\Докуме́нти\\文.txt";
        dialog.Press(frmEditB::c1 + 0);
        picked_ = "C:\\фасцикла";
        dialog.Press(frmEditB::c1 + 1);
        picked_ = "";
        dialog.Press(frmEditB::c1 + 0);
        dialog.Press(frmEditB::c1 + 1);
        EXPECT_FALSE(enabledMeanwhile_);
        EXPECT_TRUE(dialog.IsEnabled());
        EXPECT_TRUE(dialog.IsTopmost());
    });
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\Докуме́нти\\文.txt|C:\\фасцикла");
}

TEST_F(EditGroupItemsTest, AUrlIsAskedForWithItsBeginning) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    AskForAUrl([&](Window editor, Window box) {
        EXPECT_EQ(box.Owner(), editor);
        EXPECT_EQ(box.Child(frmMsg::l1).Text(),
                  "Enter complete URL (please include 'http://' or similar if exists): ");
        EXPECT_EQ(box.Child(frmMsg::Text1).Text(), "http://");
        EXPECT_EQ(box.Child(frmMsg::b1).Text(), "OK");
        EXPECT_EQ(box.Child(frmMsg::b1 + 1).Text(), "Cancel");
        EXPECT_FALSE(box.Child(frmMsg::b1 + 2).IsVisible());
        box.Child(frmMsg::Text1).SetText("https://пример.example/文?a=b");
        box.Press(frmMsg::b1);
    });
    EXPECT_EQ(Stored("Work"), "C:\\a|https://пример.example/文?a=b");
}

TEST_F(EditGroupItemsTest, CancelInTheUrlPromptAddsNothingAndSaysNothing) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    AskForAUrl([&](Window, Window box) { box.Press(frmMsg::b1 + 1); });
    EXPECT_EQ(Stored("Work"), "C:\\a");
}

TEST_F(EditGroupItemsTest, WhatIsNoUrlIsRefused) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    for (const std::string text : {"not a url", "", "C:\\b"}) {
        Window editor;
        Edit("Work", {[&](Window dialog) {
                          editor = dialog;
                          dialog.PostPress(frmEditB::c1 + 4);
                      },
                      testkit::TypeAndPress(text, frmMsg::b1),
                      [&](Window box) {
                          EXPECT_EQ(box.Child(frmMsg::l1).Text(),
                                    "Sorry, couldn't recognize this as valid URL.\n"
                                    "Quon will not be able to open it, and so can not add it to the group.");
                          EXPECT_EQ(box.Child(frmMsg::b1).Text(), "OK");
                          EXPECT_FALSE(box.Child(frmMsg::b1 + 1).IsVisible());
                          box.Press(frmMsg::b1);
                          editor.PostPress(frmEditB::c1 + 2);
                      }});
        EXPECT_EQ(Stored("Work"), "C:\\a");
    }
}

TEST_F(EditGroupItemsTest, DeleteItemRemovesTheSelectedRowOrTheFirstWhenNoneWasChosen) {
    Load("[Cuts]\r\nWork=C:\\a|C:\\b|C:\\c|C:\\d\r\n");
    EditAndApply("Work", [](Window dialog) {
        SelectRow(dialog, 2);
        dialog.Press(frmEditB::c1 + 5);
    });
    EXPECT_EQ(Stored("Work"), "C:\\a|C:\\b|C:\\d");
    EditAndApply("Work", testkit::Press(frmEditB::c1 + 5));
    EXPECT_EQ(Stored("Work"), "C:\\b|C:\\d");
    EditAndApply("Work", [](Window dialog) {
        SelectRow(dialog, 1);
        List(dialog).Send(WM_KEYDOWN, VK_DELETE);
    });
    EXPECT_EQ(Stored("Work"), "C:\\b");
}

TEST_F(EditGroupItemsTest, DeletingTheOnlyItemStoresAnEmptyValue) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [](Window dialog) {
        dialog.Press(frmEditB::c1 + 5);
        dialog.Press(frmEditB::c1 + 5);
        EXPECT_EQ(List(dialog).Text(), "");
    });
    EXPECT_EQ(Stored("Work"), "");
    EXPECT_EQ(editor_.StoredName(), "Work");
}

TEST_F(EditGroupItemsTest, AMemberWithASeparatorIsTwoMembersTheNextTime) {
    Load("[Cuts]\r\nWork=C:\\a\r\n");
    EditAndApply("Work", [&](Window dialog) {
        picked_ = "C:\\b|c";
        dialog.Press(frmEditB::c1 + 0);
        SelectRow(dialog, 1);
        EXPECT_EQ(List(dialog).Text(), "C:\\b|c");
    });
    Look("Work", [](Window dialog) {
        SelectRow(dialog, 2);
        EXPECT_EQ(List(dialog).Text(), "c");
    });
}

TEST_F(EditGroupItemsTest, AGroupOfTwoHundredLongPathsIsKeptWhole) {
    std::vector<std::string> members;
    for (int index = 0; index < 200; ++index)
        members.push_back("C:\\Программы\\" + std::string(60, 'x') + std::to_string(index) + ".exe");
    const std::string value = win::Join(members, '|');
    ASSERT_LT(value.size(), 19900U);
    Load("[Cuts]\r\nWork=" + value + "\r\n");
    EditAndApply("Work", [&](Window dialog) {
        EXPECT_TRUE(dialog.Child(frmEditB::Scr).IsEnabled());
        SelectRow(dialog, 199);
        EXPECT_EQ(List(dialog).Text(), members.back());
    });
    EXPECT_EQ(Stored("Work"), value);
}

}  // namespace
}  // namespace dialogs
