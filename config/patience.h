#pragma once

namespace config {

/// Waits a moment for a file that another program has open for itself, as a virus scanner or a backup does:
/// true when the caller is to try again. One user action waits a fifth of a second in all (Sleep), however
/// often it asks; only after ForgetWaiting, or when nobody has asked for a while, does the next one wait
/// again. Holds that follow upon each other are waited for a little longer, but not each for so long: no
/// window stands still for more than 300 ms.
bool WaitForHeldFile() noexcept;

/// To be called when what was waited for has worked: the next hold is another one, and waiting for it begins
/// anew.
void ForgetWaiting() noexcept;

/// Whether a Windows error says that another program keeps the file from us for the moment.
bool IsHeldError(unsigned long error) noexcept;

/// While it lives, a held file is not waited for, and what the user's actions may wait stays as it is. For
/// what is tried again and again by a timer. A message that is handled meanwhile waits as always.
class NoPatience {
  public:
    NoPatience() noexcept;
    NoPatience(const NoPatience&) = delete;
    NoPatience& operator=(const NoPatience&) = delete;
    NoPatience(NoPatience&&) = delete;
    NoPatience& operator=(NoPatience&&) = delete;
    ~NoPatience();

  private:
    int former_;
};

/// While it lives, a held file is waited for longer. For times when no window freezes meanwhile.
class LongPatience {
  public:
    /// `milliseconds` in all.
    explicit LongPatience(unsigned long milliseconds) noexcept;
    LongPatience(const LongPatience&) = delete;
    LongPatience& operator=(const LongPatience&) = delete;
    LongPatience(LongPatience&&) = delete;
    LongPatience& operator=(LongPatience&&) = delete;
    ~LongPatience();

  private:
    unsigned long former_;
};

}  // namespace config
