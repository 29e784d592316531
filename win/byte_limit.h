#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace win {

/// Keeps the text of an edit control to so many bytes. Windows' own limit counts characters of the wide text;
/// how many bytes each will take, it does not know. A change that makes the text too long is taken back
/// whole, so that nothing stays of a pasted text but its beginning.
class ByteLimit {
  public:
    /// Limits an edit control whose parent passes its EN_CHANGE on to OnChange. A text that is too long
    /// already may stay, and become shorter.
    void Attach(HWND edit, size_t bytes);

    /// The control's text has changed: takes that back when it has become too long (SetWindowTextW,
    /// MessageBeep).
    void OnChange();

  private:
    HWND edit_ = nullptr;
    size_t bytes_ = 0;
    std::string text_;
};

}  // namespace win
