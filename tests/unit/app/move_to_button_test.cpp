// Moving a button: what is written, in which order, and what a cancelled question leaves behind.

#include "app/add_to_button.h"
#include "dialogs/message_box.h"
#include "tests/unit/app/add_to_button_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre;

class MoveToButtonTest : public AddToButtonFixture {
  protected:
    /// Button 1 of the shown tab 2: "Notes" with a switch and icon 3; button 2: "Other"; button 5 of tab 6:
    /// the group "Both".
    void SetUp() override {
        Start("[Buttons]\r\n21=Notes|3\r\n22=Other|7\r\n65=Both|2\r\n[Cuts]\r\nNotes=" + file_ +
              "\r\nOther=" + other_ + "\r\nBoth=" + file_ + "|" + other_ + "\r\n[Switch]\r\nNotes=/n\r\n");
        ini_ = folder_.IniBytes();
    }
    DragSource Notes() const { return {{2, 1}, file_, "Notes", "/n"}; }
    DragSource Both() const { return {{6, 5}, file_ + "|" + other_, "Both", ""}; }

    std::string ini_;
};

TEST_F(MoveToButtonTest, FreesTheSourceAndThenFillsAFreeTarget) {
    Record();
    MoveToButton(state_, {2, 9}, Notes());
    EXPECT_THAT(log_.Lines(), ElementsAre("Buttons 21 = ", "Cuts Notes = " + file_, "Buttons 29 = Notes|0",
                                          "Switch Notes = /n", "refill"));
    EXPECT_EQ(state_.Context.Records.At("21"), "");
    EXPECT_EQ(state_.Context.Records.At("29"), "Notes|0");
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_EQ(state_.Button(9).Naziv, "Notes");
    EXPECT_EQ(state_.Button(9).Switch, "/n");
    EXPECT_EQ(state_.Context.CurrentButtonKey, "29");
    EXPECT_EQ(state_.Context.CurrentButtonIndex, 9);
}

TEST_F(MoveToButtonTest, KeepsAGroupThatIsLongerThanCanBeReadAtOnce) {
    std::string members = "http://start/";
    for (int index = 0; index < 200; ++index)
        members += "|http://страна/" + std::to_string(index);
    Start("[Buttons]\r\n21=G|0\r\n[Cuts]\r\nG=" + members + "\r\n");
    const std::string read = state_.Button(1).FilePath;
    EXPECT_LE(read.size(), 554u);
    MoveToButton(state_, {2, 9}, {{2, 1}, read, "G", ""});
    EXPECT_EQ(folder_.Ini().Value("Cuts", "G"), members);
    EXPECT_EQ(Ini("Buttons", "29"), "G|0");
}

TEST_F(MoveToButtonTest, OntoItselfAsksNothingAndBeginsTheIconsAnew) {
    Record();
    MoveToButton(state_, {2, 1}, Notes());
    EXPECT_EQ(log_.Count("message box"), 0u);
    EXPECT_EQ(Ini("Buttons", "21"), "Notes|0");
    EXPECT_EQ(Ini("Cuts", "Notes"), file_);
    EXPECT_EQ(Ini("Switch", "Notes"), "/n");
    EXPECT_EQ(state_.Button(1).Naziv, "Notes");
}

TEST_F(MoveToButtonTest, FromAnotherTabLeavesTheShownButtonOfThatNumberAlone) {
    state_.Button(5).Naziv = "not touched";
    Record();
    MoveToButton(state_, {2, 9}, Both());
    EXPECT_THAT(log_.Lines(), ElementsAre("Buttons 65 = ", "Cuts Both = " + file_ + "|" + other_,
                                          "Buttons 29 = Both|0", "refill"));
    EXPECT_EQ(state_.Button(5).Naziv, "not touched");
    EXPECT_EQ(state_.Context.Records.At("65"), "");
    EXPECT_TRUE(state_.Button(9).Group);
}

TEST_F(MoveToButtonTest, FillsTheButtonOfATabThatIsNoLongerShown) {
    Record({"Replace"});
    MoveToButton(state_, {6, 5}, Notes());
    EXPECT_EQ(Ini("Buttons", "65"), "Notes|0");
    EXPECT_EQ(Ini("Buttons", "21"), "");
    EXPECT_EQ(state_.Context.Records.At("65"), "Notes|0");
    EXPECT_TRUE(state_.Button(1).IsFree());
    EXPECT_TRUE(state_.Button(5).IsFree()) << "the shown button of that number";
    EXPECT_EQ(state_.Context.CurrentButtonKey, "21");
}

TEST_F(MoveToButtonTest, OntoAUsedButtonAsksAsADropDoes) {
    Record({"Replace"});
    MoveToButton(state_, {2, 2}, Notes());
    EXPECT_THAT(log_.Lines(), ElementsAre("message box", "Buttons 21 = ", "Cuts Notes = " + file_,
                                          "Buttons 22 = Notes|0", "Switch Notes = /n", "refill"));
    EXPECT_EQ(Ini("Cuts", "Other"), other_);
}

TEST_F(MoveToButtonTest, OntoAUsedButtonMakesAGroupWithTheTargetFirst) {
    Record({"G", "OK"});
    MoveToButton(state_, {2, 2}, Notes());
    EXPECT_EQ(Ini("Cuts", "G"), other_ + "|" + file_);
    EXPECT_EQ(Ini("Buttons", "22"), "G|0");
    EXPECT_EQ(Ini("Buttons", "21"), "");
    EXPECT_EQ(Ini("Switch", "Notes"), "/n");
}

TEST_F(MoveToButtonTest, ChangesNothingWhenTheQuestionIsCancelled) {
    for (const char* answer : {"Cancel", ""}) {
        Record({answer});
        MoveToButton(state_, {2, 2}, Notes());
        EXPECT_THAT(log_.Lines(), ElementsAre("message box")) << answer;
        EXPECT_EQ(folder_.IniBytes(), ini_) << answer;
        EXPECT_EQ(state_.Context.Records.At("21"), "Notes|3") << answer;
        EXPECT_EQ(state_.Button(1).Naziv, "Notes") << answer;
        EXPECT_EQ(state_.Button(1).FileIcon, 3) << answer;
        EXPECT_EQ(state_.Button(1).Switch, "/n") << answer;
        EXPECT_EQ(state_.Button(2).Naziv, "Other") << answer;
        StopRecording();
    }
}

TEST_F(MoveToButtonTest, StoresNothingBeforeTheQuestionIsAnswered) {
    const testkit::ModalAnswers user({[this](testkit::Window box) {
        EXPECT_EQ(folder_.IniBytes(), ini_) << "a program that is ended now has lost nothing";
        box.Press(dialogs::frmMsg::b1 + 1);
    }});
    MoveToButton(state_, {2, 2}, Notes());
    EXPECT_EQ(Ini("Buttons", "21"), "");
    EXPECT_EQ(Ini("Buttons", "22"), "Notes|0");
    EXPECT_TRUE(state_.Button(1).IsFree());
}

TEST_F(MoveToButtonTest, LeavesASourceAloneThatGotSomethingElseMeanwhile) {
    const testkit::ModalAnswers user({[this](testkit::Window box) {
        EXPECT_TRUE(state_.Store().PutRecord({2, 1}, "Other|7"));
        box.Press(dialogs::frmMsg::b1 + 1);
    }});
    MoveToButton(state_, {2, 2}, Notes());
    EXPECT_EQ(Ini("Buttons", "21"), "Other|7");
    EXPECT_EQ(Ini("Buttons", "22"), "Other|7");
}

TEST_F(MoveToButtonTest, KeepsSourceAndTargetWhenItCannotBeStored) {
    Record({"OK"});
    {
        const testkit::HeldFile held(folder_.IniPath());
        MoveToButton(state_, {2, 9}, Notes());
    }
    EXPECT_EQ(folder_.IniBytes(), ini_);
    EXPECT_EQ(state_.Context.Records.At("21"), "Notes|3");
    EXPECT_EQ(state_.Context.Records.At("29"), "");
    EXPECT_EQ(state_.Button(1).Naziv, "Notes");
    EXPECT_TRUE(state_.Button(9).IsFree());
}

TEST_F(MoveToButtonTest, AsksForASourceOfAnotherTabToo) {
    Record({"Cancel"});
    MoveToButton(state_, {2, 2}, Both());
    EXPECT_EQ(folder_.IniBytes(), ini_);
    EXPECT_EQ(state_.Context.Records.At("65"), "Both|2");
    EXPECT_TRUE(state_.Button(5).IsFree()) << "button 5 of the shown tab has nothing to do with it";
}

}  // namespace
}  // namespace app
