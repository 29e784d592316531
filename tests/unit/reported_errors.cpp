// An error that gets out of an event handler fails the test in which it happens: without a reporter it would
// be swallowed, and the test could pass without having seen what it is about. A test that wants such an error
// sets a reporter of its own.
#include <windows.h>

#include <gtest/gtest.h>

#include "win/errors.h"

namespace {

class ReportedErrors : public ::testing::EmptyTestEventListener {
  public:
    void OnTestStart(const ::testing::TestInfo& /*test*/) override {
        win::SetErrorReporter(
            [](HWND, const char* message) noexcept { ADD_FAILURE() << "Error report: " << message; });
    }
};

const bool g_reportsInstalled = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new ReportedErrors);
    return true;
}();

}  // namespace
