#include "win/icons.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "res/resource.h"
#include "tests/support/call_log.h"
#include "tests/support/recorded_call.h"
#include "win/process_start.h"

namespace win {
namespace {

using testkit::RecordedCall;

constexpr int kGroupType = 14;  // RT_GROUP_ICON

int WidthOf(HICON icon) {
    ICONINFO info{};
    if (GetIconInfo(icon, &info) == 0) return 0;
    const Bitmap color(info.hbmColor);
    const Bitmap mask(info.hbmMask);
    BITMAP bitmap{};
    GetObjectW(color.Get(), sizeof bitmap, &bitmap);
    return bitmap.bmWidth;
}

TEST(IconsTest, AreStoredInTheSizesThatTheyAreDrawnAt) {
    // A size that is not stored would be stretched from another one: the file must name it.
    struct Case {
        int id;
        int layoutSize;
    };
    for (const Case& example : {Case{IDI_QUON, 32},
                                {IDI_QUON, 64},
                                {IDI_SHELL, 20},
                                {IDI_PREDEFINED, 20},
                                {IDI_SETTINGS, 20},
                                {IDI_GO, 20},
                                {IDI_INFO, 14}}) {
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
