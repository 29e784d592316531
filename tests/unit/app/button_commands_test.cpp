// What each command of a button's menu does, in which order, with the shell's part played by the test.

#include "app/button_commands.h"

#include <windows.h>

#include <commdlg.h>
#include <gmock/gmock.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <functional>

#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/held_file.h"
#include "tests/support/modal_answers.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"
#include "tests/unit/app/panel_parts.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testkit::ModalAnswers;
using testkit::Window;

class ButtonCommandsDesktopTest : public PanelParts {
  protected:
    ButtonCommandsDesktopTest() {
        commands_.Attach(host_.Handle());
        ShowWindow(host_.Handle(), SW_SHOWNOACTIVATE);
        RecordShell();
        RecordWindow();
    }

    void RecordShell() {
        fakes_.push_back(FAKE_CALL(GetOpenFileNameW, [this](LPOPENFILENAMEW record) -> BOOL {
            NoteQuestion("file?");
            std::wcscpy(record->lpstrFile, testkit::Wide(answer_).c_str());
            return answer_.empty() ? FALSE : TRUE;
        }));
        fakes_.push_back(FAKE_CALL(SHBrowseForFolderW, [this](LPBROWSEINFOW) -> LPITEMIDLIST {
            NoteQuestion("folder?");
            return answer_.empty() ? nullptr : static_cast<LPITEMIDLIST>(CoTaskMemAlloc(2));
        }));
        fakes_.push_back(
            FAKE_CALL(SHGetPathFromIDListEx, [this](LPCITEMIDLIST, LPWSTR path, DWORD, GPFIDL_FLAGS) -> BOOL {
                std::wcscpy(path, testkit::Wide(answer_).c_str());
                return TRUE;
            }));
        fakes_.push_back(FAKE_CALL(SHFileOperationA, [this](LPSHFILEOPSTRUCTA record) {
            NoteQuestion("operation " + std::to_string(record->wFunc) + " " + record->pFrom + " > " +
                         (record->pTo != nullptr ? record->pTo : "nowhere"));
            return result_;
        }));
        fakes_.push_back(FAKE_CALL(ShellExecuteExA, [this](SHELLEXECUTEINFOA* record) -> BOOL {
            log_.Add("properties", record->lpFile);
            return TRUE;
        }));
        fakes_.push_back(
            FAKE_CALL(CreateProcessA,
                      [this](LPCSTR, LPSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD,
                             LPVOID, LPCSTR, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> BOOL {
                          log_.Add("start", line, startup->wShowWindow);
                          return FALSE;
                      }));
        fakes_.push_back(
            FAKE_CALL(WritePrivateProfileStringA, [this](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                if (std::string_view(name) == "Buttons") log_.Add("write", key, value);
                return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
            }));
    }

    void RecordWindow() {
        fakes_.push_back(FAKE_CALL(SetWindowPos,
                                   [this](HWND window, HWND after, int x, int y, int cx, int cy, UINT flags) {
                                       if (window == host_.Handle() && (flags & SWP_NOMOVE) != 0)
                                           log_.Add(after == HWND_TOPMOST ? "topmost" : "not topmost");
                                       return ORIGINAL_CALL(SetWindowPos)(window, after, x, y, cx, cy, flags);
                                   }));
    }

    /// A window of the system is open: the panel must be out of its way, and events run.
    void NoteQuestion(const std::string& what) {
        log_.Add(what);
        EXPECT_FALSE(IsWindowEnabled(host_.Handle())) << what;
        EXPECT_FALSE(Window(host_.Handle()).IsTopmost()) << what;
        if (meanwhile_) meanwhile_();
    }

    /// A button of tab 1 with a single target.
    void LoadSingle(const std::string& target) {
        Load("[Buttons]\r\n11=Име|2\r\n[Cuts]\r\nИме=" + target + "\r\n");
        win::SetTopmost(true, host_.Handle());
        log_.Clear();
    }

    /// Answers a note with its button after comparing its text.
    static ModalAnswers::Step Note(const std::string& text) {
        return [text](Window box) {
            EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), text);
            box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK);
        };
    }

    static constexpr const char* kDone = "Operation completed.";
    static constexpr const char* kFailed = "Couldn't perform the operation, sorry.";

    std::string answer_;
    int result_ = 0;
    std::function<void()> meanwhile_;
    ButtonCommands commands_{state_, dock_};
};

TEST_F(ButtonCommandsDesktopTest, AddsThePickedFileUnderItsBareName) {
    Load("[Settings]\r\n");
    answer_ = folder_.MakeFile("Писмо č.final.txt", "text");
    commands_.Run(kAddFile, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Cuts", "Писмо č.final"), answer_);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Писмо č.final|0");
    EXPECT_EQ(state_.Button(1).FilePath, answer_);
    EXPECT_TRUE(IsWindowEnabled(host_.Handle()));
    EXPECT_TRUE(InOrder(log_, {"file?", "write 11 Писмо č.final|0", "refill"}));
}

TEST_F(ButtonCommandsDesktopTest, AddsThePickedFolderUnderItsWholeName) {
    Load("[Settings]\r\n");
    answer_ = folder_.MakeFolder("Фасцикла.v2");
    commands_.Run(kAddFolder, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Cuts", "Фасцикла.v2"), answer_);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Фасцикла.v2|0");
    answer_ = "C:\\";
    state_.Context.Select(2);
    commands_.Run(kAddFolder, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "C:|0") << "a drive has no name but its own";
}

TEST_F(ButtonCommandsDesktopTest, AddNothingWhenThePickerIsCancelled) {
    Load("[Settings]\r\n");
    const std::string before = folder_.IniBytes();
    commands_.Run(kAddFile, state_.CurrentPlace());
    commands_.Run(kAddFolder, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_THAT(log_.Lines(), ElementsAre("file?", "folder?"));
}

TEST_F(ButtonCommandsDesktopTest, KeepTheirButtonWhateverHappensWhileThePickerIsOpen) {
    Load("[Settings]\r\n");
    answer_ = folder_.MakeFile("a.txt");
    meanwhile_ = [this] { state_.Context.Select(7); };
    commands_.Run(kAddFile, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "a|0");
    EXPECT_NE(state_.Button(7).Naziv, "a");
}

TEST_F(ButtonCommandsDesktopTest, MakeThePanelTopmostAgainAfterAPicker) {
    Load("[Settings]\r\n");
    win::SetTopmost(true, host_.Handle());
    commands_.Run(kAddFile, state_.CurrentPlace());
    EXPECT_TRUE(Window(host_.Handle()).IsTopmost());
    EXPECT_TRUE(IsWindowEnabled(host_.Handle()));
}

TEST_F(ButtonCommandsDesktopTest, RefuseATargetThatCannotBeReadBackWhole) {
    Load("[Settings]\r\n");
    const std::string before = folder_.IniBytes();
    const ModalAnswers user({Note("Couldn't make this shortcut, sorry.")});
    commands_.Assign("C:\\" + std::string(552, 'x'), state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, AskWhatToDoWithAUsedButton) {
    LoadSingle("http://a/");
    answer_ = folder_.MakeFile("b.txt");
    const ModalAnswers user({[](Window box) { box.Child(dialogs::frmMsg::b1 + 1).Send(BM_CLICK); }});
    commands_.Run(kAddFile, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "b|0");
}

TEST_F(ButtonCommandsDesktopTest, AssignARunningProgramByItsPath) {
    Load("[Settings]\r\n");
    const std::string program = folder_.MakeFile("Ручно č.exe");
    commands_.Assign(program, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Cuts", "Ручно č"), program);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Ручно č|0");
    const std::string before = folder_.IniBytes();
    commands_.Assign("", state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, ShowPropertiesAndFindTheTargetOfAButtonThatHasOne) {
    LoadSingle("http://a b/");
    commands_.Run(kProperties, state_.CurrentPlace());
    commands_.Run(kFindTarget, state_.CurrentPlace());
    EXPECT_THAT(log_.Lines(), ElementsAre("properties http://a b/", "start explorer /select,http://a b/ 1"));
    log_.Clear();
    state_.Context.Select(2);
    for (const int command : {int{kProperties}, int{kFindTarget}, int{kChangeIcon}, 3, 5, 8, 9, 10})
        commands_.Run(command, state_.CurrentPlace());
    for (const int command : {0, 1, 2, 3, 4, 5})
        commands_.RunFileCommand(command, state_.CurrentPlace());
    EXPECT_THAT(log_.Lines(), IsEmpty()) << "nothing to act on, separators and submenus";
}

TEST_F(ButtonCommandsDesktopTest, EditAGroupWithThePanelOutAndBindAFreeButtonToWhatWasStored) {
    Load("[Cuts]\r\nG=http://a/|http://b/\r\n");
    dock_.ShowQuon(false, true);
    log_.Clear();
    const ModalAnswers user({[this](Window editor) {
        EXPECT_FALSE(IsWindowEnabled(host_.Handle()));
        EXPECT_FALSE(dock_.Hidden());
        dock_.ShowQuon(false, true);
        EXPECT_TRUE(editor.IsTopmost());
        EXPECT_EQ(editor.Child(dialogs::frmEditB::t1 + 0).Text(), "Empty");
        log_.Add("editor");
        state_.Context.Select(5);
        editor.Child(dialogs::frmEditB::t1 + 0).SetText("Нова");
        editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
    }});
    commands_.Run(kGroup, state_.CurrentPlace());
    EXPECT_TRUE(InOrder(log_, {"topmost", "editor", "topmost", "write 11 Нова|0"})) << log_.Text();
    EXPECT_FALSE(dock_.Hidden()) << "brought out once more";
    EXPECT_EQ(state_.PopCount, 10);
    EXPECT_EQ(log_.Count("refill"), 1u);
}

TEST_F(ButtonCommandsDesktopTest, MakeAGroupOfASingleShortcutAndShowIt) {
    LoadSingle("http://a/");
    const ModalAnswers user({[](Window editor) {
                                 EXPECT_EQ(editor.Child(dialogs::frmEditB::t1 + 0).Text(), "Име");
                                 editor.Child(dialogs::frmEditB::c1 + 4).Post(BM_CLICK);
                             },
                             [](Window box) {
                                 box.Child(dialogs::frmMsg::Text1).SetText("http://b/");
                                 box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK);
                                 Window(box.Owner()).Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
                             }});
    commands_.Run(kGroup, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Cuts", "Име"), "http://a/|http://b/");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Име|2") << "the record names the group already";
    EXPECT_TRUE(state_.Button(1).Group);
}

TEST_F(ButtonCommandsDesktopTest, FreeAButtonWhoseGroupIsLeftEmptyAndBindNoneToAnEmptyOne) {
    Load("[Buttons]\r\n11=G|0\r\n[Cuts]\r\nG=http://a/\r\n");
    for (const int button : {1, 2}) {
        state_.Context.Select(button);
        const ModalAnswers user({[](Window editor) {
            editor.Child(dialogs::frmEditB::c1 + 5).Send(BM_CLICK);
            editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
        }});
        commands_.Run(kGroup, state_.CurrentPlace());
        EXPECT_TRUE(state_.Button(button).IsFree()) << button;
        EXPECT_EQ(folder_.IniValue("Buttons", state_.Context.CurrentButtonKey), "") << button;
        EXPECT_EQ(state_.Context.Records.At(state_.Context.CurrentButtonKey), "") << button;
    }
}

TEST_F(ButtonCommandsDesktopTest, ShowTheEditedGroupOnAllItsButtons) {
    Load(
        "[Buttons]\r\n11=G|0\r\n12=Other|0\r\n13=G|0\r\n14=Taken|0\r\n[Cuts]\r\n"
        "G=http://a/|http://b/|http://c/\r\nOther=http://o/\r\nTaken=http://t/\r\n");
    const auto edit = [this](int button, const std::string& name) {
        state_.Context.Select(button);
        const ModalAnswers user({[name](Window editor) {
            editor.Child(dialogs::frmEditB::c1 + 5).Send(BM_CLICK);
            editor.Child(dialogs::frmEditB::t1 + 0).SetText(name);
            editor.Child(dialogs::frmEditB::c1 + 2).Post(BM_CLICK);
        }});
        commands_.Run(kGroup, state_.CurrentPlace());
        EXPECT_EQ(state_.Context.CurrentButtonIndex, button);
    };
    state_.Button(2).FilePath = "not read again";
    edit(1, "G");
    EXPECT_EQ(state_.Button(3).FilePath, "http://b/|http://c/");
    EXPECT_EQ(state_.Button(2).FilePath, "not read again");
    // The first button of that name is found by the name, the other one is where the command was given.
    edit(3, "Taken");
    for (const int button : {1, 3, 4})
        EXPECT_EQ(Window(Button(button)).Text() + " " + state_.Button(button).FilePath, "Taken http://c/");
}

TEST_F(ButtonCommandsDesktopTest, ChangeNothingWhenTheGroupEditorIsCancelled) {
    LoadSingle("http://a/");
    const std::string before = folder_.IniBytes();
    const ModalAnswers user({[](Window editor) { editor.Child(dialogs::frmEditB::c1 + 3).Post(BM_CLICK); }});
    commands_.Run(kGroup, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(state_.PopCount, 10);
}

TEST_F(ButtonCommandsDesktopTest, OfferTheIconsOfTheProgramThatOpensTheTarget) {
    const std::string target = folder_.MakeFile("Слика.txt");
    LoadSingle(target);
    const auto program = FAKE_CALL(FindExecutableA, [&](LPCSTR file, LPCSTR, LPSTR answer) {
        EXPECT_EQ(std::string(file), target);
        std::strcpy(answer, "C:\\viewer.exe");
        return reinterpret_cast<HINSTANCE>(33);
    });
    std::vector<std::string> asked;
    const auto extract = FAKE_CALL(ExtractIconA, [&](HINSTANCE, LPCSTR file, UINT index) -> HICON {
        asked.push_back(std::string(file) + " " + std::to_string(index));
        return index < 3 ? CopyIcon(LoadIcon(nullptr, IDI_APPLICATION)) : nullptr;
    });
    const ModalAnswers user({[this](Window chooser) {
        log_.Clear();
        state_.Context.Select(5);
        state_.TipButton = 1;
        chooser.Child(dialogs::IcoChooser::p2 + 1).Post(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        chooser.Child(dialogs::IcoChooser::p2 + 1).Post(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    }});
    commands_.Run(kChangeIcon, state_.CurrentPlace());
    EXPECT_THAT(asked, ::testing::IsSupersetOf({"C:\\viewer.exe 0", "C:\\viewer.exe 3"}));
    EXPECT_EQ(asked.back(), "C:\\viewer.exe 1") << "the face is painted with the new icon";
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Име|1");
    EXPECT_EQ(state_.Context.Records.At("11"), "Име|1");
    EXPECT_EQ(state_.Button(1).FileIcon, 1);
    EXPECT_EQ(state_.TipButton, 0) << "the next hover has to build the tip anew";
}

TEST_F(ButtonCommandsDesktopTest, KeepTheIconWhenTheChooserIsDismissed) {
    LoadSingle("http://a/");
    const std::string before = folder_.IniBytes();
    const ModalAnswers user({[](Window chooser) { chooser.Post(WM_COMMAND, IDCANCEL); }});
    commands_.Run(kChangeIcon, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, CopyIntoThePickedFolderAndLeaveTheButton) {
    LoadSingle("C:\\Док\\a.txt");
    answer_ = "D:\\циљ";
    const std::string before = folder_.IniBytes();
    {
        const ModalAnswers user({Note(kDone)});
        commands_.RunFileCommand(kCopyTo, state_.CurrentPlace());
    }
    result_ = 5;
    const ModalAnswers user({Note(kFailed)});
    commands_.RunFileCommand(kCopyTo, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation 2 C:\\Док\\a.txt > D:\\циљ"), 2u);
}

TEST_F(ButtonCommandsDesktopTest, SayNothingWhenNoFolderIsPicked) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    commands_.RunFileCommand(kCopyTo, state_.CurrentPlace());
    commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
    EXPECT_EQ(log_.Count("operation"), 0u);
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, PointTheButtonToTheMovedFileEvenIfItCouldNotBeMoved) {
    for (const int result : {0, 2}) {
        LoadSingle("C:\\Док\\a b.txt");
        state_.TipButton = 1;
        answer_ = "D:\\циљ";
        result_ = result;
        meanwhile_ = [this] { state_.Context.Select(4); };
        const ModalAnswers user({Note(result == 0 ? kDone : kFailed)});
        commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
        EXPECT_EQ(state_.Button(1).FilePath, "D:\\циљ\\a b.txt");
        EXPECT_EQ(state_.TipButton, 0);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\циљ\\a b.txt|2");
        EXPECT_EQ(state_.Context.Records.At("11"), "D:\\циљ\\a b.txt|2");
        EXPECT_TRUE(InOrder(
            log_, {"folder?", "operation 1 C:\\Док\\a b.txt > D:\\циљ", "write 11 D:\\циљ\\a b.txt|2"}));
    }
}

TEST_F(ButtonCommandsDesktopTest, FollowAFileThatWasMovedWithEverythingThatLeadsToIt) {
    const std::string path = folder_.MakeFile("a b.txt");
    const std::string moved = folder_.MakeFolder("циљ") + "\\a b.txt";
    Load("[Buttons]\r\n11=Име|2\r\n13=Име|5\r\n[Cuts]\r\nИме=" + path + "\r\n[Switch]\r\nИме=/x\r\n");
    win::SetTopmost(true, host_.Handle());
    answer_ = folder_.FullPath("циљ");
    meanwhile_ = [&] { MoveFileW(testkit::Wide(path).c_str(), testkit::Wide(moved).c_str()); };
    const ModalAnswers user({Note(kDone)});
    commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
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

TEST_F(ButtonCommandsDesktopTest, ChangeNoShortcutWhenTheFileStayedWhereItWas) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    const std::string other = answer_ + "\\a.txt";
    // The shell reports success even when the user did not let a file be overwritten.
    for (const bool taken : {false, true}) {
        if (taken) CopyFileW(testkit::Wide(path).c_str(), testkit::Wide(other).c_str(), TRUE);
        for (const int result : {2, 0}) {
            LoadSingle(path);
            result_ = result;
            const ModalAnswers user({Note(result == 0 ? kDone : kFailed)});
            commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
            EXPECT_EQ(folder_.IniValue("Buttons", "11"), other + "|2");
            EXPECT_EQ(folder_.IniValue("Cuts", "Име"), path);
            EXPECT_EQ(folder_.IniValue("Cuts", other), path);
            buttons_.RefreshShownTab();
            EXPECT_EQ(folder_.IniValue("Buttons", "11"), other + "|2") << "the button lives on";
            EXPECT_EQ(state_.Button(1).FilePath, path);
        }
    }
}

TEST_F(ButtonCommandsDesktopTest, FollowAFileThatIsThereWhateverElseCannotBeSeen) {
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
        const ModalAnswers user({Note(failed ? kFailed : kDone)});
        commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), moved + "|2") << failed;
        EXPECT_EQ(folder_.IniValue("Cuts", moved), moved) << failed;
        EXPECT_EQ(folder_.IniValue("Cuts", "Име"), moved) << failed;
        MoveFileW(testkit::Wide(moved).c_str(), testkit::Wide(path).c_str());
    }
}

TEST_F(ButtonCommandsDesktopTest, FollowAMovedFileAsSoonAsThatCanBeStored) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    const std::string moved = answer_ + "\\a.txt";
    Load("[Buttons]\r\n11=Име|2\r\n13=Име|5\r\n[Cuts]\r\nИме=" + path + "\r\n");
    win::SetTopmost(true, host_.Handle());
    {
        const testkit::HeldFile held(folder_.IniPath());
        meanwhile_ = [&] { MoveFileW(testkit::Wide(path).c_str(), testkit::Wide(moved).c_str()); };
        const ModalAnswers user({Note(kDone)});
        commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
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

TEST_F(ButtonCommandsDesktopTest, LeaveAButtonAloneThatGotSomethingElseMeanwhile) {
    const std::string path = folder_.MakeFile("a.txt");
    answer_ = folder_.MakeFolder("target");
    for (const int command : {kMoveTo, kRecycle, kDelete}) {
        LoadSingle(path);
        meanwhile_ = [this] { EXPECT_TRUE(state_.Store().PutRecord({1, 1}, "Other|0")); };
        const ModalAnswers user({Note(kDone)});
        commands_.RunFileCommand(command, state_.CurrentPlace());
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Other|0") << command;
    }
}

TEST_F(ButtonCommandsDesktopTest, FreeEveryShownButtonOfAShortcutThatIsFreed) {
    Load("[Buttons]\r\n11=A|0\r\n12=B|0\r\n13=a|0\r\n[Cuts]\r\nA=http://a/\r\nB=http://b/\r\n");
    commands_.Run(kFree, state_.CurrentPlace());
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_TRUE(state_.Button(3).IsFree());
    EXPECT_EQ(Window(Button(3)).Text(), "Empty");
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "");
    EXPECT_EQ(state_.Button(2).Naziv, "B");
}

TEST_F(ButtonCommandsDesktopTest, KeepTheButtonThatCouldNotBeFreed) {
    std::string cuts;
    for (int index = 0; index < 300; ++index)
        cuts += "name " + std::to_string(index) + "=http://a/\r\n";
    Load("[Buttons]\r\n11=A|0\r\n[Cuts]\r\n" + cuts + "A=http://a/\r\n");
    const std::string before = folder_.IniBytes();
    {
        const testkit::HeldFile held(folder_.IniPath());
        const ULONGLONG begun = GetTickCount64();
        commands_.Run(kFree, state_.CurrentPlace());
        EXPECT_LT(GetTickCount64() - begun, 3000u) << "it must not be tried anew for every shortcut";
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(state_.Button(1).Naziv, "A");
    EXPECT_EQ(state_.Context.Records.At("11"), "A|0");
}

TEST_F(ButtonCommandsDesktopTest, OpenNoEditorOnAGroupThatCannotBeRead) {
    LoadSingle("http://a/");
    const std::string before = folder_.IniBytes();
    const ModalAnswers nobody({});
    {
        const testkit::HeldFile held(folder_.IniPath());
        commands_.Run(kGroup, state_.CurrentPlace());
    }
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, PointToAFileInARootByOneSeparator) {
    LoadSingle("C:\\Док\\a.txt");
    answer_ = "D:\\";
    const ModalAnswers user({Note(kDone)});
    commands_.RunFileCommand(kMoveTo, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\a.txt|2");
}

TEST_F(ButtonCommandsDesktopTest, RenameWithTheOldExtensionOrTheNewOne) {
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
                 box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK);
             },
             Note(kDone)});
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
        EXPECT_EQ(log_.Count(std::string("operation 1 ") + it.path + " > " + it.renamed), 1u) << log_.Text();
        EXPECT_EQ(state_.Button(1).FilePath, it.renamed);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), std::string(it.renamed) + "|2");
        EXPECT_EQ(state_.Context.Records.At("11"), std::string(it.renamed) + "|2");
    }
}

TEST_F(ButtonCommandsDesktopTest, PointTheButtonToTheNewNameEvenIfTheFileKeptItsOwn) {
    LoadSingle("C:\\Док\\report.txt");
    result_ = 2;
    const ModalAnswers user({[](Window box) {
                                 box.Child(dialogs::frmMsg::Text1).SetText("notes");
                                 box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK);
                             },
                             Note(kFailed)});
    commands_.RunFileCommand(kRename, state_.CurrentPlace());
    EXPECT_EQ(state_.Button(1).FilePath, "C:\\Док\\notes.txt");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "C:\\Док\\notes.txt|2");
}

TEST_F(ButtonCommandsDesktopTest, RefuseAButtonOutsideTheNine) {
    Load("[Buttons]\r\n11=A|0\r\n[Cuts]\r\nA=http://a/\r\n");
    const std::string before = folder_.IniBytes();
    answer_ = folder_.MakeFile("a.txt");
    for (const int index : {-1, 0, 10}) {
        state_.Context.Select(index);
        for (const int command : {kAddFile, kAddFolder, kGroup, kFree, kProperties, kFindTarget, kChangeIcon})
            EXPECT_THROW(commands_.Run(command, state_.CurrentPlace()), win::SubscriptError)
                << index << " " << command;
        EXPECT_THROW(commands_.Assign(answer_, state_.CurrentPlace()), win::SubscriptError) << index;
        for (const int command : {kCopyTo, kMoveTo, kRename, kRecycle, kDelete})
            EXPECT_THROW(commands_.RunFileCommand(command, state_.CurrentPlace()), win::SubscriptError)
                << index << " " << command;
    }
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, RenameNothingForNoNameOrCancel) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    const ModalAnswers user({[](Window box) { box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK); },
                             [](Window box) { box.Child(dialogs::frmMsg::b1 + 1).Send(BM_CLICK); },
                             [](Window box) { box.Post(WM_COMMAND, IDCANCEL); }});
    for (int time = 0; time < 3; ++time)
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation"), 0u);
}

TEST_F(ButtonCommandsDesktopTest, RefuseANameThatWouldLeadElsewhere) {
    LoadSingle("C:\\a.txt");
    const std::string before = folder_.IniBytes();
    for (const char* name : {"..\\b", "b/c", "..", " . ", "D:b", "*.txt", "b?", "\"b\"", "<b", "b>", "b|c"}) {
        const ModalAnswers user({[&](Window box) {
                                     box.Child(dialogs::frmMsg::Text1).SetText(name);
                                     box.Child(dialogs::frmMsg::b1 + 0).Send(BM_CLICK);
                                 },
                                 Note(kFailed)});
        commands_.RunFileCommand(kRename, state_.CurrentPlace());
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(log_.Count("operation"), 0u);
    EXPECT_EQ(state_.Button(1).FilePath, "C:\\a.txt");
}

TEST_F(ButtonCommandsDesktopTest, DoNothingForTheSeparators) {
    LoadSingle("C:\\a.txt");
    commands_.RunFileCommand(3, state_.CurrentPlace());
    for (const int separator : {3, 5, 8})
        commands_.Run(separator, state_.CurrentPlace());
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_EQ(state_.Current().FilePath, "C:\\a.txt");
}

TEST_F(ButtonCommandsDesktopTest, FreeTheButtonOfARecycledFileEvenIfItFailed) {
    for (const int result : {0, 2}) {
        LoadSingle("C:\\a.txt");
        result_ = result;
        meanwhile_ = [this] { state_.Context.Select(4); };
        const ModalAnswers user({Note(result == 0 ? kDone : kFailed)});
        commands_.RunFileCommand(kRecycle, state_.CurrentPlace());
        EXPECT_TRUE(InOrder(log_, {"operation 3 C:\\a.txt > nowhere", "topmost", "write 11 "}));
        EXPECT_TRUE(state_.Button(1).IsFree());
        EXPECT_EQ(Window(Button(1)).Text(), "Empty");
        EXPECT_EQ(state_.Context.Records.At("11"), "");
        EXPECT_EQ(folder_.IniValue("Cuts", "Име"), "C:\\a.txt") << "the shortcut stays in the list";
        EXPECT_TRUE(Window(host_.Handle()).IsTopmost());
    }
}

TEST_F(ButtonCommandsDesktopTest, DeleteAFileOnceThePanelIsNoLongerTopmost) {
    LoadSingle("C:\\a.txt");
    state_.TipButton = 1;
    const ModalAnswers user({Note(kDone)});
    commands_.RunFileCommand(kDelete, state_.CurrentPlace());
    EXPECT_THAT(log_.Lines(), ElementsAre("not topmost", "operation 3 C:\\a.txt > nowhere", "write 11 "));
    EXPECT_FALSE(Window(host_.Handle()).IsTopmost()) << "until the panel is shown the next time";
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(state_.TipButton, 0);
}

}  // namespace
}  // namespace app
