#include "win/combo_box.h"

#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/text.h"

namespace win {
namespace {

using ::testing::ElementsAre;

class ComboBoxTest : public ::testing::Test {
  protected:
    ComboBoxTest() { list_.CreateOn(parent_.Handle(), 230, {5, 6, 205, 246}); }

    testkit::HiddenWindow parent_;
    ComboBox list_;
};

TEST_F(ComboBoxTest, IsAnEditableDropDown) {
    const testkit::Window window(list_.Handle());
    EXPECT_EQ(window.Class(), "ComboBox");
    EXPECT_EQ(window.Id(), 230);
    EXPECT_EQ(window.Parent().Handle(), parent_.Handle());
    EXPECT_EQ(window.Style() & 3, CBS_DROPDOWN);
    EXPECT_EQ(window.Style() & CBS_SORT, 0);
    EXPECT_NE(window.Style() & CBS_AUTOHSCROLL, 0);
    EXPECT_NE(window.Style() & WS_TABSTOP, 0);
    EXPECT_EQ(window.Send(WM_GETFONT), reinterpret_cast<LRESULT>(MessageFont()));
    EXPECT_EQ(testkit::Window(list_.Edit()).Class(), "Edit");
    EXPECT_TRUE(testkit::Window(list_.Edit()).IsDescendantOf(window));
}

TEST_F(ComboBoxTest, IsAsHighAsItIsMade) {
    const testkit::Window window(list_.Handle());
    for (const int height : {24, 36, 30}) {
        list_.SetHeight(height);
        EXPECT_EQ(Height(window.Rect()), height);
    }
    // Without its list it keeps the width, and the list stays as it was.
    EXPECT_EQ(Width(window.Rect()), 200);
    RECT open{};
    window.Send(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&open));
    EXPECT_GE(Height(open), 200);
}

TEST_F(ComboBoxTest, KeepsItsItemsInTheOrderGiven) {
    list_.SetItems({"b", "Ћирилица č", "文書", "", "a"});
    EXPECT_THAT(list_.Items(), ElementsAre("b", "Ћирилица č", "文書", "", "a"));
    list_.SetItems({"one"});
    EXPECT_THAT(list_.Items(), ElementsAre("one"));
    list_.SetItems({});
    EXPECT_THAT(list_.Items(), ElementsAre());
}

TEST_F(ComboBoxTest, KeepsTheTypedTextWhenItsItemsChange) {
    list_.SetItems({"one", "two"});
    list_.SetText("куцам 文");
    list_.SetItems({"three"});
    EXPECT_EQ(list_.Text(), "куцам 文");
    EXPECT_EQ(WindowText(list_.Edit()), "куцам 文");
    list_.SetText("");
    list_.SetItems({"four"});
    EXPECT_EQ(list_.Text(), "");
}

TEST_F(ComboBoxTest, HoldsAThousandItems) {
    std::vector<std::string> items;
    for (int number = 0; number < 1000; ++number)
        items.push_back("item " + std::to_string(number));
    list_.SetItems(items);
    EXPECT_EQ(list_.Items(), items);
}

TEST_F(ComboBoxTest, DrawsAgainWhenItsItemsHaveChanged) {
    testkit::CallLog log;
    const testkit::RecordedCall refresh = LOG_CALL(log, InvalidateRect);
    list_.SetItems({"one"});
    EXPECT_EQ(log.Count("InvalidateRect " + testkit::LoggedText(list_.Handle())), 1U);
}

TEST_F(ComboBoxTest, ClearsTheSelectionAndPutsTheCaretAtTheEnd) {
    list_.SetText("ЖЖ 文 😀");
    SendMessageW(list_.Edit(), EM_SETSEL, 0, -1);
    list_.ClearSelection();
    EXPECT_EQ(testkit::Window(list_.Edit()).Selection(), MAKELONG(7, 7));
}

TEST_F(ComboBoxTest, KeepsTheSelectionWhenItsItemsChange) {
    list_.SetText("куцам 文");
    SendMessageW(list_.Edit(), EM_SETSEL, 2, 4);
    list_.SetItems({"one", "two"});
    EXPECT_EQ(testkit::Window(list_.Edit()).Selection(), MAKELONG(2, 4));
}

TEST_F(ComboBoxTest, FindsTheFirstItemThatContainsATextIgnoringCase) {
    list_.SetItems({"alpha", "", "Бета č", "alphabet", "文書"});
    struct Case {
        const wchar_t* text;
        const wchar_t* item;
        size_t at;
    };
    const Case cases[] = {{L"a", L"alpha", 0},         {L"HA", L"alpha", 3},    {L"ALPHA", L"alpha", 0},
                          {L"alphab", L"alphabet", 0}, {L"бЕТА", L"Бета č", 0}, {L"Č", L"Бета č", 5},
                          {L"書", L"文書", 1},         {L"文書", L"文書", 0}};
    for (const Case& example : cases) {
        const auto found = list_.FindContaining(example.text);
        ASSERT_TRUE(found.has_value()) << ToBytes(example.text);
        EXPECT_EQ(found->item, example.item);
        EXPECT_EQ(found->at, example.at) << ToBytes(example.text);
    }
    for (const wchar_t* text : {L"", L"x", L"alphabets", L"aБ", L"書a"})
        EXPECT_FALSE(list_.FindContaining(text).has_value()) << ToBytes(text);
    list_.SetItems({});
    EXPECT_FALSE(list_.FindContaining(L"alpha").has_value()) << "of the items that were";
}

TEST_F(ComboBoxTest, SelectsFromACharacterToTheEnd) {
    list_.SetText("ЖЖ 文 ab");
    EXPECT_FALSE(list_.CaretIsAtEnd());
    list_.SelectFrom(3);
    EXPECT_EQ(testkit::Window(list_.Edit()).Selection(), MAKELONG(3, 7));
    EXPECT_FALSE(list_.CaretIsAtEnd()) << "something is selected";
    SendMessageW(list_.Edit(), EM_SETSEL, 7, 7);
    EXPECT_TRUE(list_.CaretIsAtEnd());
    SendMessageW(list_.Edit(), EM_SETSEL, 6, 6);
    EXPECT_FALSE(list_.CaretIsAtEnd());
}

TEST_F(ComboBoxTest, KnowsWhetherItsListIsOpen) {
    ShowWindow(parent_.Handle(), SW_SHOWNOACTIVATE);
    EXPECT_FALSE(list_.IsOpen());
    SendMessageW(list_.Handle(), CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(list_.IsOpen());
}

TEST_F(ComboBoxTest, ThatCannotBeMadeIsAnError) {
    const testkit::RecordedCall create = FAKE_CALL(CreateWindowExW, [](auto...) { return HWND{}; });
    ComboBox other;
    EXPECT_THROW(other.CreateOn(parent_.Handle(), 231, {0, 0, 10, 10}), RuntimeError);
    EXPECT_EQ(ComboBox().Edit(), nullptr);
}

TEST_F(ComboBoxTest, PassesOverAnItemInTheSearch) {
    list_.SetItems({"alpha", "[Refresh list]", "alphabet", "refresh"});
    const auto found = list_.FindContaining(L"REF", L"[Refresh list]");
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->item, L"refresh");
    EXPECT_EQ(list_.FindContaining(L"a", L"alpha")->item, L"alphabet");
    EXPECT_FALSE(list_.FindContaining(L"list", L"[Refresh list]").has_value());
    EXPECT_EQ(list_.FindContaining(L"list")->item, L"[Refresh list]");
}

TEST_F(ComboBoxTest, KnowsItsItemsIgnoringCase) {
    EXPECT_FALSE(list_.Has(L"one"));
    list_.SetItems({"one", "Бета č", "three"});
    for (const wchar_t* text : {L"one", L"ONE", L"бЕТА Č", L"three"})
        EXPECT_TRUE(list_.Has(text)) << ToBytes(text);
    for (const wchar_t* text : {L"on", L"ne", L"thre", L"one two", L""})
        EXPECT_FALSE(list_.Has(text)) << ToBytes(text);
}

}  // namespace
}  // namespace win
