#include "dialogs/define_tab.h"

#include "config/ini.h"
#include "config/settings.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/errors.h"
#include "win/picture_box.h"

namespace dialogs {
namespace {

using config::Settings;
using ::testing::Each, ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Press, testkit::Window;

constexpr int kLabel = 810;
constexpr int kDescription = 811;
constexpr int kShowDescription = 820;
constexpr int kApply = 830;
constexpr int kCancel = 831;

class DefineTabTest : public ::testing::Test {
  protected:
    DefineTabTest() { Settings = {}; }
    ~DefineTabTest() override { Settings = {}; }

    /// Opens the dialog for a tab and for one step, which closes it.
    void Open(int tab, const ModalAnswers::Step& step) {
        ModalAnswers user({step});
        frmTabPrep(host_, tab).Open();
    }
    /// Opens it for one step and cancels or applies it.
    void Look(int tab, const ModalAnswers::Step& step) { Open(tab, ThenPress(step, kCancel)); }
    void Apply(int tab, const ModalAnswers::Step& step) { Open(tab, ThenPress(step, kApply)); }
    /// Types both texts and applies them.
    void Define(int tab, const std::string& label, const std::string& description) {
        Apply(tab, [&](Window dialog) {
            dialog.Child(kLabel).SetText(label);
            dialog.Child(kDescription).SetText(description);
        });
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    RecordedHost host_;
};

TEST_F(DefineTabTest, ShowsItsCaptions) {
    Look(1, [](Window dialog) {
        EXPECT_EQ(dialog.Text(), "Define tab");
        EXPECT_EQ(dialog.Child(frmTabPrep::Label1 + 0).Text(), "Give the label and description to tab:");
        EXPECT_EQ(dialog.Child(frmTabPrep::Label1 + 1).Text(),
                  "Label:" + std::string(31, ' ') + "(7 chars max)");
        EXPECT_EQ(dialog.Child(frmTabPrep::Label1 + 2).Text(), "Description:");
        EXPECT_EQ(dialog.Child(kShowDescription).Text(), "Show description instead of tab contents");
        EXPECT_EQ(dialog.Child(kApply).Text(), "Apply");
        EXPECT_EQ(dialog.Child(kCancel).Text(), "Cancel");
        for (const int id : {800, 801, 802, 810, 811, 820, 830, 831})
            EXPECT_TRUE(dialog.Child(id).IsVisible()) << id;
        EXPECT_TRUE(dialog.IsTopmost());
    });
}

TEST_F(DefineTabTest, DoesNotOpenWhereItCannotShowTheTabsTexts) {
    for (const int box : {kLabel, kDescription})
        EXPECT_EQ(ReportsWithoutText(box, [this] { frmTabPrep(host_, 1).Open(); }), 1) << box;
}

TEST_F(DefineTabTest, ShowsTheTabsTextsAndTheOption) {
    host_.tab.Label = "Посао";
    host_.tab.Description = "Опис | 説明";
    for (const bool option : {false, true}) {
        Settings.TabDescriptions = option;
        Look(4, [&](Window dialog) {
            EXPECT_EQ(dialog.Child(kLabel).Text(), "Посао");
            EXPECT_EQ(dialog.Child(kDescription).Text(), "Опис | 説明");
            EXPECT_EQ(dialog.Child(kShowDescription).Send(BM_GETCHECK), option ? BST_CHECKED : BST_UNCHECKED);
        });
    }
    EXPECT_THAT(host_.log.Lines(), Each("tab 4"));
}

TEST_F(DefineTabTest, WritesTheRecordAndHandsItToTheTab) {
    Define(3, "Work", "Office files");
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "Work|Office files");
    EXPECT_EQ(host_.context.Records.At("30"), "Work|Office files");
    EXPECT_EQ(host_.log.Lines().back(), "tab 3");
    EXPECT_EQ(host_.tab.Label, "Work");
    EXPECT_EQ(host_.tab.Description, "Office files");
}

TEST_F(DefineTabTest, CutsALabelThatABoxOfThatLimitCouldNotHold) {
    Define(3, "Посао и још", "Опис");
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "Посао и|Опис");
    // The emoji's first half would be the seventh unit.
    Define(3, "sixsix\xF0\x9F\x98\x80", "");
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "sixsix|");
    // Longer than what is read back: without its "|" the record would end the next start.
    Define(3, std::string(600, 'x'), "");
    EXPECT_EQ(config::ReadIni("Buttons", "30"), "xxxxxxx|");
    EXPECT_EQ(host_.tab.Label, "xxxxxxx");
}

TEST_F(DefineTabTest, WritesBlanksForControlCharacters) {
    // Another program may put into the boxes what nobody can type into them.
    Define(3, "a\nb", "one\ntwo\tthree");
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "a b|one two three");
    EXPECT_EQ(host_.tab.Label, "a b");
    EXPECT_EQ(host_.tab.Description, "one two three");
    model::ButtonRecords records;
    records.LoadButtonRecords();
    EXPECT_EQ(records.At("30"), "a b|one two three");
}

TEST_F(DefineTabTest, StaysOpenWithWhatWasTypedWhenItCannotBeStored) {
    folder_.WriteIniText("[Buttons]\r\n30=old|d\r\n");
    Apply(3, [this](Window dialog) {
        dialog.Child(kLabel).SetText("new");
        {
            const testkit::HeldFile held(folder_.IniPath());
            dialog.Press(kApply);
        }
        EXPECT_TRUE(dialog.IsVisible());
        EXPECT_EQ(dialog.Child(kLabel).Text(), "new");
        EXPECT_NE(host_.tab.Label, "new");
    });
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "new|");
}

TEST_F(DefineTabTest, TakesNoDescriptionThatCouldNotBeReadBackWhole) {
    const std::string longest = std::string(528, 'x') + "Жж";
    Apply(3, [&](Window dialog) {
        dialog.Child(kLabel).SetText("文文文文文文文");
        dialog.Child(kDescription).SetText(longest + "x");
        EXPECT_EQ(dialog.Child(kDescription).Text(), host_.tab.Description) << "a paste is taken back whole";
        dialog.Child(kDescription).SetText(longest);
        dialog.Child(kDescription).Send(EM_SETSEL, 3, 3);
        dialog.Child(kDescription).Send(WM_CHAR, L'y');
        EXPECT_EQ(dialog.Child(kDescription).Text(), longest);
        // A shorter label leaves more room.
        dialog.Child(kLabel).SetText("a");
        dialog.Child(kDescription).SetText(longest + std::string(20, 'x'));
    });
    model::ButtonRecords records;
    records.LoadButtonRecords();
    EXPECT_EQ(records.At("30"), "a|" + longest + std::string(20, 'x'));
    EXPECT_EQ(records.At("30").size(), 554u);
}

TEST_F(DefineTabTest, StaysOpenWhereALongDescriptionLeavesNoRoomForTheLabel) {
    const std::string description(552, 'x');
    host_.tab.INIstring("a|" + description);
    Apply(3, [&](Window dialog) {
        dialog.Child(kLabel).SetText("ab");
        dialog.Press(kApply);
        EXPECT_TRUE(dialog.IsVisible());
        EXPECT_EQ(folder_.IniValue("Buttons", "30"), std::nullopt);
        dialog.Child(kLabel).SetText("b");
    });
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "b|" + description);
}

TEST_F(DefineTabTest, PaintsTheNewLabelOnTheHeader) {
    const testkit::HiddenWindow parent;
    win::PictureBox header;
    header.CreateOn(parent.Handle(), 101, {0, 0, 52, 24});
    host_.tab.SetParentTab(&header);
    Define(1, "日本語", "");
    EXPECT_EQ(Window(header.Handle()).Text(), "日本語");
    host_.tab.SetParentTab(nullptr);
}

TEST_F(DefineTabTest, WritesWhateverIsTypedAsItStands) {
    const std::vector<std::vector<std::string>> cases{
        // tab, label, description, stored label, stored description
        {"1", "", "", "", ""},
        {"2", "", "d", "", "d"},
        {"4", "Ђ文", "Опис = 1; [x]", "Ђ文", "Опис = 1; [x]"},
        // A bar shifts the fields when the record is read back.
        {"5", "a|b", "c", "a", "b|c"},
        {"6", "a", "b|c", "a", "b|c"}};
    for (const auto& c : cases) {
        Define(std::stoi(c[0]), c[1], c[2]);
        EXPECT_EQ(folder_.IniValue("Buttons", c[0] + "0"), c[1] + "|" + c[2]);
        EXPECT_EQ(host_.tab.Label, c[3]);
        EXPECT_EQ(host_.tab.Description, c[4]);
    }
}

TEST_F(DefineTabTest, RefusesAnEighthCharacterInTheLabelAlone) {
    Look(1, [](Window dialog) {
        for (const int id : {kLabel, kDescription})
            for (int count = 0; count < 10; ++count)
                dialog.Child(id).Send(WM_CHAR, L'Ж');
        EXPECT_EQ(dialog.Child(kLabel).Text(), "ЖЖЖЖЖЖЖ");
        EXPECT_EQ(dialog.Child(kDescription).Text(), "ЖЖЖЖЖЖЖЖЖЖ");
        EXPECT_GT(dialog.Child(kDescription).Send(EM_GETLIMITTEXT), 100000);
    });
}

TEST_F(DefineTabTest, SetsTheOptionOnApplyAlone) {
    for (const bool option : {true, false}) {
        Settings.TabDescriptions = !option;
        for (const int button : {kCancel, kApply}) {
            Open(2, [&](Window dialog) {
                dialog.Press(kShowDescription);
                dialog.Press(button);
            });
            EXPECT_EQ(Settings.TabDescriptions, button == kApply ? option : !option);
        }
    }
}

TEST_F(DefineTabTest, WritesNothingWhenItIsCancelled) {
    host_.tab.Label = "Before";
    const std::vector<ModalAnswers::Step> ways{Press(kCancel),
                                               [](Window dialog) { dialog.Send(WM_SYSCOMMAND, SC_CLOSE); },
                                               [](Window) { PressInFocus(VK_ESCAPE); }};
    for (const ModalAnswers::Step& close : ways)
        Open(2, [&](Window dialog) {
            dialog.Child(kLabel).SetText("After");
            close(dialog);
        });
    EXPECT_EQ(folder_.IniBytes(), "");
    EXPECT_EQ(host_.tab.Label, "Before");
}

TEST_F(DefineTabTest, ExplainsItsBoxByOneTipThatItKeeps) {
    TipLog tips;
    Look(1, [&](Window dialog) {
        PointAt(dialog, dialog);
        PointAt(dialog, dialog.Child(kLabel));
        EXPECT_THAT(tips.Tips(), IsEmpty());
        for (int time = 0; time < 3; ++time) {
            PointAt(dialog, dialog.Child(kShowDescription));
            PointAt(dialog, dialog);
        }
        EXPECT_THAT(
            tips.Tips(),
            ElementsAre("820 Tab contents:|List of shortcuts (files, URLs) assigned to buttons on the tab."));
    });
    EXPECT_EQ(TipLog::WindowCount(), 0);
}

TEST_F(DefineTabTest, GoesByTheKeyboard) {
    host_.tab.Label = "Label";
    Open(1, [](Window dialog) {
        EXPECT_EQ(GetFocus(), dialog.Child(kLabel).Handle());
        EXPECT_EQ(dialog.Child(kLabel).Selection(), MAKELONG(0, 5));
        EXPECT_THAT(TabOrder(dialog, kLabel),
                    ElementsAre(kLabel, kDescription, kShowDescription, kApply, kCancel));
        PressInFocus(VK_RETURN);
    });
    EXPECT_EQ(folder_.IniValue("Buttons", "10"), "Label|") << "Enter applies";
}

TEST_F(DefineTabTest, PutsTheLabelIntoTheGapOfItsCaption) {
    Look(1, [](Window dialog) {
        const RECT caption = dialog.Child(frmTabPrep::Label1 + 1).Rect();
        const RECT box = dialog.Child(kLabel).Rect();
        EXPECT_GT(box.left, caption.left);
        EXPECT_LT(box.right, caption.right);
        EXPECT_GT(box.right - box.left, 60) << "seven letters fit";
    });
}

}  // namespace
}  // namespace dialogs
