// The headers of Windows, the test framework and the standard library that nearly every test takes: compiled
// once for all test programs. Tests get them with tests/support/unit_test.h or tests/support/desktop.h.
#pragma once

// IWYU pragma: begin_exports
#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ole2.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>
// IWYU pragma: end_exports
