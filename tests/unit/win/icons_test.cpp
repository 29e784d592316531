#include "win/icons.h"

#include "res/resource.h"
#include "tests/support/icon_lists.h"
#include "tests/support/unit_test.h"
#include "win/process_start.h"

namespace win {
namespace {

using testkit::RecordedCall, testkit::WidthOf;

constexpr int kGroupType = 14;  // RT_GROUP_ICON
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

TEST(IconsTest, AreStoredInTheSizesThatTheyAreDrawnAt) {
    // A size that is not stored would be stretched from another one: the file must name it.
    struct Case {
        int id;
        int layoutSize;
    };
    const Case cases[] = {{IDI_QUON, 32},     {IDI_QUON, 64}, {IDI_SHELL, 20}, {IDI_PREDEFINED, 20},
                          {IDI_SETTINGS, 20}, {IDI_GO, 20},   {IDI_INFO, 14}};
    for (const Case& example : cases) {
        for (const int percent : {100, 125, 150, 200}) {
            const int size = (example.layoutSize * percent + 50) / 100;
            const HRSRC group = FindResourceW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(example.id),
                                              MAKEINTRESOURCEW(kGroupType));
            ASSERT_NE(group, nullptr) << example.id;
            const auto* entries = static_cast<const BYTE*>(LockResource(LoadResource(nullptr, group)));
            bool stored = false;
            constexpr int kHeader = 6;
            constexpr int kEntry = 14;
            for (int index = 0; index < entries[4]; ++index)
                stored = stored || entries[kHeader + kEntry * index] == size;
            EXPECT_TRUE(stored) << example.id << " has no picture of " << size << " pixels";
            EXPECT_EQ(WidthOf(ResourceIcon(example.id, size).Get()), size);
        }
    }
}

TEST(IconsTest, ForDarkGroundAreStoredInTheSizesThatTheyAreDrawnAt) {
    for (const int id : {IDI_SHELL, IDI_PREDEFINED, IDI_SETTINGS, IDI_GO}) {
        for (const int size : {20, 25, 30, 35, 40}) {
            BYTE* handed = nullptr;
            const RecordedCall make =
                WATCH_CALL(CreateIconFromResourceEx,
                           [&](PBYTE bytes, DWORD, WINBOOL, DWORD, int, int, UINT) { handed = bytes; });
            EXPECT_EQ(WidthOf(DataIcon(id + IDI_LIGHT, size).Get()), size);
            ASSERT_NE(handed, nullptr);
            // A BITMAPINFOHEADER; the height counts the mask as well.
            EXPECT_EQ(reinterpret_cast<const BITMAPINFOHEADER*>(handed)->biWidth, size) << id;
        }
    }
    EXPECT_EQ(WidthOf(DataIcon(IDI_SHELL + IDI_LIGHT, 64).Get()), 64) << "stretched from the largest";
    EXPECT_FALSE(DataIcon(4711, 20));
}

TEST(IconsTest, ComeOutOfAFileInTheSizeThatIsAskedFor) {
    for (const int size : {16, 20, 32, 48, 64})
        EXPECT_EQ(WidthOf(FileIcon(ProgramPath(), 0, size).Get()), size);
}

TEST(IconsTest, AFileWithoutIconsGivesNone) {
    EXPECT_FALSE(FileIcon("", 0, 32));
    EXPECT_FALSE(FileIcon("C:\\no such file.exe", 0, 32));
    EXPECT_FALSE(FileIcon(ProgramPath(), 4711, 32));
    const RecordedCall unread = FAKE_CALL(PrivateExtractIconsW, []() -> UINT {
        ADD_FAILURE() << "asked with a path that it has no room for";
        return 0;
    });
    EXPECT_FALSE(FileIcon(std::string(MAX_PATH, 'x'), 0, 32));
}

TEST(IconsTest, OfTheSystemsListsAreShrunkWithoutLosingALine) {
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48,
              testkit::MakeIcon(48, [](int x, int) { return x % 2 == 0 ? kRed : kBlue; }));
    lists.Put(SHIL_EXTRALARGE, 48,
              testkit::MakeIcon(48, [](int x, int) { return x < 24 ? kRed : CLR_NONE; }));
    const Icon mixed = ListedIcon(0, 24);
    EXPECT_EQ(testkit::WidthOf(mixed.Get()), 24);
    EXPECT_EQ(testkit::PixelOf(mixed.Get(), 0, 0), RGB(127, 0, 127));
    EXPECT_EQ(testkit::PixelOf(mixed.Get(), 23, 23), RGB(127, 0, 127));
    const Icon half = ListedIcon(1, 32);
    EXPECT_EQ(testkit::WidthOf(half.Get()), 32);
    EXPECT_EQ(testkit::PixelOf(half.Get(), 15, 31), kRed);
    EXPECT_EQ(testkit::PixelOf(half.Get(), 16, 0), RGB(0, 0, 0)) << "nothing is there";
    const Icon whole = ListedIcon(1, 48);
    EXPECT_EQ(testkit::PixelOf(whole.Get(), 23, 0), kRed);
    EXPECT_EQ(testkit::PixelOf(whole.Get(), 24, 0), RGB(0, 0, 0));
}

TEST(IconsTest, OfTheSystemsListsComeFromTheLargestOneWhereTheOtherIsTooSmall) {
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48, testkit::MakeIcon(48, [](int, int) { return kRed; }));
    EXPECT_EQ(testkit::WidthOf(ListedIcon(0, 64).Get()), 48) << "there is no larger one";
    lists.Put(SHIL_JUMBO, 256, testkit::MakeIcon(256, [](int, int) { return kBlue; }));
    const Icon icon = ListedIcon(0, 64);
    EXPECT_EQ(testkit::WidthOf(icon.Get()), 64);
    EXPECT_EQ(testkit::PixelOf(icon.Get(), 0, 0), kBlue);
    EXPECT_EQ(testkit::PixelOf(icon.Get(), 63, 63), kBlue);
    EXPECT_EQ(testkit::PixelOf(ListedIcon(0, 40).Get(), 0, 0), kRed);
}

TEST(IconsTest, ThatOnlyStandInTheCornerOfTheLargestListAreNotTakenFromThere) {
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, 48, testkit::MakeIcon(48, [](int, int) { return kRed; }));
    lists.Put(SHIL_JUMBO, 256,
              testkit::MakeIcon(256, [](int x, int y) { return x < 48 && y < 48 ? kBlue : CLR_NONE; }));
    const Icon icon = ListedIcon(0, 64);
    EXPECT_EQ(testkit::WidthOf(icon.Get()), 48);
    EXPECT_EQ(testkit::PixelOf(icon.Get(), 47, 47), kRed);
}

TEST(IconsTest, OfOldThatOnlyHaveAMaskKeepTheirHoles) {
    constexpr int kSize = 48;
    const WindowDc screen(nullptr);
    const Bitmap color(CreateCompatibleBitmap(screen.Get(), kSize, kSize));
    // The right half is not there.
    std::vector<BYTE> holes;
    for (int place = 0; place < kSize * kSize / 8; ++place)
        holes.push_back(place % (kSize / 8) < kSize / 16 ? BYTE{0} : BYTE{0xFF});
    const Bitmap mask(CreateBitmap(kSize, kSize, 1, 1, holes.data()));
    ICONINFO info{TRUE, 0, 0, mask.Get(), color.Get()};
    testkit::IconLists lists;
    lists.Put(SHIL_EXTRALARGE, kSize, CreateIconIndirect(&info));
    const Icon icon = ListedIcon(0, 24);
    const MemoryDc dc(CreateCompatibleDC(screen.Get()));
    const Bitmap ground(CreateCompatibleBitmap(screen.Get(), 24, 24));
    SelectObject(dc.Get(), ground.Get());
    PatBlt(dc.Get(), 0, 0, 24, 24, WHITENESS);
    DrawIconEx(dc.Get(), 0, 0, icon.Get(), 24, 24, 0, nullptr, DI_NORMAL);
    EXPECT_EQ(GetPixel(dc.Get(), 11, 0), RGB(0, 0, 0));
    EXPECT_EQ(GetPixel(dc.Get(), 12, 0), RGB(255, 255, 255));
}

TEST(IconsTest, OfTheSystemsListsAreNoneWhereWindowsGivesNone) {
    const testkit::IconLists lists;
    EXPECT_FALSE(ListedIcon(0, 24));
}

TEST(IconsTest, AreDrawnAsTheyAreInTheSystemsSizeOnly) {
    testkit::CallLog log;
    const RecordedCall draw = LOG_CALL(log, DrawIcon);
    const RecordedCall stretch = LOG_CALL(log, DrawIconEx);
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    const Icon icon = ResourceIcon(IDI_QUON, 32);
    DrawIconOfSize(dc.Get(), {35, 8}, icon.Get(), GetSystemMetrics(SM_CXICON));
    EXPECT_EQ(log.Count("DrawIcon "), 1u);
    EXPECT_EQ(log.Count("DrawIconEx"), 0u);
    DrawIconOfSize(dc.Get(), {35, 8}, icon.Get(), GetSystemMetrics(SM_CXICON) + 8);
    EXPECT_EQ(log.Count("DrawIcon "), 1u);
    EXPECT_EQ(log.Count("DrawIconEx"), 1u);
}

}  // namespace
}  // namespace win
