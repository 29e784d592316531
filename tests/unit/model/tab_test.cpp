#include "model/tab.h"

#include "config/settings.h"
#include "model/button_records.h"
#include "tests/support/paint_log.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/picture_box.h"
#include "win/text.h"

namespace model {
namespace {

using ::testing::AllOf, ::testing::ElementsAre, ::testing::HasSubstr;
using testkit::CallLog, testkit::RecordedCalls;

class TabTest : public ::testing::Test {
  protected:
    TabTest() {
        header_.CreateOn(parent_.Handle(), 103, {0, 0, 52, 24});
        tab_.SetParentTab(&header_);
    }
    void TearDown() override { config::Settings = {}; }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow parent_;
    win::PictureBox header_;
    clsTab tab_{3};
};

TEST_F(TabTest, ARecordIsSplitAtItsFirstBar) {
    struct Case {
        const char* record;
        const char* label;
        const char* description;
    };
    for (const Case& example : {Case{"Work|All of it", "Work", "All of it"},
                                {"Work|All|of|it", "Work", "All|of|it"},
                                {"Work|", "Work", ""},
                                {"|All of it", "", "All of it"},
                                {"Посао č|Све 文書", "Посао č", "Све 文書"}}) {
        tab_.INIstring(example.record);
        EXPECT_EQ(tab_.Label, example.label) << example.record;
        EXPECT_EQ(tab_.Description, example.description) << example.record;
    }
}

TEST_F(TabTest, AnEmptyRecordLeavesTheTabAsItWas) {
    tab_.INIstring("Work|All of it");
    CallLog log;
    const RecordedCalls painting = testkit::LogPainting(log, header_.Handle(), header_.Dc());
    tab_.INIstring("");
    EXPECT_EQ(tab_.Label, "Work");
    EXPECT_EQ(tab_.Description, "All of it");
    EXPECT_THAT(log.Lines(), ElementsAre());
}

TEST_F(TabTest, ARecordWithoutABarIsAnErrorThatNamesIt) {
    tab_.INIstring("Work|All of it");
    try {
        tab_.INIstring("no bar");
        FAIL() << "no error";
    } catch (const win::InvalidArgumentError& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr("\"30\""), HasSubstr("\"Buttons\""), HasSubstr("no bar")));
    }
    EXPECT_EQ(tab_.Label, "Work");
    EXPECT_EQ(tab_.Description, "All of it");
}

TEST_F(TabTest, ANewRecordPaintsTheLabel) {
    CallLog log;
    const RecordedCalls painting = testkit::LogPainting(log, header_.Handle(), header_.Dc());
    tab_.INIstring("Посао|All of it");
    EXPECT_THAT(log.Lines(), ElementsAre("Fill 0 0 52 24", "Colour " + std::to_string(0x565656),
                                         "Text Посао in 3 5 49 22 format 1", "Refresh"));
    EXPECT_EQ(testkit::Window(header_.Handle()).Text(), "Посао");
}

TEST_F(TabTest, TheLabelsPlaceFollowsTheHeadersWidth) {
    win::PictureBox wide;
    wide.CreateOn(parent_.Handle(), 104, {0, 0, 80, 30});
    tab_.SetParentTab(&wide);
    EXPECT_EQ(tab_.ParentTab(), &wide);
    tab_.Label = "R & D";
    CallLog log;
    const RecordedCalls painting = testkit::LogPainting(log, wide.Handle(), wide.Dc());
    tab_.DrawTabText();
    EXPECT_EQ(log.Count("Text R && D in 3 5 77 22 format 1"), 1U) << log.Text();
    tab_.SetParentTab(&header_);
}

TEST_F(TabTest, ALabelOfSevenCharactersStandsInTheMiddleOfOneLine) {
    tab_.INIstring("iiiiiii|");
    RECT drawn{header_.ScaleWidth(), header_.ScaleHeight(), 0, 0};
    for (int y = 0; y < header_.ScaleHeight(); ++y)
        for (int x = 0; x < header_.ScaleWidth(); ++x)
            if (GetPixel(header_.Dc(), x, y) != GetSysColor(COLOR_BTNFACE)) {
                drawn = {std::min<LONG>(drawn.left, x), std::min<LONG>(drawn.top, y),
                         std::max<LONG>(drawn.right, x + 1), std::max<LONG>(drawn.bottom, y + 1)};
            }
    ASSERT_GT(drawn.right, drawn.left);
    // Between x 3 and the width - 3, by the width that Windows measures.
    const int width = win::TextWidth(header_.Dc(), tab_.Label);
    EXPECT_NEAR(drawn.left, 3 + (header_.ScaleWidth() - 6 - width) / 2, 1);
    EXPECT_GE(drawn.top, 5);
    EXPECT_LE(drawn.bottom, 22);
}

TEST_F(TabTest, WithoutAHeaderALabelIsOnlyKept) {
    clsTab lone(1);
    lone.INIstring("Work|All");
    EXPECT_EQ(lone.Label, "Work");
    EXPECT_EQ(lone.ParentTab(), nullptr);
}

TEST_F(TabTest, TheContentNumbersTheUsedButtons) {
    EXPECT_EQ(tab_.Content(), "") << "without a file";
    const std::pair<const char*, const char*> contents[] = {
        {"[Buttons]\r\n30=Work|x\r\n32=Нота|0\r\n33=\r\n35=Двоје|0\r\n39=last|2\r\n22=other|0\r\n42=other|"
         "0\r\n"
         "[Cuts]\r\nНота=C:\\Нота "
         "文.txt\r\nДвоје=C:\\a|C:\\b\r\nlast=http://example.org/\r\nother=C:\\other\r\n",
         "2. C:\\Нота 文.txt\n5. Group: Двоје\n9. http://example.org/"},
        {"[Buttons]\r\n30=Work|x\r\n31=\r\n", ""},
        // A group under its own key, and a shortcut that is gone.
        {"[Buttons]\r\n34=Group\r\n[Cuts]\r\n34=C:\\a|C:\\b\r\n", "4. Group: 34"},
        {"[Buttons]\r\n31=gone|0\r\n", "1. "}};
    for (const auto& [ini, content] : contents) {
        folder_.WriteIniText(ini);
        EXPECT_EQ(tab_.Content(), content) << ini;
    }
}

TEST_F(TabTest, TheTipHoldsTheLabelWithTheContentOrTheDescription) {
    const std::string used = "[Buttons]\r\n31=a|0\r\n[Cuts]\r\na=C:\\a.txt\r\n";
    const struct {
        std::string ini;
        bool descriptions;
        const char* record;
        const char* title;
        const char* text;
    } cases[] = {{"", true, "", "", "Right-click to define tab"},
                 {used, false, "Work|All of it", "Work", "1. C:\\a.txt"},
                 {"", false, "Work|All of it", "Work", ""},
                 {used, true, "Work|Све|of it", "Work", "Све|of it"},
                 {"", true, "Work|", "Work", "Right-click to define tab"}};
    for (const auto& [ini, descriptions, record, title, text] : cases) {
        SCOPED_TRACE(record);
        folder_.WriteIniText(ini);
        config::Settings.TabDescriptions = descriptions;
        tab_.INIstring(record);
        tab_.ShowTip(false);
        EXPECT_EQ(tab_.Tip().Title(), title);
        EXPECT_EQ(tab_.Tip().TipText(), text);
        EXPECT_EQ(tab_.Tip().ParentControl(), header_.Handle());
        EXPECT_TRUE(IsWindow(tab_.Tip().Handle()));
    }
}

TEST_F(TabTest, ASuppressedTipKeepsOnlyItsTitle) {
    folder_.WriteIniText("[Buttons]\r\n31=a|0\r\n[Cuts]\r\na=C:\\a.txt\r\n");
    tab_.INIstring("Work|All of it");
    for (const bool descriptions : {false, true}) {
        config::Settings.TabDescriptions = descriptions;
        tab_.ShowTip(true);
        EXPECT_EQ(tab_.Tip().Title(), "Work");
        EXPECT_EQ(tab_.Tip().TipText(), "");
        EXPECT_TRUE(IsWindow(tab_.Tip().Handle()));
    }
    EXPECT_EQ(tab_.Description, "All of it");
}

TEST_F(TabTest, WithoutAHeaderThereIsNoTip) {
    clsTab bare(3);
    bare.INIstring("Work|All of it");
    bare.ShowTip(false);
    EXPECT_EQ(bare.Tip().Title(), "Work");
    EXPECT_EQ(bare.Tip().Handle(), nullptr);
}

TEST_F(TabTest, EveryTipIsANewWindow) {
    int made = 0;
    const testkit::RecordedCall create = FAKE_CALL(CreateWindowExA, [&](auto... arguments) {
        ++made;
        return ORIGINAL_CALL(CreateWindowExA)(arguments...);
    });
    tab_.ShowTip(false);
    const HWND first = tab_.Tip().Handle();
    tab_.ShowTip(false);
    EXPECT_EQ(made, 2);
    EXPECT_TRUE(first == tab_.Tip().Handle() || IsWindow(first) == FALSE);
}

}  // namespace
}  // namespace model
