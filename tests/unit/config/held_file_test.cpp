// Quon.ini while another program has it open for itself, as a virus scanner or a backup does for a moment.

#include <windows.h>

#include <gmock/gmock.h>

#include <functional>
#include <string>

#include "config/ini.h"
#include "tests/support/recorded_call.h"
#include "tests/unit/config/config_file.h"

namespace {

using testing::ElementsAre;
using testkit::RecordedCall;

class HeldFileTest : public ConfigFile {
  protected:
    HeldFileTest() { folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n"); }

    /// What the profile functions answer: a failure as long as the file is held.
    DWORD Answer(const std::function<DWORD()>& call) {
        ++calls_;
        if (held_ == 0) return call();
        --held_;
        SetLastError(error_);
        return 0;
    }

    int held_ = 0;
    DWORD error_ = ERROR_SHARING_VIOLATION;
    int calls_ = 0;
    int pauses_ = 0;
    RecordedCall pause_ = FAKE_CALL(Sleep, [this](DWORD) { ++pauses_; });
    RecordedCall value_ = FAKE_CALL(GetPrivateProfileStringA, [this](LPCSTR section, LPCSTR key, LPCSTR none,
                                                                     LPSTR text, DWORD size, LPCSTR file) {
        return Answer(
            [&] { return ORIGINAL_CALL(GetPrivateProfileStringA)(section, key, none, text, size, file); });
    });
    RecordedCall section_ = FAKE_CALL(GetPrivateProfileSectionA, [this](LPCSTR section, LPSTR text,
                                                                        DWORD size, LPCSTR file) {
        return Answer([&] { return ORIGINAL_CALL(GetPrivateProfileSectionA)(section, text, size, file); });
    });
    RecordedCall write_ = FAKE_CALL(
        WritePrivateProfileStringA, [this](LPCSTR section, LPCSTR key, LPCSTR text, LPCSTR file) -> BOOL {
            return static_cast<BOOL>(Answer([&] {
                return static_cast<DWORD>(
                    ORIGINAL_CALL(WritePrivateProfileStringA)(section, key, text, file));
            }));
        });
    RecordedCall empty_ =
        FAKE_CALL(WritePrivateProfileSectionA, [this](LPCSTR section, LPCSTR text, LPCSTR file) -> BOOL {
            return static_cast<BOOL>(Answer([&] {
                return static_cast<DWORD>(ORIGINAL_CALL(WritePrivateProfileSectionA)(section, text, file));
            }));
        });
};

TEST_F(HeldFileTest, IsReadAndWrittenOnceItIsLetGo) {
    for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION}) {
        error_ = error;
        held_ = 1;
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "1");
        held_ = 2;
        EXPECT_EQ(config::ReadIniSection("Cuts"), std::string("a=1\0b=2", 7));
        held_ = 2;
        config::WriteIni("Cuts", "c", "3");
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=2", "c=3"));
        held_ = 1;
        config::WriteIniSection("Cuts", "");
        EXPECT_THAT(Lines("Cuts"), ElementsAre());
        folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n");
    }
    EXPECT_EQ(pauses_, 2 * 6);
}

TEST_F(HeldFileTest, IsGivenUpAfterThreeAttempts) {
    held_ = 100;
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "");
    EXPECT_EQ(calls_, 3);
    EXPECT_EQ(pauses_, 2);
}

TEST_F(HeldFileTest, IsNotWaitedForAfterAnotherFailure) {
    for (const DWORD error : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED}) {
        error_ = error;
        held_ = 1;
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "");
    }
    EXPECT_EQ(config::ReadIni("Cuts", "missing"), "");
    EXPECT_EQ(calls_, 4);
    EXPECT_EQ(pauses_, 0);
}

}  // namespace
