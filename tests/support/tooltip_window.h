// Tips of another program.
//
//     const ToolTipWatch tips(panel);
//     mouse::MoveTo(button.Centre());
//     const ToolTipText tip = tips.Wait();
//     EXPECT_EQ(tip.title, "Editor");
//     EXPECT_THAT(tip.text, HasSubstr("C:\\editor.exe"));
//
// A tooltip does not tell its title everywhere (Wine's does not), so the title is noted when the program sets
// it: make the watch before that.
#pragma once

#include <windows.h>

#include <string>

#include "tests/support/agent.h"
#include "tests/support/window.h"

namespace testkit {

struct ToolTipText {
    std::string title;
    std::string text;
    /// TTI_NONE, TTI_INFO, TTI_WARNING, TTI_ERROR or the low word of an icon handle.
    UINT icon = 0;
};

class ToolTipWatch {
  public:
    /// Watches the tooltips of the thread that `window` belongs to.
    explicit ToolTipWatch(Window window) : presence_(window), process_id_(window.ProcessId()) {}

    /// The tooltip window that is visible now; an empty Window when no tip is shown.
    Window Shown() const;
    /// Waits until a tip is shown and reads it.
    ToolTipText Wait() const;
    /// What a tooltip window, shown or not, has to say.
    static ToolTipText Read(Window tooltip);

  private:
    agent::Presence presence_;
    DWORD process_id_ = 0;
};

}  // namespace testkit
