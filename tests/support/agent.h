// Questions to another program that only somebody inside it can answer. The kit's own tools (popup_menu.h,
// tooltip_window.h, running_program.h) ask them; tests use those.
//
// A small library, quon_test_agent.dll, is hooked into the program's thread for the time of one question, or
// as long as a Presence lives.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

#include "tests/support/agent/protocol.h"
#include "tests/support/window.h"

namespace testkit::agent {

struct Unhook {
    void operator()(HHOOK hook) const { UnhookWindowsHookEx(hook); }
};

/// Keeps the agent in a program, where it notes what it can only know by having been there.
class Presence {
  public:
    /// In the thread of `window`.
    explicit Presence(Window window);

  private:
    std::unique_ptr<std::remove_pointer_t<HHOOK>, Unhook> hook_;
};

/// Asks in the thread of `window`. Throws when no answer comes.
std::unique_ptr<Answer> Ask(Window window, Question question);

/// Menus, icons and cursors of the window's process; under Wine only.
std::size_t CountMenusAndIcons(Window window);

/// The error mode of the window's thread and, in the high word, that of its process (SEM_ flags).
UINT ErrorModes(Window window);

/// Whether input, a posted message or a painting waits for the window's thread; true when the window goes
/// meanwhile.
bool HasMessages(Window window);

}  // namespace testkit::agent
