// The program's own message box.
//
//     MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
//     EXPECT_EQ(box.Text(), "Delete it?");
//     box.ClickButton(0);                        // and waits until the box is gone
#pragma once

#include <windows.h>

#include <string>

#include "tests/support/window.h"

namespace testkit {

class MessageBoxWindow {
  public:
    static constexpr char kCaption[] = "Message from Quon";

    /// Waits for the box of the process.
    static MessageBoxWindow Wait(DWORD process_id);
    /// Whether the process shows one now.
    static bool IsShown(DWORD process_id);

    Window BoxWindow() const { return window_; }
    /// What it says.
    std::string Text() const { return window_.Child(kLabel).Text(); }
    /// One of its buttons, 0 to 2; it may be hidden.
    Window Button(int index) const { return window_.Child(kFirstButton + index); }
    Window Input() const { return window_.Child(kInput); }

    /// Clicks a button with the mouse and waits until the box is gone.
    void ClickButton(int index) const;
    /// Replaces the text of the input field.
    void SetInput(const std::string& text) const { Input().SetText(text); }
    /// Presses a key (VK_RETURN, VK_ESCAPE) in the box and waits until it is gone.
    void AnswerByKey(WORD key) const;

  private:
    static constexpr int kLabel = 300;
    static constexpr int kFirstButton = 310;
    static constexpr int kInput = 320;

    explicit MessageBoxWindow(Window window) : window_(window) {}
    void WaitUntilGone() const;

    Window window_;
};

/// Waits for a box of the system, by its title; gives the window. Its text is the child with id 65535.
Window WaitForSystemMessageBox(DWORD process_id, const std::string& title);

}  // namespace testkit
