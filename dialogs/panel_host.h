#pragma once

#include <cstdint>

#include "model/button_records.h"
#include "model/tab.h"

namespace dialogs {

/// What the dialogs need from the main window.
class PanelHost {
  public:
    PanelHost() = default;
    PanelHost(const PanelHost&) = delete;
    PanelHost& operator=(const PanelHost&) = delete;
    PanelHost(PanelHost&&) = delete;
    PanelHost& operator=(PanelHost&&) = delete;
    virtual ~PanelHost() = default;

    /// Brings the panel out, or docks it and keeps it on top by the timer unless bUnTimer is set.
    virtual void ShowQuon(bool bShow, bool bUnTimer) = 0;

    /// Switches Timer1, which keeps the docked panel on top.
    virtual void EnableTimer(bool enabled) = 0;

    /// Makes the check mark of "Extensive tooltips" follow the setting.
    virtual void ShowTooltipSetting() = 0;

    /// Makes the close button follow the setting.
    virtual void TakeCloseSetting() = 0;

    /// Makes a key combination bring the panel out, given as a hot-key control's word; 0 for none. False when
    /// another program has it: the former one stays then.
    virtual bool TakeHotKey(std::uint16_t word) = 0;

    /// Fills the drop-down of text shortcuts anew.
    virtual void RefillList() = 0;

    /// The records of tabs and buttons.
    virtual model::ButtonContext& Context() = 0;

    /// The tab object 1 to 6, made on first use; throws SubscriptError for another number.
    virtual model::clsTab& Tab(int number) = 0;
};

}  // namespace dialogs
