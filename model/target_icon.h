#pragma once

#include <cstdint>
#include <string>

#include "win/handles.h"

namespace model {

/// The icon of a target, 32 pixels: of its associated program, else the one that Windows associates with it,
/// else the shell's, else the program's own. A URL has the default browser's. `index` counts in the file that
/// the icon comes from.
win::Icon TargetIcon(const std::string& target, std::int32_t index);

/// The shell's icon for a file of this kind, found by the target's name alone, else the program's own. For a
/// target that cannot be reached and must not be waited for (SHGetFileInfoA).
win::Icon IconOfKind(const std::string& target);

}  // namespace model
