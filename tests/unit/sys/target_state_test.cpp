#include "sys/target_state.h"

#include <shlwapi.h>
#include <winnetwk.h>

#include "sys/utility.h"
#include "tests/support/unit_test.h"
#include "win/text.h"

namespace {

using sys::LookAtTarget;
using sys::SilentPlaces;
using sys::TargetKind;
using sys::TargetState;
using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog, testkit::ProgramFolder, testkit::RecordedCall;

TEST(TargetStateTest, TellsFilesFoldersUrlsAndWhatIsMissing) {
    const ProgramFolder folder;
    const std::string file = folder.MakeFile("Ü файл 文件.txt", std::string(5000, 'x'));
    const TargetState state = LookAtTarget(file);
    EXPECT_EQ(state.kind, TargetKind::kFile);
    EXPECT_EQ(state.sizeText, sys::FileSizeText(file));
    EXPECT_EQ(state.timeText, sys::FileTimeText(file));
    EXPECT_NE(state.sizeText, "");
    EXPECT_NE(state.timeText, "");
    const TargetState inside = LookAtTarget(folder.Path());
    EXPECT_EQ(inside.kind, TargetKind::kFolder);
    EXPECT_EQ(inside.sizeText + inside.timeText, "");
    for (const char* url : {"http://example.org/a", "mailto:someone@example.org", "file:///C:/gone.txt"})
        EXPECT_EQ(LookAtTarget(url).kind, TargetKind::kUrl) << url;
    for (const std::string& gone :
         {folder.FullPath("gone.txt"), folder.FullPath("gone\\gone.txt"), file + "\\gone",
          folder.FullPath("a?b"), std::string("gone.txt"), std::string()})
        EXPECT_EQ(LookAtTarget(gone).kind, TargetKind::kMissing) << gone;
}

TEST(TargetStateTest, KnowsNothingOfADriveThatIsNotPluggedIn) {
    char letter = 'Z';
    while (letter > 'C' && GetDriveTypeA((std::string(1, letter) + ":\\").c_str()) != DRIVE_NO_ROOT_DIR)
        --letter;
    ASSERT_NE(letter, 'C') << "every letter is a drive";
    EXPECT_EQ(LookAtTarget(std::string(1, letter) + ":\\a.txt").kind, TargetKind::kUnknown);
    EXPECT_EQ(LookAtTarget(std::string(1, letter) + ":\\").kind, TargetKind::kUnknown);
}

TEST(TargetStateTest, KnowsNothingOfAServerThatIsNotThere) {
    for (const char* target :
         {"\\\\no-such-server.invalid\\share\\a.txt", "\\\\no-such-server.invalid\\share"})
        EXPECT_EQ(LookAtTarget(target).kind, TargetKind::kUnknown) << target;
}

TEST(TargetStateTest, FindsWhatLiesDeeperThanAnOrdinaryPathReaches) {
    const ProgramFolder folder;
    const std::wstring top = L"\\\\?\\" + testkit::Wide(folder.Path()) + L"\\" + std::wstring(120, L'Ж');
    const std::wstring deep = top + L"\\" + std::wstring(120, L'ж');
    ASSERT_TRUE(CreateDirectoryW(top.c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
    CloseHandle(CreateFileW((deep + L"\\a.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    const std::string path = win::ToBytes(deep.substr(4));
    const TargetState state = LookAtTarget(path + "\\a.txt");
    EXPECT_EQ(state.kind, TargetKind::kFile);
    EXPECT_EQ(state.sizeText, "0 bytes");
    EXPECT_NE(state.timeText, "");
    EXPECT_EQ(LookAtTarget(path).kind, TargetKind::kFolder);
    EXPECT_EQ(LookAtTarget(path + "\\b.txt").kind, TargetKind::kMissing);
    EXPECT_TRUE(DeleteFileW((deep + L"\\a.txt").c_str()));
    EXPECT_TRUE(RemoveDirectoryW(deep.c_str()));
    EXPECT_TRUE(RemoveDirectoryW(top.c_str()));
}

/// A machine whose network and drives answer as they are told.
class TargetOnTheNetworkTest : public testing::Test {
  protected:
    TargetKind KindOf(const std::string& path) { return LookAtTarget(path, silent_).kind; }

    /// What Windows says of each path; 0, or no entry, when it is there.
    std::map<std::string, DWORD> errors_;
    /// The shares behind the drive letters of the network.
    std::map<std::wstring, std::wstring> shares_;
    bool connected_ = true;
    SilentPlaces silent_;
    CallLog log_;

    DWORD Error(const std::string& path) {
        const auto error = errors_.find(path);
        return error == errors_.end() ? ERROR_SUCCESS : error->second;
    }

  private:
    RecordedCall exists_ = FAKE_CALL(PathFileExistsA, [this](LPCSTR path) -> WINBOOL {
        log_.Add("exists", path);
        SetLastError(Error(path));
        return Error(path) == ERROR_SUCCESS;
    });
    RecordedCall folder_ = FAKE_CALL(PathIsDirectoryA, [this](LPCSTR path) -> WINBOOL {
        log_.Add("folder", path);
        return FALSE;
    });
    RecordedCall file_ =
        FAKE_CALL(GetFileAttributesExA, [this](LPCSTR path, GET_FILEEX_INFO_LEVELS, LPVOID) -> BOOL {
            log_.Add("attributes", path);
            return TRUE;
        });
    RecordedCall place_ =
        FAKE_CALL(GetFileAttributesExW, [this](LPCWSTR path, GET_FILEEX_INFO_LEVELS, LPVOID) -> BOOL {
            log_.Add("look", path);
            SetLastError(Error(testkit::Utf8(path)));
            return Error(testkit::Utf8(path)) == ERROR_SUCCESS;
        });
    RecordedCall kind_ = FAKE_CALL(GetDriveTypeW, [this](LPCWSTR root) -> UINT {
        return shares_.contains(std::wstring(root).substr(0, 2)) ? DRIVE_REMOTE : DRIVE_FIXED;
    });
    RecordedCall connection_ =
        FAKE_CALL(WNetGetConnectionW, [this](LPCWSTR drive, LPWSTR share, LPDWORD size) -> DWORD {
            const std::wstring& name = shares_[drive];
            if (name.empty()) return ERROR_NOT_CONNECTED;
            if (name.size() >= *size) return ERROR_MORE_DATA;
            name.copy(share, name.size());
            return connected_ ? NO_ERROR : ERROR_CONNECTION_UNAVAIL;
        });
};

TEST_F(TargetOnTheNetworkTest, AsksOnceForWhatIsThere) {
    EXPECT_EQ(KindOf("C:\\a.txt"), TargetKind::kFile);
    EXPECT_THAT(log_.Lines(), ElementsAre("exists C:\\a.txt", "folder C:\\a.txt", "attributes C:\\a.txt"));
}

TEST_F(TargetOnTheNetworkTest, BelievesThatATargetIsMissingWhereItsPlaceIsThere) {
    for (const DWORD error : {2, 3, 15, 123, 161, 267}) {
        errors_ = {{"C:\\a.txt", error}, {"\\\\server\\share\\a\\b.txt", error}};
        log_.Clear();
        EXPECT_EQ(KindOf("C:\\a.txt"), TargetKind::kMissing) << error;
        EXPECT_EQ(KindOf("\\\\server\\share\\a\\b.txt"), TargetKind::kMissing) << error;
        EXPECT_THAT(log_.Lines(),
                    ElementsAre("exists C:\\a.txt", "look C:\\", "exists \\\\server\\share\\a\\b.txt",
                                "look \\\\server\\share\\"));
    }
}

TEST_F(TargetOnTheNetworkTest, KnowsNothingWhereTheErrorIsAboutTheWayThere) {
    // Denied, not ready, sharing, network path, busy, gone, name and access, logon, no medium, unplugged,
    // time-out, a locked drive, the network that is not there.
    for (const DWORD error : {5, 21, 32, 53, 54, 55, 64, 65, 67, 1326, 1112, 1167, 121, 1231, 66}) {
        SilentPlaces silent;
        errors_ = {{"E:\\a.txt", error}};
        EXPECT_EQ(LookAtTarget("E:\\a.txt", silent).kind, TargetKind::kUnknown) << error;
    }
}

TEST_F(TargetOnTheNetworkTest, KnowsNothingWhereThePlaceIsGoneWithTheTarget) {
    errors_ = {{"E:\\a.txt", 3}, {"E:\\", 3}, {"\\\\s\\t\\a", 3}, {"\\\\s\\t\\", 53}};
    EXPECT_EQ(KindOf("E:\\a.txt"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf("\\\\s\\t\\a"), TargetKind::kUnknown);
}

TEST_F(TargetOnTheNetworkTest, KnowsTheDriveVolumeOrServerBehindAPrefix) {
    errors_ = {{R"(\\?\E:\a.txt)", 3},        {R"(E:\)", 3},
               {R"(\\?\Volume{1}\a.txt)", 3}, {R"(\\?\Volume{1}\)", 3},
               {R"(\\?\UNC\s\t\a)", 3},       {R"(\\s\t\)", 53},
               {R"(\\?\F:\a.txt)", 2},        {R"(\\?\Volume{2}\a.txt)", 2}};
    EXPECT_EQ(KindOf(R"(\\?\E:\a.txt)"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf(R"(\\?\Volume{1}\a.txt)"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf(R"(\\?\UNC\s\t\a)"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf(R"(\\?\F:\a.txt)"), TargetKind::kMissing);
    EXPECT_EQ(KindOf(R"(\\?\Volume{2}\a.txt)"), TargetKind::kMissing);
}

TEST_F(TargetOnTheNetworkTest, KnowsNothingBehindAFolderWhoseVolumeIsAway) {
    errors_ = {{R"(E:\disk\a\b.txt)", 3}, {R"(E:\disk\a)", 3}};
    const RecordedCall look =
        FAKE_CALL(GetFileAttributesExW, [this](LPCWSTR path, GET_FILEEX_INFO_LEVELS, LPVOID data) -> BOOL {
            const DWORD error = Error(testkit::Utf8(path));
            const bool isLink = std::wstring(path) == LR"(E:\disk)";
            static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->dwFileAttributes =
                FILE_ATTRIBUTE_DIRECTORY | (isLink ? FILE_ATTRIBUTE_REPARSE_POINT : 0u);
            SetLastError(error);
            return error == ERROR_SUCCESS;
        });
    bool away = true;
    const RecordedCall open = FAKE_CALL(CreateFileW, [&](LPCWSTR path, auto...) -> HANDLE {
        EXPECT_EQ(std::wstring(path), LR"(E:\disk)");
        SetLastError(ERROR_FILE_NOT_FOUND);
        return away ? INVALID_HANDLE_VALUE : CreateEventW(nullptr, TRUE, FALSE, nullptr);
    });
    EXPECT_EQ(KindOf(R"(E:\disk\a\b.txt)"), TargetKind::kUnknown);
    away = false;
    EXPECT_EQ(KindOf(R"(E:\disk\a\b.txt)"), TargetKind::kMissing);
}

TEST_F(TargetOnTheNetworkTest, WaitsForEachSilentServerOnceARefresh) {
    errors_ = {{"\\\\dead\\a\\1.txt", 53}, {"\\\\dead\\b\\2.txt", 53}, {"\\\\DEAD", 53}, {"E:\\3.txt", 21}};
    EXPECT_EQ(KindOf("\\\\dead\\a\\1.txt"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf("E:\\3.txt"), TargetKind::kUnknown);
    log_.Clear();
    EXPECT_EQ(KindOf("\\\\dead\\b\\2.txt"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf("\\\\DEAD"), TargetKind::kUnknown);
    EXPECT_EQ(KindOf("e:\\4.txt"), TargetKind::kUnknown);
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_EQ(KindOf("\\\\dead2\\a\\1.txt"), TargetKind::kFile) << "another server";
    EXPECT_EQ(KindOf("C:\\a.txt"), TargetKind::kFile) << "another drive";
    silent_ = {};
    errors_.clear();
    EXPECT_EQ(KindOf("\\\\dead\\b\\2.txt"), TargetKind::kFile) << "the next refresh asks again";
}

TEST_F(TargetOnTheNetworkTest, KnowsTheServerBehindADriveLetter) {
    shares_ = {{L"H:", L"\\\\Dead\\home"}, {L"S:", L"\\\\dead\\shared"}, {L"X:", L""}};
    errors_ = {{"H:\\1.txt", 53}, {"X:\\1.txt", 53}};
    // Windows remembers a share that it is not connected with at the moment.
    for (const bool connected : {true, false}) {
        connected_ = connected;
        silent_ = {};
        EXPECT_EQ(KindOf("H:\\1.txt"), TargetKind::kUnknown);
        EXPECT_EQ(KindOf("X:\\1.txt"), TargetKind::kUnknown);
        log_.Clear();
        EXPECT_EQ(KindOf("S:\\2.txt"), TargetKind::kUnknown);
        EXPECT_EQ(KindOf("\\\\dead\\more\\3.txt"), TargetKind::kUnknown);
        EXPECT_EQ(KindOf("X:\\2.txt"), TargetKind::kUnknown);
        EXPECT_THAT(log_.Lines(), IsEmpty()) << connected;
    }
}

TEST_F(TargetOnTheNetworkTest, AServerThatDeniesAFileIsAskedForTheNext) {
    errors_ = {{"\\\\server\\a\\1.txt", 5}, {"\\\\server\\b\\1.txt", 67}, {"\\\\server\\c\\1.txt", 1326}};
    for (const auto& [path, error] : errors_)
        EXPECT_EQ(KindOf(path), TargetKind::kUnknown);
    EXPECT_EQ(KindOf("\\\\server\\a\\2.txt"), TargetKind::kFile);
}

TEST_F(TargetOnTheNetworkTest, LooksForItselfWhereTheShellRefusesToLook) {
    const RecordedCall refuses = ANSWER_CALL(PathFileExistsA, FALSE);
    EXPECT_EQ(KindOf("\\\\server\\share"), TargetKind::kFile);
    errors_ = {{"\\\\server\\share", 53}};
    EXPECT_EQ(KindOf("\\\\server\\share"), TargetKind::kUnknown);
}

TEST(EncodeBarsTest, KeepsAUrlOneTarget) {
    EXPECT_EQ(sys::EncodeBars("http://example.org/a|b|"), "http://example.org/a%7Cb%7C");
    EXPECT_EQ(sys::EncodeBars("http://example.org/ж?a=%7C"), "http://example.org/ж?a=%7C");
    EXPECT_EQ(sys::EncodeBars(""), "");
}

}  // namespace
