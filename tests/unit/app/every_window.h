// Every window of the program, one after the other, for what has to hold in all of them.
//
//     ForEveryWindow([](const std::string& name, testkit::Window window) {
//         EXPECT_TRUE(window.IsVisible()) << name;
//     });
//
// The panel itself stays hidden, with its rename box open the second time; the dialogs are on the screen.
#pragma once

#include "tests/support/unit_test.h"

namespace app {

void ForEveryWindow(const std::function<void(const std::string& name, testkit::Window window)>& visit);

}  // namespace app
