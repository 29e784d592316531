#include "win/errors.h"

#include <type_traits>

#include "tests/support/unit_test.h"

namespace win {
namespace {

using ::testing::ElementsAre;

std::vector<std::string>& OwnersReports() {
    static std::vector<std::string> reports;
    return reports;
}

class ErrorsTest : public ::testing::Test {
  protected:
    ErrorsTest() {
        OwnersReports().clear();
        SetErrorReporter([](HWND owner, const char* message) noexcept {
            OwnersReports().push_back(std::to_string(reinterpret_cast<INT_PTR>(owner)) + " " + message);
        });
    }
    ~ErrorsTest() override { SetErrorReporter(nullptr); }

    HWND owner_ = reinterpret_cast<HWND>(INT_PTR{4711});
};

TEST_F(ErrorsTest, HaveOneBase) {
    EXPECT_TRUE((std::is_base_of_v<RuntimeError, SubscriptError>));
    EXPECT_TRUE((std::is_base_of_v<RuntimeError, InvalidArgumentError>));
    EXPECT_TRUE((std::is_base_of_v<RuntimeError, TypeMismatchError>));
    EXPECT_TRUE((std::is_base_of_v<RuntimeError, OverflowError>));
    EXPECT_TRUE((std::is_base_of_v<std::runtime_error, RuntimeError>));
    EXPECT_STREQ(OverflowError("Field 7 č").what(), "Field 7 č");
}

TEST_F(ErrorsTest, AreReportedWithTheirTextAndTheWindow) {
    EXPECT_EQ(Guarded(owner_, 5, []() -> int { throw SubscriptError("No field 文"); }), 5);
    EXPECT_THAT(OwnersReports(), ElementsAre("4711 No field 文"));
}

TEST_F(ErrorsTest, OfAnyKindStayInside) {
    Guarded(owner_, 0, []() -> int { throw std::invalid_argument("library"); });
    Guarded(owner_, 0, []() -> int { throw 7; });
    EXPECT_THAT(OwnersReports(), ElementsAre("4711 library", "4711 Unknown error"));
}

TEST_F(ErrorsTest, AreNotReportedWhenThereAreNone) {
    EXPECT_EQ(Guarded(owner_, 5, [] { return 9; }), 9);
    EXPECT_THAT(OwnersReports(), ElementsAre());
}

TEST_F(ErrorsTest, AreSwallowedWithoutAReporter) {
    SetErrorReporter(nullptr);
    EXPECT_EQ(Guarded(owner_, 5, []() -> int { throw RuntimeError("unheard"); }), 5);
    EXPECT_THAT(OwnersReports(), ElementsAre());
}

}  // namespace
}  // namespace win
