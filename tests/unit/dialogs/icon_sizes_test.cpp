// The icons of rows and of the chooser on a screen of another scale than the system's.

#include "dialogs/icon_chooser.h"
#include "dialogs/row_list.h"
#include "res/resource.h"
#include "tests/support/icon_lists.h"
#include "tests/support/unit_test.h"
#include "win/handles.h"
#include "win/process_start.h"
#include "win/scale.h"

namespace dialogs {
namespace {

using ::testing::Contains, ::testing::ElementsAre;
using testkit::RecordedCall, testkit::Window;

constexpr RowLook kLook{.firstTop = 0,
                        .height = 20,
                        .icon = {4, 2},
                        .name = {26, 1},
                        .highlightLeft = 22,
                        .smallStep = 20,
                        .largeStep = 60};

HICON SomeIcon() { return CopyIcon(LoadIcon(nullptr, IDI_APPLICATION)); }

/// A screen of 144 dots per inch beside a system of 96. Icons made for a size, and those that are drawn, are
/// written to the log.
class IconSizesTest : public ::testing::Test {
  protected:
    testkit::CallLog log_;
    bool fileHasIcons_ = true;
    std::vector<HICON> made_;
    std::vector<HICON> drawn_;
    RecordedCall dpi_ = FAKE_CALL(GetDpiForWindow, [](HWND) -> UINT { return 144; });
    RecordedCall make_ = FAKE_CALL(
        PrivateExtractIconsW,
        [this](LPCWSTR file, int index, int width, int height, HICON* icon, UINT*, UINT, UINT) -> UINT {
            log_.Add("made", file, index, width, height);
            if (!fileHasIcons_) return 0;
            made_.push_back(*icon = SomeIcon());
            return 1;
        });
    RecordedCall draw_ = FAKE_CALL(
        DrawIconEx,
        [this](HDC, int x, int y, HICON icon, int width, int height, UINT, HBRUSH, UINT) -> WINBOOL {
            log_.Add("drawn", x, y, width, height);
            drawn_.push_back(icon);
            return TRUE;
        });
    testkit::HiddenWindow host_;
};

class RowIconSizesTest : public IconSizesTest {
  protected:
    RowIconSizesTest() : frame_(Control(L"STATIC", 730)), bar_(Control(L"SCROLLBAR", 732)) {
        list_.CreateOn(frame_, bar_, 731, win::Scale(144));
    }

    HWND Control(const wchar_t* className, int id) {
        return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 100, host_.Handle(),
                               // NOLINTNEXTLINE(performance-no-int-to-ptr): a child's identifier.
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                               nullptr);
    }
    void Paint() {
        const win::WindowDc screen(nullptr);
        const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), 200, 100));
        const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
        SelectObject(dc.Get(), bitmap.Get());
        IntersectClipRect(dc.Get(), 0, 0, 200, 100);
        SendMessageW(list_.Handle(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.Get()), PRF_CLIENT);
    }

    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle to recognise.
    const HIMAGELIST images_ = reinterpret_cast<HIMAGELIST>(INT_PTR{0x1234});
    std::string location_ = "C:\\icons.dll";
    RecordedCall shell_ =
        FAKE_CALL(SHGetFileInfoA, [this](LPCSTR, DWORD, SHFILEINFOA* info, UINT, UINT flags) -> DWORD_PTR {
            info->iIcon = 7;
            if ((flags & SHGFI_ICONLOCATION) == 0) return reinterpret_cast<DWORD_PTR>(images_);
            std::strcpy(info->szDisplayName, location_.c_str());
            return location_.empty() ? 0 : 1;
        });
    HICON listed_ = nullptr;
    RecordedCall listedIcon_ = FAKE_CALL(ImageList_GetIcon, [this](HIMAGELIST list, int index, UINT) {
        EXPECT_EQ(list, images_);
        EXPECT_EQ(index, 7);
        return listed_ = SomeIcon();
    });
    HWND frame_;
    HWND bar_;
    RowList list_{kLook};
};

TEST_F(RowIconSizesTest, ARowsIconIsMadeForItsSizeFromTheFileThatTheShellNames) {
    list_.Assign({{"row", "C:\\windows\\win.ini", ""}});
    Paint();
    EXPECT_THAT(log_.Lines(), ElementsAre("made C:\\icons.dll 7 24 24", "drawn 6 3 24 24"));
    EXPECT_EQ(drawn_, made_);
    Paint();
    EXPECT_THAT(log_.Lines(), ElementsAre("made C:\\icons.dll 7 24 24", "drawn 6 3 24 24", "drawn 6 3 24 24"))
        << "made once";
}

TEST_F(RowIconSizesTest, WithoutAFileThatTheShellNamesTheTargetIsTried) {
    location_.clear();
    list_.Assign({{"row", "C:\\windows\\notepad.exe", ""}});
    Paint();
    EXPECT_THAT(log_.Lines(), ElementsAre("made C:\\windows\\notepad.exe 0 24 24", "drawn 6 3 24 24"));
    EXPECT_EQ(drawn_, made_);
}

TEST_F(RowIconSizesTest, AnIconWithoutAFileComesFromTheSystemsListsOfLargerOnes) {
    // What the shell answers for many kinds of files.
    location_ = "*";
    fileHasIcons_ = false;
    testkit::IconLists lists;
    for (int index = 0; index <= 7; ++index)
        lists.Put(SHIL_EXTRALARGE, 48,
                  testkit::MakeIcon(48, [index](int, int) { return index == 7 ? 255U : 0U; }));
    list_.Assign({{"row", "C:\\windows\\win.ini", ""}});
    Paint();
    EXPECT_THAT(log_.Lines(), Contains("drawn 6 3 24 24"));
    ASSERT_EQ(drawn_.size(), 1u);
    EXPECT_EQ(testkit::WidthOf(drawn_.front()), 24);
    EXPECT_EQ(testkit::PixelOf(drawn_.front(), 23, 23), COLORREF{255});
    EXPECT_EQ(listed_, nullptr);
}

TEST_F(RowIconSizesTest, AnIconThatNobodyHasIsStretched) {
    const testkit::IconLists none;
    fileHasIcons_ = false;
    list_.Assign({{"row", "C:\\windows\\win.ini", ""}});
    Paint();
    EXPECT_THAT(log_.Lines(), Contains("drawn 6 3 24 24"));
    EXPECT_THAT(drawn_, ElementsAre(listed_));
}

TEST_F(IconSizesTest, TheChoosersBoxesShowIconsMadeForTheirSize) {
    IcoChooser chooser;
    const testkit::ModalAnswers user({[this](Window window) {
        log_.Clear();
        window.Child(IcoChooser::p2 + 0).Send(WM_PAINT);
        EXPECT_THAT(log_.Lines(), Contains("drawn 3 3 48 48"));
        ASSERT_FALSE(made_.empty());
        EXPECT_THAT(drawn_, Contains(made_.front()));
        window.Post(WM_COMMAND, IDCANCEL);
    }});
    chooser.ReadIcons(win::ProgramPath());
    ASSERT_GT(chooser.IconCount(), 1);
    chooser.Show(host_.Handle());
    ASSERT_FALSE(made_.empty());
}

TEST_F(IconSizesTest, TheChooserKeepsTheIconsThatAFileHasInOneSizeOnly) {
    fileHasIcons_ = false;
    IcoChooser chooser;
    const testkit::ModalAnswers user({[this](Window window) {
        drawn_.clear();
        window.Child(IcoChooser::p2 + 0).Send(WM_PAINT);
        ASSERT_EQ(drawn_.size(), 1u);
        EXPECT_NE(drawn_.front(), nullptr);
        window.Post(WM_COMMAND, IDCANCEL);
    }});
    chooser.ReadIcons(win::ProgramPath());
    chooser.Show(host_.Handle());
}

}  // namespace
}  // namespace dialogs
