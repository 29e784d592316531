#include "win/byte_limit.h"

#include "tests/support/unit_test.h"

namespace win {
namespace {

class ByteLimitTest : public ::testing::Test {
  protected:
    ByteLimitTest() { window_.SetText("ab"); }

    /// Puts a text where the caret is, and tells the limit of it.
    void Insert(const std::string& text) {
        SendMessageW(edit_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(testkit::Wide(text).c_str()));
        limit_.OnChange();
    }
    void PutCaret(WPARAM at) { SendMessageW(edit_, EM_SETSEL, at, static_cast<LPARAM>(at)); }
    DWORD Caret() {
        DWORD end = 0;
        SendMessageW(edit_, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
        return end;
    }

    testkit::HiddenWindow parent_;
    HWND edit_ = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 200, 20, parent_.Handle(),
                                 nullptr, nullptr, nullptr);
    testkit::Window window_{edit_};
    ByteLimit limit_;
};

TEST_F(ByteLimitTest, TakesATextUpToItsBytesAndNoLongerOne) {
    limit_.Attach(edit_, 6);
    PutCaret(1);
    Insert("文");
    EXPECT_EQ(window_.Text(), "a文b");
    Insert("é");
    EXPECT_EQ(window_.Text(), "a文b") << "two bytes where one is left";
    EXPECT_EQ(Caret(), 2u) << "the user goes on where he was";
    Insert("x");
    EXPECT_EQ(window_.Text(), "a文xb");
}

TEST_F(ByteLimitTest, TakesNothingOfATextThatDoesNotFit) {
    limit_.Attach(edit_, 6);
    PutCaret(2);
    Insert("https://");
    EXPECT_EQ(window_.Text(), "ab");
    EXPECT_EQ(Caret(), 2u);
    window_.SetText("1234567");
    limit_.OnChange();
    EXPECT_EQ(window_.Text(), "ab");
}

TEST_F(ByteLimitTest, LetsALongTextStayAndBecomeShorter) {
    const std::string text(40000, 'x');
    SendMessageW(edit_, EM_LIMITTEXT, 0, 0);
    window_.SetText(text);
    limit_.Attach(edit_, 10);
    PutCaret(3);
    Insert("y");
    EXPECT_EQ(window_.Text(), text);
    SendMessageW(edit_, EM_SETSEL, 0, 5);
    Insert("z");
    EXPECT_EQ(window_.Text(), "z" + text.substr(5));
    SendMessageW(edit_, EM_SETSEL, 0, -1);
    Insert("short");
    EXPECT_EQ(window_.Text(), "short");
    PutCaret(5);
    Insert("and long");
    EXPECT_EQ(window_.Text(), "short");
}

TEST_F(ByteLimitTest, WithoutAControlNothingHappens) { EXPECT_NO_THROW(limit_.OnChange()); }

}  // namespace
}  // namespace win
