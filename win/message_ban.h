#pragma once

namespace win {

/// While one lives, nothing may be called that lets messages run: no dialog, no menu, no wait that handles
/// events. What is half done meanwhile must not be seen by a handler. They nest.
class MessageBan {
  public:
    MessageBan() noexcept;
    MessageBan(const MessageBan&) = delete;
    MessageBan& operator=(const MessageBan&) = delete;
    MessageBan(MessageBan&&) = delete;
    MessageBan& operator=(MessageBan&&) = delete;
    ~MessageBan();
};

/// Whether messages may run now.
bool MayPump() noexcept;

/// Is told the name of a routine that lets messages run although they may not; must not throw.
using BanBreachHandler = void (*)(const char* routine) noexcept;

/// Names the one who is told; until then, and after null, nobody is.
void SetBanBreachHandler(BanBreachHandler handler) noexcept;

/// To be called by every routine that lets messages run, before it does, with its name.
void AssertMayPump(const char* routine) noexcept;

}  // namespace win
