#include "win/retry_timer.h"

#include <algorithm>

namespace win {
namespace {

constexpr UINT kLongestPause = 5000;  // milliseconds

/// Sets a flag for the time of a scope, whatever ends it.
class Flagged {
  public:
    explicit Flagged(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    Flagged(const Flagged&) = delete;
    Flagged& operator=(const Flagged&) = delete;
    Flagged(Flagged&&) = delete;
    Flagged& operator=(Flagged&&) = delete;
    ~Flagged() { flag_ = false; }

  private:
    bool& flag_;
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
    const Flagged trying(trying_);
    if (onTry) onTry();
    return true;
}

}  // namespace win
