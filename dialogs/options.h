#pragma once

#include <cstdint>
#include <memory>

#include "dialogs/panel_host.h"
#include "res/resource.h"
#include "sys/tooltip.h"
#include "win/dialog.h"
#include "win/handles.h"

namespace dialogs {

/// The options dialog: edits the settings in memory and the entry that starts Quon with Windows.
class frmSettings : public win::Dialog {
  public:
    /// Its controls.
    enum Control {
        chSet = frmSettings_chSet,        ///< + index, 0 to 9: the check boxes
        Text1 = frmSettings_Text1,        ///< the hover delay
        o1 = frmSettings_o1,              ///< + edge, 1 to 4: where the panel docks
        ltBut1 = frmSettings_ltBut1,      ///< + kCancel or kAccept
        Picture2 = frmSettings_Picture2,  ///< the red frame around both ways to bring the panel out
        HotKey = frmSettings_HotKey,      ///< the hot key
    };
    static constexpr int kCancel = 0;
    static constexpr int kAccept = 1;

    explicit frmSettings(PanelHost& host) noexcept : host_(host) {}

    /// Docks the panel, shows the dialog and returns when it is closed; the panel is out again then.
    void Open();

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override;
    void OnOtherScreen() override;

  private:
    static constexpr int kNoOption = 10;
    /// The hot key's number among the controls with a tip: as for the check boxes, its identifier less that
    /// of the first.
    static constexpr int kHotKey = 60;
    /// The same of the delay's box, which has a tip of its own under the pointer.
    static constexpr int kDelay = 20;

    void PlaceDelay() const;
    void MakeWarningBrush();
    void ShowSettings();
    void ShapeWarning();
    void OnPointer(HWND window);
    static LRESULT CALLBACK WatchFocus(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR options) noexcept;
    void WatchFocusOf(int control);
    void OnFocus(HWND control);
    void OnShown();
    void HideFocusTip();
    void PrepareTip(int index);
    void ShowTip(int index);
    void WarnOfUnreachablePanel();
    [[nodiscard]] bool Checked(int index) const;
    void Accept();
    [[nodiscard]] bool TakeHotKey() const;
    void CopySettings();
    void Copy(int index) const;
    [[nodiscard]] std::int32_t TypedDelay() const;
    void Unload();

    PanelHost& host_;
    std::int32_t edge_ = 0;
    bool collectedBefore_ = false;
    /// The control whose tip was built last.
    int hovered_ = kNoOption;
    std::unique_ptr<sys::clsToolTip> tip_;
    /// True while the tip stands there for the control that has the focus.
    bool tipOfFocus_ = false;
    /// Where the pointer rested when it came up.
    POINT pointerThen_{};
    sys::clsToolTip delayTip_;
    win::Brush warningBrush_;
};

}  // namespace dialogs
