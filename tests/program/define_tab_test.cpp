// Defining a tab on the whole program: by a right click on its header, until Quon.ini shows it.
#include "dialogs/define_tab.h"

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

constexpr int kLabel = frmTabPrep_Text1 + 0;
constexpr int kDescription = frmTabPrep_Text1 + 1;
constexpr int kShowDescription = frmTabPrep_Check1;

class DefineTabDialogTest : public QuonTest {
  protected:
    static Window Open(QuonPanel& quon, int tab) {
        mouse::RightClick(quon.Header(tab));
        const Window dialog = quon.Program().WaitForWindow({.title = "Define tab"});
        WaitFor("the label has the focus", [&] { return dialog.Child(kLabel).IsFocused(); });
        return dialog;
    }
    static void TypeInto(Window dialog, int id, const std::string& text) {
        WaitFor("the box has the focus", [&] { return dialog.Child(id).IsFocused(); });
        keyboard::Type(text);
        WaitFor("the text is typed", [&] { return dialog.Child(id).Text() == text; });
    }
};

TEST_F(DefineTabDialogTest, AppliesLabelDescriptionAndOption) {
    QuonIni ini{.extensive_tooltips = true};
    QuonPanel quon = Start(ini);
    const ToolTipWatch tips(quon.Main());
    {
        const Window dialog = Open(quon, 3);
        EXPECT_EQ(dialog.Owner(), quon.Main());
        EXPECT_TRUE(dialog.IsTopmost());
        TypeInto(dialog, kLabel, "Раб 文");
        keyboard::Press(VK_TAB);
        TypeInto(dialog, kDescription, "Office files: Ћирилица и 漢字");
        keyboard::Press(VK_TAB);
        keyboard::Press(VK_SPACE);
        WaitFor("the option is on",
                [&] { return dialog.Child(kShowDescription).Send(BM_GETCHECK) == BST_CHECKED; });
        CaptureScreen().SaveAs("define-tab.bmp");
        keyboard::Press(VK_RETURN);
        WaitUntilClosed(dialog);
    }
    WaitFor("the header follows", [&] { return quon.Header(3).Text() == "Раб 文"; });
    EXPECT_EQ(folder_.IniValue("Buttons", "30"), "Раб 文|Office files: Ћирилица и 漢字");
    // The tip is made anew, though the pointer has been on this header before.
    Hover(quon.Header(3));
    const ToolTipText tip = tips.Wait();
    EXPECT_EQ(tip.title, "Раб 文");
    EXPECT_EQ(tip.text, "Office files: Ћирилица и 漢字");
    {
        const Window dialog = Open(quon, 3);
        EXPECT_EQ(dialog.Child(kLabel).Text(), "Раб 文");
        EXPECT_EQ(dialog.Child(kDescription).Text(), "Office files: Ћирилица и 漢字");
        keyboard::Press(VK_ESCAPE);
        WaitUntilClosed(dialog);
    }
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main()) << "saved before the program ends";
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    ini.tab_descriptions = true;
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
}

TEST_F(DefineTabDialogTest, TakesNoEighthCharacterAndCancelsEverything) {
    QuonPanel quon = Start({.buttons = {{"20", "Before|Опис"}}});
    const std::string before = folder_.IniBytes();
    const Window dialog = Open(quon, 2);
    keyboard::Type("12345678");
    WaitFor("seven characters", [&] { return dialog.Child(kLabel).Text() == "1234567"; });
    CaptureScreen().SaveAs("define-tab-full.bmp");
    mouse::Click(dialog.Child(kShowDescription).Centre());
    WaitFor("the option is on",
            [&] { return dialog.Child(kShowDescription).Send(BM_GETCHECK) == BST_CHECKED; });
    mouse::Click(dialog.Child(dialogs::frmTabPrep::Command1 + 1).Centre());
    WaitUntilClosed(dialog);
    EXPECT_EQ(quon.Header(2).Text(), "Before");
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(DefineTabDialogTest, ALabelWithABarGoesOnInTheDescription) {
    QuonPanel quon = Start({});
    const Window dialog = Open(quon, 6);
    TypeInto(dialog, kLabel, "a|b");
    mouse::Click(dialog.Child(dialogs::frmTabPrep::Command1 + 0).Centre());
    WaitUntilClosed(dialog);
    WaitFor("the header follows", [&] { return quon.Header(6).Text() == "a"; });
    EXPECT_EQ(folder_.IniValue("Buttons", "60"), "a|b|");
}

TEST_F(DefineTabDialogTest, ExplainsItsBox) {
    QuonPanel quon = Start({});
    const Window dialog = Open(quon, 1);
    const ToolTipWatch tips(dialog);
    const POINT centre = dialog.Child(kShowDescription).Centre();
    mouse::MoveTo(centre);
    dialog.Send(WM_NULL);
    mouse::MoveTo({centre.x + 2, centre.y + 1});
    const ToolTipText tip = tips.Wait();
    EXPECT_EQ(tip.title, "Tab contents:");
    EXPECT_EQ(tip.text, "List of shortcuts (files, URLs) assigned to buttons on the tab.");
    keyboard::Press(VK_ESCAPE);
    WaitUntilClosed(dialog);
}

}  // namespace
}  // namespace testkit
