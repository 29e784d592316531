// Wine, which the tests mostly run under, and Windows itself.
//
//     TEST_F(TrayTest, TheIconIsThere) {
//         ONLY_UNDER_WINE("Windows' user chooses which icons can be seen.");
//
// The sentence says why Windows cannot tell. Where only the kit has to act otherwise, it asks RunsUnderWine.
#pragma once

#include <gtest/gtest.h>

namespace testkit {

/// The first number of Wine's version; 0 under Windows.
int WineVersion();
inline bool RunsUnderWine() { return WineVersion() != 0; }

}  // namespace testkit

/// Leaves a test, or its SetUp, under Windows: the test is skipped and says why.
#define ONLY_UNDER_WINE(why) \
    if (!::testkit::RunsUnderWine()) GTEST_SKIP() << "Only under Wine. " << (why)
