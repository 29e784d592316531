#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "sys/tooltip.h"
#include "win/byte_limit.h"

namespace dialogs {

/// True when a shortcut has this name, or the one under which it would be stored; case is ignored. Nothing
/// when the configuration file could not be read.
std::optional<bool> ShortcutExists(const std::string& name);

/// The name box of an editor: red beside the warning "Shortcut exists!" while the name is taken, else blue.
/// A click on one of the labels selects the whole name. No name can be typed that is longer than can be
/// stored.
class ShortcutNameBox {
  public:
    /// Takes over the controls of a dialog: the box, and the labels with the identifiers `firstLabel` to
    /// `warning`. The last of these is the warning, the first carries the tip. To be called once the dialog
    /// is topmost: the tip is a topmost window of its own.
    void Attach(HWND dialog, int box, int firstLabel, int warning);

    /// The name as it is typed.
    [[nodiscard]] std::string Name() const;

    /// Replaces the name and tests it.
    void SetName(const std::string& name);

    /// Selects the whole name and gives it the focus.
    void SelectAll() const;

    /// Handles a control's notification: each change of the box is tested, a click on a label selects the
    /// name. False when it comes from another control. The dialog's other boxes call Test themselves.
    bool OnCommand(int id, int notification);

    /// Tests the name now.
    void Test();

    /// Sets the text colour that a control is to be painted with (WM_CTLCOLOREDIT); leaves every control but
    /// the name box alone. The background is the dialog's business.
    void ColorText(HWND control, HDC dc) const noexcept;

    /// To be called when the colours have changed (win::Dialog::OnColors).
    void FollowColors() noexcept { tip_.FollowColors(); }

  private:
    HWND dialog_ = nullptr;
    int box_ = 0;
    int firstLabel_ = 0;
    int warning_ = 0;
    bool taken_ = false;
    win::ByteLimit limit_;
    sys::clsToolTip tip_;
};

}  // namespace dialogs
