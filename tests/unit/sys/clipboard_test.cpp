#include "sys/clipboard.h"

#include "tests/support/neighbour.h"
#include "tests/support/unit_test.h"
#include "win/com.h"

namespace {

using sys::clsClipboard;
using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog, testkit::Neighbour, testkit::ProgramFolder, testkit::RecordedCall;

/// A clipboard that only the test knows, with two files on it.
class ClipboardCallsTest : public testing::Test {
  protected:
    CallLog log_;
    BOOL available_ = TRUE;
    BOOL opens_ = TRUE;
    RecordedCall has_ = FAKE_CALL(IsClipboardFormatAvailable, [this](UINT format) {
        log_.Add("has", format);
        return available_;
    });
    RecordedCall open_ = FAKE_CALL(OpenClipboard, [this](HWND owner) {
        log_.Add("open", owner);
        return opens_;
    });
    RecordedCall get_ = FAKE_CALL(GetClipboardData, [this](UINT format) -> HANDLE {
        log_.Add("get", format);
        return reinterpret_cast<HANDLE>(UINT_PTR{0x77});
    });
    RecordedCall query_ = FAKE_CALL(DragQueryFileA, [this](HDROP list, UINT index, LPSTR name, UINT size) {
        log_.Add("query", static_cast<const void*>(list), index, size);
        if (index == 0xFFFFFFFF) return UINT{2};
        EXPECT_GE(size, 260u);
        if (index == 0) {
            EXPECT_EQ(std::string(name, size), std::string(size, ' '));
        }
        std::strcpy(name, index == 0 ? "C:\\прва.txt" : "C:\\2");
        return UINT{1};
    });
    RecordedCall close_ = STUB_CALL(log_, CloseClipboard, TRUE);
    RecordedCall empty_ = STUB_CALL(log_, EmptyClipboard, TRUE);
};

TEST_F(ClipboardCallsTest, ReadsTheFilesOneByOneWhileItIsOpen) {
    EXPECT_THAT(clsClipboard::GetFiles(), ElementsAre("C:\\прва.txt", "C:\\2"));
    EXPECT_THAT(log_.Lines(), ElementsAre("has 15", "open null", "get 15", "query 0x77 4294967295 0",
                                          "query 0x77 0 1040", "query 0x77 1 1040", "CloseClipboard"));
}

TEST_F(ClipboardCallsTest, DoesNotOpenItWithoutFilesOnIt) {
    available_ = FALSE;
    EXPECT_FALSE(clsClipboard::HasFiles());
    EXPECT_THAT(clsClipboard::GetFiles(), IsEmpty());
    EXPECT_EQ(clsClipboard::GetText(), "");
    EXPECT_THAT(log_.Lines(), ElementsAre("has 15", "has 15", "has 13"));
}

TEST_F(ClipboardCallsTest, GivesNothingAndClosesNothingWhenItDoesNotOpen) {
    opens_ = FALSE;
    EXPECT_THAT(clsClipboard::GetFiles(), IsEmpty());
    EXPECT_EQ(clsClipboard::GetText(), "");
    EXPECT_THAT(log_.Lines(), ElementsAre("has 15", "open null", "has 13", "open null"));
}

TEST_F(ClipboardCallsTest, IsEmptiedBetweenOpeningAndClosing) {
    clsClipboard::ClearTheClipboard();
    EXPECT_THAT(log_.Lines(), ElementsAre("open null", "EmptyClipboard", "CloseClipboard"));
}

/// The true clipboard, which belongs to the whole desktop.
class ClipboardDesktopTest : public testing::Test {
  protected:
    win::OleThread ole_;
    ProgramFolder folder_;
    Neighbour neighbour_{folder_};
};

TEST_F(ClipboardDesktopTest, GivesTheFilesThatAnotherProgramHasCopiedInTheirOrder) {
    const std::string long_name = "C:\\" + std::string(200, 'x') + "文文文文文文文文文文文文文文文文文.txt";
    neighbour_.CopyFiles({"C:\\Žuto č.txt", "D:\\Писма\\а.doc", long_name});
    EXPECT_TRUE(clsClipboard::HasFiles());
    EXPECT_THAT(clsClipboard::GetFiles(), ElementsAre("C:\\Žuto č.txt", "D:\\Писма\\а.doc", long_name));
    EXPECT_EQ(clsClipboard::GetText(), "");
}

TEST_F(ClipboardDesktopTest, GivesACopiedLinksTargetWithoutItsArguments) {
    const std::string target = folder_.MakeFile("Циљ 文.txt");
    const std::string link = folder_.MakeLink("veza.lnk", {.target = target, .arguments = "/a /b"});
    neighbour_.CopyFiles({link, folder_.MakeFile("други.txt")});
    EXPECT_THAT(clsClipboard::GetFiles(), ElementsAre(target, folder_.FullPath("други.txt")));
}

TEST_F(ClipboardDesktopTest, GivesAnEmptyPathForACopiedLinkThatIsBroken) {
    neighbour_.CopyFiles({folder_.MakeFile("веза.lnk", "no link"), "C:\\a.txt"});
    EXPECT_THAT(clsClipboard::GetFiles(), ElementsAre("", "C:\\a.txt"));
}

TEST_F(ClipboardDesktopTest, GivesNothingWhenItIsEmptiedWhileItIsOpened) {
    clsClipboard::ClearTheClipboard();
    const RecordedCall has = ANSWER_CALL(IsClipboardFormatAvailable, TRUE);
    EXPECT_THAT(clsClipboard::GetFiles(), IsEmpty());
    EXPECT_EQ(clsClipboard::GetText(), "");
}

TEST_F(ClipboardDesktopTest, GivesCopiedTextAndNoFilesForIt) {
    neighbour_.CopyText("http://пример/č?文=1");
    EXPECT_FALSE(clsClipboard::HasFiles());
    EXPECT_THAT(clsClipboard::GetFiles(), IsEmpty());
    EXPECT_EQ(clsClipboard::GetText(), "http://пример/č?文=1");
}

TEST_F(ClipboardDesktopTest, GivesAMegabyteOfText) {
    neighbour_.CopyText("č文 ", 1 << 18);
    std::string wanted;
    for (int times = 0; times < 1 << 18; ++times)
        wanted += "č文 ";
    EXPECT_TRUE(clsClipboard::GetText() == wanted);
}

TEST_F(ClipboardDesktopTest, ReadsAsEmptyWhileAnotherProgramHoldsItOpen) {
    neighbour_.CopyFiles({"C:\\a.txt"});
    neighbour_.HoldClipboard();
    EXPECT_TRUE(clsClipboard::HasFiles()) << "this can be told all the same";
    EXPECT_THAT(clsClipboard::GetFiles(), IsEmpty());
    clsClipboard::ClearTheClipboard();
    neighbour_.LetClipboardGo();
    EXPECT_THAT(clsClipboard::GetFiles(), ElementsAre("C:\\a.txt"));
    neighbour_.CopyText("text");
    neighbour_.HoldClipboard();
    EXPECT_EQ(clsClipboard::GetText(), "");
    neighbour_.LetClipboardGo();
    EXPECT_EQ(clsClipboard::GetText(), "text");
}

TEST_F(ClipboardDesktopTest, HoldsNothingAfterItWasEmptied) {
    neighbour_.CopyFiles({"C:\\a.txt"});
    clsClipboard::ClearTheClipboard();
    EXPECT_FALSE(clsClipboard::HasFiles());
    EXPECT_EQ(CountClipboardFormats(), 0);
    neighbour_.CopyText("closed again");
}

}  // namespace
