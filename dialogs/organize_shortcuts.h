#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/row_list.h"
#include "model/button_records.h"
#include "res/resource.h"
#include "sys/mouse_wheel.h"
#include "win/dialog.h"
#include "win/retry_timer.h"

namespace dialogs {

/// The organiser: all text shortcuts and groups in one list, to be edited and deleted.
class frmCuts : public win::Dialog {
  public:
    /// Its controls. The rows of the list are painted: see RowList.
    enum Control {
        Command1 = frmCuts_Command1,  ///< + kEdit, kDelete or kQuit
        pFrame = frmCuts_pFrame,      ///< through which the list is seen
        pBasket = frmCuts_pBasket,    ///< the list, which moves inside the frame
        Scr = frmCuts_Scr,            ///< the list's scroll bar
        Label1 = frmCuts_Label1,      ///< the message in place of the list
        List1 = frmCuts_List1,        ///< a hidden box with the names, for automation
        Line1 = frmCuts_Line1,        ///< above the buttons
    };
    static constexpr int kEdit = 0;
    static constexpr int kDelete = 1;
    static constexpr int kQuit = 2;

    /// The table of `context` follows each change of a button's record.
    explicit frmCuts(model::ButtonContext& context);

    /// Shows the organiser above all windows until it is closed.
    void Show(HWND owner);

    /// Builds the list anew from the configuration file; when that cannot be read, tries again a little
    /// later.
    void ReadShortcuts();

    /// Scrolls by one notch: forward for a rotation toward the user (negative), otherwise back.
    void MouseWheel(std::int32_t Keys, std::int32_t Rotation, std::int32_t X, std::int32_t Y);

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void TellChanged(const std::vector<std::string>& names) const;
    void Say(const char* text) const;
    void EnableCommands(bool enabled) const;
    void OnActivate(bool active);
    [[nodiscard]] const Row* RowToChange() const;
    void EditShortcut();
    void DeleteShortcut();

    model::ButtonContext& context_;
    RowList list_;
    sys::WheelNotches wheel_;
    win::RetryTimer readAgain_{1, 200};
};

}  // namespace dialogs
