#include "tests/support/modal_answers.h"

#include <gtest/gtest.h>

#include <exception>

#include "tests/support/open_dialog.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

constexpr wchar_t kAnswered[] = L"testkit.answered";

ModalAnswers* g_answers = nullptr;

BOOL CALLBACK TakeDialog(HWND handle, LPARAM found) {
    const Window window(handle);
    if (!window.IsVisible() || !window.IsEnabled() || window.Class() != "#32770") return TRUE;
    *reinterpret_cast<HWND*>(found) = handle;
    return FALSE;
}

}  // namespace

HWND OpenDialog() {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), &TakeDialog, reinterpret_cast<LPARAM>(&dialog));
    return dialog;
}

ModalAnswers::ModalAnswers(std::vector<Step> steps) : ModalAnswers(std::move(steps), nullptr) {}

ModalAnswers::ModalAnswers(std::vector<Step> steps, Step all)
    : steps_(std::move(steps)),
      all_(std::move(all)),
      timer_(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &ModalAnswers::Tick)),
      last_answer_(GetTickCount64()),
      before_(std::exchange(g_answers, this)) {}

ModalAnswers::~ModalAnswers() {
    KillTimer(nullptr, timer_);
    g_answers = before_;
    EXPECT_EQ(used_, steps_.size()) << "not every dialog that was expected has come up";
}

void CALLBACK ModalAnswers::Tick(HWND, UINT, UINT_PTR, DWORD) {
    const HWND dialog = OpenDialog();
    if (!dialog || !g_answers) return;
    const bool answered = GetPropW(dialog, kAnswered) != nullptr;
    if (!answered) {
        SetPropW(dialog, kAnswered, dialog);
        g_answers->Answer(Window(dialog));
    } else if (GetTickCount64() > g_answers->last_answer_ + static_cast<ULONGLONG>(kPatience.count())) {
        ADD_FAILURE() << "the dialog stays open: " << Window(dialog).Describe();
        EndDialog(dialog, 0);
    }
}

void ModalAnswers::Answer(Window dialog) {
    last_answer_ = GetTickCount64();
    if (used_ == steps_.size() && !all_) {
        ADD_FAILURE() << "unexpected: " << dialog.Describe();
        EndDialog(dialog.Handle(), 0);
        return;
    }
    const Step step = used_ < steps_.size() ? steps_[used_++] : all_;
    try {
        step(dialog);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
        EndDialog(dialog.Handle(), 0);
    }
}

ModalAnswers::Step Press(int id) {
    return [id](Window dialog) { dialog.Press(id); };
}

ModalAnswers::Step PostPress(int id) {
    return [id](Window dialog) { dialog.PostPress(id); };
}

ModalAnswers::Step TypeAndPress(const std::string& text, int id) {
    return [text, id](Window box) {
        box.Child(dialogs::frmMsg::Text1).SetText(text);
        box.Press(id);
    };
}

ModalAnswers::Step Note(const std::string& text) {
    return [text](Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), text);
        EXPECT_EQ(box.Child(dialogs::frmMsg::b1).Text(), "OK");
        EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 1).IsVisible());
        EXPECT_FALSE(box.Child(dialogs::frmMsg::b1 + 2).IsVisible());
        box.Press(dialogs::frmMsg::b1);
    };
}

}  // namespace testkit
