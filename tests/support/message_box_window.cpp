#include "tests/support/message_box_window.h"

#include "tests/support/input.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

constexpr char kDialogClass[] = "#32770";

}  // namespace

MessageBoxWindow MessageBoxWindow::Wait(DWORD process_id) {
    return MessageBoxWindow(
        WaitForTopWindow({.class_name = kDialogClass, .title = kCaption, .process_id = process_id}));
}

bool MessageBoxWindow::IsShown(DWORD process_id) {
    return FindTopWindow({.class_name = kDialogClass, .title = kCaption, .process_id = process_id}).Exists();
}

void MessageBoxWindow::ClickButton(int index) const {
    mouse::Click(Button(index));
    WaitUntilGone();
}

void MessageBoxWindow::AnswerByKey(WORD key) const {
    window_.Activate();
    keyboard::Press(key);
    WaitUntilGone();
}

void MessageBoxWindow::WaitUntilGone() const {
    WaitFor("the message box closes", [this] { return !window_.IsVisible(); });
}

Window WaitForSystemMessageBox(DWORD process_id, const std::string& title) {
    return WaitForTopWindow({.class_name = kDialogClass, .title = title, .process_id = process_id});
}

}  // namespace testkit
