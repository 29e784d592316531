// What each command of a button's menu does, in which order, with the shell's part played by the test.

#include "app/button_commands.h"

#include <commdlg.h>

#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/unit/app/button_commands_fixture.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Window;

using ButtonCommandsDesktopTest = ButtonCommandsFixture;

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
    const ModalAnswers user({testkit::Note("Couldn't make this shortcut, sorry.")});
    commands_.Assign("C:\\" + std::string(552, 'x'), state_.CurrentPlace());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonCommandsDesktopTest, AskWhatToDoWithAUsedButton) {
    LoadSingle("http://a/");
    answer_ = folder_.MakeFile("b.txt");
    const ModalAnswers user({testkit::Press(dialogs::frmMsg::b1 + 1)});
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
        editor.PostPress(dialogs::frmEditB::c1 + 2);
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
                                 editor.PostPress(dialogs::frmEditB::c1 + 4);
                             },
                             [](Window box) {
                                 box.Child(dialogs::frmMsg::Text1).SetText("http://b/");
                                 box.Press(dialogs::frmMsg::b1 + 0);
                                 Window(box.Owner()).PostPress(dialogs::frmEditB::c1 + 2);
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
            editor.Press(dialogs::frmEditB::c1 + 5);
            editor.PostPress(dialogs::frmEditB::c1 + 2);
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
            editor.Press(dialogs::frmEditB::c1 + 5);
            editor.Child(dialogs::frmEditB::t1 + 0).SetText(name);
            editor.PostPress(dialogs::frmEditB::c1 + 2);
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
    const ModalAnswers user({[](Window editor) { editor.PostPress(dialogs::frmEditB::c1 + 3); }});
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
        ULONGLONG waited = 0;
        int tries = 0;
        const testkit::RecordedCall clock =
            FAKE_CALL(GetTickCount64, [&] { return ORIGINAL_CALL(GetTickCount64)() + waited; });
        const testkit::RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD time) { waited += time; });
        const testkit::RecordedCall open = WATCH_CALL(CreateFileA, [&] { ++tries; });
        commands_.Run(kFree, state_.CurrentPlace());
        EXPECT_LE(waited, 300u);
        EXPECT_LT(tries, 100) << "it must not be tried anew for every shortcut";
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

TEST_F(ButtonCommandsDesktopTest, DoNothingForTheSeparators) {
    LoadSingle("C:\\a.txt");
    commands_.RunFileCommand(3, state_.CurrentPlace());
    for (const int separator : {3, 5, 8})
        commands_.Run(separator, state_.CurrentPlace());
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_EQ(state_.Current().FilePath, "C:\\a.txt");
}

}  // namespace
}  // namespace app
