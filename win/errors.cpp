#include "win/errors.h"

#include "win/message_ban.h"

namespace win {
namespace {

ErrorReporter g_reporter = nullptr;

}  // namespace

void SetErrorReporter(ErrorReporter reporter) noexcept { g_reporter = reporter; }

void ReportCurrentException(HWND owner) noexcept {
    if (g_reporter == nullptr) return;
    AssertMayPump("an error report");
    try {
        throw;
    } catch (const std::exception& error) {
        g_reporter(owner, error.what());
    } catch (...) {
        g_reporter(owner, "Unknown error");
    }
}

}  // namespace win
