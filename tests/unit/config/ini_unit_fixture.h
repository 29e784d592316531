// Units of writes over a file of three shortcuts, for the tests of what becomes of it.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/recorded_call.h"
#include "tests/support/running_program.h"
#include "tests/unit/config/config_file.h"

inline const std::string kSide = SideName(1);
inline const std::string kSecondSide = SideName(2);
inline constexpr const char* kText = "; mine\r\n[Cuts]\r\na=1\r\nb=x=y\r\nc=3\r\n[Switch]\r\na=/x\r\n";

/// Units of writes on a file of three shortcuts.
class IniUnitTest : public ConfigFile {
  protected:
    IniUnitTest() { folder_.WriteIniText(kText); }

    bool NothingIsLeft() const {
        return !folder_.Exists(kSide) && !folder_.Exists(kSecondSide) && !folder_.Exists(SideName(3)) &&
               !folder_.Exists(SideName(4));
    }
    void ExpectUnchanged() const {
        EXPECT_EQ(folder_.IniBytes(), kText);
        EXPECT_TRUE(NothingIsLeft());
    }
    /// Runs `look` after every call that changes a file.
    template <class Look>
    static testkit::RecordedCalls AfterEachStep(Look look) {
        testkit::RecordedCalls calls;
        calls.push_back(
            FAKE_CALL(WritePrivateProfileStringA, [=](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                const BOOL done = ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                look();
                return done;
            }));
        calls.push_back(FAKE_CALL(WritePrivateProfileSectionA, [=](LPCSTR name, LPCSTR text, LPCSTR file) {
            const BOOL done = ORIGINAL_CALL(WritePrivateProfileSectionA)(name, text, file);
            look();
            return done;
        }));
        calls.push_back(FAKE_CALL(CopyFileA, [=](LPCSTR from, LPCSTR to, BOOL keep) {
            const BOOL done = ORIGINAL_CALL(CopyFileA)(from, to, keep);
            look();
            return done;
        }));
        calls.push_back(FAKE_CALL(FlushFileBuffers, [=](HANDLE file) {
            const BOOL done = ORIGINAL_CALL(FlushFileBuffers)(file);
            look();
            return done;
        }));
        return calls;
    }
    /// Lets the write with this number (from 1) leave half a file and find no room for the rest.
    testkit::RecordedCall FailingWrite(int number) {
        return FAKE_CALL(WritePrivateProfileStringA,
                         [this, number](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) -> BOOL {
                             if (++writes_ != number)
                                 return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                             folder_.MakeFile(kSide, "; mi");
                             SetLastError(ERROR_DISK_FULL);
                             return FALSE;
                         });
    }
    /// The full path of an open file.
    static std::string PathOf(HANDLE file) {
        std::string path(MAX_PATH, '\0');
        path.resize(GetFinalPathNameByHandleA(file, path.data(), MAX_PATH, 0));
        constexpr std::string_view kLocal = "\\\\?\\";
        return path.starts_with(kLocal) ? path.substr(kLocal.size()) : path;
    }
    testkit::OwnedHandle Hold(const std::string& name, DWORD share = 0) const {
        testkit::OwnedHandle file(CreateFileA(folder_.FullPath(name).c_str(), GENERIC_READ, share, nullptr,
                                              OPEN_EXISTING, 0, nullptr));
        EXPECT_NE(file.get(), INVALID_HANDLE_VALUE) << name;
        return file;
    }

    int writes_ = 0;
};
