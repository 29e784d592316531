// What the commands of a button's menu do to the file itself: copy, move, rename, recycle, delete.

#include <commdlg.h>

#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/unit/app/button_commands_fixture.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using testkit::ModalAnswers, testkit::Window;

using FileOperationsDesktopTest = ButtonCommandsFixture;

TEST_F(FileOperationsDesktopTest, CopyIntoThePickedFolderAndLeaveTheButton) {
    LoadSingle("C:\\Док\\a.txt");
    answer_ = "D:\\циљ";
    const std::string before = folder_.IniBytes();
    RunAndRead(kCopyTo, kDone);
    result_ = 5;
    RunAndRead(kCopyTo, kFailed);
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation 2 C:\\Док\\a.txt > D:\\циљ"), 2u);
}

TEST_F(FileOperationsDesktopTest, SayNothingWhenNoFolderIsPicked) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    commands_.RunFileCommand(kCopyTo, state_.CurrentPlace());
    commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
    EXPECT_EQ(log_.Count("operation"), 0u);
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(FileOperationsDesktopTest, PointTheButtonToTheMovedFileEvenIfItCouldNotBeMoved) {
    for (const int result : {0, 2}) {
        LoadSingle("C:\\Док\\a b.txt");
        state_.TipButton = 1;
        answer_ = "D:\\циљ";
        result_ = result;
        meanwhile_ = [this] { state_.Context.Select(4); };
        RunAndRead(kMoveTo, result == 0 ? kDone : kFailed);
        EXPECT_EQ(state_.Button(1).FilePath, "D:\\циљ\\a b.txt");
        EXPECT_EQ(state_.TipButton, 0);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\циљ\\a b.txt|2");
        EXPECT_EQ(state_.Context.Records.At("11"), "D:\\циљ\\a b.txt|2");
        EXPECT_TRUE(InOrder(
            log_, {"folder?", "operation 1 C:\\Док\\a b.txt > D:\\циљ", "write 11 D:\\циљ\\a b.txt|2"}));
    }
}

TEST_F(FileOperationsDesktopTest, FollowAFileThatWasMovedWithEverythingThatLeadsToIt) {
    const std::string path = folder_.MakeFile("a b.txt");
    const std::string moved = folder_.MakeFolder("циљ") + "\\a b.txt";
    Load("[Buttons]\r\n11=Име|2\r\n13=Име|5\r\n[Cuts]\r\nИме=" + path + "\r\n[Switch]\r\nИме=/x\r\n");
    win::SetTopmost(true, host_.Handle());
    answer_ = folder_.FullPath("циљ");
    meanwhile_ = [&] { MoveFileW(testkit::Wide(path).c_str(), testkit::Wide(moved).c_str()); };
    RunAndRead(kMoveTo, kDone);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), moved + "|2");
    EXPECT_EQ(folder_.IniValue("Cuts", moved), moved);
    EXPECT_EQ(folder_.IniValue("Cuts", "Име"), moved);
    EXPECT_EQ(folder_.IniValue("Switch", moved), "/x");
    buttons_.RefreshShownTab();
    EXPECT_EQ(state_.Button(1).FilePath, moved) << "the button lives on";
    EXPECT_EQ(state_.Button(1).Switch, "/x");
    EXPECT_EQ(state_.Button(3).FilePath, moved);
    EXPECT_EQ(state_.Context.Records.At("13"), "Име|5");
}

TEST_F(FileOperationsDesktopTest, ChangeNoShortcutWhenTheFileStayedWhereItWas) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    const std::string other = answer_ + "\\a.txt";
    // The shell reports success even when the user did not let a file be overwritten.
    for (const bool taken : {false, true}) {
        if (taken) CopyFileW(testkit::Wide(path).c_str(), testkit::Wide(other).c_str(), TRUE);
        for (const int result : {2, 0}) {
            LoadSingle(path);
            result_ = result;
            RunAndRead(kMoveTo, result == 0 ? kDone : kFailed);
            EXPECT_EQ(folder_.IniValue("Buttons", "11"), other + "|2");
            EXPECT_EQ(folder_.IniValue("Cuts", "Име"), path);
            EXPECT_EQ(folder_.IniValue("Cuts", other), path);
            buttons_.RefreshShownTab();
            EXPECT_EQ(folder_.IniValue("Buttons", "11"), other + "|2") << "the button lives on";
            EXPECT_EQ(state_.Button(1).FilePath, path);
        }
    }
}

TEST_F(FileOperationsDesktopTest, FollowAFileThatIsThereWhateverElseCannotBeSeen) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    const std::string moved = answer_ + "\\a.txt";
    // The shell has failed after the move, or Windows cannot tell whether the file is still at its old place.
    for (const bool failed : {false, true}) {
        LoadSingle(path);
        result_ = failed ? 2 : 0;
        const auto look = FAKE_CALL(GetFileAttributesExW,
                                    [&](LPCWSTR name, GET_FILEEX_INFO_LEVELS level, LPVOID data) -> BOOL {
                                        if (failed)
                                            return ORIGINAL_CALL(GetFileAttributesExW)(name, level, data);
                                        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
                                        return FALSE;
                                    });
        meanwhile_ = [&] { MoveFileW(testkit::Wide(path).c_str(), testkit::Wide(moved).c_str()); };
        RunAndRead(kMoveTo, failed ? kFailed : kDone);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), moved + "|2") << failed;
        EXPECT_EQ(folder_.IniValue("Cuts", moved), moved) << failed;
        EXPECT_EQ(folder_.IniValue("Cuts", "Име"), moved) << failed;
        MoveFileW(testkit::Wide(moved).c_str(), testkit::Wide(path).c_str());
    }
}

TEST_F(FileOperationsDesktopTest, FollowAMovedFileAsSoonAsThatCanBeStored) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    const std::string moved = answer_ + "\\a.txt";
    Load("[Buttons]\r\n11=Име|2\r\n13=Име|5\r\n[Cuts]\r\nИме=" + path + "\r\n");
    win::SetTopmost(true, host_.Handle());
    {
        const testkit::HeldFile held(folder_.IniPath());
        meanwhile_ = [&] { MoveFileW(testkit::Wide(path).c_str(), testkit::Wide(moved).c_str()); };
        RunAndRead(kMoveTo, kDone);
        meanwhile_ = nullptr;
        EXPECT_EQ(state_.Button(1).FilePath, moved) << "it opens its file";
    }
    buttons_.RefreshShownTab();
    EXPECT_EQ(state_.Button(1).FilePath, moved);
    EXPECT_EQ(state_.Button(3).Naziv, "Име") << "nobody frees what leads to the old place";
    testkit::WaitFor("the move is stored without the user's doing", [&] {
        return folder_.IniValue("Buttons", "11") == moved + "|2" && state_.Button(3).FilePath == moved;
    });
    EXPECT_EQ(folder_.IniValue("Cuts", "Име"), moved);
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "Име|5");
}

TEST_F(FileOperationsDesktopTest, LeaveAButtonAloneThatGotSomethingElseMeanwhile) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    for (const int command : {kMoveTo, kRecycle, kDelete}) {
        LoadSingle(path);
        meanwhile_ = [this] { EXPECT_TRUE(state_.Store().PutRecord({1, 1}, "Other|0")); };
        RunAndRead(command, kDone);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Other|0") << command;
    }
}

TEST_F(FileOperationsDesktopTest, PointToAFileInARootByOneSeparator) {
    LoadSingle("C:\\Док\\a.txt");
    answer_ = "D:\\";
    RunAndRead(kMoveTo, kDone);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\a.txt|2");
}

TEST_F(FileOperationsDesktopTest, RenameWithTheOldExtensionOrTheNewOne) {
    struct Case {
        const char* path;
        const char* answer;
        const char* renamed;
        const char* extension;
    };
    for (const Case& it : {Case{"C:\\Док\\report.txt", "notes", "C:\\Док\\notes.txt", "txt"},
                           Case{"C:\\Док\\report.txt", "notes.md", "C:\\Док\\notes.md", "txt"},
                           Case{"C:\\Док\\report.txt", "文 č", "C:\\Док\\文 č.txt", "txt"},
                           Case{"C:\\Док\\report.txt", "notes. ", "C:\\Док\\notes.txt", "txt"},
                           Case{"C:\\my.docs\\Makefile", "Rules", "C:\\my.docs\\Rules", ""}}) {
        LoadSingle(it.path);
        const ModalAnswers user(
            {[&](Window box) {
                 EXPECT_EQ(
                     box.Child(dialogs::frmMsg::l1).Text(),
                     "Enter new name for the file. If you don't specify the extension, old extension (" +
                         std::string(it.extension) + ") will be kept.)");
                 EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 0).Text(), "OK");
                 EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 1).Text(), "Cancel");
                 EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 2).IsVisible());
                 EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), "");
                 box.Child(dialogs::frmMsg::Text1).SetText(it.answer);
                 state_.Context.Select(3);
                 box.Press(dialogs::frmMsg::b1 + 0);
             },
             testkit::Note(kDone)});
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
        EXPECT_EQ(log_.Count(std::string("operation 1 ") + it.path + " > " + it.renamed), 1u) << log_.Text();
        EXPECT_EQ(state_.Button(1).FilePath, it.renamed);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), std::string(it.renamed) + "|2");
        EXPECT_EQ(state_.Context.Records.At("11"), std::string(it.renamed) + "|2");
    }
}

TEST_F(FileOperationsDesktopTest, PointTheButtonToTheNewNameEvenIfTheFileKeptItsOwn) {
    LoadSingle("C:\\Док\\report.txt");
    result_ = 2;
    const ModalAnswers user(
        {testkit::TypeAndPress("notes", dialogs::frmMsg::b1 + 0), testkit::Note(kFailed)});
    commands_.RunFileCommand(kRename, state_.CurrentPlace());
    EXPECT_EQ(state_.Button(1).FilePath, "C:\\Док\\notes.txt");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "C:\\Док\\notes.txt|2");
}

TEST_F(FileOperationsDesktopTest, RenameNothingForNoNameOrCancel) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    const ModalAnswers user({testkit::Press(dialogs::frmMsg::b1 + 0), testkit::Press(dialogs::frmMsg::b1 + 1),
                             [](Window box) { box.Post(WM_COMMAND, IDCANCEL); }});
    for (int time = 0; time < 3; ++time)
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation"), 0u);
}

TEST_F(FileOperationsDesktopTest, RefuseANameThatWouldLeadElsewhere) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    for (const char* name : {"..\\b", "b/c", "..", " . ", "D:b", "*.txt", "b?", "\"b\"", "<b", "b>", "b|c"}) {
        const ModalAnswers user(
            {testkit::TypeAndPress(name, dialogs::frmMsg::b1 + 0), testkit::Note(kFailed)});
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation"), 0u);
    EXPECT_EQ(state_.Button(1).FilePath, "C:\\a.txt");
}

/// A text of this many bytes, three to a character.
std::string Han(size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += "值";
    return text;
}

TEST_F(FileOperationsDesktopTest, DoNothingToAFileThatTheButtonCouldNotFollow) {
    // 182 characters of a folder's name make a path of 555 bytes.
    answer_ = "D:\\" + Han(552 - 7);
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    RunAndRead(kMoveTo, kFailed);
    EXPECT_EQ(folder_.IniBytes(), before);
    const std::string folder = "C:\\" + Han(300);
    LoadSingle(folder + "\\a.txt");
    const std::string second = folder_.IniBytes();
    const ModalAnswers user(
        {testkit::TypeAndPress(Han(249), dialogs::frmMsg::b1 + 0), testkit::Note(kFailed)});
    commands_.RunFileCommand(kRename, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), second);
    EXPECT_EQ(log_.Count("operation"), 0u);
    EXPECT_EQ(state_.Button(1).FilePath, folder + "\\a.txt");
    EXPECT_TRUE(state_.Context.Moved.empty());
}

TEST_F(FileOperationsDesktopTest, FollowAFileToTheLongestPathThatCanBeStored) {
    const std::string folder = "D:\\" + Han(543);  // 554 bytes with what follows
    answer_ = folder + "xx";
    LoadSingle(folder_.MakeFile("a.txt"));
    meanwhile_ = [this] { DeleteFileA(folder_.FullPath("a.txt").c_str()); };
    RunAndRead(kMoveTo, kDone);
    EXPECT_EQ(log_.Count("operation"), 1u);
    EXPECT_EQ(state_.Button(1).FilePath, answer_ + "\\a.txt");
    EXPECT_EQ(state_.Button(1).FilePath.size(), 554u);
}

TEST_F(FileOperationsDesktopTest, FreeTheButtonOfARecycledFileEvenIfItFailed) {
    for (const int result : {0, 2}) {
        LoadSingle("C:\\a.txt");
        result_ = result;
        meanwhile_ = [this] { state_.Context.Select(4); };
        RunAndRead(kRecycle, result == 0 ? kDone : kFailed);
        EXPECT_TRUE(InOrder(log_, {"operation 3 C:\\a.txt > nowhere", "topmost", "write 11 "}));
        EXPECT_TRUE(state_.Button(1).IsFree());
        EXPECT_EQ(Window(Button(1)).Text(), "Empty");
        EXPECT_EQ(state_.Context.Records.At("11"), "");
        EXPECT_EQ(folder_.IniValue("Cuts", "Име"), "C:\\a.txt") << "the shortcut stays in the list";
        EXPECT_TRUE(Window(host_.Handle()).IsTopmost());
    }
}

TEST_F(FileOperationsDesktopTest, DeleteAFileOnceThePanelIsNoLongerTopmost) {
    LoadSingle("C:\\a.txt");
    state_.TipButton = 1;
    RunAndRead(kDelete, kDone);
    EXPECT_THAT(log_.Lines(), ElementsAre("not topmost", "operation 3 C:\\a.txt > nowhere", "write 11 "));
    EXPECT_FALSE(Window(host_.Handle()).IsTopmost()) << "until the panel is shown the next time";
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(state_.TipButton, 0);
}

}  // namespace
}  // namespace app
