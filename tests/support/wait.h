// Waiting for something to become true, instead of sleeping and hoping.
//
//     WaitFor("the panel closes", [&] { return !program.IsRunning(); });
//     const Window box = WaitFor("a message box", [&] { return FindTopWindow({.class_name = "#32770"}); });
//
// WaitFor gives back what the condition gave and throws when time runs out, which fails the test with the
// description. While it waits it handles messages of this thread's own windows, so a test may own some.
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

namespace testkit {

/// How long a condition may take before the test fails. Far more than it ever should.
inline constexpr std::chrono::milliseconds kPatience{30000};

class TimeoutError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws a TimeoutError that names `what` and the windows that are open; takes a picture of the screen
/// first.
[[noreturn]] void ThrowTimeout(std::string_view what, std::chrono::milliseconds patience);

/// Rests about 8 ms, handling this thread's messages and keeping the pointer where it belongs.
void RestAMoment();

/// Asks `condition` until it gives something true; false when the time is over.
template <class Condition>
bool HappensWithin(std::chrono::milliseconds time, Condition condition) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        RestAMoment();
    }
    return true;
}

/// Waits until `condition` gives something true and returns that; throws TimeoutError naming `what`.
template <class Condition>
auto WaitFor(std::string_view what, Condition condition, std::chrono::milliseconds patience = kPatience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    auto answer = condition();
    while (!static_cast<bool>(answer)) {
        if (std::chrono::steady_clock::now() >= end) {
            ThrowTimeout(what, patience);
        }
        RestAMoment();
        answer = condition();
    }
    return answer;
}

/// Whether `condition` is true all the time. Only for the proof that something does not happen, where there
/// is no later event to wait for.
template <class Condition>
bool HoldsThroughout(std::chrono::milliseconds time, Condition condition) {
    return !HappensWithin(time, [&] { return !condition(); });
}

}  // namespace testkit
