#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/row_list.h"
#include "dialogs/shortcut_name.h"
#include "model/button_records.h"
#include "res/resource.h"
#include "sys/mouse_wheel.h"
#include "win/dialog.h"

namespace dialogs {

/// The editor of a group: a named list of files, folders and URLs.
class frmEditB : public win::Dialog {
  public:
    /// Its controls. The rows of the list are painted: see RowList. The edge of pFrame serves as the frame
    /// around the list, so there is no Frame1.
    enum Control {
        t1 = frmEditB_t1,            ///< + kName: the name's box
        l1 = frmEditB_l1,            ///< its label; + kExists: the warning
        c1 = frmEditB_c1,            ///< + kAddFile to kDeleteItem: the buttons
        pFrame = frmEditB_pFrame,    ///< through which the list is seen
        pBasket = frmEditB_pBasket,  ///< the list, which moves inside the frame
        Scr = frmEditB_Scr,          ///< the list's scroll bar
        Line1 = frmEditB_Line1,      ///< above the buttons that close
    };
    static constexpr int kName = 0;
    static constexpr int kExists = 3;
    static constexpr int kAddFile = 0;
    static constexpr int kAddFolder = 1;
    static constexpr int kApply = 2;
    static constexpr int kCancel = 3;
    static constexpr int kAddUrl = 4;
    static constexpr int kDeleteItem = 5;

    /// The table of `context` follows each change of a button's record.
    explicit frmEditB(model::ButtonContext& context);

    /// Takes a group, or a single shortcut to make a group of, by its name. False when it could not be read;
    /// the editor must not be shown then.
    bool PrepareWindow(const std::string& groupName);

    /// Shows the editor above all windows until it is applied or cancelled.
    void Show(HWND owner);

    /// The name that the group was stored under; "" when nothing was stored.
    [[nodiscard]] const std::string& StoredName() const noexcept { return storedName_; }

    /// The number of the selected row; 0 in an empty list.
    [[nodiscard]] std::int16_t SelectedItem() const { return static_cast<std::int16_t>(list_.Selected()); }

    /// How many rows there are.
    [[nodiscard]] std::int16_t ItemCount() const { return static_cast<std::int16_t>(list_.Rows().size()); }

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override { name_.FollowColors(); }

  private:
    void AddItem(const std::string& path);
    void Pick(bool folder);
    void AddUrl();
    void DeleteItem();
    void Apply();
    [[nodiscard]] bool Store(const std::string& name);
    [[nodiscard]] std::string NameToStore() const;
    [[nodiscard]] std::vector<std::string> Items() const;

    model::ButtonContext& context_;
    std::string OldName;  // the group's when the editor was opened
    // The greatest length of the list in bytes: what can be read back, or what was there already.
    size_t longestItems_ = 0;
    std::string storedName_;
    /// The members that fill the list when the window is made.
    std::vector<Row> firstItems_;
    ShortcutNameBox name_;
    RowList list_;
    sys::WheelNotches wheel_;
};

}  // namespace dialogs
