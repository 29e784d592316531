#include "tests/support/recorded_call.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shellapi.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace testkit {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr;

// Product code stands behind calls of its own as well; within one function the compiler may keep an import's
// address from before a fake was set.
[[gnu::noinline]] int Metric(int index) { return GetSystemMetrics(index); }
[[gnu::noinline]] UINT ProfileInt(const char* key, INT otherwise) {
    return GetPrivateProfileIntA("Section", key, otherwise, "Z:\\no\\such\\file.ini");
}
[[gnu::noinline]] HINSTANCE Open(const char* file) {
    return ShellExecuteA(nullptr, "open", file, nullptr, nullptr, SW_SHOWNORMAL);
}

constexpr int kTrueMetric = SM_CMOUSEBUTTONS;

TEST(RecordedCallTest, SendsCallsToTheFakeAndRestoresTheFunctionAfterwards) {
    const int before = Metric(kTrueMetric);
    {
        std::vector<int> asked;
        const RecordedCall fake = FAKE_CALL(GetSystemMetrics, [&](int index) {
            asked.push_back(index);
            return 4711;
        });
        EXPECT_EQ(Metric(kTrueMetric), 4711);
        EXPECT_THAT(asked, ElementsAre(kTrueMetric));
    }
    EXPECT_EQ(Metric(kTrueMetric), before);
}

TEST(RecordedCallTest, ReachesFunctionsOfOtherLibraries) {
    std::string opened;
    const RecordedCall fake =
        FAKE_CALL(ShellExecuteA, [&](HWND, LPCSTR verb, LPCSTR file, LPCSTR, LPCSTR, INT) {
            opened = std::string(verb) + " " + file;
            return reinterpret_cast<HINSTANCE>(33);
        });
    EXPECT_EQ(Open("C:\\a.txt"), reinterpret_cast<HINSTANCE>(33));
    EXPECT_EQ(opened, "open C:\\a.txt");
}

TEST(RecordedCallTest, KeepsTheOuterFakeWhenAnInnerOneEnds) {
    const RecordedCall outer = FAKE_CALL(GetSystemMetrics, [](int) { return 1; });
    {
        const RecordedCall inner = FAKE_CALL(GetSystemMetrics, [](int) { return 2; });
        EXPECT_EQ(Metric(kTrueMetric), 2);
    }
    EXPECT_EQ(Metric(kTrueMetric), 1);
}

TEST(RecordedCallTest, KeepsTheInnerFakeWhenTheOuterOneEndsFirst) {
    const int before = Metric(kTrueMetric);
    RecordedCall outer = FAKE_CALL(GetSystemMetrics, [](int) { return 1; });
    RecordedCall inner = FAKE_CALL(GetSystemMetrics, [](int) { return 2; });
    outer.Restore();
    EXPECT_EQ(Metric(kTrueMetric), 2);
    inner.Restore();
    EXPECT_EQ(Metric(kTrueMetric), before);
}

TEST(RecordedCallTest, CallsTheTrueFunctionFromInsideNestedFakes) {
    const int before = Metric(kTrueMetric);
    const RecordedCall outer = FAKE_CALL(GetSystemMetrics, [](int) { return 1; });
    const RecordedCall inner =
        FAKE_CALL(GetSystemMetrics, [](int index) { return ORIGINAL_CALL(GetSystemMetrics)(index) + 1000; });
    EXPECT_EQ(Metric(kTrueMetric), before + 1000);
}

TEST(RecordedCallTest, GivesTheTrueFunctionWithoutAnyFake) {
    EXPECT_EQ(ORIGINAL_CALL(GetSystemMetrics)(kTrueMetric), Metric(kTrueMetric));
}

TEST(RecordedCallTest, MovesTheOwnershipOfAFake) {
    const int before = Metric(kTrueMetric);
    RecordedCalls fakes;
    fakes.push_back(FAKE_CALL(GetSystemMetrics, [](int) { return 1; }));
    fakes.push_back(FAKE_CALL(GetSystemMetrics, [](int) { return 2; }));
    EXPECT_EQ(Metric(kTrueMetric), 2);
    RecordedCall moved = std::move(fakes[1]);
    fakes.clear();
    EXPECT_EQ(Metric(kTrueMetric), 2);
    moved = RecordedCall();
    EXPECT_EQ(Metric(kTrueMetric), before);
}

TEST(RecordedCallTest, LogsTheCallsOfSeveralFunctionsInTheirOrder) {
    CallLog log;
    const RecordedCall profile = LOG_CALL(log, GetPrivateProfileIntA);
    const RecordedCall metric = STUB_CALL(log, GetSystemMetrics, 5);
    EXPECT_EQ(ProfileInt("Main", 42), 42u);
    EXPECT_EQ(Metric(7), 5);
    EXPECT_EQ(ProfileInt("Other", 1), 1u);
    EXPECT_THAT(log.Lines(), ElementsAre("GetPrivateProfileIntA Section Main 42 Z:\\no\\such\\file.ini",
                                         "GetSystemMetrics 7",
                                         "GetPrivateProfileIntA Section Other 1 Z:\\no\\such\\file.ini"));
}

TEST(RecordedCallTest, LooksAtACallAndLetsItThrough) {
    const int before = Metric(kTrueMetric);
    std::vector<int> seen;
    const RecordedCall watch = WATCH_CALL(GetSystemMetrics, [&](int index) { seen.push_back(index); });
    EXPECT_EQ(Metric(kTrueMetric), before);
    EXPECT_THAT(seen, ElementsAre(kTrueMetric));
}

TEST(RecordedCallTest, AnswersWhateverIsAsked) {
    const RecordedCall answer = ANSWER_CALL(GetSystemMetrics, 5);
    EXPECT_EQ(Metric(kTrueMetric), 5);
    EXPECT_EQ(Metric(7), 5);
}

TEST(RecordedCallTest, LetsAnExceptionOutOfAFake) {
    const RecordedCall fake =
        FAKE_CALL(GetSystemMetrics, [](int) -> int { throw std::runtime_error("out of order"); });
    EXPECT_THROW(Metric(kTrueMetric), std::runtime_error);
}

TEST(RecordedCallTest, RefusesAFunctionThatTheProgramDoesNotImport) {
    try {
        const RecordedCall fake = FAKE_CALL(GetSystemRegistryQuota, [](PDWORD, PDWORD) { return FALSE; });
        FAIL() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("GetSystemRegistryQuota"));
    }
}

}  // namespace
}  // namespace testkit
