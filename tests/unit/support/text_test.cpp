#include "tests/support/text.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace testkit {
namespace {

using ::testing::HasSubstr;

TEST(TextTest, ConvertsBothWays) {
    EXPECT_EQ(Utf8(L"Зима 文 \U0001F600"), "Зима 文 \U0001F600");
    EXPECT_EQ(Wide("Зима 文 \U0001F600"), L"Зима 文 \U0001F600");
    EXPECT_EQ(Utf8(Wide("")), "");
    EXPECT_THROW(Wide("\xff"), std::runtime_error);
}

TEST(TextTest, NamesTheErrorOfWindows) {
    try {
        ThrowWindowsError("Opening", ERROR_FILE_NOT_FOUND);
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("Opening failed: "));
        EXPECT_THAT(error.what(), HasSubstr("(2)"));
    }
}

// The product's manifest is in the test program too; without it every 8-bit text with other letters would
// differ from the product's.
TEST(TextTest, SharesTheCodePageWithTheProduct) { EXPECT_EQ(GetACP(), static_cast<UINT>(CP_UTF8)); }

}  // namespace
}  // namespace testkit
