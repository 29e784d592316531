#include "tests/support/call_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace testkit {
namespace {

using ::testing::ElementsAre;

TEST(CallLogTest, WritesEachKindOfArgumentReadably) {
    CallLog log;
    log.Add("text", std::string("more"), std::string_view("view"), L"шире");
    log.Add(1, -2, 3u, true, WS_OVERLAPPED, 5ull);
    log.Add(static_cast<const char*>(nullptr), static_cast<wchar_t*>(nullptr), HWND(nullptr), nullptr);
    log.Add(MAKEINTRESOURCEA(7), MAKEINTRESOURCEW(8), reinterpret_cast<HWND>(0x1234));
    EXPECT_THAT(log.Lines(), ElementsAre("text more view шире", "1 -2 3 true 0 5", "(null) (null) null null",
                                         "#7 #8 0x1234"));
}

TEST(CallLogTest, CountsLinesByTheirStart) {
    CallLog log;
    log.Add("Write", "A", 1);
    log.Add("Write", "B", 1);
    log.Add("Read", "A");
    EXPECT_EQ(log.Count("Write"), 2u);
    EXPECT_EQ(log.Count("Write B"), 1u);
    EXPECT_EQ(log.Text(), "Write A 1\nWrite B 1\nRead A\n");
    log.Clear();
    EXPECT_EQ(log.Count(""), 0u);
}

TEST(CallLogTest, AcceptsTheOrderOnlyWhenItIsKept) {
    CallLog log;
    log.Add("first");
    log.Add("between");
    log.Add("second", 2);
    EXPECT_TRUE(InOrder(log, {"first", "second"}));
    EXPECT_FALSE(InOrder(log, {"second", "first"}));
    EXPECT_FALSE(InOrder(log, {"first", "first"}));
    EXPECT_FALSE(InOrder(log, {"third"}));
}

}  // namespace
}  // namespace testkit
