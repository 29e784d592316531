#pragma once

#include <windows.h>

#include <vector>

namespace win {

/// While it lives, no visible window of this thread takes input or stays above other windows. For windows of
/// the system that are to be answered first but have no window of ours as their owner.
class InputPause {
  public:
    /// Disables the windows (EnableWindow); the destructor enables them again and brings the window to the
    /// foreground that was active.
    InputPause();
    InputPause(const InputPause&) = delete;
    InputPause& operator=(const InputPause&) = delete;
    InputPause(InputPause&&) = delete;
    InputPause& operator=(InputPause&&) = delete;
    ~InputPause();

    /// True while there is one: no window of ours is to be brought above others then.
    [[nodiscard]] static bool Any() noexcept;

  private:
    struct Paused {
        HWND window;
        bool enabled;
        bool topmost;
    };

    static BOOL CALLBACK Collect(HWND window, LPARAM paused) noexcept;

    /// Frontmost first.
    std::vector<Paused> paused_;
    HWND active_ = nullptr;
};

}  // namespace win
