#include "win/message_ban.h"

namespace win {
namespace {

int g_bans = 0;
BanBreachHandler g_breachHandler = nullptr;

}  // namespace

MessageBan::MessageBan() noexcept { ++g_bans; }

MessageBan::~MessageBan() { --g_bans; }

bool MayPump() noexcept { return g_bans == 0; }

void SetBanBreachHandler(BanBreachHandler handler) noexcept { g_breachHandler = handler; }

void AssertMayPump(const char* routine) noexcept {
    if (!MayPump() && g_breachHandler != nullptr) g_breachHandler(routine);
}

}  // namespace win
