#include "app/button_rename.h"

#include "tests/support/ini_writes.h"
#include "tests/unit/app/panel_parts.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class ButtonRenameTest : public PanelParts {
  protected:
    ButtonRenameTest() {
        Load(
            "[Buttons]\r\n11=Старо|4\r\n12=B|0\r\n[Cuts]\r\nСтаро=http://a/?q=1\r\nB=http://b/?x=1\r\n"
            "[Switch]\r\nСтаро=/x=1\r\nB=/y=z\r\n");
    }

    testkit::Window Box() { return testkit::Window(rename_.Box()); }
};

TEST_F(ButtonRenameTest, MovesTargetRecordAndSwitchToTheNewName) {
    RenameButton(state_, state_.CurrentPlace(), "新 Ново");
    EXPECT_THAT(folder_.IniLines("Cuts"), ElementsAre("B=http://b/?x=1", "新 Ново=http://a/?q=1"));
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "新 Ново|4");
    EXPECT_THAT(folder_.IniLines("Switch"), ElementsAre("B=/y=z", "新 Ново=/x=1"));
    EXPECT_EQ(state_.Context.Records.At("11"), "新 Ново|4");
    EXPECT_EQ(state_.Button(1).Naziv, "新 Ново");
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "新 Ново");
    EXPECT_THAT(log_.Lines(), ElementsAre("refill"));
}

TEST_F(ButtonRenameTest, TakesItsStepsInOrder) {
    const testkit::RecordedCalls writes = testkit::LogWrites(log_);
    RenameButton(state_, state_.CurrentPlace(), "new");
    EXPECT_TRUE(InOrder(log_, {"empty Cuts", "write Cuts new http://a/?q=1", "write Buttons 11 new|4",
                               "empty Switch", "write Switch new /x=1", "refill"}));
}

TEST_F(ButtonRenameTest, KeepsTheFormerNameWhenAnyOfItsWritesFails) {
    const std::string before = folder_.IniBytes();
    const std::vector<std::string> records{"Cuts new", "Buttons 11", "Switch new"};
    for (const std::string& record : records) {
        {
            // The disk stays full, so the button cannot free itself either when it finds nothing under its
            // new name.
            bool full = false;
            const auto write = FAKE_CALL(
                WritePrivateProfileStringA, [&](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                    full = full || std::string(name) + " " + key == record;
                    if (full) return FALSE;
                    return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                });
            RenameButton(state_, state_.CurrentPlace(), "new");
            EXPECT_TRUE(full) << record;
        }
        EXPECT_EQ(folder_.IniBytes(), before) << record;
        Load(before);
    }
}

TEST_F(ButtonRenameTest, FreesNoButtonWhenItCannotBeStored) {
    const std::string before = folder_.IniBytes();
    {
        const testkit::HeldFile held(folder_.IniPath());
        EXPECT_FALSE(RenameButton(state_, state_.CurrentPlace(), "new"));
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(state_.Context.Records.At("11"), "Старо|4");
    EXPECT_EQ(state_.Button(1).Naziv, "Старо");
    EXPECT_EQ(state_.Button(1).FilePath, "http://a/?q=1");
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "Старо");
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ButtonRenameTest, RenamesAllButtonsOfThatName) {
    Load("[Buttons]\r\n11=A|4\r\n13=a|5\r\n47=A|6\r\n[Cuts]\r\nA=http://a/\r\n");
    EXPECT_TRUE(RenameButton(state_, state_.CurrentPlace(), "B"));
    EXPECT_EQ(state_.Button(3).Naziv, "B");
    EXPECT_EQ(testkit::Window(Button(3)).Text(), "B");
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "B|5");
    EXPECT_EQ(state_.Context.Records.At("47"), "B|6");
}

TEST_F(ButtonRenameTest, OntoTheNameOfAnotherButtonShowsTheNewTargetThereToo) {
    EXPECT_TRUE(RenameButton(state_, state_.CurrentPlace(), "B"));
    EXPECT_EQ(state_.Button(2).FilePath, "http://a/?q=1");
    EXPECT_EQ(folder_.IniValue("Switch", "B"), "/x=1");
}

TEST_F(ButtonRenameTest, DoesNothingToAButtonThatCouldNotBeRead) {
    state_.Button(1).FilePath.clear();
    const std::string before = folder_.IniBytes();
    EXPECT_FALSE(RenameButton(state_, state_.CurrentPlace(), "new"));
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(ButtonRenameTest, WritesNoSwitchWhereThereIsNone) {
    Load("[Buttons]\r\n11=Старо|4\r\n[Cuts]\r\nСтаро=http://a/\r\n");
    RenameButton(state_, state_.CurrentPlace(), "new");
    EXPECT_FALSE(folder_.IniValue("Switch", "new"));
}

TEST_F(ButtonRenameTest, MakesNamesStorable) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"a=b|c", "a-b-c"}, {" [;x ", "x"}, {"Empty", "Empty_"}, {"empty", "empty_"}, {"a\tb", "a b"}};
    for (const auto& [typed, stored] : cases) {
        RenameButton(state_, state_.CurrentPlace(), typed);
        EXPECT_EQ(state_.Button(1).Naziv, stored) << typed;
        EXPECT_EQ(folder_.IniValue("Cuts", stored), "http://a/?q=1") << typed;
        EXPECT_EQ(folder_.IniValue("Switch", stored), "/x=1") << typed;
    }
}

TEST_F(ButtonRenameTest, ChangesNothingForANameThatCannotBeStored) {
    const std::string before = folder_.IniBytes();
    for (const std::string name : {"", " ", " [;", "\t"})
        RenameButton(state_, state_.CurrentPlace(), name);
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ButtonRenameTest, KeepsEverythingForTheSameNameAndForAnotherSpelling) {
    for (const std::string name : {"Старо", "СТАРО"}) {
        RenameButton(state_, state_.CurrentPlace(), name);
        EXPECT_EQ(state_.Button(1).FilePath, "http://a/?q=1");
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), name + "|4");
        EXPECT_EQ(folder_.IniValue("Cuts", name), "http://a/?q=1");
        EXPECT_EQ(folder_.IniValue("Switch", name), "/x=1");
    }
}

TEST_F(ButtonRenameTest, DoesNothingOnAFreeButton) {
    state_.Context.Select(5);
    const std::string before = folder_.IniBytes();
    RenameButton(state_, state_.CurrentPlace(), "new");
    rename_.Begin();
    EXPECT_EQ(Box().Style() & WS_VISIBLE, 0);
    EXPECT_EQ(folder_.IniBytes(), before);
}

/// The same with the box: it counts as open only on a window that is shown.
TEST_F(ButtonRenameTest, KeepsAGroupThatIsLongerThanCanBeReadAtOnce) {
    std::string members = "http://start/";
    for (int index = 0; index < 200; ++index)
        members += "|http://страна/" + std::to_string(index);
    Load("[Buttons]\r\n11=G|0\r\n[Cuts]\r\nother=http://start/\r\nG=" + members + "\r\n");
    RenameButton(state_, state_.CurrentPlace(), "Ново");
    EXPECT_EQ(folder_.IniValue("Cuts", "Ново"), members);
    EXPECT_EQ(folder_.IniValue("Cuts", "G"), std::nullopt);
}

TEST_F(ButtonRenameTest, StoresWhereTheFileWasMovedTo) {
    Load("[Buttons]\r\n11=A|0\r\n[Cuts]\r\nA=http://a/old\r\n");
    state_.Button(1).FilePath = "http://a/";
    RenameButton(state_, state_.CurrentPlace(), "B");
    EXPECT_EQ(folder_.IniValue("Cuts", "B"), "http://a/");
}

class RenameBoxTest : public ButtonRenameTest {
  protected:
    RenameBoxTest() { ShowWindow(host_.Handle(), SW_SHOWNOACTIVATE); }
};

TEST_F(RenameBoxTest, RenamesNothingOnATabThatWasShownMeanwhile) {
    rename_.Begin();
    ASSERT_TRUE(rename_.IsOpen());
    win::SetText(rename_.Box(), "new");
    config::Settings.CurrentTab = 2;
    const std::string before = folder_.IniBytes();
    rename_.Accept();
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_FALSE(rename_.IsOpen());
}

TEST_F(RenameBoxTest, OpensOverTheButtonWithItsNameSelected) {
    rename_.Begin();
    EXPECT_TRUE(rename_.IsOpen());
    EXPECT_EQ(Box().Id(), 220);
    EXPECT_EQ(Box().Text(), "Старо");
    EXPECT_EQ(GetFocus(), rename_.Box());
    EXPECT_EQ(Box().Selection(), MAKELONG(0, 5));
    RECT shared{};
    const RECT box = Box().Rect();
    const RECT button = testkit::Window(Button(1)).Rect();
    IntersectRect(&shared, &box, &button);
    EXPECT_NE(EqualRect(&shared, &box), 0);
}

TEST_F(RenameBoxTest, StaysClosedWhereItCannotShowTheName) {
    const auto none = FAKE_CALL(SetWindowTextW, [](HWND, LPCWSTR) -> BOOL { return FALSE; });
    EXPECT_THROW(rename_.Begin(), win::RuntimeError);
    EXPECT_FALSE(rename_.IsOpen()) << "it would give the button the name that it has shown last";
}

TEST_F(RenameBoxTest, OpensOverTheButtonLastUnderTheMouse) {
    SetFocus(Button(1));
    SendMessageW(Button(2), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    rename_.Begin();
    EXPECT_EQ(Box().Text(), "B");
    EXPECT_GT(Box().Rect().left, testkit::Window(Button(2)).Rect().left);
    EXPECT_LT(Box().Rect().right, testkit::Window(Button(2)).Rect().right);
}

TEST_F(RenameBoxTest, RenamesTheButtonItWasOpenedForWhereverTheMouseGoes) {
    rename_.Begin();
    Box().SetText("Ново");
    state_.Context.Select(2);
    rename_.Accept();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Ново|4");
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "B|0");
    EXPECT_FALSE(rename_.IsOpen());
}

TEST_F(RenameBoxTest, StaysOpenOverItsButtonWhenTheScaleChanges) {
    rename_.Begin();
    Box().SetText("Ново");
    const auto dpi = FAKE_CALL(GetDpiForWindow, [](HWND) -> UINT { return 144; });
    buttons_.Rescale();
    rename_.Rescale();
    EXPECT_TRUE(rename_.IsOpen());
    EXPECT_EQ(Box().Text(), "Ново");
    const win::Scale scale(144, win::TextPercent());
    EXPECT_EQ(win::Height(Box().Rect()), scale(21));
    EXPECT_EQ(Box().Rect().left - testkit::Window(Button(1)).Rect().left, scale(3));
    EXPECT_EQ(Box().Send(WM_GETFONT), reinterpret_cast<LRESULT>(win::MessageFont(scale)));
}

TEST_F(RenameBoxTest, KeepsWhatWasTypedWhenItCannotBeStored) {
    rename_.Begin();
    Box().SetText("Ново");
    {
        const testkit::HeldFile held(folder_.IniPath());
        rename_.Accept();
    }
    EXPECT_TRUE(rename_.IsOpen());
    rename_.Accept();
    EXPECT_FALSE(rename_.IsOpen());
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Ново|4");
}

TEST_F(RenameBoxTest, StaysOpenAndDoesNothingWhileItIsEmpty) {
    rename_.Begin();
    Box().SetText("");
    const std::string before = folder_.IniBytes();
    rename_.Accept();
    EXPECT_TRUE(rename_.IsOpen());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(RenameBoxTest, IsAbandonedWithoutRenaming) {
    rename_.Begin();
    Box().SetText("Ново");
    const std::string before = folder_.IniBytes();
    rename_.Abandon();
    EXPECT_FALSE(rename_.IsOpen());
    rename_.Accept();
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(GetFocus(), Button(1)) << "the keyboard stays with the button";
}

}  // namespace
}  // namespace app
