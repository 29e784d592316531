#include "tests/support/tooltip_window.h"

#include <commctrl.h>

#include "tests/support/agent.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {

Window ToolTipWatch::Shown() const {
    return FindTopWindow({.class_name = Utf8(TOOLTIPS_CLASSW), .process_id = process_id_});
}

ToolTipText ToolTipWatch::Wait() const {
    return Read(WaitFor("a tip", [this] { return Shown(); }));
}

ToolTipText ToolTipWatch::Read(Window tooltip) {
    const std::unique_ptr<agent::Answer> answer = agent::Ask(tooltip, agent::Question::kToolTip);
    return {Utf8(answer->tip.title), Utf8(answer->tip.text), answer->tip.icon};
}

}  // namespace testkit
