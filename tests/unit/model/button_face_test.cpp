// What a button's face looks like: the calls that paint it, and its pixels.

#include <shlwapi.h>

#include "model/button_shortcut.h"
#include "model/launching.h"
#include "model/target_icon.h"
#include "res/resource.h"
#include "tests/support/icon_lists.h"
#include "tests/support/paint_log.h"
#include "tests/support/test_target.h"
#include "tests/unit/model/button_fixture.h"
#include "win/handles.h"
#include "win/process_start.h"
#include "win/scale.h"
#include "win/window.h"

namespace model {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr;
using testkit::RecordedCall, testkit::RecordedCalls;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr int kIconSize = 32;

/// A square icon of one colour, covering all its pixels.
HICON MakeIcon(COLORREF color, int size) {
    return testkit::MakeIcon(size, [color](int, int) { return color; });
}

HICON MakeRedIcon() { return MakeIcon(kRed, kIconSize); }

std::string Times(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

class ButtonFaceTest : public ButtonFixture {
  protected:
    ButtonFaceTest() {
        fakes_.push_back(FAKE_CALL(FindExecutableA, [this](LPCSTR file, LPCSTR folder, LPSTR program) {
            log_.Add("FindExecutable", file, folder);
            std::strcpy(program, "C:\\Programs\\opener.exe");
            return reinterpret_cast<HINSTANCE>(INT_PTR{33});
        }));
        fakes_.push_back(FAKE_CALL(ExtractIconA, [this](HINSTANCE instance, LPCSTR file, UINT index) {
            EXPECT_EQ(instance, win::ModuleInstance());
            log_.Add("ExtractIcon", file, static_cast<int>(index));
            return extracted_ == nullptr ? MakeRedIcon() : *extracted_;
        }));
        fakes_.push_back(
            FAKE_CALL(ExtractAssociatedIconA, [this](HINSTANCE instance, LPSTR file, WORD* index) {
                EXPECT_EQ(instance, win::ModuleInstance());
                log_.Add("ExtractAssociatedIcon", file, *index);
                std::strcpy(file, associatedSource_.c_str());
                *index = 1234;
                return associated_ == nullptr ? MakeRedIcon() : *associated_;
            }));
        fakes_.push_back(FAKE_CALL(
            SHGetFileInfoA, [this](LPCSTR file, DWORD attributes, SHFILEINFOA* info, UINT size, UINT flags) {
                EXPECT_EQ(size, sizeof *info);
                log_.Add("SHGetFileInfo", file, attributes, flags);
                info->hIcon = shellHasIcon_ ? MakeRedIcon() : nullptr;
                return static_cast<DWORD_PTR>(shellHasIcon_ ? 1 : 0);
            }));
    }

    ~ButtonFaceTest() override { DefaultBrowserPath = browserBefore_; }

    /// Paints these values and leaves the calls in the log.
    void Paint(const std::string& name, const std::string& path) {
        button_.Naziv = name;
        button_.FilePath = path;
        const RecordedCalls painting = testkit::LogPainting(log_, box_.Handle(), box_.Dc());
        button_.AddFile();
    }

    /// How many pixels of the face in this rectangle differ from its background.
    int Drawn(RECT part) const {
        int count = 0;
        for (int y = part.top; y < part.bottom; ++y)
            for (int x = part.left; x < part.right; ++x)
                if (GetPixel(box_.Dc(), x, y) != GetSysColor(COLOR_BTNFACE)) ++count;
        return count;
    }

    static std::string Pixels(HDC dc, RECT part) {
        std::string pixels;
        for (int y = part.top; y < part.bottom; ++y)
            for (int x = part.left; x < part.right; ++x)
                pixels.append(std::to_string(GetPixel(dc, x, y))).push_back(' ');
        return pixels;
    }

    COLORREF At(int x, int y) const { return GetPixel(box_.Dc(), x, y); }

    /// What the icon functions answer; null: a red icon.
    const HICON* extracted_ = nullptr;
    const HICON* associated_ = nullptr;
    std::string associatedSource_ = "C:\\Windows\\shell32.dll";
    bool shellHasIcon_ = true;

  private:
    std::string browserBefore_ = std::exchange(DefaultBrowserPath, "C:\\Programs\\browser.exe");
    RecordedCalls fakes_;
};

TEST_F(ButtonFaceTest, IsPaintedStepByStep) {
    button_.FileIcon = 3;
    button_.Switch = "/x";
    Paint("Name", "C:\\a.txt");
    EXPECT_THAT(log_.Lines(),
                ElementsAre("Fill 0 0 102 90", "FindExecutable C:\\a.txt (null)",
                            "ExtractIcon C:\\Programs\\opener.exe 3", "Icon 35 8",
                            "Text Name in 3 56 99 86 format 17", "Text /x in 4 2 98 30 format 16",
                            "Edge 0 0 102 90 type 9 flags 15", "Refresh", "Refresh"));
}

TEST_F(ButtonFaceTest, TakesItsMeasuresFromTheBoxsWidth) {
    Load("[Settings]\r\n");
    win::PictureBox wide;
    wide.CreateOn(parent_.Handle(), 202, {0, 0, 140, 100});
    button_.SetParentButton(&wide);
    button_.Naziv = "Name";
    const RecordedCalls painting = testkit::LogPainting(log_, wide.Handle(), wide.Dc());
    button_.AddFile();
    EXPECT_THAT(log_.Text(), HasSubstr("Text Name in 3 56 137 86 format 17\nText  in 4 2 136 30 format 16\n"
                                       "Edge 0 0 140 100 type 9 flags 15"));
    log_.Clear();
    button_.DeleteShortcut("11", false);
    EXPECT_THAT(log_.Text(), HasSubstr("Text Empty in 2 56 136 86 format 17"));
    button_.SetParentButton(&box_);
}

TEST_F(ButtonFaceTest, StartsAWideCaptionHigher) {
    int width = 99;
    const RecordedCall measure =
        FAKE_CALL(GetTextExtentPoint32W, [&](HDC, LPCWSTR, int, LPSIZE size) -> WINBOOL {
            *size = {width, 13};
            return TRUE;
        });
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Text Name in 3 56 99 86 format 17"), 1U);
    log_.Clear();
    width = 100;
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Text Name in 3 44 99 74 format 17"), 1U);
}

TEST_F(ButtonFaceTest, MarksAGroupWithItsLetterWhateverTheSwitch) {
    button_.Group = true;
    button_.Switch = "/x";
    Paint("Name", "C:\\a.txt|C:\\b.txt");
    EXPECT_EQ(log_.Count("Text G in 4 2 98 30 format 16"), 1U);
    EXPECT_EQ(log_.Count("Text /x"), 0U);
}

TEST_F(ButtonFaceTest, TakesAGroupsIconFromItsFirstMember) {
    button_.Group = true;
    Paint("Name", "C:\\a.txt|C:\\b.txt");
    EXPECT_EQ(log_.Count("FindExecutable"), 1U);
    EXPECT_EQ(log_.Count("FindExecutable C:\\a.txt (null)"), 1U);
}

TEST_F(ButtonFaceTest, TakesAUrlsIconFromTheDefaultBrowser) {
    Paint("Name", "http://example.org/");
    EXPECT_EQ(log_.Count("FindExecutable C:\\Programs\\browser.exe (null)"), 1U);
    log_.Clear();
    button_.Group = true;
    Paint("Name", "https://example.org/|C:\\b.txt");
    EXPECT_EQ(log_.Count("FindExecutable C:\\Programs\\browser.exe (null)"), 1U);
    EXPECT_EQ(log_.Count("FindExecutable"), 1U);
}

TEST_F(ButtonFaceTest, FallsBackToTheAssociatedIcon) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): both answers mean that there is no icon.
    for (const HICON none : {HICON{}, reinterpret_cast<HICON>(INT_PTR{1})}) {
        extracted_ = &none;
        log_.Clear();
        button_.FileIcon = 5;
        Paint("Name", "C:\\ж č.txt");
        EXPECT_EQ(log_.Count("ExtractAssociatedIcon C:\\ж č.txt 5"), 1U);
        EXPECT_EQ(log_.Count("SHGetFileInfo"), 0U);
        EXPECT_EQ(At(35, 8), kRed);
        // The function writes over its arguments, so they must be copies.
        EXPECT_EQ(button_.FilePath, "C:\\ж č.txt");
        EXPECT_EQ(button_.FileIcon, 5);
    }
}

TEST_F(ButtonFaceTest, GivesTheAssociatedIconTheFirstMemberOfAGroup) {
    const HICON none = nullptr;
    extracted_ = &none;
    button_.Group = true;
    Paint("Name", "C:\\a.txt|C:\\b.txt");
    EXPECT_EQ(log_.Count("ExtractAssociatedIcon C:\\a.txt 0"), 1U);
}

TEST_F(ButtonFaceTest, AsksForNoAssociatedIconOfAPathThatTheFunctionHasNoRoomFor) {
    const HICON none = nullptr;
    extracted_ = &none;
    // 259 characters fit, however many bytes they take.
    Paint("Name", "C:\\" + Times("ж", MAX_PATH - 4));
    EXPECT_EQ(log_.Count("ExtractAssociatedIcon"), 1U);
    Paint("Name", "C:\\" + Times("x", MAX_PATH - 3));
    EXPECT_EQ(log_.Count("ExtractAssociatedIcon"), 1U);
    EXPECT_EQ(log_.Count("SHGetFileInfo"), 1U);
}

TEST_F(ButtonFaceTest, NeverMistakesACountOfIconsForAnIcon) {
    // Asked for index -1, ExtractIcon answers how many icons there are.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const auto count = reinterpret_cast<HICON>(INT_PTR{12});
    extracted_ = &count;
    button_.FileIcon = -1;
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("ExtractAssociatedIcon C:\\a.txt"), 1U);
    EXPECT_EQ(At(35, 8), kRed);
}

TEST_F(ButtonFaceTest, AsksTheShellWhenNothingIsAssociated) {
    const HICON none = nullptr;
    extracted_ = &none;
    associated_ = &none;
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("SHGetFileInfo C:\\a.txt 0 " + std::to_string(SHGFI_ICON | SHGFI_LARGEICON)), 1U);
    EXPECT_EQ(At(35, 8), kRed);
}

TEST_F(ButtonFaceTest, DoesNotTakeAnIconOfItsOwnProgramForTheTargets) {
    const HICON none = nullptr;
    extracted_ = &none;
    associatedSource_ = win::ProgramPath();
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("SHGetFileInfo C:\\a.txt"), 1U);
}

TEST_F(ButtonFaceTest, ShowsTheProgramsOwnIconInTheEnd) {
    const HICON none = nullptr;
    extracted_ = &none;
    associated_ = &none;
    shellHasIcon_ = false;
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Icon 35 8"), 1U);
    EXPECT_GT(Drawn({35, 8, 67, 40}), 100);
}

TEST_F(ButtonFaceTest, AsksTheShellForNothingWhenThereIsNoBrowser) {
    const HICON none = nullptr;
    extracted_ = &none;
    associated_ = &none;
    DefaultBrowserPath.clear();
    Paint("Name", "http://example.org/");
    EXPECT_EQ(log_.Count("SHGetFileInfo"), 0U);
    EXPECT_GT(Drawn({35, 8, 67, 40}), 100);
}

TEST_F(ButtonFaceTest, GivesTheFormerIconBack) {
    Paint("Name", "C:\\a.txt");
    const RecordedCall destroy = LOG_CALL(log_, DestroyIcon);
    log_.Clear();
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("DestroyIcon"), 1U);
}

TEST_F(ButtonFaceTest, HasTheNameAsItsText) {
    Paint("Ћирилица & 文", "C:\\a.txt");
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Ћирилица & 文");
    // Doubled for DrawText, which shows it once.
    EXPECT_EQ(log_.Count("Text Ћирилица && 文 in"), 1U);
}

TEST_F(ButtonFaceTest, OfAFreeButtonSaysEmpty) {
    Load("[Settings]\r\n");
    Paint("Name", "C:\\a.txt");
    log_.Clear();
    {
        const RecordedCalls painting = testkit::LogPainting(log_, box_.Handle(), box_.Dc());
        button_.DeleteShortcut("11", false);
    }
    EXPECT_THAT(log_.Lines(), ElementsAre("Fill 0 0 102 90", "Text Empty in 2 56 98 86 format 17",
                                          "Edge 0 0 102 90 type 9 flags 15", "Refresh"));
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Empty");
    EXPECT_EQ(Drawn({4, 4, 98, 56}), 0);
}

TEST_F(ButtonFaceTest, StaysAsItIsWhenTheButtonIsFreedSilently) {
    Paint("Name", "C:\\a.txt");
    log_.Clear();
    const RecordedCalls painting = testkit::LogPainting(log_, box_.Handle(), box_.Dc());
    button_.DeleteShortcut("11", true);
    EXPECT_THAT(log_.Lines(), ElementsAre());
    EXPECT_EQ(At(35, 8), kRed);
}

TEST_F(ButtonFaceTest, SaysEmptyAndThenTheNameWhenTheTargetIsGone) {
    LoadRecord("gone|4", "[Cuts]\r\ngone=C:\\no\\such\\file.txt\r\n");
    const RecordedCalls painting = testkit::LogPainting(log_, box_.Handle(), box_.Dc());
    button_.RefreshButton("11");
    EXPECT_TRUE(testkit::InOrder(
        log_, {"Fill", "Text Empty", "Edge", "Fill", "ExtractIcon", "Icon 35 8", "Text gone in", "Edge"}))
        << log_.Text();
}

TEST_F(ButtonFaceTest, GetsItsEdgeWithItsBox) {
    win::PictureBox other;
    other.CreateOn(parent_.Handle(), 202, {0, 0, 102, 90});
    const RecordedCalls painting = testkit::LogPainting(log_, other.Handle(), other.Dc());
    button_.SetParentButton(&other);
    EXPECT_THAT(log_.Lines(), ElementsAre("Edge 0 0 102 90 type 9 flags 15", "Refresh"));
    EXPECT_EQ(button_.ParentButton(), &other);
    button_.SetParentButton(&box_);
}

TEST_F(ButtonFaceTest, ShowsTheNumberedIconOfAProgram) {
    const std::string program = folder_.CopyIn(testkit::TestTargetExe(), "Програм.exe");
    const RecordedCall associate = FAKE_CALL(FindExecutableA, ORIGINAL_CALL(FindExecutableA));
    LoadRecord("p|3", "[Cuts]\r\np=" + program + "\r\n");
    button_.RefreshButton("11");
    EXPECT_EQ(log_.Count("ExtractIcon " + program + " 3"), 1U) << log_.Text();
}

TEST_F(ButtonFaceTest, ShowsTheIconWithTheRecordsNumberAndNoMark) {
    const RecordedCall associate = FAKE_CALL(FindExecutableA, ORIGINAL_CALL(FindExecutableA));
    const RecordedCall extract = FAKE_CALL(ExtractIconA, ORIGINAL_CALL(ExtractIconA));
    const std::string program = win::ProgramPath();
    std::array<std::string, 4> faces;
    for (int index = 0; index < 4; ++index) {
        LoadRecord("p|" + std::to_string(index), "[Cuts]\r\np=" + program + "\r\n");
        button_.RefreshButton("11");
        faces.at(static_cast<std::size_t>(index)) = Pixels(box_.Dc(), {35, 8, 67, 40});
    }
    win::PictureBox plain;
    plain.CreateOn(parent_.Handle(), 202, {0, 0, 102, 90});
    const win::Icon third(ExtractIconA(win::ModuleInstance(), program.c_str(), 3));
    ASSERT_TRUE(third);
    DrawIcon(plain.Dc(), 35, 8, third.Get());
    EXPECT_EQ(faces[3], Pixels(plain.Dc(), {35, 8, 67, 40}));
    EXPECT_NE(faces[3], faces[0]);
    EXPECT_EQ(Drawn({2, 2, 35, 44}), 0);
    EXPECT_NE(button_.FileSize, "");
    EXPECT_NE(button_.FILETIME, "");
}

TEST_F(ButtonFaceTest, HasTheIconAtItsPlaceToThePixel) {
    Paint("", "C:\\a.txt");
    EXPECT_EQ(At(35, 8), kRed);
    EXPECT_EQ(At(66, 39), kRed);
    EXPECT_EQ(Drawn({35, 8, 67, 40}), kIconSize * kIconSize);
    // Within the edge, which is two pixels wide, there is nothing else.
    EXPECT_EQ(Drawn({2, 2, 100, 88}), kIconSize * kIconSize);
}

TEST_F(ButtonFaceTest, HasACaptionBelowTheIcon) {
    Paint("Name", "C:\\a.txt");
    EXPECT_EQ(Drawn({2, 40, 100, 56}), 0);
    EXPECT_GT(Drawn({2, 56, 100, 86}), 10);
    Paint("A caption far too wide for one line of it", "C:\\a.txt");
    EXPECT_GT(Drawn({2, 44, 100, 56}), 10);
    EXPECT_GT(Drawn({2, 58, 100, 74}), 10);
    EXPECT_EQ(Drawn({2, 74, 100, 88}), 0);
}

TEST_F(ButtonFaceTest, HasTheMarkInItsTopLeftCorner) {
    button_.Group = true;
    Paint("", "C:\\a.txt|C:\\b.txt");
    EXPECT_GT(Drawn({4, 2, 20, 20}), 5);
    button_.Group = false;
    Paint("", "C:\\a.txt");
    EXPECT_EQ(Drawn({2, 2, 35, 88}), 0);
}

/// A face on a screen of another scale. What a file holds in the size that is asked for is blue.
class ScaledFaceTest : public ButtonFaceTest {
  protected:
    ~ScaledFaceTest() override { button_.SetParentButton(&box_); }

    void UseDpi(int dpi) {
        dpi_ = FAKE_CALL(GetDpiForWindow, [dpi](HWND) { return static_cast<UINT>(dpi); });
        large_ = std::make_unique<win::PictureBox>();
        large_->CreateOn(parent_.Handle(), 202, win::Scale(dpi)(RECT{0, 0, 102, 90}));
        button_.SetParentButton(large_.get());
        log_.Clear();
    }
    void PaintLarge(const std::string& name, const std::string& path) {
        button_.Naziv = name;
        button_.FilePath = path;
        const RecordedCalls painting = testkit::LogPainting(log_, large_->Handle(), large_->Dc());
        const RecordedCall icon =
            FAKE_CALL(DrawIconEx, [this](HDC on, int x, int y, HICON drawn, int width, int height, UINT step,
                                         HBRUSH brush, UINT flags) {
                log_.Add("Icon", x, y, "of", width, height);
                return ORIGINAL_CALL(DrawIconEx)(on, x, y, drawn, width, height, step, brush, flags);
            });
        button_.AddFile();
    }
    COLORREF LargeAt(int x, int y) const { return GetPixel(large_->Dc(), x, y); }

    bool fileHasSize_ = true;
    int lineHeight_ = 20;
    int measured_ = 0;
    RecordedCall make_ = FAKE_CALL(
        PrivateExtractIconsW,
        [this](LPCWSTR file, int index, int width, int height, HICON* icon, UINT*, UINT, UINT) -> UINT {
            log_.Add("Made", file, index, width, height);
            if (!fileHasSize_) return 0;
            *icon = MakeIcon(kBlue, width);
            return 1;
        });
    RecordedCall metrics_ = FAKE_CALL(GetTextMetricsW, [this](HDC dc, LPTEXTMETRICW metrics) -> WINBOOL {
        ++measured_;
        ORIGINAL_CALL(GetTextMetricsW)(dc, metrics);
        metrics->tmHeight = lineHeight_;
        return TRUE;
    });
    std::unique_ptr<win::PictureBox> large_;
    RecordedCall dpi_;
};

TEST_F(ScaledFaceTest, HasEverythingAtItsPlaceAndAnIconMadeForItsSize) {
    UseDpi(144);
    button_.FileIcon = 3;
    button_.Switch = "/x";
    PaintLarge("Name", "C:\\a.txt");
    EXPECT_THAT(log_.Lines(),
                ElementsAre("Fill 0 0 153 135", "FindExecutable C:\\a.txt (null)",
                            "ExtractIcon C:\\Programs\\opener.exe 3", "Made C:\\Programs\\opener.exe 3 48 48",
                            "Icon 53 12 of 48 48", "Text Name in 5 84 149 129 format 17",
                            "Text /x in 6 3 147 45 format 16", "Edge 0 0 153 135 type 9 flags 15", "Refresh",
                            "Refresh"));
    EXPECT_EQ(LargeAt(53, 12), kBlue);
    EXPECT_EQ(LargeAt(100, 59), kBlue);
}

TEST_F(ScaledFaceTest, HasRoomForTwoLinesOfAName) {
    const RecordedCall wide = FAKE_CALL(GetTextExtentPoint32W, [](HDC, LPCWSTR, int, LPSIZE size) -> WINBOOL {
        *size = {1000, 20};
        return TRUE;
    });
    struct Case {
        int dpi;
        int lineHeight;
        const char* place;
    };
    // The heights of a font whose lines are 1.33 times as high as its size, and of a flat one.
    for (const Case& example : {Case{120, 20, "4 55 124 95"}, Case{144, 24, "5 66 149 114"},
                                Case{192, 32, "6 88 198 152"}, Case{192, 26, "6 88 198 148"}}) {
        UseDpi(example.dpi);
        lineHeight_ = example.lineHeight;
        PaintLarge("Name", "C:\\a.txt");
        EXPECT_EQ(log_.Count("Text Name in " + std::string(example.place) + " format 17"), 1U)
            << example.dpi << ": " << log_.Text();
    }
}

TEST_F(ScaledFaceTest, HasTheLayoutsPlacesOnThePlainScaleWhateverTheFont) {
    UseDpi(96);
    lineHeight_ = 40;
    PaintLarge("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Text Name in 3 56 99 86 format 17"), 1U) << log_.Text();
    EXPECT_EQ(log_.Count("Made"), 0U);
    EXPECT_EQ(measured_, 0);
}

TEST_F(ScaledFaceTest, TakesAnAssociatedIconFromItsFileInTheRightSize) {
    const HICON none = nullptr;
    extracted_ = &none;
    UseDpi(144);
    PaintLarge("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Made C:\\Windows\\shell32.dll 1234 48 48"), 1U) << log_.Text();
    EXPECT_EQ(LargeAt(53, 12), kBlue);
}

TEST_F(ScaledFaceTest, StretchesAnIconThatItsFileHasNot) {
    fileHasSize_ = false;
    UseDpi(144);
    PaintLarge("Name", "C:\\a.txt");
    EXPECT_EQ(LargeAt(53, 12), kRed);
    EXPECT_EQ(LargeAt(100, 59), kRed);
}

TEST_F(ScaledFaceTest, ShowsTheProgramsOwnIconInTheRightSize) {
    const HICON none = nullptr;
    extracted_ = &none;
    associated_ = &none;
    shellHasIcon_ = false;
    UseDpi(144);
    const RecordedCall load = FAKE_CALL(
        LoadImageW, [this](HINSTANCE module, LPCWSTR name, UINT kind, int width, int height, UINT flags) {
            if (kind == IMAGE_ICON) log_.Add("Load", reinterpret_cast<ULONG_PTR>(name), width, height);
            return ORIGINAL_CALL(LoadImageW)(module, name, kind, width, height, flags);
        });
    PaintLarge("Name", "C:\\a.txt");
    EXPECT_EQ(log_.Count("Load " + std::to_string(IDI_QUON) + " 48 48"), 1U) << log_.Text();
    EXPECT_EQ(log_.Count("Icon 53 12 of 48 48"), 1U);
}

TEST_F(ScaledFaceTest, TakesTheShellsIconFromItsListOfLargerOnes) {
    const HICON none = nullptr;
    extracted_ = &none;
    associated_ = &none;
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48, MakeIcon(kBlue, 48));
    UseDpi(144);
    PaintLarge("Name", "C:\\a");
    EXPECT_EQ(log_.Count("SHGetFileInfo C:\\a 0 " + std::to_string(SHGFI_ICON | SHGFI_LARGEICON)), 1U);
    EXPECT_EQ(LargeAt(53, 12), kBlue);
    UseDpi(96);
    PaintLarge("Name", "C:\\a");
    EXPECT_EQ(LargeAt(35, 8), kRed) << "as the shell hands it out";
}

TEST_F(ScaledFaceTest, OfATargetOutOfReachHasTheIconOfItsKindInTheRightSize) {
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48, MakeIcon(kBlue, 48));
    const std::string asked = "SHGetFileInfo \\\\server\\a.txt " + std::to_string(FILE_ATTRIBUTE_NORMAL) +
                              " " + std::to_string(SHGFI_ICON | SHGFI_LARGEICON | SHGFI_USEFILEATTRIBUTES);
    EXPECT_EQ(testkit::PixelOf(IconOfKind("\\\\server\\a.txt", 40).Get(), 39, 39), kBlue);
    EXPECT_EQ(log_.Count(asked), 1U) << log_.Text();
    EXPECT_EQ(testkit::PixelOf(IconOfKind("\\\\server\\a.txt", 32).Get(), 31, 31), kRed);
    shellHasIcon_ = false;
    EXPECT_EQ(testkit::WidthOf(IconOfKind("\\\\server\\a.txt", 40).Get()), 40) << "the program's own";
}

TEST_F(ScaledFaceTest, OfATargetThatStoppedAnsweringKeepsItsIconOnlyInItsSize) {
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48, MakeIcon(kBlue, 48));
    bool answers = true;
    const RecordedCall exists = FAKE_CALL(PathFileExistsA, [&](LPCSTR) -> BOOL {
        if (answers) return ORIGINAL_CALL(PathFileExistsA)(".");
        SetLastError(ERROR_BAD_NETPATH);
        return FALSE;
    });
    UseDpi(96);
    LoadRecord("a|0", "[Cuts]\r\na=\\\\server\\share\\a.txt\r\n");
    button_.RefreshButton("11");
    ASSERT_TRUE(button_.Answers());
    answers = false;
    button_.RefreshButton("11");
    ASSERT_FALSE(button_.Answers());
    EXPECT_EQ(LargeAt(35, 8), kRed);
    EXPECT_EQ(log_.Count("SHGetFileInfo"), 0U) << "the icon that it was last seen with";
    UseDpi(144);
    button_.DrawFace();
    EXPECT_EQ(log_.Count("SHGetFileInfo"), 1U);
    EXPECT_EQ(log_.Count("ExtractIcon"), 0U) << "nothing is asked of the server";
    EXPECT_EQ(LargeAt(53, 12), kBlue);
    EXPECT_EQ(LargeAt(100, 59), kBlue);
    button_.DrawFace();
    EXPECT_EQ(log_.Count("SHGetFileInfo"), 1U) << "made once for each size";
}

TEST_F(ScaledFaceTest, OfAFreeButtonSaysEmptyAtTheSamePlace) {
    UseDpi(144);
    button_.Naziv = kFreeName;
    const RecordedCalls painting = testkit::LogPainting(log_, large_->Handle(), large_->Dc());
    button_.DrawFace();
    EXPECT_EQ(log_.Count("Text Empty in 3 84 147 129 format 17"), 1U) << log_.Text();
}

TEST_F(ButtonFaceTest, HasABumpAroundIt) {
    Paint("", "C:\\a.txt");
    win::PictureBox plain;
    plain.CreateOn(parent_.Handle(), 202, {0, 0, 102, 90});
    RECT all{0, 0, 102, 90};
    DrawEdge(plain.Dc(), &all, EDGE_BUMP, BF_RECT);
    for (const POINT at :
         {POINT{0, 0}, {1, 1}, {50, 0}, {50, 1}, {0, 50}, {101, 50}, {100, 50}, {50, 89}, {50, 88}})
        EXPECT_EQ(At(at.x, at.y), GetPixel(plain.Dc(), at.x, at.y)) << at.x << "," << at.y;
}

}  // namespace
}  // namespace model
