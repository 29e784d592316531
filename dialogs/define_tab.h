#pragma once

#include <memory>

#include "dialogs/panel_host.h"
#include "res/resource.h"
#include "sys/tooltip.h"
#include "win/byte_limit.h"
#include "win/dialog.h"

namespace dialogs {

/// Asks for the label and the description of a tab, and for what the tips of all tabs show.
class frmTabPrep : public win::Dialog {
  public:
    /// Its controls.
    enum Control {
        Label1 = frmTabPrep_Label1,      ///< + index, 0 to 2: the labels
        Text1 = frmTabPrep_Text1,        ///< + kLabel or kDescription: the boxes
        Check1 = frmTabPrep_Check1,      ///< whether tips show the description
        Command1 = frmTabPrep_Command1,  ///< + kApply or kCancel
        Frame1 = frmTabPrep_Frame1,      ///< around the boxes
    };
    static constexpr int kLabel = 0;
    static constexpr int kDescription = 1;
    static constexpr int kApply = 0;
    static constexpr int kCancel = 1;

    /// `tab` is 1 to 6.
    frmTabPrep(PanelHost& host, int tab) noexcept : host_(host), tab_(tab) {}

    /// Shows the dialog with the tab's present texts and returns when it is closed.
    void Open();

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override;

  private:
    void LimitDescription();
    void ShowContentsTip();
    void Apply();

    PanelHost& host_;
    int tab_;
    std::unique_ptr<sys::clsToolTip> tip_;
    win::ByteLimit descriptionLimit_;
};

}  // namespace dialogs
