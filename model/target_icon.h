#pragma once

#include <cstdint>
#include <string>

#include "win/handles.h"

namespace model {

/// The icon of a target: of its associated program, else the one that Windows associates with it, else the
/// shell's, else the program's own. A URL has the default browser's. `index` counts in the file that the icon
/// comes from. `size` in pixels is what it will be drawn at: if that differs from what Windows hands out on
/// the system's scale (SM_CXICON), the file's own icon of that size is taken, if it has one, and the shell's
/// from its lists of larger ones.
win::Icon TargetIcon(const std::string& target, std::int32_t index, int size);

/// The shell's icon for a file of this kind, found by the target's name alone, else the program's own. For a
/// target that cannot be reached and must not be waited for (SHGetFileInfoA). `size` as above.
win::Icon IconOfKind(const std::string& target, int size);

}  // namespace model
