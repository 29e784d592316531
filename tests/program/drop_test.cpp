// Drops from another program onto the buttons: what becomes a shortcut, what is asked and what is refused.

#include "tests/program/quon_test.h"
#include "tests/support/drag_source.h"

namespace testkit {
namespace {

constexpr char kCannotMake[] = "Couldn't make this shortcut, sorry.";
constexpr char kReplaceOrGroup[] =
    "Do you want to replace the shortcut or create a group?\r\n(Enter group name)";
constexpr char kNoSwitchInGroups[] =
    "This shortcut has command switch. Quon will add it to the group, but you can use command switches only "
    "on non group buttons.";

class DropTest : public QuonTest {
  protected:
    /// Shows tab 2, so that a key can be told from a button's number.
    void Start() {
        ini_.current_tab = 2;
        folder_.WriteIniText(ini_.Text());
        quon_.emplace(folder_);
        quon_->WaitUntilPainted();
        quon_->Program().WaitUntilIdle();
    }
    DWORD Drop(const DragOffer& offer, int button) {
        return source_.Drop(offer, quon_->Button(button).Centre());
    }
    /// Drops onto a used button and gives the question.
    MessageBoxWindow DropAndBeAsked(const DragOffer& offer, int button) {
        EXPECT_EQ(Drop(offer, button), static_cast<DWORD>(DROPEFFECT_COPY));
        return MessageBoxWindow::Wait(quon_->Id());
    }
    void ExpectNote(const std::string& text) {
        const MessageBoxWindow note = MessageBoxWindow::Wait(quon_->Id());
        EXPECT_EQ(note.Text(), text);
        EXPECT_EQ(note.Button(0).Text(), "OK");
        EXPECT_FALSE(note.Button(1).IsVisible());
        EXPECT_FALSE(note.Input().IsVisible());
        note.ClickButton(0);
    }
    std::optional<std::string> Cut(const std::string& name) const { return folder_.IniValue("Cuts", name); }
    std::optional<std::string> Record(const std::string& key) const {
        return folder_.IniValue("Buttons", key);
    }
    std::optional<std::string> Switch(const std::string& name) const {
        return folder_.IniValue("Switch", name);
    }

    ProgramFolder files_{"drop"};
    QuonIni ini_;
    DragSource source_{files_};
    std::optional<QuonPanel> quon_;
    const std::string file_ = files_.MakeFile("Заметки.txt");
    const std::string other_ = files_.MakeFile("文書.txt");
    const std::string third_ = files_.MakeFile("Żółw.txt");
};

TEST_F(DropTest, FreeButtonsTakeFilesFoldersLinksAndUrlsWithoutAQuestion) {
    const std::string link =
        files_.MakeLink("Shortcut to it.lnk", {.target = other_, .arguments = "/a \"b c\""});
    const std::string place = files_.MakeFolder("Папка 箱");
    Start();
    EXPECT_EQ(Drop({.files = {file_, other_, third_}}, 1), static_cast<DWORD>(DROPEFFECT_COPY));
    quon_->ExpectName(1, "Заметки");
    Drop({.files = {place}}, 2);
    quon_->ExpectName(2, "Папка 箱");
    Drop({.files = {link}}, 3);
    quon_->ExpectName(3, "文書");
    Drop({.text = "https://example.org/мир/page.html\r\nA page\r\nmore"}, 4);
    quon_->ExpectName(4, "page");
    Drop({.text = third_}, 5);
    quon_->ExpectName(5, "Żółw");
    Drop({.files = {file_}, .text = "https://example.org/first.html"}, 6);
    quon_->ExpectName(6, "first");

    EXPECT_EQ(Record("21"), "Заметки|0");
    EXPECT_EQ(Cut("Заметки"), file_);
    EXPECT_EQ(Record("22"), "Папка 箱|0");
    EXPECT_EQ(Cut("Папка 箱"), place);
    EXPECT_EQ(Record("23"), "文書|0");
    EXPECT_EQ(Cut("文書"), other_);
    EXPECT_EQ(Switch("文書"), "/a \"b c\"");
    EXPECT_EQ(Record("24"), "page|0");
    EXPECT_EQ(Cut("page"), "https://example.org/мир/page.html");
    EXPECT_EQ(Record("25"), "Żółw|0");
    EXPECT_EQ(Cut("Żółw"), third_) << "only the first of several files counts, and this one came by itself";
    EXPECT_EQ(Record("26"), "first|0") << "text goes before files";
    EXPECT_EQ(folder_.Ini().Keys("Cuts").size(), 6u);
    EXPECT_EQ(folder_.Ini().Keys("Switch").size(), 1u);
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
}

TEST_F(DropTest, TheQuestionOffersTheButtonsNameAndCancellingItChangesNothing) {
    ini_.AddShortcut("21", "Old Ⅸ", file_);
    Start();
    const std::string before = folder_.IniBytes();
    const MessageBoxWindow question = DropAndBeAsked({.files = {other_}}, 1);
    EXPECT_EQ(question.Text(), kReplaceOrGroup);
    EXPECT_EQ(question.Button(kCreateGroup).Text(), "Create group");
    EXPECT_EQ(question.Button(kReplace).Text(), "Replace");
    EXPECT_EQ(question.Button(kCancel).Text(), "Cancel");
    EXPECT_EQ(question.Input().Text(), "Old Ⅸ");
    question.ClickButton(kCancel);
    EXPECT_EQ(folder_.IniBytes(), before);

    const MessageBoxWindow closed = DropAndBeAsked({.files = {other_}}, 1);
    closed.BoxWindow().Post(WM_SYSCOMMAND, SC_CLOSE);
    WaitFor("the question closes", [&] { return !MessageBoxWindow::IsShown(quon_->Id()); });
    EXPECT_EQ(folder_.IniBytes(), before);

    DropAndBeAsked({.files = {other_}}, 1).AnswerByKey(VK_ESCAPE);
    EXPECT_EQ(folder_.IniBytes(), before);

    for (const char* typed : {"Cancel", ""}) {
        const MessageBoxWindow box = DropAndBeAsked({.files = {other_}}, 1);
        box.SetInput(typed);
        box.ClickButton(kCreateGroup);
        EXPECT_EQ(folder_.IniBytes(), before) << typed;
    }
    quon_->ExpectName(1, "Old Ⅸ");
}

TEST_F(DropTest, TypingAButtonsCaptionAsTheNameReplacesTheShortcut) {
    ini_.AddShortcut("21", "Old", file_);
    Start();
    DropAndBeAsked({.files = {other_}}, 1).ClickButton(kReplace);
    quon_->ExpectName(1, "文書");
    const MessageBoxWindow replace = DropAndBeAsked({.files = {third_}}, 1);
    replace.SetInput("Replace");
    replace.ClickButton(kCreateGroup);
    quon_->ExpectName(1, "Żółw");
    const MessageBoxWindow create = DropAndBeAsked({.files = {file_}}, 1);
    create.SetInput("Create group");
    create.ClickButton(kCreateGroup);
    quon_->ExpectName(1, "Заметки");
    EXPECT_EQ(Record("21"), "Заметки|0");
    EXPECT_EQ(Cut("Old"), file_) << "what was on the button stays in the list";
    EXPECT_EQ(Cut("Create group"), std::nullopt);
}

TEST_F(DropTest, ATypedNameMakesAGroupThatTakesMoreMembersButNoSwitch) {
    ini_.AddShortcut("21", "Old", file_, "/old");
    const std::string link = files_.MakeLink("third.lnk", {.target = third_, .arguments = "/lost"});
    Start();
    const MessageBoxWindow first = DropAndBeAsked({.files = {other_}}, 1);
    first.SetInput("Группа 組");
    first.ClickButton(kCreateGroup);
    quon_->ExpectName(1, "Группа 組");
    EXPECT_EQ(Cut("Группа 組"), file_ + "|" + other_);
    EXPECT_EQ(Record("21"), "Группа 組|0");
    EXPECT_EQ(Cut("Old"), file_);
    EXPECT_EQ(Switch("Old"), "/old");

    const MessageBoxWindow second = DropAndBeAsked({.files = {link}}, 1);
    EXPECT_EQ(second.Input().Text(), "Группа 組");
    second.AnswerByKey(VK_RETURN);
    ExpectNote(kNoSwitchInGroups);
    EXPECT_EQ(Cut("Группа 組"), file_ + "|" + other_ + "|" + third_);
    EXPECT_EQ(Switch("Группа 組"), std::nullopt);
    EXPECT_EQ(Switch("Żółw"), std::nullopt);
    // Replacing the group makes a single shortcut of it, which can have a switch.
    DropAndBeAsked({.files = {link}}, 1).ClickButton(kReplace);
    quon_->ExpectName(1, "Żółw");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
    EXPECT_EQ(Switch("Żółw"), "/lost");
}

TEST_F(DropTest, WhatCannotBecomeAShortcutIsRefusedWithAMessage) {
    const std::string gone = files_.MakeLink("gone.lnk", {.target = files_.FullPath("gone.txt")});
    const std::string noise = files_.MakeFile("noise.lnk", "noise");
    Start();
    const std::string before = folder_.IniBytes();
    const DragOffer kBad[] = {
        {.text = ""},
        {.text = "\r\n" + file_},
        {.text = "just some words"},
        {.text = std::string(1024 * 1024, 'x')},
        {.files = {files_.FullPath("gone.txt")}},
        {.files = {gone}},
        {.files = {noise}},
    };
    for (const DragOffer& offer : kBad) {
        Drop(offer, 1);
        ExpectNote(kCannotMake);
        EXPECT_EQ(folder_.IniBytes(), before);
    }
    quon_->ExpectName(1, "Empty");
}

TEST_F(DropTest, TheEffectIsToCopyElseToLinkElseNothing) {
    Start();
    EXPECT_EQ(Drop({.files = {file_}, .effects = DROPEFFECT_LINK | DROPEFFECT_MOVE}, 1),
              static_cast<DWORD>(DROPEFFECT_LINK));
    quon_->ExpectName(1, "Заметки");
    EXPECT_EQ(Drop({.files = {other_}, .effects = DROPEFFECT_MOVE}, 2), static_cast<DWORD>(DROPEFFECT_NONE));
    EXPECT_EQ(Drop({}, 2), static_cast<DWORD>(DROPEFFECT_NONE)) << "neither text nor files";
    quon_->Program().WaitUntilIdle();
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
    EXPECT_EQ(Record("22").value_or(""), "");
    EXPECT_EQ(quon_->Button(2).Text(), "Empty");
}

TEST_F(DropTest, NamesThatTheFileCannotHoldAreMadeStorable) {
    Start();
    Drop({.files = {files_.MakeFile("a=b.txt")}}, 1);
    quon_->ExpectName(1, "a-b");
    Drop({.files = {files_.MakeFile("[draft].txt")}}, 2);
    quon_->ExpectName(2, "draft]");
    Drop({.files = {files_.MakeFile(";old.txt")}}, 3);
    quon_->ExpectName(3, "old");
    Drop({.files = {files_.MakeFile("Empty.txt")}}, 4);
    quon_->ExpectName(4, "Empty_");
    Drop({.files = {files_.MakeFile(".profile")}}, 5);
    quon_->ExpectName(5, ".profile");
    // A name that could be stored but not read back would be free again after a restart.
    EXPECT_EQ(quon_->Program().CloseAndWait(), 0u);
    quon_.emplace(folder_);
    quon_->ExpectName(1, "a-b");
    quon_->ExpectName(2, "draft]");
    quon_->ExpectName(3, "old");
    quon_->ExpectName(4, "Empty_");
    quon_->ExpectName(5, ".profile");
}

TEST_F(DropTest, ALinkToALinkOpensTheInnerOne) {
    const std::string inner = files_.MakeLink("Внутренняя.lnk", {.target = file_});
    const std::string outer = files_.MakeLink("outer.lnk", {.target = inner, .arguments = "/x"});
    Start();
    Drop({.files = {outer}}, 1);
    quon_->ExpectName(1, "Внутренняя");
    EXPECT_EQ(Cut("Внутренняя"), inner);
    EXPECT_EQ(Switch("Внутренняя"), "/x");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
}

TEST_F(DropTest, NothingIsTakenWhileAQuestionIsOpen) {
    ini_.AddShortcut("21", "Old", file_);
    Start();
    const MessageBoxWindow question = DropAndBeAsked({.files = {other_}}, 1);
    const std::string before = folder_.IniBytes();
    EXPECT_EQ(Drop({.files = {third_}}, 9), static_cast<DWORD>(DROPEFFECT_NONE));
    question.ClickButton(kCancel);
    quon_->Program().WaitUntilIdle();
    EXPECT_EQ(folder_.IniBytes(), before);
    // Afterwards it is taken again.
    EXPECT_EQ(Drop({.files = {third_}}, 9), static_cast<DWORD>(DROPEFFECT_COPY));
    quon_->ExpectName(9, "Żółw");
}

}  // namespace
}  // namespace testkit
