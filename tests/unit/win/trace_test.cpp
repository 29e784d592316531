#include "win/trace.h"

#include "tests/support/unit_test.h"

namespace {

using ::testing::IsEmpty, ::testing::MatchesRegex;

class TraceTest : public ::testing::Test {
  protected:
    TraceTest() { SetEnvironmentVariableA("QUON_TRACE", nullptr); }
    ~TraceTest() override { SetEnvironmentVariableA("QUON_TRACE", nullptr); }

    /// A call that fails with that error, and is survived.
    static void Fail(DWORD error) {
        SetLastError(error);
        EXPECT_FALSE(win::Traced(FALSE, "SomeCall"));
    }

    std::vector<std::string> debugger_;
    testkit::RecordedCall output_ =
        FAKE_CALL(OutputDebugStringA, [this](LPCSTR text) { debugger_.emplace_back(text); });
    testkit::ProgramFolder folder_;
};

TEST_F(TraceTest, TellsADebuggerFunctionErrorAndPlace) {
    testkit::CallLog asked;
    const auto present = STUB_CALL(asked, IsDebuggerPresent, TRUE);
    Fail(ERROR_ACCESS_DENIED);
    ASSERT_EQ(debugger_.size(), 1u);
    EXPECT_THAT(debugger_[0], MatchesRegex(".*trace_test\\.cpp\\(\\d+\\): SomeCall failed with 5\r\n"));
}

TEST_F(TraceTest, SaysNothingWithoutADebuggerAndAFile) {
    testkit::CallLog files;
    const auto create = LOG_CALL(files, CreateFileA);
    Fail(ERROR_ACCESS_DENIED);
    EXPECT_THAT(debugger_, IsEmpty());
    EXPECT_THAT(files.Lines(), IsEmpty());
}

TEST_F(TraceTest, AppendsToTheFileThatTheEnvironmentNames) {
    folder_.MakeFile("trace.txt", "before\r\n");
    SetEnvironmentVariableA("QUON_TRACE", folder_.FullPath("trace.txt").c_str());
    Fail(2);
    Fail(ERROR_GEN_FAILURE);
    const std::string text = folder_.ReadFile("trace.txt");
    EXPECT_THAT(text, MatchesRegex("before\r\n.*trace_test\\.cpp\\(\\d+\\): SomeCall failed with 2\r\n"
                                   ".*trace_test\\.cpp\\(\\d+\\): SomeCall failed with 31\r\n"));
}

TEST_F(TraceTest, LeavesTheLastErrorAsItWas) {
    SetEnvironmentVariableA("QUON_TRACE", "Z:\\no such folder\\trace.txt");
    Fail(ERROR_FILE_CORRUPT);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_CORRUPT});
}

TEST_F(TraceTest, HandsASuccessOn) {
    testkit::CallLog asked;
    const auto present = STUB_CALL(asked, IsDebuggerPresent, TRUE);
    EXPECT_EQ(win::Traced(7, "SomeCall"), 7);
    EXPECT_THAT(asked.Lines(), IsEmpty());
    EXPECT_THAT(debugger_, IsEmpty());
}

}  // namespace
