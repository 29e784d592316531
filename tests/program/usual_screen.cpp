// Whole-program tests click at places of one screen. On another one each would fail in a way of its own.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>

#include "win/scale.h"

namespace testkit {
namespace {

class UsualScreen : public ::testing::Environment {
    void SetUp() override {
        const int width = GetSystemMetrics(SM_CXSCREEN);
        const int height = GetSystemMetrics(SM_CYSCREEN);
        if (width != 1024 || height != 768 || GetDpiForSystem() != win::kPlainDpi)
            FAIL() << "These tests need a screen of 1024 x 768 pixels at 100 %; this one has " << width
                   << " x " << height << " at " << GetDpiForSystem() << " dots per inch.";
    }
};

// GoogleTest takes the ownership.
const ::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(std::make_unique<UsualScreen>().release());

}  // namespace
}  // namespace testkit
