#include "sys/utility.h"

#include <winioctl.h>

#include "tests/support/unit_test.h"

namespace {

using testkit::ProgramFolder, testkit::RecordedCall;

struct PathCase {
    const char* path;
    const char* result;
};

void ExpectParts(std::int16_t code, std::initializer_list<PathCase> cases) {
    for (const auto& [path, result] : cases)
        EXPECT_EQ(sys::PathPart(path, code), result) << "code " << code << " of \"" << path << "\"";
}

TEST(PathPartTest, GivesTheExtension) {
    ExpectParts(0, {{"C:\\Docs\\report.final.txt", "txt"},
                    {"C:\\Docs\\report", ""},
                    {"C:\\Docs\\report.", ""},
                    {"C:\\a.b\\report", "b\\report"},
                    {"http://example.org/a.html", "html"},
                    {".profile", "profile"},
                    {"C:\\Папка\\файл.док", "док"},
                    {"C:\\文件.文本", "文本"},
                    {"", ""}});
}

TEST(PathPartTest, GivesTheNameWithoutExtension) {
    ExpectParts(1, {{"C:\\Docs\\report.final.txt", "report.final"},
                    {"C:\\Docs\\report", "report"},
                    {"C:\\", "C:"},
                    {"C:\\Docs\\", "C:"},
                    {"Docs", "Docs"},
                    {"\\", ""},
                    {"http://localhost/page", "http://localhost/page"},
                    {"", ""},
                    {"report.txt", "report"},
                    {".profile", ""},
                    {"C:\\Docs\\.profile", ""},
                    {"C:\\a.b\\report", "a"},
                    {"http://example.org/folder/page.html", "page"},
                    {"http://example.org", "example"},
                    {"http://example.org/page", "example"},
                    {"http://example.org/", "example"},
                    {"C:\\a/b.txt", "a/b"},
                    {"C:\\Łódź\\żółw.txt", "żółw"},
                    {"C:\\Папка\\файл.txt", "файл"},
                    {"C:\\文件夹\\文件.txt", "文件"}});
}

TEST(PathPartTest, GivesTheNameWithExtension) {
    ExpectParts(2, {{"C:\\Docs\\report.final.txt", "report.final.txt"},
                    {"report.txt", "report.txt"},
                    {"C:\\", ""},
                    {"http://example.org/a.html", "http://example.org/a.html"},
                    {"C:\\文件夹\\文件.txt", "文件.txt"},
                    {"", ""}});
}

TEST(PathPartTest, GivesTheParentFolder) {
    ExpectParts(3, {{"C:\\Docs", "C:"},
                    {"C:\\Docs\\a.txt", "C:\\Docs"},
                    {"C:\\Docs\\", "C:\\Docs"},
                    {"\\a", ""},
                    {"a.txt", ""},
                    {"http://example.org/a.html", ""},
                    {"C:\\Папка\\файл.txt", "C:\\Папка"},
                    {"", ""}});
}

TEST(PathPartTest, TellsWhetherThePathIsAFolder) {
    const ProgramFolder folder;
    const std::string file = folder.MakeFile("a.txt");
    const std::string inner = folder.MakeFolder("Папка 文件夹");
    EXPECT_EQ(sys::PathPart(inner, 4), "yes");
    EXPECT_EQ(sys::PathPart(inner + "\\", 4), "yes");
    EXPECT_EQ(sys::PathPart(file, 4), "no");
    EXPECT_EQ(sys::PathPart(folder.FullPath("missing"), 4), "no");
    EXPECT_EQ(sys::PathPart("http://example.org/", 4), "no");
    EXPECT_EQ(sys::PathPart("", 4), "no");
}

TEST(PathPartTest, GivesNothingForAnyOtherCode) {
    for (const int code : {-1, 5, 6, 256, -32768, 32767})
        EXPECT_EQ(sys::PathPart("C:\\Docs\\report.txt", static_cast<std::int16_t>(code)), "") << code;
}

/// Gives the product another regional setting than the user's.
class RegionalNumbers {
  public:
    RegionalNumbers(std::wstring grouping, std::wstring separator)
        : fake_(FAKE_CALL(GetLocaleInfoEx, [=](LPCWSTR name, LCTYPE type, LPWSTR text, int size) -> int {
              const std::wstring* answer = type == LOCALE_SGROUPING   ? &grouping
                                           : type == LOCALE_STHOUSAND ? &separator
                                                                      : nullptr;
              if (answer == nullptr) return ORIGINAL_CALL(GetLocaleInfoEx)(name, type, text, size);
              wcscpy(text, answer->c_str());
              return static_cast<int>(answer->size()) + 1;
          })) {}

  private:
    RecordedCall fake_;
};

TEST(FileSizeTextTest, ChoosesTheUnitByTheLength) {
    const RegionalNumbers english(L"3;0", L",");
    const std::pair<std::int32_t, const char*> sizes[] = {{0, "0 bytes"},
                                                          {1, "1 bytes"},
                                                          {1023, "1023 bytes"},
                                                          {1024, "1 KB"},
                                                          {2047, "1 KB"},
                                                          {2048, "2 KB"},
                                                          {1023999, "999 KB"},
                                                          {1024000, "1,000 KB"},
                                                          {5000000, "4,882 KB"},
                                                          {1073741823, "1,048,575 KB"},
                                                          {1073741824, ""},
                                                          {1073741825, "1,048,576 MB"},
                                                          {2147483647, "2,097,151 MB"}};
    for (const auto& [length, text] : sizes)
        EXPECT_EQ(sys::SizeText(length), text) << length;
}

TEST(FileSizeTextTest, GroupsDigitsAsTheUserHasThem) {
    const struct {
        const wchar_t* grouping;
        const wchar_t* separator;
        const char* text;
    } regions[] = {{L"3;0", L".", "2.097.151 MB"},
                   {L"3;0", L"\x00A0",
                    "2\xC2\xA0"
                    "097\xC2\xA0"
                    "151 MB"},
                   {L"3;2;0", L",", "20,97,151 MB"},
                   {L" 3; 2; 0", L",", "20,97,151 MB"},
                   {L"0;0", L",", "2097151 MB"},
                   {L"0", L",", "2097151 MB"},
                   {L"3", L",", "2097,151 MB"}};
    for (const auto& region : regions) {
        const RegionalNumbers regional(region.grouping, region.separator);
        EXPECT_EQ(sys::SizeText(2147483647), region.text);
    }
}

TEST(FileSizeTextTest, ReadsTheLengthOfAFile) {
    const ProgramFolder folder;
    EXPECT_EQ(sys::FileSizeText(folder.MakeFile("empty.txt")), "0 bytes");
    EXPECT_EQ(sys::FileSizeText(folder.MakeFile("Ü\\файл 文件.txt", std::string(1023, 'x'))), "1023 bytes");
    EXPECT_EQ(sys::FileSizeText(folder.MakeFile("b.txt", std::string(1024, 'x'))), "1 KB");
}

/// Makes a file of this many bytes that takes no room on the disk.
void MakeLongFile(const std::string& path, LONGLONG length) {
    HANDLE file =
        CreateFileW(testkit::Wide(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD returned = 0;
    DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr);
    LARGE_INTEGER end{};
    end.QuadPart = length;
    EXPECT_TRUE(SetFilePointerEx(file, end, nullptr, FILE_BEGIN) && SetEndOfFile(file));
    CloseHandle(file);
}

TEST(FileSizeTextTest, HasNoTextForExactlyAGigabyteNorFromTwoOnwards) {
    const ProgramFolder folder;
    const std::string path = folder.FullPath("long.bin");
    MakeLongFile(path, 0x40000000);
    EXPECT_EQ(sys::FileSizeText(path), "");
    MakeLongFile(path, 0x40000001);
    EXPECT_TRUE(sys::FileSizeText(path).ends_with(" MB"));
    for (const LONGLONG length : {0x80000000LL, 0xFFFFFFFFLL, 0x100000000LL, 0x100000400LL}) {
        MakeLongFile(path, length);
        EXPECT_EQ(sys::FileSizeText(path), "") << length;
    }
}

TEST(FileSizeTextTest, HasNoTextForWhatIsNoFile) {
    const ProgramFolder folder;
    EXPECT_EQ(sys::FileSizeText(""), "");
    EXPECT_EQ(sys::FileSizeText("http://example.org/a.txt"), "");
    EXPECT_EQ(sys::FileSizeText(folder.Path()), "") << "a folder";
    EXPECT_EQ(sys::FileSizeText(folder.FullPath("missing.txt")), "");
    EXPECT_EQ(sys::FileSizeText("C:\\a|b?*"), "");
}

TEST(FileSizeTextTest, DoesNotAskTheDiskForAUrl) {
    int asked = 0;
    const RecordedCall attributes = FAKE_CALL(GetFileAttributesExA, [&]() -> BOOL {
        ++asked;
        return FALSE;
    });
    sys::FileSizeText("file:///C:/a.txt");
    sys::FileSizeText("");
    EXPECT_EQ(asked, 0);
    sys::FileSizeText("C:\\a.txt");
    EXPECT_EQ(asked, 1);
}

TEST(FileTimeTextTest, GivesTheLocalDateAndTimeAsTheUserHasThem) {
    const ProgramFolder folder;
    const std::string path = folder.MakeFile("Ü файл 文件.txt");
    // A winter and a summer day: each has its own distance from universal time.
    for (const WORD month : {WORD{1}, WORD{7}}) {
        const SYSTEMTIME local{2021, month, 0, 15, 14, 5, 9, 0};
        SYSTEMTIME universal{};
        FILETIME time{};
        ASSERT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal));
        ASSERT_TRUE(SystemTimeToFileTime(&universal, &time));
        HANDLE file = CreateFileW(testkit::Wide(path).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(SetFileTime(file, nullptr, nullptr, &time));
        CloseHandle(file);
        wchar_t day[80] = L"";
        wchar_t clock[80] = L"";
        GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, day, ARRAYSIZE(day));
        GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &local, nullptr, clock, ARRAYSIZE(clock));
        EXPECT_EQ(sys::FileTimeText(path), testkit::Utf8(day) + " " + testkit::Utf8(clock));
    }
}

TEST(FileTimeTextTest, HasNoTextForWhatIsMissing) {
    const ProgramFolder folder;
    EXPECT_EQ(sys::FileTimeText(""), "");
    EXPECT_EQ(sys::FileTimeText(folder.FullPath("missing.txt")), "");
}

TEST(FileTimeTextTest, HasNoTextForATimeThatNoCalendarKnows) {
    const RecordedCall attributes =
        FAKE_CALL(GetFileAttributesExA, [](LPCSTR, GET_FILEEX_INFO_LEVELS, LPVOID answer) -> BOOL {
            static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(answer)->ftLastWriteTime.dwHighDateTime = 0x80000000;
            return TRUE;
        });
    EXPECT_EQ(sys::FileTimeText("C:\\a.txt"), "");
}

TEST(FileTimeTextTest, HasNoTextWithoutTheZoneOfTheUser) {
    const ProgramFolder folder;
    const RecordedCall zone = ANSWER_CALL(SystemTimeToTzSpecificLocalTime, FALSE);
    EXPECT_EQ(sys::FileTimeText(folder.MakeFile("a.txt")), "");
}

}  // namespace
