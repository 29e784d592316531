#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

namespace sys {

/// One tooltip window attached to one control: a bold title and a text of several lines on pale grey-green.
class clsToolTip {
  public:
    clsToolTip() = default;
    clsToolTip(const clsToolTip&) = delete;
    clsToolTip& operator=(const clsToolTip&) = delete;
    clsToolTip(clsToolTip&&) = delete;
    clsToolTip& operator=(clsToolTip&&) = delete;
    ~clsToolTip();

    /// Makes the tooltip window anew; without a parent control it only destroys the old one.
    /// The answer is always false and has no meaning.
    bool Create();

    /// Makes the tooltip window anew and shows it below its control at once, wherever the pointer is; above
    /// it where the screen ends. It stays until it is made anew or destroyed, and lets the mouse through.
    void ShowBelow();

    /// The control the tip belongs to; null for none.
    void SetParentControl(HWND control) noexcept { parentControl_ = control; }

    /// The control that SetParentControl was given last.
    [[nodiscard]] HWND ParentControl() const noexcept { return parentControl_; }

    /// The bold first line, of which 99 characters are shown; a live tip is changed unless the title is
    /// empty.
    void SetTitle(const std::string& title);

    /// The title that SetTitle was given last.
    [[nodiscard]] const std::string& Title() const noexcept { return title_; }

    /// The text, a new line at each "\n"; a live tip is changed.
    void SetTipText(const std::string& text);

    /// The text that SetTipText was given last.
    [[nodiscard]] const std::string& TipText() const noexcept { return tipText_; }

    /// Lets the tip come up, or keeps it down while something else covers its control (TTM_ACTIVATE). A tip
    /// that is made anew may come up again.
    void Activate(bool active) noexcept;

    /// Gives a live tip the colours that a new one would get; to be called when they may have changed.
    void FollowColors() noexcept;

    /// The tooltip window; null when none exists.
    [[nodiscard]] HWND Handle() const noexcept { return window_; }

  private:
    void Make(UINT flags);
    void Track(POINT place) const noexcept;
    template <class Record>
    [[nodiscard]] Record ToolRecord() const noexcept;
    void SendTool(UINT message, UINT wideMessage);
    void SendTitle();
    void DestroyTip() noexcept;
    void SetFont() const;
    void SetColors() const noexcept;

    std::string title_;
    HWND parentControl_ = nullptr;
    HWND window_ = nullptr;
    std::string tipText_;
    UINT flags_ = TTF_SUBCLASS;
};

}  // namespace sys
