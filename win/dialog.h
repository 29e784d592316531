#pragma once

#include <windows.h>

#include "win/scale.h"

namespace win {

/// A modal window made from a DIALOGEX template. Esc arrives as the command IDCANCEL, Enter as the default
/// button's.
class Dialog {
  public:
    Dialog() = default;
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    Dialog(Dialog&&) = delete;
    Dialog& operator=(Dialog&&) = delete;
    virtual ~Dialog() = default;

    /// The dialog's window; null while it is not shown.
    [[nodiscard]] HWND Handle() const noexcept { return handle_; }

    /// The scale that the dialog was made at, which it keeps wherever it is moved. Where its text had to be
    /// made smaller to let it fit on its screen, the scale's text is as much smaller.
    [[nodiscard]] const Scale& DialogScale() const noexcept { return scale_; }

    /// The window of one of the dialog's controls; null when there is none.
    [[nodiscard]] HWND Item(int id) const noexcept { return GetDlgItem(handle_, id); }

  protected:
    /// Shows the dialog and returns when it is closed (DialogBoxIndirectParamW). The answer is what End was
    /// given, or -1 when Windows could not make the dialog, when OnInit threw (which has been reported), or
    /// when the program is ending.
    INT_PTR ShowModal(HWND owner, int templateId);

    /// Closes the dialog.
    void End(INT_PTR answer) noexcept;

    /// Runs once, before the dialog is shown. False when the dialog has set the focus itself.
    virtual bool OnInit() { return true; }

    /// A control's notification; false when it was not used.
    virtual bool OnCommand(int id, int notification) = 0;

    /// The colours have changed, or a contrast theme has come or gone: what was made in the former ones is to
    /// be made anew. The dialog and its controls are painted again then.
    virtual void OnColors() {}

    /// The dialog has come to a screen with another scale. It keeps its client area, but Windows draws the
    /// marks of check boxes and the frame at the new scale.
    virtual void OnOtherScreen() {}

    /// Any other message; 0 when it was not used (colour messages answer with their brush).
    virtual INT_PTR OnMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return 0; }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    INT_PTR Begin(HWND window);
    INT_PTR Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
    void FollowLook(bool colors);
    [[nodiscard]] SIZE OuterSize(int dpi) const noexcept;
    void MoveToScale(int dpi, POINT corner);

    HWND handle_ = nullptr;
    Scale scale_;
    /// The screen on which the owner is seen, if that is not the one that Windows would take.
    HMONITOR screen_ = nullptr;
    /// The sizes of the text that the template has and that it would have had (see SizedTemplate).
    int points_ = 0;
    int wholePoints_ = 0;
    /// The client area's size once the dialog is set up.
    SIZE client_{};
    bool contrastTheme_ = false;
};

/// The window that owns the next modal window: the innermost open dialog, else the one set as the main
/// window.
HWND ModalOwner() noexcept;

/// Names the main window; null takes it back. An end that was under way was the former one's (SetEnding).
void SetMainWindow(HWND window) noexcept;

/// True while a dialog of this program is open.
bool AnyDialogOpen() noexcept;

/// True for the window of an open dialog of this program.
bool IsOpenDialog(HWND window) noexcept;

/// Cancels the open dialogs from the innermost out, as Esc would.
void CancelOpenDialogs();

/// Sets what F1 does in any window of the program; null for nothing.
void SetHelpHandler(void (*handler)()) noexcept;

/// Runs the F1 handler.
void ShowHelp();

}  // namespace win
