// The headers that most of the product takes: compiled once for all of it. Every source includes what it
// needs nevertheless.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
