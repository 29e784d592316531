#include "win/retry_timer.h"

#include <algorithm>
#include <utility>

namespace win {
namespace {

constexpr UINT kLongestPause = 5000;  // milliseconds

/// Gives a flag its former value back at the end of a scope, whatever ends it.
class Restored {
  public:
    Restored(bool& flag, bool former) noexcept : flag_(flag), former_(former) {}
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;
    Restored(Restored&&) = delete;
    Restored& operator=(Restored&&) = delete;
    ~Restored() { flag_ = former_; }

  private:
    bool& flag_;
    bool former_;
};

}  // namespace

void RetryTimer::Again(HWND window) {
    // A user who does something meanwhile is not kept waiting for as long.
    pause_ = trying_ ? std::min(2 * pause_, kLongestPause) : first_;
    SetTimer(window, id_, pause_, nullptr);
}

bool RetryTimer::OnTimer(HWND window, UINT_PTR timer) {
    if (timer != id_) return false;
    KillTimer(window, id_);
    const Restored trying(trying_, std::exchange(trying_, true));
    if (onTry) onTry();
    return true;
}

}  // namespace win
