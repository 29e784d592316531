// What the program tells screen readers beside what they see themselves, while it lives.
//
//     const Annotations told;
//     ... a link is made ...
//     EXPECT_EQ(told.RoleOf(link), ROLE_SYSTEM_LINK);
//
// Nothing of it reaches Windows.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "tests/support/recorded_call.h"

namespace testkit {

class Annotations {
  public:
    Annotations();
    ~Annotations();
    Annotations(const Annotations&) = delete;
    Annotations& operator=(const Annotations&) = delete;

    /// The role (ROLE_SYSTEM_) that a window was given; nothing when it has none, or not any more.
    std::optional<long> RoleOf(HWND window) const;
    /// The state (STATE_SYSTEM_) that a window was given; nothing when it has none, or not any more.
    std::optional<long> StateOf(HWND window) const;
    /// The name that a window was given; "" when it has none, or not any more.
    std::string NameOf(HWND window) const;
    /// How many windows have a role, a state or a name now.
    std::size_t Count() const;

  private:
    class Services;

    std::unique_ptr<Services> services_;
    RecordedCall create_;
};

}  // namespace testkit
