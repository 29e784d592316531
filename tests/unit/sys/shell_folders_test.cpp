#include "sys/shell_folders.h"

#include "tests/support/unit_test.h"

namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall;

TEST(SpecialFolderTest, AsksForTheFolderWithTheOwnerWindow100) {
    CallLog log;
    const RecordedCall location = WATCH_CALL(
        SHGetSpecialFolderLocation, [&](HWND owner, int folder, LPITEMIDLIST*) { log.Add(owner, folder); });
    sys::clsShell::GetSpecialfolder(CSIDL_DESKTOP);
    sys::clsShell::GetSpecialfolder(38);
    EXPECT_THAT(log.Lines(), ElementsAre("0x64 0", "0x64 38"));
}

TEST(SpecialFolderTest, GivesThePathsThatTheShellKeeps) {
    for (const int folder : {0, 5, 7, 8, 9, 11, 38}) {
        wchar_t path[MAX_PATH] = L"";
        SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path);
        std::string given = sys::clsShell::GetSpecialfolder(folder);
        // Wine ends the path of the documents with a "\\" here and without one there.
        if (given.ends_with('\\')) given.pop_back();
        EXPECT_EQ(given, testkit::Utf8(path)) << folder;
    }
}

TEST(SpecialFolderTest, GivesAPathWholeWhateverItsLength) {
    // The longest that Windows has.
    const std::wstring longest = L"C:\\" + std::wstring(32764, L'Ж');
    const RecordedCall path = FAKE_CALL(
        SHGetPathFromIDListEx, [&](LPCITEMIDLIST, LPWSTR buffer, DWORD size, GPFIDL_FLAGS flags) -> BOOL {
            EXPECT_EQ(flags, GPFIDL_DEFAULT);
            if (size <= longest.size()) return FALSE;
            std::wcscpy(buffer, longest.c_str());
            return TRUE;
        });
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(CSIDL_DESKTOP), testkit::Utf8(longest));
}

TEST(SpecialFolderTest, GivesNothingOfAPathThatTheShellCannotGive) {
    const RecordedCall path =
        FAKE_CALL(SHGetPathFromIDListEx, [](LPCITEMIDLIST, LPWSTR buffer, DWORD, GPFIDL_FLAGS) -> BOOL {
            std::wcscpy(buffer, L"C:\\half of i");
            return FALSE;
        });
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(CSIDL_DESKTOP), "");
}

TEST(SpecialFolderTest, GivesNothingForAFolderWithoutAPath) {
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(CSIDL_DRIVES), "");
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(CSIDL_CONTROLS), "");
}

TEST(SpecialFolderTest, GivesNothingWhenTheShellKnowsNoSuchFolder) {
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(0x7F), "");
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(-1), "");
    CallLog log;
    const RecordedCall location = STUB_CALL(log, SHGetSpecialFolderLocation, S_FALSE);
    const RecordedCall path = FAKE_CALL(SHGetPathFromIDListEx, [&]() -> BOOL {
        log.Add("path");
        return TRUE;
    });
    EXPECT_EQ(sys::clsShell::GetSpecialfolder(CSIDL_DESKTOP), "");
    EXPECT_EQ(log.Count("path"), 0u);
}

TEST(SpecialFolderTest, FreesTheItemList) {
    std::vector<void*> lists;
    std::vector<void*> freed;
    const RecordedCall location =
        FAKE_CALL(SHGetSpecialFolderLocation, [&](HWND owner, int folder, LPITEMIDLIST* list) -> HRESULT {
            const HRESULT result = ORIGINAL_CALL(SHGetSpecialFolderLocation)(owner, folder, list);
            lists.push_back(*list);
            return result;
        });
    const RecordedCall free = FAKE_CALL(CoTaskMemFree, [&](LPVOID memory) {
        freed.push_back(memory);
        ORIGINAL_CALL(CoTaskMemFree)(memory);
    });
    sys::clsShell::GetSpecialfolder(CSIDL_DESKTOP);
    sys::clsShell::GetSpecialfolder(CSIDL_DRIVES);
    EXPECT_EQ(freed, lists);
}

}  // namespace
