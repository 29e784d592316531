#pragma once

#include <string>

namespace dialogs {

/// Asks for a folder or a file while the program's own windows take no input; "" when the user cancels.
std::string PickTarget(bool folder);

}  // namespace dialogs
