// The file's place taken in one step, as the newest systems can.
#include <windows.h>

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/support/text.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testkit::RecordedCall;

class OneStepTest : public IniUnitTest {
  protected:
    /// Lets a system that knows the one step take it, or answer it with this error.
    RecordedCall Renaming(DWORD error) {
        return FAKE_CALL(
            SetFileInformationByHandle,
            [this, error](HANDLE file, FILE_INFO_BY_HANDLE_CLASS how, LPVOID data, DWORD size) -> BOOL {
                auto* record = static_cast<FILE_RENAME_INFO*>(data);
                EXPECT_EQ(PathOf(file), folder_.FullPath(kSide));
                EXPECT_EQ(record->RootDirectory, nullptr);
                const std::wstring path(record->FileName, record->FileNameLength / sizeof(wchar_t));
                EXPECT_EQ(testkit::Utf8(path), folder_.IniPath());
                EXPECT_GE(size, offsetof(FILE_RENAME_INFO, FileName) + record->FileNameLength + 2);
                auto& flags = *static_cast<DWORD*>(data);
                constexpr DWORD kOntoAFile = 1;
                if (how == FileRenameInfo) {
                    ++olderWay_;
                    EXPECT_EQ(flags, kOntoAFile);
                    return ORIGINAL_CALL(SetFileInformationByHandle)(file, how, data, size);
                }
                ++oneStep_;
                EXPECT_EQ(static_cast<int>(how), 22) << "FileRenameInfoEx";
                EXPECT_EQ(flags, 3u) << "onto a file, also an open one";
                SetLastError(error);
                if (error != ERROR_SUCCESS) return FALSE;
                // Every system knows the older way, which does the same here.
                flags = kOntoAFile;
                return ORIGINAL_CALL(SetFileInformationByHandle)(file, FileRenameInfo, data, size);
            });
    }

    int oneStep_ = 0;
    int olderWay_ = 0;
};

TEST_F(OneStepTest, IsTheFirstChoice) {
    const RecordedCall rename = Renaming(ERROR_SUCCESS);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_EQ(oneStep_, 1);
    EXPECT_EQ(olderWay_, 0);
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(OneStepTest, WhereTheSystemKnowsItTwoStepsAreNeverTaken) {
    const RecordedCall replace = FAKE_CALL(ReplaceFileA, [](auto...) -> BOOL {
        ADD_FAILURE() << "two steps";
        return FALSE;
    });
    // Another program has it open and does not let it be deleted.
    const testkit::OwnedHandle held = Hold("Quon.ini", FILE_SHARE_READ | FILE_SHARE_WRITE);
    const RecordedCall rename = Renaming(ERROR_SHARING_VIOLATION);
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_GT(oneStep_, 1) << "it is tried again";
    EXPECT_EQ(olderWay_, oneStep_);
    ExpectUnchanged();
}

TEST_F(OneStepTest, IsNotTriedAgainWhereTheSystemDoesNotKnowIt) {
    const RecordedCall rename = Renaming(ERROR_INVALID_PARAMETER);
    int stores = 0;
    for (const char* value : {"2", "3", "4"}) {
        EXPECT_TRUE(config::WriteIni("Cuts", "a", value));
        EXPECT_EQ(folder_.IniValue("Cuts", "a"), value);
        EXPECT_EQ(oneStep_, 1);
        EXPECT_EQ(olderWay_, ++stores);
    }
}

}  // namespace
