// Letting messages run while a unit of writes is open fails the test in which it happens.
#include <gtest/gtest.h>

#include "win/message_ban.h"

namespace {

class BannedMessages : public ::testing::EmptyTestEventListener {
  public:
    void OnTestStart(const ::testing::TestInfo& /*test*/) override {
        win::SetBanBreachHandler([](const char* routine) noexcept {
            ADD_FAILURE() << "Messages run in the middle of what they must not see: " << routine;
        });
    }
};

const bool g_bansInstalled = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new BannedMessages);
    return true;
}();

}  // namespace
