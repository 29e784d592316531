// Pasting onto a button, from a clipboard that only the test knows.

#include <shlwapi.h>

#include "app/button_commands.h"
#include "dialogs/message_box.h"
#include "tests/unit/app/panel_parts.h"

namespace app {
namespace {

using testkit::ModalAnswers;

class PasteTest : public PanelParts {
  protected:
    PasteTest() {
        fakes_.push_back(FAKE_CALL(IsClipboardFormatAvailable,
                                   [this](UINT format) -> BOOL { return format == format_ ? TRUE : FALSE; }));
        fakes_.push_back(FAKE_CALL(OpenClipboard, [this](HWND) -> BOOL { return opens_; }));
        fakes_.push_back(FAKE_CALL(CloseClipboard, [] { return TRUE; }));
        fakes_.push_back(FAKE_CALL(GetClipboardData,
                                   [this](UINT format) { return format == format_ ? memory_ : nullptr; }));
        Load("[Settings]\r\n");
    }
    ~PasteTest() override { GlobalFree(memory_); }

    void Hold(UINT format, const void* head, size_t headSize, const std::wstring& text) {
        GlobalFree(memory_);
        format_ = format;
        memory_ = GlobalAlloc(GMEM_MOVEABLE, headSize + text.size() * sizeof(wchar_t));
        auto* bytes = static_cast<char*>(GlobalLock(memory_));
        std::memcpy(bytes, head, headSize);
        std::memcpy(bytes + headSize, text.data(), text.size() * sizeof(wchar_t));
        GlobalUnlock(memory_);
    }
    void HoldText(const std::string& text) { Hold(CF_UNICODETEXT, "", 0, testkit::Wide(text) + L'\0'); }
    void HoldFiles(const std::vector<std::string>& paths) {
        DROPFILES head{};
        head.pFiles = sizeof head;
        head.fWide = TRUE;
        std::wstring list;
        for (const std::string& path : paths)
            list += testkit::Wide(path) + L'\0';
        Hold(CF_HDROP, &head, sizeof head, list + L'\0');
    }
    void Paste() {
        ButtonCommands commands(state_, dock_);
        commands.Run(kPaste, state_.CurrentPlace());
    }

    const ModalAnswers::Step kNothingReadable =
        testkit::Note("Couldn't read file path or URL from Clipboard.");
    const ModalAnswers::Step kCouldNotMake = testkit::Note("Couldn't make this shortcut, sorry.");
    UINT format_ = 0;
    BOOL opens_ = TRUE;
    HGLOBAL memory_ = nullptr;
};

TEST_F(PasteTest, TakesAUrlUnderItsLastElement) {
    HoldText("http://пример.test/страна.html");
    Paste();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "страна|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "страна"), "http://пример.test/страна.html");
}

TEST_F(PasteTest, TakesThePathInTheFirstLine) {
    const std::string path = folder_.MakeFile("文 č.tar.gz");
    HoldText(path + "\r\nand more");
    Paste();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "文 č.tar|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "文 č.tar"), path);
}

TEST_F(PasteTest, TakesAPathThatTheShellsFunctionRefusesToLookAt) {
    const std::string path = folder_.MakeFile("a.txt");
    HoldText(path);
    const auto exists = FAKE_CALL(PathFileExistsA, [](LPCSTR) -> BOOL {
        SetLastError(ERROR_SUCCESS);
        return FALSE;
    });
    Paste();
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), path);
}

TEST_F(PasteTest, IgnoresAnyOtherTextWithoutAWord) {
    const std::string before = folder_.IniBytes();
    for (const std::string& text :
         {std::string("plain text"), std::string("\nhttp://second.line/"), folder_.FullPath("missing.txt"),
          std::string(size_t{1} << 20, 'm'), std::string("two\twords")}) {
        HoldText(text);
        Paste();
    }
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PasteTest, SaysSoForAUrlThatCannotBeStored) {
    const std::string before = folder_.IniBytes();
    for (const std::string& text :
         {"http://a.test/" + std::string(600, 'm'), std::string("http://a.test/\tb")}) {
        HoldText(text);
        const ModalAnswers user({kCouldNotMake});
        Paste();
        EXPECT_EQ(user.Used(), 1u);
    }
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PasteTest, TakesAUrlWithABarAsOneTarget) {
    HoldText("http://a.test/b|c.html");
    Paste();
    EXPECT_EQ(folder_.IniValue("Cuts", "b-c"), "http://a.test/b%7Cc.html");
    EXPECT_FALSE(state_.Button(1).Group);
}

TEST_F(PasteTest, TakesOneCopiedFile) {
    const std::string path = folder_.MakeFile("Писмо č.txt");
    HoldFiles({path});
    Paste();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Писмо č|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "Писмо č"), path);
    EXPECT_FALSE(state_.Button(1).Group);
}

TEST_F(PasteTest, TakesSeveralCopiedFilesAsAGroupNamedAfterTheFirst) {
    const std::string first = folder_.MakeFile("1 文.txt");
    const std::string second = folder_.MakeFile("2.txt");
    const std::string third = folder_.MakeFile("3.txt");
    HoldFiles({first, second, third});
    Paste();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "1 文|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "1 文"), first + "|" + second + "|" + third);
    EXPECT_TRUE(state_.Button(1).Group);
}

TEST_F(PasteTest, PrefersTheTextOfAClipboardThatHoldsBoth) {
    HoldText("http://a.test/text.html");
    const auto both = FAKE_CALL(IsClipboardFormatAvailable,
                                [](UINT format) { return format == CF_UNICODETEXT || format == CF_HDROP; });
    Paste();
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "text|0");
    // Another text stays unread with its files.
    const std::string before = folder_.IniBytes();
    HoldText("plain text");
    state_.Context.Select(2);
    Paste();
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PasteTest, TakesTheFilesBesideAnEmptyText) {
    const std::string path = folder_.MakeFile("file.txt");
    HoldFiles({path});
    const HGLOBAL nothing = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(wchar_t));
    const auto both = FAKE_CALL(IsClipboardFormatAvailable,
                                [](UINT format) { return format == CF_UNICODETEXT || format == CF_HDROP; });
    const auto data = FAKE_CALL(GetClipboardData,
                                [&](UINT format) { return format == CF_UNICODETEXT ? nothing : memory_; });
    Paste();
    EXPECT_EQ(folder_.IniValue("Cuts", "file"), path);
    GlobalFree(nothing);
}

TEST_F(PasteTest, RefusesMoreFilesThanCanBeReadBack) {
    const std::string before = folder_.IniBytes();
    HoldFiles(std::vector<std::string>(20, "C:\\a folder with a name\\and a file.txt"));
    const ModalAnswers user({kCouldNotMake});
    Paste();
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(PasteTest, SaysThatNothingCouldBeReadFromAnEmptyClipboard) {
    const ModalAnswers user({kNothingReadable});
    Paste();
}

TEST_F(PasteTest, SaysSoForALinkThatLeadsNowhereAndPassesItOverBesideAFile) {
    const std::string link = folder_.MakeFile("веза.lnk", "no link");
    HoldFiles({link});
    const ModalAnswers user({kNothingReadable});
    Paste();
    EXPECT_EQ(user.Used(), 1u);
    const std::string path = folder_.MakeFile("file.txt");
    HoldFiles({link, path});
    Paste();
    EXPECT_EQ(folder_.IniValue("Cuts", "file"), path);
    EXPECT_FALSE(state_.Button(1).Group);
}

TEST_F(PasteTest, SaysSoForAClipboardThatDoesNotOpenToo) {
    HoldFiles({"C:\\a.txt"});
    opens_ = FALSE;
    const ModalAnswers user({kNothingReadable});
    Paste();
}

}  // namespace
}  // namespace app
