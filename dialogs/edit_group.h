#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/row_list.h"
#include "dialogs/shortcut_name.h"
#include "model/button_records.h"
#include "sys/mouse_wheel.h"
#include "win/dialog.h"

namespace dialogs {

/// The editor of a group: a named list of files, folders and URLs.
class frmEditB : public win::Dialog {
  public:
    /// The table of `context` follows when a button's record does.
    explicit frmEditB(model::ButtonContext& context);

    /// Takes a group, or a single shortcut to make one of, by its name.
    void PrepareWindow(const std::string& groupName);

    /// Shows the editor above all windows until it is applied or cancelled.
    void Show(HWND owner);

    /// The name that the group was stored under; "" when nothing was stored.
    [[nodiscard]] const std::string& StoredName() const noexcept { return storedName_; }

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void AddItem(const std::string& path);
    void Pick(bool folder);
    void AddUrl();
    void DeleteItem();
    void Apply();
    void Store(const std::string& name);
    [[nodiscard]] std::string NameToStore() const;
    [[nodiscard]] std::vector<std::string> Items() const;

    model::ButtonContext& context_;
    std::string oldName_;
    std::string storedName_;
    /// What the list is filled with when the window is made.
    std::vector<Row> firstItems_;
    ShortcutNameBox name_;
    RowList list_;
    sys::WheelNotches wheel_;
};

}  // namespace dialogs
