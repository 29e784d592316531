// Moving a button with CTRL, SHIFT and the mouse.

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

class MoveTest : public QuonTest {
  protected:
    MoveTest() {
        ini_.AddShortcut("11", "Первый", file_, "/switch");
        ini_.AddShortcut("12", "Second", other_);
        for (int button = 1; button <= kSixthTab; ++button) {
            const std::string number = std::to_string(button);
            ini_.AddShortcut("6" + number, "Sixth " + number, folder_.MakeFile(number + ".txt"));
        }
        folder_.WriteIniText(ini_.Text());
        quon_.emplace(folder_);
        quon_->WaitUntilPainted();
        quon_->Main().Activate();
    }

    static Keys Moving() { return {VK_CONTROL, VK_SHIFT}; }
    void Move(int from, int to) {
        mouse::Drag(quon_->Button(from).Centre(), quon_->Button(to).Centre(), Moving());
    }
    std::optional<std::string> Record(const std::string& key) const {
        return folder_.IniValue("Buttons", key);
    }

    /// How many buttons of the sixth tab have a shortcut.
    static constexpr int kSixthTab = 6;
    const std::string file_ = folder_.MakeFile("a.txt");
    const std::string other_ = folder_.MakeFile("b.txt");
    QuonIni ini_;
    std::optional<QuonPanel> quon_;
};

TEST_F(MoveTest, AFreeButtonTakesTheOtherWithItsSwitch) {
    Move(1, 9);
    quon_->ExpectName(9, "Первый");
    quon_->ExpectName(1, "Empty");
    EXPECT_EQ(Record("11"), "");
    EXPECT_EQ(Record("19"), "Первый|0");
    EXPECT_EQ(folder_.IniValue("Switch", "Первый"), "/switch");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
}

TEST_F(MoveTest, OntoItselfItStaysAndNothingIsAsked) {
    Move(1, 1);
    quon_->ExpectName(1, "Первый");
    EXPECT_EQ(Record("11"), "Первый|0");
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon_->Id()));
}

TEST_F(MoveTest, AUsedButtonAsksAndCancellingGivesTheSourceBack) {
    const std::string before = folder_.IniBytes();
    Move(1, 2);
    const MessageBoxWindow question = MessageBoxWindow::Wait(quon_->Id());
    EXPECT_EQ(question.Input().Text(), "Second");
    EXPECT_EQ(folder_.IniBytes(), before) << "nothing is stored before the answer";
    question.ClickButton(2);
    quon_->ExpectName(1, "Первый");
    quon_->ExpectName(2, "Second");
    EXPECT_EQ(folder_.IniBytes(), before);

    Move(1, 2);
    MessageBoxWindow::Wait(quon_->Id()).ClickButton(1);
    quon_->ExpectName(2, "Первый");
    quon_->ExpectName(1, "Empty");
}

TEST_F(MoveTest, AHeaderShowsItsTabOnceEachTimeThePointerComes) {
    const POINT header = quon_->Header(6).Centre();
    const HeldKeys keys(Moving());
    mouse::MoveTo(quon_->Button(1).Centre());
    mouse::Press();
    mouse::Glide(header);
    quon_->ExpectName(1, "Sixth 1");
    // A button whose file is gone frees itself when its tab is shown again.
    const auto shown_again = [&](int button) {
        return Record("6" + std::to_string(button)) != "Sixth " + std::to_string(button) + "|0";
    };
    const auto stays_as_it_is = [&](int button) {
        folder_.RemoveFile(std::to_string(button) + ".txt");
        for (const LONG step : {-8L, 9L, 3L})
            mouse::Glide({header.x + step, header.y + step / 3});
        quon_->Program().WaitUntilIdle();
        return !shown_again(button);
    };
    // Now and then a late echo takes the pointer away and back, which counts as coming once more.
    int button = 1;
    while (button < kSixthTab && !stays_as_it_is(button))
        ++button;
    EXPECT_LT(button, kSixthTab) << "the tab is shown at every move";
    mouse::Glide(quon_->Button(9).Centre());
    mouse::Glide(header);
    WaitFor("the tab is shown once more", [&] { return shown_again(button); });
    mouse::Release();
}

TEST_F(MoveTest, OtherKeysMoveNothing) {
    const std::string before = folder_.IniBytes();
    for (const Keys& held : {Keys{VK_CONTROL}, Keys{VK_SHIFT}, Keys{VK_CONTROL, VK_SHIFT, VK_MENU}}) {
        mouse::Drag(quon_->Button(1).Centre(), quon_->Button(9).Centre(), held);
        quon_->Settle();
        EXPECT_EQ(folder_.IniBytes(), before) << held.size();
    }
}

TEST_F(MoveTest, LettingAltGoAfterAClickLeadsToNoMenu) {
    {
        const HeldKeys alt({VK_MENU});
        mouse::Click(quon_->Button(9));
    }
    keyboard::Press(VK_MENU);
    quon_->Program().WaitUntilIdle();
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    ASSERT_TRUE(GetGUIThreadInfo(quon_->Main().ThreadId(), &info));
    EXPECT_EQ(info.flags & GUI_INMENUMODE, 0u) << "the panel is deaf until the next click";
    Move(1, 5);
    quon_->ExpectName(5, "Первый");
}

TEST_F(MoveTest, APressAndReleaseOnOnePlaceMovesNothing) {
    const std::string before = folder_.IniBytes();
    {
        const HeldKeys keys(Moving());
        mouse::MoveTo(quon_->Button(1).Centre());
        mouse::Press();
        mouse::Release();
    }
    quon_->Settle();
    EXPECT_EQ(folder_.IniBytes(), before) << "the icon that was chosen is kept";
}

TEST_F(MoveTest, EscCancelsTheMoveAfterTheKeysWereLetGoToo) {
    const std::string before = folder_.IniBytes();
    {
        const HeldKeys keys(Moving());
        mouse::MoveTo(quon_->Button(1).Centre());
        mouse::Press();
        mouse::Glide(quon_->Button(5).Centre());
    }
    keyboard::Press(VK_ESCAPE);
    mouse::Glide(quon_->Button(9).Centre());
    mouse::Release();
    quon_->Settle();
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_TRUE(quon_->IsOut());
    // The next one is a move again.
    Move(1, 9);
    quon_->ExpectName(9, "Первый");
}

TEST_F(MoveTest, EscInAMoveFromTheHoverMarkLeavesTheDropDownAlone) {
    const std::string before = folder_.IniBytes();
    const Window edit = quon_->Shortcuts().Descendants().front();
    mouse::Click(edit.ClientPoint(5, 5));
    WaitFor("the drop-down has the focus", [&] { return edit.IsFocused(); });
    mouse::MoveTo(quon_->Button(1).Centre());
    WaitFor("the hover mark", [&] { return quon_->HoverPicture().IsVisible(); });
    {
        const HeldKeys keys(Moving());
        mouse::MoveTo(quon_->HoverPicture().Centre());
        mouse::Press();
        mouse::Glide(quon_->Button(5).Centre());
    }
    ASSERT_TRUE(edit.IsFocused());
    keyboard::Press(VK_ESCAPE);
    mouse::Release();
    quon_->Settle();
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_TRUE(quon_->IsOut()) << "an empty drop-down docks the panel on Esc";
}

TEST_F(MoveTest, TheHoverMarkCarriesAButtonToAnotherTab) {
    const HeldKeys keys(Moving());
    mouse::MoveTo(quon_->Button(1).Centre());
    WaitFor("the hover mark", [&] { return quon_->HoverPicture().IsVisible(); });
    mouse::MoveTo(quon_->HoverPicture().Centre());
    mouse::Press();
    // Straight up and down: a late echo that takes the pointer back along the way shows no other tab then.
    const POINT header = quon_->Header(2).Centre();
    mouse::Glide({header.x, quon_->Button(1).Centre().y});
    mouse::Glide(header);
    quon_->ExpectName(1, "Empty");
    mouse::Glide({header.x, quon_->Button(4).Centre().y});
    mouse::Release();
    quon_->ExpectName(4, "Первый");
    EXPECT_EQ(Record("24"), "Первый|0");
    EXPECT_EQ(Record("11"), "");
}

}  // namespace
}  // namespace testkit
