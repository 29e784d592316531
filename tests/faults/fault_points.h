// Makes one chosen Windows call of the product fail, whichever function it is.
//
//     FaultPoints::Count();                                     // nothing fails, every call is counted
//     LoadAndClosePanel();
//     std::vector<CalledFunction> called = FaultPoints::Stop();
//     FaultPoints::Fail("CreatePopupMenu", 2);                       // the second call of it from now on
//     LoadAndClosePanel();
//     FaultPoints::Stop();
//     EXPECT_TRUE(FaultPoints::HasFailed());
//
// The test program links a copy of the product's library whose imports lead to the stubs in
// fault_points.cpp (take-imports makes it when the tests are built), so only calls made by product code are
// counted or fail; those of the test kit are not. A call that does not fail goes on to the import table of
// the test program: a FAKE_CALL made there is still reached. A function that fails is not called at all,
// leaves what its arguments point to as it was, sets the last error and answers what its documentation says
// about failures (failure_values.cpp).
#pragma once

#include "tests/support/unit_test.h"

namespace faults {

/// A function of Windows and how often the product called it.
struct CalledFunction {
    std::string name;
    unsigned calls = 0;
};

/// What a function of Windows does when it fails.
struct Failure {
    std::uint64_t answer = 0;
    std::uint32_t lastError = 8;  // ERROR_NOT_ENOUGH_MEMORY
};

/// How a function fails; no value for one that cannot, or whose failure would say nothing of the product.
const Failure* FailureOf(const std::string& function);

/// Whether a function may fail from now on: where it does, nothing that waits for it can come to an end.
bool MayFailForGood(const std::string& function);

/// The names in the tables of failure_values.cpp that the product does not call: they would be stale.
std::vector<std::string> UnknownNames();

class FaultPoints {
  public:
    /// From now on calls are counted, on all threads.
    static void Count();
    /// From now on calls are counted, and one of them fails; `lasting`: all that come after it, too.
    static void Fail(const std::string& function, unsigned call, bool lasting = false);
    /// Nothing is counted any more. Returns the functions that were called.
    static std::vector<CalledFunction> Stop();
    /// Whether the call that was to fail has come.
    static bool HasFailed();
    /// All functions of Windows that the product's library calls.
    static std::vector<std::string> Functions();
};

}  // namespace faults
