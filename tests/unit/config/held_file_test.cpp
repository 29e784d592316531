// Quon.ini while another program has it open for itself, as a virus scanner or a backup does for a moment.

#include <windows.h>

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/support/hidden_window.h"
#include "tests/support/recorded_call.h"
#include "tests/support/running_program.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"
#include "win/picture_box.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testkit::RecordedCall;

class HeldFileTest : public ConfigFile {
  protected:
    HeldFileTest() { folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n"); }

    /// What the profile functions answer: a failure as long as the file is held.
    DWORD Answer(const std::function<DWORD()>& call) {
        ++calls_;
        const bool now_and_then = let_go_every_ > 0 && calls_ % let_go_every_ != 0;
        if (held_ == 0 && !now_and_then) return call();
        if (held_ > 0) --held_;
        SetLastError(error_);
        return 0;
    }

    int held_ = 0;
    int let_go_every_ = 0;  ///< the file is let go for every so many-th call alone; 0: it is not held so
    DWORD error_ = ERROR_SHARING_VIOLATION;
    int calls_ = 0;
    int pauses_ = 0;
    ULONGLONG now_ = GetTickCount64();
    RecordedCall clock_ = FAKE_CALL(GetTickCount64, [this] { return now_; });
    RecordedCall pause_ = FAKE_CALL(Sleep, [this](DWORD time) {
        ++pauses_;
        now_ += time;
    });
    void AnotherAction() { now_ += 1000; }
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
        AnotherAction();
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

TEST_F(HeldFileTest, OneActionWaitsForItAFifthOfASecondInAll) {
    AnotherAction();
    held_ = 1000;
    const ULONGLONG begin = now_;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), std::nullopt);
    EXPECT_EQ(now_ - begin, 200u);
    EXPECT_EQ(calls_, 11);
    // Whatever else it reads and writes is tried once.
    for (int other = 0; other < 100; ++other) {
        EXPECT_EQ(config::TryReadIniSection("Cuts"), std::nullopt);
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "");
        EXPECT_EQ(config::ReadIniSection("Cuts"), "");
        EXPECT_FALSE(config::RemoveRecord("Cuts", "a"));
        EXPECT_FALSE(config::WriteIni("Cuts", "c", "3"));
    }
    EXPECT_EQ(now_ - begin, 200u);
    AnotherAction();
    held_ = 9;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=2"));
}

TEST_F(HeldFileTest, IsNotWaitedForAfterAnotherFailure) {
    for (const DWORD error : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND}) {
        error_ = error;
        held_ = 1;
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "");
    }
    error_ = ERROR_ACCESS_DENIED;
    held_ = 2;
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "") << "what is said twice is believed";
    EXPECT_EQ(config::ReadIni("Cuts", "missing"), "");
    EXPECT_EQ(calls_, 5);
    EXPECT_EQ(pauses_, 0);
}

TEST_F(HeldFileTest, OnlyAFileThatCannotBeReadGivesNoAnswer) {
    EXPECT_EQ(config::TryReadIni("Cuts", "missing"), "");
    EXPECT_EQ(config::TryReadIniSection("Missing"), "");
    // What Windows says of a key that is not there.
    error_ = ERROR_FILE_NOT_FOUND;
    held_ = 1;
    EXPECT_EQ(config::TryReadIni("Cuts", "missing"), "");
    // A code that says nothing: where the file can be read by now, it is asked once more.
    error_ = ERROR_ACCESS_DENIED;
    held_ = 1;
    EXPECT_EQ(config::TryReadIni("Cuts", "missing"), "");
    held_ = 1;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1");
    held_ = 1;
    EXPECT_EQ(config::TryReadIniSection("Cuts"), std::string("a=1\0b=2", 7));
    const RecordedCall open = FAKE_CALL(CreateFileA, []() -> HANDLE {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    });
    held_ = 2;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), std::nullopt);
    EXPECT_EQ(config::TryReadIniSection("Cuts"), std::nullopt);
}

TEST_F(HeldFileTest, AFileThatIsMissingOrEmptyGivesNoAnswer) {
    // As while another program saves it: what will be in it again must not be freed.
    const auto expectNoAnswer = [] {
        EXPECT_EQ(config::TryReadIni("Cuts", "a"), std::nullopt);
        EXPECT_EQ(config::TryReadIniSection("Cuts"), std::nullopt);
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "");
        EXPECT_FALSE(config::RemoveRecord("Cuts", "a"));
    };
    folder_.WriteIniText("");
    expectNoAnswer();
    folder_.RemoveFile("Quon.ini");
    expectNoAnswer();
    EXPECT_EQ(pauses_, 0);
    const config::IniStart start;
    EXPECT_EQ(config::TryReadIni("Settings", "Main"), "") << "a start says itself what is missing";
}

TEST_F(HeldFileTest, AFileThatIsNotYetWholeGivesNoAnswer) {
    const std::string whole = "[Settings]\r\nMain=1\r\n[Cuts]\r\na=1\r\nb=2\r\n";
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    EXPECT_EQ(config::TryReadIni("Cuts", "b"), "") << "before it is known what belongs to a whole file";
    folder_.WriteIniText(whole);
    EXPECT_EQ(config::ReadRequired("Settings", "Main"), "1");
    EXPECT_EQ(config::TryReadIni("Cuts", "c"), "");
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    EXPECT_EQ(config::TryReadIni("Cuts", "b"), std::nullopt);
    EXPECT_EQ(config::TryReadIniSection("Switch"), std::nullopt);
    EXPECT_FALSE(config::RemoveRecord("Switch", "b"));
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1") << "what is there is there";
    folder_.WriteIniText(whole);
    EXPECT_EQ(config::TryReadIni("Cuts", "b"), "2");
    EXPECT_EQ(config::TryReadIni("Cuts", "c"), "");
    // What belongs to this file says nothing of another one.
    const testkit::ScopedIniPath other(folder_.MakeFile("other.ini", "[Cuts]\r\na=1\r\n"));
    EXPECT_EQ(config::TryReadIni("Cuts", "b"), "");
}

TEST_F(HeldFileTest, WhatAnotherProgramIsWritingIsLeftToIt) {
    const std::string whole = "[Settings]\r\nMain=1\r\n[Cuts]\r\na=1\r\nb=2\r\n";
    constexpr DWORD kShareReading = FILE_SHARE_READ;
    constexpr DWORD kShareWriting = FILE_SHARE_READ | FILE_SHARE_WRITE;
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    for (const DWORD share : {DWORD{0}, kShareReading, kShareWriting, kShareAll}) {
        // It pauses before its first byte, in the middle, or before it closes the file.
        for (const size_t written : {size_t{0}, whole.size() - 5, whole.size()}) {
            folder_.WriteIniText(whole);
            AnotherAction();
            EXPECT_EQ(config::ReadRequired("Settings", "Main"), "1");
            {
                const testkit::OwnedHandle writer(CreateFileA(folder_.IniPath().c_str(), GENERIC_WRITE, share,
                                                              nullptr, CREATE_ALWAYS, 0, nullptr));
                ASSERT_NE(writer.get(), INVALID_HANDLE_VALUE);
                DWORD done = 0;
                WriteFile(writer.get(), whole.data(), static_cast<DWORD>(written), &done, nullptr);
                EXPECT_FALSE(config::WriteIni("Cuts", "a", "3")) << share << ", " << written;
                EXPECT_FALSE(config::RemoveRecord("Cuts", "a")) << share << ", " << written;
                const std::string rest = whole.substr(written);
                WriteFile(writer.get(), rest.data(), static_cast<DWORD>(rest.size()), &done, nullptr);
            }
            EXPECT_EQ(folder_.IniBytes(), whole) << share << ", " << written;
            EXPECT_FALSE(folder_.Exists(SideName(1)));
            AnotherAction();
            EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
            EXPECT_THAT(Lines("Cuts"), ElementsAre("a=3", "b=2"));
        }
    }
}

TEST_F(HeldFileTest, AFileThatHasBecomeWholeMeanwhileIsAskedOnceMore) {
    const std::string whole = "[Settings]\r\nMain=1\r\n[Cuts]\r\na=1\r\nb=2\r\n";
    for (const char* before : {"", "[Cuts]\r\na=1\r\n"}) {
        folder_.WriteIniText(whole + "c=3\r\n");
        EXPECT_EQ(config::ReadRequired("Settings", "Main"), "1");
        folder_.WriteIniText(before);
        bool first = true;
        const RecordedCall look = WATCH_CALL(GetFileAttributesExA, [&] {
            if (std::exchange(first, false)) folder_.WriteIniText(whole);
        });
        EXPECT_EQ(config::TryReadIni("Cuts", "b"), "2") << before;
    }
}

TEST_F(HeldFileTest, AStartWaitsForAFileThatIsBeingSaved) {
    const std::string part = "[Cuts]\r\na=1\r\n";
    const std::string whole = part + "[Settings]\r\nMain=1\r\n";
    for (const bool known : {false, true}) {
        for (const std::string& before : {std::string("missing"), std::string(), part}) {
            const config::IniStart start;
            if (known) {
                folder_.WriteIniText(whole);
                config::AwaitRequired("Settings", "Main");
            }
            folder_.WriteIniText(before);
            if (before == "missing") folder_.RemoveFile("Quon.ini");
            int left = 5;
            const RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD) {
                if (--left == 0) folder_.WriteIniText(whole);
            });
            if (!known) config::AwaitRequired("Settings", "Main");
            EXPECT_EQ(config::ReadIni("Settings", "Main"), "1") << before;
            EXPECT_EQ(left, 0) << before;
        }
    }
    const config::IniStart start;
    folder_.WriteIniText("[Settings]\r\nMain=\r\n");
    config::AwaitRequired("Settings", "Main");
    EXPECT_EQ(config::ReadIni("Settings", "Main"), "");
    EXPECT_EQ(pauses_, 0) << "it is there, and holds nothing";
}

TEST_F(HeldFileTest, AStartWaitsASecondInAllForAFileThatIsBeingSaved) {
    for (const bool missing : {true, false}) {
        const config::IniStart start;
        if (missing) folder_.RemoveFile("Quon.ini");
        pauses_ = 0;
        config::AwaitRequired("Settings", "Main");
        EXPECT_EQ(pauses_, 50);
        EXPECT_EQ(config::ReadIni("Settings", "Main"), "");
        EXPECT_EQ(config::ReadIniSection("Buttons"), "");
        EXPECT_EQ(pauses_, 50);
        folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    }
    config::AwaitRequired("Settings", "Main");
    EXPECT_EQ(pauses_, 50) << "nobody waits after the start";
}

TEST_F(HeldFileTest, WhatATimerTriesAgainWaitsForNothingAndLeavesActionsTheirPatience) {
    AnotherAction();
    held_ = 5;
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "1");
    {
        const config::NoPatience hurry;
        held_ = 1;
        EXPECT_EQ(config::TryReadIni("Cuts", "a"), std::nullopt);
        held_ = 1;
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_TRUE(config::WriteIni("Cuts", "b", "2"));
        EXPECT_EQ(pauses_, 5);
    }
    held_ = 8;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1");
    EXPECT_EQ(pauses_, 5 + 8);
}

TEST_F(HeldFileTest, AMessageThatIsHandledMeanwhileHasItsPatience) {
    const testkit::HiddenWindow parent;
    win::PictureBox box;
    box.CreateOn(parent.Handle(), 1, {0, 0, 10, 10});
    std::optional<std::string> read;
    box.onDoubleClick = [&] { read = config::TryReadIni("Cuts", "a"); };
    AnotherAction();
    const config::NoPatience hurry;
    held_ = 5;
    SendMessageW(box.Handle(), WM_LBUTTONDBLCLK, 0, 0);
    EXPECT_EQ(read, "1");
    EXPECT_EQ(pauses_, 5);
    held_ = 1;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), std::nullopt);
}

TEST_F(HeldFileTest, ANewWaitBeginsAfterItWasRead) {
    AnotherAction();
    held_ = 8;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1");
    held_ = 3;
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "1");
    AnotherAction();
    held_ = 8;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    held_ = 3;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_EQ(pauses_, 4 * 11 / 2);
}

TEST_F(HeldFileTest, NoActionWaitsLongerThan300MillisecondsHoweverOftenTheFileIsTaken) {
    std::string text = "[Cuts]\r\n";
    for (int record = 0; record < 30; ++record)
        text += "n" + std::to_string(record) + "=1=2\r\n";
    for (let_go_every_ = 2; let_go_every_ <= 14; ++let_go_every_) {
        folder_.WriteIniText(text);
        AnotherAction();
        const ULONGLONG begin = now_;
        {
            config::IniUnit unit;
            for (int record = 0; record < 10; ++record) {
                config::RemoveRecord("Cuts", "n" + std::to_string(record));
                config::WriteIni("Cuts", "m" + std::to_string(record), "2");
                config::TryReadIniSection("Cuts");
            }
            static_cast<void>(unit.Finish());
        }
        for (int record = 10; record < 30; ++record) {
            config::RemoveRecord("Cuts", "n" + std::to_string(record));
            config::TryReadIni("Cuts", "n" + std::to_string(record));
        }
        EXPECT_LE(now_ - begin, 300u) << let_go_every_;
        EXPECT_GE(now_ - begin, 200u) << let_go_every_;
    }
}

TEST_F(HeldFileTest, AStartWaitsForItLongerAndThenSaysWhy) {
    AnotherAction();
    {
        const config::IniStart start;
        held_ = 120;
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "1");
        held_ = 1000;
        try {
            config::ReadIni("Cuts", "a");
            ADD_FAILURE() << "no error";
        } catch (const win::RuntimeError& error) {
            EXPECT_THAT(error.what(),
                        AllOf(HasSubstr("Another program holds"), HasSubstr(folder_.IniPath())));
        }
        EXPECT_EQ(pauses_, 120 + 200) << "four seconds each";
        EXPECT_THROW(config::ReadIniSection("Cuts"), win::RuntimeError);
        held_ = 0;
        EXPECT_EQ(config::ReadIni("Cuts", "missing"), "") << "that is no fault of the file";
    }
    held_ = 1;
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "") << "and afterwards as ever";
}

}  // namespace
