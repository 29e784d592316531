#include "app/add_to_button.h"

#include "dialogs/message_box.h"
#include "tests/unit/app/add_to_button_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre;

class AddToButtonTest : public AddToButtonFixture {
  protected:
    /// Button 1 of tab 2 holds "Notes", a single file with a switch.
    void StartUsed() {
        Start("[Buttons]\r\n21=Notes|4\r\n[Cuts]\r\nNotes=" + file_ + "\r\n[Switch]\r\nNotes=/old\r\n");
    }
    /// Button 1 of tab 2 holds the group "Both".
    void StartGroup() { Start("[Buttons]\r\n21=Both|0\r\n[Cuts]\r\nBoth=" + file_ + "|" + other_ + "\r\n"); }
};

TEST_F(AddToButtonTest, FillsAFreeButtonWithoutAQuestion) {
    StartFree();
    EXPECT_TRUE(Add(file_, "Заметки"));
    EXPECT_THAT(log_.Lines(), ElementsAre("Cuts Заметки = " + file_, "Buttons 21 = Заметки|0", "refill"));
    EXPECT_EQ(state_.Context.Records.At("21"), "Заметки|0");
    EXPECT_EQ(state_.Button(1).Naziv, "Заметки");
    EXPECT_EQ(state_.Button(1).FilePath, file_);
    EXPECT_EQ(state_.Button(1).FileIcon, 0);
    EXPECT_EQ(state_.TipButton, 0) << "the next hover has to build the tip anew";
}

TEST_F(AddToButtonTest, WritesTheSwitchAfterTheRecord) {
    StartFree();
    EXPECT_TRUE(Add(file_, "Notes", "/x \"two words\""));
    EXPECT_THAT(log_.Lines(), ElementsAre("Cuts Notes = " + file_, "Buttons 21 = Notes|0",
                                          "Switch Notes = /x \"two words\"", "refill"));
    EXPECT_EQ(state_.Button(1).Switch, "/x \"two words\"");
}

TEST_F(AddToButtonTest, KeepsTheQuotesAroundASwitch) {
    Start("[Settings]\r\n");
    EXPECT_TRUE(Add(file_, "Notes", "\"all of it\""));
    EXPECT_EQ(Ini("Switch", "Notes"), "\"\"all of it\"\"");
    EXPECT_EQ(state_.Button(1).Switch, "\"all of it\"");
}

TEST_F(AddToButtonTest, ChangesNothingWhenTheQuestionIsCancelledOrClosed) {
    for (const char* answer : {"Cancel", ""}) {
        StartUsed();
        const std::string before = folder_.IniBytes();
        Record({answer});
        EXPECT_FALSE(Add(other_, "Other", "/new"));
        EXPECT_THAT(log_.Lines(), ElementsAre("message box")) << answer;
        EXPECT_EQ(folder_.IniBytes(), before) << answer;
        EXPECT_EQ(state_.Button(1).Naziv, "Notes") << answer;
        StopRecording();
    }
}

TEST_F(AddToButtonTest, AsksWithTheNameOfTheButtonInTheInputLine) {
    StartUsed();
    const testkit::ModalAnswers user({[](testkit::Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(),
                  "Do you want to replace the shortcut or create a group?\r\n(Enter group name)");
        EXPECT_EQ(box.Child(dialogs::frmMsg::Text1).Text(), "Notes");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1).Text(), "Create group");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 1).Text(), "Replace");
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1 + 2).Text(), "Cancel");
        EXPECT_TRUE(box.Child(dialogs::frmMsg::b1 + 2).IsVisible());
        box.Press(dialogs::frmMsg::b1 + 2);
    }});
    EXPECT_FALSE(Add(other_, "Other"));
}

TEST_F(AddToButtonTest, SaysWhyAGroupTakesNoSwitch) {
    StartGroup();
    const testkit::ModalAnswers user(
        {testkit::Press(dialogs::frmMsg::b1),
         testkit::Note("This shortcut has command switch. Quon will add it to the group, but you can use "
                       "command switches only on non group buttons.")});
    EXPECT_TRUE(Add(folder_.Path(), "Folder", "/new"));
}

TEST_F(AddToButtonTest, ReplacesForTheCaptionsOfBothButtons) {
    for (const char* answer : {"Replace", "Create group"}) {
        StartUsed();
        Record({answer});
        EXPECT_TRUE(Add(other_, "Other", "/new"));
        EXPECT_THAT(log_.Lines(), ElementsAre("message box", "Cuts Other = " + other_, "Buttons 21 = Other|0",
                                              "Switch Other = /new", "refill"))
            << answer;
        EXPECT_EQ(Ini("Cuts", "Notes"), file_) << "what was on the button stays in the list";
        EXPECT_EQ(Ini("Switch", "Notes"), "/old");
        EXPECT_EQ(state_.Button(1).FilePath, other_);
        EXPECT_FALSE(state_.Button(1).Group);
        StopRecording();
    }
}

TEST_F(AddToButtonTest, MakesAGroupUnderTheTypedName) {
    StartUsed();
    Record({"Группа 組"});
    EXPECT_TRUE(Add(other_, "Other"));
    EXPECT_THAT(log_.Lines(), ElementsAre("message box", "Cuts Группа 組 = " + file_ + "|" + other_,
                                          "Buttons 21 = Группа 組|0", "refill"));
    EXPECT_TRUE(state_.Button(1).Group);
    EXPECT_EQ(state_.Button(1).Switch, "");
    EXPECT_EQ(Ini("Cuts", "Notes"), file_);
    EXPECT_EQ(Ini("Cuts", "Other"), std::nullopt);
}

TEST_F(AddToButtonTest, AppendsOneMoreMemberToAGroup) {
    StartGroup();
    Record({"Both"});
    EXPECT_TRUE(Add(folder_.Path(), "Folder"));
    EXPECT_EQ(Ini("Cuts", "Both"), file_ + "|" + other_ + "|" + folder_.Path());
    EXPECT_EQ(state_.Context.Records.At("21"), "Both|0");
}

TEST_F(AddToButtonTest, RefusesAGroupThatCouldNotBeReadBackWhole) {
    StartGroup();
    const std::string before = folder_.IniBytes();
    Record({"Both", "OK"});
    const std::string page = "http://a/";
    const size_t room = 554 - state_.Button(1).FilePath.size() - 1;
    EXPECT_FALSE(Add(page + std::string(room - page.size() + 1, 'x'), "Page"));
    EXPECT_EQ(folder_.IniBytes(), before);
    calls_.clear();
    Record({"Both"});
    EXPECT_TRUE(Add(page + std::string(room - page.size(), 'x'), "Page"));
}

TEST_F(AddToButtonTest, KeepsTheFormerGroupWhenItIsExtendedUnderANewName) {
    StartGroup();
    Record({"All three"});
    EXPECT_TRUE(Add(folder_.Path(), "Folder"));
    EXPECT_EQ(Ini("Cuts", "Both"), file_ + "|" + other_);
    EXPECT_EQ(Ini("Cuts", "All three"), file_ + "|" + other_ + "|" + folder_.Path());
    EXPECT_EQ(Ini("Buttons", "21"), "All three|0");
}

TEST_F(AddToButtonTest, WarnsThatAGroupTakesNoSwitch) {
    StartUsed();
    Record({"G", "OK"});
    EXPECT_TRUE(Add(other_, "Other", "/new"));
    EXPECT_THAT(log_.Lines(), ElementsAre("message box", "Cuts G = " + file_ + "|" + other_,
                                          "Buttons 21 = G|0", "message box", "refill"));
    EXPECT_EQ(Ini("Switch", "G"), std::nullopt);
    EXPECT_EQ(Ini("Switch", "Other"), std::nullopt);
}

TEST_F(AddToButtonTest, ReplacingAGroupTakesTheSwitchWithoutAWarning) {
    StartGroup();
    Record({"Replace"});
    EXPECT_TRUE(Add(folder_.Path(), "Folder", "/new"));
    EXPECT_THAT(log_.Lines(), ElementsAre("message box", "Cuts Folder = " + folder_.Path(),
                                          "Buttons 21 = Folder|0", "Switch Folder = /new", "refill"));
    EXPECT_FALSE(state_.Button(1).Group);
    EXPECT_EQ(state_.Button(1).Switch, "/new");
}

TEST_F(AddToButtonTest, MakesATypedGroupNameStorableOrKeepsTheButtonsName) {
    for (const auto& [typed, name] : {std::pair{" [a=b|c ", "a-b-c"}, std::pair{" ;[ ", "Notes"}}) {
        StartUsed();
        Record({typed});
        EXPECT_TRUE(Add(other_, "Other"));
        EXPECT_EQ(Ini("Buttons", "21"), std::string(name) + "|0");
        EXPECT_EQ(Ini("Cuts", name), file_ + "|" + other_);
        StopRecording();
    }
}

TEST_F(AddToButtonTest, OverwritesATargetOfTheSameName) {
    Start("[Cuts]\r\nNotes=" + file_ + "\r\n");
    Record();
    EXPECT_TRUE(Add(other_, "Notes"));
    EXPECT_EQ(Ini("Cuts", "Notes"), other_);
    EXPECT_EQ(folder_.Ini().Keys("Cuts").size(), 1u);
}

TEST_F(AddToButtonTest, ChangesTargetAndNameOnlyForAGroup) {
    StartUsed();
    Record({"G", "Replace"});
    std::string target = other_;
    std::string name = "Other";
    std::string none;
    AddToButton(state_, state_.CurrentPlace(), target, name, none);
    EXPECT_EQ(target, file_ + "|" + other_);
    EXPECT_EQ(name, "G");
    target = other_;
    name = "Other";
    AddToButton(state_, state_.CurrentPlace(), target, name, none);
    EXPECT_EQ(target, other_);
    EXPECT_EQ(name, "Other");
}

TEST_F(AddToButtonTest, SaysWhenItCannotBeStoredAndChangesNothing) {
    StartUsed();
    const std::string before = folder_.IniBytes();
    Record({"Replace", "OK"});
    {
        const testkit::HeldFile held(folder_.IniPath());
        EXPECT_FALSE(Add(other_, "Other", "/new"));
    }
    EXPECT_THAT(log_.Lines(), ::testing::IsSupersetOf({"message box", "message box"}));
    EXPECT_EQ(log_.Count("refill"), 0u);
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(state_.Context.Records.At("21"), "Notes|4");
    EXPECT_EQ(state_.Button(1).Naziv, "Notes");
    EXPECT_EQ(state_.Button(1).FilePath, file_);
}

TEST_F(AddToButtonTest, AGroupThatCouldNotBeReadIsNotWrittenOver) {
    StartGroup();
    config::Settings.CurrentTab = 1;
    {
        const testkit::HeldFile held(folder_.IniPath());
        config::Settings.CurrentTab = 2;
        state_.Button(1).Naziv = "of another tab";
        state_.Button(1).RefreshButton("21");
    }
    EXPECT_EQ(state_.Button(1).Naziv, "Both");
    EXPECT_TRUE(state_.Button(1).IsUnread());
    const std::string before = folder_.IniBytes();
    Record({"Both", "OK"});
    EXPECT_FALSE(Add(folder_.Path(), "Folder"));
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(AddToButtonTest, OtherButtonsOfTheSameNameFollowAtOnce) {
    Start("[Buttons]\r\n21=Notes|0\r\n25=NOTES|2\r\n[Cuts]\r\nNotes=" + file_ + "\r\n");
    state_.Context.Select(9);
    Record();
    EXPECT_TRUE(Add(other_, "Notes"));
    for (const int button : {1, 5, 9})
        EXPECT_EQ(state_.Button(button).FilePath, other_) << button;
    EXPECT_EQ(state_.Button(5).FileIcon, 2);
}

TEST_F(AddToButtonTest, ActsOnItsPlaceWhereverTheCurrentButtonIsMeanwhile) {
    StartUsed();
    const testkit::ModalAnswers user({[this](testkit::Window box) {
        state_.Context.Select(7);
        box.Press(dialogs::frmMsg::b1 + 1);
    }});
    EXPECT_TRUE(Add(other_, "Other"));
    EXPECT_EQ(Ini("Buttons", "21"), "Other|0");
    EXPECT_EQ(state_.Button(1).FilePath, other_);
    EXPECT_TRUE(state_.Button(7).IsFree());
}

class ShortcutFromDropTest : public AddToButtonFixture {};

TEST_F(ShortcutFromDropTest, TakesTheFirstLineOfATextAsTheTarget) {
    const DroppedShortcut shortcut = ShortcutFromDrop({true, "https://example.org/a.html\r\nA page\r\n"});
    EXPECT_EQ(shortcut.target, "https://example.org/a.html");
    EXPECT_EQ(shortcut.name, "a");
    EXPECT_EQ(shortcut.commandSwitch, "");
}

TEST_F(ShortcutFromDropTest, NamesALinkAfterItsTarget) {
    const std::string link = folder_.MakeLink("Link to it.lnk", {.target = file_, .arguments = "/a b"});
    const DroppedShortcut shortcut = ShortcutFromDrop({false, link});
    EXPECT_EQ(shortcut.target, file_);
    EXPECT_EQ(shortcut.name, "Заметки");
    EXPECT_EQ(shortcut.commandSwitch, "/a b");
}

TEST_F(ShortcutFromDropTest, KeepsEverythingAfterTheFirstBarAsTheSwitch) {
    const std::string link = folder_.MakeLink("a.lnk", {.target = file_, .arguments = "/a|/b|"});
    EXPECT_EQ(ShortcutFromDrop({false, link}).commandSwitch, "/a|/b|");
}

TEST_F(ShortcutFromDropTest, FollowsALinkToALinkOnce) {
    const std::string inner = folder_.MakeLink("inner.lnk", {.target = file_, .arguments = "/inner"});
    const std::string outer = folder_.MakeLink("outer.lnk", {.target = inner, .arguments = "/outer"});
    const DroppedShortcut shortcut = ShortcutFromDrop({false, outer});
    EXPECT_EQ(shortcut.target, inner);
    EXPECT_EQ(shortcut.name, "inner");
    EXPECT_EQ(shortcut.commandSwitch, "/outer");
}

TEST_F(ShortcutFromDropTest, DoesNotFollowALinkThatIsNamedByText) {
    const std::string link = folder_.MakeLink("a.lnk", {.target = file_, .arguments = "/x"});
    const DroppedShortcut shortcut = ShortcutFromDrop({true, link});
    EXPECT_EQ(shortcut.target, link);
    EXPECT_EQ(shortcut.name, "a");
    EXPECT_EQ(shortcut.commandSwitch, "");
}

TEST_F(ShortcutFromDropTest, LeavesOutArgumentsThatCouldNotBeReadBack) {
    const auto arguments = [this](size_t size) {
        return ShortcutFromDrop(
            {false, folder_.MakeLink("a.lnk", {.target = file_, .arguments = std::string(size, 'x')})});
    };
    EXPECT_EQ(arguments(554).commandSwitch, std::string(554, 'x'));
    EXPECT_FALSE(arguments(554).switchTooLong);
    EXPECT_EQ(arguments(555).commandSwitch, "");
    EXPECT_TRUE(arguments(555).switchTooLong);
    EXPECT_EQ(arguments(555).target, file_);
}

TEST_F(ShortcutFromDropTest, AUrlWithABarStaysOneTarget) {
    EXPECT_EQ(ShortcutFromDrop({true, "https://example.org/a|b?c|d"}).target,
              "https://example.org/a%7Cb?c%7Cd");
}

TEST_F(ShortcutFromDropTest, MakesNothingOfEmptyData) {
    EXPECT_EQ(ShortcutFromDrop({true, "\r\nC:\\a.txt"}).target, "");
    EXPECT_EQ(ShortcutFromDrop({false, ""}).target, "");
    EXPECT_EQ(ShortcutFromDrop({false, folder_.MakeFile("noise.lnk", "noise")}).target, "");
}

class DropOnButtonTest : public AddToButtonFixture {};

TEST_F(DropOnButtonTest, SelectsTheButtonAndAddsTheTargetToIt) {
    StartFree();
    DropOnButton(state_, {2, 7}, {false, file_});
    EXPECT_EQ(state_.Context.CurrentButtonIndex, 7);
    EXPECT_EQ(state_.Context.CurrentButtonKey, "27");
    EXPECT_EQ(Ini("Buttons", "27"), "Заметки|0");
    EXPECT_EQ(state_.PopCount, 10);
}

TEST_F(DropOnButtonTest, FillsTheButtonItWasDroppedOnAfterTheTabHasChanged) {
    Start("[Buttons]\r\n13=Other|0\r\n[Cuts]\r\nOther=" + other_ + "\r\n");
    Record({"Replace"});
    DropOnButton(state_, {1, 7}, {false, file_});
    DropOnButton(state_, {1, 3}, {false, file_});
    EXPECT_EQ(log_.Count("message box"), 1u) << "the hidden button is used, too";
    EXPECT_EQ(Ini("Buttons", "17"), "Заметки|0");
    EXPECT_EQ(Ini("Buttons", "13"), "Заметки|0");
    EXPECT_EQ(state_.Context.CurrentButtonKey, "21");
    EXPECT_TRUE(state_.Button(7).IsFree());
}

TEST_F(DropOnButtonTest, TakesAUrlAFolderAndATextThatNamesAFile) {
    StartFree();
    DropOnButton(state_, {2, 1}, {true, "https://example.org/страница.html\n"});
    DropOnButton(state_, {2, 2}, {false, folder_.MakeFolder("папка")});
    DropOnButton(state_, {2, 3}, {true, file_ + "\r\n"});
    EXPECT_EQ(Ini("Cuts", "страница"), "https://example.org/страница.html");
    EXPECT_EQ(Ini("Buttons", "22"), "папка|0");
    EXPECT_EQ(Ini("Cuts", "Заметки"), file_);
    EXPECT_EQ(log_.Count("message box"), 0u);
}

TEST_F(DropOnButtonTest, SaysWhatItCannotMakeAndChangesNothing) {
    Start("[Buttons]\r\n21=Notes|0\r\n[Cuts]\r\nNotes=" + file_ + "\r\n");
    const std::string before = folder_.IniBytes();
    const sys::DroppedData kBad[] = {
        {true, ""},
        {true, "\r\n" + file_},
        {true, "only words"},
        {true, std::string(1024 * 1024, 'x')},
        {true, "https://example.org/" + std::string(600, 'x')},
        {true, std::string(3, '\\')},
        {true, "https://example.org/\r[Settings]\rMain=x"},
        {true, "https://example.org/\t.html"},
        {false, ""},
        {false, folder_.FullPath("gone.txt")},
        {false, folder_.MakeFile("noise.lnk", "noise")},
        // The file is there, but nothing of its name can be stored.
        {false, folder_.MakeFile(";")},
        {false, folder_.MakeLink("gone.lnk", {.target = folder_.FullPath("gone.txt")})},
    };
    for (const sys::DroppedData& data : kBad) {
        state_.PopCount = 0;
        Record({"OK"});
        DropOnButton(state_, {2, 1}, data);
        EXPECT_THAT(log_.Lines(), ElementsAre("message box")) << data.value.substr(0, 80);
        EXPECT_EQ(folder_.IniBytes(), before) << data.value.substr(0, 80);
        EXPECT_EQ(state_.PopCount, 10) << data.value.substr(0, 80);
        StopRecording();
    }
}

TEST_F(DropOnButtonTest, SaysThatALinksArgumentsWereLeftOut) {
    Start("[Settings]\r\n");
    const testkit::ModalAnswers user(
        {testkit::Note("The command switch of this shortcut is too long. Quon has left it out.")});
    DropOnButton(state_, {2, 1},
                 {false, folder_.MakeLink("a.lnk", {.target = file_, .arguments = std::string(600, 'x')})});
    EXPECT_EQ(Ini("Buttons", "21"), "Заметки|0");
    EXPECT_EQ(Ini("Switch", "Заметки"), std::nullopt);
}

TEST_F(DropOnButtonTest, AUrlWithABarMakesASingleShortcut) {
    StartFree();
    DropOnButton(state_, {2, 1}, {true, "https://example.org/a|b.html"});
    EXPECT_EQ(state_.Button(1).FilePath, "https://example.org/a%7Cb.html");
    EXPECT_FALSE(state_.Button(1).Group);
}

TEST_F(DropOnButtonTest, TakesATargetThatCanBeReadBackWholeAndNoLongerOne) {
    Start("[Settings]\r\n");
    const std::string start = "https://example.org/";
    const std::string longest = start + std::string(554 - start.size(), 'x');
    Record();
    DropOnButton(state_, {2, 1}, {true, longest});
    EXPECT_EQ(state_.Button(1).FilePath, longest);
    StopRecording();
    Record({"OK"});
    DropOnButton(state_, {2, 2}, {true, longest + "x"});
    EXPECT_EQ(Ini("Buttons", "22"), "") << "a free button's record";
}

}  // namespace
}  // namespace app
