#pragma once

#include <string>
#include <vector>

namespace sys {

/// The clipboard with what other programs have put there. It is open only during a call; while another
/// program holds it open, it reads as empty.
class clsClipboard {
  public:
    /// The paths of the copied files in their order; a shell link stands for its target (DragQueryFile).
    static std::vector<std::string> GetFiles();

    /// The copied text in the process code page; "" when there is none.
    static std::string GetText();

    /// True when files were copied.
    static bool HasFiles();

    /// Empties the clipboard.
    static void ClearTheClipboard();
};

}  // namespace sys
