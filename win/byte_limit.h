#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace win {

/// Limits the text of an edit control to so many bytes; Windows' own limit counts characters of the wide
/// text, whatever number of bytes each will take. A change that makes the text too long is taken back whole,
/// so that a pasted text is not cut.
class ByteLimit {
  public:
    /// Limits an edit control; its parent passes EN_CHANGE on to OnChange. A text that is too long already
    /// may stay, and may become shorter.
    void Attach(HWND edit, size_t bytes);

    /// The control's text has changed: takes the change back when the text has become too long
    /// (SetWindowTextW, MessageBeep).
    void OnChange();

  private:
    HWND edit_ = nullptr;
    size_t bytes_ = 0;
    std::string text_;
};

}  // namespace win
