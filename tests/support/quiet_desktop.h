// What a person's desktop does for a person and what gets in the way of a test. Under Windows only; Wine's
// desktop has none of it.
#pragma once

#include <windows.h>

#include <optional>

namespace testkit {

/// As long as it lives, this program and those that it starts may bring their windows to the front, and keys
/// that are pressed again and again ask no questions. Nothing of it outlives the session.
class QuietDesktop {
  public:
    QuietDesktop();
    ~QuietDesktop();
    QuietDesktop(const QuietDesktop&) = delete;
    QuietDesktop& operator=(const QuietDesktop&) = delete;

  private:
    /// How long, in milliseconds, Windows refuses the foreground after a user's input; nothing if unknown.
    std::optional<DWORD> lock_time_;
    std::optional<STICKYKEYS> sticky_keys_;
};

}  // namespace testkit
