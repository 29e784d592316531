// Answers the modal dialogs that code under test opens in the test's own thread.
//
//     ModalAnswers user({Press(dialogs::frmMsg::b1 + 0)});
//     EXPECT_EQ(dialogs::ShowMessage("Go on?", 1, "OK"), "OK");
//
// Each step gets one dialog, in the order in which they open; a dialog that a step itself opens counts too. A
// step runs in the dialog's message loop, when nothing else is left to do there: everything is painted by
// then. It may leave the dialog open after posting a message that will close it.
// Where nobody can know which dialogs come up, one step answers them all:
//
//     const ModalAnswers user = ModalAnswers::ForAll(Press(dialogs::frmMsg::b1 + 0));
//
// A dialog without a step, a step without a dialog, an exception in a step and a dialog that stays open
// fail the test; the dialog is closed then.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/message_box.h"
#include "tests/support/window.h"

namespace testkit {

class ModalAnswers {
  public:
    using Step = std::function<void(Window)>;

    explicit ModalAnswers(std::vector<Step> steps);
    /// Each dialog gets this step, and there may be none.
    static ModalAnswers ForAll(Step step) { return ModalAnswers({}, std::move(step)); }
    ~ModalAnswers();
    ModalAnswers(const ModalAnswers&) = delete;
    ModalAnswers& operator=(const ModalAnswers&) = delete;

    /// How many dialogs have been answered by now.
    std::size_t Used() const { return used_; }

  private:
    ModalAnswers(std::vector<Step> steps, Step all);

    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
    void Answer(Window dialog);

    std::vector<Step> steps_;
    /// For all that have no step of their own; may be empty.
    Step all_;
    std::size_t used_ = 0;
    UINT_PTR timer_ = 0;
    ULONGLONG last_answer_ = 0;
    ModalAnswers* before_ = nullptr;
};

/// Presses a button of the dialog; the second one posts the press and returns at once.
ModalAnswers::Step Press(int id);
ModalAnswers::Step PostPress(int id);
/// Types into the line of Quon's message box and presses a button.
ModalAnswers::Step TypeAndPress(const std::string& text, int id);
/// Takes note of a message of Quon's, which has to have this text and no button but "OK".
ModalAnswers::Step Note(const std::string& text);

}  // namespace testkit
