#pragma once

namespace win {

/// While one lives, nothing that lets messages run may be called: no dialog, no menu, no wait that handles
/// events. A handler must not see what is half done meanwhile. They nest.
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

/// Called with the name of a routine that lets messages run although they may not; must not throw.
using BanBreachHandler = void (*)(const char* routine) noexcept;

/// Sets the handler of such breaches; until then, and after null, there is none.
void SetBanBreachHandler(BanBreachHandler handler) noexcept;

/// To be called by every routine that lets messages run, before it does, with its name.
void AssertMayPump(const char* routine) noexcept;

}  // namespace win
