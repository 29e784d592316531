#include "win/text.h"

#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/handles.h"

namespace win {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall;

TEST(TextTest, GoesToWideAndBackInEveryScript) {
    for (const std::string text : {"", "plain", "čćž ÄÖÜ", "Ћирилица", "中文 한국어", "😀", "a\tb\nc"})
        EXPECT_EQ(ToBytes(ToWide(text)), text);
    EXPECT_EQ(ToWide("ж😀"), L"ж😀");
    EXPECT_EQ(ToBytes(L"č文"), "č文");
    EXPECT_EQ(ToWide(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(TextTest, ReplacesBytesThatAreNoCharacter) {
    EXPECT_EQ(ToWide("a\xFF"
                     "b"),
              L"a\uFFFDb");
}

TEST(TextTest, ComparesIgnoringCaseInEveryScript) {
    EXPECT_TRUE(EqualIgnoringCase("Notes", "nOTES"));
    EXPECT_TRUE(EqualIgnoringCase("ЖАБА č", "жаба Č"));
    EXPECT_TRUE(EqualIgnoringCase("文", "文"));
    EXPECT_TRUE(EqualIgnoringCase("", ""));
    EXPECT_FALSE(EqualIgnoringCase("Notes", "Note"));
    EXPECT_FALSE(EqualIgnoringCase("", "a"));
    EXPECT_FALSE(EqualIgnoringCase("c", "č"));
    // A comparison by the rules of a language would pass over the hyphen.
    EXPECT_FALSE(EqualIgnoringCase("coop", "co-op"));
}

TEST(TextTest, UpperCasesEveryScript) { EXPECT_EQ(UpperCase("abč жф 文 1"), L"ABČ ЖФ 文 1"); }

TEST(TextTest, GivesTheTextBeforeAndAfterTheFirstSeparator) {
    EXPECT_EQ(Before("a|b|c", '|'), "a");
    EXPECT_EQ(Before("abc", '|'), "abc");
    EXPECT_EQ(Before("|b", '|'), "");
    EXPECT_EQ(After("a|b|c", '|'), "b|c");
    EXPECT_EQ(After("abc", '|'), "");
    EXPECT_EQ(After("a|", '|'), "");
}

TEST(TextTest, SplitsAndKeepsEmptyPieces) {
    EXPECT_THAT(Split("a|b|c", '|'), ElementsAre("a", "b", "c"));
    EXPECT_THAT(Split("|a||", '|'), ElementsAre("", "a", "", ""));
    EXPECT_THAT(Split("", '|'), ElementsAre(""));
    EXPECT_THAT(Split("ж,č", ','), ElementsAre("ж", "č"));
}

TEST(TextTest, JoinsPieces) {
    EXPECT_EQ(Join({"a", "", "c"}, '|'), "a||c");
    EXPECT_EQ(Join({"a"}, '|'), "a");
    EXPECT_EQ(Join({"", ""}, '|'), "|");
    EXPECT_EQ(Join({}, '|'), "");
}

TEST(TextTest, ReadsAndSetsTheWholeTextOfAWindow) {
    const testkit::HiddenWindow window;
    const std::string text = std::string(500, 'x') + " Ћ č 文 😀";
    SetText(window.Handle(), text);
    EXPECT_EQ(WindowText(window.Handle()), text);
    SetText(window.Handle(), "");
    EXPECT_EQ(WindowText(window.Handle()), "");
}

TEST(TextTest, ABoxThatCannotBeFilledIsAnError) {
    const testkit::HiddenWindow window;
    FillBox(window.Handle(), "");
    FillBox(window.Handle(), "文");
    EXPECT_EQ(WindowText(window.Handle()), "文");
    const RecordedCall none = FAKE_CALL(SetWindowTextW, [](HWND, LPCWSTR) -> BOOL { return FALSE; });
    EXPECT_THROW(FillBox(window.Handle(), "other"), RuntimeError);
    SetText(window.Handle(), "other");
}

TEST(TextTest, DrawsAnAmpersandAsItself) {
    CallLog log;
    const RecordedCall draw = FAKE_CALL(
        DrawTextExW, [&](HDC, LPWSTR text, int length, LPRECT, UINT format, LPDRAWTEXTPARAMS params) {
            EXPECT_EQ(params, nullptr);
            log.Add(std::wstring(text, static_cast<size_t>(length)).c_str(), format);
            return 13;
        });
    RECT place{0, 0, 50, 20};
    EXPECT_EQ(DrawPlainText(nullptr, "R & D && ж文", place, DT_CENTER), 13);
    DrawPlainText(nullptr, "R & D", place, DT_NOPREFIX);
    EXPECT_THAT(log.Lines(), ElementsAre("R && D &&&& ж文 1", "R & D 2048"));
}

TEST(TextTest, MeasuresCharactersNotBytes) {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    std::wstring measured;
    const RecordedCall measure =
        FAKE_CALL(GetTextExtentPoint32W, [&](HDC, LPCWSTR text, int length, LPSIZE size) {
            measured.assign(text, static_cast<size_t>(length));
            return ORIGINAL_CALL(GetTextExtentPoint32W)(dc.Get(), text, length, size);
        });
    const int one = TextWidth(dc.Get(), "Ж");
    EXPECT_EQ(measured, L"Ж");
    EXPECT_GT(one, 0);
    EXPECT_EQ(TextWidth(dc.Get(), "ЖЖЖ"), 3 * one);
    EXPECT_EQ(TextWidth(dc.Get(), ""), 0);
}

TEST(TextTest, HasOneMessageFont) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW font{};
    ASSERT_NE(GetObjectW(MessageFont(), sizeof font, &font), 0);
    EXPECT_STREQ(font.lfFaceName, metrics.lfMessageFont.lfFaceName);
    EXPECT_EQ(font.lfHeight, metrics.lfMessageFont.lfHeight);
    EXPECT_EQ(MessageFont(), MessageFont());
}

TEST(TextTest, TakesAnotherMessageFontOnceTheFormerOneIsForgotten) {
    const HFONT usual = MessageFont();
    const auto weightOf = [](HFONT font) {
        LOGFONTW description{};
        EXPECT_NE(GetObjectW(font, sizeof description, &description), 0);
        return description.lfWeight;
    };
    {
        const RecordedCall heavier = FAKE_CALL(
            SystemParametersInfoForDpi, [](UINT what, UINT size, PVOID value, UINT flags, UINT dpi) {
                const WINBOOL done = ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, dpi);
                if (what == SPI_GETNONCLIENTMETRICS)
                    static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfWeight = FW_BLACK;
                return done;
            });
        EXPECT_EQ(MessageFont(), usual);
        ForgetFonts();
        const HFONT heavy = MessageFont();
        EXPECT_EQ(weightOf(heavy), FW_BLACK);
        ForgetFonts();
        EXPECT_EQ(MessageFont(), heavy) << "made once only";
    }
    EXPECT_NE(weightOf(usual), FW_BLACK) << "it may still be selected somewhere";
    ForgetFonts();
    EXPECT_EQ(MessageFont(), usual);
}

TEST(TextTest, MeasuresTheHeightOfALineOfItsFont) {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    const Selection font(dc.Get(), MessageFont());
    RECT lines{0, 0, 100, 0};
    DrawPlainText(dc.Get(), "one\ntwo", lines, DT_CALCRECT);
    EXPECT_GT(LineHeight(dc.Get()), 0);
    EXPECT_EQ(2 * LineHeight(dc.Get()), lines.bottom);
}

}  // namespace
}  // namespace win
